// Makes what a load does with its instances fail on demand.
#include "tests/common/testing/failures.h"

#include "support/VRAX_Maps.h"

#include <cimple/cimple.h>

#include <cstring>
#include <new>
#include <string>

using cimple::Instance;
using cimple::Instance_Map_Base;
using cimple::Meta_Class;

struct Step_Failures::Step
{
    std::string failingClass;
    int successesLeft = 0;
    bool struck = false;

    bool fails(const Meta_Class* metaClass)
    {
        if (failingClass != metaClass->name || successesLeft-- > 0)
            return false;
        struck = true;
        return true;
    }

    static Step creation;
    static Step keyCheck;
    static Step insertion;
};

Step_Failures::Step Step_Failures::Step::creation;
Step_Failures::Step Step_Failures::Step::keyCheck;
Step_Failures::Step Step_Failures::Step::insertion;

namespace
{

Create_Failures::Kind creationFailure;

// For the wrappers, which belong to no class.
struct Steps : Step_Failures
{
    static bool creationFails(const Meta_Class* metaClass) { return Step::creation.fails(metaClass); }
    static bool keyCheckFails(const Meta_Class* metaClass) { return Step::keyCheck.fails(metaClass); }
    static bool insertionFails(const Meta_Class* metaClass) { return Step::insertion.fails(metaClass); }
};

} // namespace

// What the linker puts in the place of the three functions, and the originals.
#define CREATE(prefix) prefix##__ZN6cimple6createEPKNS_10Meta_ClassEb
#define CHECK_KEYS(prefix) prefix##__ZN6cimple17checkInstanceKeysEPKNS_8InstanceE
#define INSERT(prefix) prefix##__ZN6cimple17Instance_Map_Base7_insertEPNS_8InstanceE

extern "C"
{
    Instance* CREATE(__real)(const Meta_Class*, bool);
    Instance* CREATE(__wrap)(const Meta_Class*, bool);
    bool CHECK_KEYS(__real)(const Instance*);
    bool CHECK_KEYS(__wrap)(const Instance*);
    std::size_t INSERT(__real)(Instance_Map_Base*, Instance*);
    std::size_t INSERT(__wrap)(Instance_Map_Base*, Instance*);
}

// Loads create with the schema's defaults; models of requests and clones are made without.
Instance* CREATE(__wrap)(const Meta_Class* metaClass, bool defaults)
{
    if (!defaults || !Steps::creationFails(metaClass))
        return CREATE(__real)(metaClass, defaults);
    if (creationFailure == Create_Failures::Kind::Throws)
        throw std::bad_alloc();
    return nullptr;
}

bool CHECK_KEYS(__wrap)(const Instance* instance)
{
    return !Steps::keyCheckFails(instance->meta_class) && CHECK_KEYS(__real)(instance);
}

std::size_t INSERT(__wrap)(Instance_Map_Base* map, Instance* instance)
{
    return Steps::insertionFails(instance->meta_class) ? static_cast<std::size_t>(-1)
                                                       : INSERT(__real)(map, instance);
}

Step_Failures::Step_Failures(Step& step, const char* className, int successes) : _step(step)
{
    _step.failingClass = className;
    _step.successesLeft = successes;
    _step.struck = false;
}
Step_Failures::~Step_Failures()
{
    _step.failingClass.clear();
}
bool Step_Failures::struck() const
{
    return _step.struck;
}

Create_Failures::Create_Failures(const char* className, int successes, Kind kind)
    : Step_Failures(Step::creation, className, successes)
{
    creationFailure = kind;
}
Key_Failures::Key_Failures(const char* className, int successes)
    : Step_Failures(Step::keyCheck, className, successes)
{
}
Insert_Failures::Insert_Failures(const char* className, int successes)
    : Step_Failures(Step::insertion, className, successes)
{
}

namespace
{

void makeStale(const char* className)
{
    for (std::size_t i = 0; i < cimple::kMapCount; ++i)
    {
        const auto map = static_cast<cimple::providerEnum_t>(i);
        if (className == nullptr || std::strcmp(cimple::mapClassName(map), className) == 0)
            cimple::VRAX_Maps::getInstance()->InstMapForceUnload(map);
    }
}

} // namespace

void makeMapsStale()
{
    makeStale(nullptr);
}
void makeMapStale(const char* className)
{
    makeStale(className);
}
