// Giving paths and references the form their class declares.
#pragma once

#include "agent/cim/ObjectPath.h"
#include "agent/repository/ClassRepository.h"

#include <stdexcept>
#include <string>

namespace cimd
{

// A path or value that does not fit its class; the text names class, key and reason.
class ShapeError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// Makes the path of an instance complete: class and key names in declared letter case, key values of the
// declared types, references among them complete as well, the namespace filled in where there is none.
// ShapeError if a key is missing, unknown or of the wrong type. Equal instances have identical paths
// afterwards.
void completePath(ObjectPath& path,
                  const ClassInfo& info,
                  const ClassRepository& repository,
                  const std::string& nameSpace);

// The same for a path that a reference holds. A class the repository does not know belongs to somebody else:
// only the namespace is filled in then. The class must be, or derive from, the declared one where both are
// known.
CimValue completeReference(const CimValue& value,
                           const CimName& declaredClass,
                           const ClassRepository& repository,
                           const std::string& nameSpace);

} // namespace cimd
