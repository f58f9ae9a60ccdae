/*
 * cmpift.h - CMPI 1.0 function tables, the objects that carry them, and the
 * provider (MI) records a provider library hands to the broker.
 *
 * Every structure here is shared in binary form with provider libraries we
 * did not compile. Member order and member types ARE the interface: a
 * reordered slot calls the wrong function in somebody else's provider. The
 * layout is pinned by tests/cmpi_headers/layout_test.cpp.
 *
 * Conventions used throughout:
 *  - Every function table starts with an int ftVersion (the interface level
 *    the table implements), followed by pointers only.
 *  - A CMPIStatus *rc argument may be NULL when the caller is not interested.
 *  - Objects created by the broker's factories belong to the current
 *    invocation and are released by the broker when it returns, unless the
 *    provider clone()s them; clones must be release()d by the provider.
 *
 * Usable from C89, C99, C11 and C++.
 */

#ifndef _CMPIFT_H_
#define _CMPIFT_H_

#include "cmpidt.h"
#include "cmpios.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ========================================================================
 * Broker services
 * ======================================================================== */

/**
 * Factories for the encapsulated types, plus diagnostics. Reached through
 * CMPIBroker.eft.
 */
struct _CMPIBrokerEncFT
{
    int ftVersion;

    CMPIInstance *(*newInstance)(const CMPIBroker *mb,
                                 const CMPIObjectPath *op, CMPIStatus *rc);

    CMPIObjectPath *(*newObjectPath)(const CMPIBroker *mb, const char *ns,
                                     const char *cn, CMPIStatus *rc);

    CMPIArgs *(*newArgs)(const CMPIBroker *mb, CMPIStatus *rc);

    CMPIString *(*newString)(const CMPIBroker *mb, const char *data,
                             CMPIStatus *rc);

    /* max: initial number of elements; type: element type (no CMPI_ARRAY
     * bit). */
    CMPIArray *(*newArray)(const CMPIBroker *mb, CMPICount max,
                           CMPIType type, CMPIStatus *rc);

    /* Current time of day. */
    CMPIDateTime *(*newDateTime)(const CMPIBroker *mb, CMPIStatus *rc);

    /* binTime: microseconds since 1970-01-01 00:00 UTC, or the length of
     * the interval when interval is true. */
    CMPIDateTime *(*newDateTimeFromBinary)(const CMPIBroker *mb,
                                           CMPIUint64 binTime,
                                           CMPIBoolean interval,
                                           CMPIStatus *rc);

    /* utcTime: the 25-character CIM datetime string. */
#ifdef ZENTA_CMPI_MEMBER_ALIASES
    ZENTA_CMPI_ALIAS_UNION
    {
        CMPIDateTime *(*newDateTimeFromChars)(const CMPIBroker *mb,
                                              const char *utcTime,
                                              CMPIStatus *rc);
        CMPIDateTime *(*newDateTimeFromString)(const CMPIBroker *mb,
                                               const char *utcTime,
                                               CMPIStatus *rc);
    };
#else
    CMPIDateTime *(*newDateTimeFromChars)(const CMPIBroker *mb,
                                          const char *utcTime,
                                          CMPIStatus *rc);
#endif

    /* projection: receives the selected property names, may be NULL. */
    CMPISelectExp *(*newSelectExp)(const CMPIBroker *mb, const char *query,
                                   const char *lang, CMPIArray **projection,
                                   CMPIStatus *rc);

    /* Whether the class named by op is type or one of its subclasses. */
    CMPIBoolean (*classPathIsA)(const CMPIBroker *mb,
                                const CMPIObjectPath *op, const char *type,
                                CMPIStatus *rc);

    /* Debugging aids: a readable rendering of any CMPI object, a test of
     * its type by name ("CMPIInstance", ...) and that name. */
    CMPIString *(*toString)(const CMPIBroker *mb, const void *object,
                            CMPIStatus *rc);

    CMPIBoolean (*isOfType)(const CMPIBroker *mb, const void *object,
                            const char *type, CMPIStatus *rc);

    CMPIString *(*getType)(const CMPIBroker *mb, const void *object,
                           CMPIStatus *rc);

