// The calling thread's last error message.
#include <cimple/Error.h>
#include <string>

CIMPLE_NAMESPACE_BEGIN

namespace
{
struct State
{
    std::string prefix;
    std::string message;
};

State& state()
{
    static thread_local State instance;
    return instance;
}
} // namespace

void Error::set(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    const int length = vsnprintf(nullptr, 0, format, args);
    va_end(args);

    std::string text(length > 0 ? static_cast<size_t>(length) + 1 : 1, '\0');
    vsnprintf(text.data(), text.size(), format, again);
    va_end(again);
    text.pop_back();
    state().message = state().prefix + text;
}

const char* Error::get()
{
    return state().message.c_str();
}

void Error::clear()
{
    state().message.clear();
}

void Error::set_prefix(const char* prefix)
{
    state().prefix = prefix;
}

CIMPLE_NAMESPACE_END
