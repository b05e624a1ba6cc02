/* CMPI: function tables of queries and extended errors, version 2.0 layout. */
#ifndef CMPIQUERY_H
#define CMPIQUERY_H

#include "cmpidt.h"

/* A parsed query. */
struct _CMPISelectExpFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPISelectExp* se);
    CMPISelectExp* (*clone)(const CMPISelectExp* se, CMPIStatus* rc);
    CMPIBoolean (*evaluate)(const CMPISelectExp* se, const CMPIInstance* inst, CMPIStatus* rc);
    CMPIString* (*getString)(const CMPISelectExp* se, CMPIStatus* rc);
    /* WHERE as OR of ANDs, and as AND of ORs. */
    CMPISelectCond* (*getDOC)(const CMPISelectExp* se, CMPIStatus* rc);
    CMPISelectCond* (*getCOD)(const CMPISelectExp* se, CMPIStatus* rc);
    CMPIBoolean (*evaluateUsingAccessor)(const CMPISelectExp* se,
                                         CMPIAccessor* accessor,
                                         void* parm,
                                         CMPIStatus* rc);
};

/* The WHERE clause in a normal form. */
struct _CMPISelectCondFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPISelectCond* sc);
    CMPISelectCond* (*clone)(const CMPISelectCond* sc, CMPIStatus* rc);
    /* *type becomes 0 for a disjunction of conjunctions, 1 for the opposite; type may be NULL. */
    CMPICount (*getCountAndType)(const CMPISelectCond* sc, int* type, CMPIStatus* rc);
    CMPISubCond* (*getSubCondAt)(const CMPISelectCond* sc, CMPICount index, CMPIStatus* rc);
};

/* One term of a condition. */
struct _CMPISubCondFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPISubCond* sc);
    CMPISubCond* (*clone)(const CMPISubCond* sc, CMPIStatus* rc);
    CMPICount (*getCount)(const CMPISubCond* sc, CMPIStatus* rc);
    CMPIPredicate* (*getPredicateAt)(const CMPISubCond* sc, CMPICount index, CMPIStatus* rc);
    CMPIPredicate* (*getPredicate)(const CMPISubCond* sc, const char* name, CMPIStatus* rc);
};

/* One comparison. */
struct _CMPIPredicateFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIPredicate* pr);
    CMPIPredicate* (*clone)(const CMPIPredicate* pr, CMPIStatus* rc);
    CMPIStatus (*getData)(
        const CMPIPredicate* pr, CMPIType* type, CMPIPredOp* prop, CMPIString** lhs, CMPIString** rhs);
    CMPIBoolean (*evaluateUsingAccessor)(const CMPIPredicate* pr,
                                         CMPIAccessor* accessorFnc,
                                         void* parm,
                                         CMPIStatus* rc);
};

/* An extended error, since 2.0. A NULL string or array given to a setter clears the attribute. */
struct _CMPIErrorFT
{
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIError* er);
    CMPIError* (*clone)(const CMPIError* er, CMPIStatus* rc);
    CMPIErrorType (*getErrorType)(const CMPIError* er, CMPIStatus* rc);
    CMPIString* (*getOtherErrorType)(const CMPIError* er, CMPIStatus* rc);
    CMPIString* (*getOwningEntity)(const CMPIError* er, CMPIStatus* rc);
    CMPIString* (*getMessageID)(const CMPIError* er, CMPIStatus* rc);
    CMPIString* (*getMessage)(const CMPIError* er, CMPIStatus* rc);
    CMPIErrorSeverity (*getPerceivedSeverity)(const CMPIError* er, CMPIStatus* rc);
    CMPIErrorProbableCause (*getProbableCause)(const CMPIError* er, CMPIStatus* rc);
    CMPIString* (*getProbableCauseDescription)(const CMPIError* er, CMPIStatus* rc);
    CMPIArray* (*getRecommendedActions)(const CMPIError* er, CMPIStatus* rc);
    CMPIString* (*getErrorSource)(const CMPIError* er, CMPIStatus* rc);
    CMPIErrorSrcFormat (*getErrorSourceFormat)(const CMPIError* er, CMPIStatus* rc);
    CMPIString* (*getOtherErrorSourceFormat)(const CMPIError* er, CMPIStatus* rc);
    CMPIrc (*getCIMStatusCode)(const CMPIError* er, CMPIStatus* rc);
    CMPIString* (*getCIMStatusCodeDescription)(const CMPIError* er, CMPIStatus* rc);
    CMPIArray* (*getMessageArguments)(const CMPIError* er, CMPIStatus* rc);
    CMPIStatus (*setErrorType)(const CMPIError* er, CMPIErrorType et);
    CMPIStatus (*setOtherErrorType)(const CMPIError* er, const char* ot);
    CMPIStatus (*setProbableCauseDescription)(const CMPIError* er, const char* pcd);
    CMPIStatus (*setRecommendedActions)(const CMPIError* er, const CMPIArray* ra);
    CMPIStatus (*setErrorSource)(const CMPIError* er, const char* es);
    CMPIStatus (*setErrorSourceFormat)(const CMPIError* er, CMPIErrorSrcFormat esf);
    CMPIStatus (*setOtherErrorSourceFormat)(const CMPIError* er, const char* oef);
    CMPIStatus (*setCIMStatusCodeDescription)(const CMPIError* er, const char* scd);
    CMPIStatus (*setMessageArguments)(const CMPIError* er, const CMPIArray* values);
};

#endif
