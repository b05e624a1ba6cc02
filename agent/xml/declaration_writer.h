// Writes the declaration elements of CIM-XML: classes and qualifier types.
#ifndef AGENT_XML_DECLARATION_WRITER_H
#define AGENT_XML_DECLARATION_WRITER_H

#include "agent/cim/ClassDecl.h"
#include "agent/xml/xml_text.h"

namespace cimd
{

// CLASS with what the declaration holds: qualifiers and class origins that were not asked for are not in it.
void writeClass(XmlWriter& xml, const ClassDecl& decl);

// QUALIFIER.DECLARATION.
void writeQualifierDeclaration(XmlWriter& xml, const QualifierDecl& decl);

} // namespace cimd

#endif
