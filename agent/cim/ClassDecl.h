// Declarations of the schema: qualifiers, properties, methods, classes.
#ifndef AGENT_CIM_CLASSDECL_H
#define AGENT_CIM_CLASSDECL_H

#include "agent/cim/CimName.h"
#include "agent/cim/CimType.h"
#include "agent/cim/CimValue.h"

#include <cstdint>
#include <string>
#include <vector>

namespace cimd
{

// How a qualifier behaves in subclasses (DSP0004 flavors; DSP0201 attributes OVERRIDABLE, TOSUBCLASS ...).
struct Flavor
{
    bool overridable = true;
    bool toSubclass = true;
    bool toInstance = false;
    bool translatable = false;
};

struct Qualifier
{
    CimName name;
    CimValue value;
    Flavor flavor;
    bool propagated = false; // inherited from the superclass' declaration
};

using Qualifiers = std::vector<Qualifier>;

// Null pointer if there is none of the name.
const Qualifier* findQualifier(const Qualifiers& qualifiers, const CimName& name);
// The value of a boolean qualifier; `absent` if there is none or it is NULL.
bool qualifierIsTrue(const Qualifiers& qualifiers, const CimName& name, bool absent = false);

struct QualifierDecl
{
    CimName name;
    CimType type = CimType::String;
    bool isArray = false;
    CimValue value; // default
    Flavor flavor;
    // Scopes, DSP0201 SCOPE attributes.
    bool onClass = false, onAssociation = false, onReference = false, onProperty = false, onMethod = false,
         onParameter = false, onIndication = false;
};

// What a property, parameter and return value have in common.
struct TypedElement
{
    CimName name;
    CimType type =
        CimType::String; // Instance or Object for the EmbeddedInstance and EmbeddedObject qualifiers
    bool isArray = false;
    std::uint32_t arraySize = 0; // 0: variable length
    CimName referenceClass;      // declared class of a reference or embedded instance; may be empty
    Qualifiers qualifiers;
};

struct PropertyDecl : TypedElement
{
    CimValue defaultValue; // of the property's type; NULL if there is none
    CimName classOrigin;
    bool propagated = false; // declared by a superclass and not again by this class

    bool isKey() const { return qualifierIsTrue(qualifiers, "Key"); }
};

struct ParameterDecl : TypedElement
{
    bool isIn() const { return qualifierIsTrue(qualifiers, "In", true); } // DSP0004: In defaults to true
    bool isOut() const { return qualifierIsTrue(qualifiers, "Out"); }
    bool isRequired() const { return qualifierIsTrue(qualifiers, "Required"); }
};

struct MethodDecl
{
    CimName name;
    CimType returnType = CimType::Uint32;
    CimName returnClass; // of an embedded instance returned; may be empty
    Qualifiers qualifiers;
    std::vector<ParameterDecl> parameters;
    CimName classOrigin;
    bool propagated = false;

    const ParameterDecl* findParameter(const CimName& parameter) const;
    bool isStatic() const { return qualifierIsTrue(qualifiers, "Static"); }
};

struct ClassDecl
{
    CimName name;
    CimName superClass; // empty for a root class
    Qualifiers qualifiers;
    std::vector<PropertyDecl> properties; // references too; inherited ones first, in order of declaration
    std::vector<MethodDecl> methods;

    bool isAssociation() const { return qualifierIsTrue(qualifiers, "Association"); }
    bool isIndication() const { return qualifierIsTrue(qualifiers, "Indication"); }
    bool isAbstract() const { return qualifierIsTrue(qualifiers, "Abstract"); }
};

} // namespace cimd

#endif
