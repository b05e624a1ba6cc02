// The chassis of the local switch.
#ifndef SWITCHPROVIDERS_VRAX_PHYSICALCHASSIS_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_PHYSICALCHASSIS_PROVIDER_H

#include "common/Local_Switch_Provider.h"

#include "VRAX_PhysicalChassis_Methods.h"

namespace cimple
{

// The texts are what operators know these failures by, misspellings included.
class VRAX_PhysicalChassis_Provider : public Local_Switch_Provider<VRAX_PhysicalChassis>,
                                      public VRAX_PhysicalChassis_Methods<VRAX_PhysicalChassis_Provider>
{
  public:
    static constexpr bool kCreatesFirst = true;
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_PhysicalChassis instance";
    static constexpr Failure_Text kWwnMissing = "Failed to get switch wwn";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_PhysicalChasis::One or more Key Properties are not Populated";

    static void fill(VRAX_PhysicalChassis& chassis, const char* localWwn);
};

} // namespace cimple

#endif
