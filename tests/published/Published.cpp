// The test of a class's table: what is asked, and in what circumstances.
#include "tests/published/Published.h"

#include "platform/configuration.h"
#include "simulator/scenario/scenario_json.h"

#include <algorithm>
#include <ctime>
#include <fstream>
#include <strings.h>
#include <sys/stat.h>

#include <cimple/Provider_Handle.h>

extern "C" cimple::Registration* cimple_module();

namespace published
{

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

namespace
{

const std::string kFolder = VRAX_PUBLISHED_DIR;

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

} // namespace

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

// --- The test

void Published::SetUp()
{
    ASSERT_NO_THROW(table = readTable(kFolder + "/" + GetParam().name + ".txt"));
    std::ifstream(kFolder + "/fabric.json") >> fabric;
    fabric.at("names").get_to(names);
    fabric.erase("names");
    fabric = fabric.patch(patchOf(table.given));
    start(fabric);
}

void Published::start(const Json& scenario)
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

Answer Published::ask()
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

std::vector<Properties> Published::expected(const Answer& actual) const
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

Texts Published::entryNames() const
{
    Texts all;
    for (const Entry& entry : table.entries)
        all.push_back(entry.name);
    return all;
}

void Published::expectInstances(const Answer& answer, const std::vector<Properties>& wanted) const
{
    ASSERT_EQ(answer.instances.size(), wanted.size()) << testing::PrintToString(answer.names);
    for (std::size_t i = 0; i < wanted.size(); ++i)
        EXPECT_EQ(answer.instances[i], wanted[i]) << answer.names[i];
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

} // namespace published
