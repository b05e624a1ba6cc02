// Names of the instance maps.
#include "support/providerEnum.h"

namespace cimple
{

const char* mapClassName(providerEnum_t map)
{
    switch (map)
    {
#define VRAX_MAP(number, cls, rank)                                                                          \
    case cls##_Idx:                                                                                          \
        return #cls;
#include "support/maps.def"
    case No_Class_Idx:
        break;
    }
    return "(none)";
}

} // namespace cimple
