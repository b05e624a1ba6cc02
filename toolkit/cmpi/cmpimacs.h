/* CMPI: convenience functions, one per table entry that providers and brokers call often.

   Arguments stand in the order of the table functions; rc may be NULL wherever the table function allows it.
 */
#ifndef CMPIMACS_H
#define CMPIMACS_H

#include "cmpift.h"

/* Any encapsulated object. */
#define CMClone(object, rc) ((object)->ft->clone((object), (rc)))
#define CMRelease(object) ((object)->ft->release((object)))
#define CMIsNullObject(object) ((object) == NULL)

#define CMIsNullValue(data) (((data).state & CMPI_nullValue) != 0)
#define CMIsKeyValue(data) (((data).state & CMPI_keyValue) != 0)
#define CMIsArray(data) (((data).type & CMPI_ARRAY) != 0)

/* Leave the enclosing function with a status. */
#define CMReturn(code)                                                                                       \
    do                                                                                                       \
    {                                                                                                        \
        CMPIStatus cmStatus = {(code), NULL};                                                                \
        return cmStatus;                                                                                     \
    } while (0)
#define CMReturnWithString(code, string)                                                                     \
    do                                                                                                       \
    {                                                                                                        \
        CMPIStatus cmStatus = {(code), (string)};                                                            \
        return cmStatus;                                                                                     \
    } while (0)
#define CMReturnWithChars(mb, code, chars) CMReturnWithString((code), CMNewString((mb), (chars), NULL))

/* Factories; the objects live until the running MI function returns. */
static inline CMPIInstance* CMNewInstance(const CMPIBroker* mb, const CMPIObjectPath* op, CMPIStatus* rc)
{
    return mb->eft->newInstance(mb, op, rc);
}
static inline CMPIObjectPath*
CMNewObjectPath(const CMPIBroker* mb, const char* ns, const char* cn, CMPIStatus* rc)
{
    return mb->eft->newObjectPath(mb, ns, cn, rc);
}
static inline CMPIArgs* CMNewArgs(const CMPIBroker* mb, CMPIStatus* rc)
{
    return mb->eft->newArgs(mb, rc);
}
static inline CMPIString* CMNewString(const CMPIBroker* mb, const char* chars, CMPIStatus* rc)
{
    return mb->eft->newString(mb, chars, rc);
}
static inline CMPIArray* CMNewArray(const CMPIBroker* mb, CMPICount size, CMPIType type, CMPIStatus* rc)
{
    return mb->eft->newArray(mb, size, type, rc);
}
static inline CMPIDateTime* CMNewDateTime(const CMPIBroker* mb, CMPIStatus* rc)
{
    return mb->eft->newDateTime(mb, rc);
}
static inline CMPIDateTime*
CMNewDateTimeFromBinary(const CMPIBroker* mb, CMPIUint64 usec, CMPIBoolean interval, CMPIStatus* rc)
{
    return mb->eft->newDateTimeFromBinary(mb, usec, interval, rc);
}
static inline CMPIDateTime* CMNewDateTimeFromChars(const CMPIBroker* mb, const char* chars, CMPIStatus* rc)
{
    return mb->eft->newDateTimeFromChars(mb, chars, rc);
}
static inline CMPIBoolean
CMClassPathIsA(const CMPIBroker* mb, const CMPIObjectPath* op, const char* cn, CMPIStatus* rc)
{
    return mb->eft->classPathIsA(mb, op, cn, rc);
}

/* Threads and indications. */
static inline CMPIContext* CBPrepareAttachThread(const CMPIBroker* mb, const CMPIContext* ctx)
{
    return mb->bft->prepareAttachThread(mb, ctx);
}
static inline CMPIStatus CBAttachThread(const CMPIBroker* mb, const CMPIContext* ctx)
{
    return mb->bft->attachThread(mb, ctx);
}
static inline CMPIStatus CBDetachThread(const CMPIBroker* mb, const CMPIContext* ctx)
{
    return mb->bft->detachThread(mb, ctx);
}
static inline CMPIStatus
CBDeliverIndication(const CMPIBroker* mb, const CMPIContext* ctx, const char* ns, const CMPIInstance* ind)
{
    return mb->bft->deliverIndication(mb, ctx, ns, ind);
}

