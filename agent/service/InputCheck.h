// Checks of what clients send against the schema; every mistake is answered with a CimError that names it.
#ifndef AGENT_SERVICE_INPUTCHECK_H
#define AGENT_SERVICE_INPUTCHECK_H

#include "agent/cim/Argument.h"
#include "agent/cim/CimError.h"
#include "agent/cim/Instance.h"
#include "agent/repository/ClassRepository.h"

#include <string>
#include <vector>

namespace cimd
{

// All of these throw CimError with InvalidParameter unless they say otherwise.
class InputCheck
{
  public:
    // @param nameSpaces  All that there are; outlives the object.
    InputCheck(const ClassRepository& repository,
               const std::vector<std::string>& nameSpaces,
               std::string nameSpace)
        : _repository(repository), _nameSpaces(nameSpaces), _nameSpace(std::move(nameSpace))
    {
    }

    const std::string& nameSpace() const { return _nameSpace; }

    // InvalidClass if there is no such class.
    const ClassInfo& classNamed(const CimName& name) const;
    // The class of a filter such as AssocClass, null for an empty name.
    const ClassInfo* filterClass(const CimName& name, const char* parameter) const;

    // The complete path of an instance. NotFound if a key refers into a namespace that does not exist.
    ObjectPath instancePath(const ObjectPath& path, const ClassInfo& info) const;
    // The instance with its properties spelled and typed as declared, and without a path.
    Instance instance(const Instance& given, const ClassInfo& info) const;
    // Arguments for the parameters of a method: in parameters only, each once, required ones given.
    std::vector<Argument> arguments(const std::vector<Argument>& given, const MethodDecl& method) const;

    // A value for a declared element; `what` names it in messages.
    CimValue value(const CimValue& given, const TypedElement& declared, const std::string& what) const;

  private:
    CimValue scalar(const CimValue& given, const TypedElement& declared, const std::string& what) const;

    void checkNameSpaces(const ObjectPath& path) const;

    const ClassRepository& _repository;
    const std::vector<std::string>& _nameSpaces;
    std::string _nameSpace;
};

} // namespace cimd

#endif