    /* Message lookup with substitution of $0..$9; the variable part is
     * count pairs of (CMPIType, value), see CMFmtArgs* in cmpimacs.h. */
    CMPIString *(*getMessage)(const CMPIBroker *mb, const char *msgId,
                              const char *defMsg, CMPIStatus *rc,
                              CMPICount count, ...);

    /* severity is a CMPISeverity, level a CMPILevel. text wins over string
     * when both are given. */
    CMPIStatus (*logMessage)(const CMPIBroker *mb, int severity,
                             const char *id, const char *text,
                             const CMPIString *string);

    CMPIStatus (*trace)(const CMPIBroker *mb, int level,
                        const char *component, const char *text,
                        const CMPIString *string);
};

/**
 * Up-calls into the CIM object manager: requests on other providers'
 * data, thread attachment and indication delivery. Reached through
 * CMPIBroker.bft.
 */
struct _CMPIBrokerFT
{
    /* CMPI_MB_* bits. */
    unsigned int brokerCapabilities;
    unsigned int brokerVersion;
    const char *brokerName;

    /* A thread the provider starts must get its own context from
     * prepareAttachThread() (called on the invoking thread), then attach
     * with it and detach before ending. */
    CMPIContext *(*prepareAttachThread)(const CMPIBroker *mb,
                                        const CMPIContext *ctx);

    CMPIStatus (*attachThread)(const CMPIBroker *mb, const CMPIContext *ctx);

    CMPIStatus (*detachThread)(const CMPIBroker *mb, const CMPIContext *ctx);

    CMPIStatus (*deliverIndication)(const CMPIBroker *mb,
                                    const CMPIContext *ctx, const char *ns,
                                    const CMPIInstance *ind);

#ifdef ZENTA_CMPI_MEMBER_ALIASES
    ZENTA_CMPI_ALIAS_UNION
    {
        CMPIEnumeration *(*enumerateInstanceNames)(const CMPIBroker *mb,
                                                   const CMPIContext *ctx,
                                                   const CMPIObjectPath *op,
                                                   CMPIStatus *rc);
        CMPIEnumeration *(*enumInstanceNames)(const CMPIBroker *mb,
                                              const CMPIContext *ctx,
                                              const CMPIObjectPath *op,
                                              CMPIStatus *rc);
    };
#else
    CMPIEnumeration *(*enumerateInstanceNames)(const CMPIBroker *mb,
                                               const CMPIContext *ctx,
                                               const CMPIObjectPath *op,
                                               CMPIStatus *rc);
#endif

    /* properties: NULL-terminated list of property names to return, or
     * NULL for all (here and below). */
    CMPIInstance *(*getInstance)(const CMPIBroker *mb, const CMPIContext *ctx,
                                 const CMPIObjectPath *op,
                                 const char **properties, CMPIStatus *rc);

    CMPIObjectPath *(*createInstance)(const CMPIBroker *mb,
                                      const CMPIContext *ctx,
                                      const CMPIObjectPath *op,
                                      const CMPIInstance *inst,
                                      CMPIStatus *rc);

    CMPIStatus (*modifyInstance)(const CMPIBroker *mb, const CMPIContext *ctx,
                                 const CMPIObjectPath *op,
                                 const CMPIInstance *inst,
                                 const char **properties);

    CMPIStatus (*deleteInstance)(const CMPIBroker *mb, const CMPIContext *ctx,
                                 const CMPIObjectPath *op);

    CMPIEnumeration *(*execQuery)(const CMPIBroker *mb, const CMPIContext *ctx,
                                  const CMPIObjectPath *op, const char *query,
                                  const char *lang, CMPIStatus *rc);

#ifdef ZENTA_CMPI_MEMBER_ALIASES
    ZENTA_CMPI_ALIAS_UNION
    {
        CMPIEnumeration *(*enumerateInstances)(const CMPIBroker *mb,
                                               const CMPIContext *ctx,
                                               const CMPIObjectPath *op,
                                               const char **properties,
                                               CMPIStatus *rc);
        CMPIEnumeration *(*enumInstances)(const CMPIBroker *mb,
                                          const CMPIContext *ctx,
                                          const CMPIObjectPath *op,
                                          const char **properties,
                                          CMPIStatus *rc);
    };
#else
    CMPIEnumeration *(*enumerateInstances)(const CMPIBroker *mb,
                                           const CMPIContext *ctx,
                                           const CMPIObjectPath *op,
                                           const char **properties,
                                           CMPIStatus *rc);
#endif

