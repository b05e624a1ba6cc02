// Attributes of the switch as properties of an instance: a table of keys, properties and conversions, read in
// one batch and filled in by one loop.
//
//     constexpr Attribute<VRAX_FCPort> kAttributes[] = {
//         {"Oper.UserPort.0.%s.LinkSpeed", put<&VRAX_FCPort::Speed, smlSpeedToCIMSpeed>},
//         {"Oper.UserPort.0.%s.RxBytePerf", put<&VRAX_FCPort::Rate, decimal>, kStaysNull},
//         {"Oper.UserPort.0.%s.OperState"}, // read for the load's own code
//     };
#ifndef SWITCHACCESS_ATTRIBUTE_H
#define SWITCHACCESS_ATTRIBUTE_H

#include "switchaccess/Sml_Batch.h"

#include <cimple/cimple.h>

#include <string_view>

namespace cimple
{

// What an attribute without a value at present leaves a property: null. (Any other text is taken for the
// value; usually the empty one.)
constexpr const char* kStaysNull = nullptr;

template <class CLASS>
struct Attribute
{
    const char* key;                                          // a format of support/substitute.h
    void (*put)(CLASS& instance, const char* text) = nullptr; // null: the attribute feeds no single property
    const char* absent = "";                                  // the text of an attribute without a value
};

template <class CLASS, class MEMBER>
CLASS ownerOf(MEMBER CLASS::*);

// The text itself.
inline const char* asText(const char* text)
{
    return text;
}

// Converts the text and gives it to the property.
template <auto PROPERTY, auto CONVERT = asText>
void put(decltype(ownerOf(PROPERTY))& instance, const char* text)
{
    (instance.*PROPERTY).set(CONVERT(text));
}

// The same for a text that says something; an empty one leaves the property as it is.
template <auto PROPERTY, auto CONVERT = asText>
void putUnlessEmpty(decltype(ownerOf(PROPERTY))& instance, const char* text)
{
    if (*text != '\0')
        put<PROPERTY, CONVERT>(instance, text);
}

// Conversions. Numbers are those at the start of the text; 0 when there is none.
std::uint64_t hexadecimal(const char* text);
std::uint64_t decimal(const char* text);
uint16 decimal16(const char* text);
uint32 decimal32(const char* text); // the largest for one that is larger
bool isTrue(const char* text);      // exactly "True"
String inUpperCase(const char* text);
Array_String asOnlyElement(const char* text);

// The place of the row whose key ends so. A compile error when there is none, or more than one:
//     constexpr std::size_t kOperState = entryOf(kAttributes, ".OperState");
template <class CLASS, std::size_t N>
constexpr std::size_t entryOf(const Attribute<CLASS> (&rows)[N], std::string_view ending)
{
    std::size_t found = N;
    for (std::size_t i = 0; i < N; ++i)
    {
        const std::string_view key(rows[i].key);
        if (key.size() < ending.size() || key.substr(key.size() - ending.size()) != ending)
            continue;
        if (found != N)
            throw "several such rows";
        found = i;
    }
    if (found == N)
        throw "no such row";
    return found;
}

// Reads the attributes of one element after the other; the table must outlive the reader.
template <class CLASS>
class Attribute_Reader
{
  public:
    template <std::size_t N>
    explicit Attribute_Reader(const Attribute<CLASS> (&rows)[N]) : _rows(rows), _batch(rows)
    {
    }

    // One batch; as Sml_Batch::read().
    bool read(std::initializer_list<const char*> arguments) { return _batch.read(arguments); }

    // Gives every property of the table its value.
    void fill(CLASS& instance) const
    {
        for (std::size_t i = 0; i < _batch.size(); ++i)
        {
            const char* const value = text(i);
            if (_rows[i].put != nullptr && value != nullptr)
                _rows[i].put(instance, value);
        }
    }

    // The value of a row, or what its absence means.
    const char* text(std::size_t entry) const
    {
        return _batch.status(entry) == 0 ? _batch.text(entry) : _rows[entry].absent;
    }

  private:
    const Attribute<CLASS>* _rows;
    Sml_Batch _batch;
};

} // namespace cimple

#endif
