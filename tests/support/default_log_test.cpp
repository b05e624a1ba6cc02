// Tests of where lines go while the hosting server has not said where.
#include "support/default_log.h"

#include "support/cim_log.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <syslog.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{

std::vector<std::pair<int, std::string>> toSyslog;

void catchSyslog(int priority, const char* format, ...)
{
    char line[200];
    va_list args;
    va_start(args, format);
    std::vsnprintf(line, sizeof(line), format, args);
    va_end(args);
    toSyslog.emplace_back(priority, line);
}

// A stream on a descriptor, as a host has on number 2.
class Stream
{
  public:
    explicit Stream(int descriptor) : _stream(fdopen(descriptor, "w"))
    {
        setvbuf(_stream, nullptr, _IONBF, 0);
    }
    ~Stream() { fclose(_stream); }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    operator std::FILE*() const { return _stream; }

  private:
    std::FILE* _stream;
};

std::string readFrom(int descriptor)
{
    char text[200];
    const ssize_t length = read(descriptor, text, sizeof(text));
    close(descriptor);
    return std::string(text, length > 0 ? static_cast<std::size_t>(length) : 0);
}

TEST(DefaultLog, WritesWhereSomebodyReads)
{
    toSyslog.clear();
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    writeDefaultLog(kLogCritical, "to a pipe", Stream(ends[1]), catchSyslog);
    EXPECT_EQ(readFrom(ends[0]), "to a pipe\n");

    char path[] = "/tmp/default_log_XXXXXX";
    const int file = mkstemp(path);
    ASSERT_GE(file, 0);
    writeDefaultLog(kLogCritical, "to a file", Stream(dup(file)), catchSyslog);
    unlink(path);
    lseek(file, 0, SEEK_SET);
    EXPECT_EQ(readFrom(file), "to a file\n");

    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    if (terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0)
    {
        const int user = open(ptsname(terminal), O_RDWR | O_NOCTTY);
        ASSERT_GE(user, 0);
        const Stream stream(user);
        writeDefaultLog(kLogCritical, "to a terminal", stream, catchSyslog);
        EXPECT_EQ(readFrom(terminal), "to a terminal\r\n");
    }
    EXPECT_TRUE(toSyslog.empty());
}

TEST(DefaultLog, TurnsToSyslogWhereNobodyReads)
{
    typedef std::vector<std::pair<int, std::string>> Lines;
    toSyslog.clear();
    const Stream device(open("/dev/null", O_WRONLY));
    for (const int level : {kLogTrace, kLogInfo, 3, kLogCritical})
        writeDefaultLog(level, "100 %s", device, catchSyslog);
    EXPECT_EQ(toSyslog,
              (Lines{{LOG_DAEMON | LOG_DEBUG, "vrax: 100 %s"},
                     {LOG_DAEMON | LOG_INFO, "vrax: 100 %s"},
                     {LOG_DAEMON | LOG_INFO, "vrax: 100 %s"},
                     {LOG_DAEMON | LOG_ERR, "vrax: 100 %s"}}));

    // A client's connection that got the number of standard error must not see a line.
    toSyslog.clear();
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    writeDefaultLog(kLogCritical, "private", Stream(ends[1]), catchSyslog);
    EXPECT_EQ(readFrom(ends[0]), "");
    {
        const Stream closed(dup(STDOUT_FILENO));
        const int number = fileno(closed);
        const int kept = dup(number);
        close(number);
        writeDefaultLog(kLogCritical, "closed", closed, catchSyslog);
        dup2(kept, number); // for the stream to close
        close(kept);
    }
    EXPECT_EQ(toSyslog,
              (Lines{{LOG_DAEMON | LOG_ERR, "vrax: private"}, {LOG_DAEMON | LOG_ERR, "vrax: closed"}}));
}

// The host's word counts: a null sink is standard error even where nobody seems to read it.
TEST(DefaultLogDeathTest, GivesWayToTheHostsChoice)
{
    const auto logTo = [](int descriptor, bool isChosen)
    {
        dup2(descriptor, STDERR_FILENO);
        if (isChosen)
            cim_log_configure(kLogCritical, nullptr);
        cim_log(kLogCritical, "a line\n");
        std::_Exit(0);
    };
    for (const bool isChosen : {true, false})
    {
        int ends[2];
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
        EXPECT_EXIT(logTo(ends[1], isChosen), testing::ExitedWithCode(0), "");
        close(ends[1]);
        EXPECT_EQ(readFrom(ends[0]), isChosen ? "a line\n" : "") << isChosen;
    }
}

} // namespace
