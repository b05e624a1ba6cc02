// Translation between the short texts in which the switch speaks of its state and the numbers of CIM.
#include "switchaccess/value_translation.h"

#include <cstring>

namespace cimple
{

namespace
{

template <class NUMBER>
struct Row
{
    const char* text;
    NUMBER number;
};

template <class NUMBER, std::size_t N>
NUMBER numberOf(const Row<NUMBER> (&rows)[N], const String& text, NUMBER otherwise)
{
    for (const Row<NUMBER>& row : rows)
        if (text == row.text)
            return row.number;
    return otherwise;
}

// The text of the first row with the number.
template <class NUMBER, std::size_t N>
String textOf(const Row<NUMBER> (&rows)[N], NUMBER number)
{
    for (const Row<NUMBER>& row : rows)
        if (row.number == number)
            return row.text;
    return "ERROR";
}

// The first three can also be asked for.
constexpr Row<uint16> kEnabledStates[] = {
    {"Online", 2},
    {"Offline", 3},
    {"Diagnostics", 7},
    {"Down", 3},
    {"Downed", 3},
};

constexpr Row<uint16> kHealthStates[] = {
    {"Passed", 5},
    {"Failed", 25},
};

constexpr Row<uint16> kPerformanceTuningModes[] = {
    {"Normal", 2},
    {"MFS", 3},
    {"VI", 4},
    {"LCF", 5},
    {"LCF-VI", 6},
};

constexpr Row<uint16> kGuardModes[] = {
    {"Enabled", 2},
    {"Disabled", 3},
};

constexpr uint16 kGuardAutomatic = 1;
constexpr Row<uint16> kGuardByNotifications[] = {
    {"True", 3},
    {"False", 2},
    {"Auto", kGuardAutomatic},
};

constexpr Row<uint16> kRunningTypes[] = {
    {"G", 0},
    {"GL", 0},
    {"Unknown", 0},
    {"", 0},
    {"TL", 1},
    {"E", 14},
    {"F", 15},
    {"FL", 16},
    {"N", 10},
    {"NL", 11},
    {"FNL", 12},
    {"NX", 13},
    {"Donor", 16000},
    {"TH", 16001},
    {"TF", 16002},
};

constexpr Row<uint16> kConfiguredTypes[] = {
    {"G", 2},
    {"GL", 3},
    {"E", 4},
    {"F", 5},
    {"FL", 6},
    {"Donor", 16000},
    {"TH", 16001},
    {"TF", 16002},
};

// Types that a port may have but that cannot be asked for.
constexpr Row<uint16> kReportedTypes[] = {
    {"TR", 16003},
    {"PT", 16004},
};

constexpr Row<uint64> kSpeeds[] = {
    {"1Gb/s", 1062500000},
    {"2Gb/s", 2125000000},
    {"4Gb/s", 4250000000},
    {"8Gb/s", 8500000000},
    {"10Gb/s", 12750000000},
    {"20Gb/s", 25500000000},
};

// Values of OperationalStatus.
constexpr uint16 kOk = 2;
constexpr uint16 kDegraded = 3;
constexpr uint16 kPredictiveFailure = 5;
constexpr uint16 kError = 6;
constexpr uint16 kStopped = 10;
constexpr uint16 kInService = 11;

constexpr Row<uint16> kPortStatuses[] = {
    {"Online", kOk},
    {"Offline", kStopped},
    {"Diagnostics", kInService},
    {"Isolated", kError},
    {"Down", kError},
    {"Downed", kError},
};

constexpr Row<uint16> kSwitchStatuses[] = {
    {"Diagnostics", kInService},
    {"Online", kOk},
    {"Offline", kStopped},
    {"Downed", kStopped},
};

// What the state of a part means: a value of OperationalStatus and one of HealthState.
struct Part_Status
{
    uint16 operational;
    uint16 health;
};

constexpr Row<Part_Status> kPartStatuses[] = {
    {"Normal", {kOk, 5}},
    {"Warning", {kDegraded, 10}},
    {"Critical", {kError, 25}},
    {"Failed", {kError, 25}},
};
constexpr Part_Status kUnknownPart = {0, 0};

// FC-4 types by the CIM value map; the first is meant when only "F" or "FC" is said.
constexpr Row<uint16> kFc4Types[] = {
    {"FCP", 8},
    {"FCIP", 5},
    {"FC-VI", 88},
    {"FC-SB2 Channel to Control", 27},
    {"FC-SB2 Control to Channel", 28},
};

constexpr std::size_t kFc4TextLength = 255;
constexpr std::size_t kCosTextLength = 63;

bool contains(const Array_uint16& values, uint16 value)
{
    for (std::size_t i = 0; i < values.size(); ++i)
        if (values[i] == value)
            return true;
    return false;
}

bool isDown(const String& state)
{
    return state == "Down" || state == "Downed";
}

} // namespace

uint16 smlSwitchStateToCIMEnabledState(const String& state)
{
    return numberOf(kEnabledStates, state, uint16{0});
}

uint16 smlPortStateToCIMEnabledState(const String& state)
{
    return numberOf(kEnabledStates, state, uint16{0});
}

uint16 smlDiagStatusToCIMHealthState(const String& status)
{
    return numberOf(kHealthStates, status, uint16{0});
}

uint16 smlPartStateToCIMHealthState(const String& state)
{
    return numberOf(kPartStatuses, state, kUnknownPart).health;
}

uint16 smlPerfTuningModeToCIMPerformanceTuningMode(const String& mode)
{
    return numberOf(kPerformanceTuningModes, mode, uint16{0});
}

uint16 smlIOStreamGuardModeToCIMIOStreamGuardState(const String& mode)
{
    return numberOf(kGuardModes, mode, uint16{0});
}

uint16 smlRSCNEnableToCIMIOStreamGuardState(const String& enable)
{
    return numberOf(kGuardByNotifications, enable, kGuardAutomatic);
}

uint16 smlPortTypeToCIMPortType(const String& type)
{
    return numberOf(kRunningTypes, type, uint16{0});
}

uint16 smlTypeToCIMType(const String& type)
{
    return numberOf(kConfiguredTypes, type, numberOf(kReportedTypes, type, uint16{0}));
}

uint64 smlSpeedToCIMSpeed(const String& speed)
{
    return numberOf(kSpeeds, speed, uint64{0});
}

Array_uint64 smlSpeedToCIMSpeedsUpTo(const String& speed)
{
    const uint64 fastest = smlSpeedToCIMSpeed(speed);
    Array_uint64 speeds;
    for (const Row<uint64>& row : kSpeeds)
        if (row.number <= fastest)
            speeds.append(row.number);
    return speeds;
}

String cimRequestedStateToSMLAdminState(uint16 state)
{
    return textOf(kEnabledStates, state);
}

String cimTypeToSMLType(uint16 type)
{
    return textOf(kConfiguredTypes, type);
}

String cimIOStreamGuardStateToSMLRSCNEnable(uint16 state)
{
    return textOf(kGuardByNotifications, state);
}

String cimSpeedToSMLSpeed(uint64 bitsPerSecond)
{
    return textOf(kSpeeds, bitsPerSecond);
}

Array_uint16 smlPortStateToCIMOperationalStatus(const String& state, const String& second)
{
    const uint16 status = numberOf(kPortStatuses, state, uint16{0});
    const bool stoppedToo = isDown(second) || (state == "Isolated" && second == "Offline");
    return Array_uint16::make(status == kError && stoppedToo ? kStopped : status);
}

Array_uint16 smlPartStateToCIMOperationalStatus(const String& state)
{
    return Array_uint16::make(numberOf(kPartStatuses, state, kUnknownPart).operational);
}

Array_uint16 smlSwitchStateToCIMOperationalStatus(const String& state, const Array_uint16& faults)
{
    const uint16 status = numberOf(kSwitchStatuses, state, uint16{0});
    const bool inUse = status != kInService;
    const bool selfTestFailed = contains(faults, kSelfTestFault);
    Array_uint16 result;
    result.append(inUse && faults.size() > 0 && !selfTestFailed ? kError : status);
    if (inUse && selfTestFailed && !contains(faults, kAccessFault))
        result.append(kPredictiveFailure);
    result.append(faults.data(), faults.size());
    return result;
}

uint16 translate_fc4_type(const char* item, int length)
{
    for (const Row<uint16>& row : kFc4Types)
        if (std::strncmp(item, row.text, static_cast<std::size_t>(length)) == 0)
            return row.number;
    return 0;
}

Array_uint16 smlSupportedFC4TypeToCIMSupportedFC4Type(const String& types)
{
    Array_uint16 result;
    const char* item = types.c_str();
    const char* const end = item + strnlen(item, kFc4TextLength);
    while (item != end)
    {
        const void* comma = std::memchr(item, ',', static_cast<std::size_t>(end - item));
        const char* itemEnd = comma != nullptr ? static_cast<const char*>(comma) : end;
        result.append(translate_fc4_type(item, static_cast<int>(itemEnd - item)));
        item = itemEnd != end ? itemEnd + 1 : end;
    }
    return result;
}

Array_uint16 smlSupportedCosToCIMSupportedCos(const String& classes)
{
    Array_uint16 result;
    const char* const text = classes.c_str();
    for (std::size_t i = 0; i < kCosTextLength && text[i] != '\0'; ++i)
        if (text[i] >= '1' && text[i] <= '6')
            result.append(static_cast<uint16>(text[i] - '0'));
        else if (text[i] == 'F' || text[i] == 'f')
            result.append(7);
    if (result.size() == 0)
        result.append(0);
    return result;
}

} // namespace cimple
