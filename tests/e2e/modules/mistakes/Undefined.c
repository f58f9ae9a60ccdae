/* Undefined_ItemProvider calls a function that no library defines: loaded lazily, the
 * module would take the host down at its first call; it must be left out before. */
#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

void zentaTestDefinedNowhere(void);

static const CMPIBroker* undefinedBroker;

static CMPIStatus Undefined_Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                CMPIBoolean terminating) { CMReturn(CMPI_RC_OK); }

static CMPIStatus Undefined_EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                          const CMPIObjectPath* ref) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus Undefined_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const char** properties) {
    zentaTestDefinedNowhere();
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Undefined_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char** properties) {
    CMReturn(CMPI_RC_ERR_NOT_FOUND);
}

static CMPIStatus Undefined_CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref,
                                       const CMPIInstance* inst) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus Undefined_ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const CMPIInstance* inst,
                                       const char** properties) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus Undefined_DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus Undefined_ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                  const CMPIObjectPath* ref, const char* lang,
                                  const char* query) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

CMInstanceMIStub(Undefined_, Undefined_ItemProvider, undefinedBroker, CMNoHook)
