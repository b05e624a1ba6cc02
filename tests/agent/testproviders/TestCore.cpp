// Building the core on the test providers.
#include "tests/agent/testproviders/TestCore.h"

namespace cimd::test
{
namespace
{

const std::string kFiles = CIMD_TEST_FILES;

} // namespace

const ClassRepository& repository()
{
    static const ClassRepository classes = ClassRepository::load(kFiles + "/repository.xml");
    return classes;
}

TestCore::TestCore() : _core(kFiles + "/repository.xml", kFiles + "/providers.reg", CIMD_TEST_PROVIDERS) {}

TestCore::TestCore(const std::string& registrations)
    : _core(ClassRepository::load(kFiles + "/repository.xml"),
            parseRegistrations(registrations, "x.reg"),
            CIMD_TEST_PROVIDERS)
{
}

std::size_t TestCore::countOf(const std::string& className)
{
    Collector<ObjectPath> paths;
    service().enumerateInstanceNames(context, {kNameSpace, className}, paths);
    return paths.items.size();
}

ObjectPath named(const std::string& className, const std::string& name, const char* key)
{
    ObjectPath path(kNameSpace, className);
    path.setKey(key, CimValue::string(name));
    return path;
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
