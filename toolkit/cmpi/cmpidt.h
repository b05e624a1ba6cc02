/* CMPI: types, values, codes and objects shared by broker and provider, version 2.0 layout.

   The Common Manageability Programming Interface is the C interface between a CIM server (the broker, MB) and
   its provider libraries (management instrumentation, MI). Everything here is binary interface: order, sizes
   and numbers are fixed (see cmpiabi.h). Enumerations are 4 bytes; never compile with short enums. */
#ifndef CMPIDT_H
#define CMPIDT_H

#include "cmpipl.h"

#define CMPIVersion100 100
#define CMPIVersion200 200
#define CMPIVersion210 210

#define CMPI_VERSION CMPIVersion200
#define CMPI_VER_100 1
#define CMPI_VER_200 1

typedef unsigned char CMPIBoolean;
typedef unsigned short CMPIChar16; /* a UTF-16 code unit */
typedef unsigned char CMPIUint8;
typedef unsigned short CMPIUint16;
typedef unsigned int CMPIUint32;
typedef unsigned long long CMPIUint64;
typedef signed char CMPISint8;
typedef short CMPISint16;
typedef signed int CMPISint32;
typedef long long CMPISint64;
typedef float CMPIReal32;
typedef double CMPIReal64;

typedef unsigned int CMPICount;
typedef unsigned int CMPIFlags;
typedef int CMPIVersion;
typedef unsigned short CMPIType;
typedef unsigned short CMPIValueState;
typedef void* CMPIMsgFileHandle;
typedef void CMPIGcStat;

/* Every object is a pair of a private handle and its function table. */
#define CMPI_DECLARE_OBJECT(NAME)                                                                            \
    typedef struct _##NAME NAME;                                                                             \
    typedef struct _##NAME##FT NAME##FT;                                                                     \
    struct _##NAME                                                                                           \
    {                                                                                                        \
        const void* hdl;                                                                                     \
        const NAME##FT* ft;                                                                                  \
    }

CMPI_DECLARE_OBJECT(CMPIContext);
CMPI_DECLARE_OBJECT(CMPIResult);
CMPI_DECLARE_OBJECT(CMPIString);
CMPI_DECLARE_OBJECT(CMPIArray);
CMPI_DECLARE_OBJECT(CMPIEnumeration);
CMPI_DECLARE_OBJECT(CMPIInstance);
CMPI_DECLARE_OBJECT(CMPIObjectPath);
CMPI_DECLARE_OBJECT(CMPIArgs);
CMPI_DECLARE_OBJECT(CMPIDateTime);
CMPI_DECLARE_OBJECT(CMPISelectExp);
CMPI_DECLARE_OBJECT(CMPISelectCond);
CMPI_DECLARE_OBJECT(CMPISubCond);
CMPI_DECLARE_OBJECT(CMPIPredicate);
CMPI_DECLARE_OBJECT(CMPIError);

CMPI_DECLARE_OBJECT(CMPIInstanceMI);
CMPI_DECLARE_OBJECT(CMPIAssociationMI);
CMPI_DECLARE_OBJECT(CMPIMethodMI);
CMPI_DECLARE_OBJECT(CMPIPropertyMI);
CMPI_DECLARE_OBJECT(CMPIIndicationMI);

typedef struct _CMPIBrokerFT CMPIBrokerFT;
typedef struct _CMPIBrokerEncFT CMPIBrokerEncFT;
typedef struct _CMPIBrokerExtFT CMPIBrokerExtFT;
typedef struct _CMPIBrokerMemFT CMPIBrokerMemFT;

typedef struct _CMPIBroker
{
    const void* hdl;
    const CMPIBrokerFT* bft;
    const CMPIBrokerEncFT* eft;
    const CMPIBrokerExtFT* xft;
    const CMPIBrokerMemFT* mft; /* exists when bft->brokerVersion >= 200, and even then may be NULL */
} CMPIBroker;

