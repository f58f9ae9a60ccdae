/*
 * cmpidt.h - CMPI 1.0 data types, type codes, status codes and flags.
 *
 * The names and numbers in this file are shared with every CMPI provider
 * ever compiled, including ones built against other vendors' copies of the
 * headers and loaded into our broker as binaries. Never renumber anything,
 * never reorder a structure; add new things only where the published
 * interface adds them.
 *
 * Usable from C89, C99, C11 and C++.
 */

#ifndef _CMPIDT_H_
#define _CMPIDT_H_

#include "cmpios.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------
 * Interface versions.
 *
 * A provider states the interface level it was written for by defining
 * CMPI_VERSION before including the headers; the stub macros in cmpimacs.h
 * store that level (CMPICurrentVersion) in the miVersion field of its
 * function tables, and the broker refuses providers asking for more than it
 * offers. Without CMPI_VERSION the level is 1.0, the newest these headers
 * describe.
 *
 * The CMPI_VER_<n> symbols are cumulative feature switches: a level defines
 * its own symbol and those of all older levels. Provider sources test them
 * with #ifdef, e.g. to use logMessage() only when CMPI_VER_100 is on.
 * Whatever level is chosen, the structures below always have their 1.0
 * layout: that is what our broker hands out.
 * ------------------------------------------------------------------------ */

#define CMPIVersion051 51
#define CMPIVersion060 60
#define CMPIVersion070 70
#define CMPIVersion080 80
#define CMPIVersion085 85
#define CMPIVersion086 86
#define CMPIVersion087 87
#define CMPIVersion090 90
#define CMPIVersion100 100
#define CMPIVersion200 200

#if defined(CMPI_VERSION)
#  if (CMPI_VERSION == 100)
#    ifndef CMPI_VER_100
#      define CMPI_VER_100 1
#    endif
#  elif (CMPI_VERSION == 90)
#    ifndef CMPI_VER_90
#      define CMPI_VER_90 1
#    endif
#  elif (CMPI_VERSION == 87)
#    ifndef CMPI_VER_87
#      define CMPI_VER_87 1
#    endif
#  elif (CMPI_VERSION == 86)
#    ifndef CMPI_VER_86
#      define CMPI_VER_86 1
#    endif
#  elif (CMPI_VERSION == 85)
#    ifndef CMPI_VER_85
#      define CMPI_VER_85 1
#    endif
#  elif (CMPI_VERSION == 80)
#    ifndef CMPI_VER_80
#      define CMPI_VER_80 1
#    endif
#  elif (CMPI_VERSION == 200)
#    error "CMPI_VERSION 200 requested, but these headers describe CMPI 1.0 (CMPI_VERSION 100) and older"
#  else
#    error "Unsupported CMPI_VERSION; use 80, 85, 86, 87, 90 or 100"
#  endif
#elif !defined(CMPI_VER_100) && !defined(CMPI_VER_90) && \
      !defined(CMPI_VER_87) && !defined(CMPI_VER_86) && \
      !defined(CMPI_VER_85) && !defined(CMPI_VER_80)
/* Nothing requested (CMPI_VER_ALL included): the newest level we have. */
#  define CMPI_VER_100 1
#endif

#ifdef CMPI_VER_200
#  error "CMPI_VER_200 requested, but these headers describe CMPI 1.0 and older"
#endif

#if defined(CMPI_VER_100)
#  ifndef CMPI_VER_90
#    define CMPI_VER_90 1
#  endif
#  define CMPICurrentVersion CMPIVersion100
#elif defined(CMPI_VER_90)
#  define CMPICurrentVersion CMPIVersion090
#elif defined(CMPI_VER_87)
#  define CMPICurrentVersion CMPIVersion087
#elif defined(CMPI_VER_86)
#  define CMPICurrentVersion CMPIVersion086
#elif defined(CMPI_VER_85)
#  define CMPICurrentVersion CMPIVersion085
#else
#  define CMPICurrentVersion CMPIVersion080
#endif

