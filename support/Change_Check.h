// Debug check that a cached instance is never changed in place.
#ifndef SUPPORT_CHANGE_CHECK_H
#define SUPPORT_CHANGE_CHECK_H

#include <cimple/cimple.h>

#ifdef VRAX_LOCK_CHECKS
#include <memory>
#include <vector>
#endif

namespace cimple
{

#ifdef VRAX_LOCK_CHECKS
// Keeps a copy of each instance as it was when its map took it, and compares when the instance leaves:
// requests share cached instances without a lock, so that a change goes into a copy that takes the instance's
// place. Comparing whenever one is handed out would cost as much as the request. An instance that was changed
// stops the program with its class and key.
//
// Told of what happens to the map's row of instances, by position.
class Change_Check
{
  public:
    typedef std::unique_ptr<Instance, void (*)(Instance*)> Copy;

    static Copy copyOf(const Instance* instance) { return Copy(clone(instance), &destroy); }

    // Makes room, so that added() cannot fail.
    void expectOne();
    void added(Copy copy) { _copies.push_back(std::move(copy)); }
    void replaced(std::size_t position, Copy copy) { _copies[position] = std::move(copy); }
    void leaving(std::size_t position, const Instance* instance) const;
    void left(std::size_t position);
    void allLeft(const Array<Instance*>& instances);

  private:
    std::vector<Copy> _copies;
};
#else
class Change_Check
{
  public:
    struct Copy
    {
    };
    static Copy copyOf(const Instance*) { return {}; }
    void expectOne() {}
    void added(Copy) {}
    void replaced(std::size_t, Copy) {}
    void leaving(std::size_t, const Instance*) const {}
    void left(std::size_t) {}
    void allLeft(const Array<Instance*>&) {}
};
#endif

} // namespace cimple

#endif
