/*
 * Shared by the C probes and the C++ tests.
 *
 * CMPI_LAYOUT(X) lists every CMPI structure with its members in declaration
 * order: X(type, members), where members(I, F, D, T) names each member of T
 * as I (int field), F (function slot) or D (data pointer). The expected
 * binary layout is derived from this order alone, and the C builds must
 * agree with the C++ one on every size and offset.
 */

#ifndef CMPI_HEADERS_TEST_PROBES_H
#define CMPI_HEADERS_TEST_PROBES_H

#include <stddef.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

#define CMPI_L_RECORD(I, F, D, T) D(T, hdl) D(T, ft)
#define CMPI_L_OBJFT(I, F, D, T) I(T, ftVersion) F(T, release) F(T, clone)
#define CMPI_L_MIFT(I, F, D, T) I(T, ftVersion) I(T, miVersion) D(T, miName) \
    F(T, cleanup)

#define CMPI_L_BROKER(I, F, D, T) D(T, hdl) D(T, bft) D(T, eft) D(T, xft)
#define CMPI_L_BROKERFT(I, F, D, T) I(T, brokerCapabilities) I(T, brokerVersion) \
    D(T, brokerName) F(T, prepareAttachThread) F(T, attachThread) F(T, detachThread) \
    F(T, deliverIndication) F(T, enumerateInstanceNames) F(T, getInstance) \
    F(T, createInstance) F(T, modifyInstance) F(T, deleteInstance) F(T, execQuery) \
    F(T, enumerateInstances) F(T, associators) F(T, associatorNames) F(T, references) \
    F(T, referenceNames) F(T, invokeMethod) F(T, setProperty) F(T, getProperty)
#define CMPI_L_BROKERENCFT(I, F, D, T) I(T, ftVersion) F(T, newInstance) \
    F(T, newObjectPath) F(T, newArgs) F(T, newString) F(T, newArray) F(T, newDateTime) \
    F(T, newDateTimeFromBinary) F(T, newDateTimeFromChars) F(T, newSelectExp) \
    F(T, classPathIsA) F(T, toString) F(T, isOfType) F(T, getType) F(T, getMessage) \
    F(T, logMessage) F(T, trace)
#define CMPI_L_BROKEREXTFT(I, F, D, T) I(T, ftVersion) F(T, resolveFileName) \
    F(T, newThread) F(T, joinThread) F(T, exitThread) F(T, cancelThread) \
    F(T, threadSleep) F(T, threadOnce) F(T, createThreadKey) F(T, destroyThreadKey) \
    F(T, getThreadSpecific) F(T, setThreadSpecific) F(T, newMutex) F(T, destroyMutex) \
    F(T, lockMutex) F(T, unlockMutex) F(T, newCondition) F(T, destroyCondition) \
    F(T, condWait) F(T, timedCondWait) F(T, signalCondition)
#define CMPI_L_CONTEXTFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, getEntry) \
    F(T, getEntryAt) F(T, getEntryCount) F(T, addEntry)
#define CMPI_L_RESULTFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, returnData) \
    F(T, returnInstance) F(T, returnObjectPath) F(T, returnDone)
#define CMPI_L_INSTANCEFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, getProperty) \
    F(T, getPropertyAt) F(T, getPropertyCount) F(T, setProperty) F(T, getObjectPath) \
    F(T, setPropertyFilter) F(T, setObjectPath)
#define CMPI_L_OBJECTPATHFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, setNameSpace) \
    F(T, getNameSpace) F(T, setHostname) F(T, getHostname) F(T, setClassName) \
    F(T, getClassName) F(T, addKey) F(T, getKey) F(T, getKeyAt) F(T, getKeyCount) \
    F(T, setNameSpaceFromObjectPath) F(T, setHostAndNameSpaceFromObjectPath) \
    F(T, getClassQualifier) F(T, getPropertyQualifier) F(T, getMethodQualifier) \
    F(T, getParameterQualifier) F(T, toString)
