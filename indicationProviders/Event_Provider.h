// The shape of an indication provider: a thread that turns switch events into indications.
#ifndef INDICATIONPROVIDERS_EVENT_PROVIDER_H
#define INDICATIONPROVIDERS_EVENT_PROVIDER_H

#include "common/Operation.h"
#include "common/providers.h"
#include "indicationProviders/Event_Thread.h"
#include "support/cim_log.h"

#include <cimple/cimple.h>

#include <cstring>
#include <memory>

namespace cimple
{

// PROVIDER supplies
//   static const Event_Handling& handling();
//   kTakesHandler, where false is not what it wants.
//
// Indications do not go to the CIM server that enables them but straight to the subscribers' listeners, who
// subscribe with the switch. So what a server enables does nothing, and vrax_start_indications() enables what
// does.
template <class PROVIDER, class CLASS>
class Event_Provider_Base
{
  public:
    typedef CLASS Class;
    static constexpr const char* kSource = Registered<CLASS>::kSource;
    // True: a handler is passed over without a word in the log.
    static constexpr bool kTakesHandler = false;

    Load_Status load()
    {
        trace(kSource, __func__, __LINE__);
        return LOAD_OK;
    }
    Unload_Status unload()
    {
        trace(kSource, __func__, __LINE__);
        return UNLOAD_OK;
    }

    // The server's way: starts nothing, and gives the handler back.
    Enable_Indications_Status enable_indications(Indication_Handler<CLASS>* handler)
    {
        trace(kSource, __func__, __LINE__);
        const std::unique_ptr<Indication_Handler<CLASS>> unused(handler);
        if (!PROVIDER::kTakesHandler)
            logCritical(kSource, __func__, "Using unsupported enable_indications method", __LINE__);
        return ENABLE_INDICATIONS_OK;
    }

    // From here on events become indications. Each call needs its disable_indications(), and the last of
    // these ends the thread.
    Enable_Indications_Status enable_indications()
    {
        trace(kSource, __func__, __LINE__);
        return _thread.start() ? ENABLE_INDICATIONS_OK : ENABLE_INDICATIONS_FAILED;
    }
    // Does nothing unless enable_indications() was called. Returns when the thread has handled what waits.
    Disable_Indications_Status disable_indications()
    {
        trace(kSource, __func__, __LINE__);
        _thread.stop();
        return DISABLE_INDICATIONS_OK;
    }

  protected:
    Event_Provider_Base() : _thread(PROVIDER::handling())
    {
        cim_log(kLogTrace, "%s:%s[%d]\n", kSource, className(), __LINE__);
    }
    ~Event_Provider_Base() { cim_log(kLogTrace, "%s:~%s[%d]\n", kSource, className(), __LINE__); }
    Event_Provider_Base(const Event_Provider_Base&) = delete;
    Event_Provider_Base& operator=(const Event_Provider_Base&) = delete;

  private:
    static const char* className() { return std::strrchr(kSource, '/') + 1; }

    Event_Thread _thread;
};

template <class CLASS>
using Event_Provider = Event_Provider_Base<typename Registered<CLASS>::Provider, CLASS>;

} // namespace cimple

#endif