    CMPIEnumeration *(*associators)(const CMPIBroker *mb,
                                    const CMPIContext *ctx,
                                    const CMPIObjectPath *op,
                                    const char *assocClass,
                                    const char *resultClass, const char *role,
                                    const char *resultRole,
                                    const char **properties, CMPIStatus *rc);

    CMPIEnumeration *(*associatorNames)(const CMPIBroker *mb,
                                        const CMPIContext *ctx,
                                        const CMPIObjectPath *op,
                                        const char *assocClass,
                                        const char *resultClass,
                                        const char *role,
                                        const char *resultRole,
                                        CMPIStatus *rc);

    CMPIEnumeration *(*references)(const CMPIBroker *mb,
                                   const CMPIContext *ctx,
                                   const CMPIObjectPath *op,
                                   const char *resultClass, const char *role,
                                   const char **properties, CMPIStatus *rc);

    CMPIEnumeration *(*referenceNames)(const CMPIBroker *mb,
                                       const CMPIContext *ctx,
                                       const CMPIObjectPath *op,
                                       const char *resultClass,
                                       const char *role, CMPIStatus *rc);

    CMPIData (*invokeMethod)(const CMPIBroker *mb, const CMPIContext *ctx,
                             const CMPIObjectPath *op, const char *method,
                             const CMPIArgs *in, CMPIArgs *out,
                             CMPIStatus *rc);

    CMPIStatus (*setProperty)(const CMPIBroker *mb, const CMPIContext *ctx,
                              const CMPIObjectPath *op, const char *name,
                              const CMPIValue *value, CMPIType type);

    CMPIData (*getProperty)(const CMPIBroker *mb, const CMPIContext *ctx,
                            const CMPIObjectPath *op, const char *name,
                            CMPIStatus *rc);
};

/* Declared here so that the ExtFT prototypes do not depend on <time.h>. */
struct timespec;

/**
 * Operating-system encapsulation: threads, thread-local storage, mutexes
 * and condition variables with POSIX semantics, so that providers need no
 * platform code of their own. Reached through CMPIBroker.xft.
 */
struct _CMPIBrokerExtFT
{
    int ftVersion;

    /* Turns a generic library name into the platform's file name; the
     * result is malloc()ed and freed by the caller. */
    char *(*resolveFileName)(const char *filename);

    CMPI_THREAD_TYPE (*newThread)(
        CMPI_THREAD_RETURN (CMPI_THREAD_CDECL *start)(void *),
        void *parm, int detached);

    int (*joinThread)(CMPI_THREAD_TYPE thread, CMPI_THREAD_RETURN *retval);

    int (*exitThread)(CMPI_THREAD_RETURN return_code);

    int (*cancelThread)(CMPI_THREAD_TYPE thread);

    int (*threadSleep)(CMPIUint32 msec);

    int (*threadOnce)(int *once, void (*init)(void));

    int (*createThreadKey)(CMPI_THREAD_KEY_TYPE *key,
                           void (*cleanup)(void *));

    int (*destroyThreadKey)(CMPI_THREAD_KEY_TYPE key);

    void *(*getThreadSpecific)(CMPI_THREAD_KEY_TYPE key);

    int (*setThreadSpecific)(CMPI_THREAD_KEY_TYPE key, void *value);

    CMPI_MUTEX_TYPE (*newMutex)(int opt);

    void (*destroyMutex)(CMPI_MUTEX_TYPE mutex);

    void (*lockMutex)(CMPI_MUTEX_TYPE mutex);

    void (*unlockMutex)(CMPI_MUTEX_TYPE mutex);

    CMPI_COND_TYPE (*newCondition)(int opt);

    void (*destroyCondition)(CMPI_COND_TYPE cond);

    int (*condWait)(CMPI_COND_TYPE cond, CMPI_MUTEX_TYPE mutex);

    int (*timedCondWait)(CMPI_COND_TYPE cond, CMPI_MUTEX_TYPE mutex,
                         struct timespec *wait);

    int (*signalCondition)(CMPI_COND_TYPE cond);
};

/** The broker as seen by a provider. */
struct _CMPIBroker
{
    void *hdl;
    CMPIBrokerFT *bft;
    CMPIBrokerEncFT *eft;
    CMPIBrokerExtFT *xft;
};

