// The CMPI objects of the test broker and the tracking of their life times.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "test_values.h"

namespace test_broker
{

// What a broker remembers of its objects and of broken rules. Shared by all threads.
class Journal
{
  public:
    void violation(const std::string& text);
    std::vector<std::string> violations() const;

    // Objects of any kind that exist now.
    size_t objectsAlive() const { return _alive; }

    void count(bool born) { born ? ++_alive : --_alive; }

  private:
    mutable std::mutex _mutex;
    std::vector<std::string> _violations;
    std::atomic<size_t> _alive{0};
};

// What every object of the broker is besides its CMPI face.
struct Object
{
    explicit Object(Journal& j) : journal(j) { journal.count(true); }
    virtual ~Object() { journal.count(false); }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    Journal& journal;
    const std::thread::id owner = std::this_thread::get_id();
    bool movable = false; // used on another thread than the one that made it
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
    void add(std::unique_ptr<Object> object) { _objects.push_back(std::move(object)); }
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

struct Items
{
    std::vector<Value> values;
    size_t next = 0;
};

// The function table and the content of each kind of object.
const CMPIStringFT* kindOf(const CMPIString*, std::string*);
const CMPIDateTimeFT* kindOf(const CMPIDateTime*, std::string*);
const CMPIObjectPathFT* kindOf(const CMPIObjectPath*, Path*);
const CMPIInstanceFT* kindOf(const CMPIInstance*, Inst*);
const CMPIArrayFT* kindOf(const CMPIArray*, Value*);
const CMPIArgsFT* kindOf(const CMPIArgs*, std::vector<Named>*);
const CMPIEnumerationFT* kindOf(const CMPIEnumeration*, Items*);
const CMPIContextFT* kindOf(const CMPIContext*, std::vector<Named>*);

template <class Edt, class Content, class Table>
Content contentOfKind(const Table* (*kind)(const Edt*, Content*));
template <class Edt>
using Content = decltype(contentOfKind<Edt>(&kindOf));

// An object is its CMPI face and its content in one.
template <class Edt>
struct Made : Edt, Object
{
    Made(Journal& j, Content<Edt> c) : Edt(), Object(j), content(std::move(c))
    {
        this->hdl = &content;
        this->ft = kindOf(this, &content);
    }
    Content<Edt> content;
};

// The broker's side of an object that a provider passed in. Objects stay on the thread that made them.
template <class Edt>
Made<Edt>& self(const Edt* edt)
{
    auto& object = *static_cast<Made<Edt>*>(const_cast<Edt*>(edt));
    if (!object.movable && object.owner != std::this_thread::get_id())
        object.journal.violation("an object was used on a thread that did not make it");
    return object;
}

template <class Edt>
Content<Edt>& contentOf(const Edt* edt)
{
    return self(edt).content;
}

// An object that the running call returns to its caller, made in the current session. Null when there is
// none, which is recorded as a violation.
template <class Edt>
Edt* make(Journal& journal, Content<Edt> content)
{
    if (Session* session = Session::current())
    {
        auto object = std::make_unique<Made<Edt>>(journal, std::move(content));
        Edt* edt = object.get();
        session->add(std::move(object));
        return edt;
    }
    journal.violation("an object was made outside of a call and of an attached thread");
    return nullptr;
}

inline CMPIStatus done(CMPIStatus* rc, CMPIrc code)
{
    const CMPIStatus status = {code, nullptr};
    if (rc)
        *rc = status;
    return status;
}

// A value as a getter hands it out.
CMPIData dataOf(Journal& journal, const Value& value);

// A broker with all tables of functions; `hdl` is to be set to the Broker.
CMPIBroker services();

// Text of a status message, empty for none.
std::string textOf(const CMPIString* string);

} // namespace test_broker
