// A batch of attribute-store keys that is read for one element after the other.
#ifndef SWITCHACCESS_SML_BATCH_H
#define SWITCHACCESS_SML_BATCH_H

#include "platform/xpl_sml.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace cimple
{

// Made once per load from a constant table of key formats (see support/substitute.h), then read once per
// port, switch or listener. Values are those of the last read.
class Sml_Batch
{
  public:
    // The table's rows are formats, or structures whose member `key` is one. The texts must outlive the
    // batch.
    template <class ROW, std::size_t N>
    explicit Sml_Batch(const ROW (&rows)[N]) : _entries(N)
    {
        _formats.reserve(N);
        for (const ROW& row : rows)
            _formats.push_back(formatOf(row));
    }

    // Reads all keys in one call to the switch. False when the call fails, when an entry has an error, or
    // when a key does not fit its field. An entry may still carry the status XPL_NOT_AVAILABLE.
    bool read(std::initializer_list<const char*> arguments);

    std::size_t size() const { return _entries.size(); }
    // The platform's status of an entry; 0 when it has a value.
    std::int32_t status(std::size_t entry) const { return _entries[entry].status; }
    const char* text(std::size_t entry) const { return _entries[entry].value; }

  private:
    static const char* formatOf(const char* row) { return row; }
    template <class ROW>
    static const char* formatOf(const ROW& row)
    {
        return row.key;
    }

    std::vector<const char*> _formats;
    std::vector<xpl_smlEntry> _entries;
};

} // namespace cimple

#endif
