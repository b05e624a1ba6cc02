// Enumerating through the service, and looking into what comes.
#include "agent/metrics/SwitchReader.h"

#include <cstdint>

namespace cimd
{

namespace
{

class Taker : public Sink<Instance>
{
  public:
    explicit Taker(const std::function<void(const Instance&)>& take) : _take(take) {}
    void put(const Instance& instance) override { _take(instance); }

  private:
    const std::function<void(const Instance&)>& _take;
};

} // namespace

void SwitchReader::read(const CimName& className,
                        std::vector<CimName> properties,
                        const std::function<void(const Instance&)>& take) const
{
    EnumerateInstancesRequest request;
    request.nameSpace = _nameSpace;
    request.className = className;
    request.properties = std::move(properties);
    Taker taker(take);
    _service.enumerateInstances(_context, request, taker);
}

const CimValue* valueOf(const Instance& instance, const CimName& name)
{
    const CimValue* value = instance.find(name);
    if (value == nullptr)
        value = instance.path().findKey(name);
    return value != nullptr && !value->isNull() ? value : nullptr;
}

const CimValue* firstOf(const CimValue* value)
{
    if (value == nullptr || !value->isArray())
        return value;
    if (value->holdsBytes() || value->elements().empty() || value->elements().front().isNull())
        return nullptr;
    return &value->elements().front();
}

std::string textOf(const CimValue* value)
{
    if (value == nullptr || value->isArray())
        return {};
    if (value->type() == CimType::String)
        return value->asString();
    const Decimal number = numberOf(value);
    std::string text;
    if (!number.isNull)
        appendDecimal(text, number);
    return text;
}

Decimal numberOf(const CimValue* value, std::int32_t exponent)
{
    Decimal number;
    number.exponent = exponent;
    if (value == nullptr || value->isArray())
        number.isNull = true;
    else if (isUnsigned(value->type()))
        number.magnitude = value->asUnsigned();
    else if (isSigned(value->type()))
    {
        const std::int64_t read = value->asSigned();
        number.isNegative = read < 0;
        number.magnitude = static_cast<std::uint64_t>(read);
        if (number.isNegative)
            number.magnitude = 0 - number.magnitude; // also of the least one, which has no opposite
    }
    else if (value->type() == CimType::Boolean)
        number.magnitude = value->asBoolean() ? 1 : 0;
    else
        number.isNull = true;
    return number;
}

std::string keyOf(const CimValue* reference, const CimName& name)
{
    if (reference == nullptr || reference->type() != CimType::Reference)
        return {};
    return textOf(reference->asReference().findKey(name));
}

} // namespace cimd
