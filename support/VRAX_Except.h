// The providers' exception: carries a failure out of a load or a method to the one place that logs it.
#ifndef SUPPORT_VRAX_EXCEPT_H
#define SUPPORT_VRAX_EXCEPT_H

#include <cstddef>
#include <initializer_list>

enum except_enum
{
    CRIT = 0,
    INFO = 1
};

namespace cimple
{

// How a failure shows in the log.
enum class Log_Form
{
    Exception,   // "Exception[CRIT]:", at the critical level
    Information, // "Exception[INFO]:", at the information level
    Line,        // "CRIT:"
    Plain,       // as it is, at the information level
    Unlogged,    // not at all; the client is told
    None         // not at all, and the client is not told a reason either
};

// What is said of a failure. The text may have places for arguments (see support/substitute.h). A plain text
// is that of an exception.
struct Failure_Text
{
    constexpr Failure_Text(const char* words, Log_Form how = Log_Form::Exception) : text(words), form(how) {}

    static constexpr Failure_Text line(const char* words) { return {words, Log_Form::Line}; }
    static constexpr Failure_Text info(const char* words) { return {words, Log_Form::Information}; }
    static constexpr Failure_Text plain(const char* words) { return {words, Log_Form::Plain}; }
    static constexpr Failure_Text unlogged(const char* words) { return {words, Log_Form::Unlogged}; }
    static constexpr Failure_Text silent() { return {"", Log_Form::None}; }
    // In place of a text: this is no failure.
    static constexpr Failure_Text none() { return {nullptr, Log_Form::None}; }

    const char* text;
    Log_Form form;
};

} // namespace cimple

// Thrown by value, caught by reference. A plain value without a base class: it needs no memory to be made,
// copied or thrown. `file` and `function` are texts that live as long as the module.
class VRAX_Except
{
  public:
    // Bytes of the message, terminator included; longer texts are cut.
    static constexpr std::size_t kMessageSize = 2024;

    // Formats the message as printf does.
    [[gnu::format(printf, 6, 7)]] VRAX_Except(const char* fromFile,
                                              const char* fromFunction,
                                              int fromLine,
                                              except_enum howSevere,
                                              const char* format,
                                              ...);

    // A failure with this text, informational or critical as its form says.
    VRAX_Except(const char* fromFile,
                const char* fromFunction,
                int fromLine,
                const cimple::Failure_Text& what,
                std::initializer_list<const char*> arguments = {});

    // Logs origin and message: exceptions of severity INFO at the information level, all else at the critical
    // one.
    void print() const;

    const char* file;
    const char* function;
    int line;
    char message[kMessageSize];
    except_enum severity;
    cimple::Log_Form form;
};

#endif
