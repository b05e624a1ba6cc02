// The providers' exception: carries a failure out of a load or a method to the one place that logs it.
#ifndef COMMON_VRAX_EXCEPT_H
#define COMMON_VRAX_EXCEPT_H

#include <cstddef>

enum except_enum
{
    CRIT = 0,
    INFO = 1
};

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

    // Logs "Exception[INFO]:" at the information level, "Exception[CRIT]:" at the critical one, followed by
    // file, function, line and message.
    void print() const;

    const char* file;
    const char* function;
    int line;
    char message[kMessageSize];
    except_enum severity;
};

#endif