/* A raw block, used in context entries only. */
typedef struct _CMPIValuePtr
{
    void* ptr;
    CMPICount length;
} CMPIValuePtr;

/* Read through the member that the type names, and through no other: the members overlap at the low
   address, so on a big-endian machine a narrow value sits in the high bytes of a wide one. The widest
   member stands first so that {0} clears all scalars. */
typedef union _CMPIValue
{
    CMPIUint64 uint64;
    CMPIUint32 uint32;
    CMPIUint16 uint16;
    CMPIUint8 uint8;
    CMPISint64 sint64;
    CMPISint32 sint32;
    CMPISint16 sint16;
    CMPISint8 sint8;
    CMPIReal64 real64;
    CMPIReal32 real32;
    CMPIBoolean boolean;
    CMPIChar16 char16;
    CMPIInstance* inst;
    CMPIObjectPath* ref;
    CMPIArgs* args;
    CMPISelectExp* filter;
    CMPIEnumeration* Enum;
    CMPIArray* array;
    CMPIString* string;
    char* chars;
    CMPIDateTime* dateTime;
    CMPIValuePtr dataPtr;
} CMPIValue;

/* value is undefined when state has the null or the bad bit, type is undefined when state has the bad
 * bit. */
typedef struct _CMPIData
{
    CMPIType type;
    CMPIValueState state;
    CMPIValue value;
} CMPIData;

typedef CMPIData CMPIAccessor(const char* propertyName, void* parm);
typedef CMPI_THREAD_RETURN(CMPI_THREAD_CDECL* CMPIThreadFunc)(void* parm);
typedef void (*CMPIThreadOnceFunc)(void);
typedef void (*CMPIThreadKeyCleanupFunc)(void* key);

/* Type codes. Do not decode with masks (CMPI_UINT is part of the signed codes too): compare the full code.
   A value argument of type CMPI_chars is the text itself cast to CMPIValue*; of any other type it is the
   address of the value, of which only the bytes of the typed member are defined. */
#define CMPI_null 0x0000
#define CMPI_boolean 0x0002
#define CMPI_char16 0x0003
#define CMPI_real32 0x0008
#define CMPI_real64 0x000C
#define CMPI_uint8 0x0080
#define CMPI_uint16 0x0090
#define CMPI_uint32 0x00A0
#define CMPI_uint64 0x00B0
#define CMPI_sint8 0x00C0
#define CMPI_sint16 0x00D0
#define CMPI_sint32 0x00E0
#define CMPI_sint64 0x00F0
#define CMPI_instance 0x1000
#define CMPI_ref 0x1100
#define CMPI_args 0x1200
#define CMPI_class 0x1300
#define CMPI_filter 0x1400
#define CMPI_enumeration 0x1500
#define CMPI_string 0x1600
#define CMPI_chars 0x1700
#define CMPI_dateTime 0x1800
#define CMPI_ptr 0x1900
#define CMPI_charsptr 0x1A00

#define CMPI_SIMPLE 0x0002
#define CMPI_REAL 0x0008
#define CMPI_UINT 0x0080
#define CMPI_SINT 0x00C0
#define CMPI_INTEGER 0x00C0
#define CMPI_ENC 0x1000
#define CMPI_ARRAY 0x2000

