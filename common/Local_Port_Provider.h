// The shape of a class with one instance for each port of the local switch, filled from one batch a port.
#ifndef COMMON_LOCAL_PORT_PROVIDER_H
#define COMMON_LOCAL_PORT_PROVIDER_H

#include "common/Map_Provider.h"
#include "switchaccess/Attribute.h"
#include "switchaccess/CacheLock.h"
#include "switchaccess/fabric_walk.h"

#include <string>

namespace cimple
{

// A local port during the load.
struct Loaded_Port
{
    const DataCache& cache;
    const std::string& index; // its number as a decimal text
};

// The key of a local port's instance is an InstanceID: a prefix, the switch's WWN, a colon and the port's
// WWN. PROVIDER supplies
//   static constexpr Attribute<CLASS> kAttributes[]: what the batch reads; the first conversion of a key
//     stands for the port's index, the second for what keyArgument() gives;
//   static constexpr const char* kIdPrefix, *kElementName;
//   static void fill(CLASS& instance, const Attribute_Reader<CLASS>& attributes, const Datetime& loadTime):
//     sets what the table does not say;
// and hides, where it differs,
//   kUnnamed: what is said of a port without a WWN; without a text such a port ends the walk;
//   kNamesFirst: true for a class whose instances are made after the port's WWN is known;
//   static const char* keyArgument(const Loaded_Port& port).
// The texts of the load may name the port: their arguments are its index and, once it is known, the
// InstanceID.
template <class PROVIDER, class CLASS>
class Local_Port_Provider_Base : public Instance_Provider_Base<PROVIDER, CLASS>
{
  public:
    static constexpr Failure_Text kUnnamed = Failure_Text::none();
    static constexpr bool kNamesFirst = false;
    static const char* keyArgument(const Loaded_Port&) { return ""; }

    void build(Map_Writer<CLASS>& map)
    {
        const CacheLock cacheLock;
        requireCacheLock(cacheLock, PROVIDER::kSource);
        const DataCache& cache = *DataCache::instance();
        const Wwn rootWwn = cache.getRootSwitchWwn();
        const Datetime loadTime = Datetime::now();
        Attribute_Reader<CLASS> attributes(PROVIDER::kAttributes);

        for (const std::string& port : Root_Ports(cache))
        {
            if (!attributes.read({port.c_str(), PROVIDER::keyArgument({cache, port})}))
                PROVIDER::fail(PROVIDER::kReadFailed, {port.c_str()});
            Owned<CLASS> instance;
            if (!PROVIDER::kNamesFirst)
                instance = PROVIDER::make({port.c_str()});
            const Wwn portWwn = cache.calcPortWwn(rootWwn, port);
            if (portWwn.empty())
            {
                if (PROVIDER::kUnnamed.text == nullptr)
                    break;
                PROVIDER::fail(PROVIDER::kUnnamed, {port.c_str()});
            }
            if (!instance)
                instance = PROVIDER::make({port.c_str()});
            const std::string id = PROVIDER::kIdPrefix + rootWwn.toString() + ":" + portWwn.toString();
            instance->InstanceID.set(id.c_str());
            instance->ElementName.set(PROVIDER::kElementName);
            attributes.fill(*instance);
            PROVIDER::fill(*instance, attributes, loadTime);
            PROVIDER::add(map, instance, {port.c_str(), id.c_str()});
        }
    }
};

template <class CLASS>
using Local_Port_Provider = Local_Port_Provider_Base<typename Registered<CLASS>::Provider, CLASS>;

} // namespace cimple

#endif
