/* Probe_ItemProvider: two Probe_Item instances and methods Echo(IN Text, OUT Reply),
 * Fail() and Wait(IN Seconds). Probe_BrokenProvider shares its MI: every request for
 * Probe_Broken fails, so that the tool's report of a provider failure can be tested. */
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "zentaProvider.h"

static const CMPIBroker* itemBroker;
static const char* const kIds[] = {"one", "two"};

static int isBroken(const CMPIObjectPath* ref) {
    return strcmp(CMGetCharPtr(CMGetClassName(ref, NULL)), "Probe_Broken") == 0;
}

static CMPIInstance* makeItem(const char* ns, CMPIUint32 index) {
    CMPIObjectPath* op = CMNewObjectPath(itemBroker, ns, "Probe_Item", NULL);
    CMPIInstance* inst;
    CMPIUint32 size = index + 1;
    CMAddKey(op, "Id", kIds[index], CMPI_chars);
    inst = CMNewInstance(itemBroker, op, NULL);
    CMSetProperty(inst, "Size", &size, CMPI_uint32);
    return inst;
}

static CMPIStatus Item_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char** properties) {
    CMPIUint32 i;
    if (isBroken(ref)) CMReturn(CMPI_RC_ERR_FAILED);
    for (i = 0; i < 2; ++i) CMReturnInstance(rslt, makeItem(CMGetCharPtr(CMGetNameSpace(ref, NULL)), i));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Item_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                   const CMPIObjectPath* ref, const char** properties) {
    CMPIData id = CMGetKey(ref, "Id", NULL);
    CMPIUint32 i;
    if (isBroken(ref)) CMReturn(CMPI_RC_ERR_FAILED);
    for (i = 0; i < 2; ++i) {
        if (strcmp(CMGetCharPtr(id.value.string), kIds[i]) != 0) continue;
        CMReturnInstance(rslt, makeItem("root/probe", i));
        CMReturnDone(rslt);
        CMReturn(CMPI_RC_OK);
    }
    CMReturn(CMPI_RC_ERR_NOT_FOUND);
}

ZENTA_READ_ONLY_INSTANCE_MI(Item_)

CMInstanceMIStub(Item_, Probe_ItemProvider, itemBroker, CMNoHook)

CMPIInstanceMI* Probe_BrokenProvider_Create_InstanceMI(const CMPIBroker* broker, const CMPIContext* ctx,
                                                       CMPIStatus* rc) {
    return Probe_ItemProvider_Create_InstanceMI(broker, ctx, rc);
}

ZENTA_METHOD_MI_CLEANUP(Item_)

static CMPIStatus Item_InvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                                    CMPIArgs* out) {
    CMPIData arg;
    char reply[128];
    if (strcmp(method, "Fail") == 0) CMReturnWithChars(itemBroker, CMPI_RC_ERR_ACCESS_DENIED, "cannot open the vault");
    if (strcmp(method, "Wait") == 0) {
        arg = CMGetArg(in, "Seconds", NULL);
        sleep(arg.type == CMPI_uint32 ? arg.value.uint32 : 0);
        CMReturn(CMPI_RC_OK);
    }
    if (strcmp(method, "Echo") != 0) CMReturn(CMPI_RC_ERR_METHOD_NOT_FOUND);
    arg = CMGetArg(in, "Text", NULL);
    snprintf(reply, sizeof(reply), "echo:%s",
             arg.type == CMPI_string && arg.value.string != NULL ? CMGetCharPtr(arg.value.string) : "");
    CMAddArg(out, "Reply", reply, CMPI_chars);
    CMReturn(CMPI_RC_OK);
}

CMMethodMIStub(Item_, Probe_ItemProvider, itemBroker, CMNoHook)
