/* FleetProbe serves Fleet_Probe (p1, p2) and its method Run, which makes
 * the broker upcalls that its parameter "upcall" names while the provider
 * is being asked, and describes the answers in the output "report". The
 * other parameters choose the object path (origin, target, key, role) or
 * the log message (severity, id, text, chars). */
#include <pthread.h>
#include <stdio.h>
#include <string.h>

#include "FleetSupport.h"

static const CMPIBroker* probeBroker;

typedef void (*Scenario)(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report);

static const char* argText(const CMPIArgs* in, const char* name, const char* fallback) {
    CMPIData data = CMGetArg(in, name, NULL);
    if (data.type != CMPI_string || data.value.string == NULL) return fallback;
    return CMGetCharPtr(data.value.string);
}

/* ---- Object paths naming car1, by where the provider got them ------------ */

static CMPIObjectPath* pathOfInstance(const CMPIContext* ctx) {
    CMPIInstance* inst = CBGetInstance(probeBroker, ctx, fleetPath(probeBroker, FLEET_CAR, "car1"), NULL, NULL);
    return inst == NULL ? NULL : CMGetObjectPath(inst, NULL);
}

static CMPIObjectPath* firstName(const CMPIContext* ctx) {
    CMPIEnumeration* names = CBEnumInstanceNames(probeBroker, ctx, fleetPath(probeBroker, FLEET_CAR, NULL), NULL);
    return names == NULL ? NULL : CMGetNext(names, NULL).value.ref;
}

static CMPIObjectPath* pathByOrigin(const CMPIContext* ctx, const char* origin) {
    if (strcmp(origin, "factory") == 0) return fleetPath(probeBroker, FLEET_CAR, "car1");
    if (strcmp(origin, "instance") == 0) return pathOfInstance(ctx);
    if (strcmp(origin, "names") == 0) return firstName(ctx);
    return NULL;
}

/* ---- Scenarios ------------------------------------------------------------- */

static void runPaths(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    CMPIObjectPath* op = pathByOrigin(ctx, argText(in, "origin", ""));
    if (op == NULL) {
        reportWord(report, "path=none");
        return;
    }
    fleetCheckPath(probeBroker, ctx, op, in, out, report);
}

/* A path record whose handle is null, as a careless provider may pass. */
static void runNullPath(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    CMPIObjectPath nullPath;
    nullPath.hdl = NULL;
    nullPath.ft = fleetPath(probeBroker, FLEET_CAR, NULL)->ft;
    fleetCheckPath(probeBroker, ctx, &nullPath, in, out, report);
}

static void runMissing(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    fleetCheckPath(probeBroker, ctx, fleetPath(probeBroker, FLEET_CAR, argText(in, "key", "car8")), in, out, report);
}

static void runEnum(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    const char* target = argText(in, "target", FLEET_CAR);
    CMPIObjectPath* op = fleetPath(probeBroker, target, NULL);
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    (void)out;
    reportEnumeration(report, "enum", CBEnumInstances(probeBroker, ctx, op, NULL, &rc), rc, fleetKeyOf(target));
    reportEnumeration(report, "names", CBEnumInstanceNames(probeBroker, ctx, op, &rc), rc, fleetKeyOf(target));
}

static void runAssoc(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    const char* target = argText(in, "target", FLEET_CAR);
    const char* role = argText(in, "role", "");
    const char* farKey = strcmp(target, FLEET_CAR) == 0 ? "Name" : "Id";
    CMPIObjectPath* op = fleetPath(probeBroker, target, argText(in, "key", "car1"));
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    (void)out;
    reportEnumeration(report, "assoc", CBAssociators(probeBroker, ctx, op, "", "", role, "", NULL, &rc), rc, farKey);
    reportEnumeration(report, "assocnames", CBAssociatorNames(probeBroker, ctx, op, "", "", role, "", &rc), rc,
                      farKey);
    reportEnumeration(report, "refs", CBReferences(probeBroker, ctx, op, "", role, NULL, &rc), rc, NULL);
    reportEnumeration(report, "refnames", CBReferenceNames(probeBroker, ctx, op, "", role, &rc), rc, NULL);
}

