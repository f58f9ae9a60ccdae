// The broker's encapsulated-object factory: the CMPI objects providers
// create through their broker, and the per-call records of the driver.
#include "cmpiBrokerEnc.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "CmpiCast.h"
#include "TCIMReference.h"
#include "TCMPIClass.h"
#include "TOSSpecific.h"
#include "TRootObject.h"
#include "TZENTAException.h"
#include "cmpiArray.h"
#include "cmpiContext.h"
#include "cmpiDateTime.h"
#include "cmpiInstance.h"
#include "cmpiInstanceRegistry.h"
#include "cmpiObjectPath.h"
#include "cmpiResult.h"
#include "cmpiStatus.h"
#include "cmpiString.h"

using namespace NVURZENTA20;

namespace {

CMPINSPInstanceRegistry* Registry() { return CMPINSPInstanceRegistry::GetRegistrySingleton(); }

// Records are two words, a handle and a function table.
template <class TRecord, class TTable>
TRecord* NewRecord(void* handle, TTable* table) {
    TRecord* record = new TRecord;
    record->hdl = handle;
    record->ft = table;
    return record;
}

CMPIDateTime* RegisterDateTime(TCIMDateTime* value, CMPIStatus* rc) {
    CMPIDateTime* record = NewRecord<CMPIDateTime>(value, cmpiDateTimeFt);
    Registry()->RegisterDateTime(record);
    setStatus(rc, CMPI_RC_OK);
    return record;
}

// The context every path made for a provider carries. Built once and
// shared by every such path: a provider makes a path for every instance it
// returns, and paths never change their context.
const TCIMReference::TSharedContext& ProviderPathContext() {
    static const TCIMReference::TSharedContext* const context =
        new TCIMReference::TSharedContext(new TCIMContext{{"nspID", TCIMValue("cmpi")}});
    return *context;
}

// Provider severities mapped to host log levels.
int LogLevelOf(int severity) {
    switch (severity) {
        case CMPI_SEV_ERROR: return 0;
        case CMPI_SEV_INFO: return 4;
        case CMPI_SEV_WARNING: return 1;
        case CMPI_DEV_DEBUG: return 3;
        default: return 1;
    }
}

}  // namespace

// The key properties are set from the path's bindings as they stand: a path
// binds each name once (key names compare without case), so the order in
// which they are set changes nothing.
CMPIInstance* newCMPIInstance(const CMPIBroker*, const CMPIObjectPath* op, CMPIStatus* rc) {
    const TCIMReference* path = static_cast<const TCIMReference*>(op->hdl);
    // A path must name a provider-served class of this namespace. Anything
    // else is refused here rather than cast blindly: a long-running host
    // must not turn a provider's mistake into memory corruption.
    boost::shared_ptr<TCMPIClass> cls = cmpiCast<TCMPIClass>(path->GetCIMElement(true));
    if (!cls) {
        setStatus(rc, CMPI_RC_ERR_NOT_FOUND);
        return nullptr;
    }
    boost::shared_ptr<ICIMInstance> instance = cls->AllocateInstance(TCIMContext());
    for (const auto& key : path->GetKeyBindings()) {
        instance->SetPropertyValue(key.first, key.second, TCIMContext());
    }
    CMPIInstance* record = newInstanceRecord(instance);
    Registry()->RegisterInstance(record);
    setStatus(rc, CMPI_RC_OK);
    return record;
}

CMPIObjectPath* newCMPIObjectPath(const CMPIBroker* broker, const char* ns, const char* cn, CMPIStatus* rc) {
    CMPIObjectPath* record = newOwningObjectPath();
    TCIMReference* path = static_cast<TCIMReference*>(record->hdl);
    // The broker's handle is the namespace's weak reference to its upcall
    // namespace; locking it cannot revive a namespace that has gone.
    path->SetNamespace(static_cast<boost::weak_ptr<ICIMNamespace>*>(broker->hdl)->lock());
    path->ShareContext(ProviderPathContext());
    path->SetClassName(std::string(cn));
    path->SetNameSpaceName(std::string(ns));
    Registry()->RegisterObjectPath(record);
    setStatus(rc, CMPI_RC_OK);
    return record;
}

CMPIString* newCMPIString(const CMPIBroker*, const char* text, CMPIStatus* rc) {
    CMPIString* record = newStringRecord(text);
    Registry()->RegisterString(record);
    setStatus(rc, CMPI_RC_OK);
    return record;
}

CMPIArray* newCMPIArray(const CMPIBroker*, CMPICount count, CMPIType type, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_OK);
    CMPIArray* record = NewRecord<CMPIArray>(newArrayStore(count, type), cmpiArrayFt);
    Registry()->RegisterArray(record);
    return record;
}

CMPIDateTime* newCMPIDateTime(const CMPIBroker*, CMPIStatus* rc) {
    return RegisterDateTime(new TCIMDateTime(TOSSpecific::GetLocalTime()), rc);
}

