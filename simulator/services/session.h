// What every call of the switch-access library does first.
#ifndef SIMULATOR_SERVICES_SESSION_H
#define SIMULATOR_SERVICES_SESSION_H

#include "platform/xpl_types.h"
#include "simulator/engine/calls.h"

#include <optional>
#include <string_view>

namespace simulator
{

// Counts the call and checks the handle. Returns 0, or the status that the call is to return.
std::int32_t beginCall(Call call, xpl_Handle handle);
// The same for calls without a handle.
std::int32_t beginCall(Call call);

// A block that xpl_libFreeMemory takes back; null when memory ran out. Blocks not given back are counted.
void* allocateBlock(std::size_t sizeBytes);
// Takes a block back; anything else stops the program with a message.
void freeBlock(void* block);
std::size_t outstandingBlocks();

// A cell of switch_server.h that holds a copy of `text`, or no value.
char** allocateTextCell(std::optional<std::string_view> text);

} // namespace simulator

#endif