/* The provider lends its own argument objects to the call (it cannot make
 * new ones): its output object carries the input, visits = 5, and its input
 * object stands as the call's output object. */
static void runInvoke(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    CMPIObjectPath* op = fleetPath(probeBroker, FLEET_CAR, argText(in, "key", "car1"));
    CMPIStatus rc = {CMPI_RC_ERR_NOT_SUPPORTED, NULL};
    CMPIUint32 visits = 5;
    unsigned before = (unsigned)CMGetArgCount(in, NULL);
    CMAddArg(out, "visits", &visits, CMPI_uint32);
    CBInvokeMethod(probeBroker, ctx, op, "Service", out, (CMPIArgs*)in, &rc);
    reportWord(report, "invoke=%d", (int)rc.rc);
    reportWord(report, "in=%u->%u", before, (unsigned)CMGetArgCount(in, NULL));
    reportWord(report, "upcall=%s", argText(in, "upcall", "?"));
}

static void runInvokeWithNullArgs(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    CMPIObjectPath* op = fleetPath(probeBroker, FLEET_CAR, "car1");
    CMPIArgs nullArgs;
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    CMPIUint32 visits = 5;
    nullArgs.hdl = NULL;
    nullArgs.ft = out->ft;
    CMAddArg(out, "visits", &visits, CMPI_uint32);
    CBInvokeMethod(probeBroker, ctx, op, "Service", &nullArgs, (CMPIArgs*)in, &rc);
    reportWord(report, "innull=%d", (int)rc.rc);
    rc.rc = CMPI_RC_OK;
    CBInvokeMethod(probeBroker, ctx, op, "Service", out, &nullArgs, &rc);
    reportWord(report, "outnull=%d", (int)rc.rc);
    rc.rc = CMPI_RC_OK;
    CBInvokeMethod(probeBroker, ctx, op, "Service", &nullArgs, &nullArgs, &rc);
    reportWord(report, "bothnull=%d", (int)rc.rc);
}

/* Creates the car named by "key", then makes every path upcall with the
 * new instance's own path. */
static void runCreate(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    CMPIObjectPath* op = fleetPath(probeBroker, FLEET_CAR, argText(in, "key", "car9"));
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    CMPIInstance* inst = CMNewInstance(probeBroker, op, &rc);
    CMPIObjectPath* created;
    CMSetProperty(inst, "Model", "prototype", CMPI_chars);
    rc.rc = CMPI_RC_ERR_FAILED;
    created = CBCreateInstance(probeBroker, ctx, op, inst, &rc);
    reportWord(report, "create=%d:%s", (int)rc.rc, created == NULL ? "null" : "path");
    reportWord(report, "modify=%d", (int)CBModifyInstance(probeBroker, ctx, op, inst, NULL).rc);
    fleetCheckPath(probeBroker, ctx, CMGetObjectPath(inst, NULL), in, out, report);
}

static void runProperty(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    CMPIObjectPath* op = fleetPath(probeBroker, FLEET_CAR, "car1");
    CMPIUint32 mileage = 5;
    (void)in; (void)out;
    reportData(report, "wheels", CBGetProperty(probeBroker, ctx, op, "Wheels", NULL));
    reportData(report, "nope", CBGetProperty(probeBroker, ctx, op, "Nope", NULL));
    reportWord(report, "set=%d", (int)CBSetProperty(probeBroker, ctx, op, "Mileage", &mileage, CMPI_uint32).rc);
    reportWord(report, "setnull=%d", (int)CBSetProperty(probeBroker, ctx, op, "Mileage", &mileage, CMPI_null).rc);
    reportWord(report, "setnope=%d", (int)CBSetProperty(probeBroker, ctx, op, "Nope", &mileage, CMPI_uint32).rc);
}

static void runContext(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    CMPIData entry = CMGetContextEntry(ctx, "CMPIInvocationFlags", &rc);
    (void)in; (void)out;
    reportWord(report, "entry=%d", (int)rc.rc);
    reportData(report, "value", entry);
    reportWord(report, "count=%u", (unsigned)CMGetContextEntryCount(ctx, NULL));
}

typedef struct {
    const CMPIContext* context;
    FleetReport report;
} ThreadWork;

