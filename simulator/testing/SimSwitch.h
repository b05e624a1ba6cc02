// The simulated switch in the hands of a test: verbs a person would use, counts of platform calls, failures
// on demand and a clock that stands still.
//
//     SimSwitch sim = SimSwitch::make().ports(8).uptimeSeconds(60);
//     sim.portDown(3);
//     sim.failNext("xpl_smlGetBatch");
//     sim.mark();
//     ... what is tested ...
//     EXPECT_EQ(8u, sim.calls("xpl_smlGetBatch"));
#ifndef SIMULATOR_TESTING_SIMSWITCH_H
#define SIMULATOR_TESTING_SIMSWITCH_H

#include "platform/xpl_types.h"
#include "simulator/testing/SimSwitchSetup.h"
#include "simulator/testing/ZoningSetup.h"

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace simulator
{

// While it lives, the process's simulated switch is this one; a second one at the same time stops the
// program. Its end takes back failures, hooks and values, but leaves the fabric. Its functions may be called
// from any thread, but those that say "fabric" not by a thread that holds the data cache's read lock. They
// throw std::invalid_argument or ScenarioError when they name something that does not exist.
class SimSwitch
{
  public:
    static SimSwitchSetup make() { return SimSwitchSetup(); }

    SimSwitch(const SimSwitchSetup& setup); // not explicit: see the example above
    explicit SimSwitch(const Scenario& scenario);
    ~SimSwitch();
    SimSwitch(const SimSwitch&) = delete;
    SimSwitch& operator=(const SimSwitch&) = delete;

    // Starts over with another fabric; counts, failures and the clock begin again.
    void open(const Scenario& scenario);

    // --- What happens on and around the switch ---
    void portDown(int port);                     // the link is lost: the cable is pulled
    void portUp(int port);                       // the link is there, whether or not anything is attached
    void failPort(int port, bool failed = true); // the hardware goes down, the diagnostics fail
    void changePort(int port, const std::function<void(PortScenario&)>& change);
    void
    changeSwitch(const std::function<void(SwitchScenario&)>& change); // the local one; not its WWN or domain
    void setCounter(int port, std::string_view counter, std::uint64_t value); // "TotalLIPRecv"
    void setPrincipal(int domain);                                            // 0: the fabric has none

    void addNode(const NodeScenario& node);    // fabric
    void removeNode(std::string_view portWwn); // fabric
    void addSwitch(const SwitchScenario& one); // fabric; a remote one
    void removeSwitch(int domain);             // fabric
    void addIsl(const IslScenario& link);
    void setSwitchState(int domain, AdminState state); // of any switch

    // --- Who uses it ---
    void addUser(const std::string& name);
    void removeUser(const std::string& name);
    void changePassword(const std::string& user);
    void refuseLogin(const std::string& user); // known or not
    // Changes of zoning by somebody else than the CIM agent; they throw when the switch refuses.
    void addZone(const std::string& name, const std::string& by = "console");
    void activateZoneSet(const std::string& name, const std::string& by = "console");
    void deactivateZoneSet(const std::string& by = "console");

    // --- What happens to the hardware, by number from 1 ---
    void failSupply(int supply);
    void warnSupply(int supply);
    void pullSupply(int supply);
    void insertSupply(int supply); // one that works
    void setFan(int fan, PartState state);
    void setCpu(int cpu, PartState state);
    void pinTemperature(int sensor, double celsius); // it reads exactly this until it is released
    void pinVoltage(int sensor, double volts);
    void breakSensor(SensorKind kind, int sensor);   // it cannot be read
    void releaseSensor(SensorKind kind, int sensor); // it works, and reads what there is
    void failBlade(int blade);                       // its diagnostics fail with it
    void pullBlade(int blade);
    void insertBlade(int blade); // one that works
    void switchBlade(int blade, AdminState state);

    // --- The administrative mode ---
    void holdAdminMode(const std::string& holder); // takes it, as "console"; it must be free
    void releaseAdminMode();                       // gives back what holdAdminMode took
    void adminOwnerGoes();               // whoever holds it is gone; an edit session ends without saving
    std::string adminModeHolder() const; // empty: it is free; "edit session", or as somebody took it

    // --- Time: milliseconds of model time ---
    void advance(std::chrono::milliseconds time);
    std::uint64_t now() const;

    // --- What the caller did, since the start or the last mark() ---
    // Calls are named as in platform/: "xpl_smlGetBatch", "DataCache::dcRdLock",
    // "get_Local_Switch_World_Wide_Name".
    void mark();
    std::size_t calls(std::string_view call) const;
    std::size_t platformCalls() const;                // of all kinds
    std::size_t entries(std::string_view call) const; // of batches
    std::size_t keyUses(std::string_view key) const;  // reads and writes of one key
    std::vector<std::vector<std::string>> batches(std::string_view call = "xpl_smlGetBatch") const;
    // All writes in order, of whichever call: the keys of the attribute store as they were written, "switch"
    // and "port/7" for configuration records, "reset" for the switch's reset, "fzs create zone NAME" and the
    // like for zoning. Refused ones are among them, those of a call that failed as a whole are not.
    std::vector<std::string> writes() const;
    // The events that the switch raised meanwhile, in order, received by somebody or not: see textOf in
    // simulator/model/SwitchEvent.h.
    std::vector<std::string> events() const;
    // Recording of keys, batches, writes and events; on at the start. Counting by call always happens.
    void recordKeys(bool on);

    // --- Failures ---
    // `what` is a call, a key, or the beginning of keys, which ends with a point ("Oper.Switch."). A key
    // fails its own entry. Calls that return no status return nothing: an empty text, no cell value, no lock.
    void failNext(std::string_view what,
                  int times = 1,
                  std::int32_t status = XPL_UNREACHABLE,
                  int afterSkipping = 0);
    void failKey(const std::string& key, std::int32_t status = XPL_UNREACHABLE); // for good
    void failBatchWith(const std::string& key,
                       std::int32_t status = XPL_UNREACHABLE); // batches that hold the key
    void failRecord(const std::string& record, std::int32_t status = XPL_UNREACHABLE); // "switch" or "port/7"
    void refuseCacheLock(int times = 1);
    void answer(const std::string& key, const std::string& value); // instead of what the model says
    void setLatency(std::string_view call, std::chrono::microseconds latency);
    // Runs `hook` in each such call before it does anything, for example to wait on a latch.
    void onCall(std::string_view call, std::function<void()> hook);
    // Takes back all of this group.
    void restore();

    // --- What can be seen of it ---
    Scenario scenario() const; // as it is now
    PortScenario port(int number) const;
    SwitchScenario localSwitch() const;
    ZoningView zoning() const;
    std::vector<ListenerScenario> listeners() const; // by rising name, as are the next
    std::vector<SubscriptionScenario> subscriptions() const;
    ActiveZoneSetView activeZoneSetOf(int domain) const;
    void save(const std::string& path) const;
    int heldCacheLocks() const;            // read locks held at present
    int cacheWriters() const;              // threads that change the fabric or wait to
    std::size_t outstandingBlocks() const; // handed out and not given back to xpl_libFreeMemory

  private:
    void begin(const Scenario& scenario);
};

} // namespace simulator

#endif
