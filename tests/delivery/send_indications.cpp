// Sends a few indications to listeners: send_indications <URL>...
#include "delivery/delivery.h"

#include "Demo_Everything.h"
#include "support/cim_log.h"
#include "tests/delivery/test_indications.h"

int main(int argc, char** argv)
{
    cim_log_configure(kLogInfo, nullptr);
    cimple::Destinations list(argv + 1, argv + argc);
    cimple::startDelivery(nullptr);
    cimple::sendIndication(cimple::modification("caf\xC3\xA9 <1> & \"2\"").ptr(), list);
    cimple::Ref<cimple::Demo_Everything> everything(cimple::Demo_Everything::create(true));
    everything->Embedded = cimple::Demo_Limits::create(true);
    everything->Embedded->Low.set(-5);
    cimple::sendIndication(everything.ptr(), list);
    for (const char* text : {"first", "second", "third"})
        cimple::sendIndication(cimple::alert(text).ptr(), list);
    cimple::stopDelivery();
}
