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
    void text(const char* name, std::string& value, std::size_t limit);
    void wwn(const char* name, std::string& value, Presence presence = Presence::optional);
    void flag(const char* name, bool& value);
    void address(const char* name, std::uint32_t& value);
    void bytes(const char* name, std::vector<std::uint8_t>& value, std::size_t size);
    void codes(const char* name, std::vector<std::uint16_t>& value);

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
    void text(const char* name, const std::string& value, std::size_t);
    void wwn(const char* name, const std::string& value, Presence = Presence::optional);
    void flag(const char* name, bool value);
    void address(const char* name, std::uint32_t value);
    void bytes(const char* name, const std::vector<std::uint8_t>& value, std::size_t);
    void codes(const char* name, const std::vector<std::uint16_t>& value);

    template <std::size_t N>
    void oneOf(const char* name, int value, const int (&)[N])
    {
        object[name] = value;
    }

    template <class E>
    void choice(const char* name, E value)
    {
        object[name] = std::string(toText(value));
    }

    Json object = Json::object();
};

} // namespace simulator

#endif
