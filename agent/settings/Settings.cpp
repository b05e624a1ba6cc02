// Putting the values of options together.
#include "agent/settings/Settings.h"

#include "agent/settings/StartError.h"
#include "agent/settings/config_file.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace cimd
{

namespace
{

std::size_t indexOf(const OptionRow& row)
{
    return static_cast<std::size_t>(&row - optionRows().data());
}

} // namespace

Settings::Settings(CommandLine line, Places places)
    : _line(std::move(line)), _places(std::move(places)), _sources(optionRows().size())
{
    setDefaults();
    takeFile();
    takeCommandLine();
    checkTogether();
}

void Settings::setDefaults()
{
    _options.repository = _places.programDir + "/../share/cimd/repository.xml";
    _options.registration = _places.programDir + "/../share/cimd/providers.reg";
    _options.providerDir = _places.programDir + "/../lib/cimd";
    const char* const temporary = std::getenv("TMPDIR");
    _options.spoolDirectory = temporary != nullptr && *temporary != '\0' ? temporary : "/tmp";
}

void Settings::takeFile()
{
    const std::string& path = _line.configFile.value_or(_places.configFile);
    if (path.empty())
        return;
    const auto values = readConfigFile(path);
    if (!values && _line.configFile)
        throw StartError("--config: cannot read " + path + ": " + std::generic_category().message(ENOENT));
    if (!values)
        return;
    _configFile = path;
    for (const FileValue& given : *values)
    {
        given.row->access.set(_options, given.value);
        _sources[indexOf(*given.row)] = {Source::File, given.line};
    }
}

void Settings::takeCommandLine()
{
    for (const CommandLine::Word& given : _line.words)
    {
        _sources[indexOf(*given.row)] = {Source::CommandLine};
        try
        {
            given.row->access.set(_options, given.value);
        }
        catch (const std::invalid_argument& error)
        {
            throw StartError(place(given.row->name) + ": " + error.what());
        }
    }
}

std::string Settings::place(const std::string& option) const
{
    const OptionRow& row = *findOption(option);
    return _sources[indexOf(row)].kind == Source::File ? source(row) + ": " + option : "--" + option;
}

std::string Settings::source(const OptionRow& row) const
{
    const Source& source = _sources[indexOf(row)];
    if (source.kind == Source::File)
        return _configFile + ":" + std::to_string(source.line);
    return source.kind == Source::Default ? "default" : "command line";
}

std::vector<const OptionRow*> Settings::differences(const Settings& other) const
{
    std::vector<const OptionRow*> rows;
    for (const OptionRow& row : optionRows())
        if (row.access.get(_options) != row.access.get(other._options))
            rows.push_back(&row);
    return rows;
}

bool Settings::isGiven(const std::string& option) const
{
    return _sources[indexOf(*findOption(option))].kind != Source::Default;
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
