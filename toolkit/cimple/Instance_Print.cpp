// The diagnostic text of instances.
#include <cimple/Features.h>
#include <cimple/Value_Ops.h>

CIMPLE_NAMESPACE_BEGIN

namespace
{
enum class Extent
{
    kAll,
    kKeys,
    kNested // keys and embedded instances
};

bool shown(const Meta_Feature* mf, Extent extent)
{
    if (extent == Extent::kAll || is_key(mf))
        return true;
    return extent == Extent::kNested &&
           (mf->flags & (CIMPLE_FLAG_EMBEDDED_INSTANCE | CIMPLE_FLAG_EMBEDDED_OBJECT)) != 0;
}

class Printer
{
  public:
    explicit Printer(FILE* os) : _os(os) {}

    void print(const Instance* instance, Extent extent, int level) const
    {
        fprintf(_os, "%s\n", instance->meta_class->name);
        line(level, "{\n");
        if (!instance->__name_space.empty())
        {
            line(level + 1, "string __name_space = ");
            fprint_string(_os, instance->__name_space.c_str());
            fputs(";\n", _os);
        }
        for (const Meta_Feature* mf : features_of(instance->meta_class))
        {
            if (!shown(mf, extent))
                continue;
            if (const Meta_Property* mp = as_property(mf))
                print_property(instance, mp, level + 1);
            else if (const Meta_Reference* mr = as_reference(mf))
                print_reference(
                    instance, mr, extent == Extent::kKeys ? Extent::kKeys : Extent::kNested, level + 1);
        }
        line(level, "}");
    }

  private:
    void line(int level, const char* text) const { fprintf(_os, "%*s%s", 4 * level, "", text); }

    void print_property(const Instance* instance, const Meta_Property* mp, int level) const
    {
        const void* const field = __property_of(instance, mp);
        line(level, type_name[mp->type]);
        fprintf(_os, " %s = ", mp->name);
        if (null_of(mp, field) != 0)
            fputs("NULL", _os);
        else
            value_ops(mp).print(_os, field);
        fputs(";\n", _os);
    }

    void print_nested(const Instance* instance, Extent extent, int level) const
    {
        if (instance)
            print(instance, extent, level);
        else
            fputs("NULL", _os);
    }

    void print_reference(const Instance* instance, const Meta_Reference* mr, Extent extent, int level) const
    {
        line(level, mr->meta_class->name);
        fprintf(_os, " %s = ", mr->name);
        if (mr->subscript == 0)
            print_nested(__ref_of(instance, mr), extent, level);
        else if (__array_ref_of(instance, mr).null != 0)
            fputs("NULL", _os);
        else
        {
            const Array_Instance& elements = __array_ref_of(instance, mr).value;
            fputs("{", _os);
            for (size_t i = 0; i < elements.size(); i++)
            {
                fputs(i > 0 ? ", " : " ", _os);
                print_nested(elements[i], extent, level);
            }
            fputs(elements.size() > 0 ? " }" : "}", _os);
        }
        fputs(";\n", _os);
    }

    FILE* _os;
};
} // namespace

void print(const Instance* instance, bool keys_only)
{
    fprint(stdout, instance, keys_only);
}

void fprint(FILE* os, const Instance* instance, bool keys_only)
{
    Printer(os).print(instance, keys_only ? Extent::kKeys : Extent::kAll, 0);
    fputs("\n", os);
}

CIMPLE_NAMESPACE_END
