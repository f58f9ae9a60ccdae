/* RoadA serves Road_Item (and returns one stray Road_Sub with it); RoadB serves Road_Sub
 * and Road_Leaf. Counters show how often factories and MI functions ran. */
#include <stdio.h>
#include <string.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

static const CMPIBroker* roadBroker;

int road_factory_calls;
int road_enum_calls;
int road_broker_checks;

static CMPIInstance* makeInstance(const CMPIBroker* broker, const char* ns, const char* cls, const char* id,
                                  CMPIUint32 count) {
    CMPIObjectPath* op = CMNewObjectPath(broker, ns, cls, NULL);
    CMPIInstance* inst;
    CMAddKey(op, "Id", id, CMPI_chars);
    inst = CMNewInstance(broker, op, NULL);
    CMSetProperty(inst, "Count", &count, CMPI_uint32);
    return inst;
}

static CMPIStatus RoadA_Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                CMPIBoolean terminating) { CMReturn(CMPI_RC_OK); }

static CMPIStatus RoadA_EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                          const CMPIObjectPath* ref) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus RoadA_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const char** properties) {
    const char* cls = CMGetCharPtr(CMGetClassName(ref, NULL));
    const char* ns = CMGetCharPtr(CMGetNameSpace(ref, NULL));
    ++road_enum_calls;
    if (strcmp(cls, "Road_Item") == 0) {
        CMReturnInstance(rslt, makeInstance(roadBroker, ns, "Road_Item", "item1", 1));
        CMReturnInstance(rslt, makeInstance(roadBroker, ns, "Road_Item", "item2", 2));
        CMReturnInstance(rslt, makeInstance(roadBroker, ns, "Road_Item", "item3", 3));
        CMReturnInstance(rslt, makeInstance(roadBroker, ns, "Road_Sub", "stray", 99));
    } else if (strcmp(cls, "Road_Sub") == 0) {
        CMReturnInstance(rslt, makeInstance(roadBroker, ns, "Road_Sub", "sub1", 10));
        CMReturnInstance(rslt, makeInstance(roadBroker, ns, "Road_Sub", "sub2", 20));
    } else if (strcmp(cls, "Road_Leaf") == 0) {
        CMReturnInstance(rslt, makeInstance(roadBroker, ns, "Road_Leaf", "leaf1", 30));
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus RoadA_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char** properties) {
    const char* id = CMGetCharPtr(CMGetKey(ref, "Id", NULL).value.string);
    if (strcmp(id, "missing") == 0) CMReturnWithChars(roadBroker, CMPI_RC_ERR_NOT_FOUND, "no such item");
    CMReturnInstance(rslt, makeInstance(roadBroker, "root/road", "Road_Item", id, (CMPIUint32)strlen(id)));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus RoadA_CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref,
                                       const CMPIInstance* inst) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus RoadA_ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const CMPIInstance* inst,
                                       const char** properties) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus RoadA_DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus RoadA_ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                  const CMPIObjectPath* ref, const char* lang,
                                  const char* query) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static void RoadA_Init(const CMPIBroker* broker) {
    ++road_factory_calls;
    if (broker != NULL && broker->bft != NULL && strcmp(broker->bft->brokerName, "ZENTA") == 0) ++road_broker_checks;
}

CMInstanceMIStub(RoadA_, RoadA, roadBroker, RoadA_Init(roadBroker))

/* Echo(IN Text, OUT Reply, IN/OUT Counter, IN/OUT tally): Reply = "echo:"
 * + Text, Counter + 1, tally + 1. A Text of "fail" makes the call fail. */
static CMPIStatus RoadA_MethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx,
                                      CMPIBoolean terminating) { CMReturn(CMPI_RC_OK); }

static CMPIStatus RoadA_InvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                                     CMPIArgs* out) {
    CMPIData text = CMGetArg(in, "Text", NULL);
    CMPIData counter = CMGetArg(in, "Counter", NULL);
    CMPIData tally = CMGetArg(in, "tally", NULL);
    const char* said = text.type == CMPI_string && text.value.string != NULL ? CMGetCharPtr(text.value.string) : "";
    char reply[256];
    CMPIUint32 next;
    if (strcmp(method, "Echo") != 0) CMReturn(CMPI_RC_ERR_METHOD_NOT_FOUND);
    if (strcmp(said, "fail") == 0) CMReturn(CMPI_RC_ERR_FAILED);
    snprintf(reply, sizeof(reply), "echo:%s", said);
    CMAddArg(out, "Reply", reply, CMPI_chars);
    next = (counter.type == CMPI_uint32 ? counter.value.uint32 : 0) + 1;
    CMAddArg(out, "Counter", &next, CMPI_uint32);
    next = (tally.type == CMPI_uint32 ? tally.value.uint32 : 0) + 1;
    CMAddArg(out, "tally", &next, CMPI_uint32);
    CMReturnData(rslt, &next, CMPI_uint32);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMMethodMIStub(RoadA_, RoadA, roadBroker, CMNoHook)

/* RoadB shares RoadA's MI, made by a factory of its own. */
CMPIInstanceMI* RoadB_Create_InstanceMI(const CMPIBroker* broker, const CMPIContext* ctx, CMPIStatus* rc) {
    return RoadA_Create_InstanceMI(broker, ctx, rc);
}
