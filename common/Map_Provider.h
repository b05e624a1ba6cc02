// What every provider that serves its class from an instance map has in common.
#ifndef COMMON_MAP_PROVIDER_H
#define COMMON_MAP_PROVIDER_H

#include "common/Operation.h"
#include "common/map_access.h"
#include "common/providers.h"
#include "support/checkInstanceKeys.h"
#include "support/cim_log.h"

#include <cstring>
#include <initializer_list>

namespace cimple
{

// What providers of every kind share: names, trace lines, and the answers of operations that a class does not
// support. PROVIDER hides those that it supports.
template <class PROVIDER, class CLASS>
class Provider_Base
{
  public:
    typedef CLASS Class;
    // The provider's unit as log lines name it.
    static constexpr const char* kSource = Registered<CLASS>::kSource;
    // What is said of the steps of a load that fail. A provider hides those for which it has a text of its
    // own.
    static constexpr Failure_Text kReadFailed = Registered<CLASS>::kReadFailed;
    static constexpr Failure_Text kCreationFailed = Registered<CLASS>::kCreationFailed;
    static constexpr Failure_Text kKeysMissing = Registered<CLASS>::kKeysMissing;
    static constexpr Failure_Text kInsertionFailed = Registered<CLASS>::kInsertionFailed;
    // False for a class whose keys may be empty: add() takes them as they are.
    static constexpr bool kChecksKeys = true;
    // False for a class that keeps no instances.
    static constexpr bool kHasMap = true;
    // False for a class whose single instances are asked of the switch.
    static constexpr bool kGetsFromMap = true;
    // The calls to the switch whose failure leaves out what they were asked for and does not fail the load.
    static constexpr std::initializer_list<const char*> kDoesWithout = {};

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
    Provider_Base() { cim_log(kLogTrace, "%s:%s[%d]\n", PROVIDER::kSource, className(), __LINE__); }
    ~Provider_Base() { cim_log(kLogTrace, "%s:~%s[%d]\n", PROVIDER::kSource, className(), __LINE__); }
    Provider_Base(const Provider_Base&) = delete;
    Provider_Base& operator=(const Provider_Base&) = delete;

    PROVIDER& self() { return static_cast<PROVIDER&>(*this); }

    // Runs body(operation) as one operation of the provider: a trace line, then the body, whose result is the
    // operation's unless it throws.
    template <class STATUS, class BODY>
    static STATUS operation(const char* function, STATUS failed, BODY body, int line = __builtin_LINE())
    {
        trace(PROVIDER::kSource, function, line);
        return Operation<STATUS>(PROVIDER::kSource, function, failed).run(body);
    }

    // The same with a way to tidy up after a failure of any kind.
    template <class STATUS, class BODY, class AFTER_FAILURE>
    static STATUS operation(const char* function,
                            STATUS failed,
                            BODY body,
                            AFTER_FAILURE afterFailure,
                            int line = __builtin_LINE())
    {
        trace(PROVIDER::kSource, function, line);
        return Operation<STATUS>(PROVIDER::kSource, function, failed).run(body, afterFailure);
    }

    // Fails the load with this text, in the name of the caller's line.
    [[noreturn]] static void fail(const Failure_Text& what,
                                  std::initializer_list<const char*> arguments = {},
                                  int line = __builtin_LINE())
    {
        throw VRAX_Except(PROVIDER::kSource, "load", line, what, arguments);
    }

    // A new instance with every property null. Never null: fails the load when it cannot be created. The
    // arguments are for the texts of providers that name the element.
    static Owned<CLASS> make(std::initializer_list<const char*> arguments = {}, int line = __builtin_LINE())
    {
        Owned<CLASS> instance = makeNull<CLASS>();
        if (!instance)
            fail(PROVIDER::kCreationFailed, arguments, line);
        return instance;
    }
    // The same with the defaults of the schema, for the few classes that publish them.
    static Owned<CLASS> makeDefaulted(int line = __builtin_LINE())
    {
        Owned<CLASS> instance = makeWithDefaults<CLASS>();
        if (!instance)
            fail(PROVIDER::kCreationFailed, {}, line);
        return instance;
    }

    // make() and the key check of add() for an operation other than a load, which fails by them.
    template <class STATUS>
    static Owned<CLASS> makeFor(Operation<STATUS>& operation, int line = __builtin_LINE())
    {
        Owned<CLASS> instance = makeNull<CLASS>();
        if (!instance)
            operation.fail(PROVIDER::kCreationFailed, {}, line);
        return instance;
    }
    template <class STATUS>
    static void requireKeys(Operation<STATUS>& operation, const CLASS& instance, int line = __builtin_LINE())
    {
        if (!checkInstanceKeys(&instance))
            operation.fail(PROVIDER::kKeysMissing, {}, line);
    }

