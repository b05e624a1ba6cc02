// What associations ask of zone sets and zones.
#ifndef COMMON_ZONING_PAIRS_H
#define COMMON_ZONING_PAIRS_H

#include "common/Text_Index.h"
#include "common/zoning_ids.h"

namespace cimple
{

// Whether the fabric enforces a zone set or zone. One that was just created does not say so: it is not
// enforced.
template <class CLASS>
bool isEnforced(const CLASS& one)
{
    return !one.Active.null && one.Active.value;
}

// Whether an InstanceID begins with this state.
inline bool hasState(const String& id, const char* state)
{
    const std::size_t size = std::strlen(state);
    return std::strncmp(id.c_str(), state, size) == 0 && id.c_str()[size] == ':';
}

// The key by which a zone set or zone is told from its namesake in the other database. The name is taken from
// the InstanceID, since a zone set that was just created has nothing else.
template <class CLASS>
Two_Texts stateAndName(const CLASS& one)
{
    const String& id = one.InstanceID.value;
    const char* const name = afterColon(id, 2);
    return {hasState(id, kActive) ? kActive : kInactive, name != nullptr ? name : ""};
}

} // namespace cimple

#endif
