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

TEST(DefaultLog, WritesWhereSomebodyReadsAndOtherwiseTurnsToSyslog)
{
    int piped[2];
    int connected[2];
    char path[] = "/tmp/default_log_XXXXXX";
    ASSERT_EQ(pipe(piped), 0);
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, connected), 0);
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_TRUE(grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    const int file = mkstemp(path);
    const Stream user(open(ptsname(terminal), O_RDWR | O_NOCTTY));

    writeDefaultLog(kLogCritical, "to a pipe", Stream(piped[1]), catchSyslog);
    writeDefaultLog(kLogCritical, "to a file", Stream(dup(file)), catchSyslog);
    writeDefaultLog(kLogCritical, "to a terminal", user, catchSyslog);
    EXPECT_TRUE(toSyslog.empty());
    lseek(file, 0, SEEK_SET);
    unlink(path);
    EXPECT_EQ(readFrom(piped[0]), "to a pipe\n");
    EXPECT_EQ(readFrom(file), "to a file\n");
    EXPECT_EQ(readFrom(terminal), "to a terminal\r\n");

    const Stream device(open("/dev/null", O_WRONLY));
    for (const int level : {kLogTrace, kLogInfo, 3, kLogCritical})
        writeDefaultLog(level, "100 %s", device, catchSyslog);
    // A client's connection that got the number of standard error must not see a line.
    writeDefaultLog(kLogCritical, "private", Stream(connected[1]), catchSyslog);
    EXPECT_EQ(readFrom(connected[0]), "");
    const int kept = dup(fileno(device));
    close(fileno(device));
    writeDefaultLog(kLogCritical, "closed", device, catchSyslog);
    dup2(kept, fileno(device)); // for the stream to close
    close(kept);
    const std::vector<std::pair<int, std::string>> lines = {{LOG_DAEMON | LOG_DEBUG, "vrax: 100 %s"},
                                                            {LOG_DAEMON | LOG_INFO, "vrax: 100 %s"},
                                                            {LOG_DAEMON | LOG_INFO, "vrax: 100 %s"},
                                                            {LOG_DAEMON | LOG_ERR, "vrax: 100 %s"},
                                                            {LOG_DAEMON | LOG_ERR, "vrax: private"},
                                                            {LOG_DAEMON | LOG_ERR, "vrax: closed"}};
    EXPECT_EQ(toSyslog, lines);
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
