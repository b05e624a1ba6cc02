// How a switch in transparent mode forwards its ports.
#include "switchProviders/VRAX_PassThroughMapEntry_Provider.h"

#include "common/topology_keys.h"
#include "switchaccess/Admin_Mode.h"
#include "switchaccess/CacheLock.h"
#include "switchaccess/Sml_Writes.h"
#include "switchaccess/tf_port_list.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace cimple
{

namespace
{

typedef VRAX_PassThroughMapEntry Entry;
typedef VRAX_PassThroughMapEntry_Provider Provider;

// One of the two lists of a TH port.
struct TF_List
{
    bool isPrimary;
    const char* read;
    const char* write; // with the port and the new text
    const char* word;
    const char* logged;
};
constexpr TF_List kPrimaryList = {true,
                                  "Config.UserPort.0.%d.PrimaryTFPortMap",
                                  "Config.UserPort.0.%d.PrimaryTFPortMap.%s",
                                  "primary",
                                  "*primaryTFPortMap"};
constexpr TF_List kBackupList = {false,
                                 "Config.UserPort.0.%d.BackupTFPortMap",
                                 "Config.UserPort.0.%d.BackupTFPortMap.%s",
                                 "backup",
                                 "backupTFPortMap"};

constexpr const char* kHostPort = "TH";
constexpr const char* kFabricPort = "TF";

// What the switch is configured to do with a port. Each throws in the name of `function` when it cannot be
// read.
class Port_Config
{
  public:
    Port_Config(const char* function, int port) : _function(function), _port(std::to_string(port)) {}

    bool hasType(const char* type, int line = __builtin_LINE())
    {
        read("Config.UserPort.0.%d.Type", line);
        cim_log(kLogInfo, "portType =%s\n", _value);
        return std::strcmp(_value, type) == 0;
    }
    // The text lasts until the next call.
    const char* list(const TF_List& which, int line = __builtin_LINE())
    {
        read(which.read, line);
        cim_log(kLogInfo, "%s=%s\n", which.logged, _value);
        return _value;
    }

  private:
    void read(const char* key, int line)
    {
        if (readAttribute(_value, key, {_port.c_str()}) != 0)
            throw VRAX_Except(Provider::kSource, _function, line, Provider::kReadFailed);
    }

    const char* _function;
    std::string _port;
    char _value[kXplSmlTextSize] = "";
};

bool contains(const std::vector<int>& ports, int port)
{
    return std::find(ports.begin(), ports.end(), port) != ports.end();
}

} // namespace

void VRAX_PassThroughMapEntry_Provider::build(Pairs& pairs)
{
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, kSource);
    if (!DataCache::instance()->isTransparentSwitch())
        return;
    std::unordered_map<int, const VRAX_FCPort*> localPorts;
    for (const VRAX_FCPort* port : pairs.all<VRAX_FCPort>())
        if (isLocal(*port))
            localPorts.emplace(port->PortNumber.value, port);

    for (const VRAX_FCPort* host : pairs.all<VRAX_FCPort>())
    {
        if (!isLocal(*host))
            continue;
        Port_Config config("load", host->PortNumber.value);
        if (!config.hasType(kHostPort))
            continue;
        for (const TF_List* list : {&kPrimaryList, &kBackupList})
        {
            const char* const text = config.list(*list);
            if (isNoTFPort(text))
                continue;
            for (const int number : getTFPortList(text))
            {
                // A port that could not be read is not published, and nothing can refer to it.
                const auto fabricPort = localPorts.find(number);
                if (fabricPort == localPorts.end())
                    continue;
                Owned<Entry> entry = pairs.make(*host, *fabricPort->second);
                entry->PrimaryMapping.set(list->isPrimary);
                pairs.add(entry);
            }
        }
    }
}

namespace
{

// Gives the port the list and puts it in force, or leaves the switch as it was. When only the way out fails
// the list is in force.
void configure(const char* function, int port, const TF_List& list, const std::string& text)
{
    Admin_Mode::giveBackLeftBehind();
    Sml_Transaction change(Provider::kSource, function);
    change.write("Cmd.Switch.ReqAdmin", {}, "xpl_smlSetV failed: Unable to Request Admin Lock");
    change.undoBy("Cmd.Switch.RelAdmin",
                  "xpl_smlSetV failed: Failed to release Admin Lock",
                  Admin_Mode::noteLeftBehind);
    change.write("Cmd.Switch.EditConfig.sum", {}, "xpl_smlSetV failed: Unable to set Config Edit mode");
    change.undoBy("Cmd.Switch.CancelConfig", "xpl_smlSetV failed: Failed to Config Cancel");
    change.write(list.write, {std::to_string(port).c_str(), text.c_str()}, "xpl_smlSetV Failed\n");
    change.write("Cmd.Switch.SaveConfig.sum", {}, "xpl_smlSetV failed");
    change.write("Cmd.Switch.ActConfig", {}, "xpl_smlSetV failed");
    change.write("Cmd.Switch.RelAdmin", {}, "xpl_smlSetV failed");
    change.finish();
}

// A request to change an entry: from construction on it has passed the checks that creating and deleting
// share, and holds the locks.
template <class STATUS>
class Entry_Change
{
  public:
    // `noCacheLock`: the result when the data cache cannot be locked.
    Entry_Change(Operation<STATUS>& op, const char* function, const Entry* entry, STATUS noCacheLock)
        : _op(op), _function(function)
    {
        if (!_cacheLock.obtained())
            op.failWith(noCacheLock, "Unable to obtaion datacache rdlock");
        if (!DataCache::instance()->isTransparentSwitch())
            op.fail(Failure_Text::plain("Not a transparent switch\n"));
        const bool isPrimary = !entry->PrimaryMapping.null && entry->PrimaryMapping.value;
        cim_log(kLogInfo, "instance->PrimaryMapping = %d\n", isPrimary ? 1 : 0);
        cim_log(kLogInfo, "Antecedent = %p\n", static_cast<const void*>(entry->Antecedent));
        cim_log(kLogInfo, "Dependent = %p\n", static_cast<const void*>(entry->Dependent));
        if (VRAX_FCPort_Provider().load() != LOAD_OK)
            op.fail("Failed to load VRAX_FCPort_Provider\n");
        _host = find(entry->Antecedent, "Antecedent not passed in correctly\n");
        _fabricPort = find(entry->Dependent, "Dependent not passed in correctly\n");
        cim_log(kLogInfo, "ant_portNumber = %d\n", host());
        cim_log(kLogInfo, "dep_portNumber = %d\n", fabricPort());

        Port_Config config(function, host());
        if (!config.hasType(kHostPort))
            op.fail("Antecedent port type not TH");
        if (!Port_Config(function, fabricPort()).hasType(kFabricPort))
            op.fail("Dependent port type not TF");
        _list = isPrimary ? &kPrimaryList : &kBackupList;
        _text = config.list(*_list);
    }

