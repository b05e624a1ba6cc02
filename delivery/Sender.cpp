// Queues of indications, and the thread that empties them.
#include "delivery/Sender.h"

#include "delivery/indication_xml.h"
#include "support/cim_log.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace cimple
{

namespace
{

using std::chrono::milliseconds;

constexpr long kOk = 200;
constexpr long kFirstBeyondOk = 300;
constexpr long kTooManyRequests = 429;
constexpr long kUnavailable = 503;

constexpr milliseconds kLongWait{3600000};
constexpr milliseconds kRest{100}; // when there is no memory to work with

std::string textOf(milliseconds sinceEpoch)
{
    return std::to_string(sinceEpoch.count());
}

// Why an answer is no consent; empty when it is.
std::string refusalIn(const Http_Client::Outcome& outcome)
{
    if (outcome.status < kOk || outcome.status >= kFirstBeyondOk)
        return "HTTP status " + std::to_string(outcome.status);
    if (!outcome.reason.empty())
        return outcome.reason;
    std::string description;
    const unsigned code = cimErrorOf(outcome.answer, description);
    return code == 0 ? "" : "CIM error " + std::to_string(code) + ": " + description;
}

void logProblem(const std::exception& problem)
{
    cim_log(kLogCritical, "Delivery of indications: %s\n", problem.what());
}

bool isForLater(const Http_Client::Outcome& outcome)
{
    return outcome.result == Http_Result::Answered &&
           (outcome.status == kTooManyRequests || outcome.status == kUnavailable);
}

} // namespace

milliseconds Sender_Settings::pauseAfter(unsigned failures) const
{
    milliseconds pause = firstPause;
    for (unsigned i = 1; i < failures && pause < longestPause; ++i)
        pause *= 2;
    return std::min(pause, longestPause);
}

Sender::Sender(const Sender_Settings& settings, Hooks hooks)
    : _settings(settings), _hooks(std::move(hooks)),
      _idPrefix(textOf(std::chrono::duration_cast<milliseconds>(
                    std::chrono::system_clock::now().time_since_epoch())) +
                "."),
      _client(settings.http), _thread([this] { run(); })
{
}

// --- Queueing, on any thread

void Sender::send(const Instance& indication, const Destinations& list)
{
    if (list.empty())
        return;
    // Written once, however many it goes to.
    const Http_Body body = std::make_shared<const std::string>(exportMessage(indication, nextMessageId()));
    bool wakes = false;
    {
        const std::lock_guard<std::mutex> lock(_lock);
        for (auto one = list.begin(); one != list.end(); ++one)
            if (std::find(list.begin(), one, *one) == one)
                wakes = enqueue(*one, body) || wakes;
    }
    if (wakes)
        _client.wake();
}

std::string Sender::nextMessageId()
{
    const std::lock_guard<std::mutex> lock(_lock);
    return _idPrefix + std::to_string(++_lastId);
}

// True when the thread has to know.
bool Sender::enqueue(const String& destination, const Http_Body& body)
{
    if (_isStopping)
    {
        ++_counts.lost[static_cast<std::size_t>(Loss::Stopped)];
        return false;
    }
    const auto [place, isNew] = _targets.try_emplace(destination.c_str());
    Target& target = place->second;
    if (isNew)
    {
        target.url = place->first;
        target.destination = destination;
        target.idleSince = Clock::now();
    }
    const bool hadLosses = !target.losses.isEmpty();
    const bool wasIdle = target.queue.empty();
    const std::size_t size = body->size();
    while (target.queue.size() > target.held() &&
           (target.queue.size() >= _settings.messagesEach || target.bytes + size > _settings.bytesEach))
        lose(target, Loss::Queue_Full, target.held(), 1);
    if (target.queue.size() >= _settings.messagesEach || target.bytes + size > _settings.bytesEach ||
        !makeRoom(size))
    {
        countLoss(target, Loss::Queue_Full, 1, {});
        return !hadLosses;
    }
    target.queue.push_back(body);
    target.bytes += size;
    _bytes += size;
    if (wasIdle)
        target.dueTime = Clock::now();
    return wasIdle || (!hadLosses && !target.losses.isEmpty());
}

// The destinations that hold most lose their oldest messages first, so that a dead one costs the others none.
bool Sender::makeRoom(std::size_t size)
{
    while (_bytes + size > _settings.bytesInAll)
    {
        Target* largest = nullptr;
        for (auto& [url, target] : _targets)
            if (target.queue.size() > target.held() && (!largest || target.bytes > largest->bytes))
                largest = &target;
        if (largest == nullptr)
            return false;
        lose(*largest, Loss::Queue_Full, largest->held(), 1);
    }
    return true;
}

void Sender::lose(
    Target& target, Loss reason, std::size_t first, std::size_t count, const std::string& detail)
{
    const auto begin = target.queue.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = begin + static_cast<std::ptrdiff_t>(count);
    std::size_t bytes = 0;
    for (auto message = begin; message != end; ++message)
        bytes += (*message)->size();
    target.queue.erase(begin, end);
    target.bytes -= bytes;
    _bytes -= bytes;
    countLoss(target, reason, count, detail);
}

void Sender::countLoss(Target& target, Loss reason, std::size_t count, const std::string& detail)
{
    target.losses.add(reason, count, detail);
    _counts.lost[static_cast<std::size_t>(reason)] += count;
}

Delivery_Counts Sender::counts() const
{
    const std::lock_guard<std::mutex> lock(_lock);
    Delivery_Counts all = _counts;
    for (const auto& [url, target] : _targets)
        all.queued += target.queue.size();
    all.queuedBytes = _bytes;
    return all;
}

void Sender::stop()
{
    const std::lock_guard<std::mutex> one(_stopping);
    {
        const std::lock_guard<std::mutex> lock(_lock);
        if (!_isStopping)
            _stopDeadline = Clock::now() + _settings.stopTime;
        _isStopping = true;
    }
    if (!_thread.joinable())
        return;
    _client.wake();
    _thread.join();
}

// --- Sending, on the sender's thread

void Sender::run()
{
    const auto attempt = [](auto work)
    {
        try
        {
            work();
            return true;
        }
        catch (const std::exception& problem)
        {
            logProblem(problem);
            return false;
        }
    };
    while (!isDone(Clock::now()))
        if (!attempt([this] { serve(); }))
            std::this_thread::sleep_for(kRest);
    abandon();
    attempt([this] { reportLosses(true); });
}

void Sender::serve()
{
    for (Start& one : takeDue(Clock::now()))
        try
        {
            _client.start(one.target, one.target->url, std::move(one.body), one.isFresh);
        }
        catch (const std::exception& problem)
        {
            Http_Client::Outcome outcome;
            outcome.peer = one.target;
            outcome.reason = problem.what();
            settle(outcome);
        }
    for (Http_Client::Outcome& outcome : _client.wait(pauseUntilDue(Clock::now())))
        settle(outcome);
    reportLosses(false);
    forgetIdle(Clock::now());
}

std::vector<Sender::Start> Sender::takeDue(Clock::time_point now)
{
    std::vector<Start> due;
    const std::lock_guard<std::mutex> lock(_lock);
    due.reserve(_targets.size());
    for (auto& [url, target] : _targets)
        if (!target.isUnderWay && !target.queue.empty() && (_isStopping || target.dueTime <= now))
        {
            target.isUnderWay = true;
            due.push_back({&target, target.queue.front(), target.takesFresh});
        }
    return due;
}

milliseconds Sender::pauseUntilDue(Clock::time_point now) const
{
    const std::lock_guard<std::mutex> lock(_lock);
    Clock::time_point next = _isStopping ? _stopDeadline : now + kLongWait;
    for (const auto& [url, target] : _targets)
    {
        if (const auto report = target.losses.dueTime())
            next = std::min(next, *report);
        else if (target.queue.empty())
            next = std::min(next, target.idleSince + _settings.idleTime);
        if (!target.isUnderWay && !target.queue.empty())
            next = std::min(next, target.dueTime);
    }
    // A millisecond more than is left, or the wait would end too early time and again.
    return next <= now ? milliseconds(0)
                       : std::chrono::duration_cast<milliseconds>(next - now) + milliseconds(1);
}

// A destination whose try is over can be tried again, whatever happens here.
void Sender::settle(Http_Client::Outcome& outcome) noexcept
try
{
    conclude(outcome);
}
catch (const std::exception& problem)
{
    logProblem(problem);
    Target& target = *static_cast<Target*>(outcome.peer);
    const std::lock_guard<std::mutex> lock(_lock);
    target.isUnderWay = false;
    target.dueTime = Clock::now() + kRest;
}

void Sender::conclude(Http_Client::Outcome& outcome)
{
    Target& target = *static_cast<Target*>(outcome.peer);
    const std::string refusal = outcome.result == Http_Result::Answered ? refusalIn(outcome) : "";
    {
        const std::lock_guard<std::mutex> lock(_lock);
        target.isUnderWay = false;
        const bool wasFresh = std::exchange(target.takesFresh, false);
        if (outcome.result == Http_Result::Unusable)
        {
            lose(target, Loss::Unusable, 0, 1, outcome.reason);
            return startOver(target);
        }
        // The listener may have closed a kept connection at any time: that says nothing about the listener.
        if (outcome.result == Http_Result::Unheard && outcome.wasKept && !wasFresh)
        {
            target.takesFresh = true;
            target.dueTime = Clock::now();
            return;
        }
        if (outcome.result == Http_Result::Answered && !isForLater(outcome))
        {
            target.failures = 0;
            if (!refusal.empty())
            {
                lose(target, Loss::Refused, 0, 1, refusal);
                return startOver(target);
            }
            const std::size_t size = target.queue.front()->size();
            target.queue.pop_front();
            target.bytes -= size;
            _bytes -= size;
            ++_counts.delivered;
            return startOver(target);
        }
    }
    if (outcome.result == Http_Result::Answered)
        outcome.reason = refusal;
    retry(target, outcome);
}

// The first message is gone; the next one, if any, has all tries before it.
void Sender::startOver(Target& target)
{
    target.tries = 0;
    target.wasAnswered = false;
    target.dueTime = Clock::now();
    if (!target.queue.empty())
        return;
    target.failures = 0;
    target.idleSince = target.dueTime;
}

void Sender::retry(Target& target, const Http_Client::Outcome& outcome)
{
    bool isFirst = false;
    {
        const std::lock_guard<std::mutex> lock(_lock);
        target.wasAnswered = target.wasAnswered || outcome.result == Http_Result::Answered;
        ++target.tries;
        isFirst = ++target.failures == 1;
        if (_isStopping)
        {
            lose(target, Loss::Stopped, 0, target.queue.size(), outcome.reason);
            return startOver(target);
        }
        if (target.tries < _settings.tries)
        {
            const milliseconds asked = std::min<milliseconds>(outcome.retryAfter, _settings.longestPause);
            target.dueTime = Clock::now() + std::max(asked, _settings.pauseAfter(target.failures));
        }
    }
    if (isFirst)
        cim_log(kLogInfo,
                "Indications for %s wait, for it does not take them: %s\n",
                loggable(target.url).c_str(),
                printable(outcome.reason).c_str());
    if (target.tries >= _settings.tries)
        giveUp(target, outcome.reason);
}

void Sender::giveUp(Target& target, const std::string& reason)
{
    // Who answers, be it to come later, is not dead.
    Persistence persistence =
        target.wasAnswered ? Persistence::Permanent : _hooks.persistenceOf(target.destination);
    if (persistence == Persistence::Transient)
    {
        const std::uint32_t expired = _hooks.expire(target.destination);
        cim_log(kLogInfo,
                "%s did not answer %u times: expired %u listeners\n",
                loggable(target.url).c_str(),
                target.tries,
                expired);
        if (expired == 0) // the switch keeps it, for now
            persistence = Persistence::Permanent;
    }
    const std::lock_guard<std::mutex> lock(_lock);
    if (persistence == Persistence::Permanent)
        lose(target, target.wasAnswered ? Loss::Refused : Loss::Unheard, 0, 1, reason);
    else
        lose(target,
             persistence == Persistence::Transient ? Loss::Expired : Loss::Unheard,
             0,
             target.queue.size(),
             reason);
    startOver(target);
    if (!target.queue.empty())
        target.dueTime += _settings.pauseAfter(target.failures);
}

void Sender::reportLosses(bool all)
{
    const Clock::time_point now = Clock::now();
    std::vector<std::pair<std::string, std::string>> lines;
    {
        const std::lock_guard<std::mutex> lock(_lock);
        for (auto& [url, target] : _targets)
            if (const auto due = target.losses.dueTime(); due && (all || *due <= now))
                lines.emplace_back(loggable(url), target.losses.take(now, _settings.logPeriod));
    }
    for (const auto& [url, text] : lines)
        cim_log(kLogCritical, "Indications for %s lost: %s\n", url.c_str(), text.c_str());
}

void Sender::forgetIdle(Clock::time_point now)
{
    const std::lock_guard<std::mutex> lock(_lock);
    for (auto place = _targets.begin(); place != _targets.end();)
    {
        Target& target = place->second;
        if (target.queue.empty() && target.losses.isEmpty() && target.idleSince + _settings.idleTime <= now)
        {
            _client.forget(&target);
            place = _targets.erase(place);
        }
        else
        {
            ++place;
        }
    }
}

bool Sender::isDone(Clock::time_point now) const
{
    const std::lock_guard<std::mutex> lock(_lock);
    return _isStopping && (now >= _stopDeadline ||
                           std::all_of(_targets.begin(),
                                       _targets.end(),
                                       [](const auto& entry) { return entry.second.queue.empty(); }));
}

void Sender::abandon()
{
    const std::lock_guard<std::mutex> lock(_lock);
    for (auto& [url, target] : _targets)
        lose(target, Loss::Stopped, 0, target.queue.size());
}

} // namespace cimple
