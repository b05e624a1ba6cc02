// What the storage area network and the fabric have in common: one domain named by the principal switch.
#ifndef COMMON_ADMIN_DOMAIN_PROVIDER_H
#define COMMON_ADMIN_DOMAIN_PROVIDER_H

#include "common/Principal_Switch_Provider.h"

namespace cimple
{

// Base of the provider of a CIM_AdminDomain subclass. Its failures are reported by lines, not as exceptions.
template <class CLASS>
class Admin_Domain_Provider : public Principal_Switch_Provider<CLASS>
{
  public:
    static constexpr Failure_Text kNoPrincipal = Failure_Text::line("Failed to get principal switch wwn");

    static void fill(CLASS& domain, const char* principalWwn)
    {
        domain.CreationClassName.set(CLASS::static_meta_class.name);
        domain.Name.set(principalWwn);
        domain.NameFormat.set("WWN");
    }
};

} // namespace cimple

#endif
