// What the storage area network and the fabric have in common: one domain named by the principal switch.
#ifndef FABRICPROVIDERS_ADMIN_DOMAIN_PROVIDER_H
#define FABRICPROVIDERS_ADMIN_DOMAIN_PROVIDER_H

#include "common/Map_Provider.h"
#include "common/principal_switch.h"

namespace cimple
{

// Base of the provider of a CIM_AdminDomain subclass with a single instance. Besides what Map_Provider asks
// for, PROVIDER supplies the texts that are logged when a step of the load fails:
//   static constexpr const char* kCreationFailed, kKeysMissing, kInsertionFailed;
template <class PROVIDER, class CLASS>
class Admin_Domain_Provider : public Instance_Provider_Base<PROVIDER, CLASS>
{
  public:
    void build(Map_Writer<CLASS>& map)
    {
        // Without the schema's defaults: a fabric has no states of its own.
        Owned<CLASS> domain = makeNull<CLASS>();
        if (!domain)
            fail(PROVIDER::kCreationFailed);
        domain->CreationClassName.set(CLASS::static_meta_class.name);

        const Principal_Switch_Wwn wwn;
        if (wwn.text() == nullptr)
            fail("Failed to get principal switch wwn");
        domain->Name.set(wwn.text());
        domain->NameFormat.set("WWN");

        if (!checkInstanceKeys(domain.get()))
            fail(PROVIDER::kKeysMissing);
        if (!map.insert(domain))
            fail(PROVIDER::kInsertionFailed);
    }

  private:
    [[noreturn]] static void fail(const char* message, int line = __builtin_LINE())
    {
        Admin_Domain_Provider::logFailure("load", message, line);
        throw Load_Failed();
    }
};

} // namespace cimple

#endif
