// Makes the creation of instances fail, for tests of loads.
#include "tests/common/testing/Create_Failures.h"

#include <cimple/cimple.h>

#include <new>
#include <string>

namespace
{

std::string failingClass;
int successesLeft = 0;
Create_Failures::Kind failureKind;

} // namespace

// What the linker puts in the place of cimple::create(const Meta_Class*, bool), and the original.
extern "C" cimple::Instance* __real__ZN6cimple6createEPKNS_10Meta_ClassEb(const cimple::Meta_Class*, bool);
extern "C" cimple::Instance* __wrap__ZN6cimple6createEPKNS_10Meta_ClassEb(const cimple::Meta_Class* metaClass,
                                                                          bool defaults);

extern "C" cimple::Instance* __wrap__ZN6cimple6createEPKNS_10Meta_ClassEb(const cimple::Meta_Class* metaClass,
                                                                          bool defaults)
{
    if (failingClass == metaClass->name && successesLeft-- <= 0)
    {
        if (failureKind == Create_Failures::Kind::Throws)
            throw std::bad_alloc();
        return nullptr;
    }
    return __real__ZN6cimple6createEPKNS_10Meta_ClassEb(metaClass, defaults);
}

Create_Failures::Create_Failures(const char* className, int successes, Kind kind)
{
    failingClass = className;
    successesLeft = successes;
    failureKind = kind;
}

Create_Failures::~Create_Failures()
{
    failingClass.clear();
}
