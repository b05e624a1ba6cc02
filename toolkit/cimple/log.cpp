// The log file: settings, format and writing.
#include <atomic>
#include <cimple/Strings.h>
#include <cimple/Time.h>
#include <cimple/log.h>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

CIMPLE_NAMESPACE_BEGIN

namespace
{
const char* const kHomeVariable = "CIMPLE_HOME";
const char* const kLevelNames[] = {"FATAL", "ERR", "WARN", "INFO", "DBG"};
const int kOff = -1;
const size_t kMaxMessage = 4096;

std::atomic<bool> enabled(true);

// The level in $CIMPLE_HOME/.cimplerc, or kOff.
int configured_level(const std::string& home)
{
    std::ifstream file(home + "/.cimplerc");
    for (std::string line; std::getline(file, line);)
    {
        const std::string key = "LOG_LEVEL=";
        if (line.compare(0, key.size(), key) != 0)
            continue;
        std::string value = line.substr(key.size());
        value.erase(value.find_last_not_of(" \t\r") + 1);
        for (int level = LL_FATAL; level <= LL_DBG; level++)
            if (eqi(kLevelNames[level], value.c_str()))
                return level;
    }
    return kOff;
}

// Read once. The file stays open so that messages of many threads need no lock: each is one appending write.
struct Settings
{
    Settings()
    {
        const char* const home = getenv(kHomeVariable);
        if (!home)
            return;
        level = configured_level(home);
        if (level == kOff)
            return;
        const std::string folder = std::string(home) + "/.cimple";
        mkdir(folder.c_str(), 0755);
        fd = open((folder + "/messages").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
        if (fd < 0)
            level = kOff;
    }
    ~Settings()
    {
        if (fd >= 0)
            close(fd);
    }
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    int level = kOff;
    int fd = -1;
};

const Settings& settings()
{
    static const Settings instance;
    return instance;
}
} // namespace

bool log_wanted(Log_Level level)
{
    return enabled && level <= settings().level;
}

void vlog(Log_Level level, const char* file, size_t line, const char* format, va_list args)
{
    if (!log_wanted(level))
        return;

    const time_t now = static_cast<time_t>(Time::now() / Time::SEC);
    struct tm fields = {};
    localtime_r(&now, &fields);
    char text[kMaxMessage];
    size_t size = strftime(text, sizeof text, "%Y/%m/%d %H:%M:%S ", &fields);
    const auto wrote = [&](int n)
    {
        if (n > 0)
            size =
                size + static_cast<size_t>(n) < sizeof text ? size + static_cast<size_t>(n) : sizeof text - 1;
    };
    wrote(snprintf(text + size, sizeof text - size, "%s: %s(%zu): ", kLevelNames[level], file, line));
    wrote(vsnprintf(text + size, sizeof text - size, format, args));
    text[size < sizeof text - 1 ? size++ : size - 1] = '\n';

    ssize_t rc;
    CIMPLE_RESTART(write(settings().fd, text, size), rc);
}

void log(Log_Level level, const char* file, size_t line, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    vlog(level, file, line, format, args);
    va_end(args);
}

void Log_Call::write(const char* format, ...) const
{
    va_list args;
    va_start(args, format);
    vlog(_level, _file, _line, format, args);
    va_end(args);
}

void open_log(const char*)
{
    settings();
}

int log_enable(boolean state)
{
    return enabled.exchange(state) != state ? 0 : -1;
}

CIMPLE_NAMESPACE_END
