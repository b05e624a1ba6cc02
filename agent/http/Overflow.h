// What of an answer its client has not taken and memory should not hold.
#ifndef AGENT_HTTP_OVERFLOW_H
#define AGENT_HTTP_OVERFLOW_H

#include "agent/http/SpoolArea.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace cimd
{

// First in, first out, in a file. Used on one thread at a time.
class Overflow
{
  public:
    // `area` outlives the object.
    explicit Overflow(SpoolArea& area) : _area(area) {}
    ~Overflow() { clear(); }
    Overflow(const Overflow&) = delete;
    Overflow& operator=(const Overflow&) = delete;

    bool empty() const { return _read == _written; }
    // CimError, and nothing added, if the area is full or the file fails.
    void add(std::string_view bytes);
    // Takes out at most so many bytes, none when empty. CimError if the file fails.
    std::string read(std::size_t most);
    void clear();

  private:
    SpoolArea& _area;
    std::optional<FileDescriptor> _file;
    std::size_t _written = 0;
    std::size_t _read = 0;
};

} // namespace cimd

#endif
