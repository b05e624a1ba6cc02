// What the local ports are configured to be.
#include "switchProviders/VRAX_FCPortSettings_Provider.h"

#include "switchaccess/Sml_Writes.h"
#include "switchaccess/value_translation.h"

#include <algorithm>
#include <cstdlib>

namespace cimple
{

using Is = VRAX_FCPortSettings;

// By the port's index and the attribute that tells its hardware's speed.
const Attribute<Is> VRAX_FCPortSettings_Provider::kAttributes[9] = {
    {"Config.UserPort.0.%1$s.LinkSpeed", put<&Is::RequestedSpeed, smlSpeedToCIMSpeed>},
    {"Oper.UserPort.0.%1$s.%2$s"}, // stands in for a speed that the port finds out by itself
    {"Config.UserPort.0.%1$s.Type", put<&Is::RequestedType, smlTypeToCIMType>},
    {"Config.UserPort.0.%1$s.RSCNEnable",
     put<&Is::RequestedIOStreamGuardState, smlRSCNEnableToCIMIOStreamGuardState>},
    {"Config.UserPort.0.%1$s.AutoPerfTuning"},
    {"Config.UserPort.0.%1$s.MFSEnable"},
    {"Config.UserPort.0.%1$s.LCFEnable"},
    {"Config.UserPort.0.%1$s.VIEnable"},
    {"Config.UserPort.0.%1$s.ScanEnable", put<&Is::DeviceScanEnable, isTrue>},
};

namespace
{

// Places in the table above.
enum
{
    kCapability = 1,
    kAutoPerfTuning = 4,
    kMFSEnable,
    kLCFEnable,
    kVIEnable,
};

// RequestedPerformanceTuningMode and the four flags behind it. A flag that does not matter when it is read is
// still written.
enum Tuning_Mode : uint16
{
    kAutomatic = 1,
    kNormal,
    kMFS,
    kVI,
    kLCF,
    kLCFAndVI,
};

uint16 tuningMode(const Attribute_Reader<Is>& attributes)
{
    const auto has = [&](std::size_t flag) { return isTrue(attributes.text(flag)); };
    if (has(kAutoPerfTuning))
        return kAutomatic;
    if (has(kMFSEnable))
        return kMFS;
    if (has(kLCFEnable))
        return has(kVIEnable) ? kLCFAndVI : kLCF;
    return has(kVIEnable) ? kVI : kNormal;
}

const char* flag(bool value)
{
    return value ? "True" : "False";
}

// The changes of one request, each with the property that it is for.
class Port_Changes
{
  public:
    explicit Port_Changes(uint16 port) : _port(std::to_string(port)) {}

    void add(const char* property, const char* attribute, const char* value)
    {
        _writes.add("Config.UserPort.0.%s.%s.%s", {_port.c_str(), attribute, value});
        _properties.push_back(property);
    }

    bool send() { return _writes.send(xpl_smlBatchSet); }

    // The property that was refused, and how.
    std::string failure() const
    {
        const std::size_t entry = _writes.refused();
        return (entry < _properties.size() ? std::string(_properties[entry]) + ", " : std::string()) +
               _writes.failure();
    }