/* ========================================================================
 * Encapsulated objects
 * ======================================================================== */

/** Invocation context: named entries such as CMPIInvocationFlags. */
struct _CMPIContext
{
    void *hdl;
    CMPIContextFT *ft;
};

struct _CMPIContextFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPIContext *ctx);

    CMPIContext *(*clone)(const CMPIContext *ctx, CMPIStatus *rc);

    CMPIData (*getEntry)(const CMPIContext *ctx, const char *name,
                         CMPIStatus *rc);

    /* name (may be NULL) receives the entry's name. */
    CMPIData (*getEntryAt)(const CMPIContext *ctx, CMPICount index,
                           CMPIString **name, CMPIStatus *rc);

    CMPICount (*getEntryCount)(const CMPIContext *ctx, CMPIStatus *rc);

    CMPIStatus (*addEntry)(const CMPIContext *ctx, const char *name,
                           const CMPIValue *value, const CMPIType type);
};

/** Where a provider delivers the results of a request. */
struct _CMPIResult
{
    void *hdl;
    CMPIResultFT *ft;
};

struct _CMPIResultFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPIResult *rslt);

    CMPIResult *(*clone)(const CMPIResult *rslt, CMPIStatus *rc);

    CMPIStatus (*returnData)(const CMPIResult *rslt, const CMPIValue *value,
                             const CMPIType type);

    CMPIStatus (*returnInstance)(const CMPIResult *rslt,
                                 const CMPIInstance *inst);

    CMPIStatus (*returnObjectPath)(const CMPIResult *rslt,
                                   const CMPIObjectPath *ref);

    CMPIStatus (*returnDone)(const CMPIResult *rslt);
};

struct _CMPIInstance
{
    void *hdl;
    CMPIInstanceFT *ft;
};

struct _CMPIInstanceFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPIInstance *inst);

    CMPIInstance *(*clone)(const CMPIInstance *inst, CMPIStatus *rc);

    CMPIData (*getProperty)(const CMPIInstance *inst, const char *name,
                            CMPIStatus *rc);

    CMPIData (*getPropertyAt)(const CMPIInstance *inst, CMPICount index,
                              CMPIString **name, CMPIStatus *rc);

    CMPICount (*getPropertyCount)(const CMPIInstance *inst, CMPIStatus *rc);

    CMPIStatus (*setProperty)(const CMPIInstance *inst, const char *name,
                              const CMPIValue *value, CMPIType type);

    /* Built from the instance's namespace, class name and key properties. */
    CMPIObjectPath *(*getObjectPath)(const CMPIInstance *inst,
                                     CMPIStatus *rc);

    /* Later setProperty() calls for names not in propertyList are ignored.
     * keys is unused and kept for older callers. */
    CMPIStatus (*setPropertyFilter)(CMPIInstance *inst,
                                    const char **propertyList,
                                    const char **keys);

    CMPIStatus (*setObjectPath)(CMPIInstance *inst, const CMPIObjectPath *op);
};

struct _CMPIObjectPath
{
    void *hdl;
    CMPIObjectPathFT *ft;
};

