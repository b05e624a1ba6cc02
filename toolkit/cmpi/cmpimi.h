/* CMPI: function tables that a provider library supplies, version 2.0 layout. */
#ifndef CMPIMI_H
#define CMPIMI_H

#include "cmpidt.h"

/* cleanup runs alone; all other functions of an MI may run concurrently in several threads. Arguments
   live only during the call. */

/* Operations on instances. */
struct _CMPIInstanceMIFT
{
    CMPIVersion ftVersion; /* which members the MI supplies: 100 or 200 */
    int miVersion;         /* informal */
    const char* miName;    /* informal */
    CMPIStatus (*cleanup)(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating);
    CMPIStatus (*enumerateInstanceNames)(CMPIInstanceMI* mi,
                                         const CMPIContext* ctx,
                                         const CMPIResult* rslt,
                                         const CMPIObjectPath* classPath);
    CMPIStatus (*enumerateInstances)(CMPIInstanceMI* mi,
                                     const CMPIContext* ctx,
                                     const CMPIResult* rslt,
                                     const CMPIObjectPath* classPath,
                                     const char** properties);
    CMPIStatus (*getInstance)(CMPIInstanceMI* mi,
                              const CMPIContext* ctx,
                              const CMPIResult* rslt,
                              const CMPIObjectPath* instPath,
                              const char** properties);
    /* rslt takes exactly one path, that of the new instance. */
    CMPIStatus (*createInstance)(CMPIInstanceMI* mi,
                                 const CMPIContext* ctx,
                                 const CMPIResult* rslt,
                                 const CMPIObjectPath* classPath,
                                 const CMPIInstance* inst);
    CMPIStatus (*modifyInstance)(CMPIInstanceMI* mi,
                                 const CMPIContext* ctx,
                                 const CMPIResult* rslt,
                                 const CMPIObjectPath* instPath,
                                 const CMPIInstance* modInst,
                                 const char** properties);
    CMPIStatus (*deleteInstance)(CMPIInstanceMI* mi,
                                 const CMPIContext* ctx,
                                 const CMPIResult* rslt,
                                 const CMPIObjectPath* op);
    CMPIStatus (*execQuery)(CMPIInstanceMI* mi,
                            const CMPIContext* ctx,
                            const CMPIResult* rslt,
                            const CMPIObjectPath* classPath,
                            const char* query,
                            const char* lang);
};

/* Traversal of associations. A NULL filter argument does not restrict. */
struct _CMPIAssociationMIFT
{
    CMPIVersion ftVersion; /* which members the MI supplies: 100 or 200 */
    int miVersion;         /* informal */
    const char* miName;    /* informal */
    CMPIStatus (*cleanup)(CMPIAssociationMI* mi, const CMPIContext* ctx, CMPIBoolean terminating);
    CMPIStatus (*associators)(CMPIAssociationMI* mi,
                              const CMPIContext* ctx,
                              const CMPIResult* rslt,
                              const CMPIObjectPath* instPath,
                              const char* assocClass,
                              const char* resultClass,
                              const char* role,
                              const char* resultRole,
                              const char** properties);
    CMPIStatus (*associatorNames)(CMPIAssociationMI* mi,
                                  const CMPIContext* ctx,
                                  const CMPIResult* rslt,
                                  const CMPIObjectPath* instPath,
                                  const char* assocClass,
                                  const char* resultClass,
                                  const char* role,
                                  const char* resultRole);
    CMPIStatus (*references)(CMPIAssociationMI* mi,
                             const CMPIContext* ctx,
                             const CMPIResult* rslt,
                             const CMPIObjectPath* instPath,
                             const char* resultClass,
                             const char* role,
                             const char** properties);
    CMPIStatus (*referenceNames)(CMPIAssociationMI* mi,
                                 const CMPIContext* ctx,
                                 const CMPIResult* rslt,
                                 const CMPIObjectPath* instPath,
                                 const char* resultClass,
                                 const char* role);
};

/* Extrinsic methods. */
struct _CMPIMethodMIFT
{
    CMPIVersion ftVersion; /* which members the MI supplies: 100 or 200 */
    int miVersion;         /* informal */
    const char* miName;    /* informal */
    CMPIStatus (*cleanup)(CMPIMethodMI* mi, const CMPIContext* ctx, CMPIBoolean terminating);
    /* The return value goes to rslt, out parameters to out. objPath has no keys for a static method. */
    CMPIStatus (*invokeMethod)(CMPIMethodMI* mi,
                               const CMPIContext* ctx,
                               const CMPIResult* rslt,
                               const CMPIObjectPath* objPath,
                               const char* method,
                               const CMPIArgs* in,
                               CMPIArgs* out);
};

/* Single properties; few brokers drive it. */
struct _CMPIPropertyMIFT
{
    CMPIVersion ftVersion; /* which members the MI supplies: 100 or 200 */
    int miVersion;         /* informal */
    const char* miName;    /* informal */
    CMPIStatus (*cleanup)(CMPIPropertyMI* mi, const CMPIContext* ctx, CMPIBoolean terminating);
    /* data is passed by value. */
    CMPIStatus (*setProperty)(CMPIPropertyMI* mi,
                              const CMPIContext* ctx,
                              const CMPIResult* rslt,
                              const CMPIObjectPath* instPath,
                              const char* name,
                              CMPIData data);
    CMPIStatus (*getProperty)(CMPIPropertyMI* mi,
                              const CMPIContext* ctx,
                              const CMPIResult* rslt,
                              const CMPIObjectPath* instPath,
                              const char* name);
    CMPIStatus (*setPropertyWithOrigin)(CMPIPropertyMI* mi,
                                        const CMPIContext* ctx,
                                        const CMPIResult* rslt,
                                        CMPIObjectPath* instPath,
                                        const char* name,
                                        CMPIData data,
                                        const char* origin);
};

/* Life cycle of filters and delivery. */
struct _CMPIIndicationMIFT
{
    CMPIVersion ftVersion; /* which members the MI supplies: 100 or 200 */
    int miVersion;         /* informal */
    const char* miName;    /* informal */
    CMPIStatus (*cleanup)(CMPIIndicationMI* mi, const CMPIContext* ctx, CMPIBoolean terminating);
    CMPIStatus (*authorizeFilter)(CMPIIndicationMI* mi,
                                  const CMPIContext* ctx,
                                  const CMPISelectExp* filter,
                                  const char* className,
                                  const CMPIObjectPath* classPath,
                                  const char* owner);
    /* The argument list differs between editions: callers avoid it, implementations touch no argument. */
    CMPIStatus (*mustPoll)(CMPIIndicationMI* mi,
                           const CMPIContext* ctx,
                           const CMPISelectExp* filter,
                           const char* className,
                           const CMPIObjectPath* classPath);
    CMPIStatus (*activateFilter)(CMPIIndicationMI* mi,
                                 const CMPIContext* ctx,
                                 const CMPISelectExp* filter,
                                 const char* className,
                                 const CMPIObjectPath* classPath,
                                 CMPIBoolean firstActivation);
    CMPIStatus (*deActivateFilter)(CMPIIndicationMI* mi,
                                   const CMPIContext* ctx,
                                   const CMPISelectExp* filter,
                                   const char* className,
                                   const CMPIObjectPath* classPath,
                                   CMPIBoolean lastActivation);
    /* From here to disableIndications the broker takes indications. */
    CMPIStatus (*enableIndications)(CMPIIndicationMI* mi, const CMPIContext* ctx);
    CMPIStatus (*disableIndications)(CMPIIndicationMI* mi, const CMPIContext* ctx);
};

#endif
