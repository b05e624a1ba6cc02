// What a CIM server knows of a class by itself, seen in the instances that it makes.
//
// Servers differ. Some make instances without any property. Others put every property of the class into a new
// instance, with the default of their schema, and treat instances that come from clients alike. Their schema
// may be newer than the module's, with more properties and other defaults.
#ifndef TOOLKIT_ADAPTER_SERVER_SCHEMA_H
#define TOOLKIT_ADAPTER_SERVER_SCHEMA_H

#include <cimple/cimple.h>
#include <cmpift.h>

#include <deque>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace cimple_cmpi
{

struct Named_Data
{
    std::string name;
    CMPIData data; // belongs to the instance
};

bool isNull(const CMPIData& data);

// All properties that an instance has, NULL or not.
std::vector<Named_Data> propertiesOf(const CMPIInstance* instance);

// A new instance of a class without keys; the server collects it when the running MI function returns. Null
// if the server makes none.
CMPIInstance* newInstance(const CMPIBroker* broker, const std::string& nameSpace, const char* className);

// The property of that name in any letter case, or null.
const Named_Data* findProperty(const std::vector<Named_Data>& properties, const std::string& name);

// The values that a server puts into new instances of a class. What a provider leaves NULL must be taken out
// of them again, or clients take the default for the state of the device.
struct Prefilled
{
    Prefilled(const cimple::Meta_Class* metaClass, const CMPIInstance* fresh);

    const cimple::Meta_Class* metaClass;
    std::vector<CMPIType> features; // type of each feature that has a value, else CMPI_null; may be empty
    // Those that the module's class does not have. No provider can speak for them, so none has a value.
    std::vector<std::pair<std::string, CMPIType>> unknown;
};

// What was seen of each class. What a server fills in is the same for all instances of a class, so one is
// looked at: the looking leaves objects that only the end of the call collects. For any number of threads.
class Prefilled_Classes
{
  public:
    const Prefilled& of(const cimple::Meta_Class* metaClass, const CMPIInstance* fresh);

  private:
    std::mutex _mutex;
    std::deque<Prefilled> _known;
};

} // namespace cimple_cmpi

#endif