#if defined(CMPI_VER_90) && !defined(CMPI_VER_87)
#  define CMPI_VER_87 1
#endif
#if defined(CMPI_VER_87) && !defined(CMPI_VER_86)
#  define CMPI_VER_86 1
#endif
#if defined(CMPI_VER_86) && !defined(CMPI_VER_85)
#  define CMPI_VER_85 1
#endif
#if defined(CMPI_VER_85) && !defined(CMPI_VER_80)
#  define CMPI_VER_80 1
#endif

/* ------------------------------------------------------------------------
 * Member aliases.
 *
 * A few function-table slots are spelled differently in older and newer
 * provider sources (enumInstanceNames/enumerateInstanceNames and friends).
 * Both spellings name the same slot through an anonymous union of two
 * identical function pointers, so the layout is untouched.
 *
 * Anonymous unions are standard in C++ and C11. GCC and Clang accept them
 * in every C mode, and the __extension__ keyword keeps -pedantic quiet in
 * C89/C99. Any other C compiler before C11 gets only the first spelling
 * of each slot (the one the 1.0 headers use); so does everyone who defines
 * ZENTA_CMPI_NO_MEMBER_ALIASES.
 *
 * Positional initialisers of a table containing such a slot should put
 * braces around that slot's value, e.g. { ..., { MyEnumInstanceNames },
 * ... }, or C compilers warn under -Wall (-Wmissing-braces). The stub
 * macros in cmpimacs.h do this through ZENTA_CMPI_ALIAS_INIT().
 * ------------------------------------------------------------------------ */

#if !defined(ZENTA_CMPI_NO_MEMBER_ALIASES)
#  if defined(__GNUC__)
#    define ZENTA_CMPI_MEMBER_ALIASES 1
#    define ZENTA_CMPI_ALIAS_UNION __extension__ union
#  elif defined(__cplusplus) || \
        (defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L)
#    define ZENTA_CMPI_MEMBER_ALIASES 1
#    define ZENTA_CMPI_ALIAS_UNION union
#  endif
#endif

#ifdef ZENTA_CMPI_MEMBER_ALIASES
#  define ZENTA_CMPI_ALIAS_INIT(fn) { fn }
#else
#  define ZENTA_CMPI_ALIAS_INIT(fn) fn
#endif

/* Plain 64-bit integers predate C99; say so to GCC so that -std=c89
 * -pedantic builds of providers stay quiet. */
#if defined(__GNUC__)
#  define ZENTA_CMPI_EXTENSION __extension__
#else
#  define ZENTA_CMPI_EXTENSION
#endif

/* ------------------------------------------------------------------------
 * Opaque objects. Each is an {hdl, ft} pair: broker-private data and the
 * function table operating on it (defined in cmpift.h).
 * ------------------------------------------------------------------------ */

/** Element counts and indexes. */
typedef unsigned int CMPICount;

struct _CMPIBroker;
struct _CMPIInstance;
struct _CMPIObjectPath;
struct _CMPIArgs;
struct _CMPISelectExp;
struct _CMPISelectCond;
struct _CMPISubCond;
struct _CMPIPredicate;
struct _CMPIEnumeration;
struct _CMPIArray;
struct _CMPIString;
struct _CMPIResult;
struct _CMPIContext;
struct _CMPIDateTime;

typedef struct _CMPIBroker CMPIBroker;
typedef struct _CMPIInstance CMPIInstance;
typedef struct _CMPIObjectPath CMPIObjectPath;
typedef struct _CMPIArgs CMPIArgs;
typedef struct _CMPISelectExp CMPISelectExp;
typedef struct _CMPISelectCond CMPISelectCond;
typedef struct _CMPISubCond CMPISubCond;
typedef struct _CMPIPredicate CMPIPredicate;
typedef struct _CMPIEnumeration CMPIEnumeration;
typedef struct _CMPIArray CMPIArray;
typedef struct _CMPIString CMPIString;
typedef struct _CMPIResult CMPIResult;
typedef struct _CMPIContext CMPIContext;
typedef struct _CMPIDateTime CMPIDateTime;

