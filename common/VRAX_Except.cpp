// The providers' exception.
#include "common/VRAX_Except.h"

#include "support/cim_log.h"

#include <cstdarg>
#include <cstdio>

VRAX_Except::VRAX_Except(const char* fromFile,
                         const char* fromFunction,
                         int fromLine,
                         except_enum howSevere,
                         const char* format,
                         ...)
    : file(fromFile), function(fromFunction), line(fromLine), severity(howSevere)
{
    va_list args;
    va_start(args, format);
    if (std::vsnprintf(message, sizeof(message), format, args) < 0)
        message[0] = '\0';
    va_end(args);
}

void VRAX_Except::print() const
{
    if (severity == INFO)
        cim_log(kLogInfo, "Exception[INFO]:%s:%s[%d] %s\n", file, function, line, message);
    else
        cim_log(kLogCritical, "Exception[CRIT]:%s:%s[%d] %s\n", file, function, line, message);
}
