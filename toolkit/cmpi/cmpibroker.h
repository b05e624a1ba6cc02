/* CMPI: function tables of the broker, version 2.0 layout. */
#ifndef CMPIBROKER_H
#define CMPIBROKER_H

#include "cmpidt.h"
#include <stddef.h>

/* Thread registration, indications and client services of the broker. */
struct _CMPIBrokerFT
{
    unsigned int brokerCapabilities; /* CMPI_MB_ bits */
    CMPIVersion brokerVersion;
    const char* brokerName;
    /* Called in the thread that starts another one: a context for the new thread, NULL on failure. */
    CMPIContext* (*prepareAttachThread)(const CMPIBroker* mb, const CMPIContext* ctx);
    /* First call of the new thread; ctx is the prepared context. */
    CMPIStatus (*attachThread)(const CMPIBroker* mb, const CMPIContext* ctx);
    /* Last call of that thread; ends the life of the prepared context. */
    CMPIStatus (*detachThread)(const CMPIBroker* mb, const CMPIContext* ctx);
    /* Hands an indication over; ns is the namespace it originates from. No subscriber is no error. */
    CMPIStatus (*deliverIndication)(const CMPIBroker* mb,
                                    const CMPIContext* ctx,
                                    const char* ns,
                                    const CMPIInstance* ind);
    /* The client services. ctx is never NULL; a NULL property list means all, an empty one none. */
    CMPIEnumeration* (*enumerateInstanceNames)(const CMPIBroker* mb,
                                               const CMPIContext* ctx,
                                               const CMPIObjectPath* classPath,
                                               CMPIStatus* rc);
    CMPIInstance* (*getInstance)(const CMPIBroker* mb,
                                 const CMPIContext* ctx,
                                 const CMPIObjectPath* instPath,
                                 const char** properties,
                                 CMPIStatus* rc);
    CMPIObjectPath* (*createInstance)(const CMPIBroker* mb,
                                      const CMPIContext* ctx,
                                      const CMPIObjectPath* classPath,
                                      const CMPIInstance* newInst,
                                      CMPIStatus* rc);
    CMPIStatus (*modifyInstance)(const CMPIBroker* mb,
                                 const CMPIContext* ctx,
                                 const CMPIObjectPath* instPath,
                                 const CMPIInstance* modInst,
                                 const char** properties);
    CMPIStatus (*deleteInstance)(const CMPIBroker* mb,
                                 const CMPIContext* ctx,
                                 const CMPIObjectPath* instPath);
    CMPIEnumeration* (*execQuery)(const CMPIBroker* mb,
                                  const CMPIContext* ctx,
                                  const CMPIObjectPath* classPath,
                                  const char* query,
                                  const char* lang,
                                  CMPIStatus* rc);
    CMPIEnumeration* (*enumerateInstances)(const CMPIBroker* mb,
                                           const CMPIContext* ctx,
                                           const CMPIObjectPath* classPath,
                                           const char** properties,
                                           CMPIStatus* rc);
    CMPIEnumeration* (*associators)(const CMPIBroker* mb,
                                    const CMPIContext* ctx,
                                    const CMPIObjectPath* instPath,
                                    const char* assocClass,
                                    const char* resultClass,
                                    const char* role,
                                    const char* resultRole,
                                    const char** properties,
                                    CMPIStatus* rc);
    CMPIEnumeration* (*associatorNames)(const CMPIBroker* mb,
                                        const CMPIContext* ctx,
                                        const CMPIObjectPath* instPath,
                                        const char* assocClass,
                                        const char* resultClass,
                                        const char* role,
                                        const char* resultRole,
                                        CMPIStatus* rc);
    CMPIEnumeration* (*references)(const CMPIBroker* mb,
                                   const CMPIContext* ctx,
                                   const CMPIObjectPath* instPath,
                                   const char* resultClass,
                                   const char* role,
                                   const char** properties,
                                   CMPIStatus* rc);
    CMPIEnumeration* (*referenceNames)(const CMPIBroker* mb,
                                       const CMPIContext* ctx,
                                       const CMPIObjectPath* instPath,
                                       const char* resultClass,
                                       const char* role,
                                       CMPIStatus* rc);
    CMPIData (*invokeMethod)(const CMPIBroker* mb,
                             const CMPIContext* ctx,
                             const CMPIObjectPath* objPath,
                             const char* method,
                             const CMPIArgs* in,
                             CMPIArgs* out,
                             CMPIStatus* rc);
    CMPIStatus (*setProperty)(const CMPIBroker* mb,
                              const CMPIContext* ctx,
                              const CMPIObjectPath* instPath,
                              const char* name,
                              const CMPIValue* value,
                              CMPIType type);
    CMPIData (*getProperty)(const CMPIBroker* mb,
                            const CMPIContext* ctx,
                            const CMPIObjectPath* instPath,
                            const char* name,
                            CMPIStatus* rc);
};

