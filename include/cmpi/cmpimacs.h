/*
 * cmpimacs.h - the customary CMPI 1.0 convenience macros.
 *
 * Nearly every existing provider is written in terms of these macros rather
 * than the raw function tables, so their names, argument order and
 * behaviour follow the ones providers were written against. Only macros are
 * provided; CMPI_INLINE (which selects inline functions in some other copies
 * of these headers) is accepted and ignored.
 *
 * Conventions:
 *   CM...  operations on encapsulated objects and the factories in
 *          CMPIBrokerEncFT;
 *   CB...  up-calls through CMPIBrokerFT;
 *   CD...  debugging helpers.
 * Arguments named rc are CMPIStatus pointers and may be NULL.
 *
 * Usable from C89, C99, C11 and C++.
 */

#ifndef _CMPIMACS_H_
#define _CMPIMACS_H_

#include "cmpidt.h"
#include "cmpift.h"

/* ------------------------------------------------------------------------
 * Returning from provider functions.
 *
 * The CMReturn* macros expand to a braced block ending in a return
 * statement, which is how providers have always used them
 * ("CMReturn(CMPI_RC_OK);" as a statement). The status is filled in by
 * assignment so that a runtime rc is fine even for C89 compilers.
 * ------------------------------------------------------------------------ */

#define CMReturn(rcv) \
    { \
        CMPIStatus cmpiStatus_; \
        cmpiStatus_.rc = (CMPIrc)(rcv); \
        cmpiStatus_.msg = NULL; \
        return cmpiStatus_; \
    }

#define CMReturnWithString(rcv, str) \
    { \
        CMPIStatus cmpiStatus_; \
        cmpiStatus_.rc = (CMPIrc)(rcv); \
        cmpiStatus_.msg = (CMPIString *)(str); \
        return cmpiStatus_; \
    }

#define CMReturnWithChars(b, rcv, chars) \
    { \
        CMPIStatus cmpiStatus_; \
        cmpiStatus_.rc = (CMPIrc)(rcv); \
        cmpiStatus_.msg = (b)->eft->newString((b), (chars), NULL); \
        return cmpiStatus_; \
    }

/* Filling in a CMPIStatus the caller passed in (st must not be NULL). */
#define CMSetStatus(st, rcp) \
    { (st)->rc = (CMPIrc)(rcp); (st)->msg = NULL; }

#define CMSetStatusWithString(st, rcp, string) \
    { (st)->rc = (CMPIrc)(rcp); (st)->msg = (CMPIString *)(string); }

#define CMSetStatusWithChars(mb, st, rcp, chars) \
    { \
        (st)->rc = (CMPIrc)(rcp); \
        (st)->msg = (mb)->eft->newString((mb), (chars), NULL); \
    }

/* ------------------------------------------------------------------------
 * Tests on objects and values.
 * ------------------------------------------------------------------------ */

/* True for a NULL object and for an object whose hdl is NULL. */
#define CMIsNullObject(o)  ((o) == NULL || *((void **)(o)) == NULL)

#define CMIsNullValue(v)   (((v).state) & CMPI_nullValue)
#define CMIsKeyValue(v)    (((v).state) & CMPI_keyValue)
#define CMIsArray(v)       (((v).type) & CMPI_ARRAY)

/* Life cycle of any encapsulated object. */
#define CMClone(o, rc)     ((o)->ft->clone((o), (rc)))
#define CMRelease(o)       ((o)->ft->release((o)))

/* ------------------------------------------------------------------------
 * Factories (CMPIBrokerEncFT).
 * ------------------------------------------------------------------------ */

#define CMNewInstance(b, c, rc)     ((b)->eft->newInstance((b), (c), (rc)))

#define CMNewObjectPath(b, n, c, rc) \
    ((b)->eft->newObjectPath((b), (n), (c), (rc)))

#define CMNewString(b, s, rc)       ((b)->eft->newString((b), (s), (rc)))

#define CMNewArgs(b, rc)            ((b)->eft->newArgs((b), (rc)))

