// Current byte and frame rates of the local ports.
#include "switchProviders/VRAX_FCPortRateStatistics_Provider.h"

namespace cimple
{

// A rate that the port does not measure at present stays null.
const Attribute<VRAX_FCPortRateStatistics> VRAX_FCPortRateStatistics_Provider::kAttributes[4] = {
    {"Oper.UserPort.0.%s.RxBytePerf", put<&VRAX_FCPortRateStatistics::RxRate, decimal>, kStaysNull},
    {"Oper.UserPort.0.%s.TxBytePerf", put<&VRAX_FCPortRateStatistics::TxRate, decimal>, kStaysNull},
    {"Oper.UserPort.0.%s.RxFramePerf", put<&VRAX_FCPortRateStatistics::RxFrameRate, decimal>, kStaysNull},
    {"Oper.UserPort.0.%s.TxFramePerf", put<&VRAX_FCPortRateStatistics::TxFrameRate, decimal>, kStaysNull},
};

} // namespace cimple
