// What the tests of the adapter have in common: a broker whose rules were kept, and scripts that start empty.
#ifndef TESTS_TOOLKIT_ADAPTER_ADAPTER_FIXTURE_H
#define TESTS_TOOLKIT_ADAPTER_ADAPTER_FIXTURE_H

#include <gtest/gtest.h>

#include "test_client.h"
#include "test_providers.h"

namespace adapter_test
{

using namespace cimple;
using test_broker::Client;
using test_broker::Inst;
using test_broker::Outcome;
using test_broker::Path;
using test_broker::Properties;
typedef std::vector<std::string> Texts;

class AdapterTest : public testing::Test
{
  protected:
    // The server fills new instances, unless a test wants it plain.
    AdapterTest()
    {
        resetScripts();
        broker.schema = schemaOf;
    }

    // Ends what the test has begun: afterwards all providers are gone and the broker has nothing to complain
    // of.
    void TearDown() override
    {
        for (auto& client : _clients)
            EXPECT_EQ(client->cleanup(true).texts(), Texts());
        EXPECT_EQ(broker.violations(), "");
    }

    // The interfaces of a provider, cleaned up at the end of the test.
    Client& client(const test_broker::Factories& factories)
    {
        return *_clients.emplace_back(std::make_unique<Client>(broker, factories));
    }

    test_broker::Broker broker;

  private:
    std::vector<std::unique_ptr<Client>> _clients;
};

inline std::string rackPath(const std::string& name)
{
    return "root/demo:Demo_Rack.Name=\"" + name + "\"";
}

inline std::string sensorPath(int id)
{
    return "root/demo:Demo_Sensor.Id=u32:" + std::to_string(id);
}

// A one-time event that threads of a test wait for: `missing` arrivals.
struct Latch
{
    void arrive() { missing--; }
    void wait()
    {
        while (missing > 0)
            std::this_thread::yield();
    }
    void arriveAndWait()
    {
        arrive();
        wait();
    }
    std::atomic<int> missing{1};
};

} // namespace adapter_test

#endif
