// The walk over elements that the attribute store names one after the other: the first by one key, each next
// one by a key that names its predecessor.
#ifndef SWITCHACCESS_SML_WALK_H
#define SWITCHACCESS_SML_WALK_H

#include "platform/xpl_sml.h"
#include "support/VRAX_Except.h"
#include "switchaccess/fabric_walk.h"

#include <string>

namespace cimple
{

// The keys of a walk, what is said when one cannot be read, and the status of a next key behind the last
// element. The keys are formats of support/substitute.h: their argument is the element's owner, if any; that
// of `next` is followed by the previous element.
struct Walk_Keys
{
    const char* first;
    Failure_Text firstFailed;
    const char* next;
    Failure_Text nextFailed;
    std::int32_t endStatus;
};

// Each element is a const std::string&. An empty name ends the walk as well, and so does the end status of
// the first key. A key that cannot be read is thrown as a critical VRAX_Except in the name of `source` and
// `function`, at the caller's line.
//     for (const std::string& listener : Sml_Walk(kListeners, {kSource, "load"}))
class Sml_Walk : public Walk<Sml_Walk>
{
  public:
    struct Caller
    {
        const char* source;
        const char* function;
        int line = __builtin_LINE();
    };

    Sml_Walk(const Walk_Keys& keys, const Caller& caller, const char* owner = nullptr)
        : _keys(keys), _caller(caller), _owner(owner)
    {
    }

    void start();
    void advance();
    bool atEnd() const { return _name.empty(); }
    const std::string& current() const { return _name; }

  private:
    void read(const char* format, const char* previous, const Failure_Text& failed);

    const Walk_Keys& _keys;
    Caller _caller;
    const char* _owner;
    std::string _name;
};

} // namespace cimple

#endif
