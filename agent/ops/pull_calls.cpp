// Operations that open an enumeration, pull its results and close it.
#include "agent/auth/client_address.h"
#include "agent/cim/CimError.h"
#include "agent/ops/calls.h"
#include "agent/ops/request_parts.h"
#include "agent/pull/Enumerations.h"
#include "agent/xml/element_writer.h"

#include <algorithm>
#include <optional>

namespace cimd
{

namespace
{

// What every Open operation takes beside the parameters of the operation that answers at once.
struct OpenOptions
{
    std::chrono::seconds timeout;
    std::size_t mostObjects;
};

// To be called when all other parameters are read.
OpenOptions openOptions(Call& call)
{
    const std::string language = call.parameters.text("FilterQueryLanguage");
    const std::string query = call.parameters.text("FilterQuery");
    const bool goesOn = call.parameters.boolean("ContinueOnError", false);
    const auto timeout = call.parameters.uint32("OperationTimeout");
    const auto mostObjects = call.parameters.uint32("MaxObjectCount");
    call.parameters.finish();
    if (!language.empty() || !query.empty())
        throw CimError(CimStatus::FilteredEnumerationNotSupported,
                       "parameter FilterQuery: enumerations are not filtered by queries");
    if (goesOn)
        throw CimError(CimStatus::ContinuationOnErrorNotSupported,
                       "parameter ContinueOnError: an enumeration ends at its first error");
    return {call.enumerations.timeout(timeout), mostObjects.value_or(0)};
}

EnumerationOwner owner(const Call& call)
{
    return {call.context.principal, call.nameSpace(), clientAddress(call.context.clientAddress)};
}

enum class Form
{
    WithPath,
    Instance,
    Path
};

PullContent contentOf(Form form)
{
    return form == Form::Path ? PullContent::Paths : PullContent::Instances;
}

void writeItems(Call& call, Spool& spool, std::size_t most, Form form)
{
    call.xml.start("IRETURNVALUE");
    for (std::size_t left = std::min(most, spool.size()); left > 0; --left)
    {
        Spool::Item item = spool.take();
        if (form == Form::WithPath)
            call.xml.start("VALUE.INSTANCEWITHPATH");
        if (form != Form::Instance)
            call.xml.raw(item.head);
        call.xml.raw(item.body);
        while (item.goesOn)
        {
            call.xml.relieve();
            item = spool.take();
            call.xml.raw(item.body);
        }
        if (form == Form::WithPath)
            call.xml.close("VALUE.INSTANCEWITHPATH");
        ++call.results;
        call.stream.flush(call.response);
    }
    call.xml.close("IRETURNVALUE");
}

// @param name  The enumeration to go on with, if there is more.
void writeState(Call& call, const std::optional<std::string>& name)
{
    writeArgument(call.xml,
                  {"EnumerationContext", name ? CimValue::string(*name) : CimValue::null(CimType::String)});
    writeArgument(call.xml, {"EndOfSequence", CimValue::boolean(!name)});
}

// Encodes results for later.
template <class Item>
class SpoolingSink : public Sink<Item>
{
  public:
    SpoolingSink(Call& call, Spool& spool) : _call(call), _spool(spool) {}

    void put(const Item& item) override
    {
        encode(item);
        keep(false);
    }

  private:
    void keep(bool goesOn)
    {
        _spool.add({_head, _body, goesOn});
        _head.clear();
        _body.clear();
        _call.stream.flush(_call.response); // nothing leaves yet, but time may have run out
    }
    void encode(const Instance& instance)
    {
        encode(instance.path());
        _markup.writeInstance(_bodyXml, instance);
    }
    void encode(const ObjectPath& path) { writeInstancePath(_headXml, _call.host, path, _markup); }