#define CMNewArray(b, c, t, rc)     ((b)->eft->newArray((b), (c), (t), (rc)))

#define CMNewDateTime(b, rc)        ((b)->eft->newDateTime((b), (rc)))

#define CMNewDateTimeFromBinary(b, d, i, rc) \
    ((b)->eft->newDateTimeFromBinary((b), (d), (i), (rc)))

#define CMNewDateTimeFromChars(b, d, rc) \
    ((b)->eft->newDateTimeFromChars((b), (d), (rc)))

#define CMNewSelectExp(b, q, l, p, rc) \
    ((b)->eft->newSelectExp((b), (q), (l), (p), (rc)))

#define CMClassPathIsA(b, p, pn, rc) \
    ((b)->eft->classPathIsA((b), (p), (pn), (rc)))

/* ------------------------------------------------------------------------
 * Debugging helpers.
 * ------------------------------------------------------------------------ */

#define CDToString(b, o, rc)     ((b)->eft->toString((b), (void *)(o), (rc)))

#define CDIsOfType(b, o, t, rc) \
    ((b)->eft->isOfType((b), (void *)(o), (t), (rc)))

#define CDGetType(b, o, rc)      ((b)->eft->getType((b), (void *)(o), (rc)))

/* ------------------------------------------------------------------------
 * Messages, logging and tracing.
 *
 * CMGetMessage(b, id, defMsg, rc, CMFmtArgsN(CMFmtX(v1), ...)) passes the
 * insert count followed by (type, value) pairs. The value types below are
 * what the broker's getMessage() reads back with va_arg, so they must stay
 * exactly as they are: long for CMPI_sint32, unsigned long for CMPI_uint32,
 * long long / unsigned long long for the 64-bit types, double for reals,
 * int for booleans, char * for CMPI_chars and CMPIString * for CMPI_string.
 * ------------------------------------------------------------------------ */

#define CMFmtSint(v)    CMPI_sint32, ((long int)(v))
#define CMFmtUint(v)    CMPI_uint32, ((unsigned long int)(v))
#define CMFmtSint64(v)  CMPI_sint64, (ZENTA_CMPI_EXTENSION (long long int)(v))
#define CMFmtUint64(v)  CMPI_uint64, (ZENTA_CMPI_EXTENSION (unsigned long long int)(v))
#define CMFmtReal(v)    CMPI_real64, ((double)(v))
#define CMFmtBoolean(v) CMPI_boolean, ((int)(v))
#define CMFmtChars(v)   CMPI_chars, ((char *)(v))
#define CMFmtString(v)  CMPI_string, ((CMPIString *)(v))

#define CMFmtArgs0() 0
#define CMFmtArgs1(v1) \
    1, v1
#define CMFmtArgs2(v1, v2) \
    2, v1, v2
#define CMFmtArgs3(v1, v2, v3) \
    3, v1, v2, v3
#define CMFmtArgs4(v1, v2, v3, v4) \
    4, v1, v2, v3, v4
#define CMFmtArgs5(v1, v2, v3, v4, v5) \
    5, v1, v2, v3, v4, v5
#define CMFmtArgs6(v1, v2, v3, v4, v5, v6) \
    6, v1, v2, v3, v4, v5, v6
#define CMFmtArgs7(v1, v2, v3, v4, v5, v6, v7) \
    7, v1, v2, v3, v4, v5, v6, v7
#define CMFmtArgs8(v1, v2, v3, v4, v5, v6, v7, v8) \
    8, v1, v2, v3, v4, v5, v6, v7, v8
#define CMFmtArgs9(v1, v2, v3, v4, v5, v6, v7, v8, v9) \
    9, v1, v2, v3, v4, v5, v6, v7, v8, v9
#define CMFmtArgs10(v1, v2, v3, v4, v5, v6, v7, v8, v9, v10) \
    10, v1, v2, v3, v4, v5, v6, v7, v8, v9, v10

#define CMGetMessage(b, id, def, rc, parms) \
    ((b)->eft->getMessage((b), (id), (def), (rc), parms))

