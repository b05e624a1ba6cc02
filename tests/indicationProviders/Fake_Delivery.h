// A delivery that writes down what it is asked, in place of the module's; and the switch's end of the stream
// of events.
#ifndef TESTS_INDICATIONPROVIDERS_FAKE_DELIVERY_H
#define TESTS_INDICATIONPROVIDERS_FAKE_DELIVERY_H

#include "platform/switch_events.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

// What the module did, in force while the object lives; one at a time.
class Fake_Delivery
{
  public:
    typedef std::map<std::string, std::string>
        Description; // by property; "SourceInstance.Name" of embedded ones

    struct Sent
    {
        std::string className;
        Description properties;
        std::string destinations; // "a b"
    };

    Fake_Delivery();
    ~Fake_Delivery();
    Fake_Delivery(const Fake_Delivery&) = delete;
    Fake_Delivery& operator=(const Fake_Delivery&) = delete;

    // From here on the filter has this destination.
    void subscribe(std::uint16_t filter, const std::string& destination);
    void subscribeToAll(); // each filter has one named by its number
    void failSending(bool fails);
    void answerAfter(std::chrono::milliseconds time); // whoever asks for destinations waits
    // After so many more the module's threads, of which the delivery's is one, cannot be created, until this
    // object's end.
    static void failThreads(int successes);

    // Asks the module to delete a listener, as a delivery that was started does.
    static std::uint32_t expire(const std::string& destination);

    // Since the last call.
    std::vector<std::uint16_t> takeAsked();
    std::vector<Sent> takeSent();
    std::vector<std::string> takeCalls(); // "startDelivery", "subscriptionsChanged", "receive" ...

    // Hands the event to the receiver, as the firmware would; false when there is none.
    static bool raise(const xpl_SwitchEvent& event);
};

#endif
