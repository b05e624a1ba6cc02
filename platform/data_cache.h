// The fabric data cache: what the local switch knows of the fabric's switches and ports.
//
// Everything reached from the cache stays valid and unchanged only while the caller holds the cache's read
// lock; calls made without it are safe one by one, but two of them may see two states of the fabric. All
// calls may be made from any thread.
#ifndef PLATFORM_DATA_CACHE_H
#define PLATFORM_DATA_CACHE_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// A World Wide Name (FC-FS-3) as a text of 16 hexadecimal digits, without separators, in the letter case in
// which it entered the fabric. An empty name means "none". Comparison is by bytes: case matters.
class Wwn
{
  public:
    Wwn() = default;
    explicit Wwn(std::string text) : _text(std::move(text)) {}

    const std::string& toString() const { return _text; }
    const char* c_str() const { return _text.c_str(); }
    bool empty() const { return _text.empty(); }

    friend bool operator==(const Wwn& a, const Wwn& b) { return a._text == b._text; }
    friend bool operator!=(const Wwn& a, const Wwn& b) { return a._text != b._text; }

  private:
    std::string _text;
};

// A port of a switch as the fabric topology reports it. A value: copies stay valid.
class PortCache
{
  public:
    PortCache() = default; // the null port that ends a walk
    PortCache(int entryNumber, Wwn wwn) : _entryNumber(entryNumber), _wwn(std::move(wwn)) {}

    bool isNull() const { return _entryNumber < 0; }
    const Wwn& getWwn() const { return _wwn; }
    // The port's number in the switch's topology table, for the "Oper.TopologyAll.%d.Entry.%d" keys.
    int getEntryNumber() const { return _entryNumber; }

  private:
    int _entryNumber = -1;
    Wwn _wwn;
};

// A switch of a fabric. Owned by the cache.
class SwitchCache
{
  public:
    virtual Wwn getWwn() const = 0;
    virtual int getDomainID() const = 0; // 1 to 239 (FC-SW-3)
    virtual bool isLocal() const = 0;

    // Walk the ports of the topology, in order of entry number; the null port ends the walk.
    virtual PortCache getFirstPort() const = 0;
    virtual PortCache getNextPort(const PortCache& previous) const = 0;

  protected:
    ~SwitchCache() = default;
};

// A fabric. Owned by the cache.
class FabricCache
{
  public:
    // The fabric's name: the WWN of its principal switch; empty while the fabric has none.
    virtual Wwn getFabricWwn() const = 0;

    // Walk the switches, in order of domain ID; null ends the walk.
    virtual SwitchCache* getFirstSwitch() const = 0;
    virtual SwitchCache* getNextSwitch(const SwitchCache* previous) const = 0;

  protected:
    ~FabricCache() = default;
};

// What getPortHWType answers.
constexpr int kPortHWTypeFibreChannel = 1;
constexpr int kPortHWTypeEthernet = 2;

class DataCache
{
  public:
    // The process-wide cache, created by the first call; never null.
    static DataCache* instance();

    // Take and release the read lock. dcRdLock returns 0 when the lock is held, otherwise an errno value and
    // nothing is held. A thread that holds the lock may take it again, also while a writer waits; every
    // successful dcRdLock needs its own dcRdUnlock by the same thread.
    virtual int dcRdLock() = 0;
    virtual void dcRdUnlock() = 0;

    // Fabrics are numbered from 1; null when there is no such fabric. Owned by the cache.
    virtual FabricCache* getFabric(int number) = 0;

    // The local switch.
    virtual Wwn getRootSwitchWwn() const = 0;
    // True when the local switch forwards its ports to another fabric instead of being a domain of its own.
    virtual bool isTransparentSwitch() const = 0;
    // Codes of the faults that the local switch reports at present.
    virtual std::vector<std::uint16_t> getSwitchFaults() const = 0;

    // Walk the local ports. A port index is the port's number as a decimal text; an empty text ends the walk.
    virtual std::string getFirstRootPortIndex() const = 0;
    virtual std::string getNextRootPortIndex(const std::string& previous) const = 0;

    // kPortHWTypeFibreChannel or kPortHWTypeEthernet; 0 when there is no such port.
    virtual int getPortHWType(const std::string& portIndex) const = 0;

    // Convert between port index and port WWN of the switch `switchWwn`, which must be the local one
    // (compared without regard to case). Empty when there is no such switch or port.
    virtual Wwn calcPortWwn(const Wwn& switchWwn, const std::string& portIndex) const = 0;
    virtual std::string calcPortIndex(const Wwn& switchWwn, const Wwn& portWwn) const = 0;

  protected:
    ~DataCache() = default;
};

#endif
