// The fabric that the switch belongs to.
#include "fabricProviders/VRAX_Fabric_Provider.h"

namespace cimple
{

template class Admin_Domain_Provider<VRAX_Fabric_Provider, VRAX_Fabric>;

} // namespace cimple
