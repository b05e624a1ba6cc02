// The broker's function tables, one per source file.
#ifndef AGENT_BROKER_TABLES_H
#define AGENT_BROKER_TABLES_H

#include <cmpift.h>

namespace cimd
{

extern const CMPIBrokerEncFT kFactoryTable; // factories.cpp
extern const CMPIBrokerExtFT kSystemTable;  // system_services.cpp
extern const CMPIBrokerMemFT kMemoryTable;  // memory_services.cpp

} // namespace cimd

#endif
