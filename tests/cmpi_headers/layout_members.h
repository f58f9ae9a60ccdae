/*
 * Every CMPI structure and every member of it (first spelling only, so
 * that the list also compiles with ZENTA_CMPI_NO_MEMBER_ALIASES).
 *
 * Both layout_probe.c (compiled as C) and layout_test.cpp expand these
 * lists, and the test requires identical sizes and offsets: the headers
 * must describe one binary layout whatever language and alias mode a
 * provider is compiled in. The expected layout itself is spelled out
 * independently in layout_test.cpp.
 */

#ifndef CMPI_HEADERS_TEST_LAYOUT_MEMBERS_H
#define CMPI_HEADERS_TEST_LAYOUT_MEMBERS_H

#define CMPI_LAYOUT_TYPES(X) \
    X(CMPIValuePtr) \
    X(CMPIValue) \
    X(CMPIData) \
    X(CMPIStatus) \
    X(CMPIBrokerEncFT) \
    X(CMPIBrokerFT) \
    X(CMPIBrokerExtFT) \
    X(CMPIBroker) \
    X(CMPIContext) \
    X(CMPIContextFT) \
    X(CMPIResult) \
    X(CMPIResultFT) \
    X(CMPIInstance) \
    X(CMPIInstanceFT) \
    X(CMPIObjectPath) \
    X(CMPIObjectPathFT) \
    X(CMPISelectExp) \
    X(CMPISelectExpFT) \
    X(CMPISelectCond) \
    X(CMPISelectCondFT) \
    X(CMPISubCond) \
    X(CMPISubCondFT) \
    X(CMPIPredicate) \
    X(CMPIPredicateFT) \
    X(CMPIArgs) \
    X(CMPIArgsFT) \
    X(CMPIString) \
    X(CMPIStringFT) \
    X(CMPIArray) \
    X(CMPIArrayFT) \
    X(CMPIEnumeration) \
    X(CMPIEnumerationFT) \
    X(CMPIDateTime) \
    X(CMPIDateTimeFT) \
    X(CMPIInstanceMI) \
    X(CMPIInstanceMIFT) \
    X(CMPIAssociationMI) \
    X(CMPIAssociationMIFT) \
    X(CMPIMethodMI) \
    X(CMPIMethodMIFT) \
    X(CMPIPropertyMI) \
    X(CMPIPropertyMIFT) \
    X(CMPIIndicationMI) \
    X(CMPIIndicationMIFT)

