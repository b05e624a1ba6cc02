// Tables of requests, kept in text files.
#include "tests/common/testing/requests.h"

#include <cimple/cimple.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

using namespace cimple;

namespace
{

void replace(std::string& text, const std::string& what, const std::string& by)
{
    for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
}

template <class T>
void set(void* field, T value)
{
    static_cast<Property<T>*>(field)->set(value);
}

} // namespace

std::vector<Cells> readRequests(const std::string& path, std::size_t cells, const std::string& localWwn)
{
    const std::string bar = " | ";
    std::vector<Cells> rows;
    std::vector<std::pair<std::string, std::string>> names = {{"@", localWwn}, {"\\n", "\n"}};
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
    {
        if (line.empty() || line[0] == '#')
            continue;
        const std::size_t equals = line.find(" = ");
        if (line[0] == '$' && equals != line.npos && line.find(' ') == equals)
        {
            names.emplace_back(line.substr(0, equals), line.substr(equals + 3));
            continue;
        }
        for (auto name = names.rbegin(); name != names.rend(); ++name) // texts before what they hold
            replace(line, name->first, name->second);
        if (line.find('$') != line.npos)
            throw std::runtime_error(path + ": an unknown name: " + line);
        Cells row;
        for (std::size_t from = 0, to = 0; to != line.npos; from = to + bar.size())
        {
            to = line.find(bar, from);
            row.push_back(line.substr(from, to == line.npos ? to : to - from));
            if (row.back() == "\"\"")
                row.back().clear();
        }
        if (row.size() > cells)
            throw std::runtime_error(path + ": too many cells: " + line);
        row.resize(cells);
        rows.push_back(row);
    }
    if (rows.empty())
        throw std::runtime_error(path + ": no row");
    return rows;
}

std::string joined(const std::vector<std::string>& texts)
{
    std::string all;
    for (const std::string& text : texts)
        all += (all.empty() ? "" : " | ") + text;
    return all;
}

void assign(Instance& instance, const std::string& properties)
{
    std::istringstream words(properties);
    for (std::string word; words >> word;)
    {
        const std::string name = word.substr(0, word.find('=')), value = word.substr(name.size() + 1);
        const Meta_Property* property = find_property(instance.meta_class, name.c_str());
        if (property == nullptr)
            throw std::runtime_error("no property " + name);
        void* const field = __property_of(&instance, property);
        const unsigned long long number = value.empty() || property->type == BOOLEAN ? 0 : std::stoull(value);
        if (property->type == BOOLEAN)
            set<boolean>(field, value == "true");
        else if (property->type == UINT8)
            set<uint8>(field, static_cast<uint8>(number));
        else if (property->type == UINT16)
            set<uint16>(field, static_cast<uint16>(number));
        else if (property->type == UINT64)
            set<uint64>(field, number);
        else
            throw std::runtime_error(name + " is of a type that no request sets");
    }
}
