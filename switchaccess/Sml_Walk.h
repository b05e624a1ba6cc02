// The walk over elements that the attribute store names one after the other: the first by one key, each next
// one by a key that names its predecessor.
#ifndef SWITCHACCESS_SML_WALK_H
#define SWITCHACCESS_SML_WALK_H

#include "platform/xpl_sml.h"
#include "switchaccess/Switch_Text.h"
#include "switchaccess/fabric_walk.h"

#include <optional>
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
    // How a key is read: as a batch of one entry, which may lack a value at present, or by itself, where any
    // status but the end's is a failure.
    bool (*read)(xpl_smlEntry& entry) = readInBatch;
    // What names an element in the next key, and changes the element where the walk shows it so; null: the
    // element as it was read.
    std::string (*nameOf)(std::string& element) = nullptr;

    static bool readInBatch(xpl_smlEntry& entry);
    static bool readAlone(xpl_smlEntry& entry);
};

// Each element is a const std::string&. An empty one ends the walk, and so does the end status of the first
// key. A key that cannot be read is thrown as a failure in the caller's name.
//     for (const std::string& listener : Sml_Walk(kListeners, {kSource, "load"}))
class Sml_Walk : public Walk<Sml_Walk>
{
  public:
    Sml_Walk(const Walk_Keys& keys, const Caller& caller, const char* owner = nullptr)
        : _keys(keys), _caller(caller), _owner(owner)
    {
    }
    // A walk whose first element is known from elsewhere: its first key is not read.
    static Sml_Walk
    from(std::string first, const Walk_Keys& keys, const Caller& caller, const char* owner = nullptr);

    void start();
    void advance();
    bool atEnd() const { return _element.empty(); }
    const std::string& current() const { return _element; }

  private:
    void read(const char* format, const char* previous, const Failure_Text& failed);
    void arrive(std::string element);

    Walk_Keys _keys;
    Caller _caller;
    const char* _owner;
    std::optional<std::string> _known;
    std::string _element;
    std::string _name; // of the element in the next key
};

} // namespace cimple

#endif
