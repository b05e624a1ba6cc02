// Numbers, names and lock ranks of the instance maps, made from maps.def.
#ifndef SUPPORT_PROVIDERENUM_H
#define SUPPORT_PROVIDERENUM_H

#include <cstddef>

namespace cimple
{

// One value per class that keeps an instance map, named <Class>_Idx; it names the map, its lock and its
// freshness in VRAX_Maps.
enum providerEnum_t
{
#define VRAX_MAP(number, cls, rank) cls##_Idx = number,
#define VRAX_NO_MAP(number) No_Class_Idx = number,
#include "support/maps.def"
};

constexpr std::size_t kMapCount = 105;

// The class whose instances the map holds; "(none)" for the number without a class.
const char* mapClassName(providerEnum_t map);

constexpr int kAssociationRank = 0;

// The map's place in the lock order (see maps.def).
constexpr int mapRank(providerEnum_t map)
{
    switch (map)
    {
#define VRAX_MAP(number, cls, rank)                                                                          \
    case cls##_Idx:                                                                                          \
        return rank;
#include "support/maps.def"
    case No_Class_Idx:
        break;
    }
    return kAssociationRank;
}

// Map_Index<CLASS>::value is the number of the class' map.
template <class CLASS>
struct Map_Index;

#define VRAX_MAP(number, cls, rank)                                                                          \
    class cls;                                                                                               \
    template <>                                                                                              \
    struct Map_Index<cls>                                                                                    \
    {                                                                                                        \
        static constexpr providerEnum_t value = cls##_Idx;                                                   \
    };
#include "support/maps.def"

} // namespace cimple

#endif
