// The file that follows the durable part of the simulated switch.
#include "simulator/engine/StateFile.h"

#include "simulator/scenario/Scenario.h"
#include "simulator/scenario/atomic_file.h"

#include <cstdio>
#include <exception>
#include <unistd.h>
#include <utility>

namespace simulator
{

bool StateFile::exists(const std::string& path)
{
    return ::access(path.c_str(), F_OK) == 0;
}

void StateFile::keepIn(const std::string& path, const Text& text)
{
    const Locked<Mutex> guard(_mutex);
    _path = path;
    _complaint.clear();
    try
    {
        write(text());
    }
    catch (const std::exception& error)
    {
        _keeps = false;
        throw ScenarioError("", path + ": cannot save: " + error.what());
    }
    _keeps = true;
}

void StateFile::stop()
{
    const Locked<Mutex> guard(_mutex);
    _keeps = false;
}

void StateFile::update(const Text& text) noexcept
{
    if (!_keeps)
        return;
    const Locked<Mutex> guard(_mutex);
    try
    {
        if (std::string now = text(); _keeps && now != _written)
            write(std::move(now));
        _complaint.clear();
    }
    catch (const std::exception& error)
    {
        if (_complaint != error.what())
            std::fprintf(stderr, "simulated switch: state not kept: %s\n", error.what());
        _complaint = error.what();
    }
}

void StateFile::write(std::string text)
{
    replaceFile(_path, text);
    _written = std::move(text);
}

} // namespace simulator