struct _CMPIBrokerFT;
struct _CMPIBrokerEncFT;
struct _CMPIBrokerExtFT;
struct _CMPIInstanceFT;
struct _CMPIObjectPathFT;
struct _CMPIArgsFT;
struct _CMPISelectExpFT;
struct _CMPISelectCondFT;
struct _CMPISubCondFT;
struct _CMPIPredicateFT;
struct _CMPIEnumerationFT;
struct _CMPIArrayFT;
struct _CMPIStringFT;
struct _CMPIResultFT;
struct _CMPIContextFT;
struct _CMPIDateTimeFT;

typedef struct _CMPIBrokerFT CMPIBrokerFT;
typedef struct _CMPIBrokerEncFT CMPIBrokerEncFT;
typedef struct _CMPIBrokerExtFT CMPIBrokerExtFT;
typedef struct _CMPIInstanceFT CMPIInstanceFT;
typedef struct _CMPIObjectPathFT CMPIObjectPathFT;
typedef struct _CMPIArgsFT CMPIArgsFT;
typedef struct _CMPISelectExpFT CMPISelectExpFT;
typedef struct _CMPISelectCondFT CMPISelectCondFT;
typedef struct _CMPISubCondFT CMPISubCondFT;
typedef struct _CMPIPredicateFT CMPIPredicateFT;
typedef struct _CMPIEnumerationFT CMPIEnumerationFT;
typedef struct _CMPIArrayFT CMPIArrayFT;
typedef struct _CMPIStringFT CMPIStringFT;
typedef struct _CMPIResultFT CMPIResultFT;
typedef struct _CMPIContextFT CMPIContextFT;
typedef struct _CMPIDateTimeFT CMPIDateTimeFT;

/* ------------------------------------------------------------------------
 * Scalar types. Sizes are fixed by the interface, not by the platform:
 * 8/16/32/64-bit integers, IEEE single and double, 8-bit boolean and
 * UCS-2 char16.
 * ------------------------------------------------------------------------ */

typedef unsigned char CMPIBoolean;
typedef unsigned short CMPIChar16;
typedef unsigned char CMPIUint8;
typedef unsigned short CMPIUint16;
typedef unsigned int CMPIUint32;
typedef signed char CMPISint8;
typedef short CMPISint16;
typedef signed int CMPISint32;
#if defined(CMPI_PLATFORM_WIN32_IX86_MSVC)
typedef unsigned __int64 CMPIUint64;
typedef __int64 CMPISint64;
#else
ZENTA_CMPI_EXTENSION typedef unsigned long long CMPIUint64;
ZENTA_CMPI_EXTENSION typedef long long CMPISint64;
#endif
typedef float CMPIReal32;
typedef double CMPIReal64;

/** Raw, untyped memory (type CMPI_ptr), used for context entries only. */
typedef struct _CMPIValuePtr
{
    void *ptr;
    CMPICount length;
} CMPIValuePtr;

/**
 * A value of any CMPI type; which member is valid is said by the CMPIType
 * travelling with it. Because of dataPtr (pointer plus count) the union is
 * two pointers wide on LP64 platforms.
 */
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

    CMPIInstance *inst;
    CMPIObjectPath *ref;
    CMPIArgs *args;
    CMPISelectExp *filter;
    CMPIEnumeration *Enum;
    CMPIArray *array;
    CMPIString *string;
    char *chars;
    CMPIDateTime *dateTime;
    CMPIValuePtr dataPtr;

    /* Older spellings of the integer and real members. */
    CMPISint8 Byte;
    CMPISint16 Short;
    CMPISint32 Int;
    CMPISint64 Long;
    CMPIReal32 Float;
    CMPIReal64 Double;
} CMPIValue;

