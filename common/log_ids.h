// Which log the name of an instance belongs to.
#ifndef COMMON_LOG_IDS_H
#define COMMON_LOG_IDS_H

#include <cstring>
#include <initializer_list>

namespace cimple
{

// The word for the log in an InstanceID that begins "VRAX:<class>:<wwn>:User", or ":Alarm"; null when there
// is none. A static text.
template <class CLASS>
const char* logKind(const CLASS& instance)
{
    const char* at = instance.InstanceID.value.c_str();
    for (int colons = 3; colons > 0 && at != nullptr; --colons)
    {
        at = std::strchr(at, ':');
        if (at != nullptr)
            ++at;
    }
    for (const char* word : {"User", "Alarm"})
        if (at != nullptr && std::strncmp(at, word, std::strlen(word)) == 0)
            return word;
    return nullptr;
}

} // namespace cimple

#endif
