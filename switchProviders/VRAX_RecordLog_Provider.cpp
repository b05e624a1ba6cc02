// The user log and the alarm log of the local switch.
#include "switchProviders/VRAX_RecordLog_Provider.h"

#include "switchaccess/Admin_Mode.h"
#include "switchaccess/Attribute.h"
#include "switchaccess/local_switch.h"
#include "switchaccess/log_entries.h"

#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace cimple
{

namespace
{

typedef VRAX_RecordLog_Provider Provider;
typedef Operation<uint32> Method;

constexpr Attribute<VRAX_RecordLog> kAttributes[] = {
    {"Oper.Switch.LogEnabled"},
    {"Oper.Switch.MaxLogEntries"},
    {"Oper.Switch.NumLogEntries"},
    {"Oper.Switch.MaxAlarmEntries"},
    {"Oper.Switch.NumAlarmEntries"},
};
constexpr std::size_t kLogEnabled = entryOf(kAttributes, ".LogEnabled");

struct Log_Kind
{
    const char* word;
    std::size_t limit;
    std::size_t size;
    bool canStop;
};
constexpr Log_Kind kLogs[] = {
    {"User", entryOf(kAttributes, ".MaxLogEntries"), entryOf(kAttributes, ".NumLogEntries"), true},
    {"Alarm", entryOf(kAttributes, ".MaxAlarmEntries"), entryOf(kAttributes, ".NumAlarmEntries"), false},
};

// Values of CIM_EnabledLogicalElement and CIM_Log.
constexpr uint16 kEnabled = 2;
constexpr uint16 kEnabledButOffline = 6;
constexpr uint16 kNoChange = 5; // RequestedState
constexpr uint16 kOk = 2;       // OperationalStatus
constexpr uint16 kHealthy = 5;
constexpr uint16 kNormal = 2; // LogState
constexpr uint16 kWraps = 2;  // OverwritePolicy

// What the methods return.
enum Code : uint32
{
    kDone = 0,
    kFailed = 3,
    kInvalid = 5,
};

[[noreturn]] void end(Method& op, Code code, const char* logged)
{
    op.failWith(code, Failure_Text::plain(logged));
}

// Sends the commands up to the first that is refused.
uint32 send(std::initializer_list<const char*> commands)
{
    for (const char* command : commands)
    {
        const int status = writeAttribute(command);
        if (status != 0)
        {
            cim_log(kLogInfo, "xpl_smlSetV failed with error %d\n", status);
            return kFailed;
        }
    }
    return kDone;
}

// Runs commands(op, name of the log) in the administrative mode; what they return is the method's value.
template <class COMMANDS>
Invoke_Method_Status perform(const char* method,
                             const VRAX_RecordLog* self,
                             Property<uint32>& returnValue,
                             COMMANDS commands,
                             int line = __builtin_LINE())
{
    trace(Provider::kSource, method, line);
    const Write_Guard<VRAX_RecordLog> guard;
    const auto body = [&](Method& op) -> uint32
    {
        if (Provider().load() != LOAD_OK)
            end(op, kFailed, "Failed to load VRAX_RecordLog");
        const VRAX_RecordLog* log = guard.view().findReferred(self);
        if (log == nullptr)
            end(op, kInvalid, "Invalid self VRAX_RecordLog reference parameter\n");
        const auto name = getLogNameFromInstanceID(log->InstanceID.value.c_str());
        if (!name)
            end(op, kInvalid, "Invalid logID (user/alarm)");
        Admin_Mode mode;
        if (mode.entered() != 0)
        {
            cim_log(kLogInfo, "xpl_smlSetV failed with error %d\n", mode.entered());
            return kFailed;
        }
        const uint32 result = commands(*name);
        // What the logs hold, and whether they are on, is another thing now.
        VRAX_Maps::getInstance()->InstMapForceUnload(Map_Index<VRAX_RecordLog>::value);
        VRAX_Maps::getInstance()->InstMapForceUnload(Map_Index<VRAX_LogEntry>::value);
        const int left = mode.leave();
        if (left == 0)
            return result;
        cim_log(kLogInfo, "xpl_smlSetV failed with error %d\n", left);
        return kFailed;
    };
    returnValue.set(Method(Provider::kSource, method, kFailed).run(body));
    return INVOKE_METHOD_OK;
}

} // namespace

void VRAX_RecordLog_Provider::build(Map_Writer<VRAX_RecordLog>& map)
{
    const Local_Switch_Wwn localWwn({kSource, "load"});
    Attribute_Reader<VRAX_RecordLog> attributes(kAttributes);
    if (!attributes.read({}))
        fail(kReadFailed);
    const auto number = [&](std::size_t entry) { return std::strtoull(attributes.text(entry), nullptr, 10); };
    for (const Log_Kind& kind : kLogs)
    {
        Owned<VRAX_RecordLog> log = make();
        const std::string name = std::string(kind.word) + " Log";
        log->InstanceID.set((std::string("VRAX:RecordLog:") + localWwn.text() + ":" + kind.word).c_str());
        log->ElementName.set(name.c_str());
        log->Name.set(name.c_str());
        const bool stopped = kind.canStop && std::strcmp(attributes.text(kLogEnabled), "True") != 0;
        log->EnabledState.set(stopped ? kEnabledButOffline : kEnabled);
        log->RequestedState.set(kNoChange);
        log->EnabledDefault.set(kEnabled);
        log->OperationalStatus.set(Array_uint16::make(kOk));
        log->HealthState.set(kHealthy);
        log->LogState.set(kNormal);
        log->OverwritePolicy.set(kWraps);
        log->MaxNumberOfRecords.set(number(kind.limit));
        log->CurrentNumberOfRecords.set(number(kind.size));
        add(map, log);
    }
}

Invoke_Method_Status VRAX_RecordLog_Provider::ClearLog(const VRAX_RecordLog* self,
                                                       Property<uint32>& return_value)
{
    const auto commands = [](const std::string& log)
    {
        if (strcasecmp(log.c_str(), "User") == 0)
            return send({"Cmd.Switch.ClearSysLog"});
        if (strcasecmp(log.c_str(), "Alarm") == 0)
            return send({"Cmd.Switch.ClearAlarmLog"});
        return uint32{kDone};
    };
    return perform(__func__, self, return_value, commands);
}

Invoke_Method_Status VRAX_RecordLog_Provider::RequestStateChange(const VRAX_RecordLog* self,
                                                                 const Property<uint16>& RequestedState,
                                                                 CIM_ConcreteJob*&,
                                                                 const Property<Datetime>&,
                                                                 Property<uint32>& return_value)
{
    const uint16 state = RequestedState.null ? uint16{0} : RequestedState.value;
    const auto commands = [state](const std::string&)
    {
        if (state == kEnabled)
            return send(
                {"Cmd.Switch.SysLogComp.All", "Cmd.Switch.SysLogLevel.Warn", "Cmd.Switch.StartSysLog"});
        if (state == kEnabledButOffline)
            return send({"Cmd.Switch.StopSysLog"});
        cim_log(kLogInfo, "Invalid RequestedState \n");
        return uint32{kInvalid};
    };
    return perform(__func__, self, return_value, commands);
}

} // namespace cimple