#define CMPI_L_SELECTEXPFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, evaluate) \
    F(T, getString) F(T, getDOC) F(T, getCOD) F(T, evaluateUsingAccessor)
#define CMPI_L_SELECTCONDFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, getCountAndType) \
    F(T, getSubCondAt)
#define CMPI_L_SUBCONDFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, getCount) \
    F(T, getPredicateAt) F(T, getPredicate)
#define CMPI_L_PREDICATEFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, getData) \
    F(T, evaluateUsingAccessor)
#define CMPI_L_ARGSFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, addArg) F(T, getArg) \
    F(T, getArgAt) F(T, getArgCount)
#define CMPI_L_STRINGFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, getCharPtr)
#define CMPI_L_ARRAYFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, getSize) \
    F(T, getSimpleType) F(T, getElementAt) F(T, setElementAt)
#define CMPI_L_ENUMERATIONFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, getNext) \
    F(T, hasNext) F(T, toArray)
#define CMPI_L_DATETIMEFT(I, F, D, T) CMPI_L_OBJFT(I, F, D, T) F(T, getBinaryFormat) \
    F(T, getStringFormat) F(T, isInterval)
#define CMPI_L_INSTANCEMIFT(I, F, D, T) CMPI_L_MIFT(I, F, D, T) \
    F(T, enumerateInstanceNames) F(T, enumerateInstances) F(T, getInstance) \
    F(T, createInstance) F(T, modifyInstance) F(T, deleteInstance) F(T, execQuery)
#define CMPI_L_ASSOCIATIONMIFT(I, F, D, T) CMPI_L_MIFT(I, F, D, T) F(T, associators) \
    F(T, associatorNames) F(T, references) F(T, referenceNames)
#define CMPI_L_METHODMIFT(I, F, D, T) CMPI_L_MIFT(I, F, D, T) F(T, invokeMethod)
#define CMPI_L_PROPERTYMIFT(I, F, D, T) CMPI_L_MIFT(I, F, D, T) F(T, setProperty) \
    F(T, getProperty)
#define CMPI_L_INDICATIONMIFT(I, F, D, T) CMPI_L_MIFT(I, F, D, T) F(T, authorizeFilter) \
    F(T, mustPoll) F(T, activateFilter) F(T, deActivateFilter) F(T, enableIndications) \
    F(T, disableIndications)

/* The tables a broker fills in, and the objects built on them. */
#define CMPI_LAYOUT_BROKER(X) X(CMPIBroker, CMPI_L_BROKER) \
    X(CMPIBrokerFT, CMPI_L_BROKERFT) X(CMPIBrokerEncFT, CMPI_L_BROKERENCFT) \
    X(CMPIBrokerExtFT, CMPI_L_BROKEREXTFT) X(CMPIContext, CMPI_L_RECORD) \
    X(CMPIContextFT, CMPI_L_CONTEXTFT) X(CMPIResult, CMPI_L_RECORD) \
    X(CMPIResultFT, CMPI_L_RESULTFT) X(CMPIInstance, CMPI_L_RECORD) \
    X(CMPIInstanceFT, CMPI_L_INSTANCEFT) X(CMPIObjectPath, CMPI_L_RECORD) \
    X(CMPIObjectPathFT, CMPI_L_OBJECTPATHFT) X(CMPISelectExp, CMPI_L_RECORD) \
    X(CMPISelectExpFT, CMPI_L_SELECTEXPFT) X(CMPISelectCond, CMPI_L_RECORD) \
    X(CMPISelectCondFT, CMPI_L_SELECTCONDFT) X(CMPISubCond, CMPI_L_RECORD) \
    X(CMPISubCondFT, CMPI_L_SUBCONDFT) X(CMPIPredicate, CMPI_L_RECORD) \
    X(CMPIPredicateFT, CMPI_L_PREDICATEFT) X(CMPIArgs, CMPI_L_RECORD) \
    X(CMPIArgsFT, CMPI_L_ARGSFT) X(CMPIString, CMPI_L_RECORD) \
    X(CMPIStringFT, CMPI_L_STRINGFT) X(CMPIArray, CMPI_L_RECORD) \
    X(CMPIArrayFT, CMPI_L_ARRAYFT) X(CMPIEnumeration, CMPI_L_RECORD) \
    X(CMPIEnumerationFT, CMPI_L_ENUMERATIONFT) X(CMPIDateTime, CMPI_L_RECORD) \
    X(CMPIDateTimeFT, CMPI_L_DATETIMEFT)

