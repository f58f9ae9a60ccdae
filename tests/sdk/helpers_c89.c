/* zentaProvider.h included first and alone, as a C89 provider under
 * -pedantic -Werror includes it: the build of this file is itself a check. */
#include "zentaProvider.h"

#include "helpers_c89.h"

int c89UnsignedOf(CMPIData data, CMPIUint64* value) {
    return zentaUnsignedOf(data, value);
}

const char* c89StringOf(CMPIData data) {
    return zentaStringOf(data);
}

const char* c89NamespaceOf(const CMPIObjectPath* ref, const char* fallback) {
    return zentaNamespaceOf(ref, fallback);
}

static const CMPIBroker* broker;

ZENTA_READ_ONLY_INSTANCE_MI(Probe_)

static CMPIStatus Probe_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)properties;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Probe_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)properties;
    CMReturn(CMPI_RC_ERR_NOT_FOUND);
}

CMInstanceMIStub(Probe_, Probe, broker, CMNoHook)

ZENTA_METHOD_MI_CLEANUP(Probe_)

static CMPIStatus Probe_InvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                                     CMPIArgs* out) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)method; (void)in; (void)out;
    CMReturn(CMPI_RC_OK);
}

CMMethodMIStub(Probe_, Probe, broker, CMNoHook)

CMPIInstanceMI* c89ReadOnlyInstanceMI(void) {
    return Probe_Create_InstanceMI(NULL, NULL, NULL);
}