struct _CMPIObjectPathFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPIObjectPath *op);

    CMPIObjectPath *(*clone)(const CMPIObjectPath *op, CMPIStatus *rc);

    CMPIStatus (*setNameSpace)(CMPIObjectPath *op, const char *ns);

    CMPIString *(*getNameSpace)(const CMPIObjectPath *op, CMPIStatus *rc);

    CMPIStatus (*setHostname)(CMPIObjectPath *op, const char *hn);

    CMPIString *(*getHostname)(const CMPIObjectPath *op, CMPIStatus *rc);

    CMPIStatus (*setClassName)(CMPIObjectPath *op, const char *cn);

    CMPIString *(*getClassName)(const CMPIObjectPath *op, CMPIStatus *rc);

    CMPIStatus (*addKey)(CMPIObjectPath *op, const char *name,
                         const CMPIValue *value, const CMPIType type);

    CMPIData (*getKey)(const CMPIObjectPath *op, const char *name,
                       CMPIStatus *rc);

    CMPIData (*getKeyAt)(const CMPIObjectPath *op, CMPICount index,
                         CMPIString **name, CMPIStatus *rc);

    CMPICount (*getKeyCount)(const CMPIObjectPath *op, CMPIStatus *rc);

    /* Copies namespace and class name (and, for the second, host name)
     * from src. */
    CMPIStatus (*setNameSpaceFromObjectPath)(CMPIObjectPath *op,
                                             const CMPIObjectPath *src);

    CMPIStatus (*setHostAndNameSpaceFromObjectPath)(CMPIObjectPath *op,
                                                    const CMPIObjectPath *src);

    /* Qualifier access; brokers without qualifier support return
     * CMPI_RC_ERR_NOT_SUPPORTED. */
    CMPIData (*getClassQualifier)(const CMPIObjectPath *op,
                                  const char *qName, CMPIStatus *rc);

    CMPIData (*getPropertyQualifier)(const CMPIObjectPath *op,
                                     const char *pName, const char *qName,
                                     CMPIStatus *rc);

    CMPIData (*getMethodQualifier)(const CMPIObjectPath *op,
                                   const char *methodName, const char *qName,
                                   CMPIStatus *rc);

    CMPIData (*getParameterQualifier)(const CMPIObjectPath *op,
                                      const char *mName, const char *pName,
                                      const char *qName, CMPIStatus *rc);

    CMPIString *(*toString)(const CMPIObjectPath *op, CMPIStatus *rc);
};

/** A compiled query, as handed to indication providers. */
struct _CMPISelectExp
{
    void *hdl;
    CMPISelectExpFT *ft;
};

struct _CMPISelectExpFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPISelectExp *se);

    CMPISelectExp *(*clone)(const CMPISelectExp *se, CMPIStatus *rc);

    CMPIBoolean (*evaluate)(const CMPISelectExp *se, const CMPIInstance *inst,
                            CMPIStatus *rc);

    CMPIString *(*getString)(const CMPISelectExp *se, CMPIStatus *rc);

    CMPISelectCond *(*getDOC)(const CMPISelectExp *se, CMPIStatus *rc);

    CMPISelectCond *(*getCOD)(const CMPISelectExp *se, CMPIStatus *rc);

    /* Evaluation without an instance: property values are fetched through
     * accessor(name, parm). */
    CMPIBoolean (*evaluateUsingAccessor)(const CMPISelectExp *se,
                                         CMPIAccessor *accessor, void *parm,
                                         CMPIStatus *rc);
};

/** A query in normal form: a list of CMPISubCond. */
struct _CMPISelectCond
{
    void *hdl;
    CMPISelectCondFT *ft;
};

struct _CMPISelectCondFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPISelectCond *sc);

    CMPISelectCond *(*clone)(const CMPISelectCond *sc, CMPIStatus *rc);

    /* type (may be NULL) receives a CMPISelectCondType. */
    CMPICount (*getCountAndType)(const CMPISelectCond *sc, int *type,
                                 CMPIStatus *rc);

    CMPISubCond *(*getSubCondAt)(const CMPISelectCond *sc, CMPICount index,
                                 CMPIStatus *rc);
};

/** One term of a normalised query: a list of predicates. */
struct _CMPISubCond
{
    void *hdl;
    CMPISubCondFT *ft;
};

struct _CMPISubCondFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPISubCond *sc);

    CMPISubCond *(*clone)(const CMPISubCond *sc, CMPIStatus *rc);

    CMPICount (*getCount)(const CMPISubCond *sc, CMPIStatus *rc);

    CMPIPredicate *(*getPredicateAt)(const CMPISubCond *sc, CMPICount index,
                                     CMPIStatus *rc);

    CMPIPredicate *(*getPredicate)(const CMPISubCond *sc, const char *name,
                                   CMPIStatus *rc);
};

/** "lhs op rhs" with both sides as strings. */
struct _CMPIPredicate
{
    void *hdl;
    CMPIPredicateFT *ft;
};

struct _CMPIPredicateFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPIPredicate *pr);

    CMPIPredicate *(*clone)(const CMPIPredicate *pr, CMPIStatus *rc);

    CMPIStatus (*getData)(const CMPIPredicate *pr, CMPIType *type,
                          CMPIPredOp *op, CMPIString **lhs,
                          CMPIString **rhs);

    CMPIBoolean (*evaluateUsingAccessor)(const CMPIPredicate *pr,
                                         CMPIAccessor *accessorFnc,
                                         void *parm, CMPIStatus *rc);
};

