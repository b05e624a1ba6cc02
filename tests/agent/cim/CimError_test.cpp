// Messages of errors stay short, whatever names are in them.
#include "agent/cim/CimError.h"

#include <gtest/gtest.h>
#include <regex>

namespace cimd
{
namespace
{

TEST(CimErrorTest, LongMessagesLoseTheirMiddle)
{
    const std::string euro = "\xE2\x82\xAC";
    for (std::size_t filler = 0; filler < 8; ++filler)
    {
        const std::string start(filler, 'x');
        std::string name = start;
        while (name.size() < 100000)
            name += euro;
        const std::string message = CimError(CimStatus::InvalidClass, name + " is unknown").what();
        EXPECT_LE(message.size(), 1000U);
        const std::regex whole(start + "(" + euro + ")+ \\[\\d+ bytes left out\\] (" + euro +
                               ")+ is unknown");
        EXPECT_TRUE(std::regex_match(message, whole)) << "cut within a character: " << message;
    }
    const std::string whole(1000, 'x');
    EXPECT_EQ(whole, CimError(CimStatus::Failed, whole).what());
}

} // namespace
} // namespace cimd
