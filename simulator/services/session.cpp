// The open switch and the library's memory.
#include "simulator/services/session.h"

#include "platform/xpl_lib.h"
#include "simulator/engine/Engine.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unordered_set>

struct xpl_SwitchSession
{
};

namespace simulator
{
namespace
{

xpl_SwitchSession theSession;

// The blocks handed out, so that giving back anything else is noticed where it happens.
class BlockList
{
  public:
    void add(void* block)
    {
        const Locked<Mutex> guard(_mutex);
        _blocks.insert(block);
    }

    bool remove(void* block)
    {
        const Locked<Mutex> guard(_mutex);
        return _blocks.erase(block) != 0;
    }

    std::size_t size() const
    {
        const Locked<Mutex> guard(_mutex);
        return _blocks.size();
    }

  private:
    mutable Mutex _mutex;
    std::unordered_set<void*> _blocks VRAX_GUARDED_BY(_mutex);
};

BlockList& blocks()
{
    static BlockList list;
    return list;
}

} // namespace

std::int32_t beginCall(Call call)
{
    return Engine::instance().probe.enter(call);
}

std::int32_t beginCall(Call call, xpl_Handle handle)
{
    const std::int32_t injected = beginCall(call);
    return injected != XPL_OK || handle == &theSession ? injected : std::int32_t{XPL_INVALID_HANDLE};
}

void* allocateBlock(std::size_t sizeBytes)
{
    void* block = std::malloc(sizeBytes);
    if (block != nullptr)
        blocks().add(block);
    return block;
}

void freeBlock(void* block)
{
    if (!blocks().remove(block))
    {
        std::fprintf(stderr, "simulated switch: given back a block that the library did not hand out\n");
        std::abort();
    }
    std::free(block);
}

std::size_t outstandingBlocks()
{
    return blocks().size();
}

char** allocateTextCell(std::optional<std::string_view> text)
{
    auto* cell = static_cast<char**>(allocateBlock(sizeof(char*)));
    if (cell == nullptr)
        return nullptr;
    *cell = text ? static_cast<char*>(std::malloc(text->size() + 1)) : nullptr;
    if (*cell != nullptr)
    {
        std::memcpy(*cell, text->data(), text->size());
        (*cell)[text->size()] = '\0';
    }
    return cell;
}

} // namespace simulator

xpl_Handle hSwitch = &simulator::theSession;

extern "C" void xpl_libFreeMemory(void* block)
{
    if (block != nullptr)
        simulator::freeBlock(block);
}
