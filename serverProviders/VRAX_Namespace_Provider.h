// The interop namespace.
#ifndef SERVERPROVIDERS_VRAX_NAMESPACE_PROVIDER_H
#define SERVERPROVIDERS_VRAX_NAMESPACE_PROVIDER_H

#include "common/Local_Switch_Provider.h"

#include "VRAX_Namespace_Methods.h"

namespace cimple
{

class VRAX_Namespace_Provider : public Local_Switch_Provider<VRAX_Namespace>
{
  public:
    static constexpr bool kPublishesDefaults = true;
    static constexpr Failure_Text kCreationFailed = Failure_Text::silent();

    static void fill(VRAX_Namespace& instance, const char* localWwn);
};

} // namespace cimple

#endif
