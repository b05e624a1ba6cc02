// The association interface, answered from what association instances carry: no call goes back to the broker.
#include "Call.h"
#include "ResultSink.h"
#include "scalars.h"
#include <cimple/Narrowing.h>
#include <cmpimacs.h>

namespace cimple_cmpi
{

using namespace cimple;

namespace
{

// A request to follow the provider's association from one object. Filters are empty if they filter nothing.
struct Request
{
    Ref<Instance> source;
    String resultClass;
    String role;
    String resultRole;
};

String textOrEmpty(const char* text)
{
    return text ? String(text) : String();
}

// Whether a class or one of its superclasses has the name; an empty name fits all.
bool isOfClass(const Meta_Class* metaClass, const char* name)
{
    if (!name || !*name)
        return true;
    for (; metaClass; metaClass = metaClass->super_meta_class)
        if (eqi(metaClass->name, name))
            return true;
    return false;
}

// Whether the association has a reference of that role to which an instance of the source class can be bound,
// and one of the result role. Spares the provider requests that have no answer: a broker asks all
// associations when the client names none.
bool canConnect(const Meta_Class* association,
                const Meta_Class* sourceClass,
                const String& role,
                const String& resultRole)
{
    bool source = false;
    bool result = false;
    for (const Meta_Feature* feature : features_of(association))
    {
        const Meta_Reference* mr = as_reference(feature);
        if (!mr || mr->subscript != 0)
            continue;
        source = source || may_play(mr, sourceClass, role.c_str());
        result = result || resultRole.empty() || resultRole.equali(mr->name);
    }
    return source && result;
}

struct AssociatorSearch
{
    const Request& request;
    ResultSink& sink;
};

// Delivers the far ends of one association instance.
bool followAssociation(Instance* association, Enum_Instances_Status, void* data)
{
    if (!association)
        return false;
    const Ref<Instance> owned(association);
    const AssociatorSearch& search = *static_cast<AssociatorSearch*>(data);
    const Instance* ends[CIMPLE_MAX_REFERENCES_PER_CLASS];
    const ssize_t count = get_associators(search.request.source.ptr(),
                                          association,
                                          search.request.resultClass.c_str(),
                                          search.request.role.c_str(),
                                          search.request.resultRole.c_str(),
                                          ends);
    bool more = true;
    for (ssize_t i = 0; more && i < count; i++)
        more = search.sink.take(ends[i]);
    return more;
}

void findAssociators(Call& call, const Request& request, ResultSink& sink)
{
    Provider_Handle& provider = call.providerToRead();
    const Enum_Associators_Status status =
        provider.enum_associators(request.source.ptr(),
                                  request.resultClass,
                                  request.role,
                                  request.resultRole,
                                  ResultSink::receive<const Instance*, Enum_Associators_Status>,
                                  &sink);
    if (status != ENUM_ASSOCIATORS_UNSUPPORTED)
        return checkProvider(status);

    Ref<Instance> model(create(call.providerClass()));
    nullify_non_keys(model.ptr());
    narrow(model.ptr(), request.source.ptr(), request.role.c_str());
    AssociatorSearch search = {request, sink};
    checkProvider(provider.enum_instances(model.ptr(), followAssociation, &search));
}

void findAssociatorNames(Call& call, const Request& request, ResultSink& sink)
{
    checkProvider(call.providerToRead().enum_associator_names(
        request.source.ptr(),
        request.resultClass,
        request.role,
        request.resultRole,
        ResultSink::receive<const Instance*, Enum_Associator_Names_Status>,
        &sink));
}

void findReferences(Call& call, const Request& request, ResultSink& sink)
{
    const Ref<Instance> model(create(call.providerClass()));
    checkProvider(
        call.providerToRead().enum_references(request.source.ptr(),
                                              model.ptr(),
                                              request.role,
                                              ResultSink::receive<Instance*, Enum_References_Status>,
                                              &sink));
}

// Fills in the source and searches. The answer is empty without asking the provider if the association is not
// of the class asked for, or if the source is of a class that it cannot refer to.
void answer(Call& call,
            const CMPIObjectPath* path,
            const char* assocClass,
            Request& request,
            ResultSink& sink,
            void (*search)(Call&, const Request&, ResultSink&))
{
    const Meta_Class* const own = call.providerClass();
    const Meta_Class* sourceClass = find_meta_class(own, classNameOf(path).c_str());
    if (isOfClass(own, assocClass) && sourceClass &&
        canConnect(own, sourceClass, request.role, request.resultRole))
    {
        request.source = call.from().fromPath(path, sourceClass, FromCmpi::kAllKeys);
        search(call, request, sink);
    }
    sink.finish();
}

CMPIStatus cleanup(CMPIAssociationMI* mi, const CMPIContext* context, CMPIBoolean terminating)
{
    return StaticData::of(mi->hdl).cleanup(kAssociationMi, context, terminating);
}

CMPIStatus associators(CMPIAssociationMI* mi,
                       const CMPIContext* context,
                       const CMPIResult* result,
                       const CMPIObjectPath* path,
                       const char* assocClass,
                       const char* resultClass,
                       const char* role,
                       const char* resultRole,
                       const char** properties)
{
    const auto body = [&](Call& call)
    {
        ResultSink sink(call, result, nameSpaceOf(path), Deliver::Instances, properties);
        Request request = {{}, textOrEmpty(resultClass), textOrEmpty(role), textOrEmpty(resultRole)};
        answer(call, path, assocClass, request, sink, findAssociators);
    };
    return run(mi, context, "associators", body);
}

CMPIStatus associatorNames(CMPIAssociationMI* mi,
                           const CMPIContext* context,
                           const CMPIResult* result,
                           const CMPIObjectPath* path,
                           const char* assocClass,
                           const char* resultClass,
                           const char* role,
                           const char* resultRole)
{
    const auto body = [&](Call& call)
    {
        ResultSink sink(call, result, nameSpaceOf(path), Deliver::Paths, nullptr);
        Request request = {{}, textOrEmpty(resultClass), textOrEmpty(role), textOrEmpty(resultRole)};
        answer(call, path, assocClass, request, sink, findAssociatorNames);
    };
    return run(mi, context, "associator names", body);
}

CMPIStatus references(CMPIAssociationMI* mi,
                      const CMPIContext* context,
                      const CMPIResult* result,
                      const CMPIObjectPath* path,
                      const char* resultClass,
                      const char* role,
                      const char** properties)
{
    const auto body = [&](Call& call)
    {
        ResultSink sink(call, result, nameSpaceOf(path), Deliver::Instances, properties);
        Request request = {{}, {}, textOrEmpty(role), {}};
        answer(call, path, resultClass, request, sink, findReferences);
    };
    return run(mi, context, "references", body);
}

CMPIStatus referenceNames(CMPIAssociationMI* mi,
                          const CMPIContext* context,
                          const CMPIResult* result,
                          const CMPIObjectPath* path,
                          const char* resultClass,
                          const char* role)
{
    const auto body = [&](Call& call)
    {
        ResultSink sink(call, result, nameSpaceOf(path), Deliver::Paths, nullptr);
        Request request = {{}, {}, textOrEmpty(role), {}};
        answer(call, path, resultClass, request, sink, findReferences);
    };
    return run(mi, context, "reference names", body);
}

} // namespace

const CMPIAssociationMIFT kAssociationFunctions = {CMPIVersion200,
                                                   CMPIVersion200,
                                                   nullptr,
                                                   cleanup,
                                                   associators,
                                                   associatorNames,
                                                   references,
                                                   referenceNames};

} // namespace cimple_cmpi
