// Properties and references with their places.
#include "Class_Shape.h"

#include <cimple/Features.h>

namespace cimple_cmpi
{

using namespace cimple;

Class_Shape::Class_Shape(const Meta_Class* m) : metaClass(m)
{
    features.reserve(metaClass->num_meta_features);
    for (size_t i = 0; i < metaClass->num_meta_features; i++)
    {
        const Meta_Feature* const feature = metaClass->meta_features[i];
        Feature_Shape shape{feature, i, 0, 0, is_key(feature), false};
        if (const Meta_Property* mp = as_property(feature))
        {
            shape.valueAt = mp->offset;
            shape.nullAt = mp->offset + type_size_of(mp);
            shape.isPlainText = mp->type == STRING && mp->subscript == 0;
        }
        else if (!as_reference(feature))
            continue; // a method
        features.push_back(shape);
        if (shape.isKey)
            keys.push_back(shape);
    }
}

Class_Shape& Class_Shapes::of(const Meta_Class* metaClass)
{
    for (Class_Shape& shape : _known)
        if (shape.metaClass == metaClass)
            return shape;
    return _known.emplace_back(metaClass);
}

} // namespace cimple_cmpi
