// Who has how many connections, for people.
#ifndef AGENT_HTTP_CONNECTIONTABLE_H
#define AGENT_HTTP_CONNECTIONTABLE_H

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace cimd
{

class ConnectionTable
{
  public:
    // Of a server that takes so many.
    explicit ConnectionTable(std::size_t most) : _most(most) {}

    void add(const std::string& address, const char* state);
    // "192.0.2.7: 12: 10 idle, 2 head" for each address, those with the most connections first, below a line
    // that counts all.
    std::vector<std::string> lines() const;

  private:
    struct Row
    {
        std::size_t count = 0;
        std::map<std::string, std::size_t> states;
    };

    const std::size_t _most;
    std::map<std::string, Row> _rows; // by address
};

} // namespace cimd

#endif
