// The CIM operations, answered by providers and the class repository.
#ifndef AGENT_SERVICE_PROVIDERSERVICE_H
#define AGENT_SERVICE_PROVIDERSERVICE_H

#include "agent/broker/Broker.h"
#include "agent/broker/ProviderCall.h"
#include "agent/providers/ProviderManager.h"
#include "agent/service/CimService.h"
#include "agent/service/InputCheck.h"

#include <string>

namespace cimd
{

// Requests on a class go to the providers of the class and its subclasses, requests on an instance to the
// provider of exactly its class, association requests to every association that can lead somewhere; always in
// order of registration. If one provider fails, the operation fails: an answer is complete or an error.
class ProviderService : public CimService
{
  public:
    // Serves the namespaces that providers are registered for. All three must outlive the service.
    ProviderService(const ClassRepository& repository, const Broker& broker, const ProviderManager& providers)
        : _repository(repository), _broker(broker), _providers(providers)
    {
    }

    void enumerateInstances(const RequestContext& context,
                            const EnumerateInstancesRequest& request,
                            Sink<Instance>& sink) override;
    void enumerateInstanceNames(const RequestContext& context,
                                const EnumerateInstanceNamesRequest& request,
                                Sink<ObjectPath>& sink) override;
    Instance getInstance(const RequestContext& context, const GetInstanceRequest& request) override;
    ObjectPath createInstance(const RequestContext& context, const CreateInstanceRequest& request) override;
    void modifyInstance(const RequestContext& context, const ModifyInstanceRequest& request) override;
    void deleteInstance(const RequestContext& context, const DeleteInstanceRequest& request) override;
    CimValue getProperty(const RequestContext& context, const GetPropertyRequest& request) override;
    void setProperty(const RequestContext& context, const SetPropertyRequest& request) override;

    void associators(const RequestContext& context,
                     const AssociatorsRequest& request,
                     Sink<Instance>& sink) override;
    void associatorNames(const RequestContext& context,
                         const AssociatorNamesRequest& request,
                         Sink<ObjectPath>& sink) override;
    void references(const RequestContext& context,
                    const ReferencesRequest& request,
                    Sink<Instance>& sink) override;
    void referenceNames(const RequestContext& context,
                        const ReferenceNamesRequest& request,
                        Sink<ObjectPath>& sink) override;

    MethodResult invokeMethod(const RequestContext& context, const InvokeMethodRequest& request) override;

    ClassDecl getClass(const RequestContext& context, const GetClassRequest& request) override;
    void enumerateClasses(const RequestContext& context,
                          const EnumerateClassesRequest& request,
                          Sink<ClassDecl>& sink) override;
    void enumerateClassNames(const RequestContext& context,
                             const EnumerateClassNamesRequest& request,
                             Sink<CimName>& sink) override;
    QualifierDecl getQualifier(const RequestContext& context, const GetQualifierRequest& request) override;
    void enumerateQualifiers(const RequestContext& context,
                             const std::string& nameSpace,
                             Sink<QualifierDecl>& sink) override;

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
