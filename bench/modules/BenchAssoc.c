/* The benchmark provider BenchHubs: one hub (Bench_Hub.Id="hub") linked by
 * Bench_HubSpoke to bench_spoke_count spokes (Bench_Spoke, the five
 * properties of Bench_Item). It serves the three classes, enumerates them
 * and gets any of their instances by its path, as association providers
 * and the providers of their far ends do. The benchmark sets the count
 * through dlsym; a whole process (zenta --providers) sets it with the
 * environment variable ZENTA_BENCH_SPOKES. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "BenchItems.h"
#include "zentaProvider.h"

static const CMPIBroker* hubBroker;

unsigned int bench_spoke_count = 1000;

static const char kHubClass[] = "Bench_Hub";
static const char kSpokeClass[] = "Bench_Spoke";
static const char kLinkClass[] = "Bench_HubSpoke";
static const char kHubId[] = "hub";
static const char kStampText[] = "20240102030405.000000+000";

/* The environment is read once: every get asks for the count. */
static unsigned int spokeCount(void) {
    static int read = 0;
    static const char* spokes = NULL;
    if (!read) {
        spokes = getenv("ZENTA_BENCH_SPOKES");
        read = 1;
    }
    return spokes != NULL ? (unsigned int)strtoul(spokes, NULL, 10) : bench_spoke_count;
}

ZENTA_READ_ONLY_INSTANCE_MI(BenchHubs_)

static CMPIObjectPath* keyedPath(const char* ns, const char* className, const char* id) {
    CMPIObjectPath* op = CMNewObjectPath(hubBroker, ns, className, NULL);
    CMAddKey(op, "Id", id, CMPI_chars);
    return op;
}

static void spokeId(char* id, size_t size, unsigned int index) { snprintf(id, size, "spoke%u", index); }

static CMPIInstance* makeHub(const char* ns) {
    return CMNewInstance(hubBroker, keyedPath(ns, kHubClass, kHubId), NULL);
}

static CMPIInstance* makeSpoke(const char* ns, unsigned int index, CMPIDateTime* stamp) {
    char id[32];
    spokeId(id, sizeof(id), index);
    return setBenchProperties(CMNewInstance(hubBroker, keyedPath(ns, kSpokeClass, id), NULL), index, stamp);
}

static CMPIInstance* makeLink(const char* ns, CMPIObjectPath* hub, unsigned int index) {
    char id[32];
    CMPIObjectPath* spoke;
    CMPIObjectPath* op = CMNewObjectPath(hubBroker, ns, kLinkClass, NULL);
    spokeId(id, sizeof(id), index);
    spoke = keyedPath(ns, kSpokeClass, id);
    CMAddKey(op, "Hub", &hub, CMPI_ref);
    CMAddKey(op, "Spoke", &spoke, CMPI_ref);
    return CMNewInstance(hubBroker, op, NULL);
}

static const char* classOf(const CMPIObjectPath* ref) {
    CMPIString* name = CMGetClassName(ref, NULL);
    return name != NULL ? CMGetCharPtr(name) : "";
}

static CMPIStatus returnOrFail(const CMPIResult* rslt, CMPIInstance* inst) {
    if (inst == NULL) CMReturn(CMPI_RC_ERR_FAILED);
    CMReturnInstance(rslt, inst);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus BenchHubs_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                          const CMPIObjectPath* ref, const char** properties) {
    const char* ns = CMGetCharPtr(CMGetNameSpace(ref, NULL));
    CMPIDateTime* stamp = NULL;
    CMPIObjectPath* hub = NULL;
    unsigned int i, count;
    const char* className = classOf(ref);
    (void)mi; (void)ctx; (void)properties;
    if (strcmp(className, kHubClass) == 0) return returnOrFail(rslt, makeHub(ns));
    if (strcmp(className, kSpokeClass) == 0) stamp = CMNewDateTimeFromChars(hubBroker, kStampText, NULL);
    else hub = keyedPath(ns, kHubClass, kHubId);
    for (i = 0, count = spokeCount(); i < count; ++i) {
        CMPIInstance* inst = stamp != NULL ? makeSpoke(ns, i, stamp) : makeLink(ns, hub, i);
        if (inst == NULL) CMReturn(CMPI_RC_ERR_FAILED);
        CMReturnInstance(rslt, inst);
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

/* The index of the spoke a path names, or -1. */
static long spokeIndexOf(const CMPIObjectPath* ref) {
    static const char kPrefix[] = "spoke";
    CMPIData id = CMGetKey(ref, "Id", NULL);
    const char* digits;
    char* end;
    unsigned long index;
    if (id.type != CMPI_string || id.value.string == NULL) return -1;
    digits = CMGetCharPtr(id.value.string);
    if (strncmp(digits, kPrefix, sizeof(kPrefix) - 1) != 0) return -1;
    digits += sizeof(kPrefix) - 1;
    if (*digits < '0' || *digits > '9') return -1;
    index = strtoul(digits, &end, 10);
    return *end == '\0' && index < spokeCount() ? (long)index : -1;
}

static CMPIStatus BenchHubs_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                        const CMPIObjectPath* ref, const char** properties) {
    const char* ns = CMGetCharPtr(CMGetNameSpace(ref, NULL));
    const char* className = classOf(ref);
    long index;
    (void)mi; (void)ctx; (void)properties;
    if (strcmp(className, kHubClass) == 0) {
        CMPIData id = CMGetKey(ref, "Id", NULL);
        if (id.type != CMPI_string || strcmp(CMGetCharPtr(id.value.string), kHubId) != 0) {
            CMReturn(CMPI_RC_ERR_NOT_FOUND);
        }
        return returnOrFail(rslt, makeHub(ns));
    }
    if (strcmp(className, kSpokeClass) != 0) CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
    index = spokeIndexOf(ref);
    if (index < 0) CMReturn(CMPI_RC_ERR_NOT_FOUND);
    return returnOrFail(rslt, makeSpoke(ns, (unsigned int)index, CMNewDateTimeFromChars(hubBroker, kStampText, NULL)));
}

CMInstanceMIStub(BenchHubs_, BenchHubs, hubBroker, CMNoHook)
