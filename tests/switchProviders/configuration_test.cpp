// Tests of the configuration images as clients see them: what is read, uploaded and applied, what is said
// when a step fails, and what is left on the switch then.
#include "platform/configuration.h"
#include "switchProviders/VRAX_ConfigurationData_Provider.h"
#include "switchProviders/VRAX_FCSwitchConfigurationData_Provider.h"
#include "tests/common/testing/Switch_Test.h"
#include "tests/common/testing/requests.h"
#include "tests/support/Full_Disk.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace cimple
{
namespace
{

namespace fs = std::filesystem;
typedef std::vector<std::string> Texts;

const std::string kDefault = "VRAX:ConfigurationData:" + kLocalWwn + ":DEFAULT";
const std::string kNew = "VRAX:ConfigurationData:" + kLocalWwn + ":NEW";
const std::string kSource = "Exception[CRIT]:switchProviders/VRAX_ConfigurationData_Provider:";

fs::path place(const char* switchPath)
{
    char found[kPlaceSize] = "";
    EXPECT_EQ(locateSwitchFile(switchPath, found, sizeof(found)), 0);
    return found;
}

std::string contentOf(const char* switchPath)
{
    std::ifstream file(place(switchPath), std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return file ? text.str() : "(none)";
}

void write(const char* switchPath, const std::string& text)
{
    std::ofstream(place(switchPath), std::ios::binary) << text;
}

std::string bytesOf(const VRAX_ConfigurationData& instance)
{
    const Array_uint8& bytes = instance.ConfigurationInformation.value;
    return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

Owned<VRAX_ConfigurationData> request(const std::string& id, const std::string& bytes = "image")
{
    Owned<VRAX_ConfigurationData> made = makeNull<VRAX_ConfigurationData>();
    made->InstanceID.set(id.c_str());
    made->ConfigurationInformation.set(
        Array_uint8(reinterpret_cast<const uint8*>(bytes.data()), bytes.size()));
    return made;
}

int create(const std::string& id, const std::string& bytes = "image")
{
    return VRAX_ConfigurationData_Provider().create_instance(request(id, bytes).get());
}

// "status value"; a value that was not set is "-".
std::string apply(const std::string& id, std::optional<uint16> type = 2, bool validateOnly = false)
{
    Property<boolean> validate;
    validate.set(validateOnly);
    Property<uint16> typeOf;
    typeOf.clear();
    if (type)
        typeOf.set(*type);
    Property<uint32> value;
    value.clear();
    const int status = VRAX_ConfigurationData_Provider().ApplyConfiguration(
        request(id).get(), validate, typeOf, nullptr, value);
    return std::to_string(status) + " " + (value.null ? "-" : std::to_string(value.value));
}

class Configuration : public Switch_Test
{
  protected:
    Configuration() { SetUp(); }
    ~Configuration() override { removeImages(); }

    void SetUp() override
    {
        removeImages();
        sim.open(simulator::SimSwitch::make().scenario());
        makeMapsStale();
    }
    static void removeImages() { fs::remove_all(place(kConfigImage).parent_path()); }

    static std::string files()
    {
        Texts names;
        for (const auto& entry : fs::directory_iterator(place(kConfigImage).parent_path()))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return joined(names);
    }
    Texts ids()
    {
        Texts found;
        for (const auto& one : this->instances<VRAX_ConfigurationData_Provider>())
            found.push_back(one.at("InstanceID"));
        return found;
    }
    // The image of the switch with its name in it replaced by another.
    static std::string renamedImage(const std::string& name)
    {
        EXPECT_EQ(backupConfig(), 0);
        std::string image = contentOf(kConfigImage);
        const std::string before = "\"sim-switch\"";
        EXPECT_NE(image.find(before), image.npos);
        return image.replace(image.find(before), before.size(), "\"" + name + "\"");
    }

    // What is to fail: a call, a key, "held" (somebody else has the administrative mode), or something about
    // the files.
    void arrange(const std::string& failing)
    {
        if (failing == "held")
            sim.holdAdminMode("console");
        else if (failing == "no directory" || failing == "blocked")
        {
            removeImages();
            std::ofstream(place("/norvik/conf/x").parent_path() / "images") << "in the way";
        }
        else if (failing == "occupied")
            fs::create_directories(place(kConfigImage) / "occupied");
        else if (failing == "NEW is a directory")
            fs::create_directories(place(kNewConfigImage));
        else if (failing == "full")
            _disk.emplace(8);
        else if (!failing.empty())
            sim.failNext(failing);
    }
    void tidy()
    {
        _disk.reset();
        sim.restore();
        fs::remove_all(place("/norvik/conf/x").parent_path() / "images");
    }

    std::optional<Full_Disk> _disk;
};

TEST_F(Configuration, AnInstanceIdIsParsedByPosition)
{
    const std::pair<std::string, std::string> rows[] = {
        // With the WWN and the type found in it; none if it does not parse.
        {kDefault, kLocalWwn + " DEFAULT"},
        {kNew, kLocalWwn + " NEW"},
        {"xxxxxxxxxxxxxxxxxxxxxxx0123456789ABCDEFxNEW", "0123456789ABCDEF NEW"},
        {kNew.substr(0, 42), ""},
        {kNew.substr(0, 40), ""},
        {kDefault + "S", ""},
        {"VRAX:ConfigurationData:" + kLocalWwn + ":new", ""},
        {"", ""},
    };
    for (const auto& [id, parts] : rows)
    {
        std::string wwn, type;
        const Log_Capture log(kLogInfo);
        const bool parses = VRAX_ConfigurationData_Provider::parseInstanceID(id.c_str(), wwn, type);
        EXPECT_EQ(Log_Capture::texts(), Texts{"InstanceID = " + id});
        EXPECT_EQ(parses ? wwn + " " + type : "", parts) << id;
    }
}

TEST_F(Configuration, AnUploadIsListedUntilItIsApplied)
{
    EXPECT_EQ(ids(), Texts{kDefault});
    const std::string image = renamedImage("renamed");
    EXPECT_EQ(create(kNew, image + std::string("\0 and what follows", 18)), 0);
    EXPECT_EQ(contentOf(kNewConfigImage), image) << "up to the first zero";
    EXPECT_EQ(ids(), (Texts{kDefault, kNew}));
    EXPECT_EQ(bytesOf(*VRAX_ConfigurationData_Provider::formatNewInstance()), image + '\0');
    EXPECT_EQ(serve<VRAX_FCSwitchConfigurationData_Provider>().count, 2u);

    EXPECT_EQ(create(kNew, "another"), CREATE_INSTANCE_DUPLICATE);
    EXPECT_EQ(contentOf(kNewConfigImage), image);
    EXPECT_EQ(apply(kDefault), "0 0") << "changes nothing";
    EXPECT_EQ(sim.localSwitch().name, "sim-switch");

    instances<VRAX_FCSwitch_Provider>(); // fresh, with the name of before
    EXPECT_EQ(apply(kNew), "0 0");
    EXPECT_EQ(sim.localSwitch().name, "renamed");
    EXPECT_EQ(sim.adminModeHolder(), "");
    EXPECT_EQ(instances<VRAX_FCSwitch_Provider>().at(0).at("ElementName"), "renamed") << "at once";
    EXPECT_EQ(ids(), Texts{kDefault});
    EXPECT_EQ(serve<VRAX_FCSwitchConfigurationData_Provider>().count, 1u);
    EXPECT_EQ(contentOf(kConfigImage), image) << "an image is what its restoration is backed up as";
}

// What a client is told when reading fails is also what module_faults_test.cpp demands; here, what is logged.
TEST_F(Configuration, ReadingSaysWhichStepFailed)
{
    const std::string inner = kSource + "formatConfigurationDataInstance[] ";
    const std::pair<const char*, const char*> rows[] = {
        {"get_Local_Switch_World_Wide_Name", "Unable to fetch localWWN"},
        {"backupConfig", "Unable to get default configuration"},
        {"full", "Unable to get default configuration"},
        {"blocked", "Unable to get default configuration"},
        {"locateSwitchFile", "Unable to stat configuration file"},
        {"NEW is a directory", "Error preparing backup data"},
    };
    for (const auto& [failing, logged] : rows)
    {
        SCOPED_TRACE(failing);
        SetUp();
        arrange(failing);
        const Log_Capture log;
        EXPECT_EQ(serve<VRAX_ConfigurationData_Provider>().status, ENUM_INSTANCES_FAILED);
        _disk.reset();
        const char* const type = failing[0] == 'N' ? "NEW" : "DEFAULT";
        EXPECT_EQ(joined(log.texts()),
                  inner + logged + " | " + kSource + "enum_instances[] Unable to create " + type +
                      " configuration");
        tidy();
    }
    const Log_Capture log;
    EXPECT_THROW(VRAX_ConfigurationData_Provider::formatConfigurationDataInstance("OTHER"), VRAX_Except);
}

TEST_F(Configuration, GettingOneInstance)
{
    const std::string get = kSource + "get_instance[] ";
    const std::string otherSwitch = "VRAX:ConfigurationData:100002a5c0de0002:DEFAULT";
    const struct
    {
        std::string id;
        int status;
        std::string logged;
    } rows[] = {
        {kDefault, GET_INSTANCE_OK, ""},
        {kNew, GET_INSTANCE_NOT_FOUND, get + "Unable to stat configuration file"},
        {kNew.substr(0, 42), GET_INSTANCE_NOT_FOUND, get + "Unable to parse InstanceID"},
        {otherSwitch, GET_INSTANCE_NOT_FOUND, get + "Created instance does not match expected key"},
        {"", GET_INSTANCE_FAILED, get + "Candidate instance is missing keys"},
    };
    for (const auto& row : rows)
    {
        VRAX_ConfigurationData* found = nullptr;
        const Log_Capture log;
        EXPECT_EQ(VRAX_ConfigurationData_Provider().get_instance(request(row.id).get(), found), row.status);
        const Owned<VRAX_ConfigurationData> owner(found);
        EXPECT_EQ(joined(log.texts()), row.logged);
        if (found != nullptr)
            EXPECT_EQ(bytesOf(*found), contentOf(kConfigImage) + '\0');
    }
}

TEST_F(Configuration, AFailedUploadLeavesNothing)
{
    const std::string file = kNewConfigImage;
    const std::tuple<std::string, const char*, std::string> rows[] = {
        {kDefault, "", "Invalid instance Passed"},
        {kNew.substr(0, 42), "", "Invalid instance Passed"},
        {kNew, "no directory", "Failed opening config file " + file},
        {kNew, "locateSwitchFile", "Failed opening config file " + file},
        {kNew, "full", "Failed writing to " + file},
    };
    for (const auto& [id, failing, logged] : rows)
    {
        SCOPED_TRACE(id + failing);
        SetUp();
        if (failing == std::string("locateSwitchFile"))
            sim.failNext(failing, 2);
        else
            arrange(failing);
        const Log_Capture log;
        EXPECT_EQ(create(id, "an image of more than eight bytes"), CREATE_INSTANCE_FAILED);
        _disk.reset();
        EXPECT_EQ(joined(log.texts()), kSource + "create_instance[] " + logged);
        tidy();
        EXPECT_EQ(files(), "");
    }
    SetUp();
    Owned<VRAX_ConfigurationData> empty = request(kNew);
    empty->ConfigurationInformation.clear();
    const Log_Capture log;
    EXPECT_EQ(VRAX_ConfigurationData_Provider().create_instance(empty.get()), CREATE_INSTANCE_FAILED);
    EXPECT_EQ(VRAX_ConfigurationData_Provider().create_instance(nullptr), CREATE_INSTANCE_FAILED);
    EXPECT_EQ(files(), "");
}

TEST_F(Configuration, WhatApplyingRefusesChangesNothing)
{
    const std::string applied = "configdata";
    const std::string waits = "configdata | new_configdata";
    const std::string present = kConfigImage;
    const std::string waiting = kNewConfigImage;
    const std::string badType = "Invalid input parameter : TypeOfConfiguration";
    const struct
    {
        std::string id;
        std::optional<uint16> type;
        bool validateOnly;
        const char* failing; // as in arrange(), or an image that is uploaded in place of a good one
        std::string result;
        std::string logged;
        std::string files; // that are left
    } rows[] = {
        {kNew, 2, true, "", "130 16000", "Invalid input parameter : ValidateOnly", waits},
        {kNew, 3, false, "", "130 16002", badType, waits},
        {kNew, 4, false, "held", "130 16002", badType, waits},
        {kNew, 7, false, "", "130 5", badType, waits},
        {kNew, 1, false, "", "130 5", badType, waits},
        {kNew, {}, false, "", "130 5", badType, waits},
        {kNew, 2, false, "get_Local_Switch_World_Wide_Name", "130 -", "Unable to fetch localWWN", waits},
        {kNew.substr(0, 42), 2, false, "", "130 -", "Bad InstanceID", waits},
        {"VRAX:ConfigurationData:100002A5C0DE0001:NEW", 2, false, "", "130 -", "Bad InstanceID", waits},
        {kNew, 2, false, "occupied", "130 -", "Unable to remove " + present, waits},
        {kNew, 2, false, "none", "130 -", "Failed to create " + present + " from " + waiting, ""},
        {kNew, 2, false, "held", "130 -", "restoreConfig failed", applied},
        {kNew, 2, false, "reqAdminMode", "130 -", "restoreConfig failed", applied},
        {kNew, 2, false, "restoreConfig", "130 -", "restoreConfig failed", applied},
        {kNew, 2, false, "{\"damaged\": ", "130 -", "restoreConfig failed", applied},
        {kDefault, 2, false, "held", "0 0", "", waits},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE("row " + std::to_string(&row - rows));
        SetUp();
        const std::string failing = row.failing;
        const bool damaged = failing.substr(0, 1) == "{";
        ASSERT_EQ(create(kNew, damaged ? failing : renamedImage("renamed")), 0);
        write(kConfigImage, "the backup of before");
        if (failing == "occupied")
            fs::remove(place(kConfigImage));
        if (failing == "none")
            fs::remove(place(kNewConfigImage));
        else if (!damaged)
            arrange(failing);
        sim.mark();
        const Log_Capture log;
        EXPECT_EQ(apply(row.id, row.type, row.validateOnly), row.result);
        const std::string logged = joined(log.texts());
        EXPECT_EQ(logged, row.logged.empty() ? "" : kSource + "ApplyConfiguration[] " + row.logged);
        EXPECT_EQ(sim.calls("releaseAdminMode"), 1u);
        EXPECT_EQ(sim.adminModeHolder(), failing == "held" ? "console" : "");
        EXPECT_EQ(sim.localSwitch().name, "sim-switch");
        EXPECT_EQ(files(), row.files);
        sim.restore();
    }
}

} // namespace
} // namespace cimple
