// The Fibre Channel endpoints of online switch ports and of attached node ports.
#include "fabricProviders/VRAX_ProtocolEndpoint_Provider.h"

#include "switchaccess/Attribute.h"
#include "switchaccess/CacheLock.h"
#include "switchaccess/Repeated_Text.h"
#include "switchaccess/fabric_walk.h"
#include "switchaccess/string_helpers.h"

#include <cstring>
#include <string>

namespace cimple
{

namespace
{

typedef VRAX_ProtocolEndpoint Is;

constexpr Attribute<Is> kLocalState[] = {{"Oper.UserPort.0.%s.OperState"}};
constexpr Attribute<Is> kRemoteState[] = {{"Oper.TopologyAll.%d.Entry.%d.PortState"}};
constexpr Attribute<Is> kAttachedWwn[] = {{"Oper.NameServerAll.%d.Entry.%s.PortWwn"}};

constexpr uint16 kProtocolTypeFibreChannel = 18;   // CIM_ProtocolEndpoint.ProtocolType
constexpr uint16 kProtocolIFTypeFibreChannel = 56; // CIM_ProtocolEndpoint.ProtocolIFType, as in IANA ifType

} // namespace

// Gives each port that it is shown an endpoint, if it is due one.
class VRAX_ProtocolEndpoint_Provider::Endpoint_Writer
{
  public:
    Endpoint_Writer(DataCache& cache, Map_Writer<VRAX_ProtocolEndpoint>& map) : _map(map)
    {
        const FabricCache* fabric = cache.getFabric(kLocalFabric);
        if (fabric != nullptr)
            _fabricWwn = fabric->getFabricWwn().c_str();
    }

    void localPort(const Walked_Switch& owner, const Local_Port& port)
    {
        if (_local.read({port.index.c_str()}) && isOnline(_local))
            add(_switchClass, _switch.of(owner.wwn.c_str()), port.wwn.c_str());
    }

    void remotePort(const Walked_Switch& owner, const PortCache& port)
    {
        const std::string entry = std::to_string(port.getEntryNumber());
        if (_remote.read({owner.domainText.c_str(), entry.c_str()}) && isOnline(_remote))
            add(_switchClass, _switch.of(owner.wwn.c_str()), port.getWwn().c_str());
    }

    // An entry without a WWN names no port.
    void attachedPort(const Walked_Switch& at, const char* address)
    {
        if (_attached.read({at.domainText.c_str(), address}) && _attached.text(0)[0] != '\0')
            add(_fabricClass, _fabricWwn, upperCased(_attached.text(0)).c_str());
    }

  private:
    static bool isOnline(const Attribute_Reader<Is>& state)
    {
        return std::strcmp(state.text(0), "Online") == 0;
    }

    void add(const String& systemClass, const String& systemName, const char* name)
    {
        Owned<VRAX_ProtocolEndpoint> endpoint = make();
        endpoint->SystemCreationClassName.set(systemClass);
        endpoint->SystemName.set(systemName);
        endpoint->CreationClassName.set(_class);
        endpoint->Name.set(name);
        endpoint->NameFormat.set(_nameFormat);
        endpoint->ProtocolType.set(kProtocolTypeFibreChannel);
        endpoint->ProtocolIFType.set(kProtocolIFTypeFibreChannel);
        VRAX_ProtocolEndpoint_Provider::add(_map, endpoint);
    }

    Map_Writer<VRAX_ProtocolEndpoint>& _map;
    Attribute_Reader<Is> _local{kLocalState};
    Attribute_Reader<Is> _remote{kRemoteState};
    Attribute_Reader<Is> _attached{kAttachedWwn};
    // Texts that the endpoints share.
    String _fabricWwn;
    Repeated_Text _switch;
    const String _switchClass{"VRAX_FCSwitch"};
    const String _fabricClass{"VRAX_Fabric"};
    const String _class{"VRAX_ProtocolEndpoint"};
    const String _nameFormat{"WWN"};
};

void VRAX_ProtocolEndpoint_Provider::build(Map_Writer<VRAX_ProtocolEndpoint>& map)
{
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, kSource);
    DataCache& cache = *DataCache::instance();
    Endpoint_Writer writer(cache, map);
    walkAllPorts(cache, writer);
}

} // namespace cimple
