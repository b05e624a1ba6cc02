// Writes the value elements of CIM-XML: names, paths, values, instances.
#ifndef AGENT_XML_ELEMENT_WRITER_H
#define AGENT_XML_ELEMENT_WRITER_H

#include "agent/cim/Instance.h"
#include "agent/cim/ObjectPath.h"
#include "agent/service/CimService.h"
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
// VALUE.REFERENCE around as full a path as host and namespace allow.
void writeReference(XmlWriter& xml, const ObjectPath& path);

// VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; nothing for NULL.
void writeValue(XmlWriter& xml, const CimValue& value);
// " EmbeddedObject=..." after the other attributes of an open tag, for the two embedded types.
void writeEmbeddedAttribute(XmlWriter& xml, CimType type);
// What is the same for all instances of a class, put together once: the markup of the path and of the
// instance that were written last is kept for the next ones, which are mostly of the same class.
class ClassMarkup
{
  public:
    // Writes an INSTANCENAME.
    void writeName(XmlWriter& xml, const ObjectPath& path);
    // Writes an INSTANCE. CimError if a property is an array of references, which CIM-XML does not have.
    void writeInstance(XmlWriter& xml, const Instance& instance);

  private:
    struct Key
    {
        CimName name;
        CimType type;
        std::string before; // what stands between the value of the key before and this one's
    };
    struct Element
    {
        CimName name;
        CimName classOrigin;
        CimType type;
        bool isArray;
        std::string start; // with the start of a VALUE for a scalar
        std::string_view end;
        std::size_t nullEnd; // in _nulls
    };

    bool fits(const ObjectPath& path) const;
    void remember(const ObjectPath& path);
    bool fits(const Instance& instance) const;
    void remember(const Instance& instance);

    CimName _pathClass;
    std::vector<Key> _keys;
    std::string _pathEnd;

    CimName _class;
    std::vector<Element> _elements;
    std::string _open;  // the start of the INSTANCE
    std::string _nulls; // every property as it is written when it is NULL, one behind the other
};

inline void writeInstance(XmlWriter& xml, const Instance& instance)
{
    ClassMarkup().writeInstance(xml, instance);
}
// INSTANCENAME and INSTANCE.
void writeNamedInstance(XmlWriter& xml, const Instance& instance, ClassMarkup& markup);
// VALUE.OBJECTWITHPATH: INSTANCEPATH and INSTANCE.
void writeObjectWithPath(XmlWriter& xml,
                         const std::string& host,
                         const Instance& instance,
                         ClassMarkup& markup);
// INSTANCEPATH; the path's own host does not matter.
void writeInstancePath(XmlWriter& xml, const std::string& host, const ObjectPath& path, ClassMarkup& markup);
// OBJECTPATH: INSTANCEPATH.
void writeObjectPath(XmlWriter& xml, const std::string& host, const ObjectPath& path, ClassMarkup& markup);
// PARAMVALUE.
void writeArgument(XmlWriter& xml, const Argument& argument);
// RETURNVALUE; nothing for NULL.
void writeReturnValue(XmlWriter& xml, const CimValue& value);

} // namespace cimd

#endif
