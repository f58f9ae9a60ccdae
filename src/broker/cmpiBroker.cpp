// The broker upcalls: what providers ask of the host — instances of other
// classes, associations, method calls, properties.
#include "cmpiBroker.h"

#include <string>
#include <vector>

#include "CmpiCast.h"
#include "ICIMNamespace.h"
#include "TCIMReference.h"
#include "TCMPIInstance.h"
#include "TRootObject.h"
#include "TZENTAException.h"
#include "TAddToVectorCallback.h"
#include "cmpiArgs.h"
#include "cmpiEnumeration.h"
#include "cmpiInstance.h"
#include "cmpiInstanceRegistry.h"
#include "cmpiStatus.h"
#include "cmpiValue.h"

using namespace NVURZENTA20;

namespace {

typedef std::vector<boost::shared_ptr<ICIMInstance> > TInstanceVector;
typedef std::vector<boost::shared_ptr<TCIMReference> > TPathVector;

// The two readings of an object path's handle. Paths of this library point
// at a TCIMReference whose first member is a shared pointer to itself, so
// both readings are valid for every path a provider can hold.
const TCIMReference* ReferenceOf(const CMPIObjectPath* op) { return static_cast<const TCIMReference*>(op->hdl); }

boost::shared_ptr<TCIMReference> SharedReferenceOf(const CMPIObjectPath* op) {
    boost::shared_ptr<TCIMReference>* held = static_cast<boost::shared_ptr<TCIMReference>*>(op->hdl);
    return held ? *held : boost::shared_ptr<TCIMReference>();
}

// The broker's handle is the namespace's weak reference to its upcall
// namespace.
boost::shared_ptr<ICIMNamespace> UpcallNamespace(const CMPIBroker* broker) {
    boost::weak_ptr<ICIMNamespace>* upcall = static_cast<boost::weak_ptr<ICIMNamespace>*>(broker->hdl);
    return upcall ? upcall->lock() : boost::shared_ptr<ICIMNamespace>();
}

// The instance a path names, asked of the path's own namespace; a path
// without a namespace names nothing. Every namespace a path can name finds
// the instances of providers: the host routes them to the serving provider.
boost::shared_ptr<ICIMInstance> InstanceAt(const TCIMReference& path) {
    boost::shared_ptr<ICIMNamespace> ns = path.GetNamespace();
    if (!ns) return boost::shared_ptr<ICIMInstance>();
    return ns->GetInstance(path, TCIMContext());
}

CMPIEnumeration* PathsOf(const TInstanceVector& instances) {
    TPathVector* paths = new TPathVector;
    for (std::size_t i = 0; i < instances.size(); ++i) {
        paths->push_back(boost::shared_ptr<TCIMReference>(new TCIMReference(instances[i]->BuildPath(TCIMContext()))));
    }
    return reinterpret_cast<CMPIEnumeration*>(new CMPIObjectPathEnumeration(paths));
}

const TInstanceVector& InstancesOf(CMPIEnumeration* enumeration) {
    return *static_cast<TInstanceVector*>(enumeration->hdl);
}

void LogUpcallFailure(const std::string& text) { TRootObject::GetCoreLogger()->Log(0, text); }

// --- Instance operations ---------------------------------------------------

CMPIEnumeration* mbEnumInstances(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* op,
                                 const char**, CMPIStatus* rc) {
    TCIMContext context;
    context["nspID"] = TCIMValue("plugin");
    const TCIMReference* path = ReferenceOf(op);
    if (path == nullptr || broker->hdl == nullptr) {
        setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
        return nullptr;
    }
    std::string className = path->GetClassName();
    boost::shared_ptr<ICIMNamespace> ns = UpcallNamespace(broker);
    boost::shared_ptr<ICIMClass> cls;
    try {
        cls = ns->GetClass(className, context);
    } catch (const TZENTAException& failure) {
        setStatus(rc, failure.GetStatusCode() == TZENTAStatusCode::kNotFound ? CMPI_RC_ERR_NOT_FOUND
                                                                              : CMPI_RC_ERR_FAILED);
        return nullptr;
    }
    if (!cls) {
        setStatus(rc, CMPI_RC_ERR_NOT_FOUND);
        return nullptr;
    }
    try {
        TInstanceVector* instances = new TInstanceVector;
        CMPIInstEnumeration* enumeration = new CMPIInstEnumeration(instances);
        CMPINSPInstanceRegistry::GetRegistrySingleton()->RegisterEnumeration(enumeration);
        cls->EnumerateInstances(TAddToVectorCallback<ICIMInstance>(*instances), true, context);
        setStatus(rc, CMPI_RC_OK);
        return reinterpret_cast<CMPIEnumeration*>(enumeration);
    } catch (const TZENTAException& failure) {
        LogUpcallFailure(std::string("cmpi.nsp: CMPIBroker enumInstance upcall threw ZENTA exception: ") +
                         failure.what());
        setStatus(rc, CMPI_RC_ERR_FAILED);
    } catch (...) {
        LogUpcallFailure("cmpi.nsp: CMPIBroker enumInstance upcall threw an exception");
        setStatus(rc, CMPI_RC_ERROR_SYSTEM);
    }
    return nullptr;
}

// The paths of an instance enumeration's elements, as an enumeration of
// their own. It is registered so that the release after the request frees
// it: a provider never frees what the broker hands it, and a long-running
// host would otherwise keep every names enumeration ever made.
CMPIEnumeration* RegisteredPathsOf(CMPIEnumeration* instances) {
    CMPIEnumeration* paths = PathsOf(InstancesOf(instances));
    CMPINSPInstanceRegistry::GetRegistrySingleton()->RegisterEnumeration(
        reinterpret_cast<CMPIObjectPathEnumeration*>(paths));
    return paths;
}

CMPIEnumeration* mbEnumInstanceNames(const CMPIBroker* broker, const CMPIContext* ctx, const CMPIObjectPath* op,
                                     CMPIStatus* rc) {
    CMPIEnumeration* instances = mbEnumInstances(broker, ctx, op, nullptr, rc);
    if (instances == nullptr) {
        setStatus(rc, CMPI_RC_ERR_FAILED);
        return nullptr;
    }
    return RegisteredPathsOf(instances);
}

CMPIInstance* mbGetInstance(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath* op, const char**,
                            CMPIStatus* rc) {
    const TCIMReference* path = ReferenceOf(op);
    if (path == nullptr || !path->GetNamespace()) {
        setStatus(rc, CMPI_RC_ERR_FAILED);
        return nullptr;
    }
    boost::shared_ptr<ICIMInstance> instance = InstanceAt(*path);
    // The record keeps the instance alive until the registry is cleared, so
    // a provider can use what it asked for after the upcall returns. A path
    // naming no instance still answers OK, with a record over no instance,
    // as providers written for this broker expect.
    CMPIInstance* record = newInstanceRecord(instance);
    CMPINSPInstanceRegistry::GetRegistrySingleton()->RegisterInstance(record);
    setStatus(rc, CMPI_RC_OK);
    return record;
}

CMPIObjectPath* mbCreateInstance(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                 const CMPIInstance* inst, CMPIStatus* rc) {
    if (inst == nullptr || inst->hdl == nullptr) return nullptr;
    boost::shared_ptr<ICIMInstance>& held = *static_cast<boost::shared_ptr<ICIMInstance>*>(inst->hdl);
    boost::shared_ptr<TCMPIInstance> instance = cmpiCast<TCMPIInstance>(held);
    instance->AddToNamespace(TCIMContext());
    setStatus(rc, CMPI_RC_OK);
    return nullptr;
}

CMPIStatus mbModifyInstance(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const CMPIInstance*,
                            const char**) {
    return makeStatus(CMPI_RC_ERR_NOT_SUPPORTED);
}

// Nothing is ever deleted through the broker; the answer only tells whether
// there was something to delete.
CMPIStatus mbDeleteInstance(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath* op) {
    boost::shared_ptr<TCIMReference> path = SharedReferenceOf(op);
    if (!path || !path->GetClass()) return makeStatus(CMPI_RC_ERR_FAILED);
    return makeStatus(InstanceAt(*path) ? CMPI_RC_ERR_NOT_SUPPORTED : CMPI_RC_ERR_FAILED);
}

CMPIData mbGetProperty(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath* op, const char* name,
                       CMPIStatus*) {
    CMPIData result;
    result.type = CMPI_null;
    const TCIMReference* path = ReferenceOf(op);
    if (path == nullptr) return result;
    boost::shared_ptr<ICIMClass> cls = path->GetClass();
    if (!cls) return result;
    boost::shared_ptr<ICIMProperty> property = cls->GetProperty(name, TCIMContext());
    if (!property) return result;
    TCIMValue value = property->GetValue();
    convToCMPIData(value, convToCMPIType(value.GetType(), value.IsArray()), &result);
    return result;
}

CMPIStatus mbSetProperty(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath* op, const char* name,
                         const CMPIValue* value, CMPIType type) {
    CMPIStatus status = makeStatus(CMPI_RC_OK);
    if (type == CMPI_null) return makeStatus(CMPI_RC_ERR_FAILED);
    boost::shared_ptr<TCIMReference> path = SharedReferenceOf(op);
    if (!path) return makeStatus(CMPI_RC_ERR_FAILED);
    boost::shared_ptr<ICIMClass> cls = path->GetClass();
    if (!cls || !cls->GetProperty(name, TCIMContext())) return makeStatus(CMPI_RC_ERR_FAILED);
    boost::shared_ptr<ICIMInstance> instance = InstanceAt(*path);
    if (!instance) return makeStatus(CMPI_RC_ERR_FAILED);
    TCIMValue converted = convertCMPIValue(value, type, &status.rc);
    instance->SetPropertyValue(name, converted, TCIMContext());
    return status;
}

// --- Associations ----------------------------------------------------------

// The instance a walk starts from, or null when the path names none.
boost::shared_ptr<ICIMInstance> WalkStart(const CMPIObjectPath* op) {
    const TCIMReference* path = ReferenceOf(op);
    if (path == nullptr) return boost::shared_ptr<ICIMInstance>();
    return InstanceAt(*path);
}

// A walk that finds nothing is reported as a failure, not as an empty
// enumeration; providers depend on that.
CMPIEnumeration* WalkResult(TInstanceVector* found, CMPIStatus* rc) {
    if (found->empty()) {
        delete found;
        setStatus(rc, CMPI_RC_ERR_FAILED);
        return nullptr;
    }
    setStatus(rc, CMPI_RC_OK);
    CMPIInstEnumeration* enumeration = new CMPIInstEnumeration(found);
    CMPINSPInstanceRegistry::GetRegistrySingleton()->RegisterEnumeration(enumeration);
    return reinterpret_cast<CMPIEnumeration*>(enumeration);
}

CMPIEnumeration* mbAssociators(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath* op,
                               const char* assocClass, const char* resultClass, const char* role,
                               const char* resultRole, const char**, CMPIStatus* rc) {
    boost::shared_ptr<ICIMInstance> start = WalkStart(op);
    if (!start) {
        setStatus(rc, CMPI_RC_ERR_FAILED);
        return nullptr;
    }
    TInstanceVector* found = new TInstanceVector;
    start->EnumerateAssociatedInstances(TAddToVectorCallback<ICIMInstance>(*found), assocClass, resultClass, role,
                                        resultRole, TCIMContext());
    return WalkResult(found, rc);
}

CMPIEnumeration* mbReferences(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath* op,
                              const char* resultClass, const char* role, const char**, CMPIStatus* rc) {
    boost::shared_ptr<ICIMInstance> start = WalkStart(op);
    if (!start) {
        setStatus(rc, CMPI_RC_ERR_FAILED);
        return nullptr;
    }
    TInstanceVector* found = new TInstanceVector;
    start->EnumerateAssociationInstances(TAddToVectorCallback<ICIMInstance>(*found), resultClass, role,
                                         TCIMContext());
    return WalkResult(found, rc);
}

CMPIEnumeration* NamesOfWalk(CMPIEnumeration* instances, CMPIStatus* rc) {
    if (instances == nullptr) {
        setStatus(rc, CMPI_RC_ERR_FAILED);
        return nullptr;
    }
    setStatus(rc, CMPI_RC_OK);
    return RegisteredPathsOf(instances);
}

CMPIEnumeration* mbAssociatorNames(const CMPIBroker* broker, const CMPIContext* ctx, const CMPIObjectPath* op,
                                   const char* assocClass, const char* resultClass, const char* role,
                                   const char* resultRole, CMPIStatus* rc) {
    return NamesOfWalk(mbAssociators(broker, ctx, op, assocClass, resultClass, role, resultRole, nullptr, rc), rc);
}

CMPIEnumeration* mbReferenceNames(const CMPIBroker* broker, const CMPIContext* ctx, const CMPIObjectPath* op,
                                  const char* resultClass, const char* role, CMPIStatus* rc) {
    return NamesOfWalk(mbReferences(broker, ctx, op, resultClass, role, nullptr, rc), rc);
}

// --- Methods ---------------------------------------------------------------

CMPIData mbInvokeMethod(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath* op, const char* method,
                        const CMPIArgs* in, CMPIArgs* out, CMPIStatus* rc) {
    CMPIData result;
    result.type = CMPI_null;
    result.state = CMPI_nullValue;
    result.value.uint64 = 0;
    boost::shared_ptr<TCIMReference> path = SharedReferenceOf(op);
    boost::shared_ptr<TCMPIInstance> instance;
    if (path && path->GetClass()) instance = cmpiCast<TCMPIInstance>(InstanceAt(*path));
    // Both argument lists must be usable: the call reads one and copies the
    // other, and a null handle would be followed blindly otherwise.
    if (!instance || in == nullptr || out == nullptr || in->hdl == nullptr || out->hdl == nullptr) {
        setStatus(rc, CMPI_RC_ERR_FAILED);
        return result;
    }
    // The output parameters come back in `in` (the call replaces its map by
    // the outputs); `out` is left as it was. Providers depend on this wiring.
    TCIMContext outCopy(*static_cast<TCIMContext*>(out->hdl));
    TCIMValue value = instance->InvokeMethod(method, *static_cast<TCIMContext*>(in->hdl), outCopy);
    convToCMPIData(value, convToCMPIType(value.GetType(), value.IsArray()), &result);
    setStatus(rc, CMPI_RC_OK);
    return result;
}

// --- Threads and indications: accepted and ignored -------------------------

CMPIContext* mbPrepareAttachThread(const CMPIBroker*, const CMPIContext*) { return nullptr; }

CMPIStatus mbAttachThread(const CMPIBroker*, const CMPIContext*) { return makeStatus(CMPI_RC_OK); }

CMPIStatus mbDetachThread(const CMPIBroker*, const CMPIContext*) { return makeStatus(CMPI_RC_OK); }

CMPIStatus mbDeliverIndication(const CMPIBroker*, const CMPIContext*, const char*, const CMPIInstance*) {
    return makeStatus(CMPI_RC_OK);
}

CMPIBrokerFT brokerFtab = {
    0,
    100,
    "ZENTA",
    mbPrepareAttachThread,
    mbAttachThread,
    mbDetachThread,
    mbDeliverIndication,
    {mbEnumInstanceNames},
    mbGetInstance,
    mbCreateInstance,
    mbModifyInstance,
    mbDeleteInstance,
    nullptr,
    {mbEnumInstances},
    mbAssociators,
    mbAssociatorNames,
    mbReferences,
    mbReferenceNames,
    mbInvokeMethod,
    mbSetProperty,
    mbGetProperty,
};

}  // namespace

CMPIBrokerFT* cmpiBrokerFt = &brokerFtab;
