// Look-ups in declarations.
#include "agent/cim/ClassDecl.h"

#include <algorithm>

namespace cimd
{

const Qualifier* findQualifier(const Qualifiers& qualifiers, const CimName& name)
{
    const auto place = std::find_if(
        qualifiers.begin(), qualifiers.end(), [&](const Qualifier& q) { return q.name == name; });
    return place == qualifiers.end() ? nullptr : &*place;
}

bool qualifierIsTrue(const Qualifiers& qualifiers, const CimName& name, bool absent)
{
    const Qualifier* qualifier = findQualifier(qualifiers, name);
    if (!qualifier || qualifier->value.isNull() || !qualifier->value.hasType(CimType::Boolean, false))
        return absent;
    return qualifier->value.asBoolean();
}

const ParameterDecl* MethodDecl::findParameter(const CimName& parameter) const
{
    const auto place = std::find_if(
        parameters.begin(), parameters.end(), [&](const ParameterDecl& p) { return p.name == parameter; });
    return place == parameters.end() ? nullptr : &*place;
}

} // namespace cimd
