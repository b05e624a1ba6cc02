// Function tables of the test broker's paths, instances, arguments and contexts. Every getter makes its
// result in the session of the running call.
#include "test_object_types.h"

namespace test_broker
{

namespace
{

// --- object paths

std::unique_ptr<PathObject> makePath(Journal& journal, const Path& path);

CMPIObjectPath* clonePath(const CMPIObjectPath* p, CMPIStatus* rc)
{
    return adopt<CMPIObjectPath>(makePath(self(p).journal, self(p).path), rc);
}

CMPIStatus setNameSpace(const CMPIObjectPath* p, const char* ns)
{
    self(p).path.ns = ns;
    return {CMPI_RC_OK, nullptr};
}

CMPIString* getNameSpace(const CMPIObjectPath* p, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return newString(self(p).journal, self(p).path.ns);
}

CMPIStatus setHostname(const CMPIObjectPath*, const char*)
{
    return {CMPI_RC_OK, nullptr};
}

CMPIString* getHostname(const CMPIObjectPath* p, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return newString(self(p).journal, "");
}

CMPIStatus setClassName(const CMPIObjectPath* p, const char* className)
{
    self(p).path.className = className;
    return {CMPI_RC_OK, nullptr};
}

CMPIString* getClassName(const CMPIObjectPath* p, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return newString(self(p).journal, self(p).path.className);
}

CMPIStatus addKey(const CMPIObjectPath* p, const char* key, const CMPIValue* value, CMPIType type)
{
    if (!value)
        return {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
    set(self(p).path.keys, key, valueOf(value, type));
    return {CMPI_RC_OK, nullptr};
}

CMPIData asKey(CMPIData data)
{
    data.state = static_cast<CMPIValueState>(data.state | CMPI_keyValue);
    return data;
}

CMPIData getKey(const CMPIObjectPath* p, const char* key, CMPIStatus* rc)
{
    return asKey(lookUp(self(p).path.keys, key, self(p).journal, rc));
}

CMPIData getKeyAt(const CMPIObjectPath* p, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    return asKey(lookUpAt(self(p).path.keys, index, name, self(p).journal, rc));
}

CMPICount getKeyCount(const CMPIObjectPath* p, CMPIStatus* rc)
{
    return countOf(self(p).path.keys, rc);
}

CMPIStatus copyNameSpace(const CMPIObjectPath* p, const CMPIObjectPath* source)
{
    self(p).path.ns = self(source).path.ns;
    return {CMPI_RC_OK, nullptr};
}

CMPIString* pathToString(const CMPIObjectPath* p, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return newString(self(p).journal, textOf(self(p).path));
}

// The qualifier functions are optional and absent.
const CMPIObjectPathFT pathFT = {CMPIVersion200, release<CMPIObjectPath>,
                                 clonePath,      setNameSpace,
                                 getNameSpace,   setHostname,
                                 getHostname,    setClassName,
                                 getClassName,   addKey,
                                 getKey,         getKeyAt,
                                 getKeyCount,    copyNameSpace,
                                 copyNameSpace,  nullptr,
                                 nullptr,        nullptr,
                                 nullptr,        pathToString};

std::unique_ptr<PathObject> makePath(Journal& journal, const Path& path)
{
    auto object = std::make_unique<PathObject>(journal);
    object->path = path;
    object->hdl = &object->path;
    object->ft = &pathFT;
    return object;
}

// --- instances

std::unique_ptr<InstanceObject> makeInstance(Journal& journal, const Inst& inst);

CMPIInstance* cloneInstance(const CMPIInstance* i, CMPIStatus* rc)
{
    return adopt<CMPIInstance>(makeInstance(self(i).journal, self(i).inst), rc);
}

CMPIData getProperty(const CMPIInstance* i, const char* name, CMPIStatus* rc)
{
    return lookUp(self(i).inst.properties, name, self(i).journal, rc);
}

CMPIData getPropertyAt(const CMPIInstance* i, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    return lookUpAt(self(i).inst.properties, index, name, self(i).journal, rc);
}

CMPICount getPropertyCount(const CMPIInstance* i, CMPIStatus* rc)
{
    return countOf(self(i).inst.properties, rc);
}

CMPIStatus setProperty(const CMPIInstance* i, const char* name, const CMPIValue* value, CMPIType type)
{
    set(self(i).inst.properties, name, value ? valueOf(value, type) : Value::nullOf(type));
    return {CMPI_RC_OK, nullptr};
}

CMPIObjectPath* getObjectPath(const CMPIInstance* i, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return newPath(self(i).journal, self(i).inst.path);
}

CMPIStatus setPropertyFilter(const CMPIInstance* i, const char**, const char**)
{
    self(i).journal.violation("setPropertyFilter is unreliable: brokers disagree on keys");
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

CMPIStatus setObjectPath(const CMPIInstance* i, const CMPIObjectPath* p)
{
    self(i).inst.path = self(p).path;
    return {CMPI_RC_OK, nullptr};
}

const CMPIInstanceFT instanceFT = {CMPIVersion200,
                                   release<CMPIInstance>,
                                   cloneInstance,
                                   getProperty,
                                   getPropertyAt,
                                   getPropertyCount,
                                   setProperty,
                                   getObjectPath,
                                   setPropertyFilter,
                                   setObjectPath,
                                   nullptr};

std::unique_ptr<InstanceObject> makeInstance(Journal& journal, const Inst& inst)
{
    auto object = std::make_unique<InstanceObject>(journal);
    object->inst = inst;
    object->hdl = &object->inst;
    object->ft = &instanceFT;
    return object;
}

// --- arguments

CMPIArgs* cloneArgs(const CMPIArgs*, CMPIStatus* rc)
{
    done(rc, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIStatus addArg(const CMPIArgs* a, const char* name, const CMPIValue* value, CMPIType type)
{
    set(self(a).args, name, value ? valueOf(value, type) : Value::nullOf(type));
    return {CMPI_RC_OK, nullptr};
}

CMPIData getArg(const CMPIArgs* a, const char* name, CMPIStatus* rc)
{
    return lookUp(self(a).args, name, self(a).journal, rc);
}

CMPIData getArgAt(const CMPIArgs* a, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    return lookUpAt(self(a).args, index, name, self(a).journal, rc);
}

CMPICount getArgCount(const CMPIArgs* a, CMPIStatus* rc)
{
    return countOf(self(a).args, rc);
}

const CMPIArgsFT argsFT = {
    CMPIVersion200, release<CMPIArgs>, cloneArgs, addArg, getArg, getArgAt, getArgCount};

// --- contexts

CMPIContext* cloneContext(const CMPIContext*, CMPIStatus* rc)
{
    done(rc, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIData getEntry(const CMPIContext* c, const char* name, CMPIStatus* rc)
{
    return lookUp(self(c).entries, name, self(c).journal, rc);
}

CMPIData getEntryAt(const CMPIContext* c, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    return lookUpAt(self(c).entries, index, name, self(c).journal, rc);
}

CMPICount getEntryCount(const CMPIContext* c, CMPIStatus* rc)
{
    return countOf(self(c).entries, rc);
}

CMPIStatus addEntry(const CMPIContext* c, const char* name, const CMPIValue* value, CMPIType type)
{
    set(self(c).entries, name, valueOf(value, type));
    return {CMPI_RC_OK, nullptr};
}

const CMPIContextFT contextFT = {
    CMPIVersion200, release<CMPIContext>, cloneContext, getEntry, getEntryAt, getEntryCount, addEntry};

std::unique_ptr<ContextObject> makeContext(Journal& journal, const std::vector<Named>& entries)
{
    auto object = std::make_unique<ContextObject>(journal);
    object->entries = entries;
    object->hdl = &object->entries;
    object->ft = &contextFT;
    return object;
}

} // namespace

CMPIObjectPath* newPath(Journal& journal, const Path& path)
{
    return track(makePath(journal, path));
}

CMPIInstance* newInstance(Journal& journal, const Inst& inst)
{
    return track(makeInstance(journal, inst));
}

CMPIArgs* newArgs(Journal& journal, const std::vector<Named>& args)
{
    auto object = std::make_unique<ArgsObject>(journal);
    object->args = args;
    object->hdl = &object->args;
    object->ft = &argsFT;
    return track(std::move(object));
}

CMPIContext* newContext(Journal& journal, const std::vector<Named>& entries)
{
    return track(makeContext(journal, entries));
}

CMPIContext* detachedContext(Journal& journal, const std::vector<Named>& entries)
{
    return adopt<CMPIContext>(makeContext(journal, entries), nullptr);
}

void endContext(const CMPIContext* context)
{
    auto& object = self(context);
    object.journal.releaseClone(&object);
}

} // namespace test_broker
