// What a failed operation leaves in the log and with the client.
#include "common/Operation.h"

#include "support/cim_log.h"

#include <cimple/cimple.h>

#include <cstring>
#include <new>

namespace cimple
{

void trace(const char* source, const char* function, int line)
{
    cim_log(kLogTrace, "%s:%s[%d]\n", source, function, line);
}

void logCritical(const char* source, const char* function, const char* message, int line)
{
    VRAX_Except(source, function, line, Failure_Text::line("%s"), {message}).print();
}

void report(const VRAX_Except& failure, const char* more)
{
    failure.print();
    if (failure.form == Log_Form::None)
        return;
    // Some texts begin or end with white space for the log's sake.
    static constexpr char kBlanks[] = " \n";
    const char* message = failure.message;
    message += std::strspn(message, kBlanks);
    std::size_t length = std::strlen(message);
    while (length > 0 && std::strchr(kBlanks, message[length - 1]) != nullptr)
        --length;
    try
    {
        Error::set("%.*s%s%s", static_cast<int>(length), message, *more != '\0' ? ": " : "", more);
    }
    catch (const std::bad_alloc&)
    {
        // The client has to do with the status.
    }
}

} // namespace cimple
