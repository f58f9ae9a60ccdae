/* A test provider module with two providers. RoadA serves Road_Item (and,
 * to exercise the filing rule, also returns one Road_Sub instance while
 * Road_Item is enumerated); RoadB serves Road_Sub and Road_Leaf. Counters
 * let tests see how often the factories and MI functions ran. */
#include <stdio.h>
#include <string.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

static const CMPIBroker* roadABroker;
static const CMPIBroker* roadBBroker;

int road_factory_calls;
int road_enum_calls;
int road_broker_checks;

static CMPIInstance* makeInstance(const CMPIBroker* broker, const char* ns, const char* cls, const char* id,
                                  CMPIUint32 count) {
    CMPIStatus rc;
    CMPIObjectPath* op = CMNewObjectPath(broker, ns, cls, &rc);
    CMPIInstance* inst;
    CMAddKey(op, "Id", id, CMPI_chars);
    inst = CMNewInstance(broker, op, &rc);
    if (inst == NULL) return NULL;
    CMSetProperty(inst, "Count", &count, CMPI_uint32);
    CMSetProperty(inst, "Label", "road", CMPI_chars);
    return inst;
}

/* ---- RoadA: Road_Item ---------------------------------------------------- */

static CMPIStatus RoadA_Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    (void)mi; (void)ctx; (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus RoadA_EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                          const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus RoadA_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const char** properties) {
    const char* ns = CMGetCharPtr(CMGetNameSpace(ref, NULL));
    char id[16];
    int i;
    (void)mi; (void)ctx; (void)properties;
    ++road_enum_calls;
    for (i = 1; i <= 3; ++i) {
        sprintf(id, "item%d", i);
        CMReturnInstance(rslt, makeInstance(roadABroker, ns, "Road_Item", id, (CMPIUint32)i));
    }
    CMReturnInstance(rslt, makeInstance(roadABroker, ns, "Road_Sub", "stray", 99));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus RoadA_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char** properties) {
    CMPIData id = CMGetKey(ref, "Id", NULL);
    const char* text;
    (void)mi; (void)ctx; (void)properties;
    if (id.type != CMPI_string || id.value.string == NULL) CMReturn(CMPI_RC_ERR_INVALID_PARAMETER);
    text = CMGetCharPtr(id.value.string);
    if (strcmp(text, "missing") == 0) CMReturnWithChars(roadABroker, CMPI_RC_ERR_NOT_FOUND, "no such item");
    CMReturnInstance(rslt, makeInstance(roadABroker, "root/road", "Road_Item", text, (CMPIUint32)strlen(text)));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus RoadA_CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const CMPIInstance* inst) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus RoadA_ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const CMPIInstance* inst,
                                       const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst; (void)properties;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus RoadA_DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus RoadA_ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                  const CMPIObjectPath* ref, const char* lang, const char* query) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)lang; (void)query;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static void RoadA_Init(const CMPIBroker* broker) {
    ++road_factory_calls;
    if (broker != NULL && broker->bft != NULL && strcmp(broker->bft->brokerName, "ZENTA") == 0) ++road_broker_checks;
}

CMInstanceMIStub(RoadA_, RoadA, roadABroker, RoadA_Init(roadABroker))

/* Echo(IN Text, OUT Reply, IN/OUT Counter, IN/OUT tally): Reply = "echo:"
 * + Text, Counter + 1, tally + 1. A Text of "fail" makes the call fail. */
