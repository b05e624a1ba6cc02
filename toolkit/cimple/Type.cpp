// Tables of the CIM data types, and their diagnostic text.
#include <cimple/Type.h>

CIMPLE_NAMESPACE_BEGIN

#define CIMPLE_SIZE(T, CODE) sizeof(T),
size_t const type_size[] = {CIMPLE_FOR_EACH_TYPE(CIMPLE_SIZE)};
#undef CIMPLE_SIZE

// Strings and datetimes are one pointer in size either way.
#define CIMPLE_LITERAL_SIZE(T, CODE) (CODE == STRING || CODE == DATETIME) ? sizeof(const char*) : sizeof(T),
size_t const literal_type_size[] = {CIMPLE_FOR_EACH_TYPE(CIMPLE_LITERAL_SIZE)};
#undef CIMPLE_LITERAL_SIZE

const char* const type_name[] = {"boolean",
                                 "uint8",
                                 "sint8",
                                 "uint16",
                                 "sint16",
                                 "uint32",
                                 "sint32",
                                 "uint64",
                                 "sint64",
                                 "real32",
                                 "real64",
                                 "char16",
                                 "string",
                                 "datetime"};

static_assert(CIMPLE_ARRAY_SIZE(type_name) == DATETIME + 1, "one name a type");

int type_name_to_type(const char* name, Type& type)
{
    for (size_t i = 0; i < CIMPLE_ARRAY_SIZE(type_name); i++)
    {
        if (eqi(type_name[i], name))
        {
            type = static_cast<Type>(i);
            return 0;
        }
    }
    return -1;
}

void fprint_string(FILE* os, const char* text)
{
    fputc('"', os);
    for (; *text != '\0'; text++)
    {
        const unsigned char c = static_cast<unsigned char>(*text);
        if (c == '"' || c == '\\')
            fprintf(os, "\\%c", c);
        else if (c == '\n')
            fputs("\\n", os);
        else if (c < ' ' || c == 0x7f)
            fprintf(os, "\\x%02X", static_cast<unsigned>(c));
        else
            fputc(c, os);
    }
    fputc('"', os);
}

void print_string(const char* text)
{
    fprint_string(stdout, text);
}

void fprint_scalar(FILE* os, Type type, const void* value)
{
    switch (type)
    {
    case BOOLEAN:
        fputs(*static_cast<const boolean*>(value) ? "true" : "false", os);
        break;
    case UINT8:
        fprintf(os, "%u", *static_cast<const uint8*>(value));
        break;
    case SINT8:
        fprintf(os, "%d", *static_cast<const sint8*>(value));
        break;
    case UINT16:
        fprintf(os, "%u", *static_cast<const uint16*>(value));
        break;
    case SINT16:
        fprintf(os, "%d", *static_cast<const sint16*>(value));
        break;
    case UINT32:
        fprintf(os, "%u", *static_cast<const uint32*>(value));
        break;
    case SINT32:
        fprintf(os, "%d", *static_cast<const sint32*>(value));
        break;
    case UINT64:
        fprintf(os, CIMPLE_LLU, *static_cast<const uint64*>(value));
        break;
    case SINT64:
        fprintf(os, CIMPLE_LLD, *static_cast<const sint64*>(value));
        break;
    case REAL32:
        fprintf(os, "%.9g", static_cast<double>(*static_cast<const real32*>(value)));
        break;
    case REAL64:
        fprintf(os, "%.17g", *static_cast<const real64*>(value));
        break;
    case CHAR16:
        fprintf(os, "%u", static_cast<const char16*>(value)->code());
        break;
    case STRING:
        fprint_string(os, *static_cast<const char* const*>(value));
        break;
    case DATETIME:
        fputs(*static_cast<const char* const*>(value), os);
        break;
    }
}

void print_scalar(Type type, const void* value)
{
    fprint_scalar(stdout, type, value);
}

void fprint_array(FILE* os, Type type, const void* elements, size_t n)
{
    fputs("{ ", os);
    for (size_t i = 0; i < n; i++)
    {
        if (i > 0)
            fputs(", ", os);
        fprint_scalar(os, type, static_cast<const char*>(elements) + i * literal_type_size[type]);
    }
    fputs(n > 0 ? " }" : "}", os);
}

void print_array(Type type, const void* elements, size_t n)
{
    fprint_array(stdout, type, elements, n);
}

CIMPLE_NAMESPACE_END
