// Placeholders of message texts.
#include "agent/broker/message.h"

#include "agent/broker/objects.h"
#include "agent/cim/value_text.h"

namespace cimd
{
namespace
{

constexpr CMPICount kMaxValues = 10;

std::string nextValue(std::va_list& values)
{
    const int type = va_arg(values, int);
    std::string text;
    switch (type)
    {
    case CMPI_sint32:
        return std::to_string(va_arg(values, int));
    case CMPI_uint32:
        return std::to_string(va_arg(values, unsigned));
    case CMPI_sint64:
        return std::to_string(va_arg(values, long long));
    case CMPI_uint64:
        return std::to_string(va_arg(values, unsigned long long));
    case CMPI_real64:
        appendText(text, CimValue::real64(va_arg(values, double)));
        return text;
    case CMPI_boolean:
        return va_arg(values, int) != 0 ? "true" : "false";
    case CMPI_chars:
        return orEmpty(va_arg(values, const char*));
    case CMPI_string:
        return objectOf<StringObject>(va_arg(values, const CMPIString*)).text;
    default:
        throw CmpiError(CMPI_RC_ERR_TYPE_MISMATCH, "CMPI type " + std::to_string(type) + " in a message");
    }
}

} // namespace

std::string formatMessage(const char* text, CMPICount count, std::va_list values)
{
    if (count > kMaxValues)
        throw CmpiError(CMPI_RC_ERR_INVALID_PARAMETER, "more than ten values in a message");
    std::vector<std::string> texts;
    std::va_list rest;
    va_copy(rest, values);
    try
    {
        while (texts.size() < count)
            texts.push_back(nextValue(rest));
    }
    catch (...)
    {
        va_end(rest);
        throw;
    }
    va_end(rest);

    std::string result;
    for (const char* at = orEmpty(text); *at; ++at)
    {
        const bool isPlace = *at == '$' && at[1] >= '0' && at[1] <= '9';
        if (isPlace && static_cast<std::size_t>(at[1] - '0') < texts.size())
            result += texts[static_cast<std::size_t>(*++at - '0')];
        else
            result += *at;
    }
    return result;
}

} // namespace cimd
