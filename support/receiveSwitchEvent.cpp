// The receiver of the switch's events.
#include "support/receiveSwitchEvent.h"

#include "support/VRAX_Maps.h"

#include <initializer_list>

namespace cimple
{

namespace
{

// Events and the maps that they make stale. Associations follow the maps of their ends.
struct Stale_Maps
{
    std::initializer_list<std::int32_t> events;
    std::initializer_list<providerEnum_t> maps;
};

constexpr Stale_Maps kStaleMaps[] = {
    {{XPL_EVENT_FABRIC_ADDED,
      XPL_EVENT_FABRIC_REMOVED,
      XPL_EVENT_FABRIC_TOPOLOGY,
      XPL_EVENT_SWITCH_ADDED,
      XPL_EVENT_SWITCH_REMOVED,
      XPL_EVENT_PRINCIPAL_CHANGED},
     {VRAX_SAN_Idx,
      VRAX_Fabric_Idx,
      VRAX_LogicalNetwork_Idx,
      VRAX_FCSwitch_Idx,
      VRAX_FCPort_Idx,
      VRAX_FCNode_Idx,
      VRAX_ProtocolEndpoint_Idx}},
    {{XPL_EVENT_SWITCH_STATUS}, {VRAX_FCSwitch_Idx}},
    {{XPL_EVENT_BLADE_ADDED, XPL_EVENT_BLADE_REMOVED, XPL_EVENT_BLADE_STATUS},
     {VRAX_LogicalIOBlade_Idx, VRAX_PhysicalIOBlade_Idx}},
    {{XPL_EVENT_PORT_CREATED, XPL_EVENT_PORT_DELETED},
     {VRAX_FCPort_Idx,
      VRAX_ProtocolEndpoint_Idx,
      VRAX_FCPortSettings_Idx,
      VRAX_FCPortCapabilities_Idx,
      VRAX_FCPortStatistics_Idx,
      VRAX_FCPortRateStatistics_Idx}},
    {{XPL_EVENT_PORT_STATUS}, {VRAX_FCPort_Idx, VRAX_ProtocolEndpoint_Idx}},
    {{XPL_EVENT_NODE_LOGGED_IN, XPL_EVENT_NODE_LOGGED_OUT},
     {VRAX_FCPort_Idx, VRAX_FCNode_Idx, VRAX_ProtocolEndpoint_Idx}},
    {{XPL_EVENT_POWER_SUPPLY_ADDED, XPL_EVENT_POWER_SUPPLY_REMOVED, XPL_EVENT_POWER_SUPPLY_FAILED},
     {VRAX_PowerSupply_Idx}},
    {{XPL_EVENT_ZONE_SET_ACTIVATED, XPL_EVENT_ZONING_CHANGED},
     {VRAX_ZoneSet_Idx, VRAX_Zone_Idx, VRAX_ZoneMembership_Idx, VRAX_ZoneAlias_Idx}},
    {{XPL_EVENT_ENVIRONMENT}, {VRAX_TemperatureSensor_Idx, VRAX_VoltageSensor_Idx}},
    {{XPL_EVENT_SUBSCRIPTIONS_CHANGED}, {CIM_ListenerDestinationCIMXML_Idx, CIM_IndicationSubscription_Idx}},
};

} // namespace

void receiveSwitchEvent(const xpl_SwitchEvent* event)
{
    if (event == nullptr)
        return;
    VRAX_Maps& maps = *VRAX_Maps::getInstance();
    for (const Stale_Maps& row : kStaleMaps)
        for (const std::int32_t type : row.events)
            if (type == event->type)
                for (const providerEnum_t map : row.maps)
                    maps.InstMapForceUnload(map);
    for (std::size_t kind = 0; kind < kIndicationKinds; ++kind)
        maps.eventList(static_cast<Indication_Kind>(kind)).put(*event);
}

} // namespace cimple
