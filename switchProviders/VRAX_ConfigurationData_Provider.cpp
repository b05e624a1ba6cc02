// The configuration of the local switch as an image.
#include "switchProviders/VRAX_ConfigurationData_Provider.h"

#include "platform/configuration.h"
#include "switchaccess/Switch_File.h"
#include "switchaccess/local_switch.h"
#include "switchaccess/time_translation.h"

#include <algorithm>
#include <cstdio>
#include <mutex>

namespace cimple
{

namespace
{

typedef VRAX_ConfigurationData_Provider Provider;

constexpr char kIdPrefix[] = "VRAX:ConfigurationData:";
constexpr std::size_t kWwnAt = sizeof(kIdPrefix) - 1;
constexpr std::size_t kWwnLength = 16;
constexpr std::size_t kTypeAt = kWwnAt + kWwnLength + 1;
constexpr std::size_t kShortestId = kTypeAt + 3;

constexpr const char* kDefault = "DEFAULT";
constexpr const char* kNew = "NEW";

// Values of TypeOfConfiguration, and what ApplyConfiguration returns (CIM_ConfigurationData).
constexpr uint16 kRunningConfiguration = 2;
constexpr uint16 kInitialConfiguration = 3;
constexpr uint16 kPossibleConfiguration = 4;
constexpr uint32 kInvalidParameter = 5;
constexpr uint32 kValidateOnlyNotSupported = 16000;
constexpr uint32 kTypeNotSupported = 16002;

constexpr Failure_Text kNoLocalWwn = "Unable to fetch localWWN";

// Held while the files are worked with: a backup between an upload's move into place and its restoration
// would put the present configuration in its stead.
std::mutex imageFiles;

// Gives the administrative mode back at the end of the scope. The switch refuses when it is not ours.
struct Admin_Mode_Release
{
    Admin_Mode_Release() = default;
    ~Admin_Mode_Release() { releaseAdminMode(); }
    Admin_Mode_Release(const Admin_Mode_Release&) = delete;
    Admin_Mode_Release& operator=(const Admin_Mode_Release&) = delete;
};

std::string idOf(const char* wwn, const char* fileType)
{
    return std::string(kIdPrefix) + wwn + ":" + fileType;
}

// What the module has published of the switch may not be so any more.
void makeAllStale()
{
    for (std::size_t map = 0; map < kMapCount; ++map)
        VRAX_Maps::getInstance()->InstMapForceUnload(static_cast<providerEnum_t>(map));
}

void makeAssociationStale()
{
    VRAX_Maps::getInstance()->InstMapForceUnload(VRAX_FCSwitchConfigurationData_Idx);
}

// Writes the image that waits: the client's up to its first zero byte.
void upload(Operation<Create_Instance_Status>& op, const Array_uint8& image)
{
    const uint8* const begin = image.data();
    const uint8* const end = std::find(begin, begin + image.size(), 0);
    switch (Switch_File(kNewConfigImage).write(begin, static_cast<std::size_t>(end - begin)))
    {
    case Switch_File::Written::Done:
        return;
    case Switch_File::Written::NotOpened:
        op.fail("Failed opening config file %s", {kNewConfigImage});
    case Switch_File::Written::NotWritten:
        op.fail("Failed writing to %s", {kNewConfigImage});
    }
}

// Makes the uploaded image the switch's configuration.
void applyNew(Operation<Invoke_Method_Status>& op)
{
    const std::lock_guard<std::mutex> guard(imageFiles);
    const Switch_File present(kConfigImage);
    if (!present.remove())
        op.fail("Unable to remove %s", {kConfigImage});
    if (!Switch_File(kNewConfigImage).moveTo(present))
        op.fail("Failed to create %s from %s", {kConfigImage, kNewConfigImage});
    makeAssociationStale();
    reqAdminMode(); // without it the switch refuses to restore
    if (restoreConfig() != 0)
        op.fail("restoreConfig failed");
    makeAllStale();
}

} // namespace

bool VRAX_ConfigurationData_Provider::parseInstanceID(const String& instanceId,
                                                      std::string& wwn,
                                                      std::string& fileType)
{
    cim_log(kLogInfo, "InstanceID = %s\n", instanceId.c_str());
    const std::string id = instanceId.c_str();
    if (id.size() < kShortestId)
        return false;
    wwn = id.substr(kWwnAt, kWwnLength);
    fileType = id.substr(kTypeAt);
    return fileType == kNew || fileType == kDefault;
}

Owned<VRAX_ConfigurationData>
VRAX_ConfigurationData_Provider::formatConfigurationDataInstance(const char* fileType)
{
    const std::lock_guard<std::mutex> guard(imageFiles);
    return format(fileType);
}

Owned<VRAX_ConfigurationData> VRAX_ConfigurationData_Provider::formatNewInstance()
{
    const std::lock_guard<std::mutex> guard(imageFiles);
    return Switch_File(kNewConfigImage).isMissing() ? Owned<VRAX_ConfigurationData>() : format(kNew);
}

Owned<VRAX_ConfigurationData> VRAX_ConfigurationData_Provider::format(const char* fileType)
{
    const Caller caller{kSource, "formatConfigurationDataInstance"};
    const auto failed = [&caller](const Failure_Text& what, int line = __builtin_LINE())
    { throw VRAX_Except(caller.source, caller.function, line, what); };

    const Local_Switch_Wwn localWwn(caller, kNoLocalWwn);
    const char* path = nullptr;
    if (std::strcmp(fileType, kDefault) == 0)
    {
        if (backupConfig() != 0)
            failed("Unable to get default configuration");
        path = kConfigImage;
    }
    else if (std::strcmp(fileType, kNew) == 0)
        path = kNewConfigImage;
    else
        failed("Unexpected config file type");

    const Switch_File file(path);
    Switch_File::Facts facts;
    if (!file.stat(facts))
        failed("Unable to stat configuration file");
    cim_log(kLogInfo, "Config file size = %ld\n", static_cast<long>(facts.size));
    Owned<VRAX_ConfigurationData> instance = makeNull<VRAX_ConfigurationData>();
    if (!instance)
        failed(kCreationFailed);

    Property<Array_uint8>& information = instance->ConfigurationInformation;
    information.null = 0;
    information.value.reserve(static_cast<std::size_t>(facts.size) + 1);
    if (!file.read(information.value))
        failed("Error preparing backup data");
    cim_log(kLogInfo, "Total config data written = %d\n", static_cast<int>(information.value.size()));
    information.value.append(uint8{0});

    const String modified = localWallClock(facts.modified);
    Datetime timestamp;
    if (timestamp.set(modified.c_str()))
    {
        cim_log(kLogInfo, "formatted timestamp %s\n", modified.c_str());
        instance->ConfigurationTimestamp.set(timestamp);
    }
    else
        logCritical(caller.source,
                    caller.function,
                    ("Unable to set " + std::string(modified.c_str())).c_str(),
                    __LINE__);

    const std::string id = idOf(localWwn.text(), fileType);
    cim_log(kLogInfo, "constructing instancid = %s\n", id.c_str());
    instance->InstanceID.set(id.c_str());
    instance->ElementName.set("Switch Configuration Image");
    if (!checkInstanceKeys(instance.get()))
        failed(kKeysMissing);
    return instance;
}

Enum_Instances_Status
VRAX_ConfigurationData_Provider::enum_instances(const VRAX_ConfigurationData*,
                                                Enum_Instances_Handler<VRAX_ConfigurationData>* handler)
{
    const auto body = [handler](Operation<Enum_Instances_Status>& op)
    {
        const auto hand = [&](auto make, const Failure_Text& failed, int line = __builtin_LINE())
        {
            Owned<VRAX_ConfigurationData> instance;
            try
            {
                instance = make();
            }
            catch (const VRAX_Except& reason)
            {
                reason.print();
                op.failOn(reason.message, failed, line);
            }
            if (instance)
                handler->handle(instance.release());
        };
        hand([] { return formatConfigurationDataInstance(kDefault); },
             "Unable to create DEFAULT configuration");
        hand([] { return formatNewInstance(); }, "Unable to create NEW configuration");
        return ENUM_INSTANCES_OK;
    };
    return operation(__func__, ENUM_INSTANCES_FAILED, body);
}

Get_Instance_Status VRAX_ConfigurationData_Provider::get_instance(const VRAX_ConfigurationData* model,
                                                                  VRAX_ConfigurationData*& instance)
{
    const auto body = [&](Operation<Get_Instance_Status>& op)
    {
        std::string wwn;
        std::string fileType;
        if (!checkInstanceKeys(model))
            op.fail("Candidate instance is missing keys");
        if (!parseInstanceID(model->InstanceID.value, wwn, fileType))
            op.failWith(GET_INSTANCE_NOT_FOUND, "Unable to parse InstanceID");
        Owned<VRAX_ConfigurationData> found =
            fileType == kNew ? formatNewInstance() : formatConfigurationDataInstance(fileType.c_str());
        if (!found)
            op.failWith(GET_INSTANCE_NOT_FOUND, "Unable to stat configuration file");
        if (!key_eq(model, found.get()))
            op.failWith(GET_INSTANCE_NOT_FOUND, "Created instance does not match expected key");
        instance = found.release();
        return GET_INSTANCE_OK;
    };
    return operation(__func__, GET_INSTANCE_FAILED, body);
}

Create_Instance_Status VRAX_ConfigurationData_Provider::create_instance(VRAX_ConfigurationData* instance)
{
    const auto body = [instance](Operation<Create_Instance_Status>& op)
    {
        std::string wwn;
        std::string fileType;
        const bool parsed = instance != nullptr && parseInstanceID(instance->InstanceID.value, wwn, fileType);
        if (!parsed || fileType != kNew || instance->ConfigurationInformation.null)
            op.fail("Invalid instance Passed");
        std::printf("wwn = %s\nfileType = %s\n", wwn.c_str(), fileType.c_str());
        const std::lock_guard<std::mutex> guard(imageFiles);
        Switch_File::Facts waiting;
        if (Switch_File(kNewConfigImage).stat(waiting))
            op.failWith(CREATE_INSTANCE_DUPLICATE, "Duplicate instance passed");
        upload(op, instance->ConfigurationInformation.value);
        makeAssociationStale();
        return CREATE_INSTANCE_OK;
    };
    return operation(__func__, CREATE_INSTANCE_FAILED, body);
}

Invoke_Method_Status
VRAX_ConfigurationData_Provider::ApplyConfiguration(const VRAX_ConfigurationData* self,
                                                    const Property<boolean>& ValidateOnly,
                                                    const Property<uint16>& TypeOfConfiguration,
                                                    const CIM_ManagedElement*,
                                                    Property<uint32>& return_value)
{
    const auto body = [&](Operation<Invoke_Method_Status>& op)
    {
        const Admin_Mode_Release release;
        if (!ValidateOnly.null && ValidateOnly.value)
        {
            return_value.set(kValidateOnlyNotSupported);
            op.fail("Invalid input parameter : ValidateOnly");
        }
        const uint16 type = TypeOfConfiguration.null ? uint16{0} : TypeOfConfiguration.value;
        if (type != kRunningConfiguration)
        {
            const bool known = type == kInitialConfiguration || type == kPossibleConfiguration;
            return_value.set(known ? kTypeNotSupported : kInvalidParameter);
            op.fail("Invalid input parameter : TypeOfConfiguration");
        }
        const Local_Switch_Wwn localWwn({kSource, "ApplyConfiguration"}, kNoLocalWwn);
        std::string wwn;
        std::string fileType;
        const bool parsed = self != nullptr && parseInstanceID(self->InstanceID.value, wwn, fileType);
        if (!parsed || wwn != localWwn.text())
            op.fail("Bad InstanceID");
        if (fileType == kNew)
            applyNew(op);
        return_value.set(0);
        return INVOKE_METHOD_OK;
    };
    return operation(__func__, INVOKE_METHOD_FAILED, body);
}

} // namespace cimple
