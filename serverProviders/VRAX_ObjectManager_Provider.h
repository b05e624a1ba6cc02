// The object manager: the agent itself.
#ifndef SERVERPROVIDERS_VRAX_OBJECTMANAGER_PROVIDER_H
#define SERVERPROVIDERS_VRAX_OBJECTMANAGER_PROVIDER_H

#include "common/Local_Switch_Provider.h"

#include "VRAX_ObjectManager_Methods.h"

namespace cimple
{

class VRAX_ObjectManager_Provider : public Local_Switch_Provider<VRAX_ObjectManager>,
                                    public VRAX_ObjectManager_Methods<VRAX_ObjectManager_Provider>
{
  public:
    static constexpr Failure_Text kCreationFailed = Failure_Text::line("Unable to create VRAX_ObjectManager");

    static void fill(VRAX_ObjectManager& instance, const char* localWwn);
};

} // namespace cimple

#endif
