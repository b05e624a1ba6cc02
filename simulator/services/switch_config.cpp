// Configuration records of the switch and its ports.
#include "platform/switch_config.h"

#include "simulator/engine/Engine.h"
#include "simulator/services/session.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace simulator
{
namespace
{

std::int32_t codeOf(AdminState state)
{
    switch (state)
    {
    case AdminState::online:
        return XPL_ADMIN_ONLINE;
    case AdminState::offline:
        return XPL_ADMIN_OFFLINE;
    case AdminState::diagnostics:
        break;
    }
    return XPL_ADMIN_DIAGNOSTICS;
}

std::optional<AdminState> adminStateOf(std::int32_t code)
{
    switch (code)
    {
    case XPL_ADMIN_ONLINE:
        return AdminState::online;
    case XPL_ADMIN_OFFLINE:
        return AdminState::offline;
    case XPL_ADMIN_DIAGNOSTICS:
        return AdminState::diagnostics;
    default:
        return std::nullopt;
    }
}

static_assert(sizeof xpl_swSwitchConfig::symbolicName == kSwitchNameSize + 1 &&
                  sizeof xpl_swPortConfig::symbolicName == kPortNameSize + 1 &&
                  sizeof xpl_swPortConfig::reserved == kPortReservedSize &&
                  sizeof xpl_swSwitchConfig::reserved0 + sizeof xpl_swSwitchConfig::reserved1 +
                          sizeof xpl_swSwitchConfig::reserved2 + sizeof xpl_swSwitchConfig::reserved3 ==
                      kSwitchReservedSize,
              "records hold what scenarios may bring");

template <std::size_t N>
void putName(char (&field)[N], const std::string& name)
{
    std::copy_n(name.data(), std::min(name.size(), N - 1), field);
}

// The field's text; nothing when it does not end within the field.
template <std::size_t N>
std::optional<std::string> nameIn(const char (&field)[N])
{
    const void* end = std::memchr(field, '\0', N);
    return end != nullptr ? std::optional<std::string>(field) : std::nullopt;
}

// Runs over the reserved fields of a switch record, which the model keeps as one string of bytes.
template <class Record, class Use> // void(uint8_t* or const uint8_t*, size, offset in the string)
void eachReserved(Record& record, Use use)
{
    std::size_t offset = 0;
    const auto one = [&](auto& field)
    {
        use(field, sizeof field, offset);
        offset += sizeof field;
    };
    one(record.reserved0);
    one(record.reserved1);
    one(record.reserved2);
    one(record.reserved3);
}

xpl_swSwitchConfig recordOf(const SwitchScenario& facts)
{
    xpl_swSwitchConfig record{};
    putName(record.symbolicName, facts.name);
    record.adminState = codeOf(facts.configuredAdminState);
    record.preferredDomainId = static_cast<std::uint8_t>(facts.preferredDomain);
    record.domainIdLock = facts.domainLocked ? 1 : 0;
    record.principalPriority = static_cast<std::uint8_t>(facts.principalPriority);
    eachReserved(record,
                 [&facts](std::uint8_t* field, std::size_t size, std::size_t offset)
                 { std::copy_n(facts.reserved.begin() + static_cast<std::ptrdiff_t>(offset), size, field); });
    return record;
}

std::int32_t store(const xpl_swSwitchConfig& record, SwitchScenario& facts)
{
    const auto name = nameIn(record.symbolicName);
    const auto state = adminStateOf(record.adminState);
    const bool knownLock = record.domainIdLock == 0 || record.domainIdLock == 1;
    if (!name || !state || !knownLock || !isPrincipalPriority(record.principalPriority) ||
        !isDomainId(record.preferredDomainId))
        return XPL_INVALID_PARAMETER;
    facts.name = *name;
    // The switch may be in another state than it is configured to start in. A record written back for the
    // sake of its other fields leaves it there.
    if (*state != facts.configuredAdminState)
        facts.adminState = facts.configuredAdminState = *state;
    facts.preferredDomain = record.preferredDomainId;
    facts.domainLocked = record.domainIdLock != 0;
    facts.principalPriority = record.principalPriority;
    eachReserved(record,
                 [&facts](const std::uint8_t* field, std::size_t size, std::size_t offset)
                 { std::copy_n(field, size, facts.reserved.begin() + static_cast<std::ptrdiff_t>(offset)); });
    return XPL_OK;
}

xpl_swPortConfig recordOf(const PortScenario& facts)
{
    xpl_swPortConfig record{};
    putName(record.symbolicName, facts.name);
    record.adminState = codeOf(facts.adminState);
    std::copy_n(facts.reserved.begin(), sizeof record.reserved, record.reserved);
    return record;
}

std::int32_t store(const xpl_swPortConfig& record, PortScenario& facts)
{
    const auto name = nameIn(record.symbolicName);
    const auto state = adminStateOf(record.adminState);
    if (!name || !state)
        return XPL_INVALID_PARAMETER;
    facts.name = *name;
    facts.adminState = *state;
    std::copy_n(record.reserved, sizeof record.reserved, facts.reserved.begin());
    return XPL_OK;
}

// What the record calls do first: count, check the handle and the arguments, ask for an injected failure.
std::int32_t beginRecord(Call call, xpl_Handle handle, const void* record, const std::string& name)
{
    const std::int32_t begun = beginCall(call, handle);
    if (begun != XPL_OK || record == nullptr)
        return begun != XPL_OK ? begun : std::int32_t{XPL_INVALID_PARAMETER};
    Probe& probe = Engine::instance().probe;
    if (call == Call::switchSetConfig || call == Call::portSetConfig)
        probe.noteWrite(name);
    return probe.enterRecord(name);
}

// A link reset leaves its trace in the counters of a port that is up.
void resetLink(const Switch& owner, Port& port, std::uint64_t now)
{
    constexpr auto kTxLinkResets = *counterNamed("TxLinkResets");
    if (isOnline(owner, port))
        port.meter->setCounter(kTxLinkResets, port.meter->counter(kTxLinkResets, now) + 1, now);
}

std::string portRecord(std::int32_t port)
{
    return "port/" + std::to_string(port);
}

} // namespace
} // namespace simulator

