// Reads the value elements of CIM-XML: names, paths, values, instances and arguments.
#ifndef AGENT_XML_ELEMENTREADER_H
#define AGENT_XML_ELEMENTREADER_H

#include "agent/cim/Argument.h"
#include "agent/cim/CimError.h"
#include "agent/cim/Instance.h"
#include "agent/cim/ObjectPath.h"
#include "agent/limits/Limits.h"
#include "agent/xml/XmlDocument.h"

#include <optional>
#include <string>
#include <string_view>

namespace cimd
{

// Elements and attributes are those of DSP0201. What is not as it must be (a missing attribute, a text that
// is not of its type, an element in the wrong place) throws CimError InvalidParameter with a text that names
// element and fault. Qualifiers of instances are skipped; attributes that nobody knows are ignored.
class ElementReader
{
  public:
    explicit ElementReader(const Limits& limits) : _limits(limits) {}

    // LOCALNAMESPACEPATH: "root/interop".
    std::string nameSpace(XmlElement element) const;
    // CLASSNAME.
    CimName className(XmlElement element) const;
    // INSTANCENAME, LOCALINSTANCEPATH, INSTANCEPATH, CLASSNAME, LOCALCLASSPATH, CLASSPATH, or one of them
    // inside VALUE.REFERENCE or OBJECTPATH. A key that the client did not name (INSTANCENAME with a bare
    // KEYVALUE or VALUE.REFERENCE) has the empty name.
    ObjectPath path(XmlElement element) const;
    // INSTANCE.
    Instance instance(XmlElement element) const;
    // VALUE.NAMEDINSTANCE: the instance with its path.
    Instance namedInstance(XmlElement element) const;
    // PARAMVALUE (or EXPPARAMVALUE).
    Argument argument(XmlElement element) const;
    // VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; the element decides whether it is an array.
    CimValue value(CimType type, XmlElement element) const;

  private:
    CimValue scalar(CimType type, XmlElement element) const;
    CimValue keyValue(XmlElement element) const;
    CimValue embedded(CimType type, const std::string& text) const;
    void property(XmlElement element, Instance& into) const;
    ObjectPath instanceName(XmlElement element) const;
    // HOST and LOCALNAMESPACEPATH of a NAMESPACEPATH.
    void nameSpacePath(XmlElement element, ObjectPath& into) const;

    Limits _limits; // embeddedDepth is what is left of it
};

// An attribute that must be there and not empty; throws CimError InvalidParameter.
std::string_view requiredAttribute(XmlElement element, const char* name);

// CimError InvalidParameter about an element.
[[noreturn]] void failElement(XmlElement element, const std::string& what);

} // namespace cimd

#endif
