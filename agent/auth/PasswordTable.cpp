// Reading, changing and writing the lines of a password file.
#include "agent/auth/PasswordTable.h"

#include "agent/auth/password_hash.h"

#include <algorithm>
#include <stdexcept>

namespace cimd
{

namespace
{

constexpr std::size_t kLongestName = 64; // bytes

// Of no password that anybody knows: what is checked while a file names no user.
const std::string kNobody = "$2b$10$abcdefghijklmnopqrstuuKR4m0qXBr3aVSqWqTnXB3cVvLTTmYvG";

bool isComment(const std::string& line)
{
    return line.empty() || line.front() == '#';
}

} // namespace

std::string userNameFault(const std::string& user)
{
    if (user.empty())
        return "the user's name is missing";
    if (user.size() > kLongestName)
        return "the user's name has more than " + std::to_string(kLongestName) + " bytes";
    if (user.find(':') != std::string::npos)
        return "a user's name cannot have a colon";
    if (user.front() == '#')
        return "a user's name cannot start with #";
    if (std::any_of(user.begin(),
                    user.end(),
                    [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }))
        return "a user's name cannot have control characters";
    return {};
}

PasswordTable PasswordTable::parse(const std::string& text, const std::string& path)
{
    PasswordTable table;
    for (std::size_t at = 0, number = 1; at < text.size(); ++number)
    {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string line = text.substr(at, end - at);
        at = end + 1;
        if (isComment(line))
        {
            table._lines.push_back({{}, line});
            continue;
        }
        const std::size_t colon = std::min(line.find(':'), line.size());
        Line entry{line.substr(0, colon), line.substr(std::min(colon + 1, line.size()))};
        std::string fault = colon == line.size() ? "name:hash expected" : userNameFault(entry.user);
        if (fault.empty())
            fault = hashFault(entry.rest);
        if (fault.empty() && table.find(entry.user) != nullptr)
            fault = "user " + entry.user + " stands in an earlier line, too";
        if (!fault.empty())
            throw std::runtime_error(path + ":" + std::to_string(number) + ": " + fault);
        table._lines.push_back(std::move(entry));
    }
    return table;
}

const PasswordTable::Line* PasswordTable::find(const std::string& user) const
{
    for (const Line& line : _lines)
        if (!line.user.empty() && line.user == user)
            return &line;
    return nullptr;
}

const std::string* PasswordTable::hashOf(const std::string& user) const
{
    const Line* line = find(user);
    return line != nullptr ? &line->rest : nullptr;
}

const std::string& PasswordTable::decoy() const
{
    for (const Line& line : _lines)
        if (!line.user.empty())
            return line.rest;
    return kNobody;
}

bool PasswordTable::empty() const
{
    return &decoy() == &kNobody;
}

void PasswordTable::set(const std::string& user, const std::string& hash)
{
    for (const std::string& fault : {userNameFault(user), hashFault(hash)})
        if (!fault.empty())
            throw std::invalid_argument(fault);
    for (Line& line : _lines)
        if (line.user == user)
        {
            line.rest = hash;
            return;
        }
    _lines.push_back({user, hash});
}

bool PasswordTable::remove(const std::string& user)
{
    const Line* line = find(user);
    if (line == nullptr)
        return false;
    _lines.erase(_lines.begin() + (line - _lines.data()));
    return true;
}

std::string PasswordTable::text() const
{
    std::string text;
    for (const Line& line : _lines)
        text += (line.user.empty() ? line.rest : line.user + ":" + line.rest) + "\n";
    return text;
}

} // namespace cimd
