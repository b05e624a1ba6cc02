// Enumerating through the service, and looking into what comes.
#include "agent/metrics/SwitchReader.h"

#include "agent/http/HttpHandler.h"

#include <algorithm>
#include <cstdint>
#include <future>
#include <memory>
#include <mutex>
#include <system_error>

namespace cimd
{

namespace
{

using Take = std::function<void(const Instance&)>;

constexpr std::chrono::milliseconds kLeastTime{250}; // what is fresh comes at once

// Hands instances to the scrape as long as that waits for them.
class Taker : public Sink<Instance>
{
  public:
    explicit Taker(const Take& take) : _take(&take) {}

    void put(const Instance& instance) override
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (_take == nullptr)
            throw AnswerClosed("the scrape has not waited");
        (*_take)(instance);
    }

    void close()
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _take = nullptr;
    }

  private:
    std::mutex _mutex;
    const Take* _take;
};

} // namespace

void SwitchReader::read(const CimName& className,
                        std::vector<CimName> properties,
                        const std::function<void(const Instance&)>& take) const
{
    const std::string& name = className.str();
    if (_means.late.has(name))
        throw CimError(CimStatus::Failed, "its provider has not come back since an earlier scrape");
    EnumerateInstancesRequest request;
    request.nameSpace = _nameSpace;
    request.className = className;
    request.properties = std::move(properties);
    const auto taker = std::make_shared<Taker>(take);
    const auto enumerate = [means = _means, context = _context, request, taker]
    {
        InFlight::Entry entry(&means.inFlight, "Scrape", context.clientAddress);
        entry.about(request.className.str());
        means.service.enumerateInstances(context, request, *taker);
    };
    std::future<void> reading;
    try
    {
        reading = std::async(std::launch::async, enumerate);
    }
    catch (const std::system_error& error)
    {
        throw CimError(CimStatus::Failed, std::string("there is no thread to read it: ") + error.what());
    }
    const auto left = _end - std::chrono::steady_clock::now();
    const Time::duration time = left > Time::duration::zero() ? std::max<Time::duration>(left / 2, kLeastTime)
                                                              : Time::duration::zero();
    if (reading.wait_for(time) == std::future_status::ready)
        return reading.get();
    taker->close();
    _means.late.add(name, std::move(reading));
    throw CimError(CimStatus::Failed, "its provider did not come back in time");
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