#define CMLogMessage(b, severity, id, text, string) \
    ((b)->eft->logMessage((b), (severity), (id), (text), (string)))

#define CMTraceMessage(b, level, component, text, string) \
    ((b)->eft->trace((b), (level), (component), (text), (string)))

/* ------------------------------------------------------------------------
 * CMPIInstance.
 *
 * Value arguments (v) are addresses of the value: &myUint32 for
 * CMPI_uint32, a char pointer for CMPI_chars, &myStringObject for
 * CMPI_string, and so on. They are cast to CMPIValue pointers here.
 * ------------------------------------------------------------------------ */

#define CMGetProperty(i, n, rc)      ((i)->ft->getProperty((i), (n), (rc)))

#define CMGetPropertyAt(i, num, s, rc) \
    ((i)->ft->getPropertyAt((i), (num), (s), (rc)))

#define CMSetProperty(i, n, v, t) \
    ((i)->ft->setProperty((i), (n), (const CMPIValue *)(v), (t)))

#define CMGetPropertyCount(i, rc)    ((i)->ft->getPropertyCount((i), (rc)))

#define CMGetObjectPath(i, rc)       ((i)->ft->getObjectPath((i), (rc)))

#define CMSetObjectPath(i, obj)      ((i)->ft->setObjectPath((i), (obj)))

#define CMSetPropertyFilter(i, pl, k) \
    ((i)->ft->setPropertyFilter((i), (pl), (k)))

/* ------------------------------------------------------------------------
 * CMPIObjectPath.
 * ------------------------------------------------------------------------ */

#define CMSetHostname(p, n)          ((p)->ft->setHostname((p), (n)))
#define CMGetHostname(p, rc)         ((p)->ft->getHostname((p), (rc)))
#define CMSetNameSpace(p, n)         ((p)->ft->setNameSpace((p), (n)))
#define CMGetNameSpace(p, rc)        ((p)->ft->getNameSpace((p), (rc)))
#define CMSetClassName(p, n)         ((p)->ft->setClassName((p), (n)))
#define CMGetClassName(p, rc)        ((p)->ft->getClassName((p), (rc)))

#define CMAddKey(p, n, v, t) \
    ((p)->ft->addKey((p), (n), (const CMPIValue *)(v), (t)))

#define CMGetKey(p, n, rc)           ((p)->ft->getKey((p), (n), (rc)))

#define CMGetKeyAt(p, i, n, rc)      ((p)->ft->getKeyAt((p), (i), (n), (rc)))

#define CMGetKeyCount(p, rc)         ((p)->ft->getKeyCount((p), (rc)))

#define CMSetNameSpaceFromObjectPath(p, s) \
    ((p)->ft->setNameSpaceFromObjectPath((p), (s)))

#define CMSetHostAndNameSpaceFromObjectPath(p, s) \
    ((p)->ft->setHostAndNameSpaceFromObjectPath((p), (s)))

#define CMGetClassQualifier(op, qName, rc) \
    ((op)->ft->getClassQualifier((op), (qName), (rc)))

#define CMGetPropertyQualifier(op, pName, qName, rc) \
    ((op)->ft->getPropertyQualifier((op), (pName), (qName), (rc)))

#define CMGetMethodQualifier(op, methodName, qName, rc) \
    ((op)->ft->getMethodQualifier((op), (methodName), (qName), (rc)))

#define CMGetParameterQualifier(op, mName, pName, qName, rc) \
    ((op)->ft->getParameterQualifier((op), (mName), (pName), (qName), (rc)))

#define CMObjectPathToString(p, rc)  ((p)->ft->toString((p), (rc)))

/* ------------------------------------------------------------------------
 * CMPIArray.
 * ------------------------------------------------------------------------ */

#define CMGetArrayCount(a, rc)       ((a)->ft->getSize((a), (rc)))

#define CMGetArrayType(a, rc)        ((a)->ft->getSimpleType((a), (rc)))

#define CMGetArrayElementAt(a, n, rc) \
    ((a)->ft->getElementAt((a), (n), (rc)))

