// A delivery that writes down what it is asked, in place of the module's.
#include "tests/indicationProviders/Fake_Delivery.h"

#include "delivery/delivery.h"
#include "tests/common/testing/described.h"

#include <cimple/cimple.h>

#include <cerrno>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

#include <pthread.h>

namespace
{

std::mutex lock;
std::map<std::uint16_t, std::string> subscribed;
bool sendingFails = false;
std::chrono::milliseconds pauseOfSend{0};
constexpr int kAnyNumber = -1;
std::atomic<int> threadsLeft{kAnyNumber};
std::vector<std::uint16_t> asked;
std::vector<Fake_Delivery::Sent> sent;
std::vector<std::string> calls;

cimple::Expire_Listener expireListener = nullptr;

std::mutex receiving; // as the firmware promises: the former receiver is not running when it is replaced
xpl_SwitchEventReceiver receiver = nullptr;
void* receiverContext = nullptr;

void note(const char* call)
{
    const std::lock_guard<std::mutex> guard(lock);
    calls.emplace_back(call);
}

// Whether one more thread can be created.
bool hasThread()
{
    const int left = threadsLeft;
    if (left > 0)
        threadsLeft = left - 1;
    return left != 0;
}

Fake_Delivery::Description describedWhole(const cimple::Instance& instance)
{
    Fake_Delivery::Description result = described(instance);
    for (std::size_t i = 0; i < instance.meta_class->num_meta_features; ++i)
    {
        const cimple::Meta_Feature* feature = instance.meta_class->meta_features[i];
        if (!(feature->flags & CIMPLE_FLAG_REFERENCE))
            continue;
        const auto* reference = reinterpret_cast<const cimple::Meta_Reference*>(feature);
        if (const cimple::Instance* embedded = cimple::__ref_of(&instance, reference))
            for (const auto& [name, value] : described(*embedded))
                result[std::string(feature->name) + "." + name] = value;
    }
    return result;
}

} // namespace

Fake_Delivery::Fake_Delivery()
{
    const std::lock_guard<std::mutex> guard(lock);
    subscribed.clear();
    sendingFails = false;
    pauseOfSend = {};
    asked.clear();
    sent.clear();
    calls.clear();
}
Fake_Delivery::~Fake_Delivery()
{
    threadsLeft = kAnyNumber;
}

void Fake_Delivery::subscribe(std::uint16_t filter, const std::string& destination)
{
    const std::lock_guard<std::mutex> guard(lock);
    subscribed[filter] = destination;
}
void Fake_Delivery::subscribeToAll()
{
    for (std::uint16_t filter = 0; filter < 30; ++filter)
        subscribe(filter, std::to_string(filter));
}
void Fake_Delivery::failSending(bool fails)
{
    const std::lock_guard<std::mutex> guard(lock);
    sendingFails = fails;
}

void Fake_Delivery::answerAfter(std::chrono::milliseconds time)
{
    const std::lock_guard<std::mutex> guard(lock);
    pauseOfSend = time;
}

void Fake_Delivery::failThreads(int successes)
{
    threadsLeft = successes;
}

std::uint32_t Fake_Delivery::expire(const std::string& destination)
{
    return expireListener(destination.c_str());
}

std::vector<std::uint16_t> Fake_Delivery::takeAsked()
{
    const std::lock_guard<std::mutex> guard(lock);
    return std::exchange(asked, {});
}
std::vector<Fake_Delivery::Sent> Fake_Delivery::takeSent()
{
    const std::lock_guard<std::mutex> guard(lock);
    return std::exchange(sent, {});
}
std::vector<std::string> Fake_Delivery::takeCalls()
{
    const std::lock_guard<std::mutex> guard(lock);
    return std::exchange(calls, {});
}

bool Fake_Delivery::raise(const xpl_SwitchEvent& event)
{
    const std::lock_guard<std::mutex> guard(receiving);
    if (receiver == nullptr)
        return false;
    receiver(&event, receiverContext);
    return true;
}

// The linker puts this in the place of pthread_create.
extern "C" int
__real_pthread_create(pthread_t* id, const pthread_attr_t* attributes, void* (*proc)(void*), void* arg);
extern "C" int
__wrap_pthread_create(pthread_t* id, const pthread_attr_t* attributes, void* (*proc)(void*), void* arg)
{
    return hasThread() ? __real_pthread_create(id, attributes, proc, arg) : EAGAIN;
}

extern "C" void xpl_swReceiveEvents(xpl_SwitchEventReceiver to, void* context)
{
    note(to != nullptr ? "receive" : "receive no more");
    const std::lock_guard<std::mutex> guard(receiving);
    receiver = to;
    receiverContext = context;
}

namespace cimple
{

bool startDelivery(Expire_Listener expire)
{
    expireListener = expire;
    note("startDelivery");
    return hasThread();
}
void stopDelivery()
{
    note("stopDelivery");
}

Delivery_Counts deliveryCounts()
{
    return {};
}
void subscriptionsChanged()
{
    note("subscriptionsChanged");
}

void filterToDestinations(std::uint16_t filter, Destinations& list)
{
    const std::lock_guard<std::mutex> guard(lock);
    std::this_thread::sleep_for(pauseOfSend);
    asked.push_back(filter);
    const auto found = subscribed.find(filter);
    if (found != subscribed.end())
        list.push_back(found->second.c_str());
}

void sendIndication(const Instance* indication, const Destinations& list)
{
    const std::lock_guard<std::mutex> guard(lock);
    if (sendingFails)
        throw std::bad_alloc();
    std::string destinations;
    for (const String& one : list)
        destinations += (destinations.empty() ? "" : " ") + std::string(one.c_str());
    sent.push_back({indication->meta_class->name, describedWhole(*indication), destinations});
}

} // namespace cimple
