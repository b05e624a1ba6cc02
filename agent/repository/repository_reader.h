// Reads the XML form of a class repository.
#ifndef AGENT_REPOSITORY_REPOSITORY_READER_H
#define AGENT_REPOSITORY_REPOSITORY_READER_H

#include <string>
#include <string_view>

namespace cimd
{

class ClassRepository;

// Adds every declaration of the text; RepositoryError with file name, line and class if one cannot be read.
void readRepository(ClassRepository& repository, std::string_view text, const std::string& fileName);

} // namespace cimd

#endif
