// The storage area network that the fabric is part of.
#include "fabricProviders/VRAX_SAN_Provider.h"

namespace cimple
{

template class Admin_Domain_Provider<VRAX_SAN_Provider, VRAX_SAN>;

} // namespace cimple
