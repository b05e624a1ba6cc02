// The providers' exception.
#include "support/VRAX_Except.h"

#include "support/cim_log.h"
#include "support/substitute.h"

#include <cstdarg>
#include <cstdio>

VRAX_Except::VRAX_Except(const char* fromFile,
                         const char* fromFunction,
                         int fromLine,
                         except_enum howSevere,
                         const char* format,
                         ...)
    : file(fromFile), function(fromFunction), line(fromLine), severity(howSevere),
      form(howSevere == INFO ? cimple::Log_Form::Information : cimple::Log_Form::Exception)
{
    va_list args;
    va_start(args, format);
    if (std::vsnprintf(message, sizeof(message), format, args) < 0)
        message[0] = '\0';
    va_end(args);
}

VRAX_Except::VRAX_Except(const char* fromFile,
                         const char* fromFunction,
                         int fromLine,
                         const cimple::Failure_Text& what,
                         std::initializer_list<const char*> arguments)
    : file(fromFile), function(fromFunction), line(fromLine),
      severity(what.form == cimple::Log_Form::Information ? INFO : CRIT), form(what.form)
{
    cimple::substitute(message, sizeof(message), what.text, arguments);
}

void VRAX_Except::print() const
{
    switch (form)
    {
    case cimple::Log_Form::None:
    case cimple::Log_Form::Unlogged:
        return;
    case cimple::Log_Form::Line:
        cim_log(kLogCritical, "CRIT:%s:%s[%d] %s\n", file, function, line, message);
        return;
    case cimple::Log_Form::Plain:
        cim_log(kLogInfo, "%s", message);
        return;
    case cimple::Log_Form::Information:
        cim_log(kLogInfo, "Exception[INFO]:%s:%s[%d] %s\n", file, function, line, message);
        return;
    case cimple::Log_Form::Exception:
        cim_log(kLogCritical, "Exception[CRIT]:%s:%s[%d] %s\n", file, function, line, message);
    }
}
