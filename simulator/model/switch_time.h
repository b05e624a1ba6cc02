// Moments as texts: as the switch's attributes tell them, and as scenarios do. Moments are seconds since the
// epoch.
#ifndef SIMULATOR_MODEL_SWITCH_TIME_H
#define SIMULATOR_MODEL_SWITCH_TIME_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace simulator
{

// "MMDDhhmmYYYY" in the process's time zone.
std::string switchTimeText(std::int64_t moment);

// What a text given to the switch means: "MMDDhhmmYYYY", or month, day, the month's English abbreviation,
// minute and year ("1114Nov352026"). Seconds, and in the second form the hour, are left open: of the moments
// that fit it is the one nearest to `now`. Nothing for any other text.
std::optional<std::int64_t> momentOfSwitchText(std::string_view text, std::int64_t now);

// "2026-11-14T20:35:10Z"
std::string isoText(std::int64_t moment);
std::optional<std::int64_t> momentOfIsoText(const std::string& text);

} // namespace simulator

#endif
