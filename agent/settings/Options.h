// Everything that an operator can set, in the command line or in the configuration file.
#ifndef AGENT_SETTINGS_OPTIONS_H
#define AGENT_SETTINGS_OPTIONS_H

#include "agent/limits/Limits.h"
#include "agent/log/log.h"

#include <cstdint>
#include <optional>
#include <string>

namespace cimd
{

struct Options
{
    std::string address = "127.0.0.1";
    std::uint16_t port = 5988;    ///< 0: any free port
    std::uint16_t tlsPort = 5989; ///< 0: any free port; of HTTPS
    bool isPlainServed = true;    ///< HTTP on `port`
    std::optional<std::string> certificate;
    std::optional<std::string> privateKey;
    std::optional<std::uint16_t> metricsPort; ///< 0: any free port; none: no metrics
    std::string metricsAddress = "127.0.0.1";
    LogLevel logLevel = LogLevel::Warning;
    std::optional<std::string> scenario;
    std::optional<std::string> state; ///< of the simulated switch, across restarts
    std::optional<std::string> switchSocket;
    std::optional<std::string> controlSocket;
    std::string repository;
    std::string registration;
    std::string providerDir;
    std::optional<std::string> passwordFile;
    bool isOpen = false;                     ///< Nobody has to log in, wherever cimd listens.
    std::string spoolDirectory;              ///< for large results that wait to be pulled
    bool supervised = true;                  ///< A process that crashes is replaced.
    std::optional<std::string> indicationCa; ///< what vouches for listeners of indications
    bool isIndicationInsecure = false;       ///< Any certificate of a listener will do.
    std::optional<std::string> traceXml;     ///< "-": standard output
    Limits limits;
};

} // namespace cimd

#endif
