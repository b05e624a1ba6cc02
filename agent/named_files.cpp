// Reading what the options name.
#include "agent/named_files.h"

#include "agent/auth/PasswordStore.h"
#include "agent/http/ListenSocket.h"
#include "agent/http/SpoolArea.h"
#include "agent/providers/Registration.h"
#include "agent/repository/ClassRepository.h"

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace cimd
{

namespace
{

// Throws std::system_error without the access, which is named as for access(2).
void checkAccess(const std::string& path, int wanted)
{
    if (access(path.c_str(), wanted) != 0)
        throw std::system_error(errno, std::generic_category(), path);
}

// The same unless a file can be made, or replaced, with this name.
void checkCanBeMade(const std::string& path)
{
    const std::filesystem::path directory = std::filesystem::path(path).parent_path();
    checkAccess(directory.empty() ? "." : directory.string(), W_OK | X_OK);
}

} // namespace

TlsIdentity readTlsIdentity(const Settings& settings)
{
    const Options& options = settings.options();
    TlsIdentity tls;
    if (options.certificate)
    {
        tls.certificate =
            starting(settings, "certificate", [&] { return readCertificate(*options.certificate); });
        tls.key = starting(
            settings, "private-key", [&] { return readPrivateKey(*options.privateKey, tls.certificate); });
    }
    return tls;
}

void checkUsersAreKnown(const Settings& settings, const char* option, const std::string& address)
{
    const Options& options = settings.options();
    if (!ListenSocket::isLoopbackAddress(address) && !options.passwordFile && !options.isOpen)
        throw StartError(settings.place(option) + ": " + address +
                         " is not for this machine alone: --password-file is needed, or --no-authentication");
}

void checkNamedFiles(const Settings& settings)
{
    const Options& options = settings.options();
    std::vector<std::string> faults;
    const auto check = [&](const char* option, auto step)
    {
        try
        {
            starting(settings, option, step);
        }
        catch (const StartError& error)
        {
            faults.insert(faults.end(), error.faults().begin(), error.faults().end());
        }
    };
    // Any free port: the one of the options may be that of a running cimd.
    const auto checkAddress = [&](const char* option, const std::string& address)
    {
        check(option,
              [&]
              {
                  const ListenSocket socket(address, 0, 1);
                  checkUsersAreKnown(settings, option, address);
              });
    };
    checkAddress("listen", options.address);
    if (options.metricsPort)
        checkAddress("metrics-listen", options.metricsAddress);
    check("certificate", [&] { readTlsIdentity(settings); });
    if (options.passwordFile)
        check("password-file", [&] { PasswordStore(*options.passwordFile, FirstRead::MustSucceed); });
    if (options.indicationCa)
        check("indication-ca", [&] { readCertificate(*options.indicationCa); });
    check("repository", [&] { ClassRepository::load(options.repository); });
    check("registration", [&] { loadRegistrations(options.registration); });
    check("provider-dir", [&] { checkAccess(options.providerDir + "/.", X_OK); });
    if (options.scenario)
        check("scenario", [&] { checkAccess(*options.scenario, R_OK); });
    if (options.state)
        check("state", [&] { checkCanBeMade(*options.state); });
    if (options.traceXml && options.traceXml != "-" && access(options.traceXml->c_str(), W_OK) != 0)
        check("trace-xml", [&] { checkCanBeMade(*options.traceXml); });
    check("spool-directory", [&] { SpoolArea::tryDirectory(options.spoolDirectory); });
    if (!faults.empty())
        throw StartError(std::move(faults));
}

} // namespace cimd
