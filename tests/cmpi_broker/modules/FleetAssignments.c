/* FleetAssignments serves the association Fleet_Assignment: car1 is driven
 * by ann and bob, car2 by bob; car3 and cid have no assignment. */
#include "FleetSupport.h"

static const CMPIBroker* assignmentsBroker;

static CMPIInstance* makeAssignment(const char* car, const char* driver) {
    CMPIObjectPath* carPath = fleetPath(assignmentsBroker, FLEET_CAR, car);
    CMPIObjectPath* driverPath = fleetPath(assignmentsBroker, FLEET_DRIVER, driver);
    CMPIObjectPath* op = fleetPath(assignmentsBroker, "Fleet_Assignment", NULL);
    CMAddKey(op, "Car", &carPath, CMPI_ref);
    CMAddKey(op, "Driver", &driverPath, CMPI_ref);
    return CMNewInstance(assignmentsBroker, op, NULL);
}

FLEET_ENUMERATION_ONLY_FUNCTIONS(Assignments_)

static CMPIStatus Assignments_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                            const CMPIObjectPath* ref, const char** properties) {
    CMReturnInstance(rslt, makeAssignment("car1", "ann"));
    CMReturnInstance(rslt, makeAssignment("car1", "bob"));
    CMReturnInstance(rslt, makeAssignment("car2", "bob"));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMInstanceMIStub(Assignments_, FleetAssignments, assignmentsBroker, CMNoHook)
