// CMPI: compile-time check of sizes and offsets against measured tables (LP64, and 32-bit PowerPC and i386).
#ifndef CMPIABI_H
#define CMPIABI_H

#include <cstddef>

#include "cmpibroker.h"
#include "cmpimi.h"
#include "cmpiobj.h"
#include "cmpios.h"
#include "cmpiquery.h"

namespace cmpi_abi
{

constexpr bool kLp64 = sizeof(void*) == 8;

static_assert(sizeof(CMPIBoolean) == 1 && sizeof(CMPIType) == 2 && sizeof(CMPIValueState) == 2);
static_assert(sizeof(CMPIrc) == 4 && sizeof(CMPIPredOp) == 4 && sizeof(CMPISeverity) == 4);
static_assert(sizeof(CMPIErrorType) == 4 && sizeof(CMPIErrorProbableCause) == 4);

static_assert(sizeof(CMPIValue) == (kLp64 ? 16 : 8));
static_assert(sizeof(CMPIStatus) == (kLp64 ? 16 : 8) && offsetof(CMPIStatus, msg) == sizeof(void*));
static_assert(sizeof(CMPIValuePtr) == (kLp64 ? 16 : 8) && offsetof(CMPIValuePtr, length) == sizeof(void*));
static_assert(offsetof(CMPIData, type) == 0 && offsetof(CMPIData, state) == 2);
static_assert(offsetof(CMPIData, value) == (alignof(CMPIValue) == 4 ? 4 : 8)); // 4 on i386 only
static_assert(sizeof(CMPIData) == offsetof(CMPIData, value) + sizeof(CMPIValue));
#if defined(__powerpc__) && !defined(__powerpc64__)
static_assert(alignof(CMPIValue) == 8 && sizeof(CMPIData) == 16);
#endif

static_assert(sizeof(CMPIInstance) == 2 * sizeof(void*) && offsetof(CMPIInstance, ft) == sizeof(void*));
static_assert(sizeof(CMPIInstanceMI) == 2 * sizeof(void*) && offsetof(CMPIInstanceMI, ft) == sizeof(void*));
static_assert(sizeof(CMPIBroker) == 5 * sizeof(void*) && offsetof(CMPIBroker, mft) == 4 * sizeof(void*));

// Every table: its size on both models, and where its last function stands.
#define CMPI_ABI_TABLE(TABLE, SIZE64, SIZE32, LAST)                                                          \
    static_assert(sizeof(TABLE) == (kLp64 ? SIZE64 : SIZE32), #TABLE " has the wrong size");                 \
    static_assert(offsetof(TABLE, LAST) == sizeof(TABLE) - sizeof(void*), #TABLE " does not end with " #LAST)

CMPI_ABI_TABLE(CMPIBrokerFT, 160, 84, getProperty);
CMPI_ABI_TABLE(CMPIBrokerEncFT, 168, 84, getMessage2);
CMPI_ABI_TABLE(CMPIBrokerExtFT, 168, 84, signalCondition);
CMPI_ABI_TABLE(CMPIBrokerMemFT, 120, 60, freeSelectExp);
CMPI_ABI_TABLE(CMPIContextFT, 56, 28, addEntry);
CMPI_ABI_TABLE(CMPIResultFT, 64, 32, returnError);
CMPI_ABI_TABLE(CMPIStringFT, 32, 16, getCharPtr);
CMPI_ABI_TABLE(CMPIArrayFT, 56, 28, setElementAt);
CMPI_ABI_TABLE(CMPIEnumerationFT, 48, 24, toArray);
CMPI_ABI_TABLE(CMPIInstanceFT, 88, 44, setPropertyWithOrigin);
CMPI_ABI_TABLE(CMPIObjectPathFT, 160, 80, toString);
CMPI_ABI_TABLE(CMPIArgsFT, 56, 28, getArgCount);
CMPI_ABI_TABLE(CMPIDateTimeFT, 48, 24, isInterval);
CMPI_ABI_TABLE(CMPISelectExpFT, 64, 32, evaluateUsingAccessor);
CMPI_ABI_TABLE(CMPISelectCondFT, 40, 20, getSubCondAt);
CMPI_ABI_TABLE(CMPISubCondFT, 48, 24, getPredicate);
CMPI_ABI_TABLE(CMPIPredicateFT, 40, 20, evaluateUsingAccessor);
CMPI_ABI_TABLE(CMPIErrorFT, 216, 108, setMessageArguments);
CMPI_ABI_TABLE(CMPIInstanceMIFT, 80, 44, execQuery);
CMPI_ABI_TABLE(CMPIAssociationMIFT, 56, 32, referenceNames);
CMPI_ABI_TABLE(CMPIMethodMIFT, 32, 20, invokeMethod);
CMPI_ABI_TABLE(CMPIPropertyMIFT, 48, 28, setPropertyWithOrigin);
CMPI_ABI_TABLE(CMPIIndicationMIFT, 72, 40, disableIndications);

#undef CMPI_ABI_TABLE

} // namespace cmpi_abi

#endif
