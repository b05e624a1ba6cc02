// The vital product data of the chassis.
#include "platform/vpd.h"

#include "simulator/engine/Engine.h"
#include "simulator/services/session.h"

#include <algorithm>

int VPD_Client::read_product_name(char* name, std::size_t sizeBytes)
{
    using namespace simulator;
    const std::int32_t begun = beginCall(Call::readProductName);
    if (begun != XPL_OK)
        return begun;
    if (name == nullptr || sizeBytes == 0)
        return XPL_INVALID_PARAMETER;
    Engine::instance().read(
        [&](const FabricModel& model, std::uint64_t)
        {
            const std::string& stored = model.local().facts.productName;
            const std::size_t length = std::min(stored.size(), sizeBytes - 1);
            std::copy_n(stored.data(), length, name);
            name[length] = '\0';
        });
    return XPL_OK;
}
