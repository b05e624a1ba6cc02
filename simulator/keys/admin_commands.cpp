// The administrative mode as commands, and the edit of the configuration within it.
#include "platform/xpl_fzs.h"
#include "simulator/keys/attribute_keys.h"

namespace simulator
{
namespace
{

// A command on the edit, which must be under way.
template <class Command> // int32_t(FabricModel& model, uint64_t now)
WriteHandler inConfigEdit(Command command)
{
    return inAdminMode(
        [command](FabricModel& model, const KeyArguments&, std::uint64_t now) {
            return model.configEdit() != nullptr ? command(model, now) : std::int32_t{XPL_INVALID_PARAMETER};
        });
}

} // namespace

WriteHandler inAdminMode(WriteHandler command)
{
    return
        [command = std::move(command)](FabricModel& model, const KeyArguments& arguments, std::uint64_t now)
    {
        const std::string& holder = model.adminMode().holder();
        if (holder != kAdminCommand)
            return holder.empty() ? std::int32_t{XPL_INVALID_PARAMETER} : std::int32_t{XPL_FZS_LOCKED};
        return command(model, arguments, now);
    };
}

void addAdminCommands(WriteKeys& writes)
{
    writes.add("Cmd.Switch.ReqAdmin",
               [](FabricModel& model, const KeyArguments&, std::uint64_t)
               {
                   const bool taken = model.takeAdminMode(kAdminCommand);
                   return taken ? std::int32_t{XPL_OK} : std::int32_t{XPL_FZS_LOCKED};
               });
    writes.add("Cmd.Switch.RelAdmin",
               inAdminMode(
                   [](FabricModel& model, const KeyArguments&, std::uint64_t)
                   {
                       model.abandonAdminMode();
                       return std::int32_t{XPL_OK};
                   }));
    writes.add("Cmd.Switch.EditConfig.sum",
               inAdminMode(
                   [](FabricModel& model, const KeyArguments&, std::uint64_t)
                   {
                       const bool begun = model.beginConfigEdit();
                       return begun ? std::int32_t{XPL_OK} : std::int32_t{XPL_INVALID_PARAMETER};
                   }));
    writes.add("Cmd.Switch.SaveConfig.sum",
               inConfigEdit(
                   [](FabricModel& model, std::uint64_t)
                   {
                       model.configEdit()->save();
                       return std::int32_t{XPL_OK};
                   }));
    writes.add(
        "Cmd.Switch.ActConfig",
        inConfigEdit([](FabricModel& model, std::uint64_t now) { return model.activateConfigEdit(now); }));
    writes.add("Cmd.Switch.CancelConfig",
               inConfigEdit(
                   [](FabricModel& model, std::uint64_t)
                   {
                       model.cancelConfigEdit();
                       return std::int32_t{XPL_OK};
                   }));
}

} // namespace simulator
