// The values of the test broker, which are texts: tests write them, and compare with them.
//   number      u8:255 s64:-5 r32:1.5 c:65        boolean    true false
//   string      "a \"quoted\" text"               datetime   d:20260314015926.535897+060
//   reference   <root/demo:Demo_Rack.Name="r1">   instance   Demo_Limits{Low=s32:1,High=s32:2}
//   array       [u16:1,u16:2] and empty u16[]     NULL       null, or of a known type u16:null, u16[]:null
// A path is `root/demo:Demo_Rack.Name="r1"`, a list of arguments `Id=u32:7,Label="inlet"`.
#ifndef TESTS_TOOLKIT_ADAPTER_TEST_VALUES_H
#define TESTS_TOOLKIT_ADAPTER_TEST_VALUES_H

#include <cmpift.h>

#include <string>
#include <utility>
#include <vector>

namespace test_broker
{

// A name and its value.
using Named = std::pair<std::string, std::string>;

// The parts between the commas of a list.
std::vector<std::string> split(const std::string& list);
std::vector<Named> named(const std::string& list);
// The way back. What is NULL is left out, since servers say NULL and nothing alike to their clients.
std::string listOf(const std::vector<Named>& items);

std::string quoted(const std::string& text);
std::string unquoted(const std::string& value);

bool isNull(const std::string& value);
std::string nullOf(CMPIType type);
CMPIType typeOf(const std::string& value);
// "u16", "string[]"
std::string typeName(CMPIType type);

// Booleans, numbers and characters: exactly the member that the type names.
CMPIValue scalarOf(const std::string& value, CMPIType type);
std::string textOf(const CMPIValue& scalar, CMPIType type);

// The value of that name in any letter case, or null.
std::string* find(std::vector<Named>& items, const std::string& name);
// Adds or replaces.
void set(std::vector<Named>& items, const std::string& name, const std::string& value);

} // namespace test_broker

#endif
