/* A third-party style module: AcmeWidgetProvider serves Acme_Widget, a class
 * of the module's own MOF that derives from CIM_LogicalElement of the DMTF
 * schema, with properties of its own and inherited ones (Caption). */
#include <string.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

static const CMPIBroker* widgetBroker;
static const char* const kWidgets[] = {"w1", "w2"};

static CMPIInstance* makeWidget(const char* ns, CMPIUint32 index) {
    CMPIObjectPath* op = CMNewObjectPath(widgetBroker, ns, "Acme_Widget", NULL);
    CMPIInstance* inst;
    CMPIUint32 teeth = 10 * (index + 1);
    CMAddKey(op, "WidgetId", kWidgets[index], CMPI_chars);
    inst = CMNewInstance(widgetBroker, op, NULL);
    CMSetProperty(inst, "Caption", "An Acme widget", CMPI_chars);
    CMSetProperty(inst, "Teeth", &teeth, CMPI_uint32);
    return inst;
}

static CMPIStatus Widget_Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Widget_EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                           const CMPIObjectPath* ref) {
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus Widget_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const char** properties) {
    CMPIUint32 i;
    for (i = 0; i < 2; ++i) CMReturnInstance(rslt, makeWidget(CMGetCharPtr(CMGetNameSpace(ref, NULL)), i));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Widget_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char** properties) {
    CMPIData id = CMGetKey(ref, "WidgetId", NULL);
    CMPIUint32 i;
    for (i = 0; i < 2 && id.value.string != NULL; ++i) {
        if (strcmp(CMGetCharPtr(id.value.string), kWidgets[i]) != 0) continue;
        CMReturnInstance(rslt, makeWidget(CMGetCharPtr(CMGetNameSpace(ref, NULL)), i));
        CMReturnDone(rslt);
        CMReturn(CMPI_RC_OK);
    }
    CMReturn(CMPI_RC_ERR_NOT_FOUND);
}

static CMPIStatus Widget_CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                        const CMPIObjectPath* ref, const CMPIInstance* inst) {
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus Widget_ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                        const CMPIObjectPath* ref, const CMPIInstance* inst,
                                        const char** properties) {
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus Widget_DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                        const CMPIObjectPath* ref) {
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus Widget_ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                   const CMPIObjectPath* ref, const char* lang, const char* query) {
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMInstanceMIStub(Widget_, AcmeWidgetProvider, widgetBroker, CMNoHook)
