// Password hashes, the lines of the password file, and the file itself.
#include "agent/auth/PasswordTable.h"
#include "agent/auth/password_hash.h"
#include "agent/auth/private_file.h"
#include "tests/agent/auth/users.h"
#include "tests/agent/pull/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace cimd
{
namespace
{

const std::string kSha512 = "$6$saltstring$svn8UoSVapNtMuq1ukKS4tPQd8iKwSMHWjl/O817G3uBnI"
                            "FNjnQJuesI68u4OTLiBFdcbYEdFCoEOfaS35inz1";

template <class Action>
std::string faultOf(Action action)
{
    try
    {
        action();
    }
    catch (const std::exception& error)
    {
        return error.what();
    }
    return "none";
}

TEST(PasswordHashTest, MatchesItsPasswordOnly)
{
    const std::string hash = hashPassword("se:cret \xc3\xa9");
    EXPECT_EQ("", hashFault(hash));
    EXPECT_NE(hash, hashPassword("se:cret \xc3\xa9")) << "salted";
    EXPECT_TRUE(passwordMatches("se:cret \xc3\xa9", hash));
    EXPECT_FALSE(passwordMatches("se:cret", hash));
    EXPECT_TRUE(passwordMatches("Hello world!", kSha512));
    EXPECT_FALSE(passwordMatches("Hello world", kSha512));

    const std::string longest(kLongestPassword, 'x');
    const std::string ofLongest = hashPassword(longest);
    EXPECT_TRUE(passwordMatches(longest, ofLongest));
    EXPECT_FALSE(passwordMatches(longest + "y", ofLongest)) << "bcrypt itself ignores the rest";
    EXPECT_FALSE(passwordMatches(longest + std::string("\0", 1), ofLongest));
    for (const std::string& bad : {std::string(), longest + "y", std::string("a\0b", 3)})
        EXPECT_THROW(hashPassword(bad), std::invalid_argument);
}

TEST(PasswordHashTest, KnowsUsableHashes)
{
    const std::string cheap = kCheapHash;
    const struct
    {
        std::string hash;
        const char* fault; // start
    } rows[] = {
        {cheap, ""},
        {kSha512, ""},
        {"secret", "the hash is of an unknown"},
        {"$1$abcdefgh$RzoIqE9QdOfTFDbTbTbWQ/", "the hash is of an unknown"},
        {"$2b$10$", "the hash is not complete"},
        {cheap.substr(0, cheap.size() - 1), "the hash is not complete"},
        {cheap + "x", "the hash is not complete"},
        {"$2b$99" + cheap.substr(6), "the hash takes too long"},
        {"$2b$x5" + cheap.substr(6), "the hash "},
        {"$6$rounds=10000000" + kSha512.substr(2), "the hash takes too long"},
        {"$6$rounds=10000" + kSha512.substr(2), ""},
        {kSha512.substr(0, 40), "the hash is not complete"},
    };
    for (const auto& row : rows)
    {
        const std::string fault = hashFault(row.hash);
        EXPECT_EQ(row.fault, fault.substr(0, *row.fault != '\0' ? std::string(row.fault).size() : 99))
            << row.hash;
    }
}

TEST(PasswordTableTest, ReadsAndChangesLines)
{
    const std::string line = std::string(":") + kCheapHash + "\n";
    PasswordTable table = PasswordTable::parse("# people\njoe" + line + "\nan n" + line + "# end", "f");
    ASSERT_NE(nullptr, table.hashOf("an n"));
    EXPECT_EQ(kCheapHash, *table.hashOf("an n"));
    EXPECT_EQ(nullptr, table.hashOf("Joe"));
    EXPECT_EQ(nullptr, table.hashOf(""));
    table.set("joe", kSha512);
    table.set("eve", kCheapHash);
    EXPECT_TRUE(table.remove("an n"));
    EXPECT_FALSE(table.remove("an n"));
    EXPECT_EQ("# people\njoe:" + kSha512 + "\n\n# end\neve" + line, table.text());
    EXPECT_THROW(table.set("a:b", kCheapHash), std::invalid_argument);
    EXPECT_THROW(table.set("joe", "plain"), std::invalid_argument);
    EXPECT_FALSE(table.empty());
    EXPECT_TRUE(PasswordTable::parse("#\n", "f").empty());
    EXPECT_EQ("", hashFault(PasswordTable().decoy())) << "would be checked in no time";
}

TEST(PasswordTableTest, SaysWhichLineIsWrong)
{
    const std::string hash = kCheapHash;
    const struct
    {
        std::string text;
        std::string fault; // start
    } rows[] = {
        {"joe", "/etc/users:1: name:hash expected"},
        {"\n#\njoe:", "/etc/users:3: the hash is missing"},
        {":" + hash, "/etc/users:1: the user's name is missing"},
        {"joe:" + hash + "\njoe:" + hash, "/etc/users:2: user joe stands in an earlier line, too"},
        {"joe:" + hash + "\r\n", "/etc/users:1: the hash is not complete"},
        {"j\toe:" + hash, "/etc/users:1: a user's name cannot have control characters"},
        {std::string(65, 'x') + ":" + hash, "/etc/users:1: the user's name has more than 64 bytes"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.fault, faultOf([&] { PasswordTable::parse(row.text, "/etc/users"); }));
}

TEST(PrivateFileTest, RefusesWhatOthersCanReadOrChange)
{
    const TemporaryDirectory directory;
    const std::string path = directory.path() + "/users";
    const struct
    {
        mode_t mode;
        std::string fault;
    } rows[] = {
        {0600, "none"},
        {0640, "none"},
        {0644, path + ": others may read it (mode 0644); make it 0600 or 0640"},
        {0620, path + ": others may write it (mode 0620); make it 0600 or 0640"},
        {0602, path + ": others may write it (mode 0602); make it 0600 or 0640"},
    };
    for (const auto& row : rows)
    {
        writeUsers(path, "text", row.mode);
        EXPECT_EQ(row.fault, faultOf([&] { readSmallFile(path, Secrecy::Secret); }));
        EXPECT_EQ("none", faultOf([&] { readSmallFile(path, Secrecy::Public); }));
    }
    EXPECT_EQ(path + "x: cannot open: No such file or directory",
              faultOf([&] { readSmallFile(path + "x", Secrecy::Secret); }));
    EXPECT_EQ(directory.path() + ": is not a file",
              faultOf([&] { readSmallFile(directory.path(), Secrecy::Public); }));
    writeUsers(path, std::string(1024 * 1024 + 1, 'x'));
    EXPECT_EQ(path + ": is larger than 1048576 bytes",
              faultOf([&] { readSmallFile(path, Secrecy::Secret); }));
}

TEST(PrivateFileTest, ReplacesAFileWhole)
{
    const TemporaryDirectory directory;
    const std::string path = directory.path() + "/users";
    const auto modeOf = [](const std::string& file)
    { return static_cast<unsigned>(std::filesystem::status(file).permissions()); };
    replaceFile(path, "new");
    EXPECT_EQ(0600U, modeOf(path));
    const std::optional<FileStamp> before = fileStamp(path);
    ASSERT_EQ(0, chmod(path.c_str(), 0640));
    ASSERT_EQ(0, symlink(path.c_str(), (directory.path() + "/link").c_str()));
    replaceFile(directory.path() + "/link", "newer");
    EXPECT_EQ(0640U, modeOf(path)) << "the file behind the link is the one that changed";
    EXPECT_EQ("newer", readSmallFile(path, Secrecy::Secret).text);
    EXPECT_NE(before, fileStamp(path));
    EXPECT_EQ(2, std::distance(std::filesystem::directory_iterator(directory.path()), {}))
        << "nothing is left over";
    EXPECT_EQ(directory.path() + "/none/users: cannot create a file beside it: No such file or directory",
              faultOf([&] { replaceFile(directory.path() + "/none/users", "new"); }));
}

} // namespace
} // namespace cimd
