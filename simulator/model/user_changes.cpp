// Who may log in to the local switch, and what is told of them.
#include "simulator/model/FabricModel.h"

#include <algorithm>

namespace simulator
{
namespace
{

auto placeOf(std::vector<std::string>& users, const std::string& name)
{
    return std::find(users.begin(), users.end(), name);
}

auto knownPlaceOf(std::vector<std::string>& users, const std::string& name)
{
    const auto place = placeOf(users, name);
    if (place == users.end())
        throw ScenarioError("", "the local switch has no user " + name);
    return place;
}

} // namespace

void FabricModel::userEvent(xpl_SwitchEventType type,
                            const std::string& user,
                            const std::string& message,
                            std::uint64_t now)
{
    _history.log("user", message, now);
    SwitchEvent happened = event(type);
    happened.subject = user;
    _history.raise(std::move(happened));
}

void FabricModel::addUser(const std::string& name, std::uint64_t now)
{
    std::vector<std::string>& users = _local->facts.users;
    if (name.empty() || name.size() > kUserNameSize || placeOf(users, name) != users.end())
        throw ScenarioError("", "expected a name that no other user has, got \"" + name + "\"");
    users.push_back(name);
    userEvent(XPL_EVENT_USER_ADDED, name, "user " + name + " added", now);
}

void FabricModel::removeUser(const std::string& name, std::uint64_t now)
{
    std::vector<std::string>& users = _local->facts.users;
    users.erase(knownPlaceOf(users, name));
    userEvent(XPL_EVENT_USER_REMOVED, name, "user " + name + " removed", now);
}

void FabricModel::changePassword(const std::string& user, std::uint64_t now)
{
    knownPlaceOf(_local->facts.users, user);
    userEvent(XPL_EVENT_PASSWORD_CHANGED, user, "password of user " + user + " changed", now);
}

void FabricModel::refuseLogin(const std::string& user, std::uint64_t now)
{
    userEvent(XPL_EVENT_LOGIN_FAILED, user, "login of user " + user + " refused", now);
}

} // namespace simulator
