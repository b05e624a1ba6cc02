// A CIM element name: compared without regard to letter case, kept in the case it was declared in.
#ifndef AGENT_CIM_CIMNAME_H
#define AGENT_CIM_CIMNAME_H

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimd
{

// Letters A to Z only: what DSP0004 leaves of Unicode case rules in practice.
int compareNoCase(std::string_view left, std::string_view right);
bool equalNoCase(std::string_view left, std::string_view right);

// Immutable and cheap to copy: copies share one text, so an instance does not pay for the names of its class.
class CimName
{
  public:
    CimName() = default;
    CimName(std::string_view text);
    CimName(const std::string& text) : CimName(std::string_view(text)) {}
    CimName(const char* text) : CimName(std::string_view(text)) {}

    bool empty() const { return !_text; }
    const std::string& str() const;
    const char* c_str() const { return str().c_str(); }
    std::size_t hash() const;

    // Both are copies of one name, which makes them equal. Cheap, but equal names need not be copies.
    bool shares(const CimName& other) const { return _text == other._text && _text; }

    // Both equal without regard to case and spelled alike.
    bool identical(const CimName& other) const { return _text == other._text || str() == other.str(); }

    friend bool operator==(const CimName& left, const CimName& right)
    {
        return left._text == right._text || equalNoCase(left.str(), right.str());
    }
    friend bool operator!=(const CimName& left, const CimName& right) { return !(left == right); }
    friend bool operator<(const CimName& left, const CimName& right)
    {
        return compareNoCase(left.str(), right.str()) < 0;
    }

  private:
    std::shared_ptr<const std::string> _text; // null for the empty name
};

// Absent: all properties. Present and empty: none. Names the class does not have are ignored when reading.
using PropertyList = std::optional<std::vector<CimName>>;

bool isListed(const PropertyList& list, const CimName& name);

} // namespace cimd

template <>
struct std::hash<cimd::CimName>
{
    std::size_t operator()(const cimd::CimName& name) const { return name.hash(); }
};

#endif
