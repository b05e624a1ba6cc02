// A broker and a call in progress on it, without any provider library.
#ifndef TESTS_AGENT_BROKER_BROKERFIXTURE_H
#define TESTS_AGENT_BROKER_BROKERFIXTURE_H

#include "agent/broker/ProviderCall.h"
#include "tests/agent/testproviders/TestCore.h"

#include <cmpimacs.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace cimd::test
{

class Results : public ResultReceiver
{
  public:
    void instance(const Instance& instance, const ClassInfo&) override { instances.push_back(instance); }
    void path(const ObjectPath& path, const ClassInfo&) override { paths.push_back(path); }
    void data(const CimValue& value) override { values.push_back(value); }

    std::vector<Instance> instances;
    std::vector<ObjectPath> paths;
    std::vector<CimValue> values;
};

class BrokerFixture : public testing::Test
{
  protected:
    ServiceBroker broker{repository()};
    const CMPIBroker* mb = broker.handle();
    RequestContext request{"alice", "192.0.2.1:40000", "de"};
    Results results;
    ProviderCall call{broker, {request, "root/test", CMPI_FLAG_DeepInheritance, "operator", "Test"}, results};

    CMPIObjectPath* newPath(const char* className)
    {
        return CMNewObjectPath(mb, "root/test", className, nullptr);
    }

    // With a scalar in a block of exactly its size, so that reading more is caught.
    template <class Scalar>
    static CMPIrc set(CMPIInstance* instance, const char* name, CMPIType type, Scalar value)
    {
        const auto block = std::make_unique<Scalar>(value);
        return instance->ft
            ->setProperty(instance, name, reinterpret_cast<const CMPIValue*>(block.get()), type)
            .rc;
    }

    static CMPIrc setText(CMPIInstance* instance, const char* name, const char* value)
    {
        return instance->ft
            ->setProperty(instance, name, reinterpret_cast<const CMPIValue*>(value), CMPI_chars)
            .rc;
    }

    CMPIInstance* newWidget(const char* name = "w")
    {
        CMPIObjectPath* path = newPath("Test_Widget");
        path->ft->addKey(path, "Name", reinterpret_cast<const CMPIValue*>(name), CMPI_chars);
        return CMNewInstance(mb, path, nullptr);
    }
};

inline std::string text(const CMPIString* string)
{
    return string ? CMGetCharsPtr(string, nullptr) : "(null)";
}

inline std::string text(const CMPIData& data)
{
    return text(data.value.string);
}

} // namespace cimd::test

#endif