    int fabricPort() const { return _fabricPort->PortNumber.value; }
    const TF_List& list() const { return *_list; }
    // What the list is before the change.
    const std::string& text() const { return _text; }
    bool isEmpty() const { return isNoTFPort(_text.c_str()); }

    // Makes the instance that stands for the entry in the map.
    void describe(Entry& entry) const
    {
        entry.Antecedent = _host->clone();
        entry.Dependent = _fabricPort->clone();
        entry.PrimaryMapping.set(_list->isPrimary);
    }

    void configure(const std::string& newText) const
    {
        cimple::configure(_function, host(), *_list, newText);
    }

    Write_Guard<Entry>& entries() { return _entries; }

  private:
    int host() const { return _host->PortNumber.value; }

    const VRAX_FCPort* find(const VRAX_FCPort* reference, const char* notFound, int line = __builtin_LINE())
    {
        const VRAX_FCPort* found = _ports.view().findReferred(reference);
        if (found == nullptr || !isLocal(*found))
            _op.fail(notFound, {}, line);
        return found;
    }

    Operation<STATUS>& _op;
    const char* _function;
    Write_Guard<Entry> _entries;
    Write_Guard<VRAX_FCPort> _ports;
    CacheLock _cacheLock;
    const VRAX_FCPort* _host = nullptr;
    const VRAX_FCPort* _fabricPort = nullptr;
    const TF_List* _list = nullptr;
    std::string _text;
};

constexpr Failure_Text kNoInstance = Failure_Text::plain("Received invalid instance\n");

// What the map holds may be another thing than the switch has.
void makeStale()
{
    VRAX_Maps::getInstance()->InstMapForceUnload(Provider::kIndex);
}

} // namespace

Create_Instance_Status VRAX_PassThroughMapEntry_Provider::create_instance(VRAX_PassThroughMapEntry* instance)
{
    const char* const function = __func__;
    const auto body = [&](Operation<Create_Instance_Status>& op)
    {
        if (instance == nullptr)
            op.fail(kNoInstance);
        Entry_Change<Create_Instance_Status> change(op, function, instance, CREATE_INSTANCE_FAILED);
        const std::string port = std::to_string(change.fabricPort());
        if (!change.isEmpty() && contains(getTFPortList(change.text().c_str()), change.fabricPort()))
            op.fail("Already contains the %s TF mapping", {change.list().word});
        Owned<Entry> created = makeFor(op);
        change.describe(*created);
        change.configure(change.isEmpty() ? port : change.text() + "," + port);
        // The client is told all keys of what it has created.
        instance->PrimaryMapping.set(change.list().isPrimary);
        change.entries().insert(created);
        return CREATE_INSTANCE_OK;
    };
    return operation(function, CREATE_INSTANCE_UNSUPPORTED, body, makeStale);
}

Delete_Instance_Status
VRAX_PassThroughMapEntry_Provider::delete_instance(const VRAX_PassThroughMapEntry* instance)
{
    const char* const function = __func__;
    const auto body = [&](Operation<Delete_Instance_Status>& op)
    {
        if (instance == nullptr)
            op.fail(kNoInstance);
        Entry_Change<Delete_Instance_Status> change(op, function, instance, DELETE_INSTANCE_FAILED);
        if (change.isEmpty())
            op.fail("No %s TF PortMap defined for this port", {change.list().word});
        const std::vector<int> ports = getTFPortList(change.text().c_str());
        if (!contains(ports, change.fabricPort()))
            op.fail("Failed to find TF port in %s", {change.list().logged});
        Owned<Entry> deleted = makeFor(op);
        change.describe(*deleted);
        change.configure(deleteFromTFPortList(ports, change.fabricPort()));
        change.entries().remove(*deleted);
        return DELETE_INSTANCE_OK;
    };
    return operation(function, DELETE_INSTANCE_UNSUPPORTED, body, makeStale);
}

} // namespace cimple
