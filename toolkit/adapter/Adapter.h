// One provider as CMPI sees it: the static block that holds its management interfaces, and the provider
// behind.
#ifndef TOOLKIT_ADAPTER_ADAPTER_H
#define TOOLKIT_ADAPTER_ADAPTER_H

#include "Gate.h"
#include "Indications.h"
#include <cimple/Provider_Handle.h>
#include <cimple/cimple.h>
#include <cmpift.h>

#include <atomic>
#include <mutex>

namespace cimple_cmpi
{

// A provider object and what has to be known about it between calls.
class Adapter
{
  public:
    explicit Adapter(const cimple::Registration* registration)
        : _className(registration->meta_class->name), _readsLoad(registration->reads_load),
          _provider(registration)
    {
    }

    // Calls the provider's load if that has not been done, once in its life. With CIMPLE_READS_LOAD it comes
    // before the first operation that is not a read, such as a modification. A load that fails is logged and
    // not repeated: the provider's operations load what they need and know how to say that they cannot.
    void load() noexcept;

    // The same before an operation that reads, which a provider may load for by itself.
    void loadToRead() noexcept
    {
        if (_readsLoad)
            _used = true;
        else
            load();
    }

    // Whether there is something to unload: after a load that failed, an operation may have succeeded.
    bool used() const { return _used; }

    // As it is.
    cimple::Provider_Handle& bareProvider() { return _provider; }

    Indications& indications() { return _indications; }

  private:
    const char* const _className;
    const bool _readsLoad;
    std::recursive_mutex _loading; // a load may come back through the CIM server on the same thread
    bool _begun = false;
    std::atomic<bool> _loaded{false};
    std::atomic<bool> _used{false};
    Indications _indications; // outlives the provider, which may hold its handler
    cimple::Provider_Handle _provider;
};

enum MiKind
{
    kInstanceMi,
    kMethodMi,
    kAssociationMi,
    kIndicationMi,
    kMiKinds
};

// Lives in the __CMPI_Static_Data of a provider, so as long as the library: a broker may look at function
// tables after cleanup. Never destroyed. `hdl` of each management interface points to it.
struct StaticData
{
    // The block's content, made on first use.
    static StaticData& in(__CMPI_Static_Data& block, const cimple::Registration* registration);
    static StaticData& of(const void* hdl) { return *static_cast<StaticData*>(const_cast<void*>(hdl)); }

    StaticData(const cimple::Registration* r);

    const char* className() const { return registration->meta_class->name; }

    // The adapter, made if there is none. Only for threads that have passed the gate.
    Adapter& adapter();

    // Fills in the management interface and returns it.
    void* interface(MiKind kind);

    // What each MI's cleanup does. The provider goes with the last of its interfaces.
    CMPIStatus cleanup(MiKind kind, const CMPIContext* context, bool terminating);

    const cimple::uint32 magic;
    const cimple::Registration* const registration;
    std::atomic<const CMPIBroker*> broker{nullptr};
    std::atomic<bool> allowUnload{true};
    Gate calls{true}; // closed while the provider is taken down

    std::mutex mutex; // guards the making of the adapter, and `made`
    std::atomic<Adapter*> current{nullptr};
    bool made[kMiKinds] = {};

    CMPIInstanceMIFT instanceFT;
    CMPIMethodMIFT methodFT;
    CMPIAssociationMIFT associationFT;
    CMPIIndicationMIFT indicationFT;
    CMPIInstanceMI instanceMI;
    CMPIMethodMI methodMI;
    CMPIAssociationMI associationMI;
    CMPIIndicationMI indicationMI;
    char names[kMiKinds][128];

  private:
    void takeDown(const CMPIContext* context);
};

static_assert(sizeof(StaticData) <= sizeof(__CMPI_Static_Data) && alignof(StaticData) <= alignof(double),
              "the block of the entry-point macros holds the adapter's data");

// The functions of each kind of interface; name and version are filled in by StaticData.
extern const CMPIInstanceMIFT kInstanceFunctions;
extern const CMPIMethodMIFT kMethodFunctions;
extern const CMPIAssociationMIFT kAssociationFunctions;
extern const CMPIIndicationMIFT kIndicationFunctions;

} // namespace cimple_cmpi

#endif