    // Hands an instance to the map. Fails the load when a key is missing or the map has an instance with
    // equal keys; a provider whose kInsertionFailed is Failure_Text::none() drops such an instance, and one
    // whose kChecksKeys is false takes any keys.
    static void add(Map_Writer<CLASS>& target,
                    Owned<CLASS>& instance,
                    std::initializer_list<const char*> arguments = {},
                    int line = __builtin_LINE())
    {
        if (PROVIDER::kChecksKeys && !checkInstanceKeys(instance.get()))
            fail(PROVIDER::kKeysMissing, arguments, line);
        if (!target.insert(instance) && PROVIDER::kInsertionFailed.text != nullptr)
            fail(PROVIDER::kInsertionFailed, arguments, line);
    }

  private:
    static const char* className() { return std::strrchr(PROVIDER::kSource, '/') + 1; }
};

// Base of a provider of instances of CLASS that are kept in an instance map; reached through
// Instance_Provider and Association_Provider. PROVIDER supplies
//   Load_Status load();
// Objects have no data: all state is in VRAX_Maps, and any number of them may work at the same time.
template <class PROVIDER, class CLASS>
class Map_Provider : public Provider_Base<PROVIDER, CLASS>
{
  public:
    static constexpr providerEnum_t kIndex = Map_Index<CLASS>::value;

    // Empties the map and makes it stale. Within a load the write lock is already held further out and both
    // attempts here fail, which is fine; called by the server, the write lock keeps readers out, and the read
    // lock is the one that fails.
    Unload_Status unload()
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        const Write_Guard<CLASS> writing;
        const Read_Guard<CLASS> reading;
        maps().InstMapClear(kIndex);
        return UNLOAD_OK;
    }

    Get_Instance_Status get_instance(const CLASS* model, CLASS*& instance)
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        Instance* found = nullptr;
        Get_Instance_Status status = GET_INSTANCE_FAILED;
        serve([&](const Inst_Map& loaded) { status = loaded._get_instance(model, found); });
        if (status == GET_INSTANCE_OK)
            instance = static_cast<CLASS*>(found);
        return status;
    }

    Enum_Instances_Status enum_instances(const CLASS* model, Enum_Instances_Handler<CLASS>* handler)
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        Enum_Instances_Status status = ENUM_INSTANCES_FAILED;
        serve([&](const Inst_Map& loaded)
              { status = loaded._enum_instances(model, handler->_proc, handler->_client_data); });
        return status;
    }

  protected:
    using Provider_Base<PROVIDER, CLASS>::self;

    static VRAX_Maps& maps() { return *VRAX_Maps::getInstance(); }

    // Empties the map, has build(Map_Writer<CLASS>&) fill it, and records the outcome. `guard` holds the
    // write lock. `builtFrom`: a mark of the contents of other maps that this one is built from.
    template <class GUARD, class BUILD>
    Load_Status rebuild(GUARD& guard, BUILD build, std::uint32_t builtFrom = 0)
    {
        Former_Instances former(guard.map());
        self().unload();
        maps().InstMapLoadBegan(kIndex, builtFrom);
        const auto body = [&](Operation<Load_Status>&)
        {
            Map_Writer<CLASS> writer = guard.writer(&former);
            build(writer);
            return LOAD_OK;
        };
        const Load_Status status = Operation<Load_Status>(PROVIDER::kSource, "load", LOAD_FAILED).run(body);
        if (status == LOAD_OK)
            maps().InstMapLoadSetOK(kIndex);
        else
            maps().InstMapLoadSetFailed(kIndex);
        return status;
    }

    // Gives one property of a cached instance the value that the switch was given, whatever else a request
    // carries; see Write_Guard::change(). `cached` is the map's and not to be used any more.
    template <class TYPE, class VALUE>
    static void changeCached(Write_Guard<CLASS>& guard,
                             const CLASS& cached,
                             Property<TYPE> CLASS::*property,
                             const VALUE& value)
    {
        const Owned<CLASS> request(static_cast<CLASS*>(key_clone(&cached)));
        const Owned<CLASS> model(static_cast<CLASS*>(key_clone(&cached)));
        (request.get()->*property).set(value);
        (model.get()->*property).null = 0;
        guard.change(*model, *request);
    }

  private:
    // Calls answer(map) under the read lock with the map loaded; does not call it when the load fails.
    // Between the load and the read lock another thread may have emptied the map or failed to rebuild it:
    // what it holds then must not be served, and the load is repeated.
    template <class ANSWER>
    void serve(ANSWER answer)
    {
        while (self().load() == LOAD_OK)
        {
            const Read_Guard<CLASS> reading;
            if (maps().InstMapIsComplete(kIndex))
                return answer(reading.map());
        }
    }
};

// Base of the provider of a class whose instances come from the switch or are constants. PROVIDER supplies
//   void build(Map_Writer<CLASS>& map): creates all instances. Called with the map empty and its write lock
//     held; a failure is thrown, see fail().
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
        Write_Guard<CLASS> guard;
        if (isCurrent())
            return LOAD_OK;
        return Base::rebuild(guard, [this](Map_Writer<CLASS>& map) { Base::self().build(map); });
    }
};

// The base of the provider of a registered class.
template <class CLASS>
using Instance_Provider = Instance_Provider_Base<typename Registered<CLASS>::Provider, CLASS>;

} // namespace cimple

#endif
