// From CMPI objects to the toolkit's instances.
#ifndef TOOLKIT_ADAPTER_FROMCMPI_H
#define TOOLKIT_ADAPTER_FROMCMPI_H

#include <cimple/cimple.h>
#include <cmpift.h>

#include <string>
#include <vector>

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
        kRefuse, // a value for a property that neither the class has nor the server's schema is a failure
        kIgnore
    };

    // Classes are looked up from `scope`: it, its superclasses, its repository.
    FromCmpi(const CMPIBroker* broker, const cimple::Meta_Class* scope) : _broker(broker), _scope(scope) {}

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

    // The names of the properties of a modification without a property list that a client can have meant,
    // followed by a null pointer. Names are those of the class.
    //
    // A client means what it gives, keys apart. A server that fills instances adds what the client did not
    // give, and a default that it filled in must never be written to a device. So a property that is as the
    // server makes it in a new instance is not meant, unless the server has not filled this instance: then it
    // lacks a value that a new one has. Where a client means such a value it has to list the property.
    std::vector<const char*> meantBy(const CMPIInstance* modification,
                                     const cimple::Instance* converted) const;

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

    const CMPIBroker* _broker;
    const cimple::Meta_Class* _scope;
};

// The parts of a path; empty if the broker has none.
std::string nameSpaceOf(const CMPIObjectPath* path);
std::string classNameOf(const CMPIObjectPath* path);
std::string textOf(const CMPIString* string);

} // namespace cimple_cmpi

#endif
