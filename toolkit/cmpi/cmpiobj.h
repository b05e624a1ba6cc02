/* CMPI: function tables of the encapsulated data types, version 2.0 layout. */
#ifndef CMPIOBJ_H
#define CMPIOBJ_H

#include "cmpidt.h"

/* Common to all tables: rc may be NULL and is otherwise always written; release is for what clone
   returned and for nothing else; what a getter returns belongs to the object or to the broker. New
   members are only ever appended, so the table of an older version is a prefix. */

/* Named values around a request: namespace, principal, flags, languages. */
struct _CMPIContextFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIContext* ctx);
    CMPIContext* (*clone)(const CMPIContext* ctx, CMPIStatus* rc);
    CMPIData (*getEntry)(const CMPIContext* ctx, const char* name, CMPIStatus* rc);
    CMPIData (*getEntryAt)(const CMPIContext* ctx, CMPICount index, CMPIString** name, CMPIStatus* rc);
    CMPICount (*getEntryCount)(const CMPIContext* ctx, CMPIStatus* rc);
    CMPIStatus (*addEntry)(const CMPIContext* ctx, const char* name, const CMPIValue* value, CMPIType type);
};

/* Where an MI function puts what it returns. */
struct _CMPIResultFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIResult* rslt);
    CMPIResult* (*clone)(const CMPIResult* rslt, CMPIStatus* rc);
    CMPIStatus (*returnData)(const CMPIResult* rslt, const CMPIValue* value, CMPIType type);
    CMPIStatus (*returnInstance)(const CMPIResult* rslt, const CMPIInstance* inst);
    CMPIStatus (*returnObjectPath)(const CMPIResult* rslt, const CMPIObjectPath* op);
    /* Exactly once, after the last item, when the function is going to return CMPI_RC_OK. */
    CMPIStatus (*returnDone)(const CMPIResult* rslt);
    /* Since 2.0, may be NULL. */
    CMPIStatus (*returnError)(const CMPIResult* rslt, const CMPIError* er);
};

/* Text. By convention hdl is the NUL-terminated text itself. */
struct _CMPIStringFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIString* str);
    CMPIString* (*clone)(const CMPIString* str, CMPIStatus* rc);
    /* UTF-8; lives as long as the string. */
    const char* (*getCharPtr)(const CMPIString* str, CMPIStatus* rc);
};

/* A sequence of values of one type; its length is fixed at creation. */
struct _CMPIArrayFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIArray* ar);
    CMPIArray* (*clone)(const CMPIArray* ar, CMPIStatus* rc);
    CMPICount (*getSize)(const CMPIArray* ar, CMPIStatus* rc);
    /* The element type without the array bit. */
    CMPIType (*getSimpleType)(const CMPIArray* ar, CMPIStatus* rc);
    CMPIData (*getElementAt)(const CMPIArray* ar, CMPICount index, CMPIStatus* rc);
    CMPIStatus (*setElementAt)(const CMPIArray* ar, CMPICount index, const CMPIValue* value, CMPIType type);
};

/* What an up-call returns; can be walked once. */
struct _CMPIEnumerationFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIEnumeration* en);
    CMPIEnumeration* (*clone)(const CMPIEnumeration* en, CMPIStatus* rc);
    CMPIData (*getNext)(const CMPIEnumeration* en, CMPIStatus* rc);
    CMPIBoolean (*hasNext)(const CMPIEnumeration* en, CMPIStatus* rc);
    CMPIArray* (*toArray)(const CMPIEnumeration* en, CMPIStatus* rc);
};

/* An instance: properties and a path. */
struct _CMPIInstanceFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIInstance* inst);
    CMPIInstance* (*clone)(const CMPIInstance* inst, CMPIStatus* rc);
    CMPIData (*getProperty)(const CMPIInstance* inst, const char* name, CMPIStatus* rc);
    CMPIData (*getPropertyAt)(const CMPIInstance* inst, CMPICount index, CMPIString** name, CMPIStatus* rc);
    CMPICount (*getPropertyCount)(const CMPIInstance* inst, CMPIStatus* rc);
    CMPIStatus (*setProperty)(const CMPIInstance* inst,
                              const char* name,
                              const CMPIValue* value,
                              CMPIType type);
    CMPIObjectPath* (*getObjectPath)(const CMPIInstance* inst, CMPIStatus* rc);
    /* From now on only the listed properties are kept; NULL lifts the restriction. */
    CMPIStatus (*setPropertyFilter)(const CMPIInstance* inst, const char** properties, const char** keyList);
    CMPIStatus (*setObjectPath)(const CMPIInstance* inst, const CMPIObjectPath* op);
    /* Since 2.0, may be NULL. */
    CMPIStatus (*setPropertyWithOrigin)(const CMPIInstance* inst,
                                        const char* name,
                                        const CMPIValue* value,
                                        CMPIType type,
                                        const char* origin);
};