#define CMPI_LAYOUT_MEMBERS(X) \
    X(CMPIValuePtr, ptr) \
    X(CMPIValuePtr, length) \
    X(CMPIData, type) \
    X(CMPIData, state) \
    X(CMPIData, value) \
    X(CMPIStatus, rc) \
    X(CMPIStatus, msg) \
    X(CMPIBrokerEncFT, ftVersion) \
    X(CMPIBrokerEncFT, newInstance) \
    X(CMPIBrokerEncFT, newObjectPath) \
    X(CMPIBrokerEncFT, newArgs) \
    X(CMPIBrokerEncFT, newString) \
    X(CMPIBrokerEncFT, newArray) \
    X(CMPIBrokerEncFT, newDateTime) \
    X(CMPIBrokerEncFT, newDateTimeFromBinary) \
    X(CMPIBrokerEncFT, newDateTimeFromChars) \
    X(CMPIBrokerEncFT, newSelectExp) \
    X(CMPIBrokerEncFT, classPathIsA) \
    X(CMPIBrokerEncFT, toString) \
    X(CMPIBrokerEncFT, isOfType) \
    X(CMPIBrokerEncFT, getType) \
    X(CMPIBrokerEncFT, getMessage) \
    X(CMPIBrokerEncFT, logMessage) \
    X(CMPIBrokerEncFT, trace) \
    X(CMPIBrokerFT, brokerCapabilities) \
    X(CMPIBrokerFT, brokerVersion) \
    X(CMPIBrokerFT, brokerName) \
    X(CMPIBrokerFT, prepareAttachThread) \
    X(CMPIBrokerFT, attachThread) \
    X(CMPIBrokerFT, detachThread) \
    X(CMPIBrokerFT, deliverIndication) \
    X(CMPIBrokerFT, enumerateInstanceNames) \
    X(CMPIBrokerFT, getInstance) \
    X(CMPIBrokerFT, createInstance) \
    X(CMPIBrokerFT, modifyInstance) \
    X(CMPIBrokerFT, deleteInstance) \
    X(CMPIBrokerFT, execQuery) \
    X(CMPIBrokerFT, enumerateInstances) \
    X(CMPIBrokerFT, associators) \
    X(CMPIBrokerFT, associatorNames) \
    X(CMPIBrokerFT, references) \
    X(CMPIBrokerFT, referenceNames) \
    X(CMPIBrokerFT, invokeMethod) \
    X(CMPIBrokerFT, setProperty) \
    X(CMPIBrokerFT, getProperty) \
    X(CMPIBrokerExtFT, ftVersion) \
    X(CMPIBrokerExtFT, resolveFileName) \
    X(CMPIBrokerExtFT, newThread) \
    X(CMPIBrokerExtFT, joinThread) \
    X(CMPIBrokerExtFT, exitThread) \
    X(CMPIBrokerExtFT, cancelThread) \
    X(CMPIBrokerExtFT, threadSleep) \
    X(CMPIBrokerExtFT, threadOnce) \
    X(CMPIBrokerExtFT, createThreadKey) \
    X(CMPIBrokerExtFT, destroyThreadKey) \
    X(CMPIBrokerExtFT, getThreadSpecific) \
    X(CMPIBrokerExtFT, setThreadSpecific) \
    X(CMPIBrokerExtFT, newMutex) \
    X(CMPIBrokerExtFT, destroyMutex) \
    X(CMPIBrokerExtFT, lockMutex) \
    X(CMPIBrokerExtFT, unlockMutex) \
    X(CMPIBrokerExtFT, newCondition) \
    X(CMPIBrokerExtFT, destroyCondition) \
    X(CMPIBrokerExtFT, condWait) \
    X(CMPIBrokerExtFT, timedCondWait) \
    X(CMPIBrokerExtFT, signalCondition) \
    X(CMPIBroker, hdl) \
    X(CMPIBroker, bft) \
    X(CMPIBroker, eft) \
    X(CMPIBroker, xft) \
    X(CMPIContext, hdl) \
    X(CMPIContext, ft) \
    X(CMPIContextFT, ftVersion) \
    X(CMPIContextFT, release) \
    X(CMPIContextFT, clone) \
    X(CMPIContextFT, getEntry) \
    X(CMPIContextFT, getEntryAt) \
    X(CMPIContextFT, getEntryCount) \
    X(CMPIContextFT, addEntry) \
    X(CMPIResult, hdl) \
    X(CMPIResult, ft) \
    X(CMPIResultFT, ftVersion) \
    X(CMPIResultFT, release) \
    X(CMPIResultFT, clone) \
    X(CMPIResultFT, returnData) \
    X(CMPIResultFT, returnInstance) \
    X(CMPIResultFT, returnObjectPath) \
    X(CMPIResultFT, returnDone) \
    X(CMPIInstance, hdl) \
    X(CMPIInstance, ft) \
    X(CMPIInstanceFT, ftVersion) \
    X(CMPIInstanceFT, release) \
    X(CMPIInstanceFT, clone) \
    X(CMPIInstanceFT, getProperty) \
    X(CMPIInstanceFT, getPropertyAt) \
    X(CMPIInstanceFT, getPropertyCount) \
    X(CMPIInstanceFT, setProperty) \
    X(CMPIInstanceFT, getObjectPath) \
    X(CMPIInstanceFT, setPropertyFilter) \
    X(CMPIInstanceFT, setObjectPath) \
    X(CMPIObjectPath, hdl) \
    X(CMPIObjectPath, ft) \
    X(CMPIObjectPathFT, ftVersion) \
    X(CMPIObjectPathFT, release) \
    X(CMPIObjectPathFT, clone) \
    X(CMPIObjectPathFT, setNameSpace) \
    X(CMPIObjectPathFT, getNameSpace) \
    X(CMPIObjectPathFT, setHostname) \
    X(CMPIObjectPathFT, getHostname) \
    X(CMPIObjectPathFT, setClassName) \
    X(CMPIObjectPathFT, getClassName) \
    X(CMPIObjectPathFT, addKey) \
    X(CMPIObjectPathFT, getKey) \
    X(CMPIObjectPathFT, getKeyAt) \
    X(CMPIObjectPathFT, getKeyCount) \
    X(CMPIObjectPathFT, setNameSpaceFromObjectPath) \
    X(CMPIObjectPathFT, setHostAndNameSpaceFromObjectPath) \
    X(CMPIObjectPathFT, getClassQualifier) \
    X(CMPIObjectPathFT, getPropertyQualifier) \
    X(CMPIObjectPathFT, getMethodQualifier) \
    X(CMPIObjectPathFT, getParameterQualifier) \
    X(CMPIObjectPathFT, toString) \
    X(CMPISelectExp, hdl) \
    X(CMPISelectExp, ft) \
    X(CMPISelectExpFT, ftVersion) \
    X(CMPISelectExpFT, release) \
    X(CMPISelectExpFT, clone) \
    X(CMPISelectExpFT, evaluate) \
    X(CMPISelectExpFT, getString) \
    X(CMPISelectExpFT, getDOC) \
    X(CMPISelectExpFT, getCOD) \
    X(CMPISelectExpFT, evaluateUsingAccessor) \
    X(CMPISelectCond, hdl) \
    X(CMPISelectCond, ft) \
    X(CMPISelectCondFT, ftVersion) \
    X(CMPISelectCondFT, release) \
    X(CMPISelectCondFT, clone) \
    X(CMPISelectCondFT, getCountAndType) \
    X(CMPISelectCondFT, getSubCondAt) \
    X(CMPISubCond, hdl) \
    X(CMPISubCond, ft) \
    X(CMPISubCondFT, ftVersion) \
    X(CMPISubCondFT, release) \
    X(CMPISubCondFT, clone) \
    X(CMPISubCondFT, getCount) \
    X(CMPISubCondFT, getPredicateAt) \
    X(CMPISubCondFT, getPredicate) \
    X(CMPIPredicate, hdl) \
    X(CMPIPredicate, ft) \
    X(CMPIPredicateFT, ftVersion) \
    X(CMPIPredicateFT, release) \
    X(CMPIPredicateFT, clone) \
    X(CMPIPredicateFT, getData) \
    X(CMPIPredicateFT, evaluateUsingAccessor) \
    X(CMPIArgs, hdl) \
    X(CMPIArgs, ft) \
    X(CMPIArgsFT, ftVersion) \
    X(CMPIArgsFT, release) \
    X(CMPIArgsFT, clone) \
    X(CMPIArgsFT, addArg) \
    X(CMPIArgsFT, getArg) \
    X(CMPIArgsFT, getArgAt) \
    X(CMPIArgsFT, getArgCount) \
    X(CMPIString, hdl) \
    X(CMPIString, ft) \
    X(CMPIStringFT, ftVersion) \
    X(CMPIStringFT, release) \
    X(CMPIStringFT, clone) \
    X(CMPIStringFT, getCharPtr) \
    X(CMPIArray, hdl) \
    X(CMPIArray, ft) \
    X(CMPIArrayFT, ftVersion) \
    X(CMPIArrayFT, release) \
    X(CMPIArrayFT, clone) \
    X(CMPIArrayFT, getSize) \
    X(CMPIArrayFT, getSimpleType) \
    X(CMPIArrayFT, getElementAt) \
    X(CMPIArrayFT, setElementAt) \
    X(CMPIEnumeration, hdl) \
    X(CMPIEnumeration, ft) \
    X(CMPIEnumerationFT, ftVersion) \
    X(CMPIEnumerationFT, release) \
    X(CMPIEnumerationFT, clone) \
    X(CMPIEnumerationFT, getNext) \
    X(CMPIEnumerationFT, hasNext) \
    X(CMPIEnumerationFT, toArray) \
    X(CMPIDateTime, hdl) \
    X(CMPIDateTime, ft) \
    X(CMPIDateTimeFT, ftVersion) \
    X(CMPIDateTimeFT, release) \
    X(CMPIDateTimeFT, clone) \
    X(CMPIDateTimeFT, getBinaryFormat) \
    X(CMPIDateTimeFT, getStringFormat) \
    X(CMPIDateTimeFT, isInterval) \
    X(CMPIInstanceMI, hdl) \
    X(CMPIInstanceMI, ft) \
    X(CMPIInstanceMIFT, ftVersion) \
    X(CMPIInstanceMIFT, miVersion) \
    X(CMPIInstanceMIFT, miName) \
    X(CMPIInstanceMIFT, cleanup) \
    X(CMPIInstanceMIFT, enumerateInstanceNames) \
    X(CMPIInstanceMIFT, enumerateInstances) \
    X(CMPIInstanceMIFT, getInstance) \
    X(CMPIInstanceMIFT, createInstance) \
    X(CMPIInstanceMIFT, modifyInstance) \
    X(CMPIInstanceMIFT, deleteInstance) \
    X(CMPIInstanceMIFT, execQuery) \
    X(CMPIAssociationMI, hdl) \
    X(CMPIAssociationMI, ft) \
    X(CMPIAssociationMIFT, ftVersion) \
    X(CMPIAssociationMIFT, miVersion) \
    X(CMPIAssociationMIFT, miName) \
    X(CMPIAssociationMIFT, cleanup) \
    X(CMPIAssociationMIFT, associators) \
    X(CMPIAssociationMIFT, associatorNames) \
    X(CMPIAssociationMIFT, references) \
    X(CMPIAssociationMIFT, referenceNames) \
    X(CMPIMethodMI, hdl) \
    X(CMPIMethodMI, ft) \
    X(CMPIMethodMIFT, ftVersion) \
    X(CMPIMethodMIFT, miVersion) \
    X(CMPIMethodMIFT, miName) \
    X(CMPIMethodMIFT, cleanup) \
    X(CMPIMethodMIFT, invokeMethod) \
    X(CMPIPropertyMI, hdl) \
    X(CMPIPropertyMI, ft) \
    X(CMPIPropertyMIFT, ftVersion) \
    X(CMPIPropertyMIFT, miVersion) \
    X(CMPIPropertyMIFT, miName) \
    X(CMPIPropertyMIFT, cleanup) \
    X(CMPIPropertyMIFT, setProperty) \
    X(CMPIPropertyMIFT, getProperty) \
    X(CMPIIndicationMI, hdl) \
    X(CMPIIndicationMI, ft) \
    X(CMPIIndicationMIFT, ftVersion) \
    X(CMPIIndicationMIFT, miVersion) \
    X(CMPIIndicationMIFT, miName) \
    X(CMPIIndicationMIFT, cleanup) \
    X(CMPIIndicationMIFT, authorizeFilter) \
    X(CMPIIndicationMIFT, mustPoll) \
    X(CMPIIndicationMIFT, activateFilter) \
    X(CMPIIndicationMIFT, deActivateFilter) \
    X(CMPIIndicationMIFT, enableIndications) \
    X(CMPIIndicationMIFT, disableIndications)

#endif
