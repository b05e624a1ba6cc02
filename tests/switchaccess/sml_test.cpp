// Tests of batches, of walks over named elements, of writes, and of whole records.
#include "switchaccess/Record.h"
#include "switchaccess/Sml_Batch.h"
#include "switchaccess/Sml_Walk.h"
#include "switchaccess/Sml_Writes.h"
#include "switchaccess/element_count.h"
#include "switchaccess/string_helpers.h"
#include "tests/common/testing/Switch_Test.h"

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;

const std::string kSpeed0 = "Config.UserPort.0.0.LinkSpeed."; // that writes take

class SmlTest : public Switch_Test
{
};

// --- Batches

TEST_F(SmlTest, ABatchIsReadAnewForEachElement)
{
    constexpr const char* kKeys[] = {"Oper.UserPort.0.%s.OperState", "Oper.UserPort.0.%s.MaxCredit"};
    Sml_Batch batch(kKeys);
    sim.failKey("Oper.UserPort.0.1.MaxCredit", XPL_NOT_AVAILABLE);
    ASSERT_TRUE(batch.read({"1"})) << "a value that is not there is no error";
    EXPECT_EQ(batch.status(1), XPL_NOT_AVAILABLE);
    ASSERT_TRUE(batch.read({"0"})) << "each read stands for itself";
    EXPECT_STREQ(batch.text(1), "16");
    sim.failKey("Oper.UserPort.0.2.OperState", XPL_UNKNOWN_KEY);
    EXPECT_FALSE(batch.read({"2"}));
    sim.mark();
    EXPECT_FALSE(batch.read({std::string(250, '0').c_str()})) << "the key does not fit";
    EXPECT_EQ(sim.platformCalls(), 0u);
}

TEST_F(SmlTest, ElementsAreCountedUpToWhatANumberHolds)
{
    const std::pair<const char*, int> rows[] = {
        {"7", 7}, {"", 0}, {"-1", 0}, {"65535", 65535}, {"65537", 65535}};
    for (const auto& [text, count] : rows)
    {
        sim.answer("Oper.Switch.IOBlade.Count", text);
        EXPECT_EQ(elementCount("Oper.Switch.IOBlade.Count", {"source", "load"}, "failed"), count) << text;
    }
}

// --- Walks

constexpr Walk_Keys kElements = {
    "Test.%s.First", "no first", "Test.%s.Next.%2$s", "no next", XPL_END_OF_WALK};
constexpr Walk_Keys kOwnerless = {"Test.First", "no first", "Test.Next.%s", "no next", XPL_END_OF_WALK};

// The elements, or what was thrown behind those that came before it.
Texts walk(const Walk_Keys& keys, const char* owner)
{
    Texts found;
    try
    {
        for (const std::string& one : Sml_Walk(keys, {"x/Y", "load", 7}, owner))
            found.push_back(one);
    }
    catch (const VRAX_Except& failure)
    {
        EXPECT_EQ(std::string(failure.file) + failure.function + std::to_string(failure.line), "x/Yload7");
        found.emplace_back(failure.message);
    }
    catch (const std::runtime_error& endless)
    {
        found.emplace_back(endless.what());
    }
    return found;
}

