// Scoped owners of what the zoning library hands out.
#ifndef SWITCHACCESS_ZONING_LIST_H
#define SWITCHACCESS_ZONING_LIST_H

#include "platform/xpl_fzs.h"
#include "platform/xpl_lib.h"

#include <string>

namespace cimple
{

// A block of the library, given back at the end of the scope.
template <class ELEMENT>
class Library_Block
{
  public:
    Library_Block() = default;
    ~Library_Block() { xpl_libFreeMemory(_block); }
    Library_Block(const Library_Block&) = delete;
    Library_Block& operator=(const Library_Block&) = delete;

    ELEMENT** place() { return &_block; } // for the call that hands out the block
    const ELEMENT* get() const { return _block; }

  private:
    ELEMENT* _block = nullptr;
};

// Names of zone sets, zones or aliases. Asks the switch at construction:
//     const Zoning_Names zones(xpl_fzsGetZonesetZoneList, zoneSet);
//     if (zones.error() != 0) ...
//     for (const char* zone : zones)
class Zoning_Names
{
  public:
    template <class CALL, class... ARGUMENTS>
    explicit Zoning_Names(CALL call, ARGUMENTS... arguments)
    {
        _error = call(hSwitch, arguments..., &_count, _names.place());
    }

    // 0, or the status with which the call failed; there are no names then.
    std::int32_t error() const { return _error; }
    std::uint32_t size() const { return _error == 0 ? _count : 0; }

    class Iterator
    {
      public:
        explicit Iterator(const char* name) : _name(name) {}
        const char* operator*() const { return _name; }
        Iterator& operator++()
        {
            _name += kZoneNameSize;
            return *this;
        }
        bool operator!=(const Iterator& other) const { return _name != other._name; }

      private:
        const char* _name;
    };
    Iterator begin() const { return Iterator(_names.get()); }
    Iterator end() const
    {
        return Iterator(size() > 0 ? _names.get() + size() * kZoneNameSize : _names.get());
    }

  private:
    std::uint32_t _count = 0;
    Library_Block<char> _names;
    std::int32_t _error = 0;
};

// The members of a zone or alias:
//     const Zone_Members members(xpl_fzsGetZoneMemberList, zone);
class Zone_Members
{
  public:
    template <class CALL>
    Zone_Members(CALL call, const char* holder)
    {
        _error = call(hSwitch, holder, &_count, _types.place(), _identifiers.place());
    }

    // As of Zoning_Names.
    std::int32_t error() const { return _error; }
    std::uint32_t size() const { return _error == 0 ? _count : 0; }

    // An xpl_fzs_zonemember_type_e, or a type that only the switch knows.
    std::int32_t type(std::uint32_t member) const { return _types.get()[member]; }
    bool isAlias(std::uint32_t member) const { return type(member) == XPL_ZMT_ALIAS; }
    // As the switch writes the member: "2100026E1A40B7C1", "010203", "1:A", or an alias's name.
    std::string text(std::uint32_t member) const;

  private:
    std::uint32_t _count = 0;
    Library_Block<xpl_fzs_zonemember_type_e> _types;
    Library_Block<xpl_fzs_zonemember_identifier_u> _identifiers;
    std::int32_t _error = 0;
};

} // namespace cimple

#endif
