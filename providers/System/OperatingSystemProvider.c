/* ZENTA_OperatingSystemProvider: the one ZENTA_OperatingSystem, keyed by
 * the node name. */
#define _DEFAULT_SOURCE

#include <string.h>
#include <sys/utsname.h>

#include "SystemProvider.h"

static const CMPIBroker* osBroker;

static CMPIInstance* makeOperatingSystem(const char* ns, CMPIStatus* rc) {
    struct utsname system;
    CMPIObjectPath* op;
    CMPIInstance* inst;
    CMPIUint32 processes = countProcesses();
    unsigned long long total = 0;
    unsigned long long available = 0;
    CMPIUint64 value;
    if (uname(&system) != 0) {
        rc->rc = CMPI_RC_ERR_FAILED;
        return NULL;
    }
    op = CMNewObjectPath(osBroker, ns, SYSTEM_OPERATING_SYSTEM_CLASS, rc);
    if (op == NULL) return NULL;
    CMAddKey(op, "Name", system.nodename, CMPI_chars);
    inst = CMNewInstance(osBroker, op, rc);
    if (inst == NULL) return NULL;
    CMSetProperty(inst, "Caption", system.sysname, CMPI_chars);
    CMSetProperty(inst, "Version", system.version, CMPI_chars);
    CMSetProperty(inst, "Release", system.release, CMPI_chars);
    CMSetProperty(inst, "Machine", system.machine, CMPI_chars);
    systemSetDateTime(osBroker, inst, "LastBootUpTime", (time_t)bootTime(), 0);
    CMSetProperty(inst, "NumberOfProcesses", &processes, CMPI_uint32);
    if (readLabelledNumber("/proc/meminfo", "MemTotal:", &total) == 0) {
        value = total;
        CMSetProperty(inst, "TotalVisibleMemorySize", &value, CMPI_uint64);
    }
    if (readLabelledNumber("/proc/meminfo", "MemFree:", &available) == 0) {
        value = available;
        CMSetProperty(inst, "FreePhysicalMemory", &value, CMPI_uint64);
    }
    return inst;
}

ZENTA_READ_ONLY_INSTANCE_MI(OS_)

static CMPIStatus OS_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                   const CMPIObjectPath* ref, const char** properties) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    CMPIInstance* inst = makeOperatingSystem(zentaNamespaceOf(ref, SYSTEM_NAMESPACE), &rc);
    (void)mi; (void)ctx; (void)properties;
    if (inst == NULL) return rc;
    CMReturnInstance(rslt, inst);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus OS_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                 const CMPIObjectPath* ref, const char** properties) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    struct utsname system;
    const char* name = zentaStringOf(CMGetKey(ref, "Name", &rc));
    CMPIInstance* inst;
    (void)mi; (void)ctx; (void)properties;
    if (name == NULL) CMReturn(CMPI_RC_ERR_INVALID_PARAMETER);
    if (uname(&system) != 0 || strcmp(name, system.nodename) != 0) {
        CMReturnWithChars(osBroker, CMPI_RC_ERR_NOT_FOUND, "this host has another name");
    }
    inst = makeOperatingSystem(zentaNamespaceOf(ref, SYSTEM_NAMESPACE), &rc);
    if (inst == NULL) return rc;
    CMReturnInstance(rslt, inst);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMInstanceMIStub(OS_, ZENTA_OperatingSystemProvider, osBroker, CMNoHook)