#define CMSetArrayElementAt(a, n, v, t) \
    ((a)->ft->setElementAt((a), (n), (const CMPIValue *)(v), (t)))

/* ------------------------------------------------------------------------
 * CMPIArgs.
 * ------------------------------------------------------------------------ */

#define CMAddArg(a, n, v, t) \
    ((a)->ft->addArg((a), (n), (const CMPIValue *)(v), (t)))

#define CMGetArg(a, n, rc)           ((a)->ft->getArg((a), (n), (rc)))

#define CMGetArgAt(a, p, n, rc)      ((a)->ft->getArgAt((a), (p), (n), (rc)))

#define CMGetArgCount(a, rc)         ((a)->ft->getArgCount((a), (rc)))

/* ------------------------------------------------------------------------
 * CMPIString.
 *
 * CMGetCharPtr() reads the characters straight from hdl, exactly like the
 * macro providers have always been compiled with; brokers must therefore
 * keep a CMPIString's hdl pointing at its NUL-terminated text.
 * CMGetCharsPtr() goes through the function table.
 * ------------------------------------------------------------------------ */

#define CMGetCharPtr(s)              ((char *)(s)->hdl)

#define CMGetCharsPtr(st, rc)        ((st)->ft->getCharPtr((st), (rc)))

/* ------------------------------------------------------------------------
 * CMPIDateTime.
 * ------------------------------------------------------------------------ */

#define CMGetStringFormat(d, rc)     ((d)->ft->getStringFormat((d), (rc)))
#define CMGetBinaryFormat(d, rc)     ((d)->ft->getBinaryFormat((d), (rc)))
#define CMIsInterval(d, rc)          ((d)->ft->isInterval((d), (rc)))

/* ------------------------------------------------------------------------
 * CMPIEnumeration.
 * ------------------------------------------------------------------------ */

#define CMGetNext(n, rc)             ((n)->ft->getNext((n), (rc)))
#define CMHasNext(n, rc)             ((n)->ft->hasNext((n), (rc)))
#define CMToArray(n, rc)             ((n)->ft->toArray((n), (rc)))

/* ------------------------------------------------------------------------
 * CMPIResult.
 * ------------------------------------------------------------------------ */

#define CMReturnData(r, v, t) \
    ((r)->ft->returnData((r), (const CMPIValue *)(v), (t)))

#define CMReturnInstance(r, i)       ((r)->ft->returnInstance((r), (i)))

#define CMReturnObjectPath(r, o)     ((r)->ft->returnObjectPath((r), (o)))

#define CMReturnDone(r)              ((r)->ft->returnDone((r)))

/* ------------------------------------------------------------------------
 * CMPIContext.
 * ------------------------------------------------------------------------ */

#define CMGetContextEntry(c, n, rc)  ((c)->ft->getEntry((c), (n), (rc)))

#define CMGetContextEntryAt(c, p, n, rc) \
    ((c)->ft->getEntryAt((c), (p), (n), (rc)))

#define CMGetContextEntryCount(c, rc) ((c)->ft->getEntryCount((c), (rc)))

#define CMAddContextEntry(c, n, v, t) \
    ((c)->ft->addEntry((c), (n), (const CMPIValue *)(v), (t)))

/* ------------------------------------------------------------------------
 * Queries: CMPISelectExp, CMPISelectCond, CMPISubCond, CMPIPredicate.
 * ------------------------------------------------------------------------ */

#define CMGetSelExpString(s, rc)     ((s)->ft->getString((s), (rc)))

#define CMEvaluateSelExp(s, i, r)    ((s)->ft->evaluate((s), (i), (r)))

#define CMEvaluateSelExpUsingAccessor(s, i, p, r) \
    ((s)->ft->evaluateUsingAccessor((s), (i), (p), (r)))

#define CMGetDoc(s, rc)              ((s)->ft->getDOC((s), (rc)))
#define CMGetCod(s, rc)              ((s)->ft->getCOD((s), (rc)))

#define CMGetSubCondCountAndType(c, t, rc) \
    ((c)->ft->getCountAndType((c), (t), (rc)))

