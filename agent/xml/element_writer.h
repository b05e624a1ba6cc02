// Writes the value elements of CIM-XML: names, paths, values, instances.
#ifndef AGENT_XML_ELEMENT_WRITER_H
#define AGENT_XML_ELEMENT_WRITER_H

#include "agent/cim/Argument.h"
#include "agent/cim/ClassDecl.h"
#include "agent/cim/Instance.h"
#include "agent/cim/ObjectPath.h"
#include "agent/xml/xml_text.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

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
// Remembers the tags of one instance for the next, which is mostly of the same class.
class PropertyTags
{
  public:
    struct Tags
    {
        CimName name;
        CimType type;
        bool isArray;
        std::string start; // with the start of a VALUE for a scalar
        std::string_view end;

        bool opensValue() const { return !isArray && type != CimType::Reference; }
    };

    // Of the property at this place of an instance. They live until the next call for the place.
    const Tags& of(const Property& property, std::size_t index);

  private:
    std::vector<Tags> _tags;
};

void writeInstance(XmlWriter& xml, const Instance& instance, PropertyTags& tags);
inline void writeInstance(XmlWriter& xml, const Instance& instance)
{
    PropertyTags tags;
    writeInstance(xml, instance, tags);
}
// INSTANCENAME and INSTANCE.
void writeNamedInstance(XmlWriter& xml, const Instance& instance, PropertyTags& tags);
// VALUE.OBJECTWITHPATH: INSTANCEPATH and INSTANCE.
void writeObjectWithPath(XmlWriter& xml,
                         const std::string& host,
                         const Instance& instance,
                         PropertyTags& tags);
// OBJECTPATH: INSTANCEPATH.
void writeObjectPath(XmlWriter& xml, const std::string& host, const ObjectPath& path);
// PARAMVALUE.
void writeArgument(XmlWriter& xml, const Argument& argument);
// RETURNVALUE; nothing for NULL.
void writeReturnValue(XmlWriter& xml, const CimValue& value);

} // namespace cimd

#endif
