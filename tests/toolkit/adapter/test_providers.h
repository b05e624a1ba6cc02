// Providers of the demo classes that do what a test tells them, and their CMPI entry points.
#pragma once

#include <cimple/cimple.h>
#include <demo_objects.h>

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "test_client.h"

namespace adapter_test
{

using cimple::Instance;
using cimple::Ref;

// What the providers of one class do, and what they have seen. Reset by each test before the first request.
struct Script
{
    int load = 0;                         // status of load()
    int unload = 0;                       // status of unload()
    int status = 0;                       // status of every operation, if not 0
    std::function<void()> inside;         // runs in every operation except load and unload
    std::function<void()> insideCreate;   // runs in the constructor
    std::function<void()> insideLoad;     // runs in load()
    std::vector<Ref<Instance>> instances; // what the provider has; handed out shared, not copied
    bool inMap = false;                   // enumerations hand them out from an instance map

    // What an association provider answers itself; null leaves it to the adapter.
    const std::vector<Ref<Instance>>* nativeAssociators = nullptr; // and their names
    const std::vector<Ref<Instance>>* nativeReferences = nullptr;

    std::string filters; // of the last question: result class, role and result role

    // What the indication provider does when it is switched on and off: 0 or a status. `handle` hands an
    // indication over.
    typedef std::function<bool(Instance* indication)> Handle;
    std::function<int(const Handle& handle)> enable;
    std::function<int()> disable;
    Handle handle;

    // Fills in the outputs of a method.
    std::function<void(Instance* method)> method;

    std::atomic<int> alive{0}; // provider objects
    std::atomic<int> loads{0};
    std::atomic<int> unloads{0};
    std::atomic<int> enumerations{0};
    std::atomic<int> handed{0}; // instances handed to a handler
    std::string model;          // the last model, as printed; not for several threads at once
    std::string modelNameSpace;
    bool keepModels = true;

    void reset();
};

// The script of the providers of a class.
Script& script(const char* className);
template <class Class>
Script& script()
{
    return script(Class::static_meta_class.name);
}

// Of all classes, for a new test.
void resetScripts();

// The entry points of a provider.
extern const test_broker::Factories rackProvider;
extern const test_broker::Factories elementProvider;
extern const test_broker::Factories sensorProvider;
extern const test_broker::Factories everythingProvider;
extern const test_broker::Factories labProvider;
extern const test_broker::Factories sensorInRackProvider;
extern const test_broker::Factories rackAboveRackProvider;
extern const test_broker::Factories dependencyProvider;
extern const test_broker::Factories alertProvider;

// Short forms.
Ref<Instance> rack(const char* name);
Ref<Instance> sensor(cimple::uint32 id, const char* label = nullptr);
Ref<Instance> sensorInRack(const char* rackName, cimple::uint32 sensorId);
Ref<Instance> alert(const char* text);
Ref<Instance> rackAboveRack(const char* upper, const char* lower);

// A demo class as a server with a newer schema has it: every scalar with a default, and properties more.
std::vector<test_broker::Named> schemaOf(const std::string& className);

test_broker::Path classPath(const char* className);
test_broker::Path rackPath(const char* name);
test_broker::Path sensorPath(cimple::uint32 id);
test_broker::Value limits(int low); // an embedded Demo_Limits

} // namespace adapter_test
