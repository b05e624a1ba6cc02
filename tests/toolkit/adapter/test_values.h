// Plain C++ values of the test broker: what a CIM server would keep of instances, paths and arguments.
#pragma once

#include <cmpift.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace test_broker
{

struct Path;
struct Inst;

// One CIM value. `type` is a CMPI type code (never CMPI_chars), with the array bit for arrays; a NULL value
// keeps its type.
struct Value
{
    CMPIType type = CMPI_null;
    bool null = true;
    CMPIValue scalar = {0};           // numbers, booleans, char16: the member that `type` names
    std::string text;                 // strings and datetimes (25 characters)
    std::shared_ptr<const Path> path; // references
    std::shared_ptr<const Inst> inst; // embedded instances
    std::vector<Value> elements;      // arrays

    static Value nullOf(CMPIType type);
    static Value boolean(bool x);
    template <class X>
    static Value number(CMPIType type, X x);
    static Value integer(CMPIType type, CMPIUint64 bits) { return number(type, bits); }
    static Value char16(CMPIChar16 x) { return number(CMPI_char16, x); }
    static Value real32(float x) { return number(CMPI_real32, x); }
    static Value real64(double x) { return number(CMPI_real64, x); }
    static Value string(std::string x) { return present(CMPI_string, std::move(x)); }
    static Value dateTime(std::string x) { return present(CMPI_dateTime, std::move(x)); }
    static Value ref(Path x);
    static Value instance(Inst x);
    static Value array(CMPIType elementType, std::vector<Value> x);
    static Value present(CMPIType type, std::string text = {});
};

// The members of CMPIValue that are numbers, with what their texts begin with.
// clang-format off
#define TEST_BROKER_NUMBERS(X) \
    X(uint8, "u8:") X(uint16, "u16:") X(uint32, "u32:") X(uint64, "u64:") \
    X(sint8, "s8:") X(sint16, "s16:") X(sint32, "s32:") X(sint64, "s64:") \
    X(char16, "c:") X(real32, "r32:") X(real64, "r64:")
// clang-format on

template <class X>
Value Value::number(CMPIType type, X x)
{
    Value value = present(type);
#define SET_NUMBER(MEMBER, PREFIX)                                                                           \
    if (type == CMPI_##MEMBER)                                                                               \
        value.scalar.MEMBER = static_cast<CMPI_TYPE_OF(MEMBER)>(x);
#define CMPI_TYPE_OF(MEMBER) decltype(CMPIValue::MEMBER)
    TEST_BROKER_NUMBERS(SET_NUMBER)
#undef CMPI_TYPE_OF
#undef SET_NUMBER
    return value;
}

using Named = std::pair<std::string, Value>;

struct Path
{
    std::string ns;
    std::string className;
    std::vector<Named> keys;
};

// The value of that name in any letter case, or null.
const Value* find(const std::vector<Named>& list, const char* name);

// Adds or replaces; names compare without regard to case.
void set(std::vector<Named>& list, const std::string& name, Value value);

struct Inst
{
    Path path;
    std::vector<Named> properties;

    const Value* property(const char* name) const { return find(properties, name); }
};

// Stable texts for comparisons: `root/x:Demo_Rack.Name="r1"`, `Demo_Rack{Name="r1",Slots=[u16:1,null]}`.
// Properties that are NULL are left out, since servers say NULL and nothing alike to their clients.
std::string textOf(const Value& value);
std::string textOf(const Path& path);
std::string textOf(const Inst& inst);

// Value read from a value argument of a CMPI call: exactly the bytes of the member that the type names.
// Objects are read through their `hdl`, so they must be objects of this broker.
Value valueOf(const CMPIValue* value, CMPIType type);

} // namespace test_broker
