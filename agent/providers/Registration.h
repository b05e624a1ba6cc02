// The registration file: which class is served by which provider of which library.
#ifndef AGENT_PROVIDERS_REGISTRATION_H
#define AGENT_PROVIDERS_REGISTRATION_H

#include "agent/cim/CimName.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace cimd
{

// What is wrong with a registration file: "file:line: reason".
class RegistrationError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// The kinds of management interface that requests need of a provider.
enum class ProviderKind
{
    Instance,
    Association,
    Method
};

struct Registration
{
    CimName className;
    std::string provider; // prefix of the factory functions' names
    std::string location; // the library is lib<location>.so
    bool instance = false;
    bool association = false;
    bool method = false;
    bool indication = false;
    std::vector<std::string> nameSpaces;
    std::string place; // "file:line" of the entry, for messages

    bool has(ProviderKind kind) const;
};

// Reads entries of the form
//     [ClassName]
//        provider: Name
//        location: library
//        type: instance association method indication
//        namespace: root/interop root/other
// with # starting a comment line. The keywords unload, group, user and parameters are accepted without
// effect: all providers run in the server's process until it ends. RegistrationError for everything else.
std::vector<Registration> loadRegistrations(const std::string& file);
std::vector<Registration> parseRegistrations(std::string_view text, const std::string& name);

} // namespace cimd

#endif
