// Starting and saving the simulated switch from a program that hosts the platform library.
#include "simulator/open.h"

#include "simulator/control/ControlSocket.h"
#include "simulator/control/Verb.h"
#include "simulator/engine/Engine.h"
#include "simulator/scenario/scenario_json.h"

#include <cstdio>
#include <exception>
#include <memory>
#include <mutex>

namespace simulator
{
namespace
{

template <class Run> // void()
int report(const char* path, char* message, size_t messageSize, Run run)
{
    const auto tell = [message, messageSize](const char* text)
    {
        if (message != nullptr && messageSize != 0)
            std::snprintf(message, messageSize, "%s", text);
    };
    try
    {
        if (path == nullptr || *path == '\0')
        {
            tell("no file named");
            return -1;
        }
        run();
        tell("");
        return 0;
    }
    catch (const std::exception& error)
    {
        tell(error.what());
        return -1;
    }
}

std::mutex socketMutex;

// Made after the engine and the table of commands, and so gone before them when the process ends.
std::unique_ptr<ControlSocket>& controlSocket()
{
    Engine::instance();
    verbs();
    static std::unique_ptr<ControlSocket> socket;
    return socket;
}

} // namespace
} // namespace simulator

using namespace simulator;

extern "C" int vraxsim_open(const char* scenarioPath, char* message, size_t messageSize)
{
    return report(
        scenarioPath, message, messageSize, [&] { Engine::instance().open(readScenario(scenarioPath)); });
}

extern "C" int vraxsim_save(const char* scenarioPath, char* message, size_t messageSize)
{
    return report(scenarioPath,
                  message,
                  messageSize,
                  [&]
                  {
                      const Scenario scenario = Engine::instance().read(
                          [](const FabricModel& model, std::uint64_t) { return model.toScenario(); });
                      writeScenario(scenario, scenarioPath);
                  });
}

extern "C" int vraxsim_keep(const char* scenarioPath, char* message, size_t messageSize)
{
    if (scenarioPath != nullptr)
        return report(scenarioPath, message, messageSize, [&] { Engine::instance().keepIn(scenarioPath); });
    Engine::instance().stopKeeping();
    return 0;
}

extern "C" int vraxsim_listen(const char* socketPath, char* message, size_t messageSize)
{
    const std::lock_guard<std::mutex> guard(socketMutex);
    controlSocket().reset();
    if (socketPath == nullptr)
        return 0;
    return report(socketPath,
                  message,
                  messageSize,
                  [&] { controlSocket() = std::make_unique<ControlSocket>(socketPath); });
}
