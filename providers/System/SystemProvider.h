/* What the three providers of the System module share. */
#ifndef ZENTA_PROVIDERS_SYSTEMPROVIDER_H
#define ZENTA_PROVIDERS_SYSTEMPROVIDER_H

#include "zentaProvider.h"
#include "SystemData.h"

#define SYSTEM_NAMESPACE "root/cimv2"
#define SYSTEM_OPERATING_SYSTEM_CLASS "ZENTA_OperatingSystem"
#define SYSTEM_PROCESS_CLASS "ZENTA_Process"
#define SYSTEM_LINK_CLASS "ZENTA_OSProcess"

/* Sets a date-time property to a moment. */
static inline CMPIStatus systemSetDateTime(const CMPIBroker* broker, CMPIInstance* inst, const char* name,
                                           time_t seconds, long microseconds) {
    char text[32];
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    CMPIDateTime* value;
    formatDateTime(seconds, microseconds, text, sizeof(text));
    value = CMNewDateTimeFromChars(broker, text, &rc);
    if (value == NULL) return rc;
    return CMSetProperty(inst, name, &value, CMPI_dateTime);
}

/* The process a ZENTA_Process path names (its ProcessId key, of any
 * integer type). 0 when it exists. */
static inline int systemProcessOfPath(const CMPIObjectPath* ref, ProcessInfo* info) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    CMPIUint64 pid = 0;
    if (zentaUnsignedOf(CMGetKey(ref, "ProcessId", &rc), &pid) != 0 || pid > 0xFFFFFFFFu) return -1;
    return readProcess((unsigned)pid, info);
}

#endif
