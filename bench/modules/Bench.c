/* The benchmark provider BenchItem: serves Bench_Item with
 * bench_item_count instances of five properties each (string key, uint32,
 * uint64, string, date-time). The benchmark sets the count through dlsym
 * before it enumerates; a whole process (zenta --providers) sets it with
 * the environment variable ZENTA_BENCH_ITEMS. The date-time is made once
 * per request and set on every instance, as a provider that stamps a whole
 * answer would. */
#include <stdio.h>
#include <stdlib.h>

#include "BenchItems.h"

static const CMPIBroker* itemBroker;

unsigned int bench_item_count = 1000;

static CMPIStatus BenchItem_Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    (void)mi; (void)ctx; (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIInstance* makeItem(const char* ns, unsigned int index, CMPIDateTime* stamp) {
    char id[32];
    CMPIObjectPath* op = CMNewObjectPath(itemBroker, ns, "Bench_Item", NULL);
    snprintf(id, sizeof(id), "item%u", index);
    CMAddKey(op, "Id", id, CMPI_chars);
    return setBenchProperties(CMNewInstance(itemBroker, op, NULL), index, stamp);
}

static CMPIStatus BenchItem_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                          const CMPIObjectPath* ref, const char** properties) {
    const char* ns = CMGetCharPtr(CMGetNameSpace(ref, NULL));
    CMPIDateTime* stamp = CMNewDateTimeFromChars(itemBroker, "20240102030405.000000+000", NULL);
    const char* items = getenv("ZENTA_BENCH_ITEMS");
    unsigned int i;
    (void)mi; (void)ctx; (void)properties;
    if (items != NULL) bench_item_count = (unsigned int)strtoul(items, NULL, 10);
    for (i = 0; i < bench_item_count; ++i) {
        CMPIInstance* inst = makeItem(ns, i, stamp);
        if (inst == NULL) CMReturn(CMPI_RC_ERR_FAILED);
        CMReturnInstance(rslt, inst);
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus BenchItem_Unsupported(void) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus BenchItem_EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                              const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    return BenchItem_Unsupported();
}

static CMPIStatus BenchItem_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                        const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)properties;
    return BenchItem_Unsupported();
}

static CMPIStatus BenchItem_CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                           const CMPIObjectPath* ref, const CMPIInstance* inst) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst;
    return BenchItem_Unsupported();
}

static CMPIStatus BenchItem_ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                           const CMPIObjectPath* ref, const CMPIInstance* inst,
                                           const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst; (void)properties;
    return BenchItem_Unsupported();
}

static CMPIStatus BenchItem_DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                           const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    return BenchItem_Unsupported();
}

static CMPIStatus BenchItem_ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const char* lang, const char* query) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)lang; (void)query;
    return BenchItem_Unsupported();
}

CMInstanceMIStub(BenchItem_, BenchItem, itemBroker, CMNoHook)
