// Keys of the switch's logs, and the commands on them.
#include "platform/xpl_fzs.h"
#include "simulator/keys/attribute_keys.h"
#include "simulator/model/hex.h"

namespace simulator
{
namespace
{

std::int32_t tellEntry(const std::string* entry, Answer& answer)
{
    return entry != nullptr ? answer.text(*entry) : std::int32_t{XPL_FZS_NO_MORE};
}

void addLog(ReadKeys& keys, LogKind kind, const std::string& name)
{
    const auto last = [kind](const FabricModel& model, const KeyArguments&, std::uint64_t, Answer& answer)
    { return tellEntry(model.logs()[kind].last(), answer); };
    // The newest entry is told whatever number is asked for.
    keys.add("Oper.Switch.Last" + name + "Entry", last);
    keys.add("Oper.Switch.Last" + name + "Entry.%*", last);
    keys.add("Oper.Switch.Next" + name + "Entry.%d",
             [kind](const FabricModel& model, const KeyArguments& arguments, std::uint64_t, Answer& answer)
             {
                 int number = 0;
                 return parseDecimal(arguments[0], number)
                            ? tellEntry(model.logs()[kind].after(number), answer)
                            : std::int32_t{XPL_UNKNOWN_KEY};
             });
    keys.add("Oper.Switch.Max" + name + "Entries",
             [kind](const FabricModel& model, const KeyArguments&, std::uint64_t, Answer& answer)
             { return answer.decimal(model.logs()[kind].capacity()); });
    keys.add("Oper.Switch.Num" + name + "Entries",
             [kind](const FabricModel& model, const KeyArguments&, std::uint64_t, Answer& answer)
             { return answer.decimal(model.logs()[kind].size()); });
}

// A command on the logs.
template <class Command> // void(SwitchLogs& logs)
WriteHandler onLogs(Command command)
{
    return inAdminMode(
        [command](FabricModel& model, const KeyArguments&, std::uint64_t)
        {
            command(model.logs());
            return std::int32_t{XPL_OK};
        });
}

} // namespace

void addLogKeys(ReadKeys& reads, WriteKeys& writes)
{
    addLog(reads, LogKind::user, "Log");
    addLog(reads, LogKind::alarm, "Alarm");
    reads.add("Oper.Switch.LogEnabled",
              [](const FabricModel& model, const KeyArguments&, std::uint64_t, Answer& answer)
              { return answer.flag(model.logs().enabled()); });

    writes.add("Cmd.Switch.ClearSysLog", onLogs([](SwitchLogs& logs) { logs[LogKind::user].clear(); }));
    writes.add("Cmd.Switch.ClearAlarmLog", onLogs([](SwitchLogs& logs) { logs[LogKind::alarm].clear(); }));
    // This switch writes of every component, and knows no entry below a warning.
    writes.add("Cmd.Switch.SysLogComp.All", onLogs([](SwitchLogs&) {}));
    writes.add("Cmd.Switch.SysLogLevel.Warn", onLogs([](SwitchLogs&) {}));
    writes.add("Cmd.Switch.StartSysLog", onLogs([](SwitchLogs& logs) { logs.enable(true); }));
    writes.add("Cmd.Switch.StopSysLog", onLogs([](SwitchLogs& logs) { logs.enable(false); }));
}

} // namespace simulator