using namespace simulator;

extern "C" int xpl_swSwitchGetConfig(xpl_Handle handle, std::uint32_t unit, xpl_swSwitchConfig* record)
{
    const std::int32_t begun = beginRecord(Call::switchGetConfig, handle, record, "switch");
    if (begun != XPL_OK || unit != 0)
        return begun != XPL_OK ? begun : std::int32_t{XPL_INVALID_PARAMETER};
    *record = Engine::instance().read([](const FabricModel& model, std::uint64_t)
                                      { return recordOf(model.local().facts); });
    return XPL_OK;
}

extern "C" int xpl_swSwitchSetConfig(xpl_Handle handle, const xpl_swSwitchConfig* record)
{
    const std::int32_t begun = beginRecord(Call::switchSetConfig, handle, record, "switch");
    if (begun != XPL_OK)
        return begun;
    return Engine::instance().write(
        [record](FabricModel& model, std::uint64_t now)
        {
            const std::int32_t stored = store(*record, model.local().facts);
            if (stored != XPL_OK)
                return stored;
            model.configurationWritten("switch", now);
            model.allLinksChanged(model.local(), now);
            return stored;
        });
}

extern "C" int xpl_swSwitchForceReset(xpl_Handle handle)
{
    const std::int32_t begun = beginCall(Call::switchForceReset, handle);
    if (begun != XPL_OK)
        return begun;
    Engine::instance().probe.noteWrite("reset");
    Engine::instance().write(
        [](FabricModel& model, std::uint64_t now)
        {
            for (Port& port : model.local().ports)
                port.meter->clear(now);
        });
    return XPL_OK;
}

extern "C" int
xpl_swPortGetConfig(xpl_Handle handle, std::int32_t port, std::uint32_t unit, xpl_swPortConfig* record)
{
    const std::int32_t begun = beginRecord(Call::portGetConfig, handle, record, portRecord(port));
    if (begun != XPL_OK || unit != 0)
        return begun != XPL_OK ? begun : std::int32_t{XPL_INVALID_PARAMETER};
    return Engine::instance().read(
        [port, record](const FabricModel& model, std::uint64_t) -> std::int32_t
        {
            const Port* found = model.local().port(port);
            if (found == nullptr)
                return XPL_INVALID_PARAMETER;
            *record = recordOf(found->facts);
            return XPL_OK;
        });
}

extern "C" int xpl_swPortSetConfig(xpl_Handle handle, std::int32_t port, const xpl_swPortConfig* record)
{
    const std::int32_t begun = beginRecord(Call::portSetConfig, handle, record, portRecord(port));
    if (begun != XPL_OK)
        return begun;
    return Engine::instance().write(
        [port, record](FabricModel& model, std::uint64_t now) -> std::int32_t
        {
            Port* found = model.local().port(port);
            if (found == nullptr)
                return XPL_INVALID_PARAMETER;
            const xpl_swPortConfig before = recordOf(found->facts);
            const std::int32_t stored = store(*record, found->facts);
            if (stored != XPL_OK)
                return stored;
            const xpl_swPortConfig after = recordOf(found->facts);
            if (std::memcmp(&before, &after, sizeof before) == 0)
                resetLink(model.local(), *found, now);
            model.configurationWritten(portRecord(port), now);
            model.linkChanged(model.local(), *found, now);
            return XPL_OK;
        });
}
