// A scenario: the facts from which a simulated fabric starts. docs/simulator.md describes each field for
// authors.
#ifndef SIMULATOR_SCENARIO_SCENARIO_H
#define SIMULATOR_SCENARIO_SCENARIO_H

#include "simulator/model/names.h"
#include "simulator/scenario/ZoningScenario.h"
#include "simulator/scenario/cim_scenario.h"
#include "simulator/scenario/hardware_scenario.h"
#include "simulator/scenario/record_rules.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace simulator
{

constexpr int kMaxLocalPorts = 1536;
constexpr int kMaxRemotePorts = 4096; // a port number takes three hexadecimal digits of its WWN
constexpr int kMaxNodes = 20000;
constexpr int kMaxLogCapacity = 20000;

// A port of any switch; the second group of fields says something of the local switch's ports only.
struct PortScenario
{
    int number = 0;
    std::string wwn; // empty: computed from the switch's WWN and the port number
    AdminState adminState = AdminState::online;
    PortType type = PortType::gl;
    LinkState link = LinkState::automatic;
    bool failed = false;

    std::string name; // empty: "Port" and the number
    PortHardware hardware = PortHardware::fibreChannel;
    LinkSpeed speedCapability = LinkSpeed::gb8;
    LinkSpeed speed = LinkSpeed::automatic;
    DiagStatus diagnostics = DiagStatus::passed;
    RscnEnable rscn = RscnEnable::automatic;
    bool autoPerfTuning = true;
    bool mfs = false;
    bool lcf = false;
    bool vi = false;
    bool scan = true;
    int maxCredit = 16;     // buffer-to-buffer credits
    int rxLoadPercent = 20; // mean utilisation of the link's data rate
    int txLoadPercent = 20;
    int frameBytes = 1024; // mean frame length
    int class2Percent = 0; // share of class 2 frames; the rest is class 3
    int errorsPerHour = 0;
    int blade = 0; // the I/O blade that it sits on, from 1; 0: none
    std::vector<std::uint8_t>
        reserved; // bytes of the configuration record unknown to us; empty: made up by seed
};

struct SwitchScenario
{
    int domain = 0;
    bool local = false;
    std::string wwn;
    std::string name;
    AdminState adminState = AdminState::online;
    std::vector<PortScenario> ports; // by rising number

    // The local switch only.
    std::string type = "Rowan 5024";
    std::string productName;
    AdminState configuredAdminState = AdminState::online;
    bool transparent = false;
    std::vector<std::uint16_t> faults;
    int preferredDomain = 0; // 0: the domain it has
    bool domainLocked = false;
    int principalPriority = 0xFE;
    std::vector<std::uint8_t> reserved; // as in PortScenario

    // Texts of the local switch that are empty are texts that it does not have.
    std::string brand = "Tarvel";
    std::string chassisPartNumber = "TV-5024-C2";
    std::optional<std::string> chassisSerialNumber; // not given: made up by seed
    std::string planarPartNumber = "TV-5024-M1";
    ProductTexts product;
    std::string firmwareVersion = "V8.0.1.3.0";
    std::string standbyFirmwareVersion = "V8.0.0.4.0";
    std::string location;
    std::string ipAddress = "192.0.2.24";
    ServiceFlags services;

    // Numbered from 1.
    std::vector<TemperatureSensorScenario> temperatureSensors;
    std::vector<VoltageSensorScenario> voltageSensors;
    std::vector<PowerSupplyScenario> powerSupplies;
    std::vector<PartScenario> fans;
    std::vector<PartScenario> cpus;
    std::string adminModeHolder; // who has the administrative mode at the start; empty: nobody
    std::vector<BladeScenario> blades;
    std::vector<std::string> users = {"admin"}; // who may log in

    // Its logs. Entries begin with their number in brackets.
    bool logEnabled = true; // of the user log
    int logCapacity = 1000; // entries of each log
    std::vector<std::string> userLog;
    std::vector<std::string> alarmLog;

    std::vector<ListenerScenario> listeners;
    std::vector<SubscriptionScenario> subscriptions;
};

// A node port attached to a switch port.
struct NodeScenario
{
    int domain = 0;
    int port = 0;
    std::uint32_t address = 0; // 24-bit Fibre Channel address; 0: the next free one of the port's area
    std::string portWwn;
    std::string nodeWwn; // empty: the port WWN
    std::string portName;
    std::string nodeName;
    NodeRole role = NodeRole::target;
    NodePortType type = NodePortType::n;
    std::string classes = "3";
    std::string protocols = "FCP";
    LinkSpeed speed = LinkSpeed::gb8;
};

// A link between two switches.
struct IslScenario
{
    int domain = 0;
    int port = 0;
    int toDomain = 0;
    int toPort = 0;
    bool isolated = false;
};

struct Scenario
{
    int seed = 1;             // of everything made up
    int uptimeSeconds = 0;    // model time at the start: counters have been running for so long
    int principal = 0;        // domain of the principal switch; 0: the lowest domain
    bool noPrincipal = false; // the fabric has not formed
    std::vector<SwitchScenario> switches;
    std::vector<NodeScenario> nodes;
    std::vector<IslScenario> isls;
    ZoningScenario zoning;
};

// A scenario that cannot be used. what() names the source, the place and what was expected there.
class ScenarioError : public std::runtime_error
{
  public:
    // `place` is a JSON pointer (RFC 6901) into the scenario; empty for the whole of it.
    ScenarioError(const std::string& place, const std::string& message)
        : std::runtime_error(place.empty() ? message : place + ": " + message)
    {
    }
};

// Checks what a single field cannot show: that switches, ports and addresses exist and are used once.
// Throws ScenarioError.
void validate(const Scenario& scenario);

} // namespace simulator

#endif
