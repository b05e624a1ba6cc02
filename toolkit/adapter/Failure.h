// How an operation ends other than well: a CMPI code and a text for the person who reads the client's screen.
#ifndef TOOLKIT_ADAPTER_FAILURE_H
#define TOOLKIT_ADAPTER_FAILURE_H

#include <cimple/cimple.h>
#include <cmpift.h>

#include <stdexcept>
#include <string>

namespace cimple_cmpi
{

// Thrown inside the adapter only; the entry of each CMPI function turns it into a status.
class Failure : public std::runtime_error
{
  public:
    Failure(CMPIrc code, const std::string& text) : Failure(code, ": ", text) {}

    // "failed (status 70)", "is not supported (status 91)" and the like, followed by what the provider left
    // in cimple::Error.
    static Failure ofProvider(int status);

    // The exception that is being handled.
    static Failure current();

    CMPIrc code() const { return _code; }

    // The same failure seen from one level further out: "<where>: <text>", "<where> failed (status 70)".
    Failure in(const std::string& where) const { return Failure(_code, where + _joint + what()); }

  private:
    Failure(CMPIrc code, const char* joint, const std::string& text)
        : std::runtime_error(text), _code(code), _joint(joint)
    {
    }

    CMPIrc _code;
    const char* _joint;
};

// Throws if a call to the broker failed; the text says what was attempted and, if known, the broker's reason.
void checkBroker(const CMPIStatus& status, const char* what);

// The same for a function that returns an object or null.
template <class Edt>
Edt* checkBroker(Edt* object, const CMPIStatus& status, const char* what)
{
    checkBroker(status.rc == CMPI_RC_OK && !object ? CMPIStatus{CMPI_RC_ERR_FAILED, nullptr} : status, what);
    return object;
}

// The CMPI code of the status of any provider operation. A status that stands for nothing better is a
// failure.
CMPIrc codeOf(int status);

// Throws unless the status of a provider operation is 0.
inline void checkProvider(int status)
{
    if (status != 0)
        throw Failure::ofProvider(status);
}

} // namespace cimple_cmpi

#endif
