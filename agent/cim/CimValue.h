// A typed CIM value: scalar or array of any CIM type, possibly NULL.
#ifndef AGENT_CIM_CIMVALUE_H
#define AGENT_CIM_CIMVALUE_H

#include "agent/cim/CimDateTime.h"
#include "agent/cim/CimType.h"

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace cimd
{

class Instance;
class ObjectPath;

// A value always knows its type, also when it is NULL. Array elements are scalars of the array's type and may
// be NULL one by one. An array of uint8 without NULLs is kept as its bytes, for it may be a file; every other
// array as a value for each element. Arrays, references and embedded instances are shared and immutable, so
// copies are cheap. The as...() readers, elements() and asBytes() require a non-null value of a type that
// matches; they throw std::bad_variant_access otherwise.
class CimValue
{
  public:
    using Elements = std::vector<CimValue>;
    using Bytes = std::vector<std::uint8_t>;

    // NULL of type string.
    CimValue() = default;

    static CimValue null(CimType type, bool isArray = false);
    static CimValue boolean(bool value);
    static CimValue char16(char16_t value);
    // The number must fit the type: std::out_of_range otherwise.
    static CimValue unsignedInteger(CimType type, std::uint64_t value);
    static CimValue signedInteger(CimType type, std::int64_t value);
    static CimValue real32(float value);
    static CimValue real64(double value);
    static CimValue string(std::string value); // UTF-8
    static CimValue dateTime(const CimDateTime& value);
    static CimValue reference(ObjectPath value);
    static CimValue embedded(CimType type, Instance value); // type Instance or Object
    static CimValue embedded(CimType type, std::shared_ptr<const Instance> value);
    // Every element is a scalar of `elementType`, NULL or not; std::invalid_argument otherwise.
    static CimValue array(CimType elementType, Elements elements);
    static CimValue bytes(Bytes bytes); // an array of uint8

    static CimValue uint8(std::uint8_t value) { return unsignedInteger(CimType::Uint8, value); }
    static CimValue uint16(std::uint16_t value) { return unsignedInteger(CimType::Uint16, value); }
    static CimValue uint32(std::uint32_t value) { return unsignedInteger(CimType::Uint32, value); }
    static CimValue uint64(std::uint64_t value) { return unsignedInteger(CimType::Uint64, value); }
    static CimValue sint8(std::int8_t value) { return signedInteger(CimType::Sint8, value); }
    static CimValue sint16(std::int16_t value) { return signedInteger(CimType::Sint16, value); }
    static CimValue sint32(std::int32_t value) { return signedInteger(CimType::Sint32, value); }
    static CimValue sint64(std::int64_t value) { return signedInteger(CimType::Sint64, value); }

    CimType type() const { return _type; } // of the elements for an array
    bool isArray() const { return _isArray; }
    bool isNull() const { return std::holds_alternative<std::monostate>(_data); }
    // Becomes NULL of the same type.
    void clear() { _data = std::monostate(); }
    bool hasType(CimType type, bool isArray) const { return _type == type && _isArray == isArray; }

    bool asBoolean() const { return std::get<bool>(_data); }
    char16_t asChar16() const { return static_cast<char16_t>(std::get<std::uint64_t>(_data)); }
    std::uint64_t asUnsigned() const { return std::get<std::uint64_t>(_data); } // uint8 to uint64
    std::int64_t asSigned() const { return std::get<std::int64_t>(_data); }     // sint8 to sint64
    double asReal() const { return std::get<double>(_data); }                   // real32 too, exactly
    const std::string& asString() const { return std::get<std::string>(_data); }
    const CimDateTime& asDateTime() const { return std::get<CimDateTime>(_data); }
    const ObjectPath& asReference() const { return *std::get<ReferencePtr>(_data); }
    const Instance& asInstance() const { return *std::get<InstancePtr>(_data); }
    const std::shared_ptr<const Instance>& sharedInstance() const { return std::get<InstancePtr>(_data); }
    const Elements& elements() const { return *std::get<ElementsPtr>(_data); }
    bool holdsBytes() const { return std::holds_alternative<BytesPtr>(_data); }
    const Bytes& asBytes() const { return *std::get<BytesPtr>(_data); }

    // Same type and same value; references and embedded instances are compared by content.
    friend bool operator==(const CimValue& left, const CimValue& right);
    friend bool operator!=(const CimValue& left, const CimValue& right) { return !(left == right); }

  private:
    using ReferencePtr = std::shared_ptr<const ObjectPath>;
    using InstancePtr = std::shared_ptr<const Instance>;
    using ElementsPtr = std::shared_ptr<const Elements>;
    using BytesPtr = std::shared_ptr<const Bytes>;
    using Data = std::variant<std::monostate,
                              bool,
                              std::uint64_t, // unsigned integers and char16
                              std::int64_t,
                              double,
                              std::string,
                              CimDateTime,
                              ReferencePtr,
                              InstancePtr,
                              ElementsPtr,
                              BytesPtr>;

    CimValue(CimType type, bool isArray, Data data);

    Data _data;
    CimType _type = CimType::String;
    bool _isArray = false;
};

// "uint16", "string[]" ... for messages.
std::string typeText(CimType type, bool isArray);

} // namespace cimd

#endif
