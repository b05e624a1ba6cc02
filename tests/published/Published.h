// The test of a class's table: a fabric, the class asked of it, and what the table says of the answer.
#ifndef TESTS_PUBLISHED_PUBLISHED_H
#define TESTS_PUBLISHED_PUBLISHED_H

#include "tests/common/testing/Switch_Test.h"
#include "tests/published/Table.h"

#include <functional>
#include <memory>
#include <ostream>

#include <nlohmann/json.hpp>

namespace published
{

using cimple::Instance;
using Json = nlohmann::json;

typedef std::function<void(const Instance&)> Visit;

struct Served_Class
{
    const char* name;
    bool isAssociation;
    bool hasMap;
    const cimple::Meta_Class* metaClass;

    // Enumerates as a server does, through the module's registration.
    Served serve(const Visit& visit) const;
};
inline std::ostream& operator<<(std::ostream& out, const Served_Class& one)
{
    return out << one.name;
}

// The instances that a pair refers to.
std::vector<const Instance*> endsOf(const Instance& association);

struct Answer
{
    Served served;
    Texts names;
    std::vector<Properties> instances;
    Texts logged;
};

class Published : public Switch_Test, public testing::WithParamInterface<Served_Class>
{
  protected:
    Published() { useZone("IST-5:30"); } // no whole hours from UTC
    ~Published() override
    {
        unsetenv("TZ");
        tzset();
    }

    static void useZone(const char* zone)
    {
        setenv("TZ", zone, 1);
        tzset();
    }

    void SetUp() override;

    // The fabric at its start, with what the table says of its attributes.
    void start(const Json& scenario);

    // Times of the load are given as the table writes them.
    Answer ask();

    // What is published of the fabric as it is. Instances that are like others are taken as they are.
    std::vector<Properties> expected(const Answer& actual) const;
    Texts entryNames() const;

    // One instance after the other, so that a difference is easily seen.
    void expectInstances(const Answer& answer, const std::vector<Properties>& wanted) const;

    static Json patchOf(const Texts& conditions);
    void meet(const Texts& conditions);
    void meet(const std::string& event);
    void expectEffects(const When& when, const Answer& usual);

    Table table;
    Json fabric;
    std::vector<std::unique_ptr<Step_Failures>> failures;
};

} // namespace published

#endif
