// Delivery of indications: who subscribed to a filter, and the way of an indication to them.
//
// All functions may be called from any thread, at any time and with any lock but those of the platform's
// event receiver held, unless they say otherwise. None of them throws.
#ifndef DELIVERY_DELIVERY_H
#define DELIVERY_DELIVERY_H

#include "delivery/Losses.h"

#include <cimple/cimple.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace cimple
{

// URLs of listeners, "http://host:port/path" or "https://...", as clients gave them.
typedef std::vector<String> Destinations;

// Deletes the transient listeners with this destination, which do not answer; the number of them. Called on
// the delivery's thread, which holds no lock then.
typedef std::uint32_t (*Expire_Listener)(const String& destination);

// In messages times destinations.
struct Delivery_Counts
{
    std::uint64_t delivered = 0; // since the start
    std::array<std::uint64_t, kLossReasons> lost{};
    std::size_t queued = 0; // at present
    std::size_t queuedBytes = 0;

    std::uint64_t of(Loss reason) const { return lost[static_cast<std::size_t>(reason)]; }
};

// Starts the delivery's thread; nothing when it runs. False, with a line in the log, when it cannot be
// started. What it trusts of HTTPS listeners comes from the environment:
//   VRAX_INDICATION_CA        a PEM file with the certificates that vouch for listeners, in place of the
//                             system's
//   VRAX_INDICATION_INSECURE  not empty: any certificate is accepted
// A build without libcurl has no delivery and nothing to start: the first indication is logged as lost.
bool startDelivery(Expire_Listener expire);

// Ends the delivery; nothing when it does not run. What is queued has three seconds to leave. Not to be
// called by an expiry, nor with a lock held that the expiry takes. Delivery may be started again.
void stopDelivery();

// The switch's listeners or subscriptions are, or may be, other ones than before. Never waits, so that the
// platform's event receiver may call it.
void subscriptionsChanged();

// Appends the destinations of the enabled subscriptions on a filter (delivery/filter_table.h) that have not
// run out, each of them once. Asks the switch only when the subscriptions have changed; when it cannot be
// read, what was read before stands. Takes a lock that is held while the switch is read.
void filterToDestinations(std::uint16_t filter, Destinations& list);

// Queues one indication for every destination named, once for each; does not wait for listeners. The instance
// stays the caller's. The indications of one destination arrive in the order of these calls. What cannot be
// delivered is counted and logged.
void sendIndication(const Instance* indication, const Destinations& list);

// Of the delivery that runs; zeros when none does.
Delivery_Counts deliveryCounts();

} // namespace cimple

#endif
