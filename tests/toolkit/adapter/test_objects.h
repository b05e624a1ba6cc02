// The CMPI objects of the test broker and the tracking of their life times.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "test_values.h"

namespace test_broker
{

class Journal;

// What every object of the broker is besides its CMPI face.
struct Object
{
    explicit Object(Journal& journal);
    virtual ~Object();
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    Journal& journal;
    const std::thread::id owner = std::this_thread::get_id();
    bool cloned = false;
};

// What a broker remembers of its objects and of broken rules. Shared by all threads.
class Journal
{
  public:
    ~Journal();

    void violation(const std::string& text);
    std::vector<std::string> violations() const;

    // Objects made by clone and not yet released.
    size_t clonesAlive() const;
    // Objects of any kind that exist now.
    size_t objectsAlive() const { return _alive; }

    void adoptClone(Object* object);
    bool releaseClone(Object* object);
    void count(bool born) { born ? ++_alive : --_alive; }

  private:
    mutable std::mutex _mutex;
    std::vector<std::string> _violations;
    std::set<Object*> _clones;
    std::atomic<size_t> _alive{0};
};

// The objects of one MI call or of one attached thread; all of them die with it. Sessions of a thread nest.
class Session
{
  public:
    explicit Session(const CMPIContext* context = nullptr);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    static Session* current();

    // What up-calls of this session have to pass.
    const CMPIContext* context() const { return _context; }
    void setContext(const CMPIContext* context) { _context = context; }
    void add(std::unique_ptr<Object> object);
    // Destroys an object of this session before its time; false if it is not one.
    bool release(Object* object);
    // How many there are, and the end of all that were added since.
    size_t level() const { return _objects.size(); }
    void endSince(size_t level) { _objects.resize(level); }

  private:
    const CMPIContext* _context;
    Session* _outer;
    std::vector<std::unique_ptr<Object>> _objects;
};

// Objects that the running call returns to its caller, made in the current session. Null when there is none,
// which is recorded as a violation.
CMPIString* newString(Journal& journal, const std::string& text);
CMPIDateTime* newDateTime(Journal& journal, const std::string& text);
CMPIObjectPath* newPath(Journal& journal, const Path& path);
CMPIInstance* newInstance(Journal& journal, const Inst& inst);
CMPIArray* newArray(Journal& journal, const Value& array);
CMPIArgs* newArgs(Journal& journal, const std::vector<Named>& args);
CMPIEnumeration* newEnumeration(Journal& journal, const std::vector<Value>& items);
CMPIContext* newContext(Journal& journal, const std::vector<Named>& entries);
// A value as a getter hands it out.
CMPIData dataOf(Journal& journal, const Value& value);

const Path& pathOf(const CMPIObjectPath* path);
const Inst& instOf(const CMPIInstance* inst);
const std::vector<Named>& argsOf(const CMPIArgs* args);
const std::vector<Named>& entriesOf(const CMPIContext* context);
// Text of a status message, empty for none.
std::string textOf(const CMPIString* string);

// Takes a context out of the current session, so that it lives until `endContext` (a prepared thread
// context).
CMPIContext* detachedContext(Journal& journal, const std::vector<Named>& entries);
void endContext(const CMPIContext* context);

} // namespace test_broker
