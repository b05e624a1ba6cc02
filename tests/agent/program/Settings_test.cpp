// Command lines and configuration files: what they set and what is said about the wrong ones.
#include "agent/settings/Settings.h"
#include "agent/settings/StartError.h"
#include "agent/settings/help.h"
#include "agent/settings/show.h"
#include "tests/agent/pull/TemporaryDirectory.h"

#include <algorithm>
#include <climits>
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
CommandLine readLine(const std::string& line)
{
    std::istringstream stream(line);
    std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
    words.insert(words.begin(), "cimd");
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    return readCommandLine(static_cast<int>(words.size()), argv.data());
}

Settings settingsOf(const std::string& line, const std::string& configFile = "")
{
    return {readLine(line), {"/opt/bin", configFile}};
}

// What is wrong with them, a line for each fault.
std::string faultsOf(const std::string& line, const std::string& configFile = "")
try
{
    settingsOf(line, configFile);
    return "none";
}
catch (const StartError& error)
{
    std::string text;
    for (const std::string& fault : error.faults())
        text += (text.empty() ? "" : "\n") + fault;
    return text;
}

// A configuration file in a directory of its own.
class ConfigFile
{
  public:
    explicit ConfigFile(const std::string& text) { write(text); }
    void write(const std::string& text) { std::ofstream(path()) << text; }
    std::string path() const { return directory() + "/cimd.conf"; }
    const std::string& directory() const { return _directory.path(); }

  private:
    TemporaryDirectory _directory;
};

std::vector<std::string> namesOf(const std::vector<const OptionRow*>& rows)
{
    std::vector<std::string> names;
    names.reserve(rows.size());
    for (const OptionRow* row : rows)
        names.emplace_back(row->name);
    return names;
}

TEST(SettingsTest, DefaultsAndActions)
{
    const Options options = settingsOf("").options();
    EXPECT_EQ("/opt/bin/../share/cimd/repository.xml", options.repository);
    EXPECT_EQ("/opt/bin/../share/cimd/providers.reg", options.registration);
    EXPECT_EQ("/opt/bin/../lib/cimd", options.providerDir);
    EXPECT_EQ("127.0.0.1:5988", options.address + ":" + std::to_string(options.port));
    EXPECT_EQ(Action::Help, readLine("--help --nonsense").action);
    EXPECT_EQ(Action::CheckConfig, readLine("--check-config --port 1 --config x").action);
}

// In the command line and in a file; each changes what it names and nothing else.
TEST(SettingsTest, EveryOptionIsTakenAndShown)
{
    const Settings standard = settingsOf("");
    for (const OptionRow& row : optionRows())
    {
        const std::string name = row.name;
        std::vector<std::string> values{row.access.kind == OptionKind::Flag ? "true" : "/x"};
        for (const LimitRow& limit : limitRows())
            if (name == limit.option)
                values = {std::to_string(limit.least), std::to_string(limit.most)};
        if (row.access.kind == OptionKind::Number && values[0] == "/x")
            values = {"0", "65535"};
        else if (name == "log-level")
            values = {"debug", "error"};
        for (const std::string& value : values)
        {
            // What some options need besides.
            const std::string more =
                name == "no-http" || name == "tls-port" || name == "certificate" || name == "private-key"
                    ? "--certificate /x --private-key /x"
                : name == "metrics-listen" ? "--metrics-port 1"
                                           : "";
            std::vector<std::string> expected =
                namesOf(standard.differences(more.empty() ? standard : settingsOf(more)));
            if (std::find(expected.begin(), expected.end(), name) == expected.end())
                expected.push_back(name);
            if (value == row.access.get(standard.options()))
                continue;
            const bool isBare = row.access.kind == OptionKind::Flag || row.access.kind == OptionKind::Number;
            const std::string quote = isBare ? "" : "\"";
            const ConfigFile file(name + " = " + quote + value + quote);
            for (const Settings& settings :
                 {settingsOf(more + " --" + name + "=" + value), settingsOf(more, file.path())})
            {
                EXPECT_EQ(value, row.access.get(settings.options())) << name;
                EXPECT_EQ(expected, namesOf(standard.differences(settings))) << name;
                EXPECT_TRUE(std::regex_search(
                    configTable(settings), std::regex("\n" + name + " +" + quote + value + quote + " +\\S")))
                    << name;
            }
        }
    }
}

TEST(SettingsTest, EveryLimitHasAStandardWithinItsBounds)
{
    for (const LimitRow& row : limitRows())
    {
        EXPECT_EQ(row.standard, row.get(Limits())) << row.option;
        EXPECT_LE(row.least, row.standard) << row.option;
        EXPECT_LE(row.standard, row.most) << row.option;
    }
}

