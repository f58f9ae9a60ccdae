// A provider written in C++ against the C interface, as many are: the same
// stub macros as c_provider.c, compiled as C++17 with -Wall -Wextra -Werror.
// Linked into cmpi_headers_test, which calls it through the fake broker.

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

#include <cstring>

static const CMPIBroker *_broker;

// How often the factories' hook statement ran; read by provider_test.cpp.
extern "C" int cxxSampleHookCalls;
int cxxSampleHookCalls = 0;

static void cxxInit(const CMPIBroker *brkr, const CMPIContext *ctx)
{
    if (brkr == _broker && ctx != nullptr) {
        ++cxxSampleHookCalls;
    }
}

// ------------------------------------------------------------------ instance

static CMPIStatus CxxCleanup(CMPIInstanceMI *, const CMPIContext *,
                             CMPIBoolean)
{
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus CxxEnumInstanceNames(CMPIInstanceMI *, const CMPIContext *,
                                       const CMPIResult *rslt,
                                       const CMPIObjectPath *ref)
{
    CMPIStatus rc = {CMPI_RC_OK, nullptr};
    CMPIObjectPath *op =
        CMNewObjectPath(_broker, CMGetCharPtr(CMGetNameSpace(ref, &rc)),
                        CMGetCharPtr(CMGetClassName(ref, &rc)), &rc);
    if (rc.rc != CMPI_RC_OK) {
        return rc;
    }
    CMAddKey(op, "Name", "only", CMPI_chars);
    CMReturnObjectPath(rslt, op);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus CxxEnumInstances(CMPIInstanceMI *, const CMPIContext *,
                                   const CMPIResult *, const CMPIObjectPath *,
                                   const char **)
{
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus CxxGetInstance(CMPIInstanceMI *, const CMPIContext *,
                                 const CMPIResult *, const CMPIObjectPath *,
                                 const char **)
{
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus CxxCreateInstance(CMPIInstanceMI *, const CMPIContext *,
                                    const CMPIResult *, const CMPIObjectPath *,
                                    const CMPIInstance *)
{
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus CxxModifyInstance(CMPIInstanceMI *, const CMPIContext *,
                                    const CMPIResult *, const CMPIObjectPath *,
                                    const CMPIInstance *, const char **)
{
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus CxxDeleteInstance(CMPIInstanceMI *, const CMPIContext *,
                                    const CMPIResult *, const CMPIObjectPath *)
{
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus CxxExecQuery(CMPIInstanceMI *, const CMPIContext *,
                               const CMPIResult *, const CMPIObjectPath *,
                               const char *, const char *)
{
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

// ------------------------------------------------------------------ property

static CMPIStatus CxxPropertyCleanup(CMPIPropertyMI *, const CMPIContext *,
                                     CMPIBoolean)
{
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus CxxSetProperty(CMPIPropertyMI *, const CMPIContext *,
                                 const CMPIResult *, const CMPIObjectPath *,
                                 const char *, const CMPIData)
{
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus CxxGetProperty(CMPIPropertyMI *, const CMPIContext *,
                                 const CMPIResult *rslt,
                                 const CMPIObjectPath *, const char *name)
{
    if (std::strcmp(name, "Answer") != 0) {
        CMReturnWithChars(_broker, CMPI_RC_ERR_NO_SUCH_PROPERTY, name);
    }
    CMPISint32 answer = 42;
    CMReturnData(rslt, &answer, CMPI_sint32);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

// ----------------------------------------------------------------- factories

CMInstanceMIStub(Cxx, CxxSample, _broker, CMNoHook)

CMPropertyMIStub(Cxx, CxxSample, _broker, cxxInit(brkr, ctx))