/** Named method arguments (in or out). */
struct _CMPIArgs
{
    void *hdl;
    CMPIArgsFT *ft;
};

struct _CMPIArgsFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPIArgs *as);

    CMPIArgs *(*clone)(const CMPIArgs *as, CMPIStatus *rc);

    CMPIStatus (*addArg)(const CMPIArgs *as, const char *name,
                         const CMPIValue *value, const CMPIType type);

    CMPIData (*getArg)(const CMPIArgs *as, const char *name, CMPIStatus *rc);

    CMPIData (*getArgAt)(const CMPIArgs *as, CMPICount index,
                         CMPIString **name, CMPIStatus *rc);

    CMPICount (*getArgCount)(const CMPIArgs *as, CMPIStatus *rc);
};

/**
 * A string. Besides getCharPtr(), providers built with the traditional
 * CMGetCharPtr() macro read the characters straight from hdl, so a broker
 * must keep hdl pointing at the NUL-terminated text.
 */
struct _CMPIString
{
    void *hdl;
    CMPIStringFT *ft;
};

struct _CMPIStringFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPIString *st);

    CMPIString *(*clone)(const CMPIString *st, CMPIStatus *rc);

    const char *(*getCharPtr)(const CMPIString *st, CMPIStatus *rc);
};

struct _CMPIArray
{
    void *hdl;
    CMPIArrayFT *ft;
};

struct _CMPIArrayFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPIArray *ar);

    CMPIArray *(*clone)(const CMPIArray *ar, CMPIStatus *rc);

    CMPICount (*getSize)(const CMPIArray *ar, CMPIStatus *rc);

    /* Element type, without the CMPI_ARRAY bit. */
    CMPIType (*getSimpleType)(const CMPIArray *ar, CMPIStatus *rc);

    CMPIData (*getElementAt)(const CMPIArray *ar, CMPICount index,
                             CMPIStatus *rc);

    CMPIStatus (*setElementAt)(CMPIArray *ar, CMPICount index,
                               const CMPIValue *value, CMPIType type);
};

/** Results of an up-call, consumed with hasNext()/getNext(). */
struct _CMPIEnumeration
{
    void *hdl;
    CMPIEnumerationFT *ft;
};

struct _CMPIEnumerationFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPIEnumeration *en);

    CMPIEnumeration *(*clone)(const CMPIEnumeration *en, CMPIStatus *rc);

    CMPIData (*getNext)(const CMPIEnumeration *en, CMPIStatus *rc);

    CMPIBoolean (*hasNext)(const CMPIEnumeration *en, CMPIStatus *rc);

    CMPIArray *(*toArray)(const CMPIEnumeration *en, CMPIStatus *rc);
};

/** A point in time or an interval. */
struct _CMPIDateTime
{
    void *hdl;
    CMPIDateTimeFT *ft;
};

struct _CMPIDateTimeFT
{
    int ftVersion;

    CMPIStatus (*release)(CMPIDateTime *dt);

    CMPIDateTime *(*clone)(const CMPIDateTime *dt, CMPIStatus *rc);

    /* Microseconds since 1970-01-01 00:00 UTC, or the interval length. */
    CMPIUint64 (*getBinaryFormat)(const CMPIDateTime *dt, CMPIStatus *rc);

    /* The 25-character CIM datetime string. */
    CMPIString *(*getStringFormat)(const CMPIDateTime *dt, CMPIStatus *rc);

    CMPIBoolean (*isInterval)(const CMPIDateTime *dt, CMPIStatus *rc);
};

/* ========================================================================
 * Provider (MI) records
 *
 * A provider library exports <name>_Create_<kind>MI() factories returning
 * one of these records; the broker calls through its table. Each table
 * starts with ftVersion and miVersion (both normally CMPICurrentVersion)
 * and the provider's name, followed by cleanup(). cleanup() may answer
 * CMPI_RC_DO_NOT_UNLOAD or CMPI_RC_NEVER_UNLOAD unless terminating is true.
 *
 * Request functions report their results through rslt and return the
 * status of the request as a whole.
 * ======================================================================== */

typedef struct _CMPIInstanceMIFT CMPIInstanceMIFT;

typedef struct _CMPIInstanceMI
{
    void *hdl;
    CMPIInstanceMIFT *ft;
} CMPIInstanceMI;

