/* FleetDrivers serves Fleet_Driver: ann, bob and cid. */
#include "FleetSupport.h"

static const CMPIBroker* driversBroker;

FLEET_ENUMERATION_ONLY_FUNCTIONS(Drivers_)

static CMPIStatus Drivers_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                        const CMPIObjectPath* ref, const char** properties) {
    CMReturnInstance(rslt, CMNewInstance(driversBroker, fleetPath(driversBroker, FLEET_DRIVER, "ann"), NULL));
    CMReturnInstance(rslt, CMNewInstance(driversBroker, fleetPath(driversBroker, FLEET_DRIVER, "bob"), NULL));
    CMReturnInstance(rslt, CMNewInstance(driversBroker, fleetPath(driversBroker, FLEET_DRIVER, "cid"), NULL));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMInstanceMIStub(Drivers_, FleetDrivers, driversBroker, CMNoHook)
