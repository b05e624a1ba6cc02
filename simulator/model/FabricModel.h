// The state of a simulated fabric: switches, ports and attached nodes, and what follows from it.
//
// Plain data with its rules; nothing here locks, counts or fails on demand (see engine/).
#ifndef SIMULATOR_MODEL_FABRICMODEL_H
#define SIMULATOR_MODEL_FABRICMODEL_H

#include "simulator/model/CimSubscriptions.h"
#include "simulator/model/ConfigEdit.h"
#include "simulator/model/History.h"
#include "simulator/model/Node.h"
#include "simulator/model/OperationalStatus.h"
#include "simulator/model/TrafficMeter.h"
#include "simulator/model/Warmth.h"
#include "simulator/model/Zoning.h"
#include "simulator/scenario/Scenario.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulator
{

// Where a port is in the fabric.
struct PortPlace
{
    int domain = 0;
    int port = 0;
};

struct Port
{
    // A port of the local switch, or of another, of which nothing is made up but its name.
    Port(const PortScenario& facts, std::uint64_t seed, bool local);

    PortScenario facts;                  // with all defaults filled in
    std::unique_ptr<TrafficMeter> meter; // of local ports; null in others
    std::vector<std::uint32_t> attached; // addresses of the attached node ports, rising
    std::optional<PortPlace> peer;       // the other end of a link to another switch
    bool peerSends = false;              // the other end is not switched off or broken
    bool peerJoins = false;              // the other end's type takes a link between switches
    bool isolated = false;
    bool initiators = false;                    // one of the nodes is an initiator
    LinkSpeed nodeSpeed = LinkSpeed::automatic; // the slowest of the nodes; automatic: no limit
    bool loop = false;                          // one of the nodes is on a loop
    std::string_view toldState;                 // its state when something was last told of it
    std::vector<std::uint32_t> toldNodes;       // and the nodes that were logged in through it
    bool joined = false;                        // the link to another switch is up
    int carriedPercent = 0;                     // what a port that is online adds to its switch's
};

struct Switch
{
    SwitchScenario facts;                // without its ports
    std::vector<Port> ports;             // by rising number
    std::map<std::uint32_t, Node> nodes; // by address; all facts filled in
    std::uint64_t seed = 0;
    OperationalStatus toldStatus; // its status when something was last told of it
    int carriedPercent = 0;       // the loads of both directions of all ports that are online
    Warmth warmth;
    std::shared_ptr<const ActiveZoneSet> activeZoneSet; // null when none is; shared by the whole fabric

    Port* port(int number);
    const Port* port(int number) const;
    // The first port with a number above `number`; null when there is none.
    const Port* portAfter(int number) const;
};

class FabricModel
{
  public:
    // Throws ScenarioError.
    explicit FabricModel(const Scenario& scenario);

    // The scenario that would start a fabric like this one: its durable part.
    Scenario toScenario() const;
    // What it has of the local switch and the zoning.
    Scenario localScenario() const;

    // Makes the local switch what an image of its configuration says (see configuration.h); the active zone
    // set reaches every switch that is linked. Throws ScenarioError and changes nothing.
    void restoreConfiguration(const Scenario& image, std::uint64_t now);
    void restorationRefused(const std::string& reason, std::uint64_t now); // for the log

    Switch& local() { return *_local; }
    const Switch& local() const { return *_local; }
    // The local port with this index; null when there is none. Indexes are plain decimal texts: "07" is no
    // index.
    Port* localPort(std::string_view index);
    const Port* localPort(std::string_view index) const;
    Switch* switchOf(int domain);
    const Switch* switchOf(int domain) const;
    // By rising domain.
    const std::map<int, Switch>& switches() const { return _switches; }
    // Null while the fabric has none.
    const Switch* principal() const;
    void setPrincipal(int domain, std::uint64_t now); // 0: none

    // The attached node port with this address, while its switch port is online; null otherwise.
    const Node* node(int domain, std::uint32_t address) const;
    // The first such node above `address`.
    const Node* nodeAfter(int domain, std::uint32_t address) const;

    // Changes. Each throws ScenarioError when it names what is not there or already is.
    void addSwitch(const SwitchScenario& facts, std::uint64_t now);
    void removeSwitch(int domain, std::uint64_t now); // its links go down; a remote one only
    void addNode(NodeScenario node, std::uint64_t now);
    void removeNode(std::string_view portWwn, std::uint64_t now);
    void addIsl(const IslScenario& link, std::uint64_t now);
    void setSwitchState(int domain, AdminState state, std::uint64_t now); // of any switch

    // Changes the facts of a local port.
    void changePort(int number, const std::function<void(PortScenario&)>& change, std::uint64_t now);

    // What happens to the hardware of the local switch, by number from 1. Each throws ScenarioError for what
    // does not exist, and when something fails that is not there.
    void setPart(PartKind kind, int number, PartState state, std::uint64_t now);
    // It reads this whatever happens; it cannot be read; it works, and reads what there is.
    void pinSensor(SensorKind kind, int number, int reading, std::uint64_t now);
    void breakSensor(SensorKind kind, int number, std::uint64_t now);
    void releaseSensor(SensorKind kind, int number, std::uint64_t now);
    void failBlade(int number, std::uint64_t now); // its diagnostics fail with it
    void pullBlade(int number, std::uint64_t now);
    void insertBlade(int number, std::uint64_t now); // one that works
    void setBladeAdminState(int number, AdminState state, std::uint64_t now);

    // Who may log in to the local switch. Each but the last throws ScenarioError when there is no such user,
    // or one already.
    void addUser(const std::string& name, std::uint64_t now);
    void removeUser(const std::string& name, std::uint64_t now);
    void changePassword(const std::string& user, std::uint64_t now);
    void refuseLogin(const std::string& user, std::uint64_t now); // known or not

    // The listeners and subscriptions of the CIM agent. `change` is told the seconds since the epoch; what it
    // returns is returned.
    const CimSubscriptions& cim() const { return _cim; }
    std::int32_t
    changeCim(std::uint64_t now,
              const std::function<std::int32_t(CimSubscriptions& cim, std::int64_t seconds)>& change);

    // What time alone brings about: sensors reach a threshold, subscriptions end. Returns true when something
    // came of it. Must be called before the model is used at or after nextCatchUp().
    bool catchUp(std::uint64_t now);
    std::uint64_t nextCatchUp() const;

    // The zoning of the fabric. What changes it names who does and returns 0 or the status with which the
    // switch refuses. Direct changes and activation take the administrative mode for their duration:
    // XPL_FZS_LOCKED while somebody has it.
    const Zoning& zoning() const { return _zoning; }
    const AdminMode& adminMode() const { return _adminMode; }
    std::int32_t changeZoning(std::string_view by,
                              std::uint64_t now,
                              const std::function<std::int32_t(ZoningDatabase& configured)>& change);
    std::int32_t activateZoneSet(std::string_view name, std::string_view by, std::uint64_t now);
    std::int32_t deactivateZoneSet(std::string_view by, std::uint64_t now);
    void setDefaultZone(bool allowed) { _zoning.defaultZone = allowed; }
    // The edit session, which holds the administrative mode. Beginning fails while somebody has that, the
    // others without a session.
    bool beginZoningEdit();
    bool endZoningEdit(bool save, std::uint64_t now);
    // The session's copy of the configured database; null outside a session.
    ZoningDatabase* zoningEdit() { return _zoning.pending ? &*_zoning.pending : nullptr; }
    // False while somebody holds the administrative mode.
    bool takeAdminMode(std::string_view holder) { return _adminMode.take(holder); }
    // Whoever holds it is gone; an edit session ends without saving, and so does an edit of the
    // configuration.
    void abandonAdminMode();

    // The edit of the configuration, for whoever holds the administrative mode; null while there is none.
    ConfigEdit* configEdit() { return _configEdit ? &*_configEdit : nullptr; }
    bool beginConfigEdit(); // false when one is under way
    void cancelConfigEdit() { _configEdit.reset(); }
    // Puts in force what was saved, which ends the edit. Returns 0 or the status with which the switch
    // refuses: then the edit goes on and nothing is changed.
    std::int32_t activateConfigEdit(std::uint64_t now);
    // Whether a local port may have the list: it is of type TH, and all in the list are of type TF.
    bool fitsTfPorts(int port, const TfPorts& ports) const;
    // Whether a local port may be given the type: one with a list stays TH, one in a list stays TF.
    bool mayHaveType(const PortScenario& port, PortType type) const;

    // The logs of the local switch. What happens to the fabric, the hardware and zoning is written there, and
    // raised as an event, by the changes above and below; whoever changes a configuration says so.
    SwitchLogs& logs() { return _history.logs(); }
    const SwitchLogs& logs() const { return _history.logs(); }
    void configurationWritten(std::string_view what, std::uint64_t now);
    // The events raised since they were last taken, in order.
    std::vector<SwitchEvent> takeEvents() { return _history.takeEvents(); }

    // One must be called when facts of a port, or of its switch, have changed: its counters, and those of the
    // port at the other end of a link between switches, run or stand accordingly, and what follows is told.
    void linkChanged(Switch& owner, Port& port, std::uint64_t now);
    void allLinksChanged(Switch& owner, std::uint64_t now);

    std::uint64_t startTime() const { return _startTime; } // model time at the start, milliseconds

  private:
    Scenario withoutSwitches() const;
    SwitchScenario scenarioOf(const Switch& one) const;

    // Each throws ScenarioError when there is none.
    Switch& switchWith(int domain);
    PartScenario& part(PartKind kind, int number);
    SensorScenario& sensor(SensorKind kind, int number);
    BladeScenario& blade(int number);

    // An event of the local switch, and one that names the fabric too.
    SwitchEvent event(xpl_SwitchEventType type) const;
    SwitchEvent fabricEvent(xpl_SwitchEventType type) const;
    std::string fabricWwn() const; // empty while it has no principal switch

    // What follows is called when the thing may have changed; it tells of it if it has.
    template <class Change> // void(BladeScenario& blade)
    void changeBlade(int number, std::uint64_t now, Change change);
    void portChanged(Switch& owner, Port& port, std::uint64_t now);
    void switchStatusChanged(Switch& one, std::uint64_t now);
    void switchesJoinOrPart(std::uint64_t now);
    void principalChanged(const std::string& fabricBefore, std::uint64_t now);
    void userEvent(xpl_SwitchEventType type,
                   const std::string& user,
                   const std::string& message,
                   std::uint64_t now);
    bool sensorsChanged(std::uint64_t now); // true when they have
    void warmthChanged(std::uint64_t now);
    // The lowest domain of those that each switch reaches over links, by its own domain.
    std::map<int, int> parts() const;
    void switchCame(const Switch& one, std::uint64_t now);
    void switchGoes(const Switch& one, std::uint64_t now);
    // Every change of the local switch's zoning passes here once it has happened.
    void zoningChanged(ZoningChange::Kind kind, std::string_view by, std::uint64_t now);
    // Makes the set (or none) the active one of a switch and of those that it is linked to, directly or over
    // others: of all, or only as far as they have none.
    enum class Reach
    {
        all,
        withoutActiveSet
    };
    void setActiveZoneSet(Switch& first, const std::shared_ptr<const ActiveZoneSet>& set, Reach reach);
    // Two switches are linked through the port: one without active zone set takes the other's.
    void mergeZoning(Switch& owner, const Port& port, std::uint64_t now);

    std::uint64_t _seed;
    std::uint64_t _startTime;
    int _principal = 0;
    std::map<int, Switch> _switches;
    std::vector<IslScenario> _isls;
    Switch* _local = nullptr;
    AdminMode _adminMode;
    std::optional<ConfigEdit> _configEdit;
    Zoning _zoning;
    History _history;
    CimSubscriptions _cim;
    std::map<int, int> _parts; // when something was last told of them
    std::map<SensorKind, std::vector<SensorState>> _toldSensors;
    std::uint64_t _lastLook = 0; // at the sensors
};

// The load that the facts describe.
Load loadOf(const PortScenario& facts);

// What the switch says of a port: "Online", "Offline", "Isolated", "Downed", "Diagnostics".
std::string_view operState(const Switch& owner, const Port& port);
bool isOnline(const Switch& owner, const Port& port);
// True while the port would bring up a link: it is neither switched off nor broken.
bool sends(const Switch& owner, const Port& port);
// Lets the port at the other end of a link between switches know of this one.
void tellPeer(const Switch& owner, const Port& port, Port& peer);
// True when a port configured so takes a link to another switch.
bool joinsSwitches(PortType type);
// "E", "F", "FL", ...; "Unknown" while the port is not online and its type is negotiated.
std::string_view runningType(const Switch& owner, const Port& port);
// The negotiated speed; LinkSpeed::automatic while the port is not online.
LinkSpeed linkSpeed(const Switch& owner, const Port& port);
// The port's WWN as the fabric gives it: digit 2, three digits of port number, the switch's 12 low digits.
std::string portWwn(std::string_view switchWwn, int number);
// The WWN by which the fabric knows the port. A local port's is computed, whatever its hardware reads.
std::string fabricWwn(const Switch& owner, const Port& port);
// The reverse of portWwn; the port need not exist.
std::optional<int> portNumberOf(std::string_view switchWwn, std::string_view wwn);

} // namespace simulator

#endif
