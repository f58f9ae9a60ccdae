/* Crash_ItemProvider: enumerating Crash_Item dereferences a null pointer, getting
 * one never returns. The tool must survive both and name the provider. */
#include <unistd.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

static const CMPIBroker* crashBroker;

static CMPIStatus Crash_Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                CMPIBoolean terminating) { CMReturn(CMPI_RC_OK); }

static CMPIStatus Crash_EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                          const CMPIObjectPath* ref) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus Crash_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const char** properties) {
    volatile int* nowhere = NULL;
    *nowhere = 1;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Crash_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char** properties) {
    for (;;) pause();
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Crash_CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref,
                                       const CMPIInstance* inst) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus Crash_ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const CMPIInstance* inst,
                                       const char** properties) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus Crash_DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus Crash_ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                  const CMPIObjectPath* ref, const char* lang,
                                  const char* query) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

CMInstanceMIStub(Crash_, Crash_ItemProvider, crashBroker, CMNoHook)