/* ------------------------------------------------------------------------
 * Type codes. The bit patterns carry meaning: 0x2000 marks arrays, the
 * 0x1000 block holds the encapsulated (object) types, and brokers test
 * families with masks such as CMPI_UINT / CMPI_SINT. Keep every value.
 * ------------------------------------------------------------------------ */

typedef unsigned short CMPIType;

#define CMPI_null         0

#define CMPI_SIMPLE       (2)
#define CMPI_boolean      (2+0)
#define CMPI_char16       (2+1)

#define CMPI_REAL         ((2)<<2)
#define CMPI_real32       ((2+0)<<2)
#define CMPI_real64       ((2+1)<<2)

#define CMPI_UINT         ((8)<<4)
#define CMPI_uint8        ((8+0)<<4)
#define CMPI_uint16       ((8+1)<<4)
#define CMPI_uint32       ((8+2)<<4)
#define CMPI_uint64       ((8+3)<<4)
#define CMPI_SINT         ((8+4)<<4)
#define CMPI_sint8        ((8+4)<<4)
#define CMPI_sint16       ((8+5)<<4)
#define CMPI_sint32       ((8+6)<<4)
#define CMPI_sint64       ((8+7)<<4)
#define CMPI_INTEGER      ((CMPI_UINT | CMPI_SINT))

#define CMPI_ENC          ((16)<<8)
#define CMPI_instance     ((16+0)<<8)
#define CMPI_ref          ((16+1)<<8)
#define CMPI_args         ((16+2)<<8)
#define CMPI_class        ((16+3)<<8)
#define CMPI_filter       ((16+4)<<8)
#define CMPI_enumeration  ((16+5)<<8)
#define CMPI_string       ((16+6)<<8)
#define CMPI_chars        ((16+7)<<8)
#define CMPI_dateTime     ((16+8)<<8)
#define CMPI_ptr          ((16+9)<<8)
#define CMPI_charsptr     ((16+10)<<8)

#define CMPI_ARRAY        ((1)<<13)
#define CMPI_SIMPLEA      (CMPI_ARRAY | CMPI_SIMPLE)
#define CMPI_booleanA     (CMPI_ARRAY | CMPI_boolean)
#define CMPI_char16A      (CMPI_ARRAY | CMPI_char16)

#define CMPI_REALA        (CMPI_ARRAY | CMPI_REAL)
#define CMPI_real32A      (CMPI_ARRAY | CMPI_real32)
#define CMPI_real64A      (CMPI_ARRAY | CMPI_real64)

#define CMPI_UINTA        (CMPI_ARRAY | CMPI_UINT)
#define CMPI_uint8A       (CMPI_ARRAY | CMPI_uint8)
#define CMPI_uint16A      (CMPI_ARRAY | CMPI_uint16)
#define CMPI_uint32A      (CMPI_ARRAY | CMPI_uint32)
#define CMPI_uint64A      (CMPI_ARRAY | CMPI_uint64)
#define CMPI_SINTA        (CMPI_ARRAY | CMPI_SINT)
#define CMPI_sint8A       (CMPI_ARRAY | CMPI_sint8)
#define CMPI_sint16A      (CMPI_ARRAY | CMPI_sint16)
#define CMPI_sint32A      (CMPI_ARRAY | CMPI_sint32)
#define CMPI_sint64A      (CMPI_ARRAY | CMPI_sint64)
#define CMPI_INTEGERA     (CMPI_ARRAY | CMPI_INTEGER)

#define CMPI_ENCA         (CMPI_ARRAY | CMPI_ENC)
#define CMPI_stringA      (CMPI_ARRAY | CMPI_string)
#define CMPI_charsA       (CMPI_ARRAY | CMPI_chars)
#define CMPI_dateTimeA    (CMPI_ARRAY | CMPI_dateTime)
#define CMPI_instanceA    (CMPI_ARRAY | CMPI_instance)
#define CMPI_refA         (CMPI_ARRAY | CMPI_ref)
#define CMPI_charsptrA    (CMPI_ARRAY | CMPI_charsptr)

