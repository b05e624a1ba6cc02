// Instance names as text: "Class.k1=v1,k2=\"v2\"".
#include <cimple/Features.h>
#include <cimple/Ref.h>
#include <cimple/boolean.h>
#include <cimple/integer.h>
#include <cimple/real.h>
#include <string>

CIMPLE_NAMESPACE_BEGIN

namespace
{
void append_quoted(String& path, const char* text)
{
    path.append('"');
    for (; *text != '\0'; text++)
    {
        if (*text == '"' || *text == '\\')
            path.append('\\');
        path.append(*text);
    }
    path.append('"');
}

template <class T>
void append_value(String& path, const T& x)
{
    path.append(std::to_string(x).c_str());
}
void append_value(String& path, const boolean& x)
{
    path.append(x ? "true" : "false");
}
void append_value(String& path, const char16& x)
{
    path.append(std::to_string(x.code()).c_str());
}
void append_value(String& path, const String& x)
{
    append_quoted(path, x.c_str());
}
void append_value(String& path, const Datetime& x)
{
    append_quoted(path, x.ascii().c_str());
}

int append_property(String& path, const Instance* instance, const Meta_Property* mp)
{
    const void* const field = __property_of(instance, mp);
    if (mp->subscript != 0 || null_of(mp, field) != 0)
        return -1;
    switch (mp->type)
    {
#define CIMPLE_APPEND(T, CODE)                                                                               \
    case CODE:                                                                                               \
        append_value(path, *static_cast<const T*>(field));                                                   \
        return 0;
        CIMPLE_FOR_EACH_TYPE(CIMPLE_APPEND)
#undef CIMPLE_APPEND
    default:
        return -1;
    }
}

int append_reference(String& path, const Instance* instance, const Meta_Reference* mr)
{
    String nested;
    if (mr->subscript != 0 || !__ref_of(instance, mr) ||
        instance_to_model_path(__ref_of(instance, mr), nested) != 0)
        return -1;
    append_quoted(path, nested.c_str());
    return 0;
}

int parse_value(const char* str, boolean& x)
{
    return str_to_boolean(str, x);
}
int parse_value(const char* str, uint8& x)
{
    return str_to_uint8(str, x);
}
int parse_value(const char* str, sint8& x)
{
    return str_to_sint8(str, x);
}
int parse_value(const char* str, uint16& x)
{
    return str_to_uint16(str, x);
}
int parse_value(const char* str, sint16& x)
{
    return str_to_sint16(str, x);
}
int parse_value(const char* str, uint32& x)
{
    return str_to_uint32(str, x);
}
int parse_value(const char* str, sint32& x)
{
    return str_to_sint32(str, x);
}
int parse_value(const char* str, uint64& x)
{
    return str_to_uint64(str, x);
}
int parse_value(const char* str, sint64& x)
{
    return str_to_sint64(str, x);
}
int parse_value(const char* str, real32& x)
{
    return str_to_real32(str, x);
}
int parse_value(const char* str, real64& x)
{
    return str_to_real64(str, x);
}
int parse_value(const char* str, Datetime& x)
{
    return x.set(str) ? 0 : -1;
}

int parse_value(const char* str, String& x)
{
    x = str;
    return 0;
}

int parse_value(const char* str, char16& x)
{
    uint16 code = 0;
    if (str_to_uint16(str, code) != 0)
        return -1;
    x = code;
    return 0;
}

template <class T>
int put(void* field, bool is_array, const char* str)
{
    T x = T();
    if (parse_value(str, x) != 0)
        return -1;
    if (is_array)
    {
        auto& property = *static_cast<Property<Array<T>>*>(field);
        property.value.append(x);
        property.null = 0;
    }
    else
        static_cast<Property<T>*>(field)->set(x);
    return 0;
}

// Reads the parts of a path one after the other.
class Path_Reader
{
  public:
    explicit Path_Reader(const char* path) : _next(path) {}

    bool at_end() const { return *_next == '\0'; }

    bool skip(char c)
    {
        if (*_next != c)
            return false;
        _next++;
        return true;
    }

    // Everything up to one of the delimiters or the end.
    String text_until(const char* delims)
    {
        const size_t n = strcspn(_next, delims);
        String text(_next, n);
        _next += n;
        return text;
    }

    // A quoted text without its quotes. False if the closing quote is missing.
    bool quoted(String& text)
    {
        if (!skip('"'))
            return false;
        for (; *_next != '"'; _next++)
        {
            if (*_next == '\\')
                _next++;
            if (*_next == '\0')
                return false;
            text.append(*_next);
        }
        return skip('"');
    }

  private:
    const char* _next;
};

bool put_key(Instance* instance, const Meta_Class* source, Path_Reader& reader)
{
    const String name = reader.text_until("=");
    const Meta_Feature* const mf = find_feature(instance->meta_class, name.c_str());
    if (!reader.skip('=') || !mf || !is_key(mf))
        return false;

    String text;
    if (const Meta_Property* mp = as_property(mf))
    {
        const bool is_string = mp->type == STRING;
        if (mp->subscript != 0 ||
            !(is_string || mp->type == BOOLEAN || is_integer(static_cast<Type>(mp->type))))
            return false;
        if (is_string && !reader.quoted(text))
            return false;
        if (!is_string)
            text = reader.text_until(",");
        return null_of(mp, __property_of(instance, mp)) != 0 && // not a second value for it
               __put_property_from_str(instance, mp, text.c_str()) == 0;
    }
    const Meta_Reference* const mr = as_reference(mf);
    if (!mr || mr->subscript != 0 || __ref_of(instance, mr) || !reader.quoted(text))
        return false;
    Ref<Instance> value(model_path_to_instance(source, text.c_str()));
    if (!value || !is_subclass(mr->meta_class, value->meta_class))
        return false;
    __ref_of(instance, mr) = value.steal();
    return true;
}
} // namespace

int instance_to_model_path(const Instance* instance, String& path)
{
    String text(instance->meta_class->name);
    char separator = '.';
    for (const Meta_Feature* mf : features_of(instance->meta_class))
    {
        if (!is_key(mf))
            continue;
        text.append(separator);
        text.append(mf->name);
        text.append('=');
        const Meta_Property* const mp = as_property(mf);
        if ((mp ? append_property(text, instance, mp)
                : append_reference(text, instance, known_reference(mf))) != 0)
            return -1;
        separator = ',';
    }
    if (separator == '.')
        return -1;
    path = text;
    return 0;
}

Instance* model_path_to_instance(const Meta_Class* source, const char* path)
{
    Path_Reader reader(path);
    const Meta_Class* const mc = find_meta_class(source, reader.text_until(".").c_str());
    if (!mc || !reader.skip('.'))
        return nullptr;

    Ref<Instance> instance(create(mc));
    nullify_properties(instance.ptr());
    size_t n = 0;
    do
    {
        if (!put_key(instance.ptr(), source, reader))
            return nullptr;
        n++;
    } while (reader.skip(','));
    return reader.at_end() && n == mc->num_keys ? instance.steal() : nullptr;
}

int __put_property_from_str(Instance* instance, const Meta_Property* mp, const char* str)
{
    void* const field = __property_of(instance, mp);
    switch (mp->type)
    {
#define CIMPLE_PUT(T, CODE)                                                                                  \
    case CODE:                                                                                               \
        return put<T>(field, mp->subscript != 0, str);
        CIMPLE_FOR_EACH_TYPE(CIMPLE_PUT)
#undef CIMPLE_PUT
    default:
        return -1;
    }
}

CIMPLE_NAMESPACE_END
