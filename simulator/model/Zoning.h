// The zoning of a fabric.
#ifndef SIMULATOR_MODEL_ZONING_H
#define SIMULATOR_MODEL_ZONING_H

#include "simulator/model/ActiveZoneSet.h"
#include "simulator/model/AdminMode.h"

#include <cstdint>
#include <optional>
#include <string>

namespace simulator
{

// Who changes zoning or holds the administrative mode; the first four do that for what they change.
constexpr std::string_view kDirectCall = "cim agent";
constexpr std::string_view kEditSession = "edit session";
constexpr std::string_view kAdminCommand = "admin command"; // the mode was taken by a command
constexpr std::string_view kImageRestore = "configuration restore";
constexpr std::string_view kFabric = "fabric"; // a switch takes the active zone set of a neighbour

struct ZoningChange
{
    enum class Kind
    {
        databaseChanged,
        activated,
        deactivated
    };

    Kind kind = Kind::databaseChanged;
    std::string by;
    std::uint64_t at = 0; // model time in milliseconds
};

// "activated by cim agent"
std::string textOf(const ZoningChange& change);

// The copy that is active is kept by each switch; see FabricModel for the changes.
struct Zoning
{
    ZoningDatabase configured;
    std::optional<ZoningDatabase> pending; // the copy of an edit session
    bool defaultZone = false;              // nodes that are in no zone see one another
    std::optional<ZoningChange> lastChange;
};

} // namespace simulator

#endif
