// Holds every class to the table of what it publishes; README.md says how to read one. A registered class
// without a table fails, and so does a table without a class.
#include "common/providers.h"
#include "platform/configuration.h"
#include "providers_includes.h"
#include "simulator/scenario/scenario_json.h"
#include "tests/common/testing/Switch_Test.h"
#include "tests/published/Table.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <strings.h>
#include <sys/stat.h>

#include <cimple/Provider_Handle.h>
#include <nlohmann/json.hpp>

extern "C" cimple::Registration* cimple_module();

namespace published
{
namespace
{

using cimple::Instance;
using Json = nlohmann::json;

const std::string kFolder = VRAX_PUBLISHED_DIR;

// --- The classes

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
std::ostream& operator<<(std::ostream& out, const Served_Class& one)
{
    return out << one.name;
}

struct Receiver
{
    const Visit& visit;
    Served served;
};

bool receive(Instance* instance, cimple::Enum_Instances_Status, void* data)
{
    if (instance == nullptr) // there is nothing more
        return false;
    Receiver& receiver = *static_cast<Receiver*>(data);
    ++receiver.served.count;
    receiver.visit(*instance);
    cimple::unref(instance);
    return true;
}

Served Served_Class::serve(const Visit& visit) const
{
    const cimple::Registration* registration = cimple_module();
    while (registration->meta_class != metaClass)
        registration = registration->next;
    Receiver receiver{visit, {}};
    receiver.served.status =
        cimple::Provider_Handle(registration).enum_instances(nullptr, receive, &receiver);
    return receiver.served;
}

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

// --- Short names

std::map<std::string, std::string> names; // of the fabric's World Wide Names

// The text with the World Wide Names of the fabric replaced by their names.
std::string shortened(std::string text)
{
    for (const auto& [wwn, name] : names)
    {
        for (std::size_t at = 0; at + wwn.size() <= text.size(); ++at)
            if (strncasecmp(text.c_str() + at, wwn.c_str(), wwn.size()) == 0)
                text.replace(at, wwn.size(), name);
    }
    return text;
}

// By the last of its keys, for what a switch has behind the switch; a pair by its ends.
std::string nameOf(const Instance& instance)
{
    Properties properties = described(instance);
    for (const char* key : {"DeviceID", "InstanceID", "Tag"})
        if (properties.count(key) != 0)
            return shortened(properties[key]);
    if (properties.count("Name") != 0)
    {
        const std::string system = shortened(properties["SystemName"]);
        const std::string name = shortened(properties["Name"]);
        return properties["SystemCreationClassName"] == "VRAX_FCSwitch" && system != name
                   ? system + ":" + name
                   : name;
    }
    return "";
}

std::vector<const Instance*> endsOf(const Instance& association)
{
    std::vector<const Instance*> ends;
    for (std::size_t i = 0; i < association.meta_class->num_meta_features; ++i)
    {
        const cimple::Meta_Feature* feature = association.meta_class->meta_features[i];
        if (feature->flags & CIMPLE_FLAG_REFERENCE)
        {
            const auto* reference = reinterpret_cast<const cimple::Meta_Reference*>(feature);
            ends.push_back(cimple::__ref_of(&association, reference));
        }
    }
    return ends;
}

// --- Times

constexpr const char* kNow = "(now)";
constexpr const char* kLocalNow = "(local now)";

std::string localText(std::time_t moment)
{
    std::tm fields{};
    localtime_r(&moment, &fields);
    char text[cimple::Datetime::BUFFER_SIZE];
    std::strftime(text, sizeof(text), "%Y%m%d%H%M%S.000000+000", &fields);
    return text;
}

// The present as such a time. Times of one kind are in the order of their texts.
std::string present(const std::string& kind)
{
    if (kind == kNow)
        return cimple::Datetime::now().ascii().c_str();
    return localText(std::time(nullptr));
}

// --- The image of the configuration

constexpr const char* kImage = "(image)";
constexpr const char* kImageTime = "(image time)";

struct Image
{
    std::string bytes; // as a table of texts has them
    std::string time;  // local, as if it were UTC
};

// The image that the switch has written.
Image writtenImage()
{
    char place[kPlaceSize] = "";
    locateSwitchFile(kConfigImage, place, sizeof(place));
    Image image;
    std::ifstream file(place, std::ios::binary);
    for (char c = 0; file.get(c);)
        image.bytes += (image.bytes.empty() ? "[" : ", ") + std::to_string(static_cast<unsigned char>(c));
    image.bytes += ", 0]";
    struct stat facts = {};
    ::stat(place, &facts);
    image.time = localText(facts.st_mtime);
    return image;
}

// --- The test

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

    void SetUp() override
    {
        ASSERT_NO_THROW(table = readTable(kFolder + "/" + GetParam().name + ".txt"));
        std::ifstream(kFolder + "/fabric.json") >> fabric;
        fabric.at("names").get_to(names);
        fabric.erase("names");
        fabric = fabric.patch(patchOf(table.given));
        start(fabric);
    }

