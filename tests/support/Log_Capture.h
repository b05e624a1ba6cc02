// Catches what the module logs.
#ifndef TESTS_SUPPORT_LOG_CAPTURE_H
#define TESTS_SUPPORT_LOG_CAPTURE_H

#include "support/cim_log.h"

#include <mutex>
#include <string>
#include <utility>
#include <vector>

// In force while the object lives; one at a time.
class Log_Capture
{
  public:
    typedef std::pair<int, std::string> Line; // level and text

    explicit Log_Capture(int lowestLevel = kLogCritical)
    {
        take();
        cim_log_configure(lowestLevel, sink);
    }
    ~Log_Capture() { cim_log_configure(kLogCritical, nullptr); }
    Log_Capture(const Log_Capture&) = delete;
    Log_Capture& operator=(const Log_Capture&) = delete;

    // The lines since the last call.
    static std::vector<Line> take()
    {
        const std::lock_guard<std::mutex> guard(_lock);
        return std::exchange(_lines, {});
    }
    // The same without levels, with the number in "[<line>]" left out: source lines move.
    static std::vector<std::string> texts()
    {
        std::vector<std::string> result;
        for (const Line& line : take())
            result.push_back(withoutNumber(line.second));
        return result;
    }

  private:
    static std::string withoutNumber(std::string text)
    {
        const std::size_t open =
            text.find_last_of('[', text.find("] ") == text.npos ? text.npos : text.find("] "));
        const std::size_t close = open == text.npos ? open : text.find(']', open);
        if (close != text.npos)
            text.erase(open + 1, close - open - 1);
        return text;
    }
    static void sink(int level, const char* text)
    {
        const std::lock_guard<std::mutex> guard(_lock);
        _lines.emplace_back(level, text);
    }

    inline static std::mutex _lock;
    inline static std::vector<Line> _lines;
};

#endif