#define CMGetSubCondAt(c, p, rc)     ((c)->ft->getSubCondAt((c), (p), (rc)))

#define CMGetPredicateCount(s, rc)   ((s)->ft->getCount((s), (rc)))

#define CMGetPredicateAt(s, p, rc)   ((s)->ft->getPredicateAt((s), (p), (rc)))

#define CMGetPredicate(s, n, rc)     ((s)->ft->getPredicate((s), (n), (rc)))

#define CMGetPredicateData(p, t, o, n, v) \
    ((p)->ft->getData((p), (t), (o), (n), (v)))

#define CMEvaluatePredicateUsingAccessor(p, a, parm, rc) \
    ((p)->ft->evaluateUsingAccessor((p), (a), (parm), (rc)))

/* ------------------------------------------------------------------------
 * Broker up-calls (CMPIBrokerFT).
 * ------------------------------------------------------------------------ */

#define CBGetClassification(b)       ((b)->bft->brokerCapabilities)
#define CBBrokerVersion(b)           ((b)->bft->brokerVersion)
#define CBBrokerName(b)              ((b)->bft->brokerName)

#define CBPrepareAttachThread(b, c) \
    ((b)->bft->prepareAttachThread((b), (c)))

#define CBAttachThread(b, c)         ((b)->bft->attachThread((b), (c)))

#define CBDetachThread(b, c)         ((b)->bft->detachThread((b), (c)))

#define CBDeliverIndication(b, c, n, i) \
    ((b)->bft->deliverIndication((b), (c), (n), (i)))

#define CBEnumInstanceNames(b, c, p, rc) \
    ((b)->bft->enumerateInstanceNames((b), (c), (p), (rc)))

#define CBEnumInstances(b, c, p, pr, rc) \
    ((b)->bft->enumerateInstances((b), (c), (p), (pr), (rc)))

#define CBGetInstance(b, c, p, pr, rc) \
    ((b)->bft->getInstance((b), (c), (p), (pr), (rc)))

#define CBCreateInstance(b, c, p, i, rc) \
    ((b)->bft->createInstance((b), (c), (p), (i), (rc)))

#define CBModifyInstance(b, c, p, i, pr) \
    ((b)->bft->modifyInstance((b), (c), (p), (i), (pr)))

/* The name providers written before modifyInstance existed use. */
#define CBSetInstance(b, c, p, i, pr) \
    ((b)->bft->modifyInstance((b), (c), (p), (i), (pr)))

#define CBDeleteInstance(b, c, p) \
    ((b)->bft->deleteInstance((b), (c), (p)))

#define CBExecQuery(b, c, p, q, l, rc) \
    ((b)->bft->execQuery((b), (c), (p), (q), (l), (rc)))

#define CBAssociators(b, c, p, acl, rcl, r, rr, pr, rc) \
    ((b)->bft->associators((b), (c), (p), (acl), (rcl), (r), (rr), (pr), \
                           (rc)))

#define CBAssociatorNames(b, c, p, acl, rcl, r, rr, rc) \
    ((b)->bft->associatorNames((b), (c), (p), (acl), (rcl), (r), (rr), (rc)))

#define CBReferences(b, c, p, rcl, r, pr, rc) \
    ((b)->bft->references((b), (c), (p), (rcl), (r), (pr), (rc)))

#define CBReferenceNames(b, c, p, rcl, r, rc) \
    ((b)->bft->referenceNames((b), (c), (p), (rcl), (r), (rc)))

#define CBInvokeMethod(b, c, p, m, ai, ao, rc) \
    ((b)->bft->invokeMethod((b), (c), (p), (m), (ai), (ao), (rc)))

#define CBSetProperty(b, c, p, n, v, t) \
    ((b)->bft->setProperty((b), (c), (p), (n), (const CMPIValue *)(v), (t)))

#define CBGetProperty(b, c, p, n, rc) \
    ((b)->bft->getProperty((b), (c), (p), (n), (rc)))