/* Key types as reported for object path keys (state has CMPI_keyValue). */
#define CMPI_keyInteger   (CMPI_sint64)
#define CMPI_keyString    (CMPI_string)
#define CMPI_keyBoolean   (CMPI_boolean)
#define CMPI_keyRef       (CMPI_ref)

/* Operand types that occur only in query predicates. */
#define CMPI_charString      (CMPI_string)
#define CMPI_integerString   (CMPI_string | CMPI_sint64)
#define CMPI_realString      (CMPI_string | CMPI_real64)
#define CMPI_numericString   (CMPI_string | CMPI_sint64 | CMPI_real64)
#define CMPI_booleanString   (CMPI_string | CMPI_boolean)
#define CMPI_dateTimeString  (CMPI_string | CMPI_dateTime)
#define CMPI_classNameString (CMPI_string | CMPI_class)
#define CMPI_nameString      (CMPI_string | ((16+10)<<8))

/* Older spellings of the numeric types. */
#ifndef CMPI_NO_SYNONYM_SUPPORT
#  define CMPI_Byte    CMPI_sint8
#  define CMPI_Short   CMPI_sint16
#  define CMPI_Int     CMPI_sint32
#  define CMPI_Long    CMPI_sint64
#  define CMPI_Float   CMPI_real32
#  define CMPI_Double  CMPI_real64

#  define CMPI_ByteA   CMPI_sint8A
#  define CMPI_ShortA  CMPI_sint16A
#  define CMPI_IntA    CMPI_sint32A
#  define CMPI_LongA   CMPI_sint64A
#  define CMPI_FloatA  CMPI_real32A
#  define CMPI_DoubleA CMPI_real64A
#endif

/* ------------------------------------------------------------------------
 * Value state bits, kept in the upper byte so that they can share a word
 * with type information in older brokers.
 * ------------------------------------------------------------------------ */

typedef unsigned short CMPIValueState;

#define CMPI_goodValue (0)
#define CMPI_nullValue (1<<8)
#define CMPI_keyValue  (2<<8)
#define CMPI_notFound  (4<<8)
#define CMPI_badValue  (0x80<<8)

/**
 * What most accessors return: the type, the state and the value itself.
 * Returned by value through every function table, so its size is part of
 * the calling convention: 12 bytes on ILP32, 24 on LP64 (4 bytes of
 * type/state, padding to the union's alignment, then the union).
 */
typedef struct _CMPIData
{
    CMPIType type;
    CMPIValueState state;
    CMPIValue value;
} CMPIData;

/** Callback through which query evaluation fetches property values. */
typedef CMPIData CMPIAccessor(const char *, void *parm);

/* ------------------------------------------------------------------------
 * Invocation flags and well-known context entries.
 * ------------------------------------------------------------------------ */

/** Request options; providers read them from the CMPIInvocationFlags
 *  context entry (type CMPI_uint32). */
typedef unsigned int CMPIFlags;

#define CMPI_FLAG_LocalOnly          1
#define CMPI_FLAG_DeepInheritance    2
#define CMPI_FLAG_IncludeQualifiers  4
#define CMPI_FLAG_IncludeClassOrigin 8

/** Authenticated user id of the requester (CMPI_string). */
#define CMPIPrincipal       "CMPIPrincipal"
/** The request's CMPIFlags (CMPI_uint32). */
#define CMPIInvocationFlags "CMPIInvocationFlags"
/** Namespace the provider was loaded for (CMPI_string). */
#define CMPIInitNameSpace   "CMPIInitNameSpace"
/** Role assumed by the requester (CMPI_string). */
#define CMPIRole            "CMPIRole"
/** Accept-Language of the request (CMPI_string). */
#define CMPIAcceptLanguage  "CMPIAcceptLanguage"
/** Content-Language of the response (CMPI_string). */
#define CMPIContentLanguage "CMPIContentLanguage"

