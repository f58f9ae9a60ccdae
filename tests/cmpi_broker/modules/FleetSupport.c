#include "FleetSupport.h"

#include <string.h>

CMPIObjectPath* fleetPath(const CMPIBroker* broker, const char* className, const char* key) {
    CMPIObjectPath* op = CMNewObjectPath(broker, "root/fleet", className, NULL);
    if (key != NULL) CMAddKey(op, strcmp(className, FLEET_DRIVER) == 0 ? "Name" : "Id", key, CMPI_chars);
    return op;
}