/* ------------------------------------------------------------------------
 * Provider factories for C providers.
 *
 * XXXMIStub(pfx, pn, broker, hook) defines the provider's function table
 * from functions named pfx##Cleanup, pfx##EnumInstanceNames, ... and the
 * exported factory pn##_Create_XXXMI() the broker looks up when it loads
 * the library. The factory stores the broker in the variable named by
 * broker (usually "static const CMPIBroker *_broker;") and then runs hook,
 * a statement that may use the factory's parameters brkr, ctx and rc; pass
 * CMNoHook when nothing else is needed.
 *
 * Invocations are normally followed by a semicolon; the expansion ends
 * with a function body so that it compiles either way.
 * ------------------------------------------------------------------------ */

#define CMNoHook

#ifdef CMPI_VER_100
#  define CMInstanceMIStubChange(pfx) pfx##ModifyInstance
#else
#  define CMInstanceMIStubChange(pfx) pfx##SetInstance
#endif

/* Shared start of every factory body. Parameters a hook does not use must
 * not trigger unused-parameter warnings in the provider's build. (The hook
 * itself is not passed on to this macro: CMNoHook would turn into an empty
 * macro argument, which C89 compilers may reject.) */
#define ZENTA_CMPI_FACTORY_PROLOGUE(mitype, ftvar, broker) \
        static mitype mi = { NULL, &ftvar }; \
        (void)brkr; \
        (void)ctx; \
        (void)rc; \
        broker = brkr;

#define CMInstanceMIStub(pfx, pn, broker, hook) \
    static CMPIInstanceMIFT instMIFT__ = { \
        CMPICurrentVersion, \
        CMPICurrentVersion, \
        "instance" #pn, \
        pfx##Cleanup, \
        ZENTA_CMPI_ALIAS_INIT(pfx##EnumInstanceNames), \
        ZENTA_CMPI_ALIAS_INIT(pfx##EnumInstances), \
        pfx##GetInstance, \
        pfx##CreateInstance, \
        CMInstanceMIStubChange(pfx), \
        pfx##DeleteInstance, \
        pfx##ExecQuery \
    }; \
    CMPI_EXTERN_C CMPIInstanceMI *pn##_Create_InstanceMI( \
        const CMPIBroker *brkr, const CMPIContext *ctx, CMPIStatus *rc) \
    { \
        ZENTA_CMPI_FACTORY_PROLOGUE(CMPIInstanceMI, instMIFT__, broker) \
        hook; \
        return &mi; \
    }

#define CMAssociationMIStub(pfx, pn, broker, hook) \
    static CMPIAssociationMIFT assocMIFT__ = { \
        CMPICurrentVersion, \
        CMPICurrentVersion, \
        "association" #pn, \
        pfx##AssociationCleanup, \
        pfx##Associators, \
        pfx##AssociatorNames, \
        pfx##References, \
        pfx##ReferenceNames \
    }; \
    CMPI_EXTERN_C CMPIAssociationMI *pn##_Create_AssociationMI( \
        const CMPIBroker *brkr, const CMPIContext *ctx, CMPIStatus *rc) \
    { \
        ZENTA_CMPI_FACTORY_PROLOGUE(CMPIAssociationMI, assocMIFT__, broker) \
        hook; \
        return &mi; \
    }

#define CMMethodMIStub(pfx, pn, broker, hook) \
    static CMPIMethodMIFT methMIFT__ = { \
        CMPICurrentVersion, \
        CMPICurrentVersion, \
        "method" #pn, \
        pfx##MethodCleanup, \
        pfx##InvokeMethod \
    }; \
    CMPI_EXTERN_C CMPIMethodMI *pn##_Create_MethodMI( \
        const CMPIBroker *brkr, const CMPIContext *ctx, CMPIStatus *rc) \
    { \
        ZENTA_CMPI_FACTORY_PROLOGUE(CMPIMethodMI, methMIFT__, broker) \
        hook; \
        return &mi; \
    }

