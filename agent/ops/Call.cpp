// What a request is about.
#include "agent/ops/Call.h"

#include "agent/log/log.h"
#include "agent/ops/failure.h"

namespace cimd
{

CimName Call::about(CimName name)
{
    setSubject(name);
    return name;
}

ObjectPath Call::about(ObjectPath path)
{
    setSubject(path.className());
    if (path.nameSpace().empty())
        path.setNameSpace(nameSpace());
    if (const CimValue* unnamed = path.findKey(CimName()))
        path = withKeyName(path, *unnamed);
    return path;
}

Instance Call::about(Instance instance)
{
    setSubject(instance.className());
    if (instance.hasPath())
        instance.setPath(about(instance.path()));
    return instance;
}

void Call::setSubject(const CimName& name)
{
    subject = name.str();
    entry.about(subject);
    setLateAnswer();
}

void Call::willChange(Change what)
{
    change = std::move(what);
    setLateAnswer();
}

void Call::setLateAnswer()
{
    // Copies of subject and change: this thread may change them while another one makes the late answer. The
    // call itself may be gone by then, what it refers to is not.
    stream.whenLate(
        [&request = wire,
         &who = context,
         name = operation,
         about = subject,
         changed = change,
         limit = timeLimit]
        {
            log(LogLevel::Warning,
                "cim",
                operationText(request.method, about) + who.clientAddress + ": did not finish within " +
                    std::to_string(limit.count()) + " s; its provider may hang");
            if (changed)
                audit(who, name, *changed, "unfinished");
            return lateAnswer(request, about, limit);
        });
}

ObjectPath Call::withKeyName(const ObjectPath& path, const CimValue& value) const
{
    GetClassRequest request;
    request.nameSpace = path.nameSpace();
    request.className = path.className();
    request.localOnly = false;
    const ClassDecl decl = service.getClass(request);
    CimName key;
    for (const PropertyDecl& property : decl.properties)
    {
        if (!property.isKey())
            continue;
        if (!key.empty())
            throw CimError(CimStatus::InvalidParameter,
                           "class " + decl.name.str() +
                               " has several keys: a key value needs its key's name");
        key = property.name;
    }
    if (key.empty())
        throw CimError(CimStatus::InvalidParameter, "class " + decl.name.str() + " has no keys");
    ObjectPath named(path.nameSpace(), path.className());
    named.setHost(path.host());
    named.setKey(key, value);
    return named;
}

} // namespace cimd
