// The walks over the fabric that loads are made of: switches, their own ports, the node ports attached to
// them.
//
// Each is a range for one range-based for. The platform is asked step by step, as the loop goes on; what the
// loop variable refers to is valid until the next step. The caller holds the data cache's read lock
// (CacheLock) throughout.
//     for (const SwitchCache& one : Fabric_Switches(cache))
//         for (const char* address : Attached_Ports(Domain_Text(one.getDomainID())))
#ifndef SWITCHACCESS_FABRIC_WALK_H
#define SWITCHACCESS_FABRIC_WALK_H

#include "platform/data_cache.h"
#include "platform/switch_server.h"

#include <array>
#include <string>
#include <utility>

namespace cimple
{

// The data cache's number of the fabric that the local switch is part of.
constexpr int kLocalFabric = 1;

// Ends every walk.
struct Walk_End
{
};

// Makes a WALK with start(), advance(), atEnd() and current() a range.
template <class WALK>
class Walk
{
  public:
    class Iterator
    {
      public:
        explicit Iterator(WALK& walk) : _walk(walk) {}
        decltype(auto) operator*() const { return _walk.current(); }
        Iterator& operator++()
        {
            _walk.advance();
            return *this;
        }
        bool operator!=(Walk_End) const { return !_walk.atEnd(); }

      private:
        WALK& _walk;
    };

    Iterator begin()
    {
        WALK& walk = static_cast<WALK&>(*this);
        walk.start();
        return Iterator(walk);
    }
    Walk_End end() const { return Walk_End(); }
};

// The switches of the fabric, each a const SwitchCache&. None while there is no fabric.
class Fabric_Switches : public Walk<Fabric_Switches>
{
  public:
    explicit Fabric_Switches(DataCache& cache) : _cache(cache) {}
    void start();
    void advance() { _switch = _fabric->getNextSwitch(_switch); }
    bool atEnd() const { return _switch == nullptr; }
    const SwitchCache& current() const { return *_switch; }

  private:
    DataCache& _cache;
    const FabricCache* _fabric = nullptr;
    const SwitchCache* _switch = nullptr;
};

// The indexes of the local ports, each a const std::string&.
class Root_Ports : public Walk<Root_Ports>
{
  public:
    explicit Root_Ports(const DataCache& cache) : _cache(cache) {}
    void start() { _index = _cache.getFirstRootPortIndex(); }
    void advance() { _index = _cache.getNextRootPortIndex(_index); }
    bool atEnd() const { return _index.empty(); }
    const std::string& current() const { return _index; }

  private:
    const DataCache& _cache;
    std::string _index;
};

struct Local_Port
{
    const std::string& index; // the port number as a decimal text
    const Wwn& wwn;           // computed, not what the port says of itself
};

// The local ports with their computed WWNs, each a Local_Port. A port without a WWN ends the walk.
class Local_Ports : public Walk<Local_Ports>
{
  public:
    Local_Ports(const DataCache& cache, Wwn switchWwn)
        : _cache(cache), _switchWwn(std::move(switchWwn)), _indexes(cache)
    {
    }
    void start();
    void advance();
    bool atEnd() const { return _indexes.atEnd() || _wwn.empty(); }
    Local_Port current() const { return {_indexes.current(), _wwn}; }

  private:
    void name();

    const DataCache& _cache;
    Wwn _switchWwn;
    Root_Ports _indexes;
    Wwn _wwn;
};

// The ports of a switch as the topology reports them, each a const PortCache&. A port without a WWN ends the
// walk, as the null port does.
class Topology_Ports : public Walk<Topology_Ports>
{
  public:
    explicit Topology_Ports(const SwitchCache& owner) : _owner(owner) {}
    void start() { _port = _owner.getFirstPort(); }
    void advance() { _port = _owner.getNextPort(_port); }
    bool atEnd() const { return _port.isNull() || _port.getWwn().empty(); }
    const PortCache& current() const { return _port; }

  private:
    const SwitchCache& _owner;
    PortCache _port;
};

// A domain ID as the decimal text that names the switch in platform calls and attribute keys.
class Domain_Text
{
  public:
    explicit Domain_Text(int domainId);
    const char* c_str() const { return _text.data(); }

  private:
    static constexpr std::size_t kSize = 30;
    std::array<char, kSize> _text;
};

// The addresses of the node ports attached to the switch of a domain, each a const char*.
class Attached_Ports : public Walk<Attached_Ports>
{
  public:
    explicit Attached_Ports(const Domain_Text& domain) : _domain(domain) {}
    void start() { _token = get_first_attached_port(_domain.c_str(), _address.data()); }
    void advance() { _token = get_next_attached_port(_domain.c_str(), _token, _address.data()); }
    bool atEnd() const { return _token == 0; }
    const char* current() const { return _address.data(); }

  private:
    Domain_Text _domain;
    int _token = 0;
    std::array<char, kAttachedPortAddressSize> _address{};
};

// A switch as the walk over all ports shows it.
struct Walked_Switch
{
    int domain;
    Domain_Text domainText;
    Wwn wwn;
};

// Walks every port that the local switch knows of: of each switch its own ports, then the node ports attached
// to it. VISITOR has
//   void localPort(const Walked_Switch& owner, const Local_Port& port);
//   void remotePort(const Walked_Switch& owner, const PortCache& port);
//   void attachedPort(const Walked_Switch& at, const char* address);
template <class VISITOR>
void walkAllPorts(DataCache& cache, VISITOR& visitor)
{
    for (const SwitchCache& one : Fabric_Switches(cache))
    {
        const int domain = one.getDomainID();
        const Walked_Switch walked{domain, Domain_Text(domain), one.getWwn()};
        if (one.isLocal())
            for (const Local_Port port : Local_Ports(cache, walked.wwn))
                visitor.localPort(walked, port);
        else
            for (const PortCache& port : Topology_Ports(one))
                visitor.remotePort(walked, port);
        for (const char* address : Attached_Ports(walked.domainText))
            visitor.attachedPort(walked, address);
    }
}

} // namespace cimple

#endif
