// Where the switch sends indications.
#include "indicationProviders/CIM_ListenerDestinationCIMXML_Provider.h"

#include "common/local_system.h"
#include "indicationProviders/subscription_commands.h"
#include "switchaccess/Attribute.h"
#include "switchaccess/local_switch.h"

#include <cstring>

namespace cimple
{

namespace
{

// Values of PersistenceType.
constexpr uint16 kPermanent = 2;
constexpr uint16 kTransient = 3;

uint16 asPersistence(const char* word)
{
    return std::strcmp(word, "Permanent") == 0 ? kPermanent : kTransient;
}

bool isPermanent(const CIM_ListenerDestinationCIMXML& listener)
{
    return !listener.PersistenceType.null && listener.PersistenceType.value == kPermanent;
}

constexpr Attribute<CIM_ListenerDestinationCIMXML> kAttributes[] = {
    {subscription_keys::kType, put<&CIM_ListenerDestinationCIMXML::PersistenceType, asPersistence>},
    {subscription_keys::kDestination, put<&CIM_ListenerDestinationCIMXML::Destination>},
};
constexpr Walk_Keys kListeners = {
    "Oper.Cim.FirstListener",
    "Unable to get FirstListener",
    "Oper.Cim.NextListener.%s",
    "Unable to get NextListener",
    XPL_END_OF_WALK,
};

constexpr Failure_Text kLoadFailed = "Unable to load CIM_ListenerDestinationCIMXML";
constexpr Failure_Text kExists = "Listener already exists";
constexpr Failure_Text kCannotCreate = "Unable to create listener";
constexpr Failure_Text kCannotDelete = kCannotCreate; // known to operators by this text

void makeStale()
{
    VRAX_Maps::getInstance()->InstMapForceUnload(CIM_ListenerDestinationCIMXML_Provider::kIndex);
}

// Empty when the switch has deleted it, otherwise what it refused.
std::string deleteListener(const char* name)
{
    Sml_Writes writes;
    writes.add("Cmd.Cim.Listener.%s.Delete", {name});
    return sendCommands(writes) ? "" : writes.failure();
}

} // namespace

void CIM_ListenerDestinationCIMXML_Provider::build(Map_Writer<CIM_ListenerDestinationCIMXML>& map)
{
    const Local_Switch_Wwn localWwn({kSource, "load"});
    Attribute_Reader<CIM_ListenerDestinationCIMXML> attributes(kAttributes);
    for (const std::string& name : Sml_Walk(kListeners, {kSource, "load"}))
    {
        if (!attributes.read({name.c_str()}))
            fail(kReadFailed);
        Owned<CIM_ListenerDestinationCIMXML> listener = make();
        setLocalSystem(*listener, localWwn.text());
        listener->Name.set(name.c_str());
        listener->ElementName.set(name.c_str());
        attributes.fill(*listener);
        add(map, listener);
    }
}

Create_Instance_Status
CIM_ListenerDestinationCIMXML_Provider::create_instance(CIM_ListenerDestinationCIMXML* instance)
{
    const auto body = [&](Operation<Create_Instance_Status>& op)
    {
        Write_Guard<CIM_ListenerDestinationCIMXML> guard;
        const Local_Switch_Wwn localWwn({kSource, "create_instance"});
        if (load() != LOAD_OK)
            op.fail(kLoadFailed);
        if (!instance->CreationClassName.value.equali(CIM_ListenerDestinationCIMXML::static_meta_class.name))
            op.failWith(
                CREATE_INSTANCE_INVALID_PARAMETER,
                "Cannot create Instance CreationClassName not equal to CIM_ListenerDestinationCIMXML");
        if (instance->SystemCreationClassName.null)
            instance->SystemCreationClassName.set(kLocalSystemClass);
        if (instance->SystemName.null)
            instance->SystemName.set(localWwn.text());
        if (guard.view().find(*instance) != nullptr)
            op.failWith(CREATE_INSTANCE_DUPLICATE, kExists);

        const char* const name = instance->Name.value.c_str();
        Sml_Writes writes;
        writes.add("Cmd.Cim.Listener.%s.Create", {name});
        if (isPermanent(*instance))
            writes.add("Cmd.Cim.Listener.%s.Type.Permanent", {name});
        else
            writes.add("Cmd.Cim.Listener.%s.Type.Transient", {name});
        writes.add("Cmd.Cim.Listener.%s.Destination.%s", {name, instance->Destination.value.c_str()});
        const bool accepted = sendCommands(writes);
        if (writes.carriedOut() && writes.status(0) == XPL_LISTENER_EXISTS)
            op.failWith(CREATE_INSTANCE_DUPLICATE, kExists);
        if (!accepted)
        {
            // Of use to nobody, and in the way of the next attempt.
            if (writes.carriedOut() && writes.status(0) == XPL_OK)
                deleteListener(name);
            op.failOn(writes.failure(), kCannotCreate);
        }

        Owned<CIM_ListenerDestinationCIMXML> copy(
            static_cast<CIM_ListenerDestinationCIMXML*>(clone(instance)));
        if (!guard.insert(copy))
            op.fail(kInsertionFailed);
        makeStale();
        setLocalSystem(*instance, localWwn.text());
        return CREATE_INSTANCE_OK;
    };
    return operation("create_instance", CREATE_INSTANCE_FAILED, body, makeStale);
}

Delete_Instance_Status
CIM_ListenerDestinationCIMXML_Provider::delete_instance(const CIM_ListenerDestinationCIMXML* instance)
{
    const auto body = [&](Operation<Delete_Instance_Status>& op)
    {
        const Write_Guard<CIM_ListenerDestinationCIMXML> guard;
        if (load() != LOAD_OK)
            op.fail(kLoadFailed);
        if (guard.view().find(*instance) == nullptr)
            op.failWith(DELETE_INSTANCE_NOT_FOUND,
                        Failure_Text::info("Listener to be deleted does not exist"));
        const std::string refused = deleteListener(instance->Name.value.c_str());
        if (!refused.empty())
            op.failOn(refused, kCannotDelete);
        makeStale();
        return DELETE_INSTANCE_OK;
    };
    return operation("delete_instance", DELETE_INSTANCE_FAILED, body, makeStale);
}

std::uint32_t CIM_ListenerDestinationCIMXML_Provider::expire_listener_destination(const String& destination)
{
    std::uint32_t expired = 0;
    const auto body = [&](Operation<std::uint32_t>& op)
    {
        const Write_Guard<CIM_ListenerDestinationCIMXML> guard;
        for (const CIM_ListenerDestinationCIMXML* listener : guard.view())
        {
            if (isPermanent(*listener) || listener->Destination.value != destination)
                continue;
            const char* const name = listener->Name.value.c_str();
            const std::string refused = deleteListener(name);
            if (!refused.empty())
                op.failOn(refused, "Unable to expire/delete listener");
            cim_log(kLogInfo,
                    "Deleting unresponsive transient listener, Name=%s, Destination=%s\n",
                    name,
                    destination.c_str());
            ++expired;
        }
        makeStale();
        return expired;
    };
    operation("expire_listener_destination", expired, body, makeStale);
    return expired;
}

} // namespace cimple
