// How the test broker's objects are made: an object is its CMPI face and its content in one. Internal.
#pragma once

#include "test_objects.h"

namespace test_broker
{

template <class Edt>
struct Made : Edt, Object
{
    explicit Made(Journal& j) : Edt(), Object(j) {}
};

struct StringObject : Made<CMPIString>
{
    using Made::Made;
    std::string text;
};
struct DateTimeObject : Made<CMPIDateTime>
{
    using Made::Made;
    std::string text;
};
struct PathObject : Made<CMPIObjectPath>
{
    using Made::Made;
    Path path;
};
struct InstanceObject : Made<CMPIInstance>
{
    using Made::Made;
    Inst inst;
};
struct ArrayObject : Made<CMPIArray>
{
    using Made::Made;
    Value value;
};
struct ArgsObject : Made<CMPIArgs>
{
    using Made::Made;
    std::vector<Named> args;
};
struct EnumerationObject : Made<CMPIEnumeration>
{
    using Made::Made;
    std::vector<Value> items;
    size_t next = 0;
};
struct ContextObject : Made<CMPIContext>
{
    using Made::Made;
    std::vector<Named> entries;
};

template <class Edt>
struct ObjectOf;
template <>
struct ObjectOf<CMPIString>
{
    using Type = StringObject;
};
template <>
struct ObjectOf<CMPIDateTime>
{
    using Type = DateTimeObject;
};
template <>
struct ObjectOf<CMPIObjectPath>
{
    using Type = PathObject;
};
template <>
struct ObjectOf<CMPIInstance>
{
    using Type = InstanceObject;
};
template <>
struct ObjectOf<CMPIArray>
{
    using Type = ArrayObject;
};
template <>
struct ObjectOf<CMPIArgs>
{
    using Type = ArgsObject;
};
template <>
struct ObjectOf<CMPIEnumeration>
{
    using Type = EnumerationObject;
};
template <>
struct ObjectOf<CMPIContext>
{
    using Type = ContextObject;
};

// The broker's side of an object that a provider passed in. Objects stay on the thread that made them; clones
// move.
template <class Edt>
typename ObjectOf<Edt>::Type& self(const Edt* edt)
{
    auto& object = *static_cast<typename ObjectOf<Edt>::Type*>(const_cast<Edt*>(edt));
    if (!object.cloned && object.owner != std::this_thread::get_id())
        object.journal.violation("an object was used on a thread that did not make it");
    return object;
}

inline CMPIStatus done(CMPIStatus* rc, CMPIrc code)
{
    CMPIStatus status = {code, nullptr};
    if (rc)
        *rc = status;
    return status;
}

template <class T>
T* track(std::unique_ptr<T> object)
{
    T* raw = object.get();
    Session* session = Session::current();
    if (!session)
    {
        raw->journal.violation("an object was made outside of a call and of an attached thread");
        return nullptr;
    }
    session->add(std::move(object));
    return raw;
}

template <class Edt>
CMPIStatus release(Edt* edt)
{
    auto& object = self<Edt>(edt);
    Journal& journal = object.journal;
    if (object.cloned ? !journal.releaseClone(&object)
                      : !(Session::current() && Session::current()->release(&object)))
        journal.violation("an object was released that is neither a clone nor of this call");
    return {CMPI_RC_OK, nullptr};
}

template <class Edt>
Edt* adopt(std::unique_ptr<typename ObjectOf<Edt>::Type> copy, CMPIStatus* rc)
{
    copy->cloned = true;
    done(rc, CMPI_RC_OK);
    auto* raw = copy.release();
    raw->journal.adoptClone(raw);
    return raw;
}

inline CMPIData lookUp(const std::vector<Named>& list, const char* name, Journal& journal, CMPIStatus* rc)
{
    const Value* value = find(list, name);
    done(rc, value ? CMPI_RC_OK : CMPI_RC_ERR_NO_SUCH_PROPERTY);
    return dataOf(journal, value ? *value : Value());
}

inline CMPIData
lookUpAt(const std::vector<Named>& list, CMPICount index, CMPIString** name, Journal& journal, CMPIStatus* rc)
{
    const bool there = index < list.size();
    done(rc, there ? CMPI_RC_OK : CMPI_RC_ERR_NO_SUCH_PROPERTY);
    if (!there)
        return dataOf(journal, Value());
    if (name)
        *name = newString(journal, list[index].first);
    return dataOf(journal, list[index].second);
}

inline CMPICount countOf(const std::vector<Named>& list, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(list.size());
}

} // namespace test_broker