struct _CMPIInstanceMIFT
{
    int ftVersion;
    int miVersion;
    const char *miName;

    CMPIStatus (*cleanup)(CMPIInstanceMI *mi, const CMPIContext *ctx,
                          CMPIBoolean terminating);

#ifdef ZENTA_CMPI_MEMBER_ALIASES
    ZENTA_CMPI_ALIAS_UNION
    {
        CMPIStatus (*enumerateInstanceNames)(CMPIInstanceMI *mi,
                                             const CMPIContext *ctx,
                                             const CMPIResult *rslt,
                                             const CMPIObjectPath *op);
        CMPIStatus (*enumInstanceNames)(CMPIInstanceMI *mi,
                                        const CMPIContext *ctx,
                                        const CMPIResult *rslt,
                                        const CMPIObjectPath *op);
    };
#else
    CMPIStatus (*enumerateInstanceNames)(CMPIInstanceMI *mi,
                                         const CMPIContext *ctx,
                                         const CMPIResult *rslt,
                                         const CMPIObjectPath *op);
#endif

#ifdef ZENTA_CMPI_MEMBER_ALIASES
    ZENTA_CMPI_ALIAS_UNION
    {
        CMPIStatus (*enumerateInstances)(CMPIInstanceMI *mi,
                                         const CMPIContext *ctx,
                                         const CMPIResult *rslt,
                                         const CMPIObjectPath *op,
                                         const char **properties);
        CMPIStatus (*enumInstances)(CMPIInstanceMI *mi,
                                    const CMPIContext *ctx,
                                    const CMPIResult *rslt,
                                    const CMPIObjectPath *op,
                                    const char **properties);
    };
#else
    CMPIStatus (*enumerateInstances)(CMPIInstanceMI *mi,
                                     const CMPIContext *ctx,
                                     const CMPIResult *rslt,
                                     const CMPIObjectPath *op,
                                     const char **properties);
#endif

    CMPIStatus (*getInstance)(CMPIInstanceMI *mi, const CMPIContext *ctx,
                              const CMPIResult *rslt,
                              const CMPIObjectPath *op,
                              const char **properties);

    /* The new instance's path goes back through rslt. */
    CMPIStatus (*createInstance)(CMPIInstanceMI *mi, const CMPIContext *ctx,
                                 const CMPIResult *rslt,
                                 const CMPIObjectPath *op,
                                 const CMPIInstance *inst);

    /* properties: the ones to replace, NULL for all. */
    CMPIStatus (*modifyInstance)(CMPIInstanceMI *mi, const CMPIContext *ctx,
                                 const CMPIResult *rslt,
                                 const CMPIObjectPath *op,
                                 const CMPIInstance *inst,
                                 const char **properties);

    CMPIStatus (*deleteInstance)(CMPIInstanceMI *mi, const CMPIContext *ctx,
                                 const CMPIResult *rslt,
                                 const CMPIObjectPath *op);

    CMPIStatus (*execQuery)(CMPIInstanceMI *mi, const CMPIContext *ctx,
                            const CMPIResult *rslt, const CMPIObjectPath *op,
                            const char *query, const char *lang);
};

typedef struct _CMPIAssociationMIFT CMPIAssociationMIFT;

typedef struct _CMPIAssociationMI
{
    void *hdl;
    CMPIAssociationMIFT *ft;
} CMPIAssociationMI;

struct _CMPIAssociationMIFT
{
    int ftVersion;
    int miVersion;
    const char *miName;

    CMPIStatus (*cleanup)(CMPIAssociationMI *mi, const CMPIContext *ctx,
                          CMPIBoolean terminating);

    CMPIStatus (*associators)(CMPIAssociationMI *mi, const CMPIContext *ctx,
                              const CMPIResult *rslt,
                              const CMPIObjectPath *op,
                              const char *assocClass,
                              const char *resultClass, const char *role,
                              const char *resultRole,
                              const char **properties);

    CMPIStatus (*associatorNames)(CMPIAssociationMI *mi,
                                  const CMPIContext *ctx,
                                  const CMPIResult *rslt,
                                  const CMPIObjectPath *op,
                                  const char *assocClass,
                                  const char *resultClass, const char *role,
                                  const char *resultRole);