    Call& _call;
    Spool& _spool;
    std::string _head;
    std::string _body;
    XmlWriter _headXml{_head};
    ClassMarkup _markup;
    XmlWriter _bodyXml{_body, [this] { keep(true); }};
};

// Runs the whole operation at once, so that a provider's locks are never held until a client's next request
// and a client may change what it is enumerating.
template <class Item, class Request>
void open(Call& call,
          const Request& request,
          Form form,
          void (CimService::*operation)(const RequestContext&, const Request&, Sink<Item>&) const)
{
    const OpenOptions options = openOptions(call);
    Spool spool = call.enumerations.spool();
    SpoolingSink<Item> sink(call, spool);
    (call.service.*operation)(call.context, request, sink);
    spool.seal();
    if (spool.size() <= options.mostObjects)
    {
        writeItems(call, spool, options.mostObjects, form);
        return writeState(call, std::nullopt);
    }
    Enumerations::Use use = call.enumerations.add(
        {std::move(spool), contentOf(form), owner(call), call.subject, options.timeout});
    writeItems(call, use.spool(), options.mostObjects, form);
    writeState(call, use.name());
    use.keep();
}

template <Form form>
void pull(Call& call)
{
    const std::string name = call.parameters.requiredText("EnumerationContext");
    const std::size_t most = call.parameters.requiredUint32("MaxObjectCount");
    call.parameters.finish();
    Enumerations::Use use = call.enumerations.use(name, owner(call), contentOf(form));
    call.about(use.className());
    writeItems(call, use.spool(), most, form);
    if (use.spool().size() == 0)
        return writeState(call, std::nullopt);
    writeState(call, use.name());
    use.keep();
}

void openEnumerateInstances(Call& call)
{
    open(call, enumerateInstancesRequest(call), Form::WithPath, &CimService::enumerateInstances);
}

void openEnumerateInstancePaths(Call& call)
{
    open(call, enumerateInstanceNamesRequest(call), Form::Path, &CimService::enumerateInstanceNames);
}

void openAssociatorInstances(Call& call)
{
    auto request = associatorsRequest<AssociatorsRequest>(call, call.parameters.instanceName("InstanceName"));
    instanceOptions(call, request);
    open(call, request, Form::WithPath, &CimService::associators);
}

void openAssociatorInstancePaths(Call& call)
{
    const auto request =
        associatorsRequest<AssociatorNamesRequest>(call, call.parameters.instanceName("InstanceName"));
    open(call, request, Form::Path, &CimService::associatorNames);
}

void openReferenceInstances(Call& call)
{
    auto request = referencesRequest<ReferencesRequest>(call, call.parameters.instanceName("InstanceName"));
    instanceOptions(call, request);
    open(call, request, Form::WithPath, &CimService::references);
}

void openReferenceInstancePaths(Call& call)
{
    const auto request =
        referencesRequest<ReferenceNamesRequest>(call, call.parameters.instanceName("InstanceName"));
    open(call, request, Form::Path, &CimService::referenceNames);
}

void closeEnumeration(Call& call)
{
    const std::string name = call.parameters.requiredText("EnumerationContext");
    call.parameters.finish();
    call.enumerations.close(name, owner(call));
}

} // namespace

// They write their IRETURNVALUE themselves: output parameters follow it.
const OperationList kPullCalls = {
    {"OpenEnumerateInstances", openEnumerateInstances, false},
    {"OpenEnumerateInstancePaths", openEnumerateInstancePaths, false},
    {"OpenAssociatorInstances", openAssociatorInstances, false},
    {"OpenAssociatorInstancePaths", openAssociatorInstancePaths, false},
    {"OpenReferenceInstances", openReferenceInstances, false},
    {"OpenReferenceInstancePaths", openReferenceInstancePaths, false},
    {"PullInstancesWithPath", pull<Form::WithPath>, false},
    {"PullInstances", pull<Form::Instance>, false},
    {"PullInstancePaths", pull<Form::Path>, false},
    {"CloseEnumeration", closeEnumeration, false},
    // DSP0200 has longer names for these four; both are in use.
    {"OpenAssociators", openAssociatorInstances, false},
    {"OpenAssociatorPaths", openAssociatorInstancePaths, false},
    {"OpenReferences", openReferenceInstances, false},
    {"OpenReferencePaths", openReferenceInstancePaths, false},
};

} // namespace cimd
