// The parameters of an intrinsic operation, taken by name and checked.
#ifndef AGENT_OPS_PARAMETERS_H
#define AGENT_OPS_PARAMETERS_H

#include "agent/cim/Argument.h"
#include "agent/cim/Instance.h"
#include "agent/xml/ElementReader.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimd
{

// Each reader marks its parameter as known. A parameter without a value is NULL and counts as not given. What
// is wrong (repeated, of the wrong type, missing though required) throws CimError InvalidParameter with the
// parameter's name.
class Parameters
{
  public:
    // `elements` are IPARAMVALUE elements. A property list may name `maxProperties`.
    Parameters(const std::vector<XmlElement>& elements,
               const ElementReader& reader,
               std::size_t maxProperties);

    bool boolean(const char* name, bool byDefault);
    // Empty when not given.
    std::string text(const char* name);
    std::string requiredText(const char* name);
    std::optional<std::uint32_t> uint32(const char* name);
    std::uint32_t requiredUint32(const char* name);
    // Empty when not given.
    CimName className(const char* name);
    CimName requiredClassName(const char* name);
    ObjectPath instanceName(const char* name);
    // An instance name where a class name could stand too; that throws NotSupported.
    ObjectPath objectName(const char* name);
    PropertyList propertyList(const char* name);
    Instance instance(const char* name);
    Instance namedInstance(const char* name);
    // A value that may be of any type, and whether its element says of which; NULL when not given.
    Argument value(const char* name);

    // Throws if a parameter is left that no reader asked for.
    void finish() const;

  private:
    struct Entry
    {
        std::string_view name;
        XmlElement value; // empty for NULL
        bool known;
    };

    // The value's element, an empty handle for NULL.
    XmlElement find(const char* name);
    XmlElement require(const char* name);

    std::vector<Entry> _entries;
    const ElementReader& _reader;
    const std::size_t _maxProperties;
};

// Runs a reader and puts the parameter's name before its complaint.
template <class Read>
auto named(std::string_view parameter, Read read)
{
    try
    {
        return read();
    }
    catch (const CimError& error)
    {
        throw CimError(error.status(), "parameter " + std::string(parameter) + ": " + error.what());
    }
}

} // namespace cimd

#endif
