// Takes the instances that a provider hands over one by one to the client that asked for them.
#ifndef TOOLKIT_ADAPTER_RESULTSINK_H
#define TOOLKIT_ADAPTER_RESULTSINK_H

#include "Call.h"
#include "Failure.h"
#include "ToCmpi.h"
#include <cmpift.h>

#include <optional>

namespace cimple_cmpi
{

enum class Deliver
{
    Paths,
    Instances
};

// How many results the operation has. Brokers that keep pointers until the MI function returns do so where
// there is one; where there may be many they copy each.
enum class Results
{
    One,
    Many
};

// Instances may be shared with the provider, so they are read and not changed. After a failure, or when the
// broker wants no more, nothing is done any more; finish() reports it.
class ResultSink
{
  public:
    // `properties` ends with a null pointer; null means all. Instances of other classes than `wanted` and its
    // subclasses are passed over; null lets all through.
    ResultSink(const Call& call,
               const CMPIResult* result,
               const std::string& nameSpace,
               Deliver what,
               const char* const* properties,
               const cimple::Meta_Class* wanted = nullptr,
               Results results = Results::Many)
        : _broker(call.broker()), _copies(copiesResults(call)),
          _to(_broker, nameSpace, results == Results::Many && !_copies ? ToCmpi::kScope : ToCmpi::kCall),
          _filter(properties), _result(result), _what(what), _wanted(wanted)
    {
    }

    // False: stop. Never throws, because there is code of providers between here and the CMPI function.
    bool take(const cimple::Instance* instance) noexcept;

    size_t taken() const { return _taken; }

    // Throws the first failure, otherwise tells the broker that the result is complete.
    void finish();

    // For the callbacks of providers: takes one instance and gives back its count; null is the closing call.
    template <class InstancePtr, class Status>
    static bool receive(InstancePtr instance, Status, void* sink)
    {
        if (!instance)
            return false;
        const bool more = static_cast<ResultSink*>(sink)->take(instance);
        cimple::unref(instance);
        return more;
    }

  private:
    static bool copiesResults(const Call& call);
    CMPIStatus deliver(const cimple::Instance* instance);

    const CMPIBroker* _broker;
    const bool _copies; // the broker says so: all objects of a result can go when it has been returned
    ToCmpi _to;
    PropertyFilter _filter;
    const CMPIResult* _result;
    Deliver _what;
    const cimple::Meta_Class* _wanted;
    size_t _taken = 0;
    std::optional<Failure> _failure;
};

} // namespace cimple_cmpi

#endif
