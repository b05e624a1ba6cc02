// Dividing text into lines.
#include "agent/settings/paragraph.h"

#include <sstream>

namespace cimd
{

std::string paragraph(const std::string& start, const std::string& words)
{
    constexpr std::size_t kWidth = 110;
    std::string text;
    std::string line;
    std::istringstream rest(words);
    for (std::string word; rest >> word;)
    {
        if (!line.empty() && start.size() + line.size() + 1 + word.size() > kWidth)
        {
            text += start + line + '\n';
            line.clear();
        }
        line += (line.empty() ? "" : " ") + word;
    }
    return text + start + line + '\n';
}

} // namespace cimd