#define CMPI_booleanA (CMPI_ARRAY | CMPI_boolean)
#define CMPI_char16A (CMPI_ARRAY | CMPI_char16)
#define CMPI_real32A (CMPI_ARRAY | CMPI_real32)
#define CMPI_real64A (CMPI_ARRAY | CMPI_real64)
#define CMPI_uint8A (CMPI_ARRAY | CMPI_uint8)
#define CMPI_uint16A (CMPI_ARRAY | CMPI_uint16)
#define CMPI_uint32A (CMPI_ARRAY | CMPI_uint32)
#define CMPI_uint64A (CMPI_ARRAY | CMPI_uint64)
#define CMPI_sint8A (CMPI_ARRAY | CMPI_sint8)
#define CMPI_sint16A (CMPI_ARRAY | CMPI_sint16)
#define CMPI_sint32A (CMPI_ARRAY | CMPI_sint32)
#define CMPI_sint64A (CMPI_ARRAY | CMPI_sint64)
#define CMPI_instanceA (CMPI_ARRAY | CMPI_instance)
#define CMPI_refA (CMPI_ARRAY | CMPI_ref)
#define CMPI_stringA (CMPI_ARRAY | CMPI_string)
#define CMPI_charsA (CMPI_ARRAY | CMPI_chars)
#define CMPI_dateTimeA (CMPI_ARRAY | CMPI_dateTime)
#define CMPI_charsptrA (CMPI_ARRAY | CMPI_charsptr)

/* Types of keys whose precise type the client protocol did not tell. */
#define CMPI_keyInteger CMPI_sint64
#define CMPI_keyString CMPI_string
#define CMPI_keyBoolean CMPI_boolean
#define CMPI_keyRef CMPI_ref

/* Bits of CMPIValueState. */
#define CMPI_goodValue 0x0000
#define CMPI_nullValue 0x0100
#define CMPI_keyValue 0x0200
#define CMPI_notFound 0x0400
#define CMPI_badValue 0x8000

/* Status codes. 1 to 29 are the CIM status codes of DSP0200; 50 and above never reach a client. */
typedef enum _CMPIrc
{
    CMPI_RC_OK = 0,
    CMPI_RC_ERR_FAILED = 1,
    CMPI_RC_ERR_ACCESS_DENIED = 2,
    CMPI_RC_ERR_INVALID_NAMESPACE = 3,
    CMPI_RC_ERR_INVALID_PARAMETER = 4,
    CMPI_RC_ERR_INVALID_CLASS = 5,
    CMPI_RC_ERR_NOT_FOUND = 6,
    CMPI_RC_ERR_NOT_SUPPORTED = 7,
    CMPI_RC_ERR_CLASS_HAS_CHILDREN = 8,
    CMPI_RC_ERR_CLASS_HAS_INSTANCES = 9,
    CMPI_RC_ERR_INVALID_SUPERCLASS = 10,
    CMPI_RC_ERR_ALREADY_EXISTS = 11,
    CMPI_RC_ERR_NO_SUCH_PROPERTY = 12,
    CMPI_RC_ERR_TYPE_MISMATCH = 13,
    CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED = 14,
    CMPI_RC_ERR_INVALID_QUERY = 15,
    CMPI_RC_ERR_METHOD_NOT_AVAILABLE = 16,
    CMPI_RC_ERR_METHOD_NOT_FOUND = 17,
    CMPI_RC_NO_MORE_ELEMENTS = 18,
    CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED = 27,
    CMPI_RC_ERR_QUERY_FEATURE_NOT_SUPPORTED = 29,
    CMPI_RC_DO_NOT_UNLOAD = 50, /* only from cleanup: not now */
    CMPI_RC_NEVER_UNLOAD = 51,  /* only from cleanup: not before the server stops */
    CMPI_RC_ERR_INVALID_HANDLE = 60,
    CMPI_RC_ERR_INVALID_DATA_TYPE = 61,
    CMPI_RC_ERR_NOT_IN_CODEPAGE = 62,
    CMPI_RC_ERROR_SYSTEM = 100,
    CMPI_RC_ERROR = 200
} CMPIrc;

typedef struct _CMPIStatus
{
    CMPIrc rc;
    CMPIString* msg; /* may be NULL; belongs to the broker */
} CMPIStatus;

#define CMPI_FLAG_LocalOnly 1
#define CMPI_FLAG_DeepInheritance 2
#define CMPI_FLAG_IncludeQualifiers 4
#define CMPI_FLAG_IncludeClassOrigin 8

