// An edit of the switch's configuration: what is written in it takes effect when it is saved and activated.
#ifndef SIMULATOR_MODEL_CONFIGEDIT_H
#define SIMULATOR_MODEL_CONFIGEDIT_H

#include "simulator/model/TfPorts.h"

#include <utility>
#include <vector>

namespace simulator
{

class ConfigEdit
{
  public:
    // The new list of a local port.
    struct Write
    {
        int port = 0;
        TfList list = nullptr;
        TfPorts ports;
    };

    void add(Write write) { _writes.push_back(std::move(write)); }
    // All that was written so far; what comes later needs another save.
    void save() { _saved = _writes; }
    // In their order; nothing before the first save.
    const std::optional<std::vector<Write>>& saved() const { return _saved; }

  private:
    std::vector<Write> _writes;
    std::optional<std::vector<Write>> _saved;
};

} // namespace simulator

#endif
