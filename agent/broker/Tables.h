// The broker's function tables, one per source file.
#pragma once

#include <cmpift.h>

namespace cimd
{

extern const CMPIBrokerFT kServiceTable;    // UpCalls.cpp
extern const CMPIBrokerEncFT kFactoryTable; // Factories.cpp
extern const CMPIBrokerExtFT kSystemTable;  // SystemServices.cpp
extern const CMPIBrokerMemFT kMemoryTable;  // MemoryServices.cpp

} // namespace cimd