#define CMPropertyMIStub(pfx, pn, broker, hook) \
    static CMPIPropertyMIFT propMIFT__ = { \
        CMPICurrentVersion, \
        CMPICurrentVersion, \
        "property" #pn, \
        pfx##PropertyCleanup, \
        pfx##SetProperty, \
        pfx##GetProperty \
    }; \
    CMPI_EXTERN_C CMPIPropertyMI *pn##_Create_PropertyMI( \
        const CMPIBroker *brkr, const CMPIContext *ctx, CMPIStatus *rc) \
    { \
        ZENTA_CMPI_FACTORY_PROLOGUE(CMPIPropertyMI, propMIFT__, broker) \
        hook; \
        return &mi; \
    }

/* enableIndications()/disableIndications() exist from level 86 on. */
#ifdef CMPI_VER_86
#  define CMIndicationMIStubExtensions(pfx) \
        pfx##EnableIndications, pfx##DisableIndications,
#else
#  define CMIndicationMIStubExtensions(pfx)
#endif

#define CMIndicationMIStub(pfx, pn, broker, hook) \
    static CMPIIndicationMIFT indMIFT__ = { \
        CMPICurrentVersion, \
        CMPICurrentVersion, \
        "Indication" #pn, \
        pfx##IndicationCleanup, \
        pfx##AuthorizeFilter, \
        pfx##MustPoll, \
        pfx##ActivateFilter, \
        pfx##DeActivateFilter, \
        CMIndicationMIStubExtensions(pfx) \
    }; \
    CMPI_EXTERN_C CMPIIndicationMI *pn##_Create_IndicationMI( \
        const CMPIBroker *brkr, const CMPIContext *ctx, CMPIStatus *rc) \
    { \
        ZENTA_CMPI_FACTORY_PROLOGUE(CMPIIndicationMI, indMIFT__, broker) \
        hook; \
        return &mi; \
    }

/* ------------------------------------------------------------------------
 * Provider factories for C++ providers built on the CmpiXXXMI wrapper
 * classes (CmpiBaseMI, CmpiInstanceMI, CmpiContext, CmpiBroker,
 * CmpiProviderBase), which come with the C++ provider library, not with
 * these headers. cn is the provider class, pn the registered name; the
 * module must also contain CMProviderBase(pn).
 * ------------------------------------------------------------------------ */

#define CMProviderBase(pn) \
    CmpiProviderBase base##pn;

/* Creates the single provider object on first use and shares it between
 * all MI kinds of the module. */
#define ZENTA_CMPI_CXX_FACTORY_BODY(mitype, ftvar, cn, pn) \
    static mitype mi; \
    CmpiContext ctx((CMPIContext *)ctxp); \
    (void)rc; \
    mi.ft = &ftvar; \
    CmpiBaseMI *provider = base##pn.getBaseMI(); \
    if (provider == 0) { \
        provider = new cn(CmpiBroker((CMPIBroker *)broker), ctx); \
        provider->setProviderBase(&base##pn); \
        provider->initialize(ctx); \
        base##pn.setBaseMI(provider); \
    } \
    mi.hdl = provider; \
    base##pn.incUseCount(); \
    return &mi;

#define CMInstanceMIFactory(cn, pn) \
    CMPI_EXTERN_C CMPIInstanceMI *pn##_Create_InstanceMI( \
        const CMPIBroker *broker, const CMPIContext *ctxp, CMPIStatus *rc) \
    { \
        static CMPIInstanceMIFT instMIFT = { \
            CMPICurrentVersion, \
            CMPICurrentVersion, \
            "instance" #pn, \
            (CMPIStatus (*)(CMPIInstanceMI *, const CMPIContext *, \
                            CMPIBoolean))CmpiBaseMI::driveBaseCleanup, \
            ZENTA_CMPI_ALIAS_INIT(CmpiInstanceMI::driveEnumInstanceNames), \
            ZENTA_CMPI_ALIAS_INIT(CmpiInstanceMI::driveEnumInstances), \
            CmpiInstanceMI::driveGetInstance, \
            CmpiInstanceMI::driveCreateInstance, \
            CmpiInstanceMI::driveSetInstance, \
            CmpiInstanceMI::driveDeleteInstance, \
            CmpiInstanceMI::driveExecQuery \
        }; \
        ZENTA_CMPI_CXX_FACTORY_BODY(CMPIInstanceMI, instMIFT, cn, pn) \
    }