TEST_F(SmlTest, AWalkNamesEachElementByTheOneBefore)
{
    const struct
    {
        const char* what;
        std::map<std::string, std::string> answers;
        std::map<std::string, std::int32_t> failures;
        Texts found;
    } rows[] = {
        {"to the end status",
         {{"Test.o.First", "a"}, {"Test.o.Next.a", "b"}},
         {{"Test.o.Next.b", XPL_END_OF_WALK}},
         {"a", "b"}},
        {"to an empty name", {{"Test.o.First", "a"}, {"Test.o.Next.a", ""}}, {}, {"a"}},
        {"none by end status", {}, {{"Test.o.First", XPL_END_OF_WALK}}, {}},
        {"none by name", {{"Test.o.First", ""}}, {}, {}},
        {"the first fails", {}, {{"Test.o.First", XPL_UNREACHABLE}}, {"no first"}},
        {"the next fails", {{"Test.o.First", "a"}}, {{"Test.o.Next.a", XPL_UNKNOWN_KEY}}, {"a", "no next"}},
        {"a name that does not fit",
         {{"Test.o.First", std::string(250, 'n')}},
         {},
         {std::string(250, 'n'), "no next"}},
    };
    for (const auto& row : rows)
    {
        sim.restore();
        boundWalks();
        for (const auto& [key, value] : row.answers)
            sim.answer(key, value);
        for (const auto& [key, status] : row.failures)
            sim.failKey(key, status);
        EXPECT_EQ(walk(kElements, "o"), row.found) << row.what;
    }
    // From a known element, each read by itself, in upper case and named by its first letter.
    sim.restore();
    Walk_Keys alone = kElements;
    alone.read = Walk_Keys::readAlone;
    alone.nameOf = [](std::string& element)
    {
        element = upperCased(element.c_str());
        return element.substr(0, 1);
    };
    sim.mark();
    sim.answer("Test.o.Next.A", "bc");
    sim.failKey("Test.o.Next.B", XPL_END_OF_WALK);
    Texts found;
    for (const std::string& one : Sml_Walk::from("ab", alone, {"x/Y", "load"}, "o"))
        found.push_back(one);
    EXPECT_EQ(found, (Texts{"AB", "BC"}));
    EXPECT_EQ(sim.calls("xpl_smlGetV"), 2u);
    sim.failKey("Test.o.Next.C", XPL_NOT_AVAILABLE);
    EXPECT_THROW(
        {
            for (const std::string& one : Sml_Walk::from("c", alone, {"x/Y", "load"}, "o"))
                EXPECT_EQ(one, "C");
        },
        VRAX_Except)
        << "no value at present is a failure, too";

    sim.restore();
    sim.answer("Test.First", "a");
    sim.answer("Test.Next.a", "");
    EXPECT_EQ(walk(kOwnerless, nullptr), Texts{"a"});
    sim.failNext("xpl_smlGetBatch");
    EXPECT_EQ(walk(kOwnerless, nullptr), Texts{"no first"}) << "the call as a whole";
}

// --- Writes

TEST_F(SmlTest, OneWriteIsMadeFromItsFormat)
{
    EXPECT_EQ(writeAttribute("Config.UserPort.0.%s.LinkSpeed.%s", {"0", "4Gb/s"}), 0);
    EXPECT_EQ(sim.writes(), Texts{kSpeed0 + "4Gb/s"});
    EXPECT_EQ(writeAttribute("Config.UserPort.0.%s.LinkSpeed.%s", {"9", "%d"}), XPL_UNKNOWN_KEY);
    EXPECT_EQ(writeAttribute("%s", {std::string(256, 'k').c_str()}), XPL_INVALID_PARAMETER)
        << "it does not fit";
    EXPECT_EQ(sim.writes().size(), 2u);
}

TEST_F(SmlTest, WritesGoInOneCallInTheirOrder)
{
    Sml_Writes writes;
    for (const char* speed : {"4Gb/s", "2Gb/s", "8Gb/s"})
        writes.add("Config.UserPort.0.0.LinkSpeed.%s", {speed});
    EXPECT_EQ(writes.size(), 3u);
    EXPECT_TRUE(writes.send(xpl_smlBatchSet));
    EXPECT_EQ(sim.writes(), (Texts{kSpeed0 + "4Gb/s", kSpeed0 + "2Gb/s", kSpeed0 + "8Gb/s"}));
    EXPECT_EQ(sim.calls("xpl_smlBatchSet"), 1u);

    sim.failKey(kSpeed0 + "2Gb/s", 77);
    EXPECT_FALSE(writes.send(xpl_smlBatchSet));
    EXPECT_EQ(writes.failure(), kSpeed0 + "2Gb/s: status 77");
    EXPECT_EQ(writes.status(0), 0);
    EXPECT_EQ(writes.status(1), 77);
    EXPECT_TRUE(writes.carriedOut());
    sim.failNext("xpl_smlBatchSet", 1, 20);
    EXPECT_FALSE(Sml_Writes(writes).send(xpl_smlBatchSet));

    Sml_Writes none;
    EXPECT_TRUE(none.send(xpl_smlBatchCimSet));
    EXPECT_EQ(sim.calls("xpl_smlBatchCimSet"), 1u) << "also when there is nothing to write";
    sim.failNext("xpl_smlBatchCimSet", 1, 20);
    EXPECT_FALSE(none.send(xpl_smlBatchCimSet));
    EXPECT_EQ(none.failure(), "status 20");
    EXPECT_FALSE(none.carriedOut());

    sim.mark();
    Sml_Writes tooLong;
    tooLong.add("Config.UserPort.0.0.LinkSpeed.4Gb/s");
    tooLong.add("%s", {std::string(256, 'k').c_str()});
    EXPECT_FALSE(tooLong.send(xpl_smlBatchSet));
    EXPECT_EQ(tooLong.status(1), XPL_INVALID_PARAMETER);
    EXPECT_NE(tooLong.failure().find(": status 9"), std::string::npos);
    EXPECT_EQ(sim.platformCalls(), 0u);
}

// --- Sequences with their way back

