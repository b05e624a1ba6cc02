// From the toolkit's instances to CMPI objects.
#ifndef TOOLKIT_ADAPTER_TOCMPI_H
#define TOOLKIT_ADAPTER_TOCMPI_H

#include "Class_Shape.h"
#include "server_schema.h"
#include <cimple/cimple.h>
#include <cmpift.h>

#include <string>
#include <vector>

namespace cimple_cmpi
{

// Which features of an instance a client asked for: a list of names in any letter case that ends with a null
// pointer, or null for all. Keys always belong. Remembers its answer for the class it was last asked about.
class PropertyFilter
{
  public:
    explicit PropertyFilter(const char* const* properties) : _properties(properties) {}

    // One flag per feature of the class.
    const std::vector<bool>& of(const cimple::Meta_Class* metaClass);

    // Tells the broker, too: one that fills new instances leaves the list to the provider.
    void applyTo(const CMPIInstance* instance, const cimple::Meta_Class* metaClass);

  private:
    const char* const* _properties;
    const cimple::Meta_Class* _metaClass = nullptr;
    std::vector<bool> _admitted;
    std::vector<const char*> _keys; // names, and a null pointer
};

// Converts what belongs to one request. Objects are the broker's and live until the running MI function
// returns; instances are only read, so they may be shared. Throws Failure, saying which feature and why.
class ToCmpi
{
  public:
    enum Lifetime
    {
        kCall, // the broker collects the objects when the running MI function returns
        kScope // release() or the end of this object releases them: where there are many, or where the thread
               // never returns to the broker
    };

    // The namespace stands in the paths of instances that carry none of their own.
    // Who converts again and again on one thread passes on what is known of the server's classes.
    ToCmpi(const CMPIBroker* broker,
           const std::string& nameSpace,
           Lifetime lifetime = kCall,
           Prefilled_Classes* prefilled = nullptr)
        : _broker(broker), _nameSpace(nameSpace), _prefilled(prefilled ? *prefilled : _ownPrefilled),
          _tracking(lifetime == kScope)
    {
    }
    ~ToCmpi() { release(); }
    ToCmpi(const ToCmpi&) = delete;
    ToCmpi& operator=(const ToCmpi&) = delete;

    // Namespace, class name as declared, and all keys. A key without a value is a failure.
    CMPIObjectPath* path(const cimple::Instance* instance);

    // With kScope: releases all objects made so far, containers before what they contain, because some
    // brokers store the pointers that are put into a container.
    void release();

    // An instance with its path, all keys and the other features that the filter admits. NULL features are
    // left out, since the class tells the broker that they exist, unless the broker put a default there.
    CMPIInstance* instance(const cimple::Instance* instance, PropertyFilter& filter);

    // The same without a filter; keys may lack a value, as in embedded instances and indications.
    CMPIInstance* looseInstance(const cimple::Instance* instance);

    // The value of a feature of an instance or a method object. False, and only the type, if it is NULL.
    bool value(const cimple::Instance* instance, const cimple::Meta_Feature* feature, CMPIData& data);

  private:
    struct Made
    {
        void* object;
        void (*release)(void* object);
    };
    enum Strictness
    {
        kStrict, // keys must have values
        kLoose
    };
    // The converted keys of an instance in the order of its features; they go into path and instance alike.
    // Plain texts are null here, as they need no conversion.
    typedef std::vector<CMPIData> Keys;

    template <class Edt>
    Edt* made(Edt* object, const CMPIStatus& status, const char* what);
    template <class Edt>
    void track(Edt* object);

    const char* nameSpaceOf(const cimple::Instance* instance, const char* outer) const;
    void addKeys(CMPIObjectPath* path,
                 const cimple::Instance* instance,
                 const char* nameSpace,
                 Strictness strictness,
                 Keys* keys);
    CMPIObjectPath*
    makePath(const cimple::Instance* instance, const char* outer, Strictness, Keys* keys = nullptr);
    CMPIInstance*
    makeInstance(const cimple::Instance* instance, const char* outer, Strictness, PropertyFilter* filter);
    void setFeatures(CMPIInstance* target,
                     const cimple::Instance* instance,
                     const char* nameSpace,
                     const Keys& keys,
                     PropertyFilter* filter,
                     const Class_Shape& shape);

    bool convert(const cimple::Instance* instance,
                 const cimple::Meta_Feature* feature,
                 const char* nameSpace,
                 CMPIData& data);
    void convertReferences(const cimple::Array_Instance& elements, const char* nameSpace, CMPIData& data);
    CMPIValue reference(const cimple::Instance* instance, CMPIType type, const char* nameSpace);
    template <class T>
    CMPIValue array(const cimple::Array<T>& elements);
    CMPIValue scalar(const cimple::String& x);
    CMPIValue scalar(const cimple::Datetime& x);
    template <class T>
    CMPIValue scalar(const T& x);

    const CMPIBroker* _broker;
    std::string _nameSpace;
    std::vector<Made> _made;
    Prefilled_Classes _ownPrefilled;
    Prefilled_Classes& _prefilled;
    Class_Shapes _shapes;
    bool _tracking;
};

} // namespace cimple_cmpi

#endif