/* Client services. */
static inline CMPIEnumeration*
CBEnumInstanceNames(const CMPIBroker* mb, const CMPIContext* ctx, const CMPIObjectPath* op, CMPIStatus* rc)
{
    return mb->bft->enumerateInstanceNames(mb, ctx, op, rc);
}
static inline CMPIEnumeration* CBEnumInstances(const CMPIBroker* mb,
                                               const CMPIContext* ctx,
                                               const CMPIObjectPath* op,
                                               const char** properties,
                                               CMPIStatus* rc)
{
    return mb->bft->enumerateInstances(mb, ctx, op, properties, rc);
}
static inline CMPIInstance* CBGetInstance(const CMPIBroker* mb,
                                          const CMPIContext* ctx,
                                          const CMPIObjectPath* op,
                                          const char** properties,
                                          CMPIStatus* rc)
{
    return mb->bft->getInstance(mb, ctx, op, properties, rc);
}
static inline CMPIObjectPath* CBCreateInstance(const CMPIBroker* mb,
                                               const CMPIContext* ctx,
                                               const CMPIObjectPath* op,
                                               const CMPIInstance* inst,
                                               CMPIStatus* rc)
{
    return mb->bft->createInstance(mb, ctx, op, inst, rc);
}
static inline CMPIStatus CBModifyInstance(const CMPIBroker* mb,
                                          const CMPIContext* ctx,
                                          const CMPIObjectPath* op,
                                          const CMPIInstance* inst,
                                          const char** properties)
{
    return mb->bft->modifyInstance(mb, ctx, op, inst, properties);
}
static inline CMPIStatus
CBDeleteInstance(const CMPIBroker* mb, const CMPIContext* ctx, const CMPIObjectPath* op)
{
    return mb->bft->deleteInstance(mb, ctx, op);
}
static inline CMPIData CBInvokeMethod(const CMPIBroker* mb,
                                      const CMPIContext* ctx,
                                      const CMPIObjectPath* op,
                                      const char* method,
                                      const CMPIArgs* in,
                                      CMPIArgs* out,
                                      CMPIStatus* rc)
{
    return mb->bft->invokeMethod(mb, ctx, op, method, in, out, rc);
}

/* Instances. */
static inline CMPIData CMGetProperty(const CMPIInstance* inst, const char* name, CMPIStatus* rc)
{
    return inst->ft->getProperty(inst, name, rc);
}
static inline CMPIData
CMGetPropertyAt(const CMPIInstance* inst, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    return inst->ft->getPropertyAt(inst, index, name, rc);
}
static inline CMPICount CMGetPropertyCount(const CMPIInstance* inst, CMPIStatus* rc)
{
    return inst->ft->getPropertyCount(inst, rc);
}
static inline CMPIStatus
CMSetProperty(const CMPIInstance* inst, const char* name, const void* value, CMPIType type)
{
    return inst->ft->setProperty(inst, name, (const CMPIValue*)value, type);
}
static inline CMPIStatus
CMSetPropertyFilter(const CMPIInstance* inst, const char** properties, const char** keys)
{
    return inst->ft->setPropertyFilter(inst, properties, keys);
}
static inline CMPIObjectPath* CMGetObjectPath(const CMPIInstance* inst, CMPIStatus* rc)
{
    return inst->ft->getObjectPath(inst, rc);
}
static inline CMPIStatus CMSetObjectPath(const CMPIInstance* inst, const CMPIObjectPath* op)
{
    return inst->ft->setObjectPath(inst, op);
}

/* Object paths. */
static inline CMPIStatus
CMAddKey(const CMPIObjectPath* op, const char* name, const void* value, CMPIType type)
{
    return op->ft->addKey(op, name, (const CMPIValue*)value, type);
}
static inline CMPIData CMGetKey(const CMPIObjectPath* op, const char* name, CMPIStatus* rc)
{
    return op->ft->getKey(op, name, rc);
}
static inline CMPIData
CMGetKeyAt(const CMPIObjectPath* op, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    return op->ft->getKeyAt(op, index, name, rc);
}
static inline CMPICount CMGetKeyCount(const CMPIObjectPath* op, CMPIStatus* rc)
{
    return op->ft->getKeyCount(op, rc);
}
static inline CMPIString* CMGetNameSpace(const CMPIObjectPath* op, CMPIStatus* rc)
{
    return op->ft->getNameSpace(op, rc);
}
static inline CMPIStatus CMSetNameSpace(const CMPIObjectPath* op, const char* ns)
{
    return op->ft->setNameSpace(op, ns);
}
static inline CMPIString* CMGetClassName(const CMPIObjectPath* op, CMPIStatus* rc)
{
    return op->ft->getClassName(op, rc);
}
static inline CMPIStatus CMSetClassName(const CMPIObjectPath* op, const char* cn)
{
    return op->ft->setClassName(op, cn);
}

