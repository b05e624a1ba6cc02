// Keys of the switch's logs, and the commands that need its administrative mode.
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

// A command of whoever took the administrative mode by a command.
template <class Command> // void(FabricModel& model)
WriteHandler inAdminMode(Command command)
{
    return [command](FabricModel& model, const KeyArguments&, std::uint64_t)
    {
        const std::string& holder = model.adminMode().holder();
        if (holder != kAdminCommand)
            return holder.empty() ? std::int32_t{XPL_INVALID_PARAMETER} : std::int32_t{XPL_FZS_LOCKED};
        command(model);
        return std::int32_t{XPL_OK};
    };
}

} // namespace

void addLogKeys(ReadKeys& reads, WriteKeys& writes)
{
    addLog(reads, LogKind::user, "Log");
    addLog(reads, LogKind::alarm, "Alarm");
    reads.add("Oper.Switch.LogEnabled",
              [](const FabricModel& model, const KeyArguments&, std::uint64_t, Answer& answer)
              { return answer.flag(model.logs().enabled()); });

    writes.add("Cmd.Switch.ReqAdmin",
               [](FabricModel& model, const KeyArguments&, std::uint64_t)
               {
                   const bool taken = model.takeAdminMode(kAdminCommand);
                   return taken ? std::int32_t{XPL_OK} : std::int32_t{XPL_FZS_LOCKED};
               });
    writes.add("Cmd.Switch.RelAdmin", inAdminMode([](FabricModel& model) { model.abandonAdminMode(); }));
    writes.add("Cmd.Switch.ClearSysLog",
               inAdminMode([](FabricModel& model) { model.logs()[LogKind::user].clear(); }));
    writes.add("Cmd.Switch.ClearAlarmLog",
               inAdminMode([](FabricModel& model) { model.logs()[LogKind::alarm].clear(); }));
    // This switch writes of every component, and knows no entry below a warning.
    writes.add("Cmd.Switch.SysLogComp.All", inAdminMode([](FabricModel&) {}));
    writes.add("Cmd.Switch.SysLogLevel.Warn", inAdminMode([](FabricModel&) {}));
    writes.add("Cmd.Switch.StartSysLog", inAdminMode([](FabricModel& model) { model.logs().enable(true); }));
    writes.add("Cmd.Switch.StopSysLog", inAdminMode([](FabricModel& model) { model.logs().enable(false); }));
}

} // namespace simulator
