// Reading the password file again when it changed.
#include "agent/auth/PasswordStore.h"

#include "agent/log/log.h"

#include <exception>
#include <utility>

namespace cimd
{

PasswordStore::PasswordStore(std::string path, FirstRead firstRead) : _path(std::move(path))
{
    try
    {
        load();
    }
    catch (const std::exception& error)
    {
        if (firstRead == FirstRead::MustSucceed)
            throw;
        log(LogLevel::Error, "auth", error.what());
        _seen = fileStamp(_path);
        _state = std::make_shared<const PasswordState>();
    }
    if (_state->table.empty())
        log(LogLevel::Warning, "auth", _path + ": no users, so nobody can log in");
}

std::optional<unsigned long> PasswordStore::settledGeneration() const
{
    const std::optional<FileStamp> stamp = fileStamp(_path);
    const std::lock_guard lock(_mutex);
    if (stamp != _seen)
        return std::nullopt;
    return _state->generation;
}

std::shared_ptr<const PasswordState> PasswordStore::current()
{
    const std::lock_guard loading(_loading);
    const std::optional<FileStamp> stamp = fileStamp(_path);
    if (stamp != _seen) // written under both locks
    {
        try
        {
            load();
            log(LogLevel::Info, "auth", _path + " was read again");
        }
        catch (const std::exception& error)
        {
            const std::lock_guard lock(_mutex);
            _seen = stamp;
            log(LogLevel::Error, "auth", std::string(error.what()) + "; the users stay as they were");
        }
    }
    const std::lock_guard lock(_mutex);
    return _state;
}

void PasswordStore::load()
{
    const FileContents file = readSmallFile(_path, Secrecy::Secret);
    auto state = std::make_shared<const PasswordState>(
        PasswordState{PasswordTable::parse(file.text, _path), _state ? _state->generation + 1 : 0});
    const std::lock_guard lock(_mutex);
    _seen = file.stamp;
    _state = std::move(state);
}

} // namespace cimd
