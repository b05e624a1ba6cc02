// Error and traffic counters of the local ports.
#include "switchProviders/VRAX_FCPortStatistics_Provider.h"

#include "common/CacheLock.h"
#include "common/Sml_Batch.h"
#include "common/fabric_walk.h"

namespace cimple
{

namespace
{

// A counter of a port: the attribute, a hexadecimal text, and the property it feeds.
struct Counter
{
    const char* key;
    Property<uint64> VRAX_FCPortStatistics::*property;
    unsigned shift; // how far the value is shifted left
};

// The switch counts transmission words of 4 bytes where CIM wants bytes.
constexpr unsigned kWordsToBytes = 2;

constexpr Counter kCounters[] = {
    {"Oper.UserPort.0.%s.C64.TotalLIPRecv", &VRAX_FCPortStatistics::LIPCount, 0},
    {"Oper.UserPort.0.%s.C64.RxLinkResets", &VRAX_FCPortStatistics::LinkResetsReceived, 0},
    {"Oper.UserPort.0.%s.C64.TxLinkResets", &VRAX_FCPortStatistics::LinkResetsTransmitted, 0},
    {"Oper.UserPort.0.%s.C64.PrimSeqErrors", &VRAX_FCPortStatistics::PrimitiveSeqProtocolErrCount, 0},
    {"Oper.UserPort.0.%s.C64.InvDestAddr", &VRAX_FCPortStatistics::AddressErrors, 0},
    {"Oper.UserPort.0.%s.C64.Class3FramesIn", &VRAX_FCPortStatistics::RXClass3Frames, 0},
    {"Oper.UserPort.0.%s.C64.Class3FramesOut", &VRAX_FCPortStatistics::TXClass3Frames, 0},
    {"Oper.UserPort.0.%s.C64.Class2FramesIn", &VRAX_FCPortStatistics::RXClass2Frames, 0},
    {"Oper.UserPort.0.%s.C64.Class2FramesOut", &VRAX_FCPortStatistics::TXClass2Frames, 0},
    {"Oper.UserPort.0.%s.C64.DecodeErrors", &VRAX_FCPortStatistics::InvalidTransmissionWords, 0},
    {"Oper.UserPort.0.%s.C64.LinkFailures", &VRAX_FCPortStatistics::LinkFailures, 0},
    {"Oper.UserPort.0.%s.C64.LossOfSyncs", &VRAX_FCPortStatistics::LossOfSyncCounter, 0},
    {"Oper.UserPort.0.%s.C64.InvalidCRCs", &VRAX_FCPortStatistics::CRCErrors, 0},
    {"Oper.UserPort.0.%s.C64.TotalRxWords", &VRAX_FCPortStatistics::BytesReceived, kWordsToBytes},
    {"Oper.UserPort.0.%s.C64.TotalTxWords", &VRAX_FCPortStatistics::BytesTransmitted, kWordsToBytes},
    {"Oper.UserPort.0.%s.C64.TotalRxFrames", &VRAX_FCPortStatistics::PacketsReceived, 0},
    {"Oper.UserPort.0.%s.C64.TotalTxFrames", &VRAX_FCPortStatistics::PacketsTransmitted, 0},
    {"Oper.UserPort.0.%s.C64.FBusys", &VRAX_FCPortStatistics::FBSYFrames, 0},
    {"Oper.UserPort.0.%s.C64.ShortFramesIn", &VRAX_FCPortStatistics::FramesTooShort, 0},
    {"Oper.UserPort.0.%s.C64.LongFramesIn", &VRAX_FCPortStatistics::FramesTooLong, 0},
    {"Oper.UserPort.0.%s.C64.FRejects", &VRAX_FCPortStatistics::FRJTFrames, 0},
    {"Oper.UserPort.0.%s.C64.BBCR_FrameFailures", &VRAX_FCPortStatistics::BufferCreditNotProvided, 0},
    {"Oper.UserPort.0.%s.C64.BBCR_RRDYFailures", &VRAX_FCPortStatistics::BufferCreditNotReceived, 0},
};

void fill(VRAX_FCPortStatistics& statistics, const Sml_Batch& batch)
{
    for (std::size_t i = 0; i < batch.size(); ++i)
    {
        // A counter that the port does not keep at present stays null.
        if (batch.status(i) == 0)
            (statistics.*kCounters[i].property).set(batch.hexadecimal(i) << kCounters[i].shift);
    }
}

} // namespace

void VRAX_FCPortStatistics_Provider::build(Map_Writer<VRAX_FCPortStatistics>& map)
{
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, kSource);
    const DataCache& cache = *DataCache::instance();
    const Wwn rootWwn = cache.getRootSwitchWwn();
    const Datetime loadTime = Datetime::now();
    Sml_Batch batch(kCounters);

    for (const std::string& port : Root_Ports(cache))
    {
        // The text speaks of settings; it is what operators know this failure by.
        if (!batch.read({port.c_str()}))
        {
            throw VRAX_Except(
                kSource, "load", __LINE__, CRIT, "Unable to get port settings, portIdx=%s", port.c_str());
        }
        Owned<VRAX_FCPortStatistics> instance = makeNull<VRAX_FCPortStatistics>();
        if (!instance)
        {
            throw VRAX_Except(
                kSource, "load", __LINE__, CRIT, "Unable to get port statistics, portIdx=%s", port.c_str());
        }
        const Wwn portWwn = cache.calcPortWwn(rootWwn, port);
        if (portWwn.empty())
            break;

        const std::string id = "VRAX:FCPortStatistics:" + rootWwn.toString() + ":" + portWwn.toString();
        instance->InstanceID.set(id.c_str());
        instance->ElementName.set("FC Port Statistics");
        instance->StatisticTime.set(loadTime);
        fill(*instance, batch);

        if (!checkInstanceKeys(instance.get()))
        {
            throw VRAX_Except(
                kSource,
                "load",
                __LINE__,
                CRIT,
                "VRAX_FCPortStatistics::One or more Key Properties are not Populated, PortIdx=%s",
                port.c_str());
        }
        if (!map.insert(instance))
        {
            throw VRAX_Except(kSource,
                              "load",
                              __LINE__,
                              CRIT,
                              "Failed to insert into VRAX_FCPortStatistics_map, PortIdx=%s, InstanceID=%s",
                              port.c_str(),
                              id.c_str());
        }
    }
}

} // namespace cimple
