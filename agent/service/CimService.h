// The CIM operations, answered by providers and the class repository.
#ifndef AGENT_SERVICE_CIMSERVICE_H
#define AGENT_SERVICE_CIMSERVICE_H

#include "agent/broker/Broker.h"
#include "agent/broker/ProviderCall.h"
#include "agent/cim/ClassDecl.h"
#include "agent/providers/ProviderManager.h"
#include "agent/requests/Sink.h"
#include "agent/requests/requests.h"
#include "agent/service/InputCheck.h"

#include <string>

namespace cimd
{

// Requests on a class go to the providers of the class and its subclasses, requests on an instance to the
// provider of exactly its class, association requests to every association that can lead somewhere; always in
// order of registration. If one provider fails, the operation fails: an answer is complete or an error.
//
// Every operation may be called from several threads at once and throws CimError when it fails. Paths and
// instances that come out are complete: class, property and key names in declared letter case, properties in
// class order with NULL for those the provider left out, namespace set, host empty (only the front end knows
// how it was addressed).
class CimService
{
  public:
    // Serves the namespaces that providers are registered for. All three must outlive the service.
    CimService(const ClassRepository& repository, const Broker& broker, const ProviderManager& providers)
        : _repository(repository), _broker(broker), _providers(providers)
    {
    }

    void enumerateInstances(const RequestContext& context,
                            const EnumerateInstancesRequest& request,
                            Sink<Instance>& sink) const;
    void enumerateInstanceNames(const RequestContext& context,
                                const EnumerateInstanceNamesRequest& request,
                                Sink<ObjectPath>& sink) const;
    Instance getInstance(const RequestContext& context, const GetInstanceRequest& request) const;
    ObjectPath createInstance(const RequestContext& context, const CreateInstanceRequest& request) const;
    void modifyInstance(const RequestContext& context, const ModifyInstanceRequest& request) const;
    void deleteInstance(const RequestContext& context, const DeleteInstanceRequest& request) const;
    // NoSuchProperty if the class lacks the property.
    CimValue getProperty(const RequestContext& context, const GetPropertyRequest& request) const;
    // Also TypeMismatch if the value is none for the property, and InvalidParameter for a key.
    void setProperty(const RequestContext& context, const SetPropertyRequest& request) const;

    // A path that names an existing class but no known instance gives an empty result.
    void
    associators(const RequestContext& context, const AssociatorsRequest& request, Sink<Instance>& sink) const;
    void associatorNames(const RequestContext& context,
                         const AssociatorNamesRequest& request,
                         Sink<ObjectPath>& sink) const;
    void
    references(const RequestContext& context, const ReferencesRequest& request, Sink<Instance>& sink) const;
    void referenceNames(const RequestContext& context,
                        const ReferenceNamesRequest& request,
                        Sink<ObjectPath>& sink) const;

    MethodResult invokeMethod(const RequestContext& context, const InvokeMethodRequest& request) const;

    // These are answered from the repository.
    ClassDecl getClass(const GetClassRequest& request) const;
    void enumerateClasses(const EnumerateClassesRequest& request, Sink<ClassDecl>& sink) const;
    void enumerateClassNames(const EnumerateClassNamesRequest& request, Sink<CimName>& sink) const;
    QualifierDecl getQualifier(const GetQualifierRequest& request) const;
    void enumerateQualifiers(const std::string& nameSpace, Sink<QualifierDecl>& sink) const;

  private:
    // The checks of a request in its namespace; CimError (invalid namespace) if there is none of the name.
    InputCheck in(const std::string& nameSpace) const;

    // CimError (not supported) if nobody serves the class.
    std::vector<const ProviderEntry*>
    instanceProviders(const ClassInfo& info, const std::string& nameSpace, const char* operation) const;
    const ProviderEntry& providerOf(const ClassInfo& info,
                                    ProviderKind kind,
                                    const std::string& nameSpace,
                                    const char* operation) const;

    // The classes of interest to an association request from an instance.
    struct AssociationFilter
    {
        const ClassInfo& source;
        const ClassInfo* association; // null: any
        const ClassInfo* result;      // null: any; of the far end
        CimName role;
        CimName resultRole;
    };
    // An association request that was found to be in order: where it starts and whom it is for.
    struct Walk
    {
        std::string nameSpace;
        ObjectPath path;
        std::vector<const ProviderEntry*> providers;

        // Several associations may lead to the same object.
        bool mayRepeat() const { return providers.size() > 1; }
    };
    template <class Request, class MakeFilter>
    Walk walkFrom(const Request& request, MakeFilter makeFilter) const;
    Walk walk(const AssociatorNamesRequest& request) const;
    Walk walk(const ReferenceNamesRequest& request) const;
    std::vector<const ProviderEntry*> associationProviders(const AssociationFilter& filter,
                                                           const std::string& nameSpace) const;
    bool leadsSomewhere(const ClassInfo& association, const AssociationFilter& filter) const;

    // Calls the providers of a walk: `function(call, interface, path)` returns a status.
    template <class Function>
    void follow(const RequestContext& context,
                const Walk& walk,
                const char* operation,
                CMPIFlags flags,
                ResultReceiver& receiver,
                Function function) const
    {
        callAll(context,
                walk.providers,
                walk.nameSpace,
                operation,
                flags,
                receiver,
                &Provider::association,
                [&](ProviderCall& each, CMPIAssociationMI* mi, const ClassInfo&)
                { return function(each, mi, each.path(walk.path)); });
    }

    // Calls one function of one of a provider's interfaces: `function(call, interface)` returns its status.
    template <class Interface, class Function>
    void call(const RequestContext& context,
              const ProviderEntry& entry,
              const std::string& nameSpace,
              const char* operation,
              CMPIFlags flags,
              ResultReceiver& receiver,
              Interface* (Provider::*interfaceOf)(),
              Function function) const
    {
        const CallCount::Call counted(*entry.calls);
        Interface* mi = (entry.provider->*interfaceOf)();
        ProviderCall call(
            _broker,
            {context, nameSpace, flags, {}, std::string(operation) + ' ' + entry.info->name().str()},
            receiver);
        call.run([&] { return function(call, mi); });
        if (!call.isDone() && entry.provider->isFirstFault())
            reportNotDone(entry, operation);
    }
    static void reportNotDone(const ProviderEntry& entry, const char* operation);

    // The same for several; the function also gets the class each provider is called for.
    template <class Interface, class Function>
    void callAll(const RequestContext& context,
                 const std::vector<const ProviderEntry*>& entries,
                 const std::string& nameSpace,
                 const char* operation,
                 CMPIFlags flags,
                 ResultReceiver& receiver,
                 Interface* (Provider::*interfaceOf)(),
                 Function function) const
    {
        for (const ProviderEntry* entry : entries)
            call(context,
                 *entry,
                 nameSpace,
                 operation,
                 flags,
                 receiver,
                 interfaceOf,
                 [&](ProviderCall& each, Interface* mi) { return function(each, mi, *entry->info); });
    }

    const ClassRepository& _repository;
    const Broker& _broker;
    const ProviderManager& _providers;
};

} // namespace cimd

#endif