/* The tables a provider hands to the broker. */
#define CMPI_LAYOUT_MI(X) X(CMPIInstanceMI, CMPI_L_RECORD) \
    X(CMPIInstanceMIFT, CMPI_L_INSTANCEMIFT) X(CMPIAssociationMI, CMPI_L_RECORD) \
    X(CMPIAssociationMIFT, CMPI_L_ASSOCIATIONMIFT) X(CMPIMethodMI, CMPI_L_RECORD) \
    X(CMPIMethodMIFT, CMPI_L_METHODMIFT) X(CMPIPropertyMI, CMPI_L_RECORD) \
    X(CMPIPropertyMIFT, CMPI_L_PROPERTYMIFT) X(CMPIIndicationMI, CMPI_L_RECORD) \
    X(CMPIIndicationMIFT, CMPI_L_INDICATIONMIFT)

#define CMPI_LAYOUT(X) CMPI_LAYOUT_BROKER(X) CMPI_LAYOUT_MI(X)

/* The value types, whose layout the tests work out by hand. */
#define CMPI_LAYOUT_VALUES(M) M(CMPIValuePtr, ptr) M(CMPIValuePtr, length) \
    M(CMPIData, type) M(CMPIData, state) M(CMPIData, value) M(CMPIStatus, rc) \
    M(CMPIStatus, msg)

/* What c_provider.c hands to the convenience macros it drives. */
struct macro_objects
{
    const CMPIBroker *mb;
    const CMPIContext *ctx;
    const CMPIResult *rslt;
    CMPIObjectPath *op, *src;
    CMPIInstance *inst;
    CMPIArgs *args;
    CMPIArray *arr;
    CMPIString *str;
    CMPIDateTime *dt;
    CMPIEnumeration *en;
    CMPISelectExp *sel;
    CMPISelectCond *cond;
    CMPISubCond *sub;
    CMPIPredicate *pred;
    /* Out-parameters, so that the test can tell them apart. */
    CMPIStatus rc;
    CMPIString *name, *lhs, *rhs;
    CMPIArray *projection;
    CMPIType type;
    int condType;
    CMPIPredOp predOp;
    CMPIUint32 value;
};

#ifdef __cplusplus
extern "C" {
#endif
CMPIStatus drive_macros(struct macro_objects *o);
CMPIInstanceMI *Sample_Create_InstanceMI(const CMPIBroker *, const CMPIContext *,
                                         CMPIStatus *);
CMPIMethodMI *Sample_Create_MethodMI(const CMPIBroker *, const CMPIContext *,
                                     CMPIStatus *);
CMPIAssociationMI *Sample_Create_AssociationMI(const CMPIBroker *,
                                               const CMPIContext *, CMPIStatus *);
CMPIPropertyMI *Sample_Create_PropertyMI(const CMPIBroker *, const CMPIContext *,
                                         CMPIStatus *);
CMPIIndicationMI *Sample_Create_IndicationMI(const CMPIBroker *,
                                             const CMPIContext *, CMPIStatus *);
extern const char *c_provider_last_call;
extern int c_provider_hook_saw_broker;

extern const size_t cmpi_layout_c_aliases[];
extern const size_t cmpi_layout_c_plain[];
extern const int version_probe_current;
extern const size_t version_probe_instance_mift_size;
#ifdef __cplusplus
}
#endif

#endif
