// The CMPI objects of the test broker and the tracking of their life times.
#ifndef TESTS_TOOLKIT_ADAPTER_TEST_OBJECTS_H
#define TESTS_TOOLKIT_ADAPTER_TEST_OBJECTS_H

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

// Kept by those who keep a pointer to an object: it must not be released before they are gone.
typedef std::shared_ptr<const void> Hold;

// What every object of the broker is besides its CMPI face, whose `hdl` points to it.
struct Object
{
    explicit Object(Journal& j) : journal(j) { ++journal.objectsAlive; }
    virtual ~Object() { --journal.objectsAlive; }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    std::string text;         // of a string or a datetime; the class of a path or an instance
    std::string ns;           // of a path
    std::string path;         // of an instance
    std::vector<Named> items; // keys, properties, arguments, entries; without names elements, what is left
    CMPIType elements = CMPI_null; // the type of an array's elements

    Journal& journal;
    const std::thread::id owner = std::this_thread::get_id();
    bool movable = false; // used on another thread than the one that made it
    const Hold holds = std::make_shared<int>();
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

// The function table of each kind of object. Its content is read from the text of the value, but for a
// string from its characters, and for arguments, a context and an enumeration from a list.
const CMPIStringFT* read(CMPIString*, Object&, const std::string& text);
const CMPIDateTimeFT* read(CMPIDateTime*, Object&, const std::string& text);
const CMPIObjectPathFT* read(CMPIObjectPath*, Object&, const std::string& text);
const CMPIInstanceFT* read(CMPIInstance*, Object&, const std::string& text);
const CMPIArrayFT* read(CMPIArray*, Object&, const std::string& text);
const CMPIArgsFT* read(CMPIArgs*, Object&, const std::string& text);
const CMPIEnumerationFT* read(CMPIEnumeration*, Object&, const std::string& text);
const CMPIContextFT* read(CMPIContext*, Object&, const std::string& text);

std::string textOf(const CMPIObjectPath* path);
std::string textOf(const CMPIInstance* inst);

template <class Edt>
struct Made : Edt, Object
{
    Made(Journal& j, const std::string& content) : Edt(), Object(j)
    {
        this->hdl = static_cast<Object*>(this);
        this->ft = read(static_cast<Edt*>(this), *this, content);
    }
};

// The broker's side of an object that a provider passed in. Objects stay on the thread that made them.
template <class Edt>
Object& self(const Edt* edt)
{
    const void* const hdl = edt->hdl; // not const in all kinds
    Object& object = *static_cast<Object*>(const_cast<void*>(hdl));
    if (!object.movable && object.owner != std::this_thread::get_id())
        object.journal.violation("an object was used on a thread that did not make it");
    return object;
}

// An object that the running call returns to its caller, made in the current session. Null when there is
// none, which is recorded as a violation.
template <class Edt>
Edt* make(Journal& journal, const std::string& content)
{
    if (Session* session = Session::current())
    {
        auto object = std::make_unique<Made<Edt>>(journal, content);
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
CMPIData dataOf(Journal& journal, const std::string& value);

// The value of an argument of a CMPI call, with the object that it points to; null if it is a scalar.
std::pair<std::string, Object*> valueOf(const CMPIValue* value, CMPIType type);

// A broker with all tables of functions; `hdl` is to be set to the Broker.
CMPIBroker services();

} // namespace test_broker

#endif
