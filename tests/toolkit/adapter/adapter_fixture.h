// What the tests of the adapter have in common: a broker whose rules were kept, and scripts that start empty.
#pragma once

#include <gtest/gtest.h>

#include "test_client.h"
#include "test_providers.h"

namespace adapter_test
{

using namespace cimple;
using test_broker::Client;
using test_broker::Inst;
using test_broker::Named;
using test_broker::Outcome;
using test_broker::Path;
using test_broker::Properties;
using test_broker::Value;
typedef std::vector<std::string> Texts;

class AdapterTest : public testing::Test
{
  protected:
    AdapterTest() { resetScripts(); }

    // Ends what the test has begun: afterwards all providers are gone and the broker has nothing to complain
    // of.
    void TearDown() override
    {
        for (Client* client : _clients)
        {
            EXPECT_EQ(client->cleanup(true).texts(), Texts());
            delete client;
        }
        EXPECT_EQ(broker.violations(), "");
    }

    // The interfaces of a provider, cleaned up at the end of the test.
    Client& client(const test_broker::Factories& factories)
    {
        _clients.push_back(new Client(broker, factories));
        return *_clients.back();
    }

    test_broker::Broker broker;

  private:
    std::vector<Client*> _clients;
};

} // namespace adapter_test
