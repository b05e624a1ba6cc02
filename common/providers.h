// What providers.def says of each class, for the compiler.
#ifndef COMMON_PROVIDERS_H
#define COMMON_PROVIDERS_H

namespace cimple
{

// Registered<CLASS> of a class of providers.def:
//   Provider          the class of its provider, cimple::<Class>_Provider;
//   kSource           the provider's unit, which log lines name: "<folder>/<Class>_Provider";
//   kReadFailed, kCreationFailed, kKeysMissing, kInsertionFailed
//                     what a load says of a failed step, unless the provider has a text of its own.
template <class CLASS>
struct Registered;

#define VRAX_PROVIDER(kind, folder, cls)                                                                     \
    class cls;                                                                                               \
    class cls##_Provider;                                                                                    \
    template <>                                                                                              \
    struct Registered<cls>                                                                                   \
    {                                                                                                        \
        typedef cls##_Provider Provider;                                                                     \
        static constexpr const char* kSource = #folder "/" #cls "_Provider";                                 \
        static constexpr const char* kReadFailed = "Unable to get " #cls " attributes";                      \
        static constexpr const char* kCreationFailed = "Unable to create instance of " #cls;                 \
        static constexpr const char* kKeysMissing = #cls "::One or more Key Properties are not Populated";   \
        static constexpr const char* kInsertionFailed = "Failed to insert into " #cls "_map";                \
    };
#include "common/providers.def"
#undef VRAX_PROVIDER

} // namespace cimple

#endif
