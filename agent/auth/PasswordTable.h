// The users and their password hashes, as the password file holds them.
#ifndef AGENT_AUTH_PASSWORDTABLE_H
#define AGENT_AUTH_PASSWORDTABLE_H

#include <string>
#include <vector>

namespace cimd
{

// One line for each user, "name:hash". Empty lines and lines that start with "#" are comments and stay where
// they are.
class PasswordTable
{
  public:
    // Throws std::runtime_error, "path:line: reason"; `path` is for that message alone.
    static PasswordTable parse(const std::string& text, const std::string& path);

    // Null for an unknown user.
    const std::string* hashOf(const std::string& user) const;
    // A hash to check the password of an unknown user against, so that it takes as long as for a known one.
    const std::string& decoy() const;
    bool empty() const;

    // Throws std::invalid_argument for a name that cannot stand in the file.
    void set(const std::string& user, const std::string& hash);
    // False if there is no such user.
    bool remove(const std::string& user);
    std::string text() const;

  private:
    struct Line
    {
        std::string user; // empty: a comment
        std::string rest; // the hash or the comment
    };
    const Line* find(const std::string& user) const;

    std::vector<Line> _lines;
};

// Why a name cannot be a user's, for a message; empty if it can.
std::string userNameFault(const std::string& user);

} // namespace cimd

#endif