TEST(SettingsTest, TheCommandLineCountsMoreThanTheFile)
{
    ConfigFile file("listen = \"::1\"\nport = 1\n\nstate = \"now.json\"\ntrace-xml = \"-\"\n"
                    "scenario = \"/s.json\"\nno-authentication = true\npassword-file = \"\"\n");
    const Settings settings = settingsOf("--port 2 --no-authentication=false --scenario=", file.path());
    const Options& options = settings.options();
    EXPECT_EQ("::1:2", options.address + ":" + std::to_string(options.port));
    EXPECT_EQ(file.directory() + "/now.json", options.state) << "relative to the file";
    EXPECT_EQ("-", options.traceXml);
    EXPECT_EQ(std::nullopt, options.scenario) << "undone by an empty text";
    EXPECT_EQ(std::nullopt, options.passwordFile);
    EXPECT_FALSE(options.isOpen);
    EXPECT_EQ(file.path() + ":4: state", settings.place("state"));
    const std::string table = configTable(settings);
    for (const std::string& line : {"listen +\"::1\" +" + file.path() + ":1",
                                    std::string("port +2 +command line"),
                                    std::string("metrics-port +\"\" +default"),
                                    std::string("log-level +\"warning\" +default")})
        EXPECT_TRUE(std::regex_search(table, std::regex("\n" + line + "\n"))) << line;

    file.write("listen = \"::1\"\nport = 7\nmax-workers = 3\n");
    const Settings now = settings.readAgain();
    EXPECT_EQ(3U, now.options().limits.workers);
    EXPECT_EQ(2, now.options().port);
    EXPECT_EQ("5988", optionRows()[0].access.get(settingsOf("--config=", file.path()).options()));
    EXPECT_EQ("5988", optionRows()[0].access.get(settingsOf("", file.path() + ".none").options()));
}

TEST(SettingsTest, FaultsOfTheFileNameTheLine)
{
    const struct
    {
        const char* text;
        const char* faults; // FILE stands for the file
    } rows[] = {
        {"# a\n\nport = 80\nprot = 1\nmax-workers = 0\n",
         "FILE:4: prot: there is no such key\nFILE:5: max-workers: \"0\" is not a number from 1 to 256"},
        {"port = \"80\"", "FILE:1: port: a whole number is wanted, not a string"},
        {"port = -1", "FILE:1: port: \"-1\" is not a port number (0 to 65535)"},
        {"\nno-http = 1", "FILE:2: no-http: true or false is wanted, not a whole number"},
        {"listen = 1.5", "FILE:1: listen: a string is wanted, not a number with a fraction"},
        {"listen = [\"::1\"]\nstate = 2026-01-01",
         "FILE:1: listen: a string is wanted, not an array\nFILE:2: state: a string is wanted, not a date or "
         "time"},
        {"[port]\nx = 1\n[more]\n",
         "FILE:1: port: a whole number is wanted, not a table\nFILE:3: more: there is no such key"},
        {"help = true", "FILE:1: help: there is no such key"},
        {"repository = \"\"", "FILE:1: repository: \"\" is not a name"},
        {"\nno-http = true",
         "FILE:2: no-http: --certificate and --private-key are needed, or nothing would be served"},
    };
    for (const auto& row : rows)
    {
        const ConfigFile file(row.text);
        EXPECT_EQ(std::regex_replace(row.faults, std::regex("FILE"), file.path()), faultsOf("", file.path()));
    }
    for (const char* broken : {"port = 1\nlisten = = 3", "port = 1\nport = 2", "port = 1\nlisten = \"\xff\""})
    {
        const ConfigFile file(broken);
        EXPECT_EQ(0U, faultsOf("", file.path()).find(file.path() + ":2: ")) << faultsOf("", file.path());
    }
    EXPECT_EQ("--config: cannot read /none: No such file or directory", faultsOf("--config /none"));
    EXPECT_EQ("cannot read /tmp: Is a directory", faultsOf("", "/tmp"));
    const std::string longest(NAME_MAX + 1, 'x');
    EXPECT_EQ("cannot read " + longest + ": File name too long", faultsOf("", longest));
}

// With the comment signs gone, each key has its default, 0, or the word for its value.
TEST(SettingsTest, TheSampleHasEveryKey)
{
    const std::string sample = sampleConfig();
    const ConfigFile file(std::regex_replace(sample, std::regex("\n#([a-z])"), "\n$1"));
    const Settings settings = settingsOf("", file.path());
    const Options standard;
    for (const OptionRow& row : optionRows())
    {
        std::string value = row.access.get(standard);
        if (value.empty())
            value = row.access.kind == OptionKind::Number ? "0"
                    : row.access.kind == OptionKind::File ? file.directory() + "/" + row.argument
                                                          : row.argument;
        EXPECT_EQ(value, row.access.get(settings.options())) << row.name;
        EXPECT_EQ(0U, settings.source(row).find(file.path())) << row.name;
    }
}

TEST(SettingsTest, TheTableShowsWhatTheCommandLineChanged)
{
    const auto has = [](const Limits& limits, const std::string& pattern)
    { return std::regex_search(limitsTable(limits), std::regex(pattern)); };
    Limits limits;
    EXPECT_TRUE(has(limits, "--max-head-bytes +32768 +bytes +Request"));
    limits.workers = 3;
    EXPECT_TRUE(has(limits, "OPTION +DEFAULT +NOW +UNIT"));
    EXPECT_TRUE(has(limits, "--max-workers +8 +3 +Threads"));
}

TEST(SettingsTest, FaultsNameTheOption)
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
        {"--password-file /x --no-authentication", "--no-authentication: --password-file says the opposite"},
        {"--port 1 file --verbose", "file: arguments without an option are not known"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.fault, faultsOf(row.line));
}

TEST(SettingsTest, TheManualKnowsWhatHelpKnows)
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
