// Building the core on the test providers.
#include "tests/agent/testproviders/TestCore.h"

namespace cimd::test
{
namespace
{

const std::string kFiles = CIMD_TEST_FILES;

} // namespace

std::string repositoryFile()
{
    return kFiles + "/repository.xml";
}

std::string providerDirectory()
{
    return CIMD_TEST_PROVIDERS;
}

TestCore::TestCore() : _core(repositoryFile(), kFiles + "/providers.reg", providerDirectory()) {}

std::vector<std::string> TestCore::names(const std::string& className)
{
    Collector<ObjectPath> paths;
    service().enumerateInstanceNames(context, {kNameSpace, className}, paths);
    std::vector<std::string> labels;
    for (const ObjectPath& path : paths.items)
        labels.push_back(label(path));
    return labels;
}

ObjectPath named(const std::string& className, const std::string& name, const char* key)
{
    ObjectPath path(kNameSpace, className);
    path.setKey(key, CimValue::string(name));
    return path;
}

std::string label(const ObjectPath& path)
{
    const CimValue* name = path.findKey("Name");
    return path.className().str() + ":" + (name ? name->asString() : path.text());
}

std::string outcome(const std::function<void()>& action)
{
    try
    {
        action();
        return "OK";
    }
    catch (const CimError& error)
    {
        return std::to_string(error.code()) + " " + error.what();
    }
}

} // namespace cimd::test
