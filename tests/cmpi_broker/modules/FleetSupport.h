/* Shared by the broker test modules: the fleet's classes and keys, the
 * instance MI functions the test providers do not serve, and one-line text
 * reports of what the broker answered, which the tests compare. */
#ifndef FLEET_SUPPORT_H
#define FLEET_SUPPORT_H

#include <stddef.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

#define FLEET_NAMESPACE "root/fleet"
#define FLEET_CAR "Fleet_Car"
#define FLEET_DRIVER "Fleet_Driver"
#define FLEET_ASSIGNMENT "Fleet_Assignment"

#define FLEET_REPORT_SIZE 2048

typedef struct {
    char text[FLEET_REPORT_SIZE];
} FleetReport;

/* Appends one word to the report, separated from the last by a blank. */
void reportWord(FleetReport* report, const char* format, ...)
#ifdef __GNUC__
    __attribute__((format(printf, 2, 3)))
#endif
    ;

/* "label=RC", then for an enumeration ":" and its elements: the values of
 * `keyName` (a property of instances, a key of paths) joined by commas, or
 * their count when `keyName` is null. */
void reportEnumeration(FleetReport* report, const char* label, CMPIEnumeration* enumeration, CMPIStatus rc,
                       const char* keyName);

/* "null" for a datum of type CMPI_null, "uint32:<value>" for an unsigned
 * 32-bit integer, "type<code>" otherwise. */
void reportData(FleetReport* report, const char* label, CMPIData data);

/* The key of a class: "Name" for drivers, "Id" for everything else. */
const char* fleetKeyOf(const char* className);

/* A factory path of `className` in the fleet namespace, keyed by `key`
 * when it is not null. */
CMPIObjectPath* fleetPath(const CMPIBroker* broker, const char* className, const char* key);

/* A string value of `data`, or "" when it holds none. */
const char* fleetText(CMPIData data);

/* Makes every upcall that takes an object path with `op` and reports each
 * answer: enum, names, get, prop (Wheels), set (Mileage), delete, assoc,
 * assocnames, refs, refnames and, when the caller has argument objects to
 * lend, invoke (Service, with visits = 5 in `out`). */
void fleetCheckPath(const CMPIBroker* broker, const CMPIContext* ctx, const CMPIObjectPath* op, const CMPIArgs* in,
                    CMPIArgs* out, FleetReport* report);

/* The instance MI functions of a provider that only enumerates and gets:
 * cleanup succeeds, everything else is not supported. */
#define FLEET_UNSERVED_INSTANCE_FUNCTIONS(pfx)                                                                   \
    static CMPIStatus pfx##Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {       \
        (void)mi; (void)ctx; (void)terminating;                                                                 \
        CMReturn(CMPI_RC_OK);                                                                                   \
    }                                                                                                           \
    static CMPIStatus pfx##EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt, \
                                             const CMPIObjectPath* ref) {                                       \
        (void)mi; (void)ctx; (void)rslt; (void)ref;                                                             \
        CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);                                                                    \
    }                                                                                                           \
    static CMPIStatus pfx##CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,    \
                                          const CMPIObjectPath* ref, const CMPIInstance* inst) {                \
        (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst;                                                 \
        CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);                                                                    \
    }                                                                                                           \
    static CMPIStatus pfx##ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,    \
                                          const CMPIObjectPath* ref, const CMPIInstance* inst,                  \
                                          const char** properties) {                                           \
        (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst; (void)properties;                               \
        CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);                                                                    \
    }                                                                                                           \
    static CMPIStatus pfx##DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,    \
                                          const CMPIObjectPath* ref) {                                          \
        (void)mi; (void)ctx; (void)rslt; (void)ref;                                                             \
        CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);                                                                    \
    }                                                                                                           \
    static CMPIStatus pfx##ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,         \
                                     const CMPIObjectPath* ref, const char* lang, const char* query) {          \
        (void)mi; (void)ctx; (void)rslt; (void)ref; (void)lang; (void)query;                                    \
        CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);                                                                    \
    }

/* A get-instance function for providers whose instances are found by
 * enumeration only. */
#define FLEET_UNSERVED_GET_INSTANCE(pfx)                                                                         \
    static CMPIStatus pfx##GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,       \
                                       const CMPIObjectPath* ref, const char** properties) {                    \
        (void)mi; (void)ctx; (void)rslt; (void)ref; (void)properties;                                           \
        CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);                                                                    \
    }

#endif
