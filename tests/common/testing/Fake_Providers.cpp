// Providers with scripted loads over real classes, for tests of the load pattern.
#include "tests/common/testing/Fake_Providers.h"

namespace cimple
{

namespace
{

template <class PROVIDER>
void reset()
{
    PROVIDER().unload();
    Script<typename PROVIDER::Class>::reset();
}

} // namespace

void resetFakeProviders()
{
    reset<Ports_Provider>();
    reset<Collection_Provider>();
    reset<Manager_Provider>();
    reset<Names_Provider>();
    reset<Pairs_Provider>();
    reset<Nested_Provider>();
}

} // namespace cimple
