// The walks over the fabric that loads are made of: switches, their own ports, the node ports attached to
// them.
#include "switchaccess/fabric_walk.h"

#include <cstdio>

namespace cimple
{

void Fabric_Switches::start()
{
    _fabric = _cache.getFabric(kLocalFabric);
    _switch = _fabric != nullptr ? _fabric->getFirstSwitch() : nullptr;
}

void Local_Ports::start()
{
    _indexes.start();
    name();
}

void Local_Ports::advance()
{
    _indexes.advance();
    name();
}

void Local_Ports::name()
{
    if (!_indexes.atEnd())
        _wwn = _cache.calcPortWwn(_switchWwn, _indexes.current());
}

Domain_Text::Domain_Text(int domainId)
{
    std::snprintf(_text.data(), _text.size(), "%d", domainId);
}

} // namespace cimple
