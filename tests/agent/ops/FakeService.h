// A CimService for tests of the wire side: it answers with what it was asked, or with fixed values of every
// type.
#pragma once

#include "agent/service/CimService.h"

#include <string>

namespace cimd
{

// "uint8 7", "string[] {"a", NULL}", "reference root/interop:Class.Key=1" ...
std::string describe(const CimValue& value);
// `Class{Name=..., Other=...} at <path>`
std::string describe(const Instance& instance);

// Namespace root/interop. Classes:
//   Test_Echo    answers hold the request as text; operations without a result fail with it
//   Test_Values  an instance with properties of every type; its class has declarations of every kind
//   Test_Empty   results without items
//   Test_Many    five results
//   Test_Late    enumerations fail after two results
//   Test_Broken  every operation throws something that is no CimError
// Another class is InvalidClass, another namespace InvalidNamespace.
class FakeService : public CimService
{
  public:
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
};

// The instance of Test_Values, with its path.
Instance valuesInstance();

} // namespace cimd
