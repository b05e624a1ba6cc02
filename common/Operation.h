// The guard around everything that a provider does for a request: what is thrown in there is logged, told to
// the client and turned into a status, in one way for loads, writes and methods.
#ifndef COMMON_OPERATION_H
#define COMMON_OPERATION_H

#include "support/VRAX_Except.h"

#include <exception>
#include <initializer_list>
#include <string>

namespace cimple
{

// The line on entry to an operation.
void trace(const char* source, const char* function, int line);

// Logs a critical line, in the name of the caller's line.
void logCritical(const char* source, const char* function, const char* message, int line);

// Logs the failure and makes it the reason that the client is told, should the operation end in a status
// other than success. `more` is for the client alone: "<text>: <more>".
void report(const VRAX_Except& failure, const char* more = "");

// One operation under way. `function` is the operation's name in the log.
template <class STATUS>
class Operation
{
  public:
    // `failed`: the result when the body throws.
    Operation(const char* source, const char* function, STATUS failed)
        : _source(source), _function(function), _failed(failed)
    {
    }
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    // Calls body(*this); its result is the operation's, unless it throws: then afterFailure() is called.
    template <class BODY>
    STATUS run(BODY body)
    {
        return run(body, [] {});
    }
    template <class BODY, class AFTER_FAILURE>
    STATUS run(BODY body, AFTER_FAILURE afterFailure)
    {
        try
        {
            return body(*this);
        }
        catch (const VRAX_Except& failure)
        {
            report(failure, _more.c_str());
        }
        catch (const std::exception& failure)
        {
            report(VRAX_Except(_source, _function, __LINE__, Failure_Text::line("%s"), {failure.what()}));
        }
        afterFailure();
        return _failed;
    }

    // Ends the operation with this failure, in the name of the caller's line; the text's places are filled
    // with the arguments.
    [[noreturn]] void fail(const Failure_Text& what,
                           std::initializer_list<const char*> arguments = {},
                           int line = __builtin_LINE())
    {
        throw VRAX_Except(_source, _function, line, what, arguments);
    }
    // The same with another result.
    [[noreturn]] void failWith(STATUS status,
                               const Failure_Text& what,
                               std::initializer_list<const char*> arguments = {},
                               int line = __builtin_LINE())
    {
        _failed = status;
        fail(what, arguments, line);
    }

    // The same with more for the client than the log's text says: what it was that was refused.
    [[noreturn]] void
    failOn(const std::string& refused, const Failure_Text& what, int line = __builtin_LINE())
    {
        _more = refused;
        fail(what, {}, line);
    }

  private:
    const char* _source;
    const char* _function;
    STATUS _failed;
    std::string _more;
};

} // namespace cimple

#endif