/* ------------------------------------------------------------------------
 * Return codes. 1..17 are the CIM status codes with the same numbers, so
 * they travel to the client unchanged.
 * ------------------------------------------------------------------------ */

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
    /* End of an enumeration; never sent to a client. */
    CMPI_RC_NO_MORE_ELEMENTS = 18,
    /* Only from cleanup(): keep the library loaded for now / for good. */
    CMPI_RC_DO_NOT_UNLOAD = 50,
    CMPI_RC_NEVER_UNLOAD = 51,
    /* Broker-internal errors. */
    CMPI_RC_ERR_INVALID_HANDLE = 60,
    CMPI_RC_ERR_INVALID_DATA_TYPE = 61,
    /* Errors of the hosting operating system. */
    CMPI_RC_ERROR_SYSTEM = 100,
    CMPI_RC_ERROR = 200
} CMPIrc;

/** Outcome of a call: a return code and an optional message. */
typedef struct _CMPIStatus
{
    CMPIrc rc;
    CMPIString *msg;
} CMPIStatus;

/* ------------------------------------------------------------------------
 * Broker capabilities, as found in CMPIBrokerFT.brokerCapabilities.
 * ------------------------------------------------------------------------ */

#define CMPI_MB_Class_0                     0x00000001
#define CMPI_MB_Class_1                     0x00000003
#define CMPI_MB_Class_2                     0x00000007

#define CMPI_MB_Supports_PropertyMI         0x00000100
#define CMPI_MB_Supports_IndicationMI       0x00000200
#define CMPI_MB_Supports_IndicationPolling  0x00000400
#define CMPI_MB_Supports_QueryNormalization 0x00000800
#define CMPI_MB_Supports_Qualifier          0x00001000
#define CMPI_MB_Supports_Schema             0x00003000

#define CMPI_MB_BasicRead                   0x00000001
#define CMPI_MB_BasicWrite                  0x00000003
#define CMPI_MB_InstanceManipulation        0x00000007
#define CMPI_MB_AssociationTraversal        0x00000009
#define CMPI_MB_QueryExecution              0x00000011
#define CMPI_MB_QueryNormalization          0x00000031
#define CMPI_MB_Indications                 0x00000081
#define CMPI_MB_BasicQualifierSupport       0x00000047
#define CMPI_MB_OSEncapsulationSupport      0x00000100

/* ------------------------------------------------------------------------
 * Query support and diagnostics.
 * ------------------------------------------------------------------------ */

/** Operators of a normalised query predicate. */
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
    CMPI_PredOp_NotLike = 10
} CMPIPredOp;

/** Severity for CMPIBrokerEncFT.logMessage(). CMPI_DEV_DEBUG (not "SEV")
 *  is the name every existing provider uses. */
typedef enum _CMPISeverity
{
    CMPI_SEV_ERROR = 1,
    CMPI_SEV_INFO = 2,
    CMPI_SEV_WARNING = 3,
    CMPI_DEV_DEBUG = 4
} CMPISeverity;

/** Detail level for CMPIBrokerEncFT.trace(). */
typedef enum _CMPILevel
{
    CMPI_LEV_INFO = 1,
    CMPI_LEV_WARNING = 2,
    CMPI_LEV_VERBOSE = 3
} CMPILevel;

/** Normal form of a CMPISelectCond: disjunction of conjunctions (DOC) or
 *  conjunction of disjunctions (COD). */
typedef enum _CMPISelectCondType
{
    CMPI_COND_DOC = 0,
    CMPI_COND_COD = 1
} CMPISelectCondType;

#ifdef __cplusplus
}
#endif

#endif /* _CMPIDT_H_ */