TEST_F(SmlTest, WhatIsNotFinishedIsTakenBackInReverse)
{
    const Log_Capture log;
    {
        Sml_Transaction change("x/Y", "Change");
        change.write("Config.UserPort.0.0.LinkSpeed.%s", {"1Gb/s"}, "refused");
        change.undoBy("Config.UserPort.0.1.LinkSpeed.1Gb/s", "no way back from 1");
        change.undoBy("Config.UserPort.0.99.LinkSpeed.1Gb/s", "no way back from 2", nullptr, 8);
        change.undoBy("Config.UserPort.0.2.LinkSpeed.1Gb/s", "no way back from 3");
        change.undoBy("Config.UserPort.0.3.LinkSpeed.1Gb/s", "kept");
        change.keep();
        EXPECT_THROW(change.write("Config.UserPort.0.0.LinkSpeed.None", {}, "refused"), VRAX_Except);
        EXPECT_EQ(sim.writes().size(), 2u) << "nothing is taken back before the end";
    }
    EXPECT_EQ(sim.writes(),
              (Texts{kSpeed0 + "1Gb/s",
                     kSpeed0 + "None",
                     "Config.UserPort.0.2.LinkSpeed.1Gb/s",
                     "Config.UserPort.0.99.LinkSpeed.1Gb/s",
                     "Config.UserPort.0.1.LinkSpeed.1Gb/s"}));
    EXPECT_EQ(log.texts(), Texts{"CRIT:x/Y:Change[] no way back from 2"});

    sim.mark();
    {
        Sml_Transaction change("x/Y", "Change");
        change.undoBy("Config.UserPort.0.1.LinkSpeed.1Gb/s", "no way back");
        change.finish();
    }
    EXPECT_EQ(sim.writes(), Texts());
}

TEST_F(SmlTest, ARefusedStepSaysWhereAndWhy)
{
    try
    {
        Sml_Transaction("x/Y", "Change").write("Cmd.Nothing", {}, Failure_Text::line("no lock"), 12);
        FAIL();
    }
    catch (const VRAX_Except& failure)
    {
        EXPECT_STREQ(failure.message, "no lock");
        EXPECT_STREQ(failure.function, "Change");
        EXPECT_EQ(failure.line, 12);
        EXPECT_EQ(failure.form, Log_Form::Line);
    }
}

// --- Records

TEST_F(SmlTest, ARecordGoesBackAsItWasButForWhatIsChanged)
{
    sim.changePort(3, [](auto& port) { port.reserved.assign(288, 0xA5); });
    Record<xpl_swPortConfig> port(3);
    EXPECT_EQ(port.read(), 0);
    EXPECT_TRUE(putText(port->symbolicName, "new"));
    EXPECT_EQ(port.write(), 0);
    EXPECT_EQ(sim.port(3).name, "new");
    EXPECT_EQ(sim.port(3).reserved, std::vector<std::uint8_t>(288, 0xA5));
    EXPECT_EQ(sim.port(3).adminState, simulator::AdminState::online);
    sim.changeSwitch([](auto& facts) { facts.principalPriority = 1; });
    Record<xpl_swSwitchConfig> one;
    EXPECT_EQ(one.read(), 0);
    EXPECT_FALSE(putText(one->symbolicName, std::string(33, 'n').c_str())) << "and the field is left alone";
    EXPECT_EQ(one.write(), 0);
    EXPECT_EQ(sim.localSwitch().name, "sim-switch");
    EXPECT_EQ(sim.localSwitch().principalPriority, 1);
    EXPECT_TRUE(putText(one->symbolicName, std::string(32, 'n').c_str()));
    EXPECT_EQ(sim.writes(), (Texts{"port/3", "switch"}));
    EXPECT_EQ(Record<xpl_swPortConfig>(99).read(), XPL_INVALID_PARAMETER);
    sim.failNext("xpl_swSwitchSetConfig", 1, 20);
    EXPECT_EQ(one.write(), 20);
}

TEST_F(SmlTest, ATextIsCutBetweenCharacters)
{
    const struct
    {
        const char* text;
        std::size_t limit;
        std::size_t length;
    } rows[] = {{"", 3, 0},
                {"abc", 3, 3},
                {"abcd", 3, 3},
                {"ab\xC3\xA9", 4, 4},
                {"ab\xC3\xA9", 3, 2},
                {"\xE2\x82\xAC\xE2\x82\xAC", 5, 3},
                {"\xF0\x9F\x94\x8C", 3, 0},
                {"\x80\x80\x80", 2, 0}};
    for (const auto& row : rows)
        EXPECT_EQ(fittingLength(row.text, row.limit), row.length) << row.text << " " << row.limit;
}

} // namespace
} // namespace cimple
