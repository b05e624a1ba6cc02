// Backing up and restoring the configuration, and the administrative mode that this needs.
#include "platform/configuration.h"

#include "platform/xpl_fzs.h"
#include "simulator/engine/Engine.h"
#include "simulator/engine/ImageDirectory.h"
#include "simulator/model/configuration.h"
#include "simulator/scenario/atomic_file.h"
#include "simulator/scenario/scenario_json.h"
#include "simulator/services/session.h"

#include <cstring>
#include <system_error>

namespace simulator
{
namespace
{

// What the switch makes of an image that is longer: no image.
constexpr std::size_t kMaxImageSize = 16 * 1024 * 1024;

// Runs a call that works with files: what goes wrong with them is a status.
template <class Run> // std::int32_t()
int withFiles(Call call, Run run)
{
    const std::int32_t begun = beginCall(call);
    if (begun != XPL_OK)
        return begun;
    try
    {
        return run();
    }
    catch (const std::exception&)
    {
        return XPL_UNREACHABLE;
    }
}

// Whether the calling thread has the mode by reqAdminMode(): 0, or the status with which it is refused.
std::int32_t checkOwn(const AdminMode& mode)
{
    if (mode.isOwn(kImageRestore))
        return XPL_OK;
    return mode.holder().empty() ? std::int32_t{XPL_INVALID_PARAMETER} : std::int32_t{XPL_FZS_LOCKED};
}

std::int32_t restoreFrom(const std::string& place)
{
    Engine& engine = Engine::instance();
    const std::int32_t refused =
        engine.read([](const FabricModel& model, std::uint64_t) { return checkOwn(model.adminMode()); });
    if (refused != XPL_OK)
        return refused;
    try
    {
        const Scenario image = parseScenario(readFile(place, kMaxImageSize), "image");
        engine.changeFabric([&image](FabricModel& model, std::uint64_t now)
                            { model.restoreConfiguration(image, now); });
        return XPL_OK;
    }
    catch (const std::exception& error)
    {
        // The call has no room for the reason; the log has.
        const std::string reason = std::string("restore refused: ") + error.what();
        engine.write([&reason](FabricModel& model, std::uint64_t now)
                     { model.restorationRefused(reason, now); });
        return XPL_INVALID_PARAMETER;
    }
}

} // namespace
} // namespace simulator

using namespace simulator;

int backupConfig()
{
    return withFiles(Call::backupConfig,
                     []
                     {
                         const Scenario image =
                             Engine::instance().read([](const FabricModel& model, std::uint64_t)
                                                     { return configurationOf(model.localScenario()); });
                         const std::string text = formatScenario(image);
                         const std::string place = ImageDirectory::instance().locate(kConfigImage);
                         // The file's time is that of the last change of the configuration.
                         if (!holdsText(place, text))
                             replaceFile(place, text);
                         return std::int32_t{XPL_OK};
                     });
}

int restoreConfig()
{
    return withFiles(Call::restoreConfig,
                     [] { return restoreFrom(ImageDirectory::instance().locate(kConfigImage)); });
}

int reqAdminMode()
{
    const std::int32_t begun = beginCall(Call::reqAdminMode);
    if (begun != XPL_OK)
        return begun;
    return Engine::instance().write(
        [](FabricModel& model, std::uint64_t)
        {
            const bool taken = model.takeAdminMode(kImageRestore);
            return taken ? std::int32_t{XPL_OK} : std::int32_t{XPL_FZS_LOCKED};
        });
}

int releaseAdminMode()
{
    const std::int32_t begun = beginCall(Call::releaseAdminMode);
    if (begun != XPL_OK)
        return begun;
    return Engine::instance().write(
        [](FabricModel& model, std::uint64_t)
        {
            const std::int32_t refused = checkOwn(model.adminMode());
            if (refused == XPL_OK)
                model.abandonAdminMode();
            return refused;
        });
}

int locateSwitchFile(const char* switchPath, char* place, std::size_t sizeBytes)
{
    if (switchPath == nullptr || place == nullptr)
        return XPL_INVALID_PARAMETER;
    return withFiles(Call::locateSwitchFile,
                     [&]
                     {
                         const std::string found = ImageDirectory::instance().locate(switchPath);
                         if (found.size() >= sizeBytes)
                             return std::int32_t{XPL_INVALID_PARAMETER};
                         std::memcpy(place, found.c_str(), found.size() + 1);
                         return std::int32_t{XPL_OK};
                     });
}
