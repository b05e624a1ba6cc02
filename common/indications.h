// Indications as a whole, which the module starts and stops; indicationProviders/ has what that takes.
#ifndef COMMON_INDICATIONS_H
#define COMMON_INDICATIONS_H

namespace cimple
{

// From here on the switch's events become indications on their way to the listeners; nothing when that is so
// already. False, with a line in the log, when a thread cannot be started; then nothing runs.
bool startIndications() noexcept;

// Ends what startIndications() began; nothing when nothing runs. Events that have arrived are handled first;
// neither they nor the delivery have more than some seconds for it. Not to be called from the log's sink, or
// with a lock of the module held.
void stopIndications() noexcept;

// Calls `sink` once for each counter of indications, on the calling thread:
//   delivered                  messages that their listener took; an indication is one for each listener
//   lost, by reason            messages given up (lossName() has the reasons)
//   queued, queued_bytes       messages that wait at present
//   events_waiting, events_lost, by kind of indication ("alert", "creation", "deletion", "modification")
// `label` is the reason or kind, else empty. The first two and the last count since the start.
typedef void (*Counter_Sink)(void* context, const char* name, const char* label, unsigned long long value);
void indicationCounters(Counter_Sink sink, void* context) noexcept;

} // namespace cimple

#endif
