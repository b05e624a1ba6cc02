// What the broker offers beside objects: context, messages, log, indications, types, system services.
#include "agent/log/log.h"
#include "tests/agent/broker/BrokerFixture.h"

#include <algorithm>
#include <cstdlib>

namespace cimd::test
{
namespace
{

using BrokerServices = BrokerFixture;

// The number of functions that a table lacks; `header` is the number of bytes before the first.
template <class Table>
std::ptrdiff_t missingIn(const Table& table, std::size_t header = sizeof(void*))
{
    const auto* const start = reinterpret_cast<void* const*>(&table);
    return std::count(start + header / sizeof(void*), start + sizeof(Table) / sizeof(void*), nullptr);
}

TEST_F(BrokerServices, FillEverySlot)
{
    EXPECT_EQ(missingIn(*mb->bft, offsetof(CMPIBrokerFT, prepareAttachThread)) + missingIn(*mb->eft) +
                  missingIn(*mb->xft) + missingIn(*mb->mft),
              0);
    EXPECT_EQ(missingIn(kStringTable) + missingIn(kArrayTable) + missingIn(kEnumerationTable) +
                  missingIn(kObjectPathTable) + missingIn(kInstanceTable) + missingIn(kArgsTable) +
                  missingIn(kDateTimeTable) + missingIn(kContextTable) + missingIn(kResultTable),
              0);
}

TEST_F(BrokerServices, DescribeTheRequestInItsContext)
{
    const CMPIContext* context = call.context();
    const auto entry = [&](const char* name) { return text(CMGetContextEntry(context, name, nullptr)); };
    EXPECT_EQ(entry(CMPIInitNameSpace), "root/test");
    EXPECT_EQ(entry(CMPIPrincipal), "alice");
    EXPECT_EQ(entry(CMPIRole), "operator");
    EXPECT_EQ(entry(CMPIAcceptLanguage), "de");
    const CMPIData flags = CMGetContextEntry(context, CMPIInvocationFlags, nullptr);
    EXPECT_EQ(flags.type, CMPI_uint32);
    EXPECT_EQ(flags.value.uint32, unsigned(CMPI_FLAG_DeepInheritance));
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMGetContextEntry(context, "Colour", &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    context->ft->addEntry(context, CMPIContentLanguage, reinterpret_cast<const CMPIValue*>("fr"), CMPI_chars);
    EXPECT_EQ(entry(CMPIContentLanguage), "fr");
    CMPIString* name = nullptr;
    context->ft->getEntryAt(context, context->ft->getEntryCount(context, nullptr) - 1, &name, &status);
    EXPECT_EQ(text(name), CMPIContentLanguage);
}

TEST_F(BrokerServices, FillInMessages)
{
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const auto filled = [&](const char* format, auto... values)
    {
        constexpr unsigned kCount = sizeof...(values) / 2; // each with its type before it
        return text(mb->eft->getMessage(mb, "id", format, &status, kCount, values...));
    };
    CMPIString* string = CMNewString(mb, "s", nullptr);
    const int number = CMPI_sint32;
    const int chars = CMPI_chars;
    const int big = CMPI_uint64;
    const int flag = CMPI_boolean;
    const int object = CMPI_string;
    const char* const format = "$1 $0 $2 $9 $3 $$ $4$";
    EXPECT_EQ(filled(format, number, -1, chars, "c", big, ~0ULL, flag, 1, object, string),
              "c -1 18446744073709551615 $9 true $$ s$");
    EXPECT_EQ(filled("$0", int{CMPI_ref}, 0), "(null)");
    EXPECT_EQ(status.rc, CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(mb->eft->getMessage(mb, "id", "", &status, 11U), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER);
    CMPIMsgFileHandle file = &status;
    EXPECT_EQ(mb->eft->openMessageFile(mb, "file", &file).rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(text(mb->eft->getMessage2(mb, "id", file, "$0!", nullptr, 1U, int{CMPI_real64}, 0.5)),
              "5.0e-01!");
}

TEST_F(BrokerServices, WriteOneLogLineForEachMessage)
{
    std::vector<std::string> lines;
    setLogWriter([&](LogLevel, std::string_view line)
                 { lines.emplace_back(line.substr(line.find(' ') + 1)); });
    const LogLevel before = logLevel();
    setLogLevel(LogLevel::Info);
    CMPIString* string = CMNewString(mb, "from a string", nullptr);
    mb->eft->logMessage(mb, CMPI_SEV_ERROR, "id", "two\nlines\r\n2026-01-01 forged \x7f", string);
    mb->eft->logMessage(mb, CMPI_SEV_WARNING, nullptr, nullptr, string);
    mb->eft->logMessage(mb, CMPI_DEV_DEBUG, "id", "too fine", nullptr);
    mb->eft->trace(mb, CMPI_LEV_INFO, "part", "too fine as well", nullptr);
    setLogLevel(LogLevel::Debug);
    mb->eft->trace(mb, CMPI_LEV_INFO, "part", "traced", nullptr);
    mb->eft->trace(mb, CMPI_LEV_INFO, "part", std::string(100'000, 'x').c_str(), nullptr);
    setLogLevel(before);
    setLogWriter({});
    EXPECT_EQ(lines,
              (std::vector<std::string>{"error id: two lines  2026-01-01 forged",
                                        "warning provider: from a string",
                                        "debug part: traced",
                                        "debug part: " + std::string(2000, 'x') + "..."}));
    EXPECT_EQ(levelFromName("warning"), LogLevel::Warning);
    EXPECT_FALSE(levelFromName("loud"));
}

TEST_F(BrokerServices, DropIndications)
{
    CMPIInstance* indication = newWidget("news");
    EXPECT_EQ(mb->bft->deliverIndication(mb, call.context(), "root/test", indication).rc, CMPI_RC_OK);
    EXPECT_EQ(mb->bft->deliverIndication(mb, call.context(), nullptr, indication).rc,
              CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(mb->bft->deliverIndication(mb, call.context(), "root/test", nullptr).rc,
              CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(BrokerServices, KnowClassesAndTypes)
{
    CMPIStatus status{CMPI_RC_OK, nullptr};
    EXPECT_TRUE(CMClassPathIsA(mb, newPath("test_gadget"), "TEST_BASE", nullptr));
    EXPECT_FALSE(CMClassPathIsA(mb, newPath("Test_Base"), "Test_Gadget", nullptr));
    EXPECT_TRUE(CMClassPathIsA(mb, newPath("Other_Class"), "other_class", nullptr));
    EXPECT_FALSE(CMClassPathIsA(mb, newPath("Other_Class"), "Test_Base", &status));
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);

    EXPECT_EQ(text(mb->eft->getType(mb, newPath("X"), nullptr)), "CMPIObjectPath");
    EXPECT_TRUE(mb->eft->isOfType(mb, call.context(), "CMPIContext", nullptr));
    EXPECT_FALSE(mb->eft->isOfType(mb, call.context(), "CMPIArgs", nullptr));
    EXPECT_EQ(text(mb->eft->toString(mb, newWidget("x"), nullptr)),
              "instance of root/test:Test_Widget.Name=\"x\"");
    const CMPIString stranger{"text", nullptr};
    EXPECT_EQ(mb->eft->getType(mb, &stranger, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(BrokerServices, RefuseUpCallsBeforeAServiceIsThere)
{
    CMPIStatus status{CMPI_RC_OK, nullptr};
    EXPECT_EQ(CBGetInstance(mb, call.context(), newPath("Test_Widget"), nullptr, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

struct Rendezvous
{
    const CMPIBrokerExtFT* system;
    CMPI_MUTEX_TYPE mutex;
    CMPI_COND_TYPE condition;
    bool arrived;
};

CMPI_THREAD_RETURN arrive(void* argument)
{
    auto& there = *static_cast<Rendezvous*>(argument);
    there.system->lockMutex(there.mutex);
    there.arrived = true;
    there.system->signalCondition(there.condition);
    there.system->unlockMutex(there.mutex);
    return argument;
}

TEST_F(BrokerServices, LendThreadsLocksAndConditions)
{
    const CMPIBrokerExtFT* system = mb->xft;
    Rendezvous meeting{system, system->newMutex(0), system->newCondition(0), false};
    system->lockMutex(meeting.mutex);
    system->lockMutex(meeting.mutex); // recursive
    system->unlockMutex(meeting.mutex);
    CMPI_THREAD_TYPE thread = system->newThread(arrive, &meeting, 0);
    while (!meeting.arrived)
        system->condWait(meeting.condition, meeting.mutex);
    system->unlockMutex(meeting.mutex);
    CMPI_THREAD_RETURN returned = nullptr;
    EXPECT_EQ(system->joinThread(thread, &returned), 0);
    EXPECT_EQ(returned, &meeting);
    system->destroyCondition(meeting.condition);
    system->destroyMutex(meeting.mutex);

    static int runs = 0;
    int once = 0;
    for (int i = 0; i < 2; ++i)
        system->threadOnce(&once, [] { ++runs; });
    EXPECT_EQ(runs, 1);
    CMPI_THREAD_KEY_TYPE key = 0;
    EXPECT_EQ(system->createThreadKey(&key, nullptr), 0);
    system->setThreadSpecific(key, &key);
    EXPECT_EQ(system->getThreadSpecific(key), &key);
    EXPECT_EQ(system->destroyThreadKey(key), 0);
    char* file = system->resolveFileName("x");
    EXPECT_STREQ(file, "libx.so");
    std::free(file);
}

} // namespace
} // namespace cimd::test
