#include "cmpiResult.h"

#include "cmpiStatus.h"

using NVURZENTA20::ICIMInstance;
using NVURZENTA20::TCIMContext;

namespace {

// A result record and its cell, made and freed together.
// The record is the base of what it is made with: see TInstanceRecord.
struct TResultRecord : CMPIResult {
    TResultRecord() : CMPIResult(), cell(nullptr) {
        hdl = &cell;
        ft = cmpiResultFt;
    }
    TResultCell cell;
};

}  // namespace

CMPIResult* newResultRecord()
{
    return new TResultRecord;
}

void deleteResultRecord(CMPIResult* result)
{
    delete static_cast<TResultRecord*>(result);
}

boost::shared_ptr<ICIMInstance> resultInstance(const CMPIResult* result)
{
    const TResultCell cell = *static_cast<const TResultCell*>(result->hdl);
    if (cell == nullptr) {
        return boost::shared_ptr<ICIMInstance>();
    }
    return *static_cast<const boost::shared_ptr<ICIMInstance>*>(cell);
}

namespace {

// Data, object paths and the end mark are dropped: the library only asks
// providers for instances and method calls.
CMPIStatus resultReturnData(const CMPIResult*, const CMPIValue*, const CMPIType)
{
    return makeStatus(CMPI_RC_OK);
}

CMPIStatus resultReturnObjectPath(const CMPIResult*, const CMPIObjectPath*)
{
    return makeStatus(CMPI_RC_OK);
}

CMPIStatus resultReturnDone(const CMPIResult*)
{
    return makeStatus(CMPI_RC_OK);
}

// Only the last instance returned stays in the cell.
CMPIStatus resultReturnInstance(const CMPIResult* result, const CMPIInstance* inst)
{
    *static_cast<TResultCell*>(result->hdl) = inst->hdl;
    return makeStatus(CMPI_RC_OK);
}

// The instance must come from the broker's factory: filing it goes through
// TCMPIInstance::AddToNamespace to the enumeration in progress.
CMPIStatus resultReturnEnumInstance(const CMPIResult*, const CMPIInstance* inst)
{
    (*static_cast<boost::shared_ptr<ICIMInstance>*>(inst->hdl))->AddToNamespace(TCIMContext());
    return makeStatus(CMPI_RC_OK);
}

CMPIResultFT resultFT = {
    100,
    nullptr,  // release
    nullptr,  // clone
    resultReturnData,
    resultReturnInstance,
    resultReturnObjectPath,
    resultReturnDone,
};

CMPIResultFT enumInstanceResultFT = {
    100,
    nullptr,  // release
    nullptr,  // clone
    resultReturnData,
    resultReturnEnumInstance,
    resultReturnObjectPath,
    resultReturnDone,
};

}  // namespace

CMPIResultFT* cmpiResultFt = &resultFT;
CMPIResultFT* cmpiEnumInstanceResultFt = &enumInstanceResultFT;
