// A fabric whose pairs can be counted on the fingers, with short names for what is in it.
#ifndef TESTS_FABRICPROVIDERS_SMALL_FABRIC_H
#define TESTS_FABRICPROVIDERS_SMALL_FABRIC_H

#include "tests/common/testing/Switch_Test.h"

#include <cctype>

namespace small_fabric
{

// The local switch S1 of domain 1 has the ports P10 to P13, of which P12 has no link; the switch S2 of domain
// 2 has P20 to P22. P10 is linked to P21. The nodes N1 and N2 are attached to P13, N3 to P22. World Wide
// Names are written in every letter case; N3's is lower than that of its port.
inline simulator::Scenario scenario()
{
    const auto down = [](simulator::PortScenario& port) { port.link = simulator::LinkState::down; };
    return simulator::SimSwitch::make()
        .wwn("100002A5C0de0001")
        .port(2, down)
        .remote(2, 3)
        .isl({1, 0, 2, 1, false})
        .node(1, 3, "2100AAc5c0de0009")
        .node(1, 3, "2100aac5c0de0001")
        .node(2, 2, "1000AAC5C0DE0002")
        .scenario();
}

// The text with the World Wide Names of scenario() replaced by the names above.
inline std::string shortened(std::string text)
{
    static const std::pair<const char*, const char*> kNames[] = {{"100002A5C0DE0001", "S1"},
                                                                 {"200002A5C0DE0001", "P10"},
                                                                 {"200102A5C0DE0001", "P11"},
                                                                 {"200202A5C0DE0001", "P12"},
                                                                 {"200302A5C0DE0001", "P13"},
                                                                 {"100002A5C0DE1002", "S2"},
                                                                 {"200002A5C0DE1002", "P20"},
                                                                 {"200102A5C0DE1002", "P21"},
                                                                 {"200202A5C0DE1002", "P22"},
                                                                 {"2100AAC5C0DE0009", "N1"},
                                                                 {"2100AAC5C0DE0001", "N2"},
                                                                 {"1000AAC5C0DE0002", "N3"}};
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    for (const auto& [wwn, name] : kNames)
    {
        const std::size_t at = text.find(wwn);
        if (at != std::string::npos)
            text.replace(at, std::strlen(wwn), name);
    }
    return text;
}

// The short name of a switch, port, endpoint, node, network or fabric.
inline std::string nameOf(const cimple::Instance& instance)
{
    auto properties = described(instance);
    for (const char* key : {"DeviceID", "InstanceID", "Name"})
    {
        if (properties.count(key) != 0)
            return shortened(properties[key]);
    }
    return "?";
}

// The two ends of an association instance, "first-second".
inline std::string pairOf(const cimple::Instance& association)
{
    std::string pair;
    for (std::size_t i = 0; i < association.meta_class->num_meta_features; ++i)
    {
        const cimple::Meta_Feature* feature = association.meta_class->meta_features[i];
        if (!(feature->flags & CIMPLE_FLAG_REFERENCE))
            continue;
        const auto* reference = reinterpret_cast<const cimple::Meta_Reference*>(feature);
        const cimple::Instance* end = cimple::__ref_of(&association, reference);
        pair += (pair.empty() ? "" : "-") + nameOf(*end);
    }
    return pair;
}

} // namespace small_fabric

#endif
