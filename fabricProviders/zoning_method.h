// What the methods of the zoning service have in common: the codes that they return, and their steps.
#ifndef FABRICPROVIDERS_ZONING_METHOD_H
#define FABRICPROVIDERS_ZONING_METHOD_H

#include "common/Operation.h"
#include "common/map_access.h"
#include "common/providers.h"
#include "fabricProviders/VRAX_ZoneAlias_Provider.h"
#include "fabricProviders/VRAX_Zone_Provider.h"
#include "support/cim_log.h"

#include "VRAX_ZoningService.h"

#include <optional>
#include <string>

namespace cimple
{
namespace zoning_method
{

typedef Operation<uint32> Method;

// What the methods return.
enum Code : uint32
{
    kDone = 0,
    kNoService = 1,
    kNotLoaded = 3,
    kFailed = 4,
    kInvalid = 5,
    kLocked = 6,
    kNotFound = 7,
    kExists = 8,
};

// Runs the body of a method under the write lock of the service's map; what it returns or fails with is the
// method's return value.
template <class BODY>
Invoke_Method_Status
perform(const char* method, Property<uint32>& returnValue, BODY body, int line = __builtin_LINE())
{
    trace(Registered<VRAX_ZoningService>::kSource, method, line);
    const Write_Guard<VRAX_ZoningService> guard;
    returnValue.set(Method(Registered<VRAX_ZoningService>::kSource, method, kFailed)
                        .run([&](Method& op) -> uint32 { return body(op, guard.view()); }));
    return INVOKE_METHOD_OK;
}

// Without a text nothing is logged.
[[noreturn]] inline void end(Method& op, Code code, const char* logged = nullptr)
{
    op.failWith(code, logged != nullptr ? Failure_Text::plain(logged) : Failure_Text::silent());
}

template <class PROVIDER>
void requireLoaded(Method& op, Code otherwise, const char* logged)
{
    if (PROVIDER().load() != LOAD_OK)
        end(op, otherwise, logged);
}

// The zones and aliases, as the steps of a method need them.
inline void requireZonesAndAliases(Method& op)
{
    requireLoaded<VRAX_Zone_Provider>(op, kFailed, "VRAX_Zone_Provider load failed\n");
    requireLoaded<VRAX_ZoneAlias_Provider>(op, kFailed, "VRAX_ZoneAlias_Provider load failed\n");
}

inline const VRAX_ZoningService& requireService(Method& op,
                                                const Map_View<VRAX_ZoningService>& services,
                                                const VRAX_ZoningService* self,
                                                Code otherwise,
                                                const char* logged)
{
    const VRAX_ZoningService* found = services.findReferred(self);
    if (found == nullptr)
        end(op, otherwise, logged);
    return *found;
}

// A counted copy of the instance that a reference names; null when there is none.
template <class CLASS>
Ref<const CLASS> referred(const Instance* reference)
{
    const Read_Guard<CLASS> guard;
    const CLASS* found = guard.view().findReferred(reference);
    if (found != nullptr)
        ref(found);
    return Ref<const CLASS>(found);
}

// The name that an instance's key ends with.
template <class CLASS>
std::string requireName(Method& op, const CLASS* instance, const char* logged = nullptr)
{
    const std::optional<String> name =
        instance != nullptr ? VRAX_Maps::getNameFromInstanceID(instance->InstanceID.value) : std::nullopt;
    if (!name)
        end(op, kInvalid, logged);
    return name->c_str();
}

// What members are added to: a zone, or an alias where no zone has the key.
struct Holder
{
    Ref<const VRAX_Zone> zone;
    Ref<const VRAX_ZoneAlias> alias;

    bool isZone() const { return zone.ptr() != nullptr; }
    std::string name(Method& op) const
    {
        return isZone() ? requireName(op, zone.ptr()) : requireName(op, alias.ptr());
    }
};

inline Holder
requireHolder(Method& op, const Instance* reference, Code otherwise, const char* logged = nullptr)
{
    Holder holder;
    holder.zone = referred<VRAX_Zone>(reference);
    if (!holder.isZone())
        holder.alias = referred<VRAX_ZoneAlias>(reference);
    if (!holder.isZone() && !holder.alias.ptr())
        end(op, otherwise, logged);
    return holder;
}

// Puts what a method has created into its map, and a copy into the out parameter.
template <class CLASS, class OUT>
void handOut(Owned<CLASS>& created, OUT*& out)
{
    out = reinterpret_cast<OUT*>(clone(created.get()));
    Write_Guard<CLASS>().insert(created);
}

} // namespace zoning_method
} // namespace cimple

#endif
