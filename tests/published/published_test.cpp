// Holds every class to the table of what it publishes; README.md says how to read one. A registered class
// without a table fails, and so does a table without a class.
#include "common/providers.h"
#include "providers_includes.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/published/Published.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace published
{
namespace
{

#define SERVED(cls, isAssociation)                                                                           \
    {#cls, isAssociation, cimple::cls##_Provider::kHasMap, &cimple::cls::static_meta_class},
#define SERVED_INSTANCE(cls) SERVED(cls, false)
#define SERVED_ASSOCIATION(cls) SERVED(cls, true)
#define SERVED_INDICATION(cls)
#define VRAX_PROVIDER(kind, folder, cls) SERVED_##kind(cls)
const Served_Class kServed[] = {
#include "common/providers.def"
};
#undef VRAX_PROVIDER

TEST_P(Published, IsWhatTheTableSays)
{
    const Answer cold = ask();
    EXPECT_EQ(cold.served.status, 0);
    EXPECT_EQ(cold.logged, Texts());
    ASSERT_EQ(cold.names, entryNames());
    expectInstances(cold, expected(cold));
    for (const auto& [call, count] : table.calls)
        EXPECT_EQ(sim.calls(call), count) << call;
    const std::vector<Texts> batches = sim.batches();
    for (std::size_t i = 0; i < table.entries.size(); ++i)
    {
        const Entry& entry = table.entries[i];
        Texts ofThis, ofTheOther, keys;
        for (const auto& [property, value] : cold.instances[i])
            ofThis.push_back(property);
        for (const auto& [property, value] : entry.properties)
            ofTheOther.push_back(property);
        EXPECT_EQ(ofThis, ofTheOther) << entry.name;
        for (const Source& source : entry.sources)
            keys.push_back(source.key);
        EXPECT_TRUE(keys.empty() || std::count(batches.begin(), batches.end(), keys) == 1)
            << "no such batch for " << entry.name << ": " << testing::PrintToString(batches);
    }

    if (!GetParam().hasMap)
        return;
    sim.mark();
    ask();
    EXPECT_EQ(sim.platformCalls(), 0u) << "a fresh map";
    clock.advance(29900);
    ask();
    EXPECT_EQ(sim.platformCalls(), 0u) << "a map is fresh for 30 s";
    clock.advance(100);
    useZone("UTC0");                        // shows a time that is kept, within one second
    expectInstances(ask(), expected(cold)); // each load is a new sample
}

// --- Effects

// A log text, in which the table writes a line feed as \\n.
std::string withLineFeeds(std::string text)
{
    for (std::size_t at = text.find("\\n"); at != text.npos; at = text.find("\\n", at))
        text.replace(at, 2, "\n");
    return text;
}

// "Property value" or "Property null".
void change(Properties& properties, const std::string& effect)
{
    const std::string name = effect.substr(0, effect.find(' '));
    const std::string value = effect.substr(name.size() + 1);
    if (value == "null")
        properties.erase(name);
    else
        properties[name] = unquoted(value);
}

} // namespace

void Published::expectEffects(const When& when, const Answer& usual)
{
    const Answer answer = ask();
    for (const auto& failure : failures)
        EXPECT_TRUE(failure->struck());
    failures.clear();
    std::vector<Properties> properties = expected(usual);
    Texts fewer = entryNames();
    bool namesAlone = false;
    for (const std::string& effect : when.effects)
    {
        const std::string word = effect.substr(0, effect.find(' '));
        const std::string rest = word == effect ? "" : effect.substr(word.size() + 1);
        if (word == "fails")
        {
            EXPECT_EQ(answer.served.status, cimple::ENUM_INSTANCES_FAILED);
            EXPECT_EQ(answer.served.count, 0u);
            EXPECT_EQ(answer.logged, rest == "silently" ? Texts() : split(withLineFeeds(rest), " | "));
            start(fabric);
            expectInstances(ask(), usual.instances); // the next request tries again
            return;
        }
        if (word == "only")
        {
            fewer = split(rest, " | ");
            namesAlone = true;
        }
        else if (word == "without" || word == "gone")
        {
            for (const std::string& name :
                 word == "gone" ? Texts{entryNames().at(*when.entry)} : split(rest, " | "))
            {
                const auto place = std::find(fewer.begin(), fewer.end(), name);
                ASSERT_NE(place, fewer.end()) << name;
                properties.erase(properties.begin() + (place - fewer.begin()));
                fewer.erase(place);
            }
        }
        else if (word == "of")
        {
            const Texts nameAndChange = split(rest, ": ");
            const auto place = std::find(fewer.begin(), fewer.end(), nameAndChange.at(0));
            ASSERT_NE(place, fewer.end()) << rest;
            change(properties[static_cast<std::size_t>(place - fewer.begin())], nameAndChange.at(1));
        }
        else if (word == "every")
        {
            for (Properties& one : properties)
                change(one, rest);
        }
        else if (word == "calls")
        {
            const Texts callAndCount = split(rest, " ");
            EXPECT_EQ(sim.calls(callAndCount.at(0)), std::stoul(callAndCount.at(1))) << rest;
        }
        else if (word != "nothing")
        {
            change(properties.at(when.entry.value()), effect);
        }
    }
    EXPECT_EQ(answer.served.status, 0);
    EXPECT_EQ(answer.logged, Texts());
    const bool comparable = !namesAlone && answer.instances.size() == properties.size();
    if (!comparable || GetParam().isAssociation)
        EXPECT_EQ(answer.names, fewer); // which ends belong together
    if (comparable)
        expectInstances(answer, properties);
}

namespace
{

TEST_P(Published, ChangesAsTheTableSays)
{
    const Answer usual = ask();
    for (const When& when : table.whens)
    {
        SCOPED_TRACE("when " + when.text);
        makeMapsStale();
        meet(when.conditions);
        expectEffects(when, usual);
        failures.clear();
        sim.restore();
    }
}

// --- The declaration

// The class's declaration as a table writes it.
Declaration declarationOf(const cimple::Meta_Class& metaClass)
{
    Declaration declared;
    if (metaClass.super_meta_class != nullptr)
        declared["from"] = metaClass.super_meta_class->name;
    const auto append = [&](const char* list, const std::string& text) {
        declared[list] += (declared[list].empty() ? "" : list == std::string("ends") ? ", " : " ") + text;
    };
    for (std::size_t i = 0; i < metaClass.num_meta_features; ++i)
    {
        const cimple::Meta_Feature* feature = metaClass.meta_features[i];
        if (feature->flags & CIMPLE_FLAG_REFERENCE)
        {
            const auto* reference = reinterpret_cast<const cimple::Meta_Reference*>(feature);
            append("ends", std::string(feature->name) + " " + reference->meta_class->name);
        }
        else if (feature->flags & CIMPLE_FLAG_METHOD)
            append("methods", feature->name);
        if (feature->flags & CIMPLE_FLAG_KEY)
            append("keys", feature->name);
    }
    return declared;
}

TEST_P(Published, IsDeclaredAsTheTableSays)
{
    EXPECT_EQ(declarationOf(*GetParam().metaClass), table.declaration);
}

// --- What holds for all classes

// Every step of a walk through the data cache is taken under its lock, and so are the batches in between. The
// ends of an association stay loaded: their walks are their own classes' cases.
TEST_P(Published, IsReadUnderTheCacheLock)
{
    ask();
    makeMapStale(GetParam().name);
    sim.mark();
    ask();
    const bool locks = sim.calls("DataCache::dcRdLock") > 0;
    std::set<std::string> unlocked;
    for (const std::string call : {"DataCache::calcPortWwn",
                                   "DataCache::getFabric",
                                   "DataCache::getFirstRootPortIndex",
                                   "DataCache::getNextRootPortIndex",
                                   "DataCache::getPortHWType",
                                   "DataCache::getRootSwitchWwn",
                                   "DataCache::getSwitchFaults",
                                   "DataCache::isTransparentSwitch",
                                   "FabricCache::getFabricWwn",
                                   "FabricCache::getFirstSwitch",
                                   "FabricCache::getNextSwitch",
                                   "SwitchCache::getFirstPort",
                                   "SwitchCache::getNextPort",
                                   "get_first_attached_port",
                                   "get_next_attached_port",
                                   "xpl_smlGetBatch"})
    {
        if (locks || call != "xpl_smlGetBatch")
        {
            sim.onCall(call,
                       [this, call, &unlocked]
                       {
                           if (sim.heldCacheLocks() == 0)
                               unlocked.insert(call);
                       });
        }
    }
    makeMapStale(GetParam().name);
    ask();
    EXPECT_EQ(unlocked, std::set<std::string>());
}

// An association's ends are the cached instances of their classes, with all their properties; those of a
// class without a map are like the ones that it serves.
TEST_P(Published, RefersToWholeInstances)
{
    if (!GetParam().isAssociation)
        return;
    std::set<const Instance*> ends;
    std::set<std::string> classes;
    GetParam().serve(
        [&](const Instance& association)
        {
            for (const Instance* end : endsOf(association))
            {
                ends.insert(end);
                classes.insert(end->meta_class->name);
            }
        });
    for (const Served_Class& one : kServed)
        if (classes.count(one.name) != 0)
        {
            one.serve(
                [&](const Instance& instance)
                {
                    for (auto end = ends.begin(); end != ends.end();)
                    {
                        const bool alike = !one.hasMap && (*end)->meta_class == instance.meta_class &&
                                           described(**end) == described(instance);
                        end = *end == &instance || alike ? ends.erase(end) : std::next(end);
                    }
                });
        }
    EXPECT_TRUE(ends.empty()) << ends.size() << " ends are not the cached instances";
}

// Without a port, or without a fabric, there is less to publish and nothing fails.
TEST_P(Published, WorksWithoutPortsAndWithoutAFabric)
{
    sim.open(simulator::SimSwitch::make().ports(0).scenario());
    makeMapsStale();
    EXPECT_EQ(ask().served.status, 0);
    makeMapsStale();
    sim.failNext("DataCache::getFabric", 2);
    const Answer answer = ask();
    EXPECT_EQ(answer.served.status, 0);
    EXPECT_EQ(answer.logged, Texts());
}

INSTANTIATE_TEST_SUITE_P(Served,
                         Published,
                         testing::ValuesIn(kServed),
                         [](const testing::TestParamInfo<Served_Class>& served)
                         { return std::string(served.param.name); });

TEST(PublishedTables, AreOfRegisteredClasses)
{
    std::set<std::string> registered;
    for (const Served_Class& one : kServed)
        registered.insert(one.name);
    for (const auto& file : std::filesystem::directory_iterator(VRAX_PUBLISHED_DIR))
        if (file.path().extension() == ".txt")
            EXPECT_EQ(registered.count(file.path().stem()), 1u) << file.path();
}

} // namespace
} // namespace published