  private:
    const std::string _port;
    Sml_Writes _writes;
    std::vector<const char*> _properties;
};

// What the model carries, in the order in which the switch is to carry it out.
void collect(Port_Changes& changes, const Is& model, const Is& wanted)
{
    if (!model.RequestedSpeed.null)
    {
        cim_log(kLogInfo, "Changing RequestedSpeed\n");
        const bool automatic = !model.AutoSenseSpeed.null && wanted.AutoSenseSpeed.value;
        const String speed = automatic ? String("Auto") : cimSpeedToSMLSpeed(wanted.RequestedSpeed.value);
        changes.add("RequestedSpeed", "LinkSpeed", speed.c_str());
    }
    if (!model.RequestedType.null)
    {
        cim_log(kLogInfo, "Changing RequestedPort Type\n");
        changes.add("RequestedType", "Type", cimTypeToSMLType(wanted.RequestedType.value).c_str());
    }
    if (!model.RequestedIOStreamGuardState.null)
    {
        cim_log(kLogInfo, "Changing RequestedIOStreamGuardState \n");
        changes.add("RequestedIOStreamGuardState",
                    "RSCNEnable",
                    cimIOStreamGuardStateToSMLRSCNEnable(wanted.RequestedIOStreamGuardState.value).c_str());
    }
    const uint16 mode = wanted.RequestedPerformanceTuningMode.value;
    if (!model.RequestedPerformanceTuningMode.null && mode >= kAutomatic && mode <= kLCFAndVI)
    {
        const char* const property = "RequestedPerformanceTuningMode";
        changes.add(property, "AutoPerfTuning", flag(mode == kAutomatic));
        changes.add(property, "VIEnable", flag(mode == kVI || mode == kLCFAndVI));
        changes.add(property, "MFSEnable", flag(mode == kMFS));
        changes.add(property, "LCFEnable", flag(mode == kLCF || mode == kLCFAndVI));
    }
    if (!model.DeviceScanEnable.null)
    {
        cim_log(kLogInfo, "Changing DeviceScanEnable \n");
        changes.add("DeviceScanEnable", "ScanEnable", flag(wanted.DeviceScanEnable.value));
    }
}

constexpr std::size_t kWwnLength = 16;

} // namespace

void VRAX_FCPortSettings_Provider::fill(Is& settings, const Attribute_Reader<Is>& attributes, const Datetime&)
{
    const bool automatic = settings.RequestedSpeed.value == 0;
    settings.AutoSenseSpeed.set(automatic);
    if (automatic)
        settings.RequestedSpeed.set(smlSpeedToCIMSpeed(attributes.text(kCapability)));
    settings.RequestedPerformanceTuningMode.set(tuningMode(attributes));
}

bool VRAX_FCPortSettings_Provider::parseInstanceID(const String& id, String& switchWwn, String& portWwn)
{
    const std::size_t prefix = std::strlen(kIdPrefix);
    if (id.size() != prefix + kWwnLength + 1 + kWwnLength || std::strncmp(id.c_str(), kIdPrefix, prefix) != 0)
        return false;
    switchWwn.assign(id.c_str() + prefix, kWwnLength);
    portWwn.assign(id.c_str() + prefix + kWwnLength + 1, kWwnLength);
    return true;
}

Modify_Instance_Status VRAX_FCPortSettings_Provider::modify_instance(const Is* model, const Is* instance)
{
    static constexpr char kTargetMissing[] = "Target instance not found";
    const auto body = [&](Operation<Modify_Instance_Status>& op)
    {
        Write_Guard<Is> guard;
        if (load() != LOAD_OK)
            op.fail("Load failed for VRAX_FCPortSettings");
        // A request without a value is no wish.
        if (!model->DeviceScanEnable.null && instance->DeviceScanEnable.null)
            op.failWith(MODIFY_INSTANCE_INVALID_PARAMETER,
                        Failure_Text::unlogged("DeviceScanEnable is true or false"));
        if (guard.view().find(*instance) == nullptr)
            op.failWith(MODIFY_INSTANCE_NOT_FOUND, Failure_Text::unlogged(kTargetMissing));
        String switchWwn;
        String portWwn;
        if (!parseInstanceID(instance->InstanceID.value, switchWwn, portWwn))
            op.fail(kTargetMissing);
        const std::string index =
            DataCache::instance()->calcPortIndex(Wwn(switchWwn.c_str()), Wwn(portWwn.c_str()));
        if (index.empty())
            op.fail("Unable to calculate port index");

        Port_Changes changes(static_cast<uint16>(std::strtol(index.c_str(), nullptr, 10)));
        collect(changes, *model, *instance);
        if (!changes.send())
            op.failOn(changes.failure(), "Unable to set FCPortSetting data");
        guard.change(*model, *instance);
        return MODIFY_INSTANCE_OK;
    };
    return operation("modify_instance", MODIFY_INSTANCE_FAILED, body);
}

} // namespace cimple
