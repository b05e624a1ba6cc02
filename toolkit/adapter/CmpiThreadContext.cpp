// The toolkit's calls to the CIM server as CMPI client services.
#include "CmpiThreadContext.h"

#include "Failure.h"
#include "FromCmpi.h"
#include "ToCmpi.h"
#include "scalars.h"
#include <cmpimacs.h>

#include <vector>

namespace cimple_cmpi
{

using namespace cimple;

namespace
{

// A child's context is the broker's until the thread that was attached with it is detached.
class AttachedContext : public CmpiThreadContext
{
  public:
    using CmpiThreadContext::CmpiThreadContext;
    void thread_started() override { CBAttachThread(broker(), context()); }
    void thread_ended() override { CBDetachThread(broker(), context()); }
};

// All results of an enumeration, converted before the first is handed out: a failure in the middle must not
// look like the end.
class Results : public Instance_Source
{
  public:
    void add(Ref<Instance> instance) { _instances.push_back(std::move(instance)); }
    Ref<Instance> next() override
    {
        return _next < _instances.size() ? std::move(_instances[_next++]) : Ref<Instance>();
    }

  private:
    std::vector<Ref<Instance>> _instances;
    size_t _next = 0;
};

// Runs a call to the server. What goes wrong is for the log; the provider learns only that it did.
template <class Result, class Body>
Result upCall(const char* operation, const Instance* instance, Result failed, Body body) noexcept
{
    try
    {
        return body();
    }
    catch (const std::exception& e)
    {
        CIMPLE_WARN(("%s: %s by the provider: %s", operation, class_name_of(instance), e.what()));
        return failed;
    }
}

// Models may be incomplete; a path of what keys there are is up to the server to judge.
CMPIObjectPath* pathOf(const CMPIBroker* broker, const char* nameSpace, const Instance* instance)
{
    ToCmpi to(broker, nameSpace);
    return CMGetObjectPath(to.looseInstance(instance), nullptr);
}

} // namespace

std::unique_ptr<Thread_Context> CmpiThreadContext::create_child()
{
    CMPIContext* context = CBPrepareAttachThread(_broker, _context);
    if (!context)
        return nullptr;
    return std::make_unique<AttachedContext>(_broker, context, _allowUnload);
}

void CmpiThreadContext::thread_started() {}

void CmpiThreadContext::thread_ended() {}

std::unique_ptr<Instance_Source> CmpiThreadContext::enum_instances(const char* nameSpace,
                                                                   const Instance* model)
{
    return upCall("enumerate instances",
                  model,
                  std::unique_ptr<Instance_Source>(),
                  [&]
                  {
                      CMPIStatus status = {CMPI_RC_OK, nullptr};
                      CMPIEnumeration* found = CBEnumInstances(
                          _broker, _context, pathOf(_broker, nameSpace, model), nullptr, &status);
                      checkBroker(found, status, "enumeration");
                      auto results = std::make_unique<Results>();
                      const FromCmpi from(_broker, model->meta_class);
                      while (CMHasNext(found, nullptr))
                      {
                          const CMPIData data = CMGetNext(found, nullptr);
                          if (data.type != CMPI_instance || !data.value.inst)
                              throw Failure(CMPI_RC_ERR_FAILED,
                                            "the CIM server delivered something else than an instance");
                          results->add(from.fromInstance(
                              data.value.inst, model->meta_class, nameSpace, FromCmpi::kIgnore));
                      }
                      return std::unique_ptr<Instance_Source>(std::move(results));
                  });
}

Ref<Instance> CmpiThreadContext::get_instance(const char* nameSpace, const Instance* model)
{
    return upCall("get instance",
                  model,
                  Ref<Instance>(),
                  [&]
                  {
                      CMPIStatus status = {CMPI_RC_OK, nullptr};
                      CMPIInstance* found = CBGetInstance(
                          _broker, _context, pathOf(_broker, nameSpace, model), nullptr, &status);
                      checkBroker(found, status, "the instance");
                      return FromCmpi(_broker, model->meta_class)
                          .fromInstance(found, model->meta_class, nameSpace, FromCmpi::kIgnore);
                  });
}

int CmpiThreadContext::create_instance(const char* nameSpace, const Instance* instance)
{
    return upCall("create instance",
                  instance,
                  -1,
                  [&]
                  {
                      ToCmpi to(_broker, nameSpace);
                      CMPIInstance* created = to.looseInstance(instance);
                      CMPIStatus status = {CMPI_RC_OK, nullptr};
                      CMPIObjectPath* path = CBCreateInstance(
                          _broker, _context, CMGetObjectPath(created, nullptr), created, &status);
                      checkBroker(path, status, "the instance");
                      return 0;
                  });
}

int CmpiThreadContext::delete_instance(const char* nameSpace, const Instance* instance)
{
    return upCall("delete instance",
                  instance,
                  -1,
                  [&]
                  {
                      checkBroker(CBDeleteInstance(_broker, _context, pathOf(_broker, nameSpace, instance)),
                                  "the instance");
                      return 0;
                  });
}

int CmpiThreadContext::modify_instance(const char* nameSpace, const Instance* instance)
{
    return upCall(
        "modify instance",
        instance,
        -1,
        [&]
        {
            ToCmpi to(_broker, nameSpace);
            CMPIInstance* modified = to.looseInstance(instance);
            checkBroker(
                CBModifyInstance(_broker, _context, CMGetObjectPath(modified, nullptr), modified, nullptr),
                "the instance");
            return 0;
        });
}

int CmpiThreadContext::invoke_method(const char* nameSpace, const Instance* instance, Instance* method)
{
    return upCall(
        "invoke method",
        instance,
        -1,
        [&]
        {
            const auto* metaMethod = reinterpret_cast<const Meta_Method*>(method->meta_class);
            ToCmpi to(_broker, nameSpace);
            CMPIStatus status = {CMPI_RC_OK, nullptr};
            CMPIArgs* in = checkBroker(CMNewArgs(_broker, &status), status, "arguments");
            CMPIArgs* out = checkBroker(CMNewArgs(_broker, &status), status, "arguments");
            for (const Meta_Feature* parameter : features_of(method->meta_class))
            {
                CMPIData data;
                if (parameter->flags & CIMPLE_FLAG_IN && to.value(method, parameter, data))
                    checkBroker(CMAddArg(in, parameter->name, &data.value, data.type), parameter->name);
            }
            const CMPIData result = CBInvokeMethod(
                _broker, _context, pathOf(_broker, nameSpace, instance), metaMethod->name, in, out, &status);
            checkBroker(status, "the method");

            nullify_properties(method);
            const FromCmpi from(_broker, instance->meta_class);
            for (const Meta_Feature* parameter : features_of(method->meta_class))
            {
                if (!(parameter->flags & CIMPLE_FLAG_OUT))
                    continue;
                const bool isResult = eqi(parameter->name, "return_value");
                const CMPIData data = isResult ? result : CMGetArg(out, parameter->name, &status);
                if (isResult || status.rc == CMPI_RC_OK) // a missing output is NULL
                    from.setFeature(method, parameter, data, nameSpace);
            }
            return 0;
        });
}

bool CmpiThreadContext::get_username(String& userName)
{
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const CMPIData data = CMGetContextEntry(_context, CMPIPrincipal, &status);
    if (status.rc != CMPI_RC_OK || data.type != CMPI_string || !data.value.string)
        return false;
    userName.assign(textOf(data.value.string).c_str());
    return true;
}

} // namespace cimple_cmpi