#define CMAssociationMIFactory(cn, pn) \
    CMPI_EXTERN_C CMPIAssociationMI *pn##_Create_AssociationMI( \
        const CMPIBroker *broker, const CMPIContext *ctxp, CMPIStatus *rc) \
    { \
        static CMPIAssociationMIFT assocMIFT = { \
            CMPICurrentVersion, \
            CMPICurrentVersion, \
            "association" #pn, \
            (CMPIStatus (*)(CMPIAssociationMI *, const CMPIContext *, \
                            CMPIBoolean))CmpiBaseMI::driveBaseCleanup, \
            CmpiAssociationMI::driveAssociators, \
            CmpiAssociationMI::driveAssociatorNames, \
            CmpiAssociationMI::driveReferences, \
            CmpiAssociationMI::driveReferenceNames \
        }; \
        ZENTA_CMPI_CXX_FACTORY_BODY(CMPIAssociationMI, assocMIFT, cn, pn) \
    }

#define CMMethodMIFactory(cn, pn) \
    CMPI_EXTERN_C CMPIMethodMI *pn##_Create_MethodMI( \
        const CMPIBroker *broker, const CMPIContext *ctxp, CMPIStatus *rc) \
    { \
        static CMPIMethodMIFT methMIFT = { \
            CMPICurrentVersion, \
            CMPICurrentVersion, \
            "method" #pn, \
            (CMPIStatus (*)(CMPIMethodMI *, const CMPIContext *, \
                            CMPIBoolean))CmpiBaseMI::driveBaseCleanup, \
            CmpiMethodMI::driveInvokeMethod \
        }; \
        ZENTA_CMPI_CXX_FACTORY_BODY(CMPIMethodMI, methMIFT, cn, pn) \
    }

#define CMPropertyMIFactory(cn, pn) \
    CMPI_EXTERN_C CMPIPropertyMI *pn##_Create_PropertyMI( \
        const CMPIBroker *broker, const CMPIContext *ctxp, CMPIStatus *rc) \
    { \
        static CMPIPropertyMIFT propMIFT = { \
            CMPICurrentVersion, \
            CMPICurrentVersion, \
            "property" #pn, \
            (CMPIStatus (*)(CMPIPropertyMI *, const CMPIContext *, \
                            CMPIBoolean))CmpiBaseMI::driveBaseCleanup, \
            CmpiPropertyMI::driveSetProperty, \
            CmpiPropertyMI::driveGetProperty \
        }; \
        ZENTA_CMPI_CXX_FACTORY_BODY(CMPIPropertyMI, propMIFT, cn, pn) \
    }

#ifdef CMPI_VER_86
#  define CMIndicationMIFactoryExtensions \
        CmpiIndicationMI::driveEnableIndications, \
        CmpiIndicationMI::driveDisableIndications,
#else
#  define CMIndicationMIFactoryExtensions
#endif

#define CMIndicationMIFactory(cn, pn) \
    CMPI_EXTERN_C CMPIIndicationMI *pn##_Create_IndicationMI( \
        const CMPIBroker *broker, const CMPIContext *ctxp, CMPIStatus *rc) \
    { \
        static CMPIIndicationMIFT indMIFT = { \
            CMPICurrentVersion, \
            CMPICurrentVersion, \
            "indication" #pn, \
            (CMPIStatus (*)(CMPIIndicationMI *, const CMPIContext *, \
                            CMPIBoolean))CmpiBaseMI::driveBaseCleanup, \
            CmpiIndicationMI::driveAuthorizeFilter, \
            CmpiIndicationMI::driveMustPoll, \
            CmpiIndicationMI::driveActivateFilter, \
            CmpiIndicationMI::driveDeActivateFilter, \
            CMIndicationMIFactoryExtensions \
        }; \
        ZENTA_CMPI_CXX_FACTORY_BODY(CMPIIndicationMI, indMIFT, cn, pn) \
    }

#endif /* _CMPIMACS_H_ */