static CMPIStatus RoadA_MethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    (void)mi; (void)ctx; (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus RoadA_InvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                                     CMPIArgs* out) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    CMPIData text = CMGetArg(in, "Text", &rc);
    CMPIData counter = CMGetArg(in, "Counter", &rc);
    CMPIData tally = CMGetArg(in, "tally", &rc);
    char reply[256];
    CMPIUint32 next;
    (void)mi; (void)ctx; (void)ref;
    if (strcmp(method, "Echo") != 0) CMReturn(CMPI_RC_ERR_METHOD_NOT_FOUND);
    if (text.type == CMPI_string && text.value.string != NULL) {
        if (strcmp(CMGetCharPtr(text.value.string), "fail") == 0) CMReturn(CMPI_RC_ERR_FAILED);
        snprintf(reply, sizeof(reply), "echo:%s", CMGetCharPtr(text.value.string));
    } else {
        snprintf(reply, sizeof(reply), "echo:");
    }
    CMAddArg(out, "Reply", reply, CMPI_chars);
    next = (counter.type == CMPI_uint32 ? counter.value.uint32 : 0) + 1;
    CMAddArg(out, "Counter", &next, CMPI_uint32);
    next = (tally.type == CMPI_uint32 ? tally.value.uint32 : 0) + 1;
    CMAddArg(out, "tally", &next, CMPI_uint32);
    CMReturnData(rslt, &next, CMPI_uint32);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMMethodMIStub(RoadA_, RoadA, roadABroker, CMNoHook)

/* ---- RoadB: Road_Sub and Road_Leaf, with a hand-written factory ---------- */

static CMPIStatus RoadB_Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    (void)mi; (void)ctx; (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus RoadB_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const char** properties) {
    const char* cls = CMGetCharPtr(CMGetClassName(ref, NULL));
    const char* ns = CMGetCharPtr(CMGetNameSpace(ref, NULL));
    (void)mi; (void)ctx; (void)properties;
    ++road_enum_calls;
    if (strcmp(cls, "Road_Sub") == 0) {
        CMReturnInstance(rslt, makeInstance(roadBBroker, ns, "Road_Sub", "sub1", 10));
        CMReturnInstance(rslt, makeInstance(roadBBroker, ns, "Road_Sub", "sub2", 20));
    } else if (strcmp(cls, "Road_Leaf") == 0) {
        CMReturnInstance(rslt, makeInstance(roadBBroker, ns, "Road_Leaf", "leaf1", 30));
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus RoadB_Unsupported(void) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus RoadB_EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                          const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    return RoadB_Unsupported();
}

static CMPIStatus RoadB_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)properties;
    return RoadB_Unsupported();
}

static CMPIStatus RoadB_CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const CMPIInstance* inst) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst;
    return RoadB_Unsupported();
}

static CMPIStatus RoadB_ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const CMPIInstance* inst,
                                       const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst; (void)properties;
    return RoadB_Unsupported();
}

static CMPIStatus RoadB_DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    return RoadB_Unsupported();
}

static CMPIStatus RoadB_ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                  const CMPIObjectPath* ref, const char* lang, const char* query) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)lang; (void)query;
    return RoadB_Unsupported();
}

static CMPIInstanceMIFT roadBInstanceFT;

static void fillRoadBTable(void) {
    roadBInstanceFT.ftVersion = CMPICurrentVersion;
    roadBInstanceFT.miVersion = CMPICurrentVersion;
    roadBInstanceFT.miName = "RoadB";
    roadBInstanceFT.cleanup = RoadB_Cleanup;
    roadBInstanceFT.enumerateInstanceNames = RoadB_EnumInstanceNames;
    roadBInstanceFT.enumerateInstances = RoadB_EnumInstances;
    roadBInstanceFT.getInstance = RoadB_GetInstance;
    roadBInstanceFT.createInstance = RoadB_CreateInstance;
    roadBInstanceFT.modifyInstance = RoadB_ModifyInstance;
    roadBInstanceFT.deleteInstance = RoadB_DeleteInstance;
    roadBInstanceFT.execQuery = RoadB_ExecQuery;
}

CMPIInstanceMI* RoadB_Create_InstanceMI(const CMPIBroker* broker, const CMPIContext* ctx) {
    static CMPIInstanceMI mi = {NULL, &roadBInstanceFT};
    (void)ctx;
    fillRoadBTable();
    roadBBroker = broker;
    ++road_factory_calls;
    return &mi;
}
