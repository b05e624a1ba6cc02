// Where the module's lines go while the hosting server has not said where.
#include "support/default_log.h"

#include "support/cim_log.h"

#include <cerrno>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

namespace
{

bool isRead(int descriptor)
{
    struct stat facts;
    if (fstat(descriptor, &facts) != 0)
        return errno != EBADF; // a file too large for the call to describe is a file
    return S_ISREG(facts.st_mode) || S_ISFIFO(facts.st_mode) || isatty(descriptor) != 0;
}

// A critical line tells of one operation that failed: an error. Syslog's own "critical" is for trouble of the
// whole system, at which sites call people.
int priorityOf(int level)
{
    const int severity = level <= kLogTrace ? LOG_DEBUG : level < kLogCritical ? LOG_INFO : LOG_ERR;
    return LOG_DAEMON | severity;
}

} // namespace

void writeDefaultLog(int level, const char* text, std::FILE* standardError, syslog_call toSyslog)
{
    if (isRead(fileno(standardError)))
        std::fprintf(standardError, "%s\n", text);
    else
        toSyslog(priorityOf(level), "vrax: %s", text);
}