    CMPIStatus (*references)(CMPIAssociationMI *mi, const CMPIContext *ctx,
                             const CMPIResult *rslt, const CMPIObjectPath *op,
                             const char *resultClass, const char *role,
                             const char **properties);

    CMPIStatus (*referenceNames)(CMPIAssociationMI *mi,
                                 const CMPIContext *ctx,
                                 const CMPIResult *rslt,
                                 const CMPIObjectPath *op,
                                 const char *resultClass, const char *role);
};

typedef struct _CMPIMethodMIFT CMPIMethodMIFT;

typedef struct _CMPIMethodMI
{
    void *hdl;
    CMPIMethodMIFT *ft;
} CMPIMethodMI;

struct _CMPIMethodMIFT
{
    int ftVersion;
    int miVersion;
    const char *miName;

    CMPIStatus (*cleanup)(CMPIMethodMI *mi, const CMPIContext *ctx,
                          CMPIBoolean terminating);

    /* The method's return value goes back through rslt, output parameters
     * into out. */
    CMPIStatus (*invokeMethod)(CMPIMethodMI *mi, const CMPIContext *ctx,
                               const CMPIResult *rslt,
                               const CMPIObjectPath *op, const char *method,
                               const CMPIArgs *in, CMPIArgs *out);
};

typedef struct _CMPIPropertyMIFT CMPIPropertyMIFT;

typedef struct _CMPIPropertyMI
{
    void *hdl;
    CMPIPropertyMIFT *ft;
} CMPIPropertyMI;

struct _CMPIPropertyMIFT
{
    int ftVersion;
    int miVersion;
    const char *miName;

    CMPIStatus (*cleanup)(CMPIPropertyMI *mi, const CMPIContext *ctx,
                          CMPIBoolean terminating);

    CMPIStatus (*setProperty)(CMPIPropertyMI *mi, const CMPIContext *ctx,
                              const CMPIResult *rslt,
                              const CMPIObjectPath *op, const char *name,
                              const CMPIData data);

    CMPIStatus (*getProperty)(CMPIPropertyMI *mi, const CMPIContext *ctx,
                              const CMPIResult *rslt,
                              const CMPIObjectPath *op, const char *name);
};

typedef struct _CMPIIndicationMIFT CMPIIndicationMIFT;

typedef struct _CMPIIndicationMI
{
    void *hdl;
    CMPIIndicationMIFT *ft;
} CMPIIndicationMI;

struct _CMPIIndicationMIFT
{
    int ftVersion;
    int miVersion;
    const char *miName;

    CMPIStatus (*cleanup)(CMPIIndicationMI *mi, const CMPIContext *ctx,
                          CMPIBoolean terminating);

    /* className: the class in the filter's FROM clause; op / classPath:
     * its path (only the namespace for process indications); owner: the
     * subscription's destination owner. */
    CMPIStatus (*authorizeFilter)(CMPIIndicationMI *mi,
                                  const CMPIContext *ctx,
                                  const CMPISelectExp *filter,
                                  const char *className,
                                  const CMPIObjectPath *op,
                                  const char *owner);

    /* CMPI_RC_OK asks the broker to poll by enumerating instances. */
    CMPIStatus (*mustPoll)(CMPIIndicationMI *mi, const CMPIContext *ctx,
                           const CMPISelectExp *filter,
                           const char *className,
                           const CMPIObjectPath *classPath);

    CMPIStatus (*activateFilter)(CMPIIndicationMI *mi, const CMPIContext *ctx,
                                 const CMPISelectExp *filter,
                                 const char *className,
                                 const CMPIObjectPath *classPath,
                                 CMPIBoolean firstActivation);

    CMPIStatus (*deActivateFilter)(CMPIIndicationMI *mi,
                                   const CMPIContext *ctx,
                                   const CMPISelectExp *filter,
                                   const char *className,
                                   const CMPIObjectPath *classPath,
                                   CMPIBoolean lastActivation);

    /* The broker is (no longer) ready to accept indications from this
     * provider. */
    CMPIStatus (*enableIndications)(CMPIIndicationMI *mi,
                                    const CMPIContext *ctx);

    CMPIStatus (*disableIndications)(CMPIIndicationMI *mi,
                                     const CMPIContext *ctx);
};

#ifdef __cplusplus
}
#endif

#include "cmpimacs.h"

#endif /* _CMPIFT_H_ */
