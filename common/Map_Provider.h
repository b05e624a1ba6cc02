// What every provider that serves its class from an instance map has in common.
#ifndef COMMON_MAP_PROVIDER_H
#define COMMON_MAP_PROVIDER_H

#include "common/VRAX_Except.h"
#include "common/map_access.h"
#include "common/map_locks.h"
#include "support/checkInstanceKeys.h"
#include "support/cim_log.h"

#include <cstring>
#include <exception>
#include <new>
#include <string>

namespace cimple
{

// Thrown by a build() that has logged its failure itself, or that fails without a message.
struct Load_Failed
{
};

// The line on entry to an operation.
inline void trace(const char* source, const char* function, int line)
{
    cim_log(kLogTrace, "%s:%s[%d]\n", source, function, line);
}

// Base of a provider class PROVIDER for instances of CLASS; reached through Instance_Provider_Base and
// Association_Provider_Base. PROVIDER supplies
//   static constexpr const char* kSource: its source unit, as in "serverProviders/VRAX_Namespace_Provider";
//   Load_Status load();
//   void build(Map_Writer<CLASS>&): creates all instances from the switch or from other maps. Called with the
//     map empty and its write lock held. A failure is thrown: VRAX_Except, or Load_Failed.
// Objects have no data: all state is in VRAX_Maps, and any number of them may work at the same time.
template <class PROVIDER, class CLASS>
class Map_Provider
{
  public:
    typedef CLASS Class;
    static constexpr providerEnum_t kIndex = Map_Index<CLASS>::value;

    // Empties the map and makes it stale. Within a load the write lock is already held further out and both
    // attempts here fail, which is fine; called by the server, the write lock keeps readers out, and the read
    // lock is the one that fails.
    Unload_Status unload()
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        MapWrLock writeLock(kIndex);
        MapRdLock readLock(kIndex);
        maps().InstMapClear(kIndex);
        return UNLOAD_OK;
    }

