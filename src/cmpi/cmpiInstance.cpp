#include "cmpiInstance.h"

#include <string>

#include <boost/pointer_cast.hpp>

#include "ICIMClass.h"
#include "CmpiCast.h"
#include "TCMPIInstance.h"
#include "TRootObject.h"
#include "TZENTAException.h"
#include "RecordPool.h"
#include "TAddToVectorCallback.h"
#include "cmpiInstanceRegistry.h"
#include "cmpiObjectPath.h"
#include "cmpiStatus.h"
#include "cmpiValue.h"

using NVURZENTA20::ICIMInstance;
using NVURZENTA20::ICIMProperty;
using NVURZENTA20::TCIMContext;
using NVURZENTA20::TCIMReference;
using NVURZENTA20::TCIMValue;
using NVURZENTA20::TZENTAException;
using NVURZENTA20::TZENTAStatusCode;

std::vector<boost::shared_ptr<ICIMProperty> > allProps;

namespace {

// A record and the holder its handle points at, made and freed together
// in one block: a provider makes one for every instance it returns. The
// record is the base, so that a record's address converts back by
// static_cast.
struct TInstanceRecord : CMPIInstance, TPooledRecord<TInstanceRecord> {
    explicit TInstanceRecord(const boost::shared_ptr<ICIMInstance>& instance) : CMPIInstance(), holder(instance) {
        hdl = &holder;
        ft = cmpiInstanceFt;
    }
    TInstanceHolder holder;
};

}  // namespace

std::size_t keptInstanceRecordBytes()
{
    return TInstanceRecord::KeptBytes();
}

CMPIInstance* newInstanceRecord(const boost::shared_ptr<ICIMInstance>& instance)
{
    return new TInstanceRecord(instance);
}

void deleteInstanceRecord(CMPIInstance* record)
{
    TInstanceRecord* made = static_cast<TInstanceRecord*>(record);
    made->holder.reset();
    delete made;
}

const boost::shared_ptr<ICIMInstance>& instanceOfRecord(const CMPIInstance* record)
{
    return *static_cast<const TInstanceHolder*>(record->hdl);
}

namespace {

// A record of any other instance type gives a null pointer, and using it
// trips the host's assertion handler.
boost::shared_ptr<TCMPIInstance> cmpiInstanceOf(const CMPIInstance* record)
{
    return cmpiCast<TCMPIInstance>(instanceOfRecord(record));
}

// A value the conversion cannot read (a null signed integer or reference,
// for example) must not throw through the provider: a null reads as a
// typed null, anything else as a failure.
CMPIData propertyData(const ICIMProperty& property, CMPIStatus* rc)
{
    const TCIMValue value = property.GetValue();
    CMPIData data = {};
    try {
        convToCMPIData(value, convToCMPIType(value.GetType(), value.IsArray()), &data);
    } catch (const TZENTAException& failure) {
        data.state = CMPI_nullValue;
        setStatus(rc, failure.GetStatusCode() == TZENTAStatusCode::kNullValue ? CMPI_RC_OK : CMPI_RC_ERR_FAILED);
        return data;
    }
    setStatus(rc, CMPI_RC_OK);
    return data;
}

CMPIData missingProperty(CMPIStatus* rc)
{
    setStatus(rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    return makeEmptyData(CMPI_nullValue);
}

// The record and its holder belong to the registry.
CMPIStatus instRelease(CMPIInstance*)
{
    return makeStatus(CMPI_RC_OK);
}

// The clone shares the holder of the record it copies and is not
// registered: it must not outlive the original's registration.
CMPIInstance* instClone(const CMPIInstance* record, CMPIStatus* rc)
{
    CMPIInstance* clone = new CMPIInstance;
    clone->hdl = record->hdl;
    clone->ft = record->ft;
    setStatus(rc, CMPI_RC_OK);
    return clone;
}

CMPIData instGetProperty(const CMPIInstance* record, const char* name, CMPIStatus* rc)
{
    boost::shared_ptr<ICIMProperty> property;
    try {
        property = cmpiInstanceOf(record)->GetProperty(name, TCIMContext());
    } catch (const TZENTAException&) {
        return missingProperty(rc);
    }
    if (!property) {
        return missingProperty(rc);
    }
    return propertyData(*property, rc);
}

CMPICount instGetPropertyCount(const CMPIInstance* record, CMPIStatus* rc)
{
    std::vector<boost::shared_ptr<ICIMProperty> > properties;
    cmpiInstanceOf(record)->EnumerateProperties(TAddToVectorCallback<ICIMProperty>(properties), TCIMContext());
    allProps.swap(properties);
    setStatus(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(allProps.size());
}

// Reads the list of the last counted instance, whichever record asks.
CMPIData instGetPropertyAt(const CMPIInstance*, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    if (index >= allProps.size()) {
        return missingProperty(rc);
    }
    const ICIMProperty& property = *allProps[index];
    const CMPIData data = propertyData(property, rc);
    if (name != nullptr) {
        *name = string2CMPIString(property.GetName());
    }
    return data;
}

void logFailedWrite(const ICIMInstance& instance, const char* name)
{
    std::string className;
    if (boost::shared_ptr<NVURZENTA20::ICIMClass> cls = instance.GetClass(TCIMContext())) {
        className = cls->GetName(TCIMContext());
    }
    NVURZENTA20::TRootObject::GetCoreLogger()->Log(
        NVURZENTA20::ICoreLogger::kTrace,
        std::string("cmpiInstance::instSetProperty failed for: ") + className + " : " + name);
}

// A write the instance refuses with "not found" is passed over; any other
// refusal abandons the provider call that made it. Every property a
// provider sets passes here: the instance is used through the record's own
// reference, not a copy of it.
CMPIStatus instSetProperty(const CMPIInstance* record, const char* name, const CMPIValue* value, CMPIType type)
{
    const TCIMValue converted = convertCMPIValue(value, type, nullptr);
    if (converted.IsNull()) {
        return makeStatus(CMPI_RC_OK);
    }
    ICIMInstance& instance = *instanceOfRecord(record);
    try {
        instance.SetPropertyValue(name, converted, TCIMContext());
    } catch (const TZENTAException& failure) {
        logFailedWrite(instance, name);
        if (failure.GetStatusCode() != TZENTAStatusCode::kNotFound) {
            throw TZENTAException(failure.GetStatusCode(), failure.GetMessage());
        }
    }
    return makeStatus(CMPI_RC_OK);
}

// The path is a registered copy of the instance's reference.
CMPIObjectPath* instGetObjectPath(const CMPIInstance* record, CMPIStatus* rc)
{
    CMPIObjectPath* path = newOwningObjectPath(cmpiInstanceOf(record)->GetReference(TCIMContext()));
    CMPINSPInstanceRegistry::GetRegistrySingleton()->RegisterObjectPath(path);
    setStatus(rc, CMPI_RC_OK);
    return path;
}

CMPIStatus instSetPropertyFilter(CMPIInstance*, const char**, const char**)
{
    return makeStatus(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus instSetObjectPath(CMPIInstance*, const CMPIObjectPath*)
{
    return makeStatus(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIInstanceFT instanceFtab = {
    100,
    instRelease,
    instClone,
    instGetProperty,
    instGetPropertyAt,
    instGetPropertyCount,
    instSetProperty,
    instGetObjectPath,
    instSetPropertyFilter,
    instSetObjectPath,
};

}  // namespace

CMPIInstanceFT* cmpiInstanceFt = &instanceFtab;
