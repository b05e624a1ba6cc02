// Finds what answers an attribute key.
//
// A pattern is a key with placeholders: "Oper.UserPort.0.%s.LinkSpeed". A placeholder takes one part of the
// key (what stands between two points); "%*" as the last part takes the rest of the key, points included.
// Patterns form a tree by parts, so a look-up costs one hash probe a part however many patterns there are.
#ifndef SIMULATOR_KEYS_KEYREGISTRY_H
#define SIMULATOR_KEYS_KEYREGISTRY_H

#include <array>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>

namespace simulator
{

// What the placeholders took, in order. Views into the key.
class KeyArguments
{
  public:
    static constexpr std::size_t kLimit = 4;

    std::string_view operator[](std::size_t index) const { return _taken[index]; }
    void push(std::string_view part) { _taken[_count++] = part; }
    bool full() const { return _count == kLimit; }
    std::size_t size() const { return _count; }

  private:
    std::array<std::string_view, kLimit> _taken{};
    std::size_t _count = 0;
};

// Filled once, then only read, from any thread.
template <class Handler>
class KeyRegistry
{
  public:
    // A pattern that is there already, or takes too many arguments, is an error of the program.
    void add(std::string_view pattern, Handler handler)
    {
        Part* part = &_root;
        KeyArguments arguments;
        for (std::string_view rest = pattern; !rest.empty();)
        {
            const std::string_view name = cut(rest);
            const bool placeholder = name.size() == 2 && name[0] == '%';
            if (placeholder && arguments.full())
                throw std::logic_error("key pattern with too many placeholders: " + std::string(pattern));
            if (placeholder)
                arguments.push(name);
            part = placeholder ? &placeholderOf(*part, name == "%*") : &literalOf(*part, name);
        }
        if (part->handler)
            throw std::logic_error("key pattern added twice: " + std::string(pattern));
        part->handler = std::make_unique<Handler>(std::move(handler));
    }

    // The handler of the key, its arguments in `arguments`; null when no pattern matches. A part that is
    // written out in one pattern is never taken by another pattern's placeholder.
    const Handler* find(std::string_view key, KeyArguments& arguments) const
    {
        const Part* part = &_root;
        std::string_view rest = key;
        bool more = true;
        while (more)
        {
            const std::string_view whole = rest;
            const std::size_t point = rest.find('.');
            more = point != std::string_view::npos;
            const std::string_view name = rest.substr(0, point);
            rest = more ? rest.substr(point + 1) : std::string_view();
            const auto literal = part->literals.find(name);
            if (literal != part->literals.end())
            {
                part = literal->second.get();
            }
            else if (part->rest)
            {
                arguments.push(whole);
                return part->rest->handler.get();
            }
            else if (part->one)
            {
                arguments.push(name);
                part = part->one.get();
            }
            else
            {
                return nullptr;
            }
        }
        return part->handler.get();
    }

  private:
    struct Part
    {
        std::string name; // what the parent's map refers to
        std::unordered_map<std::string_view, std::unique_ptr<Part>> literals;
        std::unique_ptr<Part> one;  // "%s", "%d"
        std::unique_ptr<Part> rest; // "%*"
        std::unique_ptr<Handler> handler;
    };

    static std::string_view cut(std::string_view& rest)
    {
        const std::size_t point = rest.find('.');
        const std::string_view name = rest.substr(0, point);
        rest = point == std::string_view::npos ? std::string_view() : rest.substr(point + 1);
        return name;
    }

    static Part& placeholderOf(Part& parent, bool takesRest)
    {
        std::unique_ptr<Part>& child = takesRest ? parent.rest : parent.one;
        if (!child)
            child = std::make_unique<Part>();
        return *child;
    }

    static Part& literalOf(Part& parent, std::string_view name)
    {
        const auto found = parent.literals.find(name);
        if (found != parent.literals.end())
            return *found->second;
        auto child = std::make_unique<Part>();
        child->name = name;
        const std::string_view stable = child->name;
        return *parent.literals.emplace(stable, std::move(child)).first->second;
    }

    Part _root;
};

} // namespace simulator

#endif
