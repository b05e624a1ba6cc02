// The registration file: which class is served by which provider of which library.
#ifndef AGENT_PROVIDERS_REGISTRATION_H
#define AGENT_PROVIDERS_REGISTRATION_H

#include "agent/cim/CimName.h"

#include <array>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cimd
{

// What is wrong with a registration file: "file:line: reason".
class RegistrationError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// The kinds of management interface.
enum class ProviderKind
{
    Instance,
    Association,
    Method,
    Indication
};
inline constexpr std::array kProviderKinds{std::pair{ProviderKind::Instance, "instance"},
                                           std::pair{ProviderKind::Association, "association"},
                                           std::pair{ProviderKind::Method, "method"},
                                           std::pair{ProviderKind::Indication, "indication"}};

struct Registration
{
    CimName className;
    std::string provider; // prefix of the factory functions' names
    std::string location; // the library is lib<location>.so
    std::set<ProviderKind> kinds;
    std::vector<std::string> nameSpaces;
    std::string place; // "file:line" of the entry, for messages

    bool has(ProviderKind kind) const { return kinds.count(kind) != 0; }
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
