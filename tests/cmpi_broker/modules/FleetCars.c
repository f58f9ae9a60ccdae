/* FleetCars serves Fleet_Car (car1, car2, car3) and its method
 * Service(visits IN/OUT, receipt OUT): visits + 1 and "serviced <Id>".
 * When a test sets fleet_check_driver_path, the next getInstance or Service
 * call first makes every path upcall with the path the driver handed to it
 * and leaves the report in fleet_driver_path_report. */
#include <stdio.h>
#include <string.h>

#include "FleetSupport.h"

static const CMPIBroker* carsBroker;

int fleet_check_driver_path;
char fleet_driver_path_report[FLEET_REPORT_SIZE];
int fleet_service_calls;

typedef struct {
    const char* id;
    const char* model;
    CMPIUint32 mileage;
} CarRecord;

static const CarRecord kCars[] = {{"car1", "roadster", 100}, {"car2", "van", 200}, {"car3", "truck", 300}};

static const CarRecord* findCar(const char* id) {
    size_t i;
    for (i = 0; i < sizeof(kCars) / sizeof(kCars[0]); ++i) {
        if (strcmp(kCars[i].id, id) == 0) return &kCars[i];
    }
    return NULL;
}

static CMPIInstance* makeCar(const CarRecord* car) {
    CMPIInstance* inst = CMNewInstance(carsBroker, fleetPath(carsBroker, FLEET_CAR, car->id), NULL);
    CMSetProperty(inst, "Model", car->model, CMPI_chars);
    CMSetProperty(inst, "Mileage", &car->mileage, CMPI_uint32);
    return inst;
}

/* Runs once per request of the test: the upcalls reach this provider again. */
static void checkDriverPath(const CMPIContext* ctx, const CMPIObjectPath* ref, const CMPIArgs* in, CMPIArgs* out) {
    FleetReport report;
    if (!fleet_check_driver_path) return;
    fleet_check_driver_path = 0;
    report.text[0] = '\0';
    fleetCheckPath(carsBroker, ctx, ref, in, out, &report);
    snprintf(fleet_driver_path_report, sizeof(fleet_driver_path_report), "%s", report.text);
}

FLEET_UNSERVED_INSTANCE_FUNCTIONS(Cars_)

static CMPIStatus Cars_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char** properties) {
    size_t i;
    (void)mi; (void)ctx; (void)ref; (void)properties;
    for (i = 0; i < sizeof(kCars) / sizeof(kCars[0]); ++i) CMReturnInstance(rslt, makeCar(&kCars[i]));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Cars_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                   const CMPIObjectPath* ref, const char** properties) {
    const CarRecord* car;
    (void)mi; (void)properties;
    checkDriverPath(ctx, ref, NULL, NULL);
    car = findCar(fleetText(CMGetKey(ref, "Id", NULL)));
    if (car == NULL) CMReturn(CMPI_RC_ERR_NOT_FOUND);
    CMReturnInstance(rslt, makeCar(car));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMInstanceMIStub(Cars_, FleetCars, carsBroker, CMNoHook)

static CMPIStatus Cars_MethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    (void)mi; (void)ctx; (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Cars_InvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                                    CMPIArgs* out) {
    CMPIData visits = CMGetArg(in, "visits", NULL);
    CMPIUint32 next = (visits.type == CMPI_uint32 ? visits.value.uint32 : 0) + 1;
    char receipt[64];
    (void)mi;
    if (strcmp(method, "Service") != 0) CMReturn(CMPI_RC_ERR_METHOD_NOT_FOUND);
    ++fleet_service_calls;
    checkDriverPath(ctx, ref, in, out);
    snprintf(receipt, sizeof(receipt), "serviced %s", fleetText(CMGetKey(ref, "Id", NULL)));
    CMAddArg(out, "visits", &next, CMPI_uint32);
    CMAddArg(out, "receipt", receipt, CMPI_chars);
    CMReturnData(rslt, &next, CMPI_uint32);
    CMReturn(CMPI_RC_OK);
}

CMMethodMIStub(Cars_, FleetCars, carsBroker, CMNoHook)
