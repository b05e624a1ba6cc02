// Giving paths and references the form their class declares.
#ifndef AGENT_REPOSITORY_COMPLETION_H
#define AGENT_REPOSITORY_COMPLETION_H

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
// declared types, references among them complete as well, the namespace filled in where there is none, no
// host: it says how somebody reached the object, not which it is. ShapeError if a key is missing, unknown or
// of the wrong type. Equal instances have identical paths afterwards.
void completePath(ObjectPath& path,
                  const ClassInfo& info,
                  const ClassRepository& repository,
                  const std::string& nameSpace);

// Completes what a property or parameter of a declared type holds: paths in references, instances in embedded
// objects, one by one in arrays; other values stay as they are. A referenced class that the repository does
// not know belongs to somebody else, and only the namespace is filled in. ShapeError if a class is neither
// the declared one nor derived from it, or something inside does not fit its own class.
CimValue completeValue(const CimValue& value,
                       const TypedElement& declared,
                       const ClassRepository& repository,
                       const std::string& nameSpace);

// An embedded instance with all properties of its class, in class order, NULL where none was given, and
// without a path.
Instance
completeEmbedded(const Instance& given, const ClassRepository& repository, const std::string& nameSpace);

} // namespace cimd

#endif
