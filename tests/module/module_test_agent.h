// The agent with the built module: a client's view of it, in CIM-XML but without a socket.
#ifndef TESTS_MODULE_MODULE_TEST_AGENT_H
#define TESTS_MODULE_MODULE_TEST_AGENT_H

#include "agent/ops/FrontEnd.h"
#include "agent/service/AgentCore.h"
#include "agent/xml/element_writer.h"
#include "tests/agent/http/WholeAnswer.h"

#include <string>
#include <utility>
#include <vector>

// The next one starts with empty maps. It must not outlive the simulated switch.
class Module_Agent
{
  public:
    // With the module in lib<library>.so.
    explicit Module_Agent(const char* library = "vraxproviders")
        : _core(cimd::ClassRepository::load(std::string(VRAX_BUILD_DIR) + "/share/cimd/repository.xml"),
                registrations(library),
                std::string(VRAX_BUILD_DIR) + "/lib/cimd")
    {
    }
    ~Module_Agent()
    {
        // A map that was only loaded as the end of an association belongs to no provider yet, and only
        // providers are unloaded.
        for (const cimd::ProviderEntry& entry : _core.providers().entries())
            if (entry.registration.has(cimd::ProviderKind::Instance))
                entry.provider->instance();
    }
    Module_Agent(const Module_Agent&) = delete;
    Module_Agent& operator=(const Module_Agent&) = delete;

    // For finding out what to ask for; what is tested goes through the functions below.
    std::vector<cimd::Instance> instances(const char* className)
    {
        cimd::EnumerateInstancesRequest request;
        request.nameSpace = "root/interop";
        request.className = cimd::CimName(className);
        cimd::Collector<cimd::Instance> found;
        _core.service().enumerateInstances(cimd::RequestContext(), request, found);
        return std::move(found.items);
    }

    // Each of these answers with the body of the CIM-XML response.
    std::string enumerate(const std::string& className)
    {
        return intrinsic("EnumerateInstances",
                         "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"" + className +
                             "\"/></IPARAMVALUE>");
    }
    std::string associators(const cimd::ObjectPath& source, const std::string& associationClass)
    {
        return intrinsic("Associators",
                         "<IPARAMVALUE NAME=\"ObjectName\">" + instanceName(source) +
                             "</IPARAMVALUE><IPARAMVALUE NAME=\"AssocClass\"><CLASSNAME NAME=\"" +
                             associationClass + "\"/></IPARAMVALUE>");
    }
    std::string get(const cimd::ObjectPath& path)
    {
        return intrinsic("GetInstance",
                         "<IPARAMVALUE NAME=\"InstanceName\">" + instanceName(path) + "</IPARAMVALUE>");
    }

  private:
    static std::vector<cimd::Registration> registrations(const char* library)
    {
        std::vector<cimd::Registration> all =
            cimd::loadRegistrations(std::string(VRAX_BUILD_DIR) + "/share/cimd/providers.reg");
        for (cimd::Registration& one : all)
            one.location = library;
        return all;
    }
    static std::string nameSpacePath()
    {
        return "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE "
               "NAME=\"interop\"/></LOCALNAMESPACEPATH>";
    }
    static std::string instanceName(const cimd::ObjectPath& path)
    {
        std::string text;
        cimd::XmlWriter xml(text);
        cimd::writeInstanceName(xml, path);
        return text;
    }
    std::string intrinsic(const std::string& operation, const std::string& parameters)
    {
        return post(operation,
                    "root/interop",
                    "<IMETHODCALL NAME=\"" + operation + "\">" + nameSpacePath() + parameters +
                        "</IMETHODCALL>");
    }
    std::string post(const std::string& method, const std::string& object, const std::string& call)
    {
        cimd::HttpRequest request;
        request.method = "POST";
        request.target = "/cimom";
        request.peer = "127.0.0.1:1";
        request.headers = {{"Content-Type", "application/xml; charset=\"utf-8\""},
                           {"CIMOperation", "MethodCall"},
                           {"CIMMethod", method},
                           {"CIMObject", object}};
        request.body = "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
                       "<MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>" +
                       call + "</SIMPLEREQ></MESSAGE></CIM>";
        cimd::WholeAnswer whole;
        return _frontEnd.answer(request, whole).body;
    }

    cimd::AgentCore _core;
    cimd::FrontEnd _frontEnd{_core.service(), cimd::Limits()};
};

#endif
