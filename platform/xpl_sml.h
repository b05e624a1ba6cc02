// The switch's attribute store: values read and written by dotted key texts such as "Oper.Switch.WWN".
//
// Keys beginning with "Oper." read operational values, "Config." configured values; "Cmd." keys are commands.
// A write names attribute and value in one text: "Config.UserPort.0.7.LinkSpeed.4Gb/s".
// "Cmd.Cim." keys are the CIM agent's own commands. They have a call of their own, xpl_smlBatchCimSet; each
// way of writing answers keys of the other with XPL_UNKNOWN_KEY.
// All calls may be made from any thread. A batch is answered from one state of the switch.
#ifndef PLATFORM_XPL_SML_H
#define PLATFORM_XPL_SML_H

#include "platform/xpl_types.h"

// Keys and values are NUL-terminated texts of at most 255 bytes.
constexpr std::size_t kXplSmlTextSize = 256;

// One slot of a batch.
struct xpl_smlEntry
{
    char key[kXplSmlTextSize];   // set by the caller
    char value[kXplSmlTextSize]; // set by the switch; empty when status is not 0
    std::int32_t status;         // set by the switch: an xpl_Status
};

static_assert(offsetof(xpl_smlEntry, value) == 256 && offsetof(xpl_smlEntry, status) == 512 &&
                  sizeof(xpl_smlEntry) == 516,
              "layout shared with the switch firmware");

extern "C"
{

    // Reads every entry's key. Returns 0 when the switch went through the whole batch, even if single entries
    // failed; each entry's own outcome is in its status. A non-zero result means that no entry was answered.
    int xpl_smlGetBatch(xpl_Handle handle, xpl_smlEntry* entries, std::uint32_t count);

    // Carries out every entry's key as a write, in order. Same results as xpl_smlGetBatch. An entry that the
    // switch refuses does not undo or stop the others. A batch of no entries is legal (entries may then be
    // null).
    int xpl_smlBatchSet(xpl_Handle handle, xpl_smlEntry* entries, std::uint32_t count);

    // The same for the CIM agent's own commands.
    int xpl_smlBatchCimSet(xpl_Handle handle, xpl_smlEntry* entries, std::uint32_t count);

    // Reads one key, formatted as by printf, into `value` (kXplSmlTextSize bytes). Returns 0 or the entry's
    // status, which is also stored in *error.
    [[gnu::format(printf, 4, 5)]] int
    xpl_smlGetV(xpl_Handle handle, char* value, std::int32_t* error, const char* keyFormat, ...);

    // Reads one key. As above.
    int xpl_smlGet(xpl_Handle handle, const char* key, char* value, std::int32_t* error);

    // Carries out one write, formatted as by printf. Returns 0 or the entry's status, which is also stored in
    // *error.
    [[gnu::format(printf, 3, 4)]] int
    xpl_smlSetV(xpl_Handle handle, std::int32_t* error, const char* keyFormat, ...);
}

#endif
