// Command lines: what they set and what is said about the wrong ones.
#include "agent/Options.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>
#include <sstream>
#include <vector>

namespace cimd
{
namespace
{

// A command line whose words are parted by spaces.
CommandLine read(const std::string& line, Options& options)
{
    std::istringstream stream(line);
    std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
    words.insert(words.begin(), "cimd");
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    return readCommandLine(static_cast<int>(words.size()), argv.data(), "/opt/bin", options);
}

TEST(OptionsTest, EveryOptionIsTaken)
{
    Options options;
    EXPECT_EQ(CommandLine::Run, read("", options));
    EXPECT_EQ("/opt/bin/../share/cimd/repository.xml", options.repository);
    EXPECT_EQ("/opt/bin/../share/cimd/providers.reg", options.registration);
    EXPECT_EQ("/opt/bin/../lib/cimd", options.providerDir);
    EXPECT_EQ("127.0.0.1:5988", options.address + ":" + std::to_string(options.port));

    EXPECT_EQ(CommandLine::Run,
              read("--port 0 --listen=::1 --scenario s.json --state now.json --switch-socket s.sock "
                   "--log-level debug --repository r.xml "
                   "--registration p.reg --provider-dir lib --spool-directory /var/spool",
                   options));
    EXPECT_EQ("::1:0", options.address + ":" + std::to_string(options.port));
    EXPECT_EQ("s.json", options.scenario);
    EXPECT_EQ("now.json", options.state);
    EXPECT_EQ("s.sock", options.switchSocket);
    EXPECT_EQ(LogLevel::Debug, options.logLevel);
    EXPECT_EQ("r.xml", options.repository);
    EXPECT_EQ("p.reg", options.registration);
    EXPECT_EQ("lib", options.providerDir);
    EXPECT_EQ("/var/spool", options.spoolDirectory);
    EXPECT_EQ(CommandLine::Help, read("--help --nonsense", options));
    EXPECT_EQ(CommandLine::Version, read("--version", options));
}

TEST(OptionsTest, EveryLimitHasAnOptionOfItsOwn)
{
    const Limits standard;
    for (const LimitRow& row : limitRows())
    {
        EXPECT_EQ(row.standard, row.get(standard)) << row.option;
        EXPECT_LE(row.least, row.standard) << row.option;
        EXPECT_LE(row.standard, row.most) << row.option;
        for (const std::uint64_t value : {row.least, row.most})
        {
            Options options;
            const std::string word = std::string("--") + row.option + "=" + std::to_string(value);
            EXPECT_EQ(CommandLine::ShowLimits, read("--show-limits " + word, options));
            for (const LimitRow& other : limitRows())
                EXPECT_EQ(other.option == row.option ? value : other.standard, other.get(options.limits))
                    << word << " sets --" << other.option;
        }
    }
}

TEST(OptionsTest, TheTableShowsWhatTheCommandLineChanged)
{
    const auto has = [](const Limits& limits, const std::string& pattern)
    { return std::regex_search(limitsTable(limits), std::regex(pattern)); };
    Limits limits;
    EXPECT_TRUE(has(limits, "--max-head-bytes +32768 +bytes +Request"));
    limits.workers = 3;
    EXPECT_TRUE(has(limits, "OPTION +DEFAULT +NOW +UNIT"));
    EXPECT_TRUE(has(limits, "--max-workers +8 +3 +Threads"));
}

TEST(OptionsTest, FaultsNameTheOption)
{
    const struct
    {
        const char* line;
        const char* fault;
    } rows[] = {
        {"--port 65536", "--port: \"65536\" is not a port number (0 to 65535)"},
        {"--port -1", "--port: \"-1\" is not a port number (0 to 65535)"},
        {"--port 80x", "--port: \"80x\" is not a port number (0 to 65535)"},
        {"--port=", "--port: \"\" is not a port number (0 to 65535)"},
        {"--log-level loud", "--log-level: \"loud\" is not error, warning, info or debug"},
        {"--port 1 --listen", "--listen: an argument is missing"},
        {"--max-workers 0", "--max-workers: \"0\" is not a number from 1 to 256"},
        {"--max-workers 1k", "--max-workers: \"1k\" is not a number from 1 to 256"},
        {"--max-workers 99999999999999999999",
         "--max-workers: \"99999999999999999999\" is not a number from 1 to 256"},
        {"--verbose", "--verbose: there is no such option; see cimd --help"},
        {"-p 80", "-p: there is no such option; see cimd --help"},
        {"--help=1", "--help=1: there is no such option; see cimd --help"},
        {"--port 1 file", "file: arguments without an option are not known"},
    };
    for (const auto& row : rows)
    {
        std::string fault = "none";
        try
        {
            Options options;
            read(row.line, options);
        }
        catch (const StartError& error)
        {
            fault = error.what();
        }
        EXPECT_EQ(row.fault, fault);
    }
}

TEST(OptionsTest, TheManualKnowsWhatHelpKnows)
{
    std::ostringstream page;
    page << std::ifstream(CIMD_PAGE).rdbuf();
    std::string manual = page.str();
    manual.erase(std::remove(manual.begin(), manual.end(), '\\'), manual.end());
    std::istringstream help(helpText());
    unsigned options = 0;
    for (std::string line; std::getline(help, line);)
    {
        std::istringstream words(line);
        std::string option;
        words >> option;
        if (line.rfind("       --", 0) != 0)
            continue;
        ++options;
        const std::regex entry("\\n\\.BI? " + option + "[ \\n]");
        EXPECT_TRUE(std::regex_search(manual, entry)) << option << " is missing in docs/cimd.8.in";
    }
    EXPECT_LT(20U, options);
    for (const LimitRow& row : limitRows())
    {
        const std::string standard = " Default: " + limitText(row, row.standard) + ".\n";
        const std::size_t entry = manual.find(std::string("--") + row.option + " \" NUMBER\"");
        EXPECT_EQ(manual.find(" Default: ", entry), manual.find(standard, entry)) << row.option;
    }
}

} // namespace
} // namespace cimd
