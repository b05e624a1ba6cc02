// The entries of the logs of the local switch.
#ifndef SWITCHPROVIDERS_VRAX_LOGENTRY_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_LOGENTRY_PROVIDER_H

#include "common/Map_Provider.h"

#include "VRAX_LogEntry_Methods.h"

#include <string>

namespace cimple
{

class VRAX_LogEntry_Provider : public Instance_Provider<VRAX_LogEntry>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create LogEntry instance";
    // Entries with the same time and message have the same name: the first one stands for all.
    static constexpr Failure_Text kInsertionFailed = Failure_Text::none();
    static constexpr bool kGetsFromMap = false;

    void build(Map_Writer<VRAX_LogEntry>& map);

    // From the switch and not from the map: a log grows, and clients ask for entries that they have just been
    // told of.
    Get_Instance_Status get_instance(const VRAX_LogEntry* model, VRAX_LogEntry*& instance);
};

} // namespace cimple

#endif
