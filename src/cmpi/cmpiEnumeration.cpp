#include "cmpiEnumeration.h"

#include "cmpiInstance.h"
#include "cmpiObjectPath.h"
#include "cmpiStatus.h"

CMPIInstEnumeration::CMPIInstEnumeration(TInstanceVector* instances) : cursor(0)
{
    hdl = instances;
    ft = cmpiInstEnumerationFt;
}

CMPIObjectPathEnumeration::CMPIObjectPathEnumeration(TReferenceVector* references) : cursor(0)
{
    hdl = references;
    ft = CMPIObjectPathEnumeration_Ftab;
}

namespace {

bool isInstanceEnumeration(const CMPIEnumeration* enumeration)
{
    return enumeration->ft == cmpiInstEnumerationFt;
}

CMPICount& cursorOf(const CMPIEnumeration* enumeration)
{
    if (isInstanceEnumeration(enumeration)) {
        return static_cast<const CMPIInstEnumeration*>(enumeration)->cursor;
    }
    return static_cast<const CMPIObjectPathEnumeration*>(enumeration)->cursor;
}

std::size_t elementCount(const CMPIEnumeration* enumeration)
{
    if (isInstanceEnumeration(enumeration)) {
        return static_cast<const TInstanceVector*>(enumeration->hdl)->size();
    }
    return static_cast<const TReferenceVector*>(enumeration->hdl)->size();
}

}  // namespace

// Path records handed out point at the vector's references, which the
// vector frees.
void deleteEnumeration(CMPIEnumeration* enumeration)
{
    if (isInstanceEnumeration(enumeration)) {
        CMPIInstEnumeration* instances = static_cast<CMPIInstEnumeration*>(enumeration);
        for (CMPIInstance* record : instances->handedOut) {
            deleteInstanceRecord(record);
        }
        delete static_cast<TInstanceVector*>(instances->hdl);
        delete instances;
    } else {
        CMPIObjectPathEnumeration* paths = static_cast<CMPIObjectPathEnumeration*>(enumeration);
        for (CMPIObjectPath* record : paths->handedOut) {
            delete record;
        }
        delete static_cast<TReferenceVector*>(paths->hdl);
        delete paths;
    }
}

namespace {

// The vector and the record are freed with the registry.
CMPIStatus enumRelease(CMPIEnumeration*)
{
    return makeStatus(CMPI_RC_OK);
}

CMPIEnumeration* enumClone(const CMPIEnumeration*, CMPIStatus*)
{
    return nullptr;
}

CMPIBoolean enumHasNext(const CMPIEnumeration* enumeration, CMPIStatus* rc)
{
    setStatus(rc, CMPI_RC_OK);
    return cursorOf(enumeration) < elementCount(enumeration);
}

// Past the end the datum stays typed but null and the cursor stays put.
// The record made for an element is not registered: instance records get
// a holder of their own, path records point at the element itself. The
// enumeration keeps them and frees them with itself.
CMPIData enumGetNext(const CMPIEnumeration* enumeration, CMPIStatus* rc)
{
    const bool instances = isInstanceEnumeration(enumeration);
    CMPIData data = {};
    data.type = instances ? CMPI_instance : CMPI_ref;
    CMPICount& cursor = cursorOf(enumeration);
    if (cursor >= elementCount(enumeration)) {
        setStatus(rc, CMPI_RC_ERR_FAILED);
        return data;
    }
    if (instances) {
        const CMPIInstEnumeration* owner = static_cast<const CMPIInstEnumeration*>(enumeration);
        data.value.inst = newInstanceRecord((*static_cast<const TInstanceVector*>(enumeration->hdl))[cursor]);
        owner->handedOut.push_back(data.value.inst);
    } else {
        const CMPIObjectPathEnumeration* owner = static_cast<const CMPIObjectPathEnumeration*>(enumeration);
        data.value.ref = ref2CMPIObjectPath(*(*static_cast<const TReferenceVector*>(enumeration->hdl))[cursor]);
        owner->handedOut.push_back(data.value.ref);
    }
    ++cursor;
    setStatus(rc, CMPI_RC_OK);
    return data;
}

CMPIArray* enumToArray(const CMPIEnumeration*, CMPIStatus*)
{
    return nullptr;
}

CMPIEnumerationFT instEnumerationFtab = {
    100, enumRelease, enumClone, enumGetNext, enumHasNext, enumToArray,
};

CMPIEnumerationFT objectPathEnumerationFtab = {
    100, enumRelease, enumClone, enumGetNext, enumHasNext, enumToArray,
};

}  // namespace

CMPIEnumerationFT* cmpiInstEnumerationFt = &instEnumerationFtab;
CMPIEnumerationFT* CMPIObjectPathEnumeration_Ftab = &objectPathEnumerationFtab;
