// A queue of encoded results that keeps what exceeds its share of memory in a file without a name.
#ifndef AGENT_PULL_SPOOL_H
#define AGENT_PULL_SPOOL_H

#include "agent/http/SpoolArea.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace cimd
{

// First in, first out: all items are added, then seal() is called, then they are taken. Used on one thread at
// a time. Failures of the file are CimErrors that name the directory.
class Spool
{
  public:
    // `area` outlives the spool.
    explicit Spool(SpoolArea& area) : _file(std::make_unique<SpoolFile>(area)) {}

    // Two texts, such as an instance's path and the instance. A long body comes in parts; only the first of
    // them has the head.
    struct Item
    {
        std::string_view head;
        std::string_view body;
        bool goesOn = false; ///< the next item is the next part of this one
    };

    void add(const Item& item);
    // No more will be added.
    void seal();
    // Items not yet taken, not their parts.
    std::size_t size() const { return _count; }
    // The oldest item, in the parts it came in; its texts live until the next call. There must be one.
    Item take();
    // Gives up the memory that reading from a file takes; to be called before a longer pause.
    void rest();

  private:
    void flush();
    // Makes the next `bytes` bytes readable at `_at`.
    void need(std::size_t bytes);
    std::size_t takeLength();

    std::size_t _count = 0;
    std::string _buffer; // until seal(): what is not in the file; after it: what was read ahead
    std::size_t _at = 0; // read so far, of _buffer
    std::unique_ptr<SpoolFile> _file;
};

} // namespace cimd

#endif
