// The way of a provider's indications to the broker, and when it is open.
#ifndef TOOLKIT_ADAPTER_INDICATIONS_H
#define TOOLKIT_ADAPTER_INDICATIONS_H

#include "Gate.h"
#include "server_schema.h"
#include <cimple/Provider_Handle.h>
#include <cimple/cimple.h>

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace cimple_cmpi
{

// No lock is held while an indication is on its way to the broker, so a provider may join the thread that
// delivers from its disable_indications().
class Indications
{
  public:
    Indications() = default;
    Indications(const Indications&) = delete;
    Indications& operator=(const Indications&) = delete;

    // Each throws Failure if the provider refuses; nothing has changed then.
    void enable(cimple::Provider_Handle& provider);
    // When it returns no delivery is under way and none will begin.
    void disable(cimple::Provider_Handle& provider);

    // A filter began or ceased to select from a namespace; indications go to every namespace that is selected
    // from.
    void activate(const std::string& nameSpace);
    void deactivate(const std::string& nameSpace);

    bool enabled() const { return _enabled; }
    bool inUse() const;

  private:
    static bool receive(cimple::Instance* indication, void* self);
    bool deliver(const cimple::Instance* indication);

    std::mutex _switching; // held over the provider's enable_indications and disable_indications
    std::atomic<bool> _enabled{false};
    Gate _deliveries{false};
    std::optional<Prefilled_Classes> _prefilled; // made anew each time

    mutable std::mutex _mutex;
    std::map<std::string, unsigned> _nameSpaces; // number of active filters
};

} // namespace cimple_cmpi

#endif
