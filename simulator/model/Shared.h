// A value that its copies share until one of them changes.
#ifndef SIMULATOR_MODEL_SHARED_H
#define SIMULATOR_MODEL_SHARED_H

#include <memory>
#include <utility>

namespace simulator
{

// Makes copies of large structures cheap. All copies must be guarded by the same lock.
template <class T>
class Shared
{
  public:
    Shared() : Shared(T()) {}
    explicit Shared(T value) : _value(std::make_shared<T>(std::move(value))) {}

    const T& operator*() const { return *_value; }
    const T* operator->() const { return _value.get(); }

    // The value for changing; other copies keep theirs.
    T& own()
    {
        if (_value.use_count() > 1)
            _value = std::make_shared<T>(*_value);
        return *_value;
    }

  private:
    std::shared_ptr<T> _value;
};

} // namespace simulator

#endif
