// Reads and writes the fields of one JSON object for the visitors of fields.h; strict about what it reads.
#ifndef SIMULATOR_SCENARIO_JSON_FIELDS_H
#define SIMULATOR_SCENARIO_JSON_FIELDS_H

#include "simulator/scenario/fields.h"

#include <nlohmann/json.hpp>

#include <set>

namespace simulator
{

// Fields keep their order when written.
using Json = nlohmann::ordered_json;

// Takes fields out of one object. Every failure is a ScenarioError that names the place.
class JsonFieldReader
{
  public:
    // `object` must outlive the reader. `place` is its JSON pointer.
    JsonFieldReader(const Json& object, std::string place);

    void number(const char* name, int& value, int low, int high, Presence presence = Presence::optional);
    // A number with so many decimals at most; `value`, `low` and `high` count the last of them.
    void
    decimal(const char* name, int& value, int decimals, int low, int high, Presence = Presence::optional);
    void text(const char* name, std::string& value, std::size_t limit);
    void texts(const char* name, std::vector<std::string>& values, std::size_t limit);
    void wwn(const char* name, std::string& value, Presence presence = Presence::optional);
    void flag(const char* name, bool& value);
    void address(const char* name, std::uint32_t& value);
    void bytes(const char* name, std::vector<std::uint8_t>& value, std::size_t size);
    void codes(const char* name, std::vector<std::uint16_t>& value);
    // A list of the first and the last number.
    void range(const char* name, std::optional<PortRange>& value, int low, int high);

    // The same of values that may be missing.
    void text(const char* name, std::optional<std::string>& value, std::size_t limit)
    {
        if (find(name, Presence::optional) != nullptr)
            text(name, value.emplace(), limit);
    }
    void decimal(const char* name, std::optional<int>& value, int decimals, int low, int high)
    {
        if (find(name, Presence::optional) != nullptr)
            decimal(name, value.emplace(), decimals, low, high);
    }
    void number(const char* name, std::optional<int>& value, int low, int high)
    {
        if (find(name, Presence::optional) != nullptr)
            number(name, value.emplace(), low, high);
    }
    void wwn(const char* name, std::optional<std::string>& value)
    {
        if (find(name, Presence::optional) != nullptr)
            wwn(name, value.emplace());
    }
    void address(const char* name, std::optional<std::uint32_t>& value)
    {
        if (find(name, Presence::optional) != nullptr)
            address(name, value.emplace());
    }
    template <class T, class Visit>
    void object(const char* name, std::optional<T>& value, Visit visit)
    {
        if (find(name, Presence::optional) != nullptr)
            object(name, value.emplace(), visit);
    }

    // The fields of `value` in an object of their own.
    template <class T, class Visit> // void(JsonFieldReader& inner, T& value)
    void object(const char* name, T& value, Visit visit)
    {
        if (const Json* field = object(name))
            readInner(*field, placeOf(name), value, visit);
    }
    // An object for each element.
    template <class T, class Visit>
    void list(const char* name, std::vector<T>& values, Visit visit)
    {
        const Json* field = array(name);
        for (std::size_t i = 0; field != nullptr && i < field->size(); ++i)
            readInner((*field)[i], placeOf(name) + "/" + std::to_string(i), values.emplace_back(), visit);
    }

    // A number that is one of the codes listed.
    template <std::size_t N>
    void oneOf(const char* name, int& value, const int (&codes)[N])
    {
        code(name, value, codes, N);
    }

    template <class E>
    void choice(const char* name, E& value)
    {
        const Json* field = find(name, Presence::optional);
        if (field == nullptr)
            return;
        const auto known =
            field->is_string() ? fromText<E>(field->get_ref<const std::string&>()) : std::nullopt;
        if (!known)
            refuse(name, "one of " + choicesOf<E>(), *field);
        value = *known;
    }

    // An object or a list that the caller reads; null when the field is not there.
    const Json* object(const char* name);
    const Json* array(const char* name);

    // Refuses fields that nobody asked for.
    void finish() const;

    // The JSON pointer of a field of this object.
    std::string placeOf(const std::string& name) const { return _place + "/" + name; }

  private:
    template <class T, class Visit>
    static void readInner(const Json& object, const std::string& place, T& value, Visit visit)
    {
        JsonFieldReader inner(object, place);
        visit(inner, value);
        inner.finish();
    }

    const Json* find(const char* name, Presence presence);
    void code(const char* name, int& value, const int* codes, std::size_t count);
    [[noreturn]] void refuse(const char* name, const std::string& expected, const Json& got) const;

    const Json& _object;
    std::string _place;
    std::set<std::string> _known;
};

// Puts every field into an object.
class JsonFieldWriter
{
  public:
    void number(const char* name, int value, int, int, Presence presence = Presence::optional);
    void decimal(const char* name, int value, int decimals, int, int, Presence = Presence::optional);
    void text(const char* name, const std::string& value, std::size_t);
    void texts(const char* name, const std::vector<std::string>& values, std::size_t);
    void wwn(const char* name, const std::string& value, Presence = Presence::optional);
    void flag(const char* name, bool value);
    void address(const char* name, std::uint32_t value);
    void bytes(const char* name, const std::vector<std::uint8_t>& value, std::size_t);
    void codes(const char* name, const std::vector<std::uint16_t>& value);
    void range(const char* name, const std::optional<PortRange>& value, int, int);

    // Values that are missing are left out.
    void text(const char* name, const std::optional<std::string>& value, std::size_t limit)
    {
        if (value)
            text(name, *value, limit);
    }
    void decimal(const char* name, const std::optional<int>& value, int decimals, int low, int high)
    {
        if (value)
            decimal(name, *value, decimals, low, high);
    }
    void number(const char* name, const std::optional<int>& value, int low, int high)
    {
        if (value)
            number(name, *value, low, high);
    }
    void wwn(const char* name, const std::optional<std::string>& value)
    {
        if (value)
            wwn(name, *value);
    }
    void address(const char* name, const std::optional<std::uint32_t>& value)
    {
        if (value)
            address(name, *value);
    }
    template <class T, class Visit>
    void object(const char* name, const std::optional<T>& value, Visit visit)
    {
        if (value)
            object(name, *value, visit);
    }

    template <class T, class Visit> // void(JsonFieldWriter& inner, const T& value)
    void object(const char* name, const T& value, Visit visit)
    {
        JsonFieldWriter inner;
        visit(inner, value);
        fields[name] = inner.fields;
    }
    template <class T, class Visit>
    void list(const char* name, const std::vector<T>& values, Visit visit)
    {
        fields[name] = Json::array();
        for (const T& value : values)
        {
            JsonFieldWriter inner;
            visit(inner, value);
            fields[name].push_back(inner.fields);
        }
    }

    template <std::size_t N>
    void oneOf(const char* name, int value, const int (&)[N])
    {
        fields[name] = value;
    }

    template <class E>
    void choice(const char* name, E value)
    {
        fields[name] = std::string(toText(value));
    }

    Json fields = Json::object();
};

} // namespace simulator

#endif
