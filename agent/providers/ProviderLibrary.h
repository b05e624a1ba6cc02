// A loaded provider library.
#ifndef AGENT_PROVIDERS_PROVIDERLIBRARY_H
#define AGENT_PROVIDERS_PROVIDERLIBRARY_H

#include <string>

namespace cimd
{

// Stays loaded until the process ends: threads of a library may still be on their last instructions when its
// providers were cleaned up, and its objects may be referred to by others.
class ProviderLibrary
{
  public:
    // Loads <directory>/lib<location>.so; std::runtime_error with the loader's reason if that fails. If the
    // library exports
    //     extern "C" void cim_log_configure(int level, void (*sink)(int level, const char* text));
    // its log goes to the agent's, from the agent's level up. Its levels are 1 trace, 2 information, 4
    // critical.
    ProviderLibrary(const std::string& directory, const std::string& location);

    const std::string& file() const { return _file; }
    // Null pointer if the library does not export the symbol.
    void* symbol(const std::string& name) const;
    // Tells the library the agent's present level; safe while others log.
    void connectLog() const;

  private:
    std::string _file;
    void* _handle;
};

} // namespace cimd

#endif
