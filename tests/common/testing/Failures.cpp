// Makes what a load does with its instances fail on demand.
#include "tests/common/testing/Failures.h"

#include <cimple/cimple.h>

#include <new>
#include <string>

using cimple::Instance;
using cimple::Instance_Map_Base;
using cimple::Meta_Class;

namespace
{

// One step of a load that can fail.
struct Step
{
    std::string failingClass;
    int successesLeft = 0;

    void arm(const char* className, int successes)
    {
        failingClass = className;
        successesLeft = successes;
    }
    void disarm() { failingClass.clear(); }
    bool fails(const Meta_Class* metaClass)
    {
        return failingClass == metaClass->name && successesLeft-- <= 0;
    }
};

Step creation;
Create_Failures::Kind creationFailure;
Step keyCheck;
Step insertion;

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

Instance* CREATE(__wrap)(const Meta_Class* metaClass, bool defaults)
{
    if (!creation.fails(metaClass))
        return CREATE(__real)(metaClass, defaults);
    if (creationFailure == Create_Failures::Kind::Throws)
        throw std::bad_alloc();
    return nullptr;
}

bool CHECK_KEYS(__wrap)(const Instance* instance)
{
    return !keyCheck.fails(instance->meta_class) && CHECK_KEYS(__real)(instance);
}

std::size_t INSERT(__wrap)(Instance_Map_Base* map, Instance* instance)
{
    return insertion.fails(instance->meta_class) ? static_cast<std::size_t>(-1)
                                                 : INSERT(__real)(map, instance);
}

Create_Failures::Create_Failures(const char* className, int successes, Kind kind)
{
    creationFailure = kind;
    creation.arm(className, successes);
}
Create_Failures::~Create_Failures()
{
    creation.disarm();
}

Key_Failures::Key_Failures(const char* className, int successes)
{
    keyCheck.arm(className, successes);
}
Key_Failures::~Key_Failures()
{
    keyCheck.disarm();
}

Insert_Failures::Insert_Failures(const char* className, int successes)
{
    insertion.arm(className, successes);
}
Insert_Failures::~Insert_Failures()
{
    insertion.disarm();
}
