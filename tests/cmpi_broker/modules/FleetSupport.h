/* Shared by the fleet's providers: paths in root/fleet and the instance MI
 * functions they do not serve. */
#ifndef FLEET_SUPPORT_H
#define FLEET_SUPPORT_H

#include <stddef.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

#define FLEET_CAR "Fleet_Car"
#define FLEET_DRIVER "Fleet_Driver"

/* A path of `className` in root/fleet, keyed (Name for drivers, else Id) unless `key` is null. */
CMPIObjectPath* fleetPath(const CMPIBroker* broker, const char* className, const char* key);

/* The instance MI functions a provider does not serve (all but the
 * enumeration and the get; the ENUMERATION_ONLY variant serves no get). */
#define FLEET_UNSERVED_INSTANCE_FUNCTIONS(pfx)                                                                   \
    static CMPIStatus pfx##Cleanup(CMPIInstanceMI* mi, const CMPIContext* c, CMPIBoolean t) { CMReturn(CMPI_RC_OK); } \
    static CMPIStatus pfx##EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* c, const CMPIResult* r,      \
                                             const CMPIObjectPath* op) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); } \
    static CMPIStatus pfx##CreateInstance(CMPIInstanceMI* mi, const CMPIContext* c, const CMPIResult* r,         \
        const CMPIObjectPath* op, const CMPIInstance* i) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }                \
    static CMPIStatus pfx##ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* c, const CMPIResult* r,         \
        const CMPIObjectPath* op, const CMPIInstance* i, const char** p) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); } \
    static CMPIStatus pfx##DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* c, const CMPIResult* r,         \
                                          const CMPIObjectPath* op) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }    \
    static CMPIStatus pfx##ExecQuery(CMPIInstanceMI* mi, const CMPIContext* c, const CMPIResult* r,              \
        const CMPIObjectPath* op, const char* lang, const char* query) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }
#define FLEET_ENUMERATION_ONLY_FUNCTIONS(pfx)                                                                   \
    FLEET_UNSERVED_INSTANCE_FUNCTIONS(pfx)                                                                      \
    static CMPIStatus pfx##GetInstance(CMPIInstanceMI* mi, const CMPIContext* c, const CMPIResult* r,            \
        const CMPIObjectPath* op, const char** p) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

#endif
