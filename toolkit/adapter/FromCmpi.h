// From CMPI objects to the toolkit's instances.
#pragma once

#include <cimple/cimple.h>
#include <cmpift.h>

#include <string>

namespace cimple_cmpi
{

// Converts what comes with one request. All objects made belong to the caller. Throws Failure with
// CMPI_RC_ERR_INVALID_PARAMETER and a text that names the key, property or argument, or with
// CMPI_RC_ERR_INVALID_CLASS.
class FromCmpi
{
  public:
    enum Keys
    {
        kAllKeys, // every key of the class must be in the path
        kNoKeys   // keys of the path do not count
    };
    enum Unknown
    {
        kRefuse, // a property that the class does not have is a failure
        kIgnore
    };

    // Classes are looked up from `scope`: it, its superclasses, its repository.
    explicit FromCmpi(const cimple::Meta_Class* scope) : _scope(scope) {}

    // The description of a class; INVALID_CLASS if there is none.
    const cimple::Meta_Class* classNamed(const std::string& name) const;

    // An instance with the path's namespace and keys; all other properties are NULL.
    cimple::Ref<cimple::Instance>
    fromPath(const CMPIObjectPath* path, const cimple::Meta_Class* metaClass, Keys keys) const;

    // An instance with the properties of a CMPI instance; all others are NULL.
    cimple::Ref<cimple::Instance> fromInstance(const CMPIInstance* instance,
                                               const cimple::Meta_Class* metaClass,
                                               const std::string& nameSpace,
                                               Unknown unknown) const;

    // Sets a feature of an instance or a method object. Integers of another width are let in for keys only.
    void setFeature(cimple::Instance* instance,
                    const cimple::Meta_Feature* feature,
                    const CMPIData& data,
                    const std::string& nameSpace) const;

  private:
    void setProperty(cimple::Instance* instance, const cimple::Meta_Property* mp, const CMPIData& data) const;
    void setReference(cimple::Instance* instance,
                      const cimple::Meta_Reference* mr,
                      const CMPIData& data,
                      const std::string& nameSpace) const;
    cimple::Ref<cimple::Instance>
    referenced(const cimple::Meta_Reference* mr, const CMPIData& data, const std::string& nameSpace) const;

    const cimple::Meta_Class* _scope;
};

// The parts of a path; empty if the broker has none.
std::string nameSpaceOf(const CMPIObjectPath* path);
std::string classNameOf(const CMPIObjectPath* path);
std::string textOf(const CMPIString* string);

} // namespace cimple_cmpi
