// The enumerations that clients have opened and not yet pulled to their end.
#ifndef AGENT_PULL_ENUMERATIONS_H
#define AGENT_PULL_ENUMERATIONS_H

#include "agent/cim/CimName.h"
#include "agent/limits/Limits.h"
#include "agent/pull/Spool.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

namespace cimd
{

// What is pulled from an enumeration.
enum class PullContent
{
    Instances,
    Paths
};

// Who opened an enumeration, and where: no other user may go on with it, nor in another namespace.
struct EnumerationOwner
{
    std::string principal; ///< empty if nobody had to log in
    std::string nameSpace;
    std::string address = {}; ///< tells clients apart that have the same user; a client may change it
};

// Holds the results of each enumeration in a spool until they are pulled, the client closes it, or nothing
// was asked of it for its timeout. Names of enumerations cannot be guessed. Used from any thread.
class Enumerations
{
  public:
    using Time = std::chrono::steady_clock::time_point;
    using Clock = std::function<Time()>;

    Enumerations(const Limits& limits,
                 std::string spoolDirectory,
                 Clock clock = std::chrono::steady_clock::now);
    Enumerations(const Enumerations&) = delete;
    Enumerations& operator=(const Enumerations&) = delete;

    struct Enumeration
    {
        Spool spool;
        PullContent content;
        EnumerationOwner owner;
        CimName className; ///< the class it is about, for the log
        std::chrono::seconds timeout;
        Time end{};
        bool isBusy = false;
    };

    // The use of one enumeration by one operation. Ends the enumeration unless it is kept.
    class Use
    {
      public:
        Use(Enumerations& all, std::string name, Enumeration& enumeration)
            : _all(all), _name(std::move(name)), _enumeration(enumeration)
        {
        }
        ~Use() { _all.finish(_name, _isKept); }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

        // The EnumerationContext that clients get.
        const std::string& name() const { return _name; }
        const CimName& className() const { return _enumeration.className; }
        Spool& spool() { return _enumeration.spool; }
        // The client may pull on; its timeout starts anew when the use ends.
        void keep() { _isKept = true; }

      private:
        Enumerations& _all;
        const std::string _name;
        Enumeration& _enumeration;
        bool _isKept = false;
    };

    // The time an enumeration gets, from what its client asked for. CimError (invalid operation timeout) for
    // more than the longest one and for 0, which would be for ever.
    std::chrono::seconds timeout(std::optional<std::uint32_t> wanted) const;

    // An empty spool for results.
    Spool spool() { return Spool(_area); }

    // CimError (server limits exceeded) if there are too many, of all clients or of this one; the oldest are
    // not given up for new ones.
    Use add(Enumeration enumeration);

    // The enumeration of the name, for one operation. CimError: invalid enumeration context if there is none
    // (any more), it is somebody else's or holds something else; invalid namespace if it was opened in
    // another one; failed if another operation is using it.
    Use use(const std::string& name, const EnumerationOwner& owner, PullContent content);

    // Ends an enumeration. CimErrors as above, but cannot be abandoned while it is being pulled.
    void close(const std::string& name, const EnumerationOwner& owner);

    // Gives up those whose time is over. Costs nothing worth mentioning when there are none.
    void expire();

    std::size_t size() const { return _size; }
    const SpoolArea& area() const { return _area; }

  private:
    using Table = std::unordered_map<std::string, std::unique_ptr<Enumeration>>;

    void finish(const std::string& name, bool isKept) noexcept;
    // With _mutex held.
    void checkRoom(const EnumerationOwner& owner) const;
    Table::iterator find(const std::string& name, const EnumerationOwner& owner);
    std::unique_ptr<Enumeration> remove(Table::iterator place);

    const Limits _limits;
    const Clock _clock;
    SpoolArea _area;
    std::mutex _mutex;
    Table _table;
    std::atomic<std::size_t> _size{0}; // of _table, to be read without the mutex
};

} // namespace cimd

#endif
