// Putting the values of options together.
#include "agent/settings/Settings.h"

#include "agent/settings/StartError.h"

#include <cstdlib>

namespace cimd
{

namespace
{

const std::string kCommandLine = "command line";

std::size_t indexOf(const OptionRow& row)
{
    return static_cast<std::size_t>(&row - optionRows().data());
}

} // namespace

Settings::Settings(const CommandLine& line, const std::string& programDir) : _sources(optionRows().size())
{
    _options.repository = programDir + "/../share/cimd/repository.xml";
    _options.registration = programDir + "/../share/cimd/providers.reg";
    _options.providerDir = programDir + "/../lib";
    const char* const temporary = std::getenv("TMPDIR");
    _options.spoolDirectory = temporary != nullptr && *temporary != '\0' ? temporary : "/tmp";
    for (const CommandLine::Word& word : line.words)
        take(*word.row, word.value, kCommandLine);
    checkTogether();
}

std::string Settings::place(const char* option) const
{
    return std::string("--") + option;
}

void Settings::take(const OptionRow& row, const std::string& value, const std::string& source)
{
    _sources[indexOf(row)] = source;
    try
    {
        row.access.set(_options, value);
    }
    catch (const std::invalid_argument& error)
    {
        throw StartError(place(row.name) + ": " + error.what());
    }
}

bool Settings::isGiven(const char* option) const
{
    return !_sources[indexOf(*findOption(option))].empty();
}

// What no option can say alone.
void Settings::checkTogether() const
{
    const auto fail = [this](const char* option, const char* what)
    { throw StartError(place(option) + ": " + what); };
    if (_options.passwordFile && _options.isOpen)
        fail("no-authentication", "--password-file says the opposite");
    if (_options.certificate && !_options.privateKey)
        fail("certificate", "--private-key is needed, too");
    if (_options.privateKey && !_options.certificate)
        fail("private-key", "--certificate is needed, too");
    if (isGiven("tls-port") && !_options.certificate)
        fail("tls-port", "--certificate and --private-key are needed, too");
    if (isGiven("metrics-listen") && !_options.metricsPort)
        fail("metrics-listen", "--metrics-port is needed, too");
    if (_options.indicationCa && _options.isIndicationInsecure)
        fail("indication-insecure", "--indication-ca says the opposite");
    if (!_options.isPlainServed && !_options.certificate)
        fail("no-http", "--certificate and --private-key are needed, or nothing would be served");
}

} // namespace cimd
