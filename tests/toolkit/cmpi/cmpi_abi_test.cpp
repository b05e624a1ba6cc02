// Checks that every function of every CMPI table stands in its slot, on whatever machine the test runs.
#include <cmpift.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

struct Slot
{
    const char* name;
    size_t offset;
};

enum HeaderKind
{
    kShort, // ftVersion, padded to a pointer
    kLong   // two ints and a name
};

struct Table
{
    const char* name;
    HeaderKind header;
    size_t size;
    std::vector<Slot> slots; // in the order of the published tables
};

// One line a function would be 300 lines of the same.
// clang-format off
#define SLOT(FUNCTION) {#FUNCTION, offsetof(Type, FUNCTION)}
#define TABLE(TYPE, HEADER, ...) \
    [] { using Type = TYPE; return Table{#TYPE, HEADER, sizeof(Type), {__VA_ARGS__}}; }()

const Table kTables[] = {
    TABLE(CMPIBrokerFT, kLong,
        SLOT(prepareAttachThread), SLOT(attachThread), SLOT(detachThread), SLOT(deliverIndication),
        SLOT(enumerateInstanceNames), SLOT(getInstance), SLOT(createInstance), SLOT(modifyInstance),
        SLOT(deleteInstance), SLOT(execQuery), SLOT(enumerateInstances), SLOT(associators),
        SLOT(associatorNames), SLOT(references), SLOT(referenceNames), SLOT(invokeMethod), SLOT(setProperty),
        SLOT(getProperty)),
    TABLE(CMPIBrokerEncFT, kShort,
        SLOT(newInstance), SLOT(newObjectPath), SLOT(newArgs), SLOT(newString), SLOT(newArray),
        SLOT(newDateTime), SLOT(newDateTimeFromBinary), SLOT(newDateTimeFromChars), SLOT(newSelectExp),
        SLOT(classPathIsA), SLOT(toString), SLOT(isOfType), SLOT(getType), SLOT(getMessage), SLOT(logMessage),
        SLOT(trace), SLOT(newCMPIError), SLOT(openMessageFile), SLOT(closeMessageFile), SLOT(getMessage2)),
    TABLE(CMPIBrokerExtFT, kShort,
        SLOT(resolveFileName), SLOT(newThread), SLOT(joinThread), SLOT(exitThread), SLOT(cancelThread),
        SLOT(threadSleep), SLOT(threadOnce), SLOT(createThreadKey), SLOT(destroyThreadKey),
        SLOT(getThreadSpecific), SLOT(setThreadSpecific), SLOT(newMutex), SLOT(destroyMutex), SLOT(lockMutex),
        SLOT(unlockMutex), SLOT(newCondition), SLOT(destroyCondition), SLOT(condWait), SLOT(timedCondWait),
        SLOT(signalCondition)),
    TABLE(CMPIBrokerMemFT, kShort,
        SLOT(mark), SLOT(release), SLOT(cmpiMalloc), SLOT(cmpiCalloc), SLOT(cmpiRealloc), SLOT(cmpiStrDup),
        SLOT(cmpiFree), SLOT(freeInstance), SLOT(freeObjectPath), SLOT(freeArgs), SLOT(freeString),
        SLOT(freeArray), SLOT(freeDateTime), SLOT(freeSelectExp)),
    TABLE(CMPIContextFT, kShort,
        SLOT(release), SLOT(clone), SLOT(getEntry), SLOT(getEntryAt), SLOT(getEntryCount), SLOT(addEntry)),
    TABLE(CMPIResultFT, kShort,
        SLOT(release), SLOT(clone), SLOT(returnData), SLOT(returnInstance), SLOT(returnObjectPath),
        SLOT(returnDone), SLOT(returnError)),
    TABLE(CMPIStringFT, kShort,
        SLOT(release), SLOT(clone), SLOT(getCharPtr)),
    TABLE(CMPIArrayFT, kShort,
        SLOT(release), SLOT(clone), SLOT(getSize), SLOT(getSimpleType), SLOT(getElementAt),
        SLOT(setElementAt)),
    TABLE(CMPIEnumerationFT, kShort,
        SLOT(release), SLOT(clone), SLOT(getNext), SLOT(hasNext), SLOT(toArray)),
    TABLE(CMPIInstanceFT, kShort,
        SLOT(release), SLOT(clone), SLOT(getProperty), SLOT(getPropertyAt), SLOT(getPropertyCount),
        SLOT(setProperty), SLOT(getObjectPath), SLOT(setPropertyFilter), SLOT(setObjectPath),
        SLOT(setPropertyWithOrigin)),
    TABLE(CMPIObjectPathFT, kShort,
        SLOT(release), SLOT(clone), SLOT(setNameSpace), SLOT(getNameSpace), SLOT(setHostname),
        SLOT(getHostname), SLOT(setClassName), SLOT(getClassName), SLOT(addKey), SLOT(getKey), SLOT(getKeyAt),
        SLOT(getKeyCount), SLOT(setNameSpaceFromObjectPath), SLOT(setHostAndNameSpaceFromObjectPath),
        SLOT(getClassQualifier), SLOT(getPropertyQualifier), SLOT(getMethodQualifier),
        SLOT(getParameterQualifier), SLOT(toString)),
    TABLE(CMPIArgsFT, kShort,
        SLOT(release), SLOT(clone), SLOT(addArg), SLOT(getArg), SLOT(getArgAt), SLOT(getArgCount)),
    TABLE(CMPIDateTimeFT, kShort,
        SLOT(release), SLOT(clone), SLOT(getBinaryFormat), SLOT(getStringFormat), SLOT(isInterval)),
    TABLE(CMPISelectExpFT, kShort,
        SLOT(release), SLOT(clone), SLOT(evaluate), SLOT(getString), SLOT(getDOC), SLOT(getCOD),
        SLOT(evaluateUsingAccessor)),
    TABLE(CMPISelectCondFT, kShort,
        SLOT(release), SLOT(clone), SLOT(getCountAndType), SLOT(getSubCondAt)),
    TABLE(CMPISubCondFT, kShort,
        SLOT(release), SLOT(clone), SLOT(getCount), SLOT(getPredicateAt), SLOT(getPredicate)),
    TABLE(CMPIPredicateFT, kShort,
        SLOT(release), SLOT(clone), SLOT(getData), SLOT(evaluateUsingAccessor)),
    TABLE(CMPIErrorFT, kShort,
        SLOT(release), SLOT(clone), SLOT(getErrorType), SLOT(getOtherErrorType), SLOT(getOwningEntity),
        SLOT(getMessageID), SLOT(getMessage), SLOT(getPerceivedSeverity), SLOT(getProbableCause),
        SLOT(getProbableCauseDescription), SLOT(getRecommendedActions), SLOT(getErrorSource),
        SLOT(getErrorSourceFormat), SLOT(getOtherErrorSourceFormat), SLOT(getCIMStatusCode),
        SLOT(getCIMStatusCodeDescription), SLOT(getMessageArguments), SLOT(setErrorType),
        SLOT(setOtherErrorType), SLOT(setProbableCauseDescription), SLOT(setRecommendedActions),
        SLOT(setErrorSource), SLOT(setErrorSourceFormat), SLOT(setOtherErrorSourceFormat),
        SLOT(setCIMStatusCodeDescription), SLOT(setMessageArguments)),
    TABLE(CMPIInstanceMIFT, kLong,
        SLOT(cleanup), SLOT(enumerateInstanceNames), SLOT(enumerateInstances), SLOT(getInstance),
        SLOT(createInstance), SLOT(modifyInstance), SLOT(deleteInstance), SLOT(execQuery)),
    TABLE(CMPIAssociationMIFT, kLong,
        SLOT(cleanup), SLOT(associators), SLOT(associatorNames), SLOT(references), SLOT(referenceNames)),
    TABLE(CMPIMethodMIFT, kLong,
        SLOT(cleanup), SLOT(invokeMethod)),
    TABLE(CMPIPropertyMIFT, kLong,
        SLOT(cleanup), SLOT(setProperty), SLOT(getProperty), SLOT(setPropertyWithOrigin)),
    TABLE(CMPIIndicationMIFT, kLong,
        SLOT(cleanup), SLOT(authorizeFilter), SLOT(mustPoll), SLOT(activateFilter), SLOT(deActivateFilter),
        SLOT(enableIndications), SLOT(disableIndications)),
};

#undef TABLE
#undef SLOT
// clang-format on

TEST(CmpiAbi, FunctionsStandInTheirSlots)
{
    for (const Table& table : kTables)
    {
        size_t expected = table.header == kLong ? 8 + sizeof(void*) : sizeof(void*);
        for (const Slot& slot : table.slots)
        {
            EXPECT_EQ(slot.offset, expected) << table.name << "." << slot.name;
            expected += sizeof(void*);
        }
        EXPECT_EQ(table.size, expected) << table.name << " has other functions behind the last one";
    }
}

TEST(CmpiAbi, AnEmptyInitialiserClearsEveryScalarOfAValue)
{
    CMPIValue value;
    value.uint64 = ~CMPIUint64(0);
    value = CMPIValue{0};
    EXPECT_EQ(value.uint64, 0u);
}

} // namespace