    Get_Instance_Status get_instance(const CLASS* model, CLASS*& instance)
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        Instance* found = nullptr;
        Get_Instance_Status status = GET_INSTANCE_FAILED;
        serve([&](Inst_Map& loaded) { status = loaded._get_instance(model, found); });
        if (status == GET_INSTANCE_OK)
            instance = static_cast<CLASS*>(found);
        return status;
    }

    Enum_Instances_Status enum_instances(const CLASS* model, Enum_Instances_Handler<CLASS>* handler)
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        Enum_Instances_Status status = ENUM_INSTANCES_FAILED;
        serve([&](Inst_Map& loaded)
              { status = loaded._enum_instances(model, handler->_proc, handler->_client_data); });
        return status;
    }

    // Providers hide the operations that they support.
    Create_Instance_Status create_instance(CLASS*)
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        return CREATE_INSTANCE_UNSUPPORTED;
    }
    Delete_Instance_Status delete_instance(const CLASS*)
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        return DELETE_INSTANCE_UNSUPPORTED;
    }
    Modify_Instance_Status modify_instance(const CLASS*, const CLASS*)
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        return MODIFY_INSTANCE_UNSUPPORTED;
    }

    // What the methods that a class has but does not support answer.
    static Invoke_Method_Status unsupported_method(const char* method)
    {
        trace(PROVIDER::kSource, method, __LINE__);
        return INVOKE_METHOD_UNSUPPORTED;
    }

  protected:
    Map_Provider() { cim_log(kLogTrace, "%s:%s[%d]\n", PROVIDER::kSource, className(), __LINE__); }
    ~Map_Provider() { cim_log(kLogTrace, "%s:~%s[%d]\n", PROVIDER::kSource, className(), __LINE__); }
    Map_Provider(const Map_Provider&) = delete;
    Map_Provider& operator=(const Map_Provider&) = delete;

    PROVIDER& self() { return static_cast<PROVIDER&>(*this); }
    static VRAX_Maps& maps() { return *VRAX_Maps::getInstance(); }
    static Inst_Map& map() { return maps().map<CLASS>(); }

    // Empties and builds the map and records the outcome. The caller holds the write lock. `builtFrom`: a
    // mark of the contents of other maps that this one is built from.
    Load_Status rebuild(std::uint32_t builtFrom = 0)
    {
        Former_Instances former(map());
        self().unload();
        maps().InstMapLoadBegan(kIndex, builtFrom);
        try
        {
            Map_Writer<CLASS> writer(&former);
            self().build(writer);
            maps().InstMapLoadSetOK(kIndex);
            return LOAD_OK;
        }
        catch (const VRAX_Except& failure)
        {
            failure.print();
            giveReason(failure.message);
        }
        catch (const Load_Failed&)
        {
        }
        catch (const std::exception& failure)
        {
            logFailure("load", failure.what());
        }
        maps().InstMapLoadSetFailed(kIndex);
        return LOAD_FAILED;
    }

    // Fails the load with this message, in the name of the caller's line.
    [[noreturn]] static void failLoad(const char* message, int line = __builtin_LINE())
    {
        throw VRAX_Except(PROVIDER::kSource, "load", line, CRIT, "%s", message);
    }

    // Logs a critical line, in the name of the caller's line.
    static void logCritical(const char* function, const char* message, int line = __builtin_LINE())
    {
        cim_log(kLogCritical, "CRIT:%s:%s[%d] %s\n", PROVIDER::kSource, function, line, message);
    }

    // Logs a failure of one of the provider's operations, in the name of the caller's line, and gives it to
    // the client as the reason, should the operation end in a status other than success.
    static void logFailure(const char* function, const char* message, int line = __builtin_LINE())
    {
        logCritical(function, message, line);
        giveReason(message);
    }

    // Hands an instance whose keys are all set to the map. Fails the load with one of the messages, in the
    // name of the caller's line, when a key is missing or the map has an instance with equal keys.
    static void insertChecked(Map_Writer<CLASS>& target,
                              Owned<CLASS>& instance,
                              const char* keysMissing,
                              const char* insertionFailed,
                              int line = __builtin_LINE())
    {
        if (!checkInstanceKeys(instance.get()))
            failLoad(keysMissing, line);
        if (!target.insert(instance))
            failLoad(insertionFailed, line);
    }
    // The same with the messages of a class that has none of its own.
    static void insertChecked(Map_Writer<CLASS>& target, Owned<CLASS>& instance, int line = __builtin_LINE())
    {
        static const std::string kName = CLASS::static_meta_class.name;
        static const std::string kKeysMissing = kName + "::One or more Key Properties are not Populated";
        static const std::string kInsertionFailed = "Failed to insert into " + kName + "_map";
        insertChecked(target, instance, kKeysMissing.c_str(), kInsertionFailed.c_str(), line);
    }

    // Gives one property of a cached instance the value that has been written to the switch. Requests being
    // answered keep the instance as it was; associations with it are built again. The caller holds the write
    // lock; `cached` is the map's and not to be used any more.
    template <class PROPERTY>
    static void changeCached(const CLASS* cached, PROPERTY CLASS::*property, const PROPERTY& value)
    {
        const Owned<CLASS> changed(static_cast<CLASS*>(clone(cached)));
        const Owned<CLASS> mask(static_cast<CLASS*>(key_clone(cached)));
        changed.get()->*property = value;
        (mask.get()->*property).null = 0;
        map()._modify_instance(mask.get(), changed.get());
        maps().InstMapChanged(kIndex);
    }

  private:
    static const char* className() { return std::strrchr(PROVIDER::kSource, '/') + 1; }

    // What the client is told besides the status. Some texts begin or end with white space for the log's
    // sake.
    static void giveReason(const char* message)
    {
        static constexpr char kBlanks[] = " \n";
        message += std::strspn(message, kBlanks);
        std::size_t length = std::strlen(message);
        while (length > 0 && std::strchr(kBlanks, message[length - 1]) != nullptr)
            --length;
        try
        {
            Error::set("%.*s", static_cast<int>(length), message);
        }
        catch (const std::bad_alloc&)
        {
            // The client has to do with the status.
        }
    }

    // Calls answer(map) under the read lock with the map loaded; does not call it when the load fails.
    // Between the load and the read lock another thread may have emptied the map or failed to rebuild it:
    // what it holds then must not be served, and the load is repeated.
    template <class ANSWER>
    void serve(ANSWER answer)
    {
        while (self().load() == LOAD_OK)
        {
            MapRdLock lock(kIndex);
            if (maps().InstMapIsComplete(kIndex))
                return answer(map());
        }
    }
};

// Base of the provider of a class whose instances come from the switch or are constants.
template <class PROVIDER, class CLASS>
class Instance_Provider_Base : public Map_Provider<PROVIDER, CLASS>
{
    typedef Map_Provider<PROVIDER, CLASS> Base;

  public:
    // True when a load would find nothing to do.
    static bool isCurrent() { return Base::maps().InstMapIsFresh(Base::kIndex); }

    Load_Status load()
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        // A fresh map needs no lock to be left alone; waiting here would make every request on it wait for
        // the slowest reader.
        if (isCurrent())
            return LOAD_OK;
        MapWrLock lock(Base::kIndex);
        if (isCurrent())
            return LOAD_OK;
        return Base::rebuild();
    }
};

} // namespace cimple

#endif
