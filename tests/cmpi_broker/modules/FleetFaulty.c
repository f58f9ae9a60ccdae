/* FleetFaulty serves Fleet_Faulty and its method Fail. Each of its calls
 * first fails the way fleet_faulty_mode says, then answers with its one
 * instance, "calm":
 *   1  calls fleet_faulty_hook (a test callback that throws),
 *   2  asks the factory for an instance of a class nobody defines,
 *   3  asks the factory for an array too large to exist. */
#include "FleetSupport.h"

static const CMPIBroker* faultyBroker;

int fleet_faulty_mode;
void (*fleet_faulty_hook)(void);

static void misbehave(void) {
    switch (fleet_faulty_mode) {
    case 1:
        if (fleet_faulty_hook != NULL) fleet_faulty_hook();
        break;
    case 2:
        CMNewInstance(faultyBroker, fleetPath(faultyBroker, "Fleet_Nowhere", "x"), NULL);
        break;
    case 3:
        CMNewArray(faultyBroker, 0xFFFFFFFFu, CMPI_uint32, NULL);
        break;
    default:
        break;
    }
}

static CMPIInstance* makeCalm(void) {
    return CMNewInstance(faultyBroker, fleetPath(faultyBroker, "Fleet_Faulty", "calm"), NULL);
}

FLEET_UNSERVED_INSTANCE_FUNCTIONS(Faulty_)

static CMPIStatus Faulty_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)ref; (void)properties;
    misbehave();
    CMReturnInstance(rslt, makeCalm());
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Faulty_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)ref; (void)properties;
    misbehave();
    CMReturnInstance(rslt, makeCalm());
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMInstanceMIStub(Faulty_, FleetFaulty, faultyBroker, CMNoHook)

static CMPIStatus Faulty_MethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    (void)mi; (void)ctx; (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Faulty_InvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                                      CMPIArgs* out) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)method; (void)in; (void)out;
    misbehave();
    CMReturn(CMPI_RC_OK);
}

CMMethodMIStub(Faulty_, FleetFaulty, faultyBroker, CMNoHook)
