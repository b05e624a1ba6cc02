// Debug check that a cached instance is never changed in place.
#include "support/Change_Check.h"

#ifdef VRAX_LOCK_CHECKS
#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace cimple
{

void Change_Check::expectOne()
{
    if (_copies.size() == _copies.capacity())
        _copies.reserve(std::max<std::size_t>(16, 2 * _copies.size()));
}

void Change_Check::leaving(std::size_t position, const Instance* instance) const
{
    const Instance* const asInserted = _copies[position].get();
    if (identical(instance, asInserted))
        return;
    String key;
    if (instance_to_model_path(asInserted, key) != 0)
        key = asInserted->meta_class->name;
    std::fprintf(stderr, "instance map: %s was changed in place while it was cached\n", key.c_str());
    std::abort();
}

void Change_Check::left(std::size_t position)
{
    _copies.erase(_copies.begin() + static_cast<std::ptrdiff_t>(position));
}

void Change_Check::allLeft(const Array<Instance*>& instances)
{
    for (std::size_t i = 0; i < _copies.size(); ++i)
        leaving(i, instances[i]);
    _copies.clear();
}

} // namespace cimple
#endif
