/* ZENTA_ProcessProvider: one ZENTA_Process per running process, and the
 * method ReadCommandLine. */
#define _DEFAULT_SOURCE

#include <dirent.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "SystemProvider.h"

static const CMPIBroker* processBroker;

static CMPIObjectPath* processPath(const CMPIBroker* broker, const char* ns, CMPIUint32 pid, CMPIStatus* rc) {
    CMPIObjectPath* op = CMNewObjectPath(broker, ns, SYSTEM_PROCESS_CLASS, rc);
    if (op != NULL) CMAddKey(op, "ProcessId", &pid, CMPI_uint32);
    return op;
}

static CMPIInstance* makeProcess(const char* ns, const ProcessInfo* info, CMPIStatus* rc) {
    static long ticksPerSecond;
    static long pageSize;
    CMPIObjectPath* op = processPath(processBroker, ns, info->pid, rc);
    CMPIInstance* inst;
    CMPIUint64 resident;
    unsigned long long started;
    if (op == NULL) return NULL;
    inst = CMNewInstance(processBroker, op, rc);
    if (inst == NULL) return NULL;
    if (ticksPerSecond == 0) ticksPerSecond = sysconf(_SC_CLK_TCK);
    if (pageSize == 0) pageSize = sysconf(_SC_PAGESIZE);
    resident = info->residentPages > 0 ? (CMPIUint64)info->residentPages * (CMPIUint64)pageSize : 0;
    CMSetProperty(inst, "Name", info->name, CMPI_chars);
    CMSetProperty(inst, "State", stateName(info->state), CMPI_chars);
    CMSetProperty(inst, "ParentProcessId", &info->parent, CMPI_uint32);
    CMSetProperty(inst, "ResidentSetSize", &resident, CMPI_uint64);
    started = bootTime() + info->startTicks / (unsigned long long)ticksPerSecond;
    systemSetDateTime(processBroker, inst, "StartTime", (time_t)started,
                (long)(info->startTicks % (unsigned long long)ticksPerSecond * 1000000 / (unsigned long long)ticksPerSecond));
    return inst;
}


ZENTA_READ_ONLY_INSTANCE_MI(Process_)

static CMPIStatus Process_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                        const CMPIObjectPath* ref, const char** properties) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    const char* ns = zentaNamespaceOf(ref, SYSTEM_NAMESPACE);
    struct dirent* entry;
    DIR* proc = opendir("/proc");
    (void)mi; (void)ctx; (void)properties;
    if (proc == NULL) CMReturnWithChars(processBroker, CMPI_RC_ERR_FAILED, "cannot read /proc");
    while ((entry = readdir(proc)) != NULL) {
        ProcessInfo info;
        CMPIInstance* inst;
        if (!isProcessDirectory(entry->d_name)) continue;
        if (readProcess((CMPIUint32)strtoul(entry->d_name, NULL, 10), &info) != 0) continue;
        inst = makeProcess(ns, &info, &rc);
        if (inst != NULL) CMReturnInstance(rslt, inst);
    }
    closedir(proc);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Process_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* ref, const char** properties) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    ProcessInfo info;
    CMPIInstance* inst;
    (void)mi; (void)ctx; (void)properties;
    if (systemProcessOfPath(ref, &info) != 0) CMReturnWithChars(processBroker, CMPI_RC_ERR_NOT_FOUND, "no such process");
    inst = makeProcess(zentaNamespaceOf(ref, SYSTEM_NAMESPACE), &info, &rc);
    if (inst == NULL) return rc;
    CMReturnInstance(rslt, inst);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMInstanceMIStub(Process_, ZENTA_ProcessProvider, processBroker, CMNoHook)

ZENTA_METHOD_MI_CLEANUP(Process_)

/* uint32 ReadCommandLine(IN string Separator, OUT string CommandLine,
 *                        IN OUT uint32 maxlength)
 * CommandLine: the process's arguments joined with Separator (default one
 * blank), cut to maxlength bytes when maxlength is given; maxlength comes
 * back as the full length. Returns 0.
 *
 * The IN/OUT parameter is spelt in lower case on purpose: the library's
 * CMAddArg replaces an entry already in the output arguments only when the
 * name it is given is in lower case (CIM names ignore case, so callers may
 * still write MaxLength). */
static CMPIStatus Process_InvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                                       CMPIArgs* out) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    ProcessInfo info;
    const char* separator;
    CMPIUint64 limit = 0;
    int limited;
    CMPIUint32 fullLength;
    CMPIUint32 result = 0;
    char* commandLine;
    (void)mi; (void)ctx;
    if (strcmp(method, "ReadCommandLine") != 0) CMReturn(CMPI_RC_ERR_METHOD_NOT_FOUND);
    if (systemProcessOfPath(ref, &info) != 0) CMReturnWithChars(processBroker, CMPI_RC_ERR_NOT_FOUND, "no such process");
    separator = zentaStringOf(CMGetArg(in, "Separator", &rc));
    if (separator == NULL) separator = " ";
    rc.rc = CMPI_RC_OK;
    limited = zentaUnsignedOf(CMGetArg(in, "maxlength", &rc), &limit) == 0 && rc.rc == CMPI_RC_OK;
    commandLine = joinedCommandLine(info.pid, separator);
    if (commandLine == NULL) CMReturn(CMPI_RC_ERR_NOT_FOUND);
    fullLength = (CMPIUint32)strlen(commandLine);
    if (limited && limit < fullLength) commandLine[limit] = '\0';
    CMAddArg(out, "CommandLine", commandLine, CMPI_chars);
    CMAddArg(out, "maxlength", &fullLength, CMPI_uint32);
    free(commandLine);
    CMReturnData(rslt, &result, CMPI_uint32);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMMethodMIStub(Process_, ZENTA_ProcessProvider, processBroker, CMNoHook)