/* Names of context entries; the flags are a uint32, all others strings. */
#define CMPIInitNameSpace "CMPIInitNameSpace"
#define CMPIInvocationFlags "CMPIInvocationFlags"
#define CMPIPrincipal "CMPIPrincipal"
#define CMPIRole "CMPIRole"
#define CMPIAcceptLanguage "CMPIAcceptLanguage"
#define CMPIContentLanguage "CMPIContentLanguage"

/* Bits of brokerCapabilities; test with (capabilities & bits) == bits. */
#define CMPI_MB_BasicRead 0x00000001
#define CMPI_MB_BasicWrite 0x00000003
#define CMPI_MB_InstanceManipulation 0x00000007
#define CMPI_MB_AssociationTraversal 0x00000009
#define CMPI_MB_QueryExecution 0x00000011
#define CMPI_MB_QueryNormalization 0x00000031
#define CMPI_MB_BasicQualifierSupport 0x00000047
#define CMPI_MB_Indications 0x00000081
#define CMPI_MB_OSEncapsulationSupport 0x00000100
#define CMPI_MB_Supports_MemEnhancements 0x00004000
#define CMPI_MB_Supports_Extended_Error 0x00008000

typedef enum _CMPIPredOp
{
    CMPI_PredOp_Equals = 1,
    CMPI_PredOp_NotEquals = 2,
    CMPI_PredOp_LessThan = 3,
    CMPI_PredOp_GreaterThanOrEquals = 4,
    CMPI_PredOp_GreaterThan = 5,
    CMPI_PredOp_LessThanOrEquals = 6,
    CMPI_PredOp_Isa = 7,
    CMPI_PredOp_NotIsa = 8,
    CMPI_PredOp_Like = 9,
    CMPI_PredOp_NotLike = 10,
    CMPI_PredOp_Not_Null = 11,
    CMPI_PredOp_Null = 12,
    CMPI_PredOp_And = 13,
    CMPI_PredOp_Or = 14
} CMPIPredOp;

typedef enum _CMPISeverity
{
    CMPI_SEV_ERROR = 1,
    CMPI_SEV_INFO = 2,
    CMPI_SEV_WARNING = 3,
    CMPI_DEV_DEBUG = 4
} CMPISeverity;

typedef enum _CMPILevel
{
    CMPI_LEV_INFO = 1,
    CMPI_LEV_WARNING = 2,
    CMPI_LEV_VERBOSE = 3
} CMPILevel;

typedef enum _CMPISelectCondType
{
    CMPI_COND_DOC = 0,
    CMPI_COND_COD = 1
} CMPISelectCondType;

/* Attributes of an extended error; the numbers are those of the value maps of CIM_Error. */
typedef enum _CMPIErrorType
{
    UnknownErrorType = 0,
    OtherErrorType = 1,
    CommunicationsError = 2,
    QualityOfServiceError = 3,
    SoftwareError = 4,
    HardwareError = 5,
    EnvironmentalError = 6,
    SecurityError = 7,
    OversubscriptionError = 8,
    UnavailableResourceError = 9,
    UnsupportedOperationError = 10
} CMPIErrorType;

typedef enum _CMPIErrorSeverity
{
    ErrorSevUnknown = 0,
    ErrorSevLow = 2,
    ErrorSevMedium = 3,
    ErrorSevHigh = 4,
    ErrorSevFatal = 5
} CMPIErrorSeverity;

typedef enum _CMPIErrorSrcFormat
{
    CMPIErrSrcUnknown = 0,
    CMPIErrSrcOther = 1,
    CIMObjectHandle = 2
} CMPIErrorSrcFormat;

/* 0 to 130; only the ends of the range have names here. */
typedef enum _CMPIErrorProbableCause
{
    ErrorProbCauseUnknown = 0,
    ErrorProbCauseOther = 1,
    Unexpected_Information = 130
} CMPIErrorProbableCause;

#endif
