/* Crash_ItemProvider: enumerating Crash_Item dereferences a null pointer, getting
 * one never returns. The tool must survive both and name the provider. */
#include <unistd.h>

#include "zentaProvider.h"

static const CMPIBroker* crashBroker;

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

ZENTA_READ_ONLY_INSTANCE_MI(Crash_)

CMInstanceMIStub(Crash_, Crash_ItemProvider, crashBroker, CMNoHook)
