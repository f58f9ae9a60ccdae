/* Undefined_ItemProvider calls a function that no library defines: loaded lazily, the
 * module would take the host down at its first call; it must be left out before. */
#include "zentaProvider.h"

void zentaTestDefinedNowhere(void);

static const CMPIBroker* undefinedBroker;

static CMPIStatus Undefined_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const char** properties) {
    zentaTestDefinedNowhere();
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Undefined_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char** properties) {
    CMReturn(CMPI_RC_ERR_NOT_FOUND);
}

ZENTA_READ_ONLY_INSTANCE_MI(Undefined_)

CMInstanceMIStub(Undefined_, Undefined_ItemProvider, undefinedBroker, CMNoHook)
