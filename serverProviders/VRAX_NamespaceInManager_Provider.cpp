// The object manager has the interop namespace.
#include "serverProviders/VRAX_NamespaceInManager_Provider.h"

namespace cimple
{

void VRAX_NamespaceInManager_Provider::build(Map_Writer<VRAX_NamespaceInManager>& map)
{
    joinFirst<VRAX_ObjectManager, VRAX_Namespace>(map);
}

} // namespace cimple
