// Counting losses, and the words for the log.
#include "delivery/Losses.h"

#include <algorithm>

namespace cimple
{

namespace
{

constexpr const char* kWords[kLossReasons] = {"for which there was no room",
                                              "without an answer",
                                              "refused",
                                              "of a transient listener that does not answer",
                                              "without a URL that can be used",
                                              "left at the end"};

constexpr const char* kNames[kLossReasons] = {
    "queue_full", "unheard", "refused", "expired", "unusable", "stopped"};

constexpr std::size_t kShown = 200; // bytes of a text from elsewhere

} // namespace

const char* lossName(Loss reason)
{
    return kNames[static_cast<std::size_t>(reason)];
}

void Losses::add(Loss reason, std::size_t count, const std::string& detail)
{
    _counts[static_cast<std::size_t>(reason)] += count;
    _count += count;
    if (count > 0 && !detail.empty())
        _detail = detail;
}

std::optional<Losses::Time> Losses::dueTime() const
{
    return isEmpty() ? std::nullopt : std::optional(_quietUntil);
}

std::string Losses::take(Time now, std::chrono::milliseconds period)
{
    std::string text;
    for (std::size_t reason = 0; reason < kLossReasons; ++reason)
        if (_counts[reason] > 0)
            text += (text.empty() ? "" : ", ") + std::to_string(_counts[reason]) + " " + kWords[reason];
    if (!_detail.empty())
        text += " (" + printable(_detail) + ")";
    _counts.fill(0);
    _count = 0;
    _detail.clear();
    _quietUntil = now + period;
    return text;
}

std::string printable(std::string_view text)
{
    std::string shown(text.substr(0, kShown));
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return text.size() > kShown ? shown + "..." : shown;
}

std::string loggable(std::string_view url)
{
    // Up to the last of these signs: a password may hold one that should have been escaped.
    const std::size_t end = url.rfind('@');
    if (end == url.npos)
        return printable(url);
    const std::size_t scheme = std::min(url.find("://"), end);
    const std::size_t start = scheme == end ? 0 : scheme + 3;
    return printable(std::string(url.substr(0, start)).append("...").append(url.substr(end)));
}

} // namespace cimple
