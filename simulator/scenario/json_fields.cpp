// Reads and writes the fields of one JSON object.
#include "simulator/scenario/json_fields.h"

#include "simulator/model/hex.h"

#include <algorithm>
#include <cmath>

namespace simulator
{
namespace
{

constexpr std::size_t kShownValue = 40;    // characters of a refused value that a message repeats
constexpr double kDecimalTolerance = 1e-6; // decimal numbers are binary fractions in JSON

std::string shown(const Json& value)
{
    std::string text = value.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (text.size() > kShownValue)
        text = text.substr(0, kShownValue) + "...";
    return text;
}

double powerOfTen(int exponent)
{
    double power = 1;
    for (int i = 0; i < exponent; ++i)
        power *= 10;
    return power;
}

} // namespace

JsonFieldReader::JsonFieldReader(const Json& object, std::string place)
    : _object(object), _place(std::move(place))
{
    if (!_object.is_object())
        throw ScenarioError(_place, "expected an object, got " + shown(_object));
}

const Json* JsonFieldReader::find(const char* name, Presence presence)
{
    _known.insert(name);
    const auto found = _object.find(name);
    if (found != _object.end())
        return &*found;
    if (presence == Presence::required)
        throw ScenarioError(_place, "the field \"" + std::string(name) + "\" is missing");
    return nullptr;
}

void JsonFieldReader::refuse(const char* name, const std::string& expected, const Json& got) const
{
    throw ScenarioError(placeOf(name), "expected " + expected + ", got " + shown(got));
}

void JsonFieldReader::number(const char* name, int& value, int low, int high, Presence presence)
{
    const Json* field = find(name, presence);
    if (field == nullptr)
        return;
    const bool whole = field->is_number_integer();
    const auto got = whole ? field->get<std::int64_t>() : 0;
    if (!whole || got < low || got > high)
        refuse(name, "a whole number from " + std::to_string(low) + " to " + std::to_string(high), *field);
    value = static_cast<int>(got);
}

void JsonFieldReader::code(const char* name, int& value, const int* codes, std::size_t count)
{
    const Json* field = find(name, Presence::optional);
    if (field == nullptr)
        return;
    std::string list;
    for (std::size_t i = 0; i < count; ++i)
    {
        if (field->is_number_integer() && *field == codes[i])
        {
            value = codes[i];
            return;
        }
        list += (i == 0 ? "" : ", ") + std::to_string(codes[i]);
    }
    refuse(name, "one of " + list, *field);
}

void JsonFieldReader::decimal(
    const char* name, int& value, int decimals, int low, int high, Presence presence)
{
    const Json* field = find(name, presence);
    if (field == nullptr)
        return;
    const double scaled = field->is_number() ? field->get<double>() * powerOfTen(decimals) : 0;
    const double nearest = std::round(scaled);
    const bool fits = field->is_number() && nearest >= low && nearest <= high;
    if (!fits || std::abs(scaled - nearest) > kDecimalTolerance)
    {
        refuse(name,
               "a number from " + decimalText(low, decimals) + " to " + decimalText(high, decimals) +
                   " with at most " + std::to_string(decimals) + " decimals",
               *field);
    }
    value = static_cast<int>(nearest);
}

void JsonFieldReader::range(const char* name, std::optional<PortRange>& value, int low, int high)
{
    const Json* field = find(name, Presence::optional);
    if (field == nullptr)
        return;
    const auto isNumber = [low, high](const Json& one)
    { return one.is_number_integer() && one.get<std::int64_t>() >= low && one.get<std::int64_t>() <= high; };
    if (!field->is_array() || field->size() != 2 || !std::all_of(field->begin(), field->end(), isNumber) ||
        (*field)[0] > (*field)[1])
    {
        refuse(name,
               "a list of two whole numbers from " + std::to_string(low) + " to " + std::to_string(high) +
                   ", the lower one first",
               *field);
    }
    value = PortRange{(*field)[0].get<int>(), (*field)[1].get<int>()};
}

void JsonFieldReader::text(const char* name, std::string& value, std::size_t limit)
{
    const Json* field = find(name, Presence::optional);
    if (field == nullptr)
        return;
    if (!field->is_string() || field->get_ref<const std::string&>().size() > limit ||
        field->get_ref<const std::string&>().find('\0') != std::string::npos)
        refuse(name, "a text of at most " + std::to_string(limit) + " bytes", *field);
    value = field->get<std::string>();
}

void JsonFieldReader::texts(const char* name, std::vector<std::string>& values, std::size_t limit)
{
    const Json* field = find(name, Presence::optional);
    if (field == nullptr)
        return;
    const auto isText = [limit](const Json& one)
    { return one.is_string() && one.get_ref<const std::string&>().size() <= limit; };
    if (!field->is_array() || !std::all_of(field->begin(), field->end(), isText))
        refuse(name, "a list of texts of at most " + std::to_string(limit) + " bytes", *field);
    values = field->get<std::vector<std::string>>();
}

void JsonFieldReader::wwn(const char* name, std::string& value, Presence presence)
{
    const Json* field = find(name, presence);
    if (field == nullptr)
        return;
    if (!field->is_string() || !isHex(field->get_ref<const std::string&>(), 16))
        refuse(name, "a World Wide Name of 16 hexadecimal digits", *field);
    value = field->get<std::string>();
}

void JsonFieldReader::flag(const char* name, bool& value)
{
    const Json* field = find(name, Presence::optional);
    if (field == nullptr)
        return;
    if (!field->is_boolean())
        refuse(name, "true or false", *field);
    value = field->get<bool>();
}

void JsonFieldReader::address(const char* name, std::uint32_t& value)
{
    const Json* field = find(name, Presence::optional);
    if (field == nullptr)
        return;
    std::uint64_t parsed = 0;
    if (!field->is_string() || !isHex(field->get_ref<const std::string&>(), 6) ||
        !parseHex(field->get_ref<const std::string&>(), parsed) || parsed == 0)
        refuse(name, "a Fibre Channel address of six hexadecimal digits, not 000000", *field);
    value = static_cast<std::uint32_t>(parsed);
}

void JsonFieldReader::bytes(const char* name, std::vector<std::uint8_t>& value, std::size_t size)
{
    const Json* field = find(name, Presence::optional);
    if (field == nullptr)
        return;
    if (!field->is_string() || !isHex(field->get_ref<const std::string&>(), 2 * size))
        refuse(name, std::to_string(2 * size) + " hexadecimal digits", *field);
    value = bytesFromHex(field->get_ref<const std::string&>());
}

void JsonFieldReader::codes(const char* name, std::vector<std::uint16_t>& value)
{
    const Json* field = find(name, Presence::optional);
    if (field == nullptr)
        return;
    const auto isCode = [](const Json& one)
    { return one.is_number_integer() && one.get<std::int64_t>() >= 0 && one.get<std::int64_t>() <= 65535; };
    if (!field->is_array() || !std::all_of(field->begin(), field->end(), isCode))
        refuse(name, "a list of whole numbers from 0 to 65535", *field);
    value = field->get<std::vector<std::uint16_t>>();
}

const Json* JsonFieldReader::object(const char* name)
{
    return find(name, Presence::optional); // a reader of its own refuses what is no object
}

const Json* JsonFieldReader::array(const char* name)
{
    const Json* field = find(name, Presence::optional);
    if (field != nullptr && !field->is_array())
        refuse(name, "a list", *field);
    return field;
}

void JsonFieldReader::finish() const
{
    for (const auto& field : _object.items())
    {
        if (_known.count(field.key()) == 0)
        {
            std::string list;
            for (const std::string& name : _known)
                list += (list.empty() ? "" : ", ") + name;
            throw ScenarioError(placeOf(field.key()), "unknown field; expected one of " + list);
        }
    }
}

void JsonFieldWriter::number(const char* name, int value, int, int, Presence)
{
    fields[name] = value;
}

void JsonFieldWriter::decimal(const char* name, int value, int decimals, int, int, Presence)
{
    fields[name] = value / powerOfTen(decimals);
}

void JsonFieldWriter::range(const char* name, const std::optional<PortRange>& value, int, int)
{
    if (value)
        fields[name] = {value->first, value->last};
}

void JsonFieldWriter::text(const char* name, const std::string& value, std::size_t)
{
    fields[name] = value;
}

void JsonFieldWriter::texts(const char* name, const std::vector<std::string>& values, std::size_t)
{
    fields[name] = values;
}

void JsonFieldWriter::wwn(const char* name, const std::string& value, Presence)
{
    fields[name] = value;
}

void JsonFieldWriter::flag(const char* name, bool value)
{
    fields[name] = value;
}

void JsonFieldWriter::address(const char* name, std::uint32_t value)
{
    fields[name] = hexOf(value, 6);
}

void JsonFieldWriter::bytes(const char* name, const std::vector<std::uint8_t>& value, std::size_t)
{
    fields[name] = hexFromBytes(value);
}

void JsonFieldWriter::codes(const char* name, const std::vector<std::uint16_t>& value)
{
    fields[name] = value;
}

} // namespace simulator
