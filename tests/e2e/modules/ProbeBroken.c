/* Probe_BrokenProvider: every enumeration of Probe_Broken fails, so that
 * the tool's report of a provider failure can be tested. */
#include <stddef.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

static CMPIStatus Broken_Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    (void)mi; (void)ctx; (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Broken_Unsupported(void) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus Broken_EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                           const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    return Broken_Unsupported();
}

static CMPIStatus Broken_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)properties;
    CMReturn(CMPI_RC_ERR_FAILED);
}

static CMPIStatus Broken_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)properties;
    CMReturn(CMPI_RC_ERR_FAILED);
}

static CMPIStatus Broken_CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                        const CMPIObjectPath* ref, const CMPIInstance* inst) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst;
    return Broken_Unsupported();
}

static CMPIStatus Broken_ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                        const CMPIObjectPath* ref, const CMPIInstance* inst,
                                        const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst; (void)properties;
    return Broken_Unsupported();
}

static CMPIStatus Broken_DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                        const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    return Broken_Unsupported();
}

static CMPIStatus Broken_ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                   const CMPIObjectPath* ref, const char* lang, const char* query) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)lang; (void)query;
    return Broken_Unsupported();
}

static const CMPIBroker* brokenBroker;

CMInstanceMIStub(Broken_, Probe_BrokenProvider, brokenBroker, CMNoHook)
