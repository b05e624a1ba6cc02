// The configuration of the local switch as an image: backed up by reading it, restored from an uploaded one.
#ifndef SWITCHPROVIDERS_VRAX_CONFIGURATIONDATA_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_CONFIGURATIONDATA_PROVIDER_H

#include "common/Unmapped_Provider.h"

#include "VRAX_ConfigurationData_Methods.h"

#include <string>

namespace cimple
{

// Two instances: "DEFAULT", the present configuration, for which every request has the switch back it up; and
// "NEW" while an uploaded image waits to be applied. Both are made from their files for each request.
//
// One request at a time works with the files.
class VRAX_ConfigurationData_Provider : public Unmapped_Provider<VRAX_ConfigurationData>,
                                        public VRAX_ConfigurationData_Methods<VRAX_ConfigurationData_Provider>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create VRAX_ConfigurationData instance";

    // False unless the text has more than 42 characters and names one of the two images: the WWN is the 16
    // characters from the 24th on, the type all from the 41st. What stands around them is not looked at.
    static bool parseInstanceID(const String& instanceId, std::string& wwn, std::string& fileType);

    // The instance of the image of this type. Throws the failure.
    static Owned<VRAX_ConfigurationData> formatConfigurationDataInstance(const char* fileType);
    // That of "NEW"; null when no image waits.
    static Owned<VRAX_ConfigurationData> formatNewInstance();

    Enum_Instances_Status enum_instances(const VRAX_ConfigurationData* model,
                                         Enum_Instances_Handler<VRAX_ConfigurationData>* handler);
    Get_Instance_Status get_instance(const VRAX_ConfigurationData* model, VRAX_ConfigurationData*& instance);

    // Uploads an image as "NEW": what precedes its first zero byte, as clients hand back the zero that ends
    // what they have read. 80 while another image waits, 84 for all other failures; then nothing is left of
    // it.
    Create_Instance_Status create_instance(VRAX_ConfigurationData* instance);

    // Puts "NEW" in the place of "DEFAULT" and has the switch restore its configuration from it. The image
    // is gone from "NEW" then, also when the switch refuses it. Applying "DEFAULT" does nothing. 130 with
    // the return value 16000 for ValidateOnly, 16002 for the types 3 and 4 of configurations, 5 for types
    // other than 2 to 4, and without one for all other failures. The administrative mode of the switch is
    // given back on the way out, whatever happened.
    Invoke_Method_Status ApplyConfiguration(const VRAX_ConfigurationData* self,
                                            const Property<boolean>& ValidateOnly,
                                            const Property<uint16>& TypeOfConfiguration,
                                            const CIM_ManagedElement* ManagedElement,
                                            Property<uint32>& return_value);

  private:
    static Owned<VRAX_ConfigurationData> format(const char* fileType);
};

} // namespace cimple

#endif
