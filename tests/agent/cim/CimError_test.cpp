// Messages of errors stay short, whatever names are in them.
#include "agent/cim/CimError.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

TEST(CimErrorTest, LongMessagesLoseTheirMiddle)
{
    const std::string euro = "\xE2\x82\xAC";
    for (std::size_t filler = 0; filler < 8; ++filler)
    {
        std::string name(filler, 'x');
        while (name.size() < 100000)
            name += euro;
        const std::string message =
            CimError(CimStatus::InvalidClass, "class " + name + " does not exist in namespace root").what();
        EXPECT_LE(message.size(), 1000U);
        EXPECT_EQ(0U, message.rfind("class " + std::string(filler, 'x') + euro, 0));
        const std::string end = euro + " does not exist in namespace root";
        EXPECT_EQ(message.size() - end.size(), message.rfind(end));
        const std::size_t cut = message.find(" bytes left out] " + euro);
        ASSERT_NE(std::string::npos, cut) << "cut within a character: " << message;
        EXPECT_EQ(euro + " [", message.substr(message.rfind(" [", cut) - 3, 5)) << message;
    }
    const std::string whole(1000, 'x');
    EXPECT_EQ(whole, CimError(CimStatus::Failed, whole).what());
}

} // namespace
} // namespace cimd
