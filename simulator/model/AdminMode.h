// The administrative mode of the switch: whoever changes its zoning, its logs or its configuration holds it,
// one at a time.
#ifndef SIMULATOR_MODEL_ADMINMODE_H
#define SIMULATOR_MODEL_ADMINMODE_H

#include <string>
#include <string_view>
#include <thread>

namespace simulator
{

class AdminMode
{
  public:
    // Takes it for the duration of one change.
    class Turn
    {
      public:
        Turn(AdminMode& mode, std::string_view holder) : _mode(mode), _taken(mode.take(holder)) {}
        ~Turn()
        {
            if (_taken)
                _mode.release();
        }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

        bool taken() const { return _taken; }

      private:
        AdminMode& _mode;
        bool _taken;
    };

    // False while somebody has it, the caller included. The name must not be empty.
    bool take(std::string_view holder)
    {
        if (!_holder.empty())
            return false;
        _holder = holder;
        _thread = std::this_thread::get_id();
        return true;
    }
    void release() { _holder.clear(); }

    // Empty while it is free.
    const std::string& holder() const { return _holder; }
    // Whether the calling thread took it by this name.
    bool isOwn(std::string_view holder) const
    {
        return _holder == holder && _thread == std::this_thread::get_id();
    }

  private:
    std::string _holder;
    std::thread::id _thread;
};

} // namespace simulator

#endif
