// What the conversion of a class's instances needs of its description, worked out once for all of them.
#ifndef TOOLKIT_ADAPTER_CLASS_SHAPE_H
#define TOOLKIT_ADAPTER_CLASS_SHAPE_H

#include "server_schema.h"
#include <cimple/cimple.h>

#include <deque>
#include <vector>

namespace cimple_cmpi
{

// A property or a reference.
struct Feature_Shape
{
    const cimple::Meta_Feature* feature;
    size_t place;   // among all features of the class
    size_t valueAt; // in the instance, in bytes
    size_t nullAt;  // of the null flag; 0 for a reference, which is null without an object
    bool isKey;
    bool isPlainText; // a string, not in an array

    bool isNull(const cimple::Instance* instance) const
    {
        return nullAt != 0 && *(reinterpret_cast<const cimple::uint8*>(instance) + nullAt) != 0;
    }
    // The text of a string that is not null.
    const char* text(const cimple::Instance* instance) const
    {
        const char* const value = reinterpret_cast<const char*>(instance) + valueAt;
        return reinterpret_cast<const cimple::String*>(value)->c_str();
    }
};

struct Class_Shape
{
    explicit Class_Shape(const cimple::Meta_Class* metaClass);

    const cimple::Meta_Class* metaClass;
    std::vector<Feature_Shape> features;
    std::vector<Feature_Shape> keys;      // of these, in the same order
    const Prefilled* prefilled = nullptr; // null until an instance was made
};

// The classes that one request has to do with: few.
class Class_Shapes
{
  public:
    Class_Shape& of(const cimple::Meta_Class* metaClass);

  private:
    std::deque<Class_Shape> _known;
};

} // namespace cimple_cmpi

#endif
