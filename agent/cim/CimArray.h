// An array that is being filled, or looked at element by element.
#ifndef AGENT_CIM_CIMARRAY_H
#define AGENT_CIM_CIMARRAY_H

#include "agent/cim/CimValue.h"

#include <cstddef>
#include <vector>

namespace cimd
{

// Scalars of one type, each of them NULL or not. Elements of type uint8 take little more than a byte each,
// NULLs included; what value() makes of them does so only when none is NULL.
class CimArray
{
  public:
    // So many NULLs.
    explicit CimArray(CimType type, std::size_t size = 0);
    // A copy of an array that is not NULL.
    explicit CimArray(const CimValue& array);

    CimType type() const { return _type; }
    std::size_t size() const { return isBytes() ? _bytes.size() : _elements.size(); }
    void reserve(std::size_t size);
    // The index must be below size(), the element of the array's type.
    CimValue at(std::size_t index) const;
    void set(std::size_t index, CimValue element);
    void add(CimValue element);

    CimValue value() const&;
    CimValue value() &&;

  private:
    bool isBytes() const { return _type == CimType::Uint8; }
    CimValue::Elements byteElements() const;

    CimType _type;
    CimValue::Elements _elements; // of all other types
    CimValue::Bytes _bytes;       // 0 for NULL
    std::vector<bool> _isNull;    // of _bytes
    std::size_t _nulls = 0;       // in _isNull
};

} // namespace cimd

#endif
