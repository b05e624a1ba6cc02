// The check that an instance can be told from all others before it enters its map.
#ifndef SUPPORT_CHECKINSTANCEKEYS_H
#define SUPPORT_CHECKINSTANCEKEYS_H

namespace cimple
{

struct Instance;

// True when every key of the instance is populated: properties not null and texts not empty, references
// present and themselves populated. Borrowed; not changed.
bool checkInstanceKeys(const Instance* instance);

} // namespace cimple

#endif
