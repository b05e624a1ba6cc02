// Providers with scripted loads over real classes, for tests of the load pattern.
#include "tests/common/testing/fake_providers.h"

namespace cimple
{

namespace
{

template <class PROVIDER, class PLAYED = Script<typename PROVIDER::Class>>
void reset()
{
    PROVIDER().unload();
    PLAYED::reset();
}

} // namespace

void resetFakeProviders()
{
    reset<Ports_Provider>();
    reset<Collection_Provider>();
    reset<Manager_Provider>();
    reset<Names_Provider>();
    reset<Pairs_Provider, Pairs_Provider::Played>();
    reset<Nested_Provider, Nested_Provider::Played>();
}

} // namespace cimple