    // The fabric at its start, with what the table says of its attributes.
    void start(const Json& scenario)
    {
        sim.open(simulator::parseScenario(scenario.dump(), "fabric.json"));
        boundWalks();
        for (const Entry& entry : table.entries)
        {
            for (const Source& source : entry.sources)
                if (source.answer)
                    sim.answer(source.key, *source.answer);
        }
        sim.mark();
    }

    // Times of the load are given as the table writes them.
    Answer ask()
    {
        Properties before = {{kNow, present(kNow)}, {kLocalNow, present(kLocalNow)}};
        const Log_Capture log;
        Answer answer;
        answer.served = GetParam().serve(
            [&](const Instance& instance)
            {
                answer.instances.push_back(described(instance));
                std::string name = nameOf(instance);
                if (GetParam().isAssociation)
                {
                    const std::vector<const Instance*> ends = endsOf(instance);
                    name = nameOf(*ends.at(0)) + " - " + nameOf(*ends.at(1));
                }
                answer.names.push_back(name);
            });
        answer.logged = log.texts();
        for (std::size_t i = 0; i < std::min(answer.instances.size(), table.entries.size()); ++i)
        {
            for (const auto& [property, value] : table.entries[i].properties)
            {
                if (value != kNow && value != kLocalNow && value != kImage && value != kImageTime)
                    continue;
                std::string& published = answer.instances[i][property];
                const bool isAsWritten = value == kImage ? published == writtenImage().bytes
                                         : value == kImageTime
                                             ? published == writtenImage().time
                                             : published >= before[value] && published <= present(value);
                if (isAsWritten)
                    published = value;
            }
        }
        return answer;
    }

    // What is published of the fabric as it is. Instances that are like others are taken as they are.
    std::vector<Properties> expected(const Answer& actual) const
    {
        std::vector<Properties> all;
        for (std::size_t i = 0; i < table.entries.size(); ++i)
        {
            const bool listed = table.entries[i].like.empty();
            all.push_back(listed || i >= actual.instances.size() ? table.entries[i].properties
                                                                 : actual.instances[i]);
        }
        return all;
    }
    Texts entryNames() const
    {
        Texts all;
        for (const Entry& entry : table.entries)
            all.push_back(entry.name);
        return all;
    }

    // One instance after the other, so that a difference is easily seen.
    void expectInstances(const Answer& answer, const std::vector<Properties>& wanted) const
    {
        ASSERT_EQ(answer.instances.size(), wanted.size()) << testing::PrintToString(answer.names);
        for (std::size_t i = 0; i < wanted.size(); ++i)
            EXPECT_EQ(answer.instances[i], wanted[i]) << answer.names[i];
    }

    static Json patchOf(const Texts& conditions);
    void meet(const Texts& conditions);
    void meet(const std::string& event);
    void expectEffects(const When& when, const Answer& usual);

    Table table;
    Json fabric;
    std::vector<std::unique_ptr<Step_Failures>> failures;
};

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

// --- Conditions

// "SUBJECT fails", "SUBJECT fails with STATUS after COUNT", "SUBJECT unavailable".
void Published::meet(const std::string& event)
{
    const Texts after = split(event, " after "), with = split(after.at(0), " with ");
    const int successes = after.size() > 1 ? std::stoi(after[1]) : 0;
    const std::size_t verb = with.at(0).rfind(' ');
    const std::string subject = with[0].substr(0, verb);
    const bool isUnavailable = with[0].substr(verb + 1) == "unavailable";
    const std::int32_t status = with.size() > 1 ? std::stoi(with[1])
                                : isUnavailable ? XPL_NOT_AVAILABLE
                                                : XPL_UNREACHABLE;
    const char* const className = GetParam().name;
    if (subject == "creation")
        failures.push_back(std::make_unique<Create_Failures>(className, successes));
    else if (subject == "key check")
        failures.push_back(std::make_unique<Key_Failures>(className, successes));
    else if (subject == "insertion")
        failures.push_back(std::make_unique<Insert_Failures>(className, successes));
    else if (subject.find('.') != subject.npos)
        sim.failKey(subject, status);
    else
        sim.failNext(subject, 1, status, successes);
}

// Of the conditions that are places of the fabric.
Json Published::patchOf(const Texts& conditions)
{
    Json patch = Json::array();
    for (const std::string& condition : conditions)
    {
        const Texts value = split(condition, " = ");
        if (condition[0] == '/' && value.size() == 2)
            patch.push_back({{"op", "add"}, {"path", value[0]}, {"value", Json::parse(value[1])}});
        else if (condition[0] == '/')
            patch.push_back({{"op", "remove"}, {"path", split(condition, " ").at(0)}});
    }
    return patch;
}

void Published::meet(const Texts& conditions)
{
    start(fabric.patch(patchOf(conditions)));
    for (const std::string& condition : conditions)
    {
        if (condition[0] == '/')
            continue;
        const std::size_t equals = condition.find(" = ");
        if (equals == condition.npos)
            meet(condition);
        else
            sim.answer(condition.substr(0, equals), unquoted(condition.substr(equals + 3)));
    }
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
    for (const auto& file : std::filesystem::directory_iterator(kFolder))
        if (file.path().extension() == ".txt")
            EXPECT_EQ(registered.count(file.path().stem()), 1u) << file.path();
}

} // namespace
} // namespace published
