// Tables of requests, kept in text files: what is asked, how the switch is, and what becomes of it.
#ifndef TESTS_COMMON_TESTING_REQUESTS_H
#define TESTS_COMMON_TESTING_REQUESTS_H

#include <string>
#include <vector>

namespace cimple
{
struct Instance;
}

typedef std::vector<std::string> Cells;

// The rows of a file, each of so many cells between " | ", of which the last may be left out; a cell "" is
// empty. "@" stands for the local switch's World Wide Name, "\n" for a line feed, "$name" for the text of a
// line "$name = text" before. Lines that begin with '#' are comments. Throws std::runtime_error when there is
// no row.
std::vector<Cells> readRequests(const std::string& path, std::size_t cells, const std::string& localWwn);

// The texts in a row, separated as cells are.
std::string joined(const std::vector<std::string>& texts);

// Sets properties of the types boolean, uint8, uint16 and uint64: "Name=value Name=value". Without a value:
// zero or false.
void assign(cimple::Instance& instance, const std::string& properties);

#endif
