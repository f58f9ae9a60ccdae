/* The benchmark provider BenchCaller: asked for Bench_Caller, it walks the
 * names of every Bench_Item instance through its broker and returns no
 * instance of its own. bench_caller_seen tells the benchmark how many
 * names the walk met, so that it can check the upcall delivered them all. */
#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

static const CMPIBroker* callerBroker;

unsigned int bench_caller_seen;

static CMPIStatus BenchCaller_Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    (void)mi; (void)ctx; (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus BenchCaller_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                            const CMPIObjectPath* ref, const char** properties) {
    const char* ns = CMGetCharPtr(CMGetNameSpace(ref, NULL));
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    CMPIObjectPath* items = CMNewObjectPath(callerBroker, ns, "Bench_Item", &rc);
    CMPIEnumeration* names = CBEnumInstanceNames(callerBroker, ctx, items, &rc);
    (void)mi; (void)properties;
    bench_caller_seen = 0;
    if (names == NULL) CMReturn(CMPI_RC_ERR_FAILED);
    while (CMHasNext(names, NULL)) {
        CMPIData name = CMGetNext(names, NULL);
        if (name.type == CMPI_ref && name.value.ref != NULL) ++bench_caller_seen;
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus BenchCaller_Unsupported(void) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus BenchCaller_EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                                const CMPIResult* rslt, const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    return BenchCaller_Unsupported();
}

static CMPIStatus BenchCaller_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                          const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)properties;
    return BenchCaller_Unsupported();
}

static CMPIStatus BenchCaller_CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                             const CMPIObjectPath* ref, const CMPIInstance* inst) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst;
    return BenchCaller_Unsupported();
}

static CMPIStatus BenchCaller_ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                             const CMPIObjectPath* ref, const CMPIInstance* inst,
                                             const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst; (void)properties;
    return BenchCaller_Unsupported();
}

static CMPIStatus BenchCaller_DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                             const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    return BenchCaller_Unsupported();
}

static CMPIStatus BenchCaller_ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                        const CMPIObjectPath* ref, const char* lang, const char* query) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)lang; (void)query;
    return BenchCaller_Unsupported();
}

CMInstanceMIStub(BenchCaller_, BenchCaller, callerBroker, CMNoHook)
