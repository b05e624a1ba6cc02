// What keeps cimd from starting.
#ifndef AGENT_SETTINGS_STARTERROR_H
#define AGENT_SETTINGS_STARTERROR_H

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace cimd
{

// One fault or several, each with where it is: "--port: \"x\" is not a port number",
// "/etc/cimd/cimd.conf:3: prot: there is no such key".
class StartError : public std::runtime_error
{
  public:
    explicit StartError(std::vector<std::string> faults)
        : std::runtime_error(faults.front()), _faults(std::move(faults))
    {
    }
    explicit StartError(const std::string& fault) : StartError(std::vector{fault}) {}

    const std::vector<std::string>& faults() const { return _faults; }

  private:
    const std::vector<std::string> _faults;
};

} // namespace cimd

#endif
