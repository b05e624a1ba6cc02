// The larger makers of demo instances.
#include "demo_objects.h"

using namespace cimple;

namespace demo
{
namespace
{
template <class T>
void fill(Property<T>& scalar, Property<Array<T>>& array, const T& x, const T& y)
{
    scalar.set(x);
    array.set(Array<T>::make(x, y));
}

Demo_Limits* limits(sint32 low, sint32 high)
{
    Demo_Limits* const limits = Demo_Limits::create(true);
    limits->Low.set(low);
    limits->High.set(high);
    return limits;
}
} // namespace

Ref<Demo_Everything> everything()
{
    Ref<Demo_Everything> x(Demo_Everything::create(true));
    x->__name_space = "root/demo";
    x->Key.set(12345678901ULL);
#define FILL(T, NAME, X, Y) fill<T>(x->The##NAME, x->The##NAME##Array, T(X), T(Y));
    DEMO_FOR_EACH_FEATURE(FILL)
#undef FILL
    x->Embedded = limits(-1, 1);
    x->EmbeddedArray.value.append(limits(-2, 2));
    x->EmbeddedArray.value.append(nullptr);
    x->Object = rack("r1").steal();
    x->ObjectArray.value.append(rack("r2").steal());
    x->ObjectArray.value.append(sensor(3).steal());
    return x;
}

std::string text_of(const Instance* instance, bool keys_only)
{
    char* text = nullptr;
    size_t size = 0;
    FILE* const os = open_memstream(&text, &size);
    fprint(os, instance, keys_only);
    fclose(os);
    const std::string result(text, size);
    free(text);
    return result;
}

} // namespace demo