static void* enumerateOnThread(void* argument) {
    ThreadWork* work = (ThreadWork*)argument;
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    reportWord(&work->report, "attach=%d", (int)CBAttachThread(probeBroker, work->context).rc);
    reportEnumeration(&work->report, "thread",
                      CBEnumInstanceNames(probeBroker, work->context, fleetPath(probeBroker, FLEET_CAR, NULL), &rc),
                      rc, "Id");
    reportWord(&work->report, "detach=%d", (int)CBDetachThread(probeBroker, work->context).rc);
    return NULL;
}

/* The caller waits for the thread: enumerations must not run on two
 * threads at once. */
static void runThreads(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    ThreadWork work;
    pthread_t thread;
    CMPIInstance* indication = CMNewInstance(probeBroker, fleetPath(probeBroker, FLEET_CAR, "car1"), NULL);
    (void)in; (void)out;
    work.context = CBPrepareAttachThread(probeBroker, ctx);
    work.report.text[0] = '\0';
    reportWord(report, "prepare=%s", work.context == NULL ? "null" : "context");
    if (pthread_create(&thread, NULL, enumerateOnThread, &work) != 0 || pthread_join(thread, NULL) != 0) {
        reportWord(report, "thread=none");
    } else {
        reportWord(report, "%s", work.report.text);
    }
    reportWord(report, "deliver=%d", (int)CBDeliverIndication(probeBroker, ctx, FLEET_NAMESPACE, indication).rc);
}

static void runLog(const CMPIContext* ctx, const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    CMPIData severity = CMGetArg(in, "severity", NULL);
    const char* chars = argText(in, "chars", NULL);
    CMPIString* string = chars == NULL ? NULL : CMNewString(probeBroker, chars, NULL);
    CMPIStatus rc = CMLogMessage(probeBroker, severity.type == CMPI_uint32 ? (int)severity.value.uint32 : 0,
                                 argText(in, "id", NULL), argText(in, "text", NULL), string);
    (void)ctx; (void)out;
    reportWord(report, "log=%d", (int)rc.rc);
}

static const struct {
    const char* name;
    Scenario run;
} kScenarios[] = {
    {"paths", runPaths},       {"nullpath", runNullPath},  {"missing", runMissing},
    {"enum", runEnum},         {"assoc", runAssoc},        {"invoke", runInvoke},
    {"invokenull", runInvokeWithNullArgs},                 {"create", runCreate},
    {"property", runProperty}, {"context", runContext},    {"threads", runThreads},
    {"log", runLog},
};

/* ---- The MIs -------------------------------------------------------------- */

FLEET_UNSERVED_INSTANCE_FUNCTIONS(Probe_)

static CMPIInstance* makeProbe(const char* id) {
    return CMNewInstance(probeBroker, fleetPath(probeBroker, "Fleet_Probe", id), NULL);
}

static CMPIStatus Probe_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)ref; (void)properties;
    CMReturnInstance(rslt, makeProbe("p1"));
    CMReturnInstance(rslt, makeProbe("p2"));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Probe_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)properties;
    CMReturnInstance(rslt, makeProbe(fleetText(CMGetKey(ref, "Id", NULL))));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMInstanceMIStub(Probe_, FleetProbe, probeBroker, CMNoHook)

static CMPIStatus Probe_MethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    (void)mi; (void)ctx; (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Probe_InvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                                     CMPIArgs* out) {
    const char* upcall = argText(in, "upcall", "");
    FleetReport report;
    size_t i;
    (void)mi; (void)rslt; (void)ref;
    if (strcmp(method, "Run") != 0) CMReturn(CMPI_RC_ERR_METHOD_NOT_FOUND);
    report.text[0] = '\0';
    for (i = 0; i < sizeof(kScenarios) / sizeof(kScenarios[0]); ++i) {
        if (strcmp(kScenarios[i].name, upcall) != 0) continue;
        kScenarios[i].run(ctx, in, out, &report);
        CMAddArg(out, "report", report.text, CMPI_chars);
        CMReturn(CMPI_RC_OK);
    }
    CMReturn(CMPI_RC_ERR_INVALID_PARAMETER);
}

CMMethodMIStub(Probe_, FleetProbe, probeBroker, CMNoHook)
