#include "cmpiSelectExp.h"

#include "cmpiStatus.h"

int _check_WQL(CMPI_SelectExp*, CMPIStatus*)
{
    return 0;
}

int _check_CQL(CMPI_SelectExp*, CMPIStatus*)
{
    return 0;
}

namespace {

// The stubs that report write their status without a null test: a
// provider must pass one.
CMPIStatus selxRelease(CMPISelectExp*)
{
    return makeStatus(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPISelectExp* selxClone(const CMPISelectExp*, CMPIStatus* rc)
{
    *rc = makeStatus(CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIBoolean selxEvaluate(const CMPISelectExp*, const CMPIInstance*, CMPIStatus*)
{
    return 0;
}

CMPIString* selxGetString(const CMPISelectExp*, CMPIStatus* rc)
{
    *rc = makeStatus(CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPISelectCond* selxGetDOC(const CMPISelectExp*, CMPIStatus* rc)
{
    *rc = makeStatus(CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPISelectCond* selxGetCOD(const CMPISelectExp*, CMPIStatus* rc)
{
    *rc = makeStatus(CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIBoolean selxEvaluateUsingAccessor(const CMPISelectExp*, CMPIAccessor*, void*, CMPIStatus*)
{
    return 0;
}

CMPISelectExpFT selx_FT = {
    100,
    selxRelease,
    selxClone,
    selxEvaluate,
    selxGetString,
    selxGetDOC,
    selxGetCOD,
    selxEvaluateUsingAccessor,
};

}  // namespace

CMPISelectExpFT* CMPI_SelectExp_Ftab = &selx_FT;