// The binary form is not honoured: providers get the current time.
CMPIDateTime* newCMPIDateTimeFromBinary(const CMPIBroker* broker, CMPIUint64, CMPIBoolean, CMPIStatus* rc) {
    return newCMPIDateTime(broker, rc);
}

CMPIDateTime* newCMPIDateTimeFromString(const CMPIBroker* broker, const char* text, CMPIStatus* rc) {
    std::string value(text);
    if (value.size() == 1) return newCMPIDateTime(broker, rc);
    TCIMDateTime* parsed = nullptr;
    try {
        parsed = new TCIMDateTime(value);
    } catch (const TZENTAException&) {
        return newCMPIDateTime(broker, rc);
    }
    return RegisterDateTime(parsed, rc);
}

CMPISelectExp* mbEncNewSelectExp(const CMPIBroker*, const char*, const char*, CMPIArray**, CMPIStatus*) {
    CMPISelectExp* record = new CMPISelectExp;
    record->hdl = nullptr;
    record->ft = nullptr;
    return record;
}

CMPIStatus mbEncLogMessage(const CMPIBroker*, int severity, const char* id, const char* text,
                           const CMPIString* string) {
    std::string line("cmpi.nsp-");
    if (id != nullptr) line.append(id).append(": ");
    if (text != nullptr) {
        line.append(text);
    } else if (string != nullptr) {
        line.append(string->ft->getCharPtr(string, nullptr));
    } else {
        return makeStatus(CMPI_RC_ERR_INVALID_PARAMETER);
    }
    TRootObject::GetCoreLogger()->Log(LogLevelOf(severity), line);
    return makeStatus(CMPI_RC_OK);
}

// --- Per-call records of the provider driver ------------------------------

namespace {

// A context record and the map it carries, made and freed together.
// The record is the base of what it is made with: see TInstanceRecord.
struct TContextRecord : CMPIContext {
    TContextRecord() : CMPIContext() {
        hdl = &entries;
        ft = cmpiContextFt;
    }
    TCIMContext entries;
};

}  // namespace

// The context gets an empty map of its own, so a provider that reads its
// context finds nothing instead of following a stray handle.
CMPIContext* newCMPIContext(const char*, CMPIStatus* rc) {
    TContextRecord* made = new TContextRecord;
    setStatus(rc, CMPI_RC_OK);
    return made;
}

// One pointer-sized cell receives the handle of the instance the provider
// returns.
CMPIResult* newCMPIResult(CMPIStatus* rc) {
    CMPIResult* record = newResultRecord();
    Registry()->RegisterResult(record);
    setStatus(rc, CMPI_RC_OK);
    return record;
}

CMPIResult* newCMPIEnumInstanceResult(CMPIStatus* rc) {
    CMPIResult* record = NewRecord<CMPIResult>(nullptr, cmpiEnumInstanceResultFt);
    setStatus(rc, CMPI_RC_OK);
    return record;
}

void removeCMPIContext(CMPIContext* context) { delete static_cast<TContextRecord*>(context); }

void removeCMPIResult(CMPIResult* result) { delete result; }

void removeCMPIObjectPath(CMPIObjectPath* path) { delete path; }

// --- Members the library does not serve -----------------------------------
// They answer "not supported" rather than leaving null slots a provider
// would jump through.

namespace {

CMPIArgs* unsupportedNewArgs(const CMPIBroker*, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIBoolean unsupportedClassPathIsA(const CMPIBroker*, const CMPIObjectPath*, const char*, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_NOT_SUPPORTED);
    return 0;
}

CMPIString* unsupportedToString(const CMPIBroker*, const void*, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIBoolean unsupportedIsOfType(const CMPIBroker*, const void*, const char*, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_NOT_SUPPORTED);
    return 0;
}

CMPIString* unsupportedGetType(const CMPIBroker*, const void*, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIString* unsupportedGetMessage(const CMPIBroker*, const char*, const char*, CMPIStatus* rc, CMPICount, ...) {
    setStatus(rc, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIStatus unsupportedTrace(const CMPIBroker*, int, const char*, const char*, const CMPIString*) {
    return makeStatus(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIBrokerEncFT brokerEncFtab = {
    100,
    newCMPIInstance,
    newCMPIObjectPath,
    unsupportedNewArgs,
    newCMPIString,
    newCMPIArray,
    newCMPIDateTime,
    newCMPIDateTimeFromBinary,
    {newCMPIDateTimeFromString},
    mbEncNewSelectExp,
    unsupportedClassPathIsA,
    unsupportedToString,
    unsupportedIsOfType,
    unsupportedGetType,
    unsupportedGetMessage,
    mbEncLogMessage,
    unsupportedTrace,
};

}  // namespace

CMPIBrokerEncFT* cmpiBrokerEncFt = &brokerEncFtab;
