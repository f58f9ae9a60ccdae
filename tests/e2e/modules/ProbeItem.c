/* Probe_ItemProvider: two fixed Probe_Item instances and three methods:
 * Echo(IN string Text, OUT string Reply), Fail(), which always fails, and
 * Wait(IN uint32 Milliseconds), which takes its time.
 * Part of the test module Probe, served through zenta --providers. */
#define _POSIX_C_SOURCE 200809L

#include <stdio.h>
#include <string.h>
#include <time.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

static const CMPIBroker* itemBroker;
static const char* const kIds[] = {"one", "two"};

static CMPIInstance* makeItem(const char* ns, CMPIUint32 index, CMPIStatus* rc) {
    CMPIObjectPath* op = CMNewObjectPath(itemBroker, ns, "Probe_Item", rc);
    CMPIInstance* inst;
    CMPIUint32 size = index + 1;
    if (op == NULL) return NULL;
    CMAddKey(op, "Id", kIds[index], CMPI_chars);
    inst = CMNewInstance(itemBroker, op, rc);
    if (inst != NULL) CMSetProperty(inst, "Size", &size, CMPI_uint32);
    return inst;
}

static CMPIStatus Item_Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    (void)mi; (void)ctx; (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Item_EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                         const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus Item_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char** properties) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    const char* ns = CMGetCharPtr(CMGetNameSpace(ref, NULL));
    CMPIUint32 i;
    (void)mi; (void)ctx; (void)properties;
    for (i = 0; i < 2; ++i) CMReturnInstance(rslt, makeItem(ns, i, &rc));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Item_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                   const CMPIObjectPath* ref, const char** properties) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    CMPIData id = CMGetKey(ref, "Id", &rc);
    CMPIUint32 i;
    (void)mi; (void)ctx; (void)properties;
    if (id.type != CMPI_string || id.value.string == NULL) CMReturn(CMPI_RC_ERR_INVALID_PARAMETER);
    for (i = 0; i < 2; ++i) {
        if (strcmp(CMGetCharPtr(id.value.string), kIds[i]) == 0) {
            CMReturnInstance(rslt, makeItem("root/probe", i, &rc));
            CMReturnDone(rslt);
            CMReturn(CMPI_RC_OK);
        }
    }
    CMReturn(CMPI_RC_ERR_NOT_FOUND);
}

static CMPIStatus Item_CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const CMPIInstance* inst) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus Item_ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const CMPIInstance* inst, const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst; (void)properties;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus Item_DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus Item_ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                 const CMPIObjectPath* ref, const char* lang, const char* query) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)lang; (void)query;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMInstanceMIStub(Item_, Probe_ItemProvider, itemBroker, CMNoHook)

static CMPIStatus Item_MethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    (void)mi; (void)ctx; (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Item_InvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                                    CMPIArgs* out) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    CMPIData text;
    char reply[128];
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    if (strcmp(method, "Fail") == 0) CMReturn(CMPI_RC_ERR_FAILED);
    if (strcmp(method, "Wait") == 0) {
        CMPIData milliseconds = CMGetArg(in, "Milliseconds", &rc);
        struct timespec pause = {0, 0};
        if (milliseconds.type == CMPI_uint32) {
            pause.tv_sec = milliseconds.value.uint32 / 1000;
            pause.tv_nsec = (long)(milliseconds.value.uint32 % 1000) * 1000000L;
        }
        nanosleep(&pause, NULL);
        CMReturn(CMPI_RC_OK);
    }
    if (strcmp(method, "Echo") != 0) CMReturn(CMPI_RC_ERR_METHOD_NOT_FOUND);
    text = CMGetArg(in, "Text", &rc);
    snprintf(reply, sizeof(reply), "echo:%s",
             text.type == CMPI_string && text.value.string != NULL ? CMGetCharPtr(text.value.string) : "");
    CMAddArg(out, "Reply", reply, CMPI_chars);
    CMReturn(CMPI_RC_OK);
}

CMMethodMIStub(Item_, Probe_ItemProvider, itemBroker, CMNoHook)
