/* ZENTA_OSProcessProvider: links the operating system with each process.
 * The links are built from the paths the broker enumerates for the two
 * classes, so they always name what the other providers serve. */
#define _DEFAULT_SOURCE

#include <string.h>
#include <sys/utsname.h>

#include "SystemProvider.h"

static const CMPIBroker* linkBroker;

static CMPIInstance* makeLink(const char* ns, CMPIObjectPath* system, CMPIObjectPath* process, CMPIStatus* rc) {
    CMPIObjectPath* op = CMNewObjectPath(linkBroker, ns, SYSTEM_LINK_CLASS, rc);
    if (op == NULL) return NULL;
    CMAddKey(op, "GroupComponent", &system, CMPI_ref);
    CMAddKey(op, "PartComponent", &process, CMPI_ref);
    /* The new instance takes its key properties from the path. */
    return CMNewInstance(linkBroker, op, rc);
}

/* The paths of a class's instances, through the broker. */
static CMPIEnumeration* instanceNames(const CMPIContext* ctx, const char* ns, const char* className, CMPIStatus* rc) {
    CMPIObjectPath* op = CMNewObjectPath(linkBroker, ns, className, rc);
    if (op == NULL) return NULL;
    return CBEnumInstanceNames(linkBroker, ctx, op, rc);
}

ZENTA_READ_ONLY_INSTANCE_MI(Link_)

static CMPIStatus Link_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char** properties) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    const char* ns = zentaNamespaceOf(ref, SYSTEM_NAMESPACE);
    CMPIEnumeration* systems;
    CMPIEnumeration* processes;
    CMPIData system;
    (void)mi; (void)properties;
    systems = instanceNames(ctx, ns, SYSTEM_OPERATING_SYSTEM_CLASS, &rc);
    if (systems == NULL) return rc;
    if (!CMHasNext(systems, NULL)) CMReturn(CMPI_RC_ERR_NOT_FOUND);
    system = CMGetNext(systems, NULL);
    processes = instanceNames(ctx, ns, SYSTEM_PROCESS_CLASS, &rc);
    if (processes == NULL) return rc;
    while (CMHasNext(processes, NULL)) {
        CMPIData process = CMGetNext(processes, NULL);
        CMPIInstance* inst;
        if (process.type != CMPI_ref || process.value.ref == NULL) continue;
        inst = makeLink(ns, system.value.ref, process.value.ref, &rc);
        if (inst != NULL) CMReturnInstance(rslt, inst);
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Link_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                   const CMPIObjectPath* ref, const char** properties) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    CMPIData system = CMGetKey(ref, "GroupComponent", &rc);
    CMPIData process = CMGetKey(ref, "PartComponent", &rc);
    struct utsname names;
    const char* systemName;
    ProcessInfo info;
    CMPIInstance* inst;
    (void)mi; (void)ctx; (void)properties;
    if (system.type != CMPI_ref || process.type != CMPI_ref || system.value.ref == NULL || process.value.ref == NULL) {
        CMReturn(CMPI_RC_ERR_INVALID_PARAMETER);
    }
    systemName = zentaStringOf(CMGetKey(system.value.ref, "Name", &rc));
    if (systemName == NULL || uname(&names) != 0 || strcmp(systemName, names.nodename) != 0) {
        CMReturn(CMPI_RC_ERR_NOT_FOUND);
    }
    if (systemProcessOfPath(process.value.ref, &info) != 0) CMReturn(CMPI_RC_ERR_NOT_FOUND);
    inst = makeLink(zentaNamespaceOf(ref, SYSTEM_NAMESPACE), system.value.ref, process.value.ref, &rc);
    if (inst == NULL) return rc;
    CMReturnInstance(rslt, inst);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMInstanceMIStub(Link_, ZENTA_OSProcessProvider, linkBroker, CMNoHook)
