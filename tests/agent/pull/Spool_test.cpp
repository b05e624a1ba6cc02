// What goes into a spool comes out, from memory as from a file.
#include "agent/pull/Spool.h"

#include "agent/cim/CimError.h"
#include "agent/log/log.h"
#include "tests/agent/pull/TemporaryDirectory.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <utility>
#include <vector>

namespace cimd
{
namespace
{

constexpr std::size_t kPlenty = 16 * 1024 * 1024;

// Empty texts, short ones, and some that are longer than what is read from a file at once.
std::vector<std::pair<std::string, std::string>> items()
{
    std::vector<std::pair<std::string, std::string>> result;
    for (std::size_t i = 0; i < 300; ++i)
    {
        const std::size_t length = i % 50 == 49 ? 100 * 1024 + i : i * 7 % 400;
        result.emplace_back(std::string(i % 5, 'h') + std::to_string(i),
                            std::string(length, static_cast<char>(i)));
    }
    result.emplace_back("", "");
    return result;
}

TEST(SpoolFileTest, AWriteThatStopsHalfwayLeavesWhatWasThere)
{
    const TemporaryDirectory directory;
    SpoolArea area(directory.path(), 0, kPlenty);
    SpoolFile file(area);
    file.add("12345678");
    {
        const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit low{12, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &low);
        EXPECT_THROW(file.add("abcdefgh"), CimError);
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, ignored);
    }
    char text[64];
    EXPECT_EQ("12345678", std::string(text, file.read(text, sizeof text)));
    EXPECT_TRUE(file.empty());
}

TEST(SpoolTest, GivesBackWhatItTook)
{
    const TemporaryDirectory directory;
    const auto expected = items();
    const struct
    {
        std::size_t memory;
        bool usesFile;
    } rows[] = {{0, true}, {1000, true}, {300 * 1024, true}, {kPlenty, false}};
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.memory);
        SpoolArea area(directory.path(), row.memory, kPlenty);
        {
            Spool filled(area);
            for (const auto& [head, body] : expected)
            {
                // Long bodies come in two parts.
                const bool isLong = body.size() > 1000;
                if (isLong)
                    filled.add({head, std::string_view(body).substr(0, 1000), true});
                filled.add({isLong ? "" : head, std::string_view(body).substr(isLong ? 1000 : 0)});
            }
            filled.seal();
            Spool spool(std::move(filled));
            EXPECT_EQ(row.usesFile, area.used() > 0);
            EXPECT_TRUE(directory.isEmpty()) << "a file has a name that could outlive the program";
            for (std::size_t i = 0; i < expected.size(); ++i)
            {
                ASSERT_EQ(expected.size() - i, spool.size());
                Spool::Item item = spool.take();
                ASSERT_EQ(expected[i].first, item.head) << i;
                std::string body(item.body);
                while (item.goesOn)
                    body += (item = spool.take()).body;
                ASSERT_EQ(expected[i].second, body) << i;
                if (i % 3 == 0)
                    spool.rest();
            }
            EXPECT_EQ(0U, spool.size());
        }
        EXPECT_EQ(0U, area.used()) << "space was not given back";
    }
}

// "27 text" of the failure when one item of so many bytes is sealed.
std::string outcomeOf(SpoolArea& area, std::size_t bytes)
{
    Spool spool(area);
    try
    {
        spool.add({"", std::string(bytes, 'x')});
        spool.seal();
        return "OK";
    }
    catch (const CimError& error)
    {
        return std::to_string(error.code()) + " " + error.what();
    }
}

TEST(SpoolTest, FilesAreBoundedTogether)
{
    const TemporaryDirectory directory;
    SpoolArea area(directory.path(), 0, 1000);
    Spool first(area);
    first.add({"", std::string(400, 'x')});
    first.seal();
    const std::string failure = outcomeOf(area, 800);
    EXPECT_EQ(0U, failure.find("27 ")) << failure;
    EXPECT_NE(std::string::npos, failure.find("1000 bytes")) << failure;
    EXPECT_EQ("OK", outcomeOf(area, 400)) << "the space was not given back";
    EXPECT_EQ(std::string(400, 'x'), first.take().body);
}

TEST(SpoolTest, FailuresOfTheFileNameItsDirectory)
{
    std::vector<std::string> lines;
    setLogWriter([&](LogLevel, std::string_view line)
                 { lines.emplace_back(line.substr(line.find(' ') + 1)); });
    SpoolArea area("/nowhere/to/be", 0, kPlenty);
    for (int i = 0; i < 3; ++i)
    {
        const std::string failure = outcomeOf(area, 1);
        EXPECT_EQ(0U, failure.find("1 ")) << failure;
        EXPECT_NE(std::string::npos, failure.find("/nowhere/to/be: No such file")) << failure;
    }
    setLogWriter({});
    EXPECT_EQ(
        (std::vector<std::string>{"error spool: cannot create a file for results kept in /nowhere/to/be: "
                                  "No such file or directory"}),
        lines)
        << "the same once a minute";
}

} // namespace
} // namespace cimd
