/* The module of the discovery benchmark. It is copied under many names,
 * each copy registering one provider with a name of its own, so it offers
 * the generic factory that serves whichever provider it is asked for. Its
 * instance MI answers every request with "not supported": discovery never
 * calls it. */
#include <stddef.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

static CMPIStatus Disco_Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) {
    (void)mi; (void)ctx; (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Disco_Unsupported(void) { CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); }

static CMPIStatus Disco_EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                          const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    return Disco_Unsupported();
}

static CMPIStatus Disco_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)properties;
    return Disco_Unsupported();
}

static CMPIStatus Disco_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)properties;
    return Disco_Unsupported();
}

static CMPIStatus Disco_CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const CMPIInstance* inst) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst;
    return Disco_Unsupported();
}

static CMPIStatus Disco_ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const CMPIInstance* inst,
                                       const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst; (void)properties;
    return Disco_Unsupported();
}

static CMPIStatus Disco_DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref) {
    (void)mi; (void)ctx; (void)rslt; (void)ref;
    return Disco_Unsupported();
}

static CMPIStatus Disco_ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                  const CMPIObjectPath* ref, const char* lang, const char* query) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)lang; (void)query;
    return Disco_Unsupported();
}

static CMPIInstanceMIFT discoInstanceFT;

static void fillDiscoTable(void) {
    discoInstanceFT.ftVersion = CMPICurrentVersion;
    discoInstanceFT.miVersion = CMPICurrentVersion;
    discoInstanceFT.miName = "Disco";
    discoInstanceFT.cleanup = Disco_Cleanup;
    discoInstanceFT.enumerateInstanceNames = Disco_EnumInstanceNames;
    discoInstanceFT.enumerateInstances = Disco_EnumInstances;
    discoInstanceFT.getInstance = Disco_GetInstance;
    discoInstanceFT.createInstance = Disco_CreateInstance;
    discoInstanceFT.modifyInstance = Disco_ModifyInstance;
    discoInstanceFT.deleteInstance = Disco_DeleteInstance;
    discoInstanceFT.execQuery = Disco_ExecQuery;
}

CMPIInstanceMI* _Generic_Create_InstanceMI(const CMPIBroker* broker, const CMPIContext* ctx,
                                           const char* providerName, CMPIStatus* rc) {
    static CMPIInstanceMI mi = {NULL, &discoInstanceFT};
    (void)broker; (void)ctx; (void)providerName;
    fillDiscoTable();
    if (rc != NULL) {
        rc->rc = CMPI_RC_OK;
        rc->msg = NULL;
    }
    return &mi;
}
