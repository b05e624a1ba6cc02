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

#define SLOT(TABLE, FUNCTION)                                                                                \
    {                                                                                                        \
#FUNCTION, offsetof(TABLE, FUNCTION)                                                                 \
    }

const std::vector<Table>& tables()
{
    static const std::vector<Table> all = {
        {"CMPIBrokerFT",
         kLong,
         sizeof(CMPIBrokerFT),
         {SLOT(CMPIBrokerFT, prepareAttachThread),
          SLOT(CMPIBrokerFT, attachThread),
          SLOT(CMPIBrokerFT, detachThread),
          SLOT(CMPIBrokerFT, deliverIndication),
          SLOT(CMPIBrokerFT, enumerateInstanceNames),
          SLOT(CMPIBrokerFT, getInstance),
          SLOT(CMPIBrokerFT, createInstance),
          SLOT(CMPIBrokerFT, modifyInstance),
          SLOT(CMPIBrokerFT, deleteInstance),
          SLOT(CMPIBrokerFT, execQuery),
          SLOT(CMPIBrokerFT, enumerateInstances),
          SLOT(CMPIBrokerFT, associators),
          SLOT(CMPIBrokerFT, associatorNames),
          SLOT(CMPIBrokerFT, references),
          SLOT(CMPIBrokerFT, referenceNames),
          SLOT(CMPIBrokerFT, invokeMethod),
          SLOT(CMPIBrokerFT, setProperty),
          SLOT(CMPIBrokerFT, getProperty)}},
        {"CMPIBrokerEncFT",
         kShort,
         sizeof(CMPIBrokerEncFT),
         {SLOT(CMPIBrokerEncFT, newInstance),
          SLOT(CMPIBrokerEncFT, newObjectPath),
          SLOT(CMPIBrokerEncFT, newArgs),
          SLOT(CMPIBrokerEncFT, newString),
          SLOT(CMPIBrokerEncFT, newArray),
          SLOT(CMPIBrokerEncFT, newDateTime),
          SLOT(CMPIBrokerEncFT, newDateTimeFromBinary),
          SLOT(CMPIBrokerEncFT, newDateTimeFromChars),
          SLOT(CMPIBrokerEncFT, newSelectExp),
          SLOT(CMPIBrokerEncFT, classPathIsA),
          SLOT(CMPIBrokerEncFT, toString),
          SLOT(CMPIBrokerEncFT, isOfType),
          SLOT(CMPIBrokerEncFT, getType),
          SLOT(CMPIBrokerEncFT, getMessage),
          SLOT(CMPIBrokerEncFT, logMessage),
          SLOT(CMPIBrokerEncFT, trace),
          SLOT(CMPIBrokerEncFT, newCMPIError),
          SLOT(CMPIBrokerEncFT, openMessageFile),
          SLOT(CMPIBrokerEncFT, closeMessageFile),
          SLOT(CMPIBrokerEncFT, getMessage2)}},
        {"CMPIBrokerExtFT",
         kShort,
         sizeof(CMPIBrokerExtFT),
         {SLOT(CMPIBrokerExtFT, resolveFileName),   SLOT(CMPIBrokerExtFT, newThread),
          SLOT(CMPIBrokerExtFT, joinThread),        SLOT(CMPIBrokerExtFT, exitThread),
          SLOT(CMPIBrokerExtFT, cancelThread),      SLOT(CMPIBrokerExtFT, threadSleep),
          SLOT(CMPIBrokerExtFT, threadOnce),        SLOT(CMPIBrokerExtFT, createThreadKey),
          SLOT(CMPIBrokerExtFT, destroyThreadKey),  SLOT(CMPIBrokerExtFT, getThreadSpecific),
          SLOT(CMPIBrokerExtFT, setThreadSpecific), SLOT(CMPIBrokerExtFT, newMutex),
          SLOT(CMPIBrokerExtFT, destroyMutex),      SLOT(CMPIBrokerExtFT, lockMutex),
          SLOT(CMPIBrokerExtFT, unlockMutex),       SLOT(CMPIBrokerExtFT, newCondition),
          SLOT(CMPIBrokerExtFT, destroyCondition),  SLOT(CMPIBrokerExtFT, condWait),
          SLOT(CMPIBrokerExtFT, timedCondWait),     SLOT(CMPIBrokerExtFT, signalCondition)}},
        {"CMPIBrokerMemFT",
         kShort,
         sizeof(CMPIBrokerMemFT),
         {SLOT(CMPIBrokerMemFT, mark),
          SLOT(CMPIBrokerMemFT, release),
          SLOT(CMPIBrokerMemFT, cmpiMalloc),
          SLOT(CMPIBrokerMemFT, cmpiCalloc),
          SLOT(CMPIBrokerMemFT, cmpiRealloc),
          SLOT(CMPIBrokerMemFT, cmpiStrDup),
          SLOT(CMPIBrokerMemFT, cmpiFree),
          SLOT(CMPIBrokerMemFT, freeInstance),
          SLOT(CMPIBrokerMemFT, freeObjectPath),
          SLOT(CMPIBrokerMemFT, freeArgs),
          SLOT(CMPIBrokerMemFT, freeString),
          SLOT(CMPIBrokerMemFT, freeArray),
          SLOT(CMPIBrokerMemFT, freeDateTime),
          SLOT(CMPIBrokerMemFT, freeSelectExp)}},
        {"CMPIContextFT",
         kShort,
         sizeof(CMPIContextFT),
         {SLOT(CMPIContextFT, release),
          SLOT(CMPIContextFT, clone),
          SLOT(CMPIContextFT, getEntry),
          SLOT(CMPIContextFT, getEntryAt),
          SLOT(CMPIContextFT, getEntryCount),
          SLOT(CMPIContextFT, addEntry)}},
        {"CMPIResultFT",
         kShort,
         sizeof(CMPIResultFT),
         {SLOT(CMPIResultFT, release),
          SLOT(CMPIResultFT, clone),
          SLOT(CMPIResultFT, returnData),
          SLOT(CMPIResultFT, returnInstance),
          SLOT(CMPIResultFT, returnObjectPath),
          SLOT(CMPIResultFT, returnDone),
          SLOT(CMPIResultFT, returnError)}},
        {"CMPIStringFT",
         kShort,
         sizeof(CMPIStringFT),
         {SLOT(CMPIStringFT, release), SLOT(CMPIStringFT, clone), SLOT(CMPIStringFT, getCharPtr)}},
        {"CMPIArrayFT",
         kShort,
         sizeof(CMPIArrayFT),
         {SLOT(CMPIArrayFT, release),
          SLOT(CMPIArrayFT, clone),
          SLOT(CMPIArrayFT, getSize),
          SLOT(CMPIArrayFT, getSimpleType),
          SLOT(CMPIArrayFT, getElementAt),
          SLOT(CMPIArrayFT, setElementAt)}},
        {"CMPIEnumerationFT",
         kShort,
         sizeof(CMPIEnumerationFT),
         {SLOT(CMPIEnumerationFT, release),
          SLOT(CMPIEnumerationFT, clone),
          SLOT(CMPIEnumerationFT, getNext),
          SLOT(CMPIEnumerationFT, hasNext),
          SLOT(CMPIEnumerationFT, toArray)}},
        {"CMPIInstanceFT",
         kShort,
         sizeof(CMPIInstanceFT),
         {SLOT(CMPIInstanceFT, release),
          SLOT(CMPIInstanceFT, clone),
          SLOT(CMPIInstanceFT, getProperty),
          SLOT(CMPIInstanceFT, getPropertyAt),
          SLOT(CMPIInstanceFT, getPropertyCount),
          SLOT(CMPIInstanceFT, setProperty),
          SLOT(CMPIInstanceFT, getObjectPath),
          SLOT(CMPIInstanceFT, setPropertyFilter),
          SLOT(CMPIInstanceFT, setObjectPath),
          SLOT(CMPIInstanceFT, setPropertyWithOrigin)}},
        {"CMPIObjectPathFT",
         kShort,
         sizeof(CMPIObjectPathFT),
         {SLOT(CMPIObjectPathFT, release),
          SLOT(CMPIObjectPathFT, clone),
          SLOT(CMPIObjectPathFT, setNameSpace),
          SLOT(CMPIObjectPathFT, getNameSpace),
          SLOT(CMPIObjectPathFT, setHostname),
          SLOT(CMPIObjectPathFT, getHostname),
          SLOT(CMPIObjectPathFT, setClassName),
          SLOT(CMPIObjectPathFT, getClassName),
          SLOT(CMPIObjectPathFT, addKey),
          SLOT(CMPIObjectPathFT, getKey),
          SLOT(CMPIObjectPathFT, getKeyAt),
          SLOT(CMPIObjectPathFT, getKeyCount),
          SLOT(CMPIObjectPathFT, setNameSpaceFromObjectPath),
          SLOT(CMPIObjectPathFT, setHostAndNameSpaceFromObjectPath),
          SLOT(CMPIObjectPathFT, getClassQualifier),
          SLOT(CMPIObjectPathFT, getPropertyQualifier),
          SLOT(CMPIObjectPathFT, getMethodQualifier),
          SLOT(CMPIObjectPathFT, getParameterQualifier),
          SLOT(CMPIObjectPathFT, toString)}},
        {"CMPIArgsFT",
         kShort,
         sizeof(CMPIArgsFT),
         {SLOT(CMPIArgsFT, release),
          SLOT(CMPIArgsFT, clone),
          SLOT(CMPIArgsFT, addArg),
          SLOT(CMPIArgsFT, getArg),
          SLOT(CMPIArgsFT, getArgAt),
          SLOT(CMPIArgsFT, getArgCount)}},
        {"CMPIDateTimeFT",
         kShort,
         sizeof(CMPIDateTimeFT),
         {SLOT(CMPIDateTimeFT, release),
          SLOT(CMPIDateTimeFT, clone),
          SLOT(CMPIDateTimeFT, getBinaryFormat),
          SLOT(CMPIDateTimeFT, getStringFormat),
          SLOT(CMPIDateTimeFT, isInterval)}},
        {"CMPISelectExpFT",
         kShort,
         sizeof(CMPISelectExpFT),
         {SLOT(CMPISelectExpFT, release),
          SLOT(CMPISelectExpFT, clone),
          SLOT(CMPISelectExpFT, evaluate),
          SLOT(CMPISelectExpFT, getString),
          SLOT(CMPISelectExpFT, getDOC),
          SLOT(CMPISelectExpFT, getCOD),
          SLOT(CMPISelectExpFT, evaluateUsingAccessor)}},
        {"CMPISelectCondFT",
         kShort,
         sizeof(CMPISelectCondFT),
         {SLOT(CMPISelectCondFT, release),
          SLOT(CMPISelectCondFT, clone),
          SLOT(CMPISelectCondFT, getCountAndType),
          SLOT(CMPISelectCondFT, getSubCondAt)}},
        {"CMPISubCondFT",
         kShort,
         sizeof(CMPISubCondFT),
         {SLOT(CMPISubCondFT, release),
          SLOT(CMPISubCondFT, clone),
          SLOT(CMPISubCondFT, getCount),
          SLOT(CMPISubCondFT, getPredicateAt),
          SLOT(CMPISubCondFT, getPredicate)}},
        {"CMPIPredicateFT",
         kShort,
         sizeof(CMPIPredicateFT),
         {SLOT(CMPIPredicateFT, release),
          SLOT(CMPIPredicateFT, clone),
          SLOT(CMPIPredicateFT, getData),
          SLOT(CMPIPredicateFT, evaluateUsingAccessor)}},
        {"CMPIErrorFT",
         kShort,
         sizeof(CMPIErrorFT),
         {SLOT(CMPIErrorFT, release),
          SLOT(CMPIErrorFT, clone),
          SLOT(CMPIErrorFT, getErrorType),
          SLOT(CMPIErrorFT, getOtherErrorType),
          SLOT(CMPIErrorFT, getOwningEntity),
          SLOT(CMPIErrorFT, getMessageID),
          SLOT(CMPIErrorFT, getMessage),
          SLOT(CMPIErrorFT, getPerceivedSeverity),
          SLOT(CMPIErrorFT, getProbableCause),
          SLOT(CMPIErrorFT, getProbableCauseDescription),
          SLOT(CMPIErrorFT, getRecommendedActions),
          SLOT(CMPIErrorFT, getErrorSource),
          SLOT(CMPIErrorFT, getErrorSourceFormat),
          SLOT(CMPIErrorFT, getOtherErrorSourceFormat),
          SLOT(CMPIErrorFT, getCIMStatusCode),
          SLOT(CMPIErrorFT, getCIMStatusCodeDescription),
          SLOT(CMPIErrorFT, getMessageArguments),
          SLOT(CMPIErrorFT, setErrorType),
          SLOT(CMPIErrorFT, setOtherErrorType),
          SLOT(CMPIErrorFT, setProbableCauseDescription),
          SLOT(CMPIErrorFT, setRecommendedActions),
          SLOT(CMPIErrorFT, setErrorSource),
          SLOT(CMPIErrorFT, setErrorSourceFormat),
          SLOT(CMPIErrorFT, setOtherErrorSourceFormat),
          SLOT(CMPIErrorFT, setCIMStatusCodeDescription),
          SLOT(CMPIErrorFT, setMessageArguments)}},
        {"CMPIInstanceMIFT",
         kLong,
         sizeof(CMPIInstanceMIFT),
         {SLOT(CMPIInstanceMIFT, cleanup),
          SLOT(CMPIInstanceMIFT, enumerateInstanceNames),
          SLOT(CMPIInstanceMIFT, enumerateInstances),
          SLOT(CMPIInstanceMIFT, getInstance),
          SLOT(CMPIInstanceMIFT, createInstance),
          SLOT(CMPIInstanceMIFT, modifyInstance),
          SLOT(CMPIInstanceMIFT, deleteInstance),
          SLOT(CMPIInstanceMIFT, execQuery)}},
        {"CMPIAssociationMIFT",
         kLong,
         sizeof(CMPIAssociationMIFT),
         {SLOT(CMPIAssociationMIFT, cleanup),
          SLOT(CMPIAssociationMIFT, associators),
          SLOT(CMPIAssociationMIFT, associatorNames),
          SLOT(CMPIAssociationMIFT, references),
          SLOT(CMPIAssociationMIFT, referenceNames)}},
        {"CMPIMethodMIFT",
         kLong,
         sizeof(CMPIMethodMIFT),
         {SLOT(CMPIMethodMIFT, cleanup), SLOT(CMPIMethodMIFT, invokeMethod)}},
        {"CMPIPropertyMIFT",
         kLong,
         sizeof(CMPIPropertyMIFT),
         {SLOT(CMPIPropertyMIFT, cleanup),
          SLOT(CMPIPropertyMIFT, setProperty),
          SLOT(CMPIPropertyMIFT, getProperty),
          SLOT(CMPIPropertyMIFT, setPropertyWithOrigin)}},
        {"CMPIIndicationMIFT",
         kLong,
         sizeof(CMPIIndicationMIFT),
         {SLOT(CMPIIndicationMIFT, cleanup),
          SLOT(CMPIIndicationMIFT, authorizeFilter),
          SLOT(CMPIIndicationMIFT, mustPoll),
          SLOT(CMPIIndicationMIFT, activateFilter),
          SLOT(CMPIIndicationMIFT, deActivateFilter),
          SLOT(CMPIIndicationMIFT, enableIndications),
          SLOT(CMPIIndicationMIFT, disableIndications)}},
    };
    return all;
}

#undef SLOT

TEST(CmpiAbi, FunctionsStandInTheirSlots)
{
    for (const Table& table : tables())
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
