// The CMPI objects of the test broker and the tracking of their life times.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "test_values.h"

namespace test_broker
{

// What a broker remembers of its objects and of broken rules. Shared by all threads.
class Journal
{
  public:
    void violation(const std::string& text);
    std::vector<std::string> violations() const;

    std::atomic<size_t> objectsAlive{0};

  private:
    mutable std::mutex _mutex;
    std::vector<std::string> _violations;
};

// Counts those who keep a pointer to an object: the object must not be released before they are gone.
typedef std::shared_ptr<int> Holds;
class Hold
{
  public:
    explicit Hold(Holds holds) : _holds(std::move(holds)) { ++*_holds; }
    Hold(Hold&&) = default;
    ~Hold()
    {
        if (_holds)
            --*_holds;
    }

  private:
    Holds _holds;
};

// What every object of the broker is besides its CMPI face.
struct Object
{
    explicit Object(Journal& j) : journal(j) { ++journal.objectsAlive; }
    virtual ~Object() { --journal.objectsAlive; }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    Journal& journal;
    const std::thread::id owner = std::this_thread::get_id();
    bool movable = false; // used on another thread than the one that made it
    const Holds holds = std::make_shared<int>(0);
    std::vector<Hold> parts;                      // objects that were put into this one
    std::optional<std::vector<std::string>> kept; // the filter of an instance
};

// The objects of one MI call or of one attached thread; all of them die with it. Sessions of a thread nest.
class Session
{
  public:
    explicit Session(const CMPIContext* c = nullptr);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    static Session* current();
    // Destroys an object before its time; false if it is not of this session.
    bool release(Object* object);

    const CMPIContext* context; // what up-calls of this session have to pass
    std::vector<std::unique_ptr<Object>> objects;

  private:
    Session* _outer;
};

// The function table and the content of each kind of object.
const CMPIStringFT* kindOf(const CMPIString*, std::string*);
const CMPIDateTimeFT* kindOf(const CMPIDateTime*, std::string*);
const CMPIObjectPathFT* kindOf(const CMPIObjectPath*, Path*);
const CMPIInstanceFT* kindOf(const CMPIInstance*, Inst*);
const CMPIArrayFT* kindOf(const CMPIArray*, Value*);
const CMPIArgsFT* kindOf(const CMPIArgs*, std::vector<Named>*);
const CMPIEnumerationFT* kindOf(const CMPIEnumeration*, std::vector<Value>*); // what is left of it
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
        session->objects.push_back(std::move(object));
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

// The object that a value argument points to; null if it is a scalar.
Object* objectIn(const CMPIValue* value, CMPIType type);

// A broker with all tables of functions; `hdl` is to be set to the Broker.
CMPIBroker services();

} // namespace test_broker
