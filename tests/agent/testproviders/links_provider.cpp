// Associations between the stored instances, and a careful use of every filter.
#include "tests/agent/testproviders/test_provider.h"

#include <string>
#include <vector>

using namespace testprovider;

namespace
{

const CMPIBroker* broker = nullptr;

struct End
{
    const char* role;
    const char* className;
    const char* name;
};

struct Link
{
    const char* className;
    End ends[2];
};

const Link links[] = {
    {"Test_Link", {{"Left", "Test_Widget", "w1"}, {"Right", "Test_Sprocket", "s1"}}},
    {"Test_Link", {{"Left", "Test_Widget", "w1"}, {"Right", "Test_Widget", "w2"}}},
    {"Test_StrongLink", {{"Left", "Test_Gadget", "g1"}, {"Right", "Test_Widget", "w1"}}},
    {"Test_StrongLink", {{"Left", "Test_Widget", "w2"}, {"Right", "Test_Widget", "w2"}}},
    {"Test_Ownership", {{"Owner", "Test_Widget", "w1"}, {"Owned", "Test_Sprocket", "s1"}}},
};

CMPIObjectPath* pathOf(const End& end)
{
    // No namespace: the broker knows where the request came from.
    CMPIObjectPath* path = CMNewObjectPath(broker, nullptr, end.className, nullptr);
    addKey(path, "name", end.name);
    return path;
}

bool isA(CMPIObjectPath* path, const char* wanted)
{
    return !wanted || CMClassPathIsA(broker, path, wanted, nullptr);
}

bool hasRole(const End& end, const char* role)
{
    return !role || strcasecmp(role, end.role) == 0;
}

bool isSame(const CMPIObjectPath* path, const End& end)
{
    return className(path) == end.className && keyText(path, "Name") == end.name;
}

CMPIObjectPath* linkPath(const Link& link)
{
    CMPIObjectPath* path = CMNewObjectPath(broker, "root/test", link.className, nullptr);
    for (const End& end : link.ends)
    {
        CMPIObjectPath* reference = pathOf(end);
        path->ft->addKey(path, end.role, reinterpret_cast<CMPIValue*>(&reference), CMPI_ref);
    }
    return path;
}

CMPIInstance* linkInstance(const Link& link)
{
    CMPIInstance* instance = CMNewInstance(broker, linkPath(link), nullptr);
    for (const End& end : link.ends)
    {
        CMPIObjectPath* reference = pathOf(end);
        instance->ft->setProperty(instance, end.role, reinterpret_cast<CMPIValue*>(&reference), CMPI_ref);
    }
    return instance;
}

struct Filter
{
    const char *assocClass, *resultClass, *role, *resultRole;
};

// Calls `found(link, far end)` for each end of a link that the source stands at and the filter allows.
template <class Found>
CMPIStatus follow(const CMPIResult* result, const CMPIObjectPath* source, const Filter& filter, Found found)
{
    for (const Link& link : links)
        for (int near = 0; near < 2; ++near)
        {
            const End& far = link.ends[1 - near];
            if (!isSame(source, link.ends[near]) || !hasRole(link.ends[near], filter.role) ||
                !hasRole(far, filter.resultRole) || !isA(linkPath(link), filter.assocClass) ||
                !isA(pathOf(far), filter.resultClass))
                continue;
            const CMPIStatus status = found(link, far);
            if (status.rc != CMPI_RC_OK)
                return status;
        }
    return CMReturnDone(result);
}

using Mi = CMPIAssociationMI*;
using Context = const CMPIContext*;
using Result = const CMPIResult*;
using Path = const CMPIObjectPath*;
using Text = const char*;

CMPIStatus associators(Mi,
                       Context context,
                       Result result,
                       Path source,
                       Text assoc,
                       Text end,
                       Text role,
                       Text endRole,
                       Text* names)
{
    return follow(result,
                  source,
                  {assoc, end, role, endRole},
                  [&](const Link&, const End& far)
                  {
                      // The far end is another provider's: the server is asked for it.
                      CMPIObjectPath* path = pathOf(far);
                      CMSetNameSpace(path, "root/test");
                      CMPIStatus status = ok();
                      CMPIInstance* instance = CBGetInstance(broker, context, path, names, &status);
                      return instance ? CMReturnInstance(result, instance) : status;
                  });
}

CMPIStatus
associatorNames(Mi, Context, Result result, Path source, Text assoc, Text end, Text role, Text endRole)
{
    return follow(result,
                  source,
                  {assoc, end, role, endRole},
                  [&](const Link&, const End& far) { return CMReturnObjectPath(result, pathOf(far)); });
}

CMPIStatus references(Mi, Context, Result result, Path source, Text assoc, Text role, Text*)
{
    return follow(result,
                  source,
                  {assoc, nullptr, role, nullptr},
                  [&](const Link& link, const End&) { return CMReturnInstance(result, linkInstance(link)); });
}

CMPIStatus referenceNames(Mi, Context, Result result, Path source, Text assoc, Text role)
{
    return follow(result,
                  source,
                  {assoc, nullptr, role, nullptr},
                  [&](const Link& link, const End&) { return CMReturnObjectPath(result, linkPath(link)); });
}

const CMPIAssociationMIFT table{
    CMPIVersion200, 1, "Links", nothingToClean, associators, associatorNames, references, referenceNames};

} // namespace

PROVIDER_INTERFACE(Links, Association, table)
