// Error and traffic counters of the local ports.
#include "switchProviders/VRAX_FCPortStatistics_Provider.h"

namespace cimple
{

namespace
{

// The switch counts transmission words of 4 bytes where CIM wants bytes.
std::uint64_t bytes(const char* words)
{
    return hexadecimal(words) << 2;
}

// A counter that the port does not keep at present stays null.
template <auto PROPERTY, auto CONVERT = hexadecimal>
constexpr Attribute<VRAX_FCPortStatistics> counter(const char* key)
{
    return {key, put<PROPERTY, CONVERT>, kStaysNull};
}

using Is = VRAX_FCPortStatistics;

} // namespace

constexpr Attribute<VRAX_FCPortStatistics> VRAX_FCPortStatistics_Provider::kAttributes[23] = {
    counter<&Is::LIPCount>("Oper.UserPort.0.%s.C64.TotalLIPRecv"),
    counter<&Is::LinkResetsReceived>("Oper.UserPort.0.%s.C64.RxLinkResets"),
    counter<&Is::LinkResetsTransmitted>("Oper.UserPort.0.%s.C64.TxLinkResets"),
    counter<&Is::PrimitiveSeqProtocolErrCount>("Oper.UserPort.0.%s.C64.PrimSeqErrors"),
    counter<&Is::AddressErrors>("Oper.UserPort.0.%s.C64.InvDestAddr"),
    counter<&Is::RXClass3Frames>("Oper.UserPort.0.%s.C64.Class3FramesIn"),
    counter<&Is::TXClass3Frames>("Oper.UserPort.0.%s.C64.Class3FramesOut"),
    counter<&Is::RXClass2Frames>("Oper.UserPort.0.%s.C64.Class2FramesIn"),
    counter<&Is::TXClass2Frames>("Oper.UserPort.0.%s.C64.Class2FramesOut"),
    counter<&Is::InvalidTransmissionWords>("Oper.UserPort.0.%s.C64.DecodeErrors"),
    counter<&Is::LinkFailures>("Oper.UserPort.0.%s.C64.LinkFailures"),
    counter<&Is::LossOfSyncCounter>("Oper.UserPort.0.%s.C64.LossOfSyncs"),
    counter<&Is::CRCErrors>("Oper.UserPort.0.%s.C64.InvalidCRCs"),
    counter<&Is::BytesReceived, bytes>("Oper.UserPort.0.%s.C64.TotalRxWords"),
    counter<&Is::BytesTransmitted, bytes>("Oper.UserPort.0.%s.C64.TotalTxWords"),
    counter<&Is::PacketsReceived>("Oper.UserPort.0.%s.C64.TotalRxFrames"),
    counter<&Is::PacketsTransmitted>("Oper.UserPort.0.%s.C64.TotalTxFrames"),
    counter<&Is::FBSYFrames>("Oper.UserPort.0.%s.C64.FBusys"),
    counter<&Is::FramesTooShort>("Oper.UserPort.0.%s.C64.ShortFramesIn"),
    counter<&Is::FramesTooLong>("Oper.UserPort.0.%s.C64.LongFramesIn"),
    counter<&Is::FRJTFrames>("Oper.UserPort.0.%s.C64.FRejects"),
    counter<&Is::BufferCreditNotProvided>("Oper.UserPort.0.%s.C64.BBCR_FrameFailures"),
    counter<&Is::BufferCreditNotReceived>("Oper.UserPort.0.%s.C64.BBCR_RRDYFailures"),
};

} // namespace cimple
