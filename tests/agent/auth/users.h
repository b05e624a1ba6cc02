// Users whose hashes are cheap to check, for tests.
#ifndef TESTS_AGENT_AUTH_USERS_H
#define TESTS_AGENT_AUTH_USERS_H

#include <fstream>
#include <string>
#include <sys/stat.h>

namespace cimd
{

// bcrypt with the least possible cost, as libcrypt's own test has it.
constexpr const char* kCheapPassword = "U*U";
constexpr const char* kCheapHash = "$2a$05$CCCCCCCCCCCCCCCCCCCCC.E5YPO9kmyuRGyh0XouQYb4YMJKvyOeW";

// Puts a text where the password file is; each call makes another state of the file.
inline void writeUsers(const std::string& path, const std::string& text, mode_t mode = 0600)
{
    std::ofstream(path + ".new") << text;
    chmod((path + ".new").c_str(), mode);
    std::rename((path + ".new").c_str(), path.c_str());
}

} // namespace cimd

#endif
