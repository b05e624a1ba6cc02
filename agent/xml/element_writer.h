// Writes the value elements of CIM-XML: names, paths, values, instances.
#ifndef AGENT_XML_ELEMENT_WRITER_H
#define AGENT_XML_ELEMENT_WRITER_H

#include "agent/cim/Instance.h"
#include "agent/cim/ObjectPath.h"
#include "agent/service/CimService.h"
#include "agent/xml/xml_text.h"

#include <string>

namespace cimd
{

// Elements, attributes and their order are those of DSP0201. Equal paths are written alike by all of these.

void writeLocalNameSpacePath(XmlWriter& xml, const std::string& nameSpace);
void writeClassName(XmlWriter& xml, const CimName& name);
void writeInstanceName(XmlWriter& xml, const ObjectPath& path);
// INSTANCEPATH; the path's own host does not matter.
void writeInstancePath(XmlWriter& xml, const std::string& host, const ObjectPath& path);
// VALUE.REFERENCE around as full a path as host and namespace allow.
void writeReference(XmlWriter& xml, const ObjectPath& path);

// VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; nothing for NULL.
void writeValue(XmlWriter& xml, const CimValue& value);
// " EmbeddedObject=..." after the other attributes of an open tag, for the two embedded types.
void writeEmbeddedAttribute(XmlWriter& xml, CimType type);
void writeInstance(XmlWriter& xml, const Instance& instance);
// INSTANCENAME and INSTANCE.
void writeNamedInstance(XmlWriter& xml, const Instance& instance);
// VALUE.OBJECTWITHPATH: INSTANCEPATH and INSTANCE.
void writeObjectWithPath(XmlWriter& xml, const std::string& host, const Instance& instance);
// OBJECTPATH: INSTANCEPATH.
void writeObjectPath(XmlWriter& xml, const std::string& host, const ObjectPath& path);
// PARAMVALUE.
void writeArgument(XmlWriter& xml, const Argument& argument);
// RETURNVALUE; nothing for NULL.
void writeReturnValue(XmlWriter& xml, const CimValue& value);

} // namespace cimd

#endif
