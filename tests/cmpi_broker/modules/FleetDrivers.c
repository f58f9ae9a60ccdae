/* FleetDrivers serves Fleet_Driver: ann, bob and cid. */
#include "FleetSupport.h"

static const CMPIBroker* driversBroker;

FLEET_UNSERVED_INSTANCE_FUNCTIONS(Drivers_)
FLEET_UNSERVED_GET_INSTANCE(Drivers_)

static CMPIStatus Drivers_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                        const CMPIObjectPath* ref, const char** properties) {
    static const char* const names[] = {"ann", "bob", "cid"};
    size_t i;
    (void)mi; (void)ctx; (void)ref; (void)properties;
    for (i = 0; i < sizeof(names) / sizeof(names[0]); ++i) {
        CMPIUint32 age = (CMPIUint32)(30 + 10 * i);
        CMPIInstance* inst = CMNewInstance(driversBroker, fleetPath(driversBroker, FLEET_DRIVER, names[i]), NULL);
        CMSetProperty(inst, "Age", &age, CMPI_uint32);
        CMReturnInstance(rslt, inst);
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMInstanceMIStub(Drivers_, FleetDrivers, driversBroker, CMNoHook)
