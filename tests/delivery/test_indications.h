// Indications for tests.
#ifndef TESTS_DELIVERY_TEST_INDICATIONS_H
#define TESTS_DELIVERY_TEST_INDICATIONS_H

#include "CIM_AlertIndication.h"
#include "CIM_ComputerSystem.h"
#include "CIM_InstModification.h"

#include <string>

namespace cimple
{

// One that is told from others by a text.
inline Ref<CIM_AlertIndication> alert(const std::string& text)
{
    Ref<CIM_AlertIndication> indication(CIM_AlertIndication::create(true));
    indication->MessageID.set(text.c_str());
    return indication;
}

inline Ref<CIM_ComputerSystem> computerSystem(const char* name, std::uint16_t status)
{
    Ref<CIM_ComputerSystem> one(CIM_ComputerSystem::create(true));
    one->Name.set(name);
    one->OperationalStatus.set(Array_uint16::make(status));
    return one;
}

// A switch whose status went from OK to Stopped.
inline Ref<CIM_InstModification> modification(const char* name)
{
    Ref<CIM_InstModification> indication(CIM_InstModification::create(true));
    indication->IndicationIdentifier.set(String("VRAX:", name));
    indication->IndicationTime.set(Datetime("20260314015926.535897+060"));
    indication->SourceInstance = clone(computerSystem(name, 10).ptr());
    indication->PreviousInstance = clone(computerSystem(name, 2).ptr());
    return indication;
}

} // namespace cimple

#endif
