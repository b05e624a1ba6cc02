// What the load of VRAX_FCPort publishes of each port.
#ifndef FABRICPROVIDERS_FCPORT_WRITER_H
#define FABRICPROVIDERS_FCPORT_WRITER_H

#include "common/Sml_Batch.h"
#include "common/fabric_walk.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"

namespace cimple
{

// A text that one instance after the other has in common, in one representation.
class Repeated_Text
{
  public:
    const String& of(const char* text)
    {
        if (_text != text)
            _text = text;
        return _text;
    }

  private:
    String _text;
};

// The visitor of walkAllPorts() that publishes each port that it is shown: one batch, one instance. A port
// that cannot be read is left out; any other failure is a VRAX_Except.
class VRAX_FCPort_Provider::Port_Writer
{
  public:
    Port_Writer(const DataCache& cache, Map_Writer<VRAX_FCPort>& map);

    void localPort(const Walked_Switch& owner, const Local_Port& port);
    void remotePort(const Walked_Switch& owner, const PortCache& port);
    void attachedPort(const Walked_Switch& at, const char* address);

  private:
    Owned<VRAX_FCPort> make() const;
    void setOwner(VRAX_FCPort& instance, const Walked_Switch& owner, const Wwn& portWwn);
    void fillLocal(VRAX_FCPort& instance, int domain) const;
    void fillRemote(VRAX_FCPort& instance) const;
    void fillAttached(VRAX_FCPort& instance);
    void finish(Owned<VRAX_FCPort>& instance, const char* insertionFailed, int line = __builtin_LINE());

    const DataCache& _cache;
    Map_Writer<VRAX_FCPort>& _map;
    Sml_Batch _local;
    Sml_Batch _remote;
    Sml_Batch _attached;
    const String _class{"VRAX_FCPort"};
    const String _switchClass{"VRAX_FCSwitch"};
    const String _fabricClass{"VRAX_Fabric"};
    Repeated_Text _switch;
    Repeated_Text _principal;
};

} // namespace cimple

#endif
