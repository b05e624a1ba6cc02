// The functions of libcurl, which is loaded when it is first needed: with all the libraries that it brings it
// takes 5 MB of memory, and a switch without listeners never needs it.
#ifndef DELIVERY_CURL_LIBRARY_H
#define DELIVERY_CURL_LIBRARY_H

#include <curl/curl.h>

namespace cimple
{

// Its functions, by their names without the prefix.
#define VRAX_CURL_FUNCTIONS(F)                                                                               \
    F(global_init)                                                                                           \
    F(easy_init)                                                                                             \
    F(easy_cleanup)                                                                                          \
    F(easy_setopt)                                                                                           \
    F(easy_getinfo)                                                                                          \
    F(easy_strerror)                                                                                         \
    F(multi_init)                                                                                            \
    F(multi_cleanup)                                                                                         \
    F(multi_setopt)                                                                                          \
    F(multi_add_handle)                                                                                      \
    F(multi_remove_handle)                                                                                   \
    F(multi_perform)                                                                                         \
    F(multi_poll)                                                                                            \
    F(multi_wakeup)                                                                                          \
    F(multi_info_read)                                                                                       \
    F(slist_append)                                                                                          \
    F(slist_free_all)

struct Curl_Library
{
    Curl_Library();

#define VRAX_CURL_POINTER(NAME) decltype(&curl_##NAME) NAME;
    VRAX_CURL_FUNCTIONS(VRAX_CURL_POINTER)
#undef VRAX_CURL_POINTER
};

// Stays loaded and initialised until the process ends: others in it may use it, too. Throws
// std::runtime_error with the loader's reason; a later call tries again.
const Curl_Library& curl();

} // namespace cimple

#endif
