/* FleetCars serves Fleet_Car (car1, car2, car3) and its method
 * Service(visits IN/OUT, receipt OUT): visits + 1 and "serviced <Id>".
 * A test's fleet_call_hook runs inside the next call (every call while
 * fleet_call_hook_stays) with the context, path and arguments handed to it. */
#include <stdio.h>
#include <string.h>

#include "FleetSupport.h"

static const CMPIBroker* carsBroker;

void (*fleet_call_hook)(const CMPIContext* ctx, const CMPIObjectPath* ref, const CMPIArgs* in, CMPIArgs* out);
int fleet_call_hook_stays;
int fleet_service_calls;

static const char* const kCars[][2] = {{"car1", "roadster"}, {"car2", "van"}, {"car3", "truck"}};

static const char* keyOf(const CMPIObjectPath* ref) {
    CMPIData id = CMGetKey(ref, "Id", NULL);
    return id.type == CMPI_string && id.value.string != NULL ? CMGetCharPtr(id.value.string) : "";
}

static CMPIInstance* makeCar(size_t index) {
    CMPIInstance* inst = CMNewInstance(carsBroker, fleetPath(carsBroker, FLEET_CAR, kCars[index][0]), NULL);
    CMSetProperty(inst, "Model", kCars[index][1], CMPI_chars);
    return inst;
}

/* Cleared first: the hook's upcalls reach this provider again. */
static void runHook(const CMPIContext* ctx, const CMPIObjectPath* ref, const CMPIArgs* in, CMPIArgs* out) {
    void (*hook)(const CMPIContext*, const CMPIObjectPath*, const CMPIArgs*, CMPIArgs*) = fleet_call_hook;
    if (!fleet_call_hook_stays) fleet_call_hook = NULL;
    if (hook != NULL) hook(ctx, ref, in, out);
}

FLEET_UNSERVED_INSTANCE_FUNCTIONS(Cars_)

static CMPIStatus Cars_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char** properties) {
    size_t i;
    runHook(ctx, ref, NULL, NULL);
    for (i = 0; i < 3; ++i) CMReturnInstance(rslt, makeCar(i));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Cars_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                   const CMPIObjectPath* ref, const char** properties) {
    const char* id = keyOf(ref);
    size_t i;
    runHook(ctx, ref, NULL, NULL);
    for (i = 0; i < 3 && strcmp(kCars[i][0], id) != 0; ++i) {
    }
    if (i == 3) CMReturn(CMPI_RC_ERR_NOT_FOUND);
    CMReturnInstance(rslt, makeCar(i));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMInstanceMIStub(Cars_, FleetCars, carsBroker, CMNoHook)

static CMPIStatus Cars_MethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Cars_InvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                                    CMPIArgs* out) {
    CMPIData visits = CMGetArg(in, "visits", NULL);
    CMPIUint32 next = (visits.type == CMPI_uint32 ? visits.value.uint32 : 0) + 1;
    char receipt[64];
    if (strcmp(method, "Service") != 0) CMReturn(CMPI_RC_ERR_METHOD_NOT_FOUND);
    ++fleet_service_calls;
    runHook(ctx, ref, in, out);
    snprintf(receipt, sizeof(receipt), "serviced %s", keyOf(ref));
    CMAddArg(out, "visits", &next, CMPI_uint32);
    CMAddArg(out, "receipt", receipt, CMPI_chars);
    CMReturnData(rslt, &next, CMPI_uint32);
    CMReturn(CMPI_RC_OK);
}

CMMethodMIStub(Cars_, FleetCars, carsBroker, CMNoHook)
