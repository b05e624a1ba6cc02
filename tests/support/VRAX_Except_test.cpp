// Tests of the providers' exception.
#include "support/VRAX_Except.h"

#include "tests/support/Log_Capture.h"

#include <gtest/gtest.h>

namespace
{

TEST(VraxExcept, PrintsItsOriginAtTheLevelOfItsSeverity)
{
    const Log_Capture log(kLogTrace);
    VRAX_Except("switchProviders/X_Provider", "load", 12, CRIT, "port %s: %d", "7", 3).print();
    VRAX_Except("switchProviders/X_Provider", "load", 13, INFO, "100%%").print();
    const std::vector<Log_Capture::Line> expected = {
        {kLogCritical, "Exception[CRIT]:switchProviders/X_Provider:load[12] port 7: 3"},
        {kLogInfo, "Exception[INFO]:switchProviders/X_Provider:load[13] 100%"},
    };
    EXPECT_EQ(log.take(), expected);
}

TEST(VraxExcept, CutsTheMessage)
{
    for (const std::size_t length : {2022u, 2023u, 2024u, 4000u})
    {
        std::string text(length, 'a');
        text.front() = 'b';
        const VRAX_Except failure("f", "load", 1, CRIT, "%s", text.c_str());
        EXPECT_EQ(failure.message, text.substr(0, 2023)) << "length " << length;

        // Printing adds its own text in front and still loses nothing.
        const Log_Capture log;
        failure.print();
        EXPECT_EQ(log.take().at(0).second, "Exception[CRIT]:f:load[1] " + text.substr(0, 2023));
    }
}

} // namespace