/* Object factories and miscellaneous services of the broker. */
struct _CMPIBrokerEncFT
{
    CMPIVersion ftVersion;
    /* Factories: a new object tracked by the broker until the running MI function returns, or NULL. */
    CMPIInstance* (*newInstance)(const CMPIBroker* mb, const CMPIObjectPath* instPath, CMPIStatus* rc);
    CMPIObjectPath* (*newObjectPath)(const CMPIBroker* mb, const char* ns, const char* cn, CMPIStatus* rc);
    CMPIArgs* (*newArgs)(const CMPIBroker* mb, CMPIStatus* rc);
    CMPIString* (*newString)(const CMPIBroker* mb, const char* data, CMPIStatus* rc);
    /* size NULL elements; type is the element type without the array bit. */
    CMPIArray* (*newArray)(const CMPIBroker* mb, CMPICount size, CMPIType type, CMPIStatus* rc);
    CMPIDateTime* (*newDateTime)(const CMPIBroker* mb, CMPIStatus* rc);
    /* Microseconds since 1970-01-01 UTC, or the length of an interval in microseconds. */
    CMPIDateTime* (*newDateTimeFromBinary)(const CMPIBroker* mb,
                                           CMPIUint64 binTime,
                                           CMPIBoolean interval,
                                           CMPIStatus* rc);
    /* The 25 characters of a CIM datetime (DSP0004). */
    CMPIDateTime* (*newDateTimeFromChars)(const CMPIBroker* mb, const char* datetime, CMPIStatus* rc);
    CMPISelectExp* (*newSelectExp)(
        const CMPIBroker* mb, const char* query, const char* lang, CMPIArray** projection, CMPIStatus* rc);
    CMPIBoolean (*classPathIsA)(const CMPIBroker* mb,
                                const CMPIObjectPath* classPath,
                                const char* className,
                                CMPIStatus* rc);
    CMPIString* (*toString)(const CMPIBroker* mb, const void* object, CMPIStatus* rc);
    CMPIBoolean (*isOfType)(const CMPIBroker* mb, const void* object, const char* type, CMPIStatus* rc);
    CMPIString* (*getType)(const CMPIBroker* mb, const void* object, CMPIStatus* rc);
    /* The variable arguments are count (0 to 10) pairs of type and value. */
    CMPIString* (*getMessage)(
        const CMPIBroker* mb, const char* msgId, const char* defMsg, CMPIStatus* rc, CMPICount count, ...);
    CMPIStatus (*logMessage)(const CMPIBroker* mb,
                             CMPISeverity severity,
                             const char* id,
                             const char* text,
                             const CMPIString* string);
    CMPIStatus (*trace)(const CMPIBroker* mb,
                        CMPILevel level,
                        const char* component,
                        const char* text,
                        const CMPIString* string);
    /* Since 2.0; some brokers leave the rest of the table NULL. */
    CMPIError* (*newCMPIError)(const CMPIBroker* mb,
                               const char* owner,
                               const char* msgID,
                               const char* msg,
                               CMPIErrorSeverity sev,
                               CMPIErrorProbableCause pc,
                               CMPIrc cimStatusCode,
                               CMPIStatus* rc);
    CMPIStatus (*openMessageFile)(const CMPIBroker* mb,
                                  const char* msgFile,
                                  CMPIMsgFileHandle* msgFileHandle);
    CMPIStatus (*closeMessageFile)(const CMPIBroker* mb, CMPIMsgFileHandle msgFileHandle);
    CMPIString* (*getMessage2)(const CMPIBroker* mb,
                               const char* msgId,
                               CMPIMsgFileHandle msgFileHandle,
                               const char* defMsg,
                               CMPIStatus* rc,
                               CMPICount count,
                               ...);
};

/* Memory services of the broker, since 2.0; CMPIBroker.mft may be NULL. */
struct _CMPIBrokerMemFT
{
    CMPIVersion ftVersion;
    /* Opens a nested life time of objects; release ends it. Levels nest strictly. */
    CMPIGcStat* (*mark)(const CMPIBroker* mb, CMPIStatus* rc);
    CMPIStatus (*release)(const CMPIBroker* mb, const CMPIGcStat* gc);
    /* Memory of the MI until cmpiFree, at the latest until after its cleanup. */
    void* (*cmpiMalloc)(const CMPIBroker* mb, size_t size);
    void* (*cmpiCalloc)(const CMPIBroker* mb, size_t nElems, size_t sizeElem);
    void* (*cmpiRealloc)(const CMPIBroker* mb, void* ptr, size_t size);
    char* (*cmpiStrDup)(const CMPIBroker* mb, const char* str);
    void (*cmpiFree)(const CMPIBroker* mb, void* ptr);
    /* Early release of an object made by the matching factory, and of no other. */
    void (*freeInstance)(const CMPIBroker* mb, CMPIInstance* inst);
    void (*freeObjectPath)(const CMPIBroker* mb, CMPIObjectPath* obj);
    void (*freeArgs)(const CMPIBroker* mb, CMPIArgs* args);
    void (*freeString)(const CMPIBroker* mb, CMPIString* str);
    void (*freeArray)(const CMPIBroker* mb, CMPIArray* array);
    void (*freeDateTime)(const CMPIBroker* mb, CMPIDateTime* dt);
    void (*freeSelectExp)(const CMPIBroker* mb, CMPISelectExp* se);
};

#endif
