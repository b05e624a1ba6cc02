// Bytes with their NULLs beside them, or values.
#include "agent/cim/CimArray.h"

#include <utility>

namespace cimd
{

CimArray::CimArray(CimType type, std::size_t size) : _type(type)
{
    if (!isBytes())
    {
        _elements.resize(size, CimValue::null(type));
        return;
    }
    _bytes.resize(size);
    _isNull.resize(size, true);
    _nulls = size;
}

CimArray::CimArray(const CimValue& array) : _type(array.type())
{
    if (array.holdsBytes())
    {
        _bytes = array.asBytes();
        _isNull.resize(_bytes.size());
        return;
    }
    if (!isBytes())
    {
        _elements = array.elements();
        return;
    }
    reserve(array.elements().size());
    for (const CimValue& element : array.elements())
        add(element);
}

void CimArray::reserve(std::size_t size)
{
    if (!isBytes())
        return _elements.reserve(size);
    _bytes.reserve(size);
    _isNull.reserve(size);
}

CimValue CimArray::at(std::size_t index) const
{
    if (!isBytes())
        return _elements[index];
    return _isNull[index] ? CimValue::null(_type) : CimValue::uint8(_bytes[index]);
}

void CimArray::set(std::size_t index, CimValue element)
{
    if (!isBytes())
    {
        _elements[index] = std::move(element);
        return;
    }
    const bool isNull = element.isNull();
    _nulls = _nulls - (_isNull[index] ? 1 : 0) + (isNull ? 1 : 0);
    _isNull[index] = isNull;
    _bytes[index] = isNull ? std::uint8_t{0} : static_cast<std::uint8_t>(element.asUnsigned());
}

void CimArray::add(CimValue element)
{
    if (!isBytes())
        return _elements.push_back(std::move(element));
    _bytes.push_back(0);
    _isNull.push_back(false);
    set(_bytes.size() - 1, std::move(element));
}

CimValue::Elements CimArray::byteElements() const
{
    CimValue::Elements elements;
    elements.reserve(_bytes.size());
    for (std::size_t i = 0; i < _bytes.size(); ++i)
        elements.push_back(at(i));
    return elements;
}

CimValue CimArray::value() const&
{
    if (!isBytes())
        return CimValue::array(_type, _elements);
    return _nulls == 0 ? CimValue::bytes(_bytes) : CimValue::array(_type, byteElements());
}

CimValue CimArray::value() &&
{
    if (!isBytes())
        return CimValue::array(_type, std::move(_elements));
    return _nulls == 0 ? CimValue::bytes(std::move(_bytes)) : CimValue::array(_type, byteElements());
}

} // namespace cimd