/* Method arguments. */
static inline CMPIStatus CMAddArg(const CMPIArgs* args, const char* name, const void* value, CMPIType type)
{
    return args->ft->addArg(args, name, (const CMPIValue*)value, type);
}
static inline CMPIData CMGetArg(const CMPIArgs* args, const char* name, CMPIStatus* rc)
{
    return args->ft->getArg(args, name, rc);
}
static inline CMPIData CMGetArgAt(const CMPIArgs* args, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    return args->ft->getArgAt(args, index, name, rc);
}
static inline CMPICount CMGetArgCount(const CMPIArgs* args, CMPIStatus* rc)
{
    return args->ft->getArgCount(args, rc);
}

/* Arrays, enumerations, strings, datetimes. */
static inline CMPICount CMGetArrayCount(const CMPIArray* array, CMPIStatus* rc)
{
    return array->ft->getSize(array, rc);
}
static inline CMPIType CMGetArrayType(const CMPIArray* array, CMPIStatus* rc)
{
    return array->ft->getSimpleType(array, rc);
}
static inline CMPIData CMGetArrayElementAt(const CMPIArray* array, CMPICount index, CMPIStatus* rc)
{
    return array->ft->getElementAt(array, index, rc);
}
static inline CMPIStatus
CMSetArrayElementAt(const CMPIArray* array, CMPICount index, const void* value, CMPIType type)
{
    return array->ft->setElementAt(array, index, (const CMPIValue*)value, type);
}
static inline CMPIBoolean CMHasNext(const CMPIEnumeration* en, CMPIStatus* rc)
{
    return en->ft->hasNext(en, rc);
}
static inline CMPIData CMGetNext(const CMPIEnumeration* en, CMPIStatus* rc)
{
    return en->ft->getNext(en, rc);
}
static inline const char* CMGetCharsPtr(const CMPIString* string, CMPIStatus* rc)
{
    return string->ft->getCharPtr(string, rc);
}
static inline CMPIUint64 CMGetBinaryFormat(const CMPIDateTime* dt, CMPIStatus* rc)
{
    return dt->ft->getBinaryFormat(dt, rc);
}
static inline CMPIString* CMGetStringFormat(const CMPIDateTime* dt, CMPIStatus* rc)
{
    return dt->ft->getStringFormat(dt, rc);
}
static inline CMPIBoolean CMIsInterval(const CMPIDateTime* dt, CMPIStatus* rc)
{
    return dt->ft->isInterval(dt, rc);
}

/* Results. */
static inline CMPIStatus CMReturnData(const CMPIResult* rslt, const void* value, CMPIType type)
{
    return rslt->ft->returnData(rslt, (const CMPIValue*)value, type);
}
static inline CMPIStatus CMReturnInstance(const CMPIResult* rslt, const CMPIInstance* inst)
{
    return rslt->ft->returnInstance(rslt, inst);
}
static inline CMPIStatus CMReturnObjectPath(const CMPIResult* rslt, const CMPIObjectPath* op)
{
    return rslt->ft->returnObjectPath(rslt, op);
}
static inline CMPIStatus CMReturnDone(const CMPIResult* rslt)
{
    return rslt->ft->returnDone(rslt);
}

/* Contexts. */
static inline CMPIData CMGetContextEntry(const CMPIContext* ctx, const char* name, CMPIStatus* rc)
{
    return ctx->ft->getEntry(ctx, name, rc);
}
static inline CMPIStatus
CMAddContextEntry(const CMPIContext* ctx, const char* name, const void* value, CMPIType type)
{
    return ctx->ft->addEntry(ctx, name, (const CMPIValue*)value, type);
}

#endif
