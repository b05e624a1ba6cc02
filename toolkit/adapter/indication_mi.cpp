// The indication interface.
#include "Call.h"

namespace cimple_cmpi
{

using namespace cimple;

namespace
{

CMPIStatus cleanup(CMPIIndicationMI* mi, const CMPIContext* context, CMPIBoolean terminating)
{
    return StaticData::of(mi->hdl).cleanup(kIndicationMi, context, terminating);
}

// Which filters select something is the broker's business.
CMPIStatus authorizeFilter(CMPIIndicationMI*,
                           const CMPIContext*,
                           const CMPISelectExp*,
                           const char*,
                           const CMPIObjectPath*,
                           const char*)
{
    return {CMPI_RC_OK, nullptr};
}

// Brokers of different editions pass different arguments, so none is touched.
CMPIStatus
mustPoll(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char*, const CMPIObjectPath*)
{
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

CMPIStatus activateFilter(CMPIIndicationMI* mi,
                          const CMPIContext* context,
                          const CMPISelectExp*,
                          const char*,
                          const CMPIObjectPath* classPath,
                          CMPIBoolean)
{
    return run(mi,
               context,
               "activate filter",
               [&](Call& call)
               {
                   if (classPath)
                       call.adapter().indications().activate(nameSpaceOf(classPath));
               });
}

CMPIStatus deActivateFilter(CMPIIndicationMI* mi,
                            const CMPIContext* context,
                            const CMPISelectExp*,
                            const char*,
                            const CMPIObjectPath* classPath,
                            CMPIBoolean)
{
    return run(mi,
               context,
               "deactivate filter",
               [&](Call& call)
               {
                   if (classPath)
                       call.adapter().indications().deactivate(nameSpaceOf(classPath));
               });
}

CMPIStatus enableIndications(CMPIIndicationMI* mi, const CMPIContext* context)
{
    return run(mi,
               context,
               "enable indications",
               [](Call& call) { call.adapter().indications().enable(call.provider()); });
}

CMPIStatus disableIndications(CMPIIndicationMI* mi, const CMPIContext* context)
{
    return run(mi,
               context,
               "disable indications",
               [](Call& call) { call.adapter().indications().disable(call.adapter().bareProvider()); });
}

} // namespace

const CMPIIndicationMIFT kIndicationFunctions = {CMPIVersion200,
                                                 CMPIVersion200,
                                                 nullptr,
                                                 cleanup,
                                                 authorizeFilter,
                                                 mustPoll,
                                                 activateFilter,
                                                 deActivateFilter,
                                                 enableIndications,
                                                 disableIndications};

} // namespace cimple_cmpi
