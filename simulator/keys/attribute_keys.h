// The attribute keys that the simulated switch answers and the writes that it carries out.
#ifndef SIMULATOR_KEYS_ATTRIBUTE_KEYS_H
#define SIMULATOR_KEYS_ATTRIBUTE_KEYS_H

#include "platform/xpl_types.h"
#include "simulator/keys/KeyRegistry.h"
#include "simulator/model/FabricModel.h"

#include <functional>
#include <optional>

namespace simulator
{

// Receives the value of a key in an entry's value field.
class Answer
{
  public:
    // `value` has room for kXplSmlTextSize bytes; it is empty until something is answered.
    explicit Answer(char* value);

    // Each returns XPL_OK, so that a handler can end with it. Texts are cut to what the field holds.
    std::int32_t text(std::string_view value);
    std::int32_t decimal(std::uint64_t value);
    std::int32_t hex(std::uint64_t value); // lower-case, without prefix
    std::int32_t flag(bool value);         // "True" or "False"
    // An empty text is a value that is missing: XPL_NOT_AVAILABLE.
    std::int32_t present(std::string_view value);

  private:
    char* _value;
};

// `now` is model time in milliseconds. Handlers return an xpl_Status.
using ReadHandler = std::function<std::int32_t(
    const FabricModel& model, const KeyArguments& arguments, std::uint64_t now, Answer& answer)>;
using WriteHandler =
    std::function<std::int32_t(FabricModel& model, const KeyArguments& arguments, std::uint64_t now)>;

using ReadKeys = KeyRegistry<ReadHandler>;
using WriteKeys = KeyRegistry<WriteHandler>;

// All keys; built by the first call.
const ReadKeys& readKeys();
const WriteKeys& writeKeys();

// One function a family of keys, each in a file of its own.
void addSwitchKeys(ReadKeys& keys);
void addSwitchConfigKeys(ReadKeys& reads, WriteKeys& writes);
void addHardwareKeys(ReadKeys& keys);
void addPortKeys(ReadKeys& keys);
void addPortConfigKeys(ReadKeys& keys, WriteKeys& writes);
void addStatisticsKeys(ReadKeys& keys);
void addTopologyKeys(ReadKeys& keys);
void addNameServerKeys(ReadKeys& keys);
void addZoningKeys(ReadKeys& reads, WriteKeys& writes);
void addZoningCommands(WriteKeys& writes);
void addLogKeys(ReadKeys& reads, WriteKeys& writes);
void addCimKeys(ReadKeys& reads, WriteKeys& writes);

// What "True" and "False" mean; nothing for any other text.
std::optional<bool> flagNamed(std::string_view text);

// Wraps a reader of the local switch's facts.
template <class Read> // int32_t(const SwitchScenario& facts, Answer& answer)
ReadHandler ofLocalSwitch(Read read)
{
    return [read](const FabricModel& model, const KeyArguments&, std::uint64_t, Answer& answer)
    { return read(model.local().facts, answer); };
}

// Wraps a reader of a local port, whose number is the pattern's first argument.
template <class Read> // int32_t(const Switch& local, const Port& port, uint64_t now, Answer& answer)
ReadHandler ofLocalPort(Read read)
{
    return [read](const FabricModel& model, const KeyArguments& arguments, std::uint64_t now, Answer& answer)
    {
        const Port* port = model.localPort(arguments[0]);
        return port != nullptr ? read(model.local(), *port, now, answer) : std::int32_t{XPL_UNKNOWN_KEY};
    };
}

} // namespace simulator

#endif
