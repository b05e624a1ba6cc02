// Loading libcurl.
#include "delivery/Curl_Library.h"

#include <stdexcept>
#include <string>

#include <dlfcn.h>

namespace cimple
{

namespace
{

template <class FUNCTION>
void find(void* library, const char* name, FUNCTION*& function)
{
    function = reinterpret_cast<FUNCTION*>(dlsym(library, name));
    if (function == nullptr)
        throw std::runtime_error(std::string(VRAX_LIBCURL_FILE " has no ") + name);
}

} // namespace

Curl_Library::Curl_Library()
{
    void* const library = dlopen(VRAX_LIBCURL_FILE, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        throw std::runtime_error(std::string("cannot send without libcurl: ") + dlerror());
#define VRAX_CURL_FIND(NAME) find(library, "curl_" #NAME, NAME);
    VRAX_CURL_FUNCTIONS(VRAX_CURL_FIND)
#undef VRAX_CURL_FIND
    global_init(CURL_GLOBAL_DEFAULT);
}

const Curl_Library& curl()
{
    static const Curl_Library library;
    return library;
}

} // namespace cimple