/* Namespace, class and key bindings. */
struct _CMPIObjectPathFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIObjectPath* op);
    CMPIObjectPath* (*clone)(const CMPIObjectPath* op, CMPIStatus* rc);
    CMPIStatus (*setNameSpace)(const CMPIObjectPath* op, const char* ns);
    CMPIString* (*getNameSpace)(const CMPIObjectPath* op, CMPIStatus* rc);
    CMPIStatus (*setHostname)(const CMPIObjectPath* op, const char* hn);
    CMPIString* (*getHostname)(const CMPIObjectPath* op, CMPIStatus* rc);
    CMPIStatus (*setClassName)(const CMPIObjectPath* op, const char* cn);
    CMPIString* (*getClassName)(const CMPIObjectPath* op, CMPIStatus* rc);
    /* Adds or replaces; a key is never NULL. */
    CMPIStatus (*addKey)(const CMPIObjectPath* op, const char* key, const CMPIValue* value, CMPIType type);
    /* The type is precise or generic (sint64, string, boolean, ref), whatever the client protocol told.
     */
    CMPIData (*getKey)(const CMPIObjectPath* op, const char* key, CMPIStatus* rc);
    CMPIData (*getKeyAt)(const CMPIObjectPath* op, CMPICount index, CMPIString** name, CMPIStatus* rc);
    CMPICount (*getKeyCount)(const CMPIObjectPath* op, CMPIStatus* rc);
    CMPIStatus (*setNameSpaceFromObjectPath)(const CMPIObjectPath* op, const CMPIObjectPath* src);
    CMPIStatus (*setHostAndNameSpaceFromObjectPath)(const CMPIObjectPath* op, const CMPIObjectPath* src);
    /* Qualifier access is optional: brokers answer CMPI_RC_ERR_NOT_SUPPORTED or leave it NULL. */
    CMPIData (*getClassQualifier)(const CMPIObjectPath* op, const char* qName, CMPIStatus* rc);
    CMPIData (*getPropertyQualifier)(const CMPIObjectPath* op,
                                     const char* pName,
                                     const char* qName,
                                     CMPIStatus* rc);
    CMPIData (*getMethodQualifier)(const CMPIObjectPath* op,
                                   const char* methodName,
                                   const char* qName,
                                   CMPIStatus* rc);
    CMPIData (*getParameterQualifier)(
        const CMPIObjectPath* op, const char* mName, const char* pName, const char* qName, CMPIStatus* rc);
    CMPIString* (*toString)(const CMPIObjectPath* op, CMPIStatus* rc);
};

/* Parameters of a method by name. */
struct _CMPIArgsFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIArgs* args);
    CMPIArgs* (*clone)(const CMPIArgs* args, CMPIStatus* rc);
    CMPIStatus (*addArg)(const CMPIArgs* args, const char* name, const CMPIValue* value, CMPIType type);
    CMPIData (*getArg)(const CMPIArgs* args, const char* name, CMPIStatus* rc);
    CMPIData (*getArgAt)(const CMPIArgs* args, CMPICount index, CMPIString** name, CMPIStatus* rc);
    CMPICount (*getArgCount)(const CMPIArgs* args, CMPIStatus* rc);
};

/* A timestamp or an interval. */
struct _CMPIDateTimeFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIDateTime* dt);
    CMPIDateTime* (*clone)(const CMPIDateTime* dt, CMPIStatus* rc);
    CMPIUint64 (*getBinaryFormat)(const CMPIDateTime* dt, CMPIStatus* rc);
    CMPIString* (*getStringFormat)(const CMPIDateTime* dt, CMPIStatus* rc);
    CMPIBoolean (*isInterval)(const CMPIDateTime* dt, CMPIStatus* rc);
};

#endif
