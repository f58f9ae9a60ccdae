#include "FleetSupport.h"

#include <stdarg.h>
#include <stdio.h>
#include <string.h>

void reportWord(FleetReport* report, const char* format, ...) {
    size_t used = strlen(report->text);
    va_list args;
    if (used > 0 && used + 1 < sizeof(report->text)) {
        report->text[used++] = ' ';
        report->text[used] = '\0';
    }
    va_start(args, format);
    vsnprintf(report->text + used, sizeof(report->text) - used, format, args);
    va_end(args);
}

/* Appends without a separator. */
static void reportMore(FleetReport* report, const char* text) {
    size_t used = strlen(report->text);
    snprintf(report->text + used, sizeof(report->text) - used, "%s", text);
}

const char* fleetText(CMPIData data) {
    if (data.type != CMPI_string || data.value.string == NULL) return "";
    return CMGetCharPtr(data.value.string);
}

static const char* elementKey(CMPIData element, const char* keyName) {
    if (element.type == CMPI_instance && element.value.inst != NULL) {
        return fleetText(CMGetProperty(element.value.inst, keyName, NULL));
    }
    if (element.type == CMPI_ref && element.value.ref != NULL) {
        return fleetText(CMGetKey(element.value.ref, keyName, NULL));
    }
    return "?";
}

void reportEnumeration(FleetReport* report, const char* label, CMPIEnumeration* enumeration, CMPIStatus rc,
                       const char* keyName) {
    unsigned count = 0;
    reportWord(report, "%s=%d", label, (int)rc.rc);
    if (enumeration == NULL) return;
    reportMore(report, ":");
    while (CMHasNext(enumeration, NULL)) {
        CMPIData element = CMGetNext(enumeration, NULL);
        if (keyName != NULL) {
            if (count > 0) reportMore(report, ",");
            reportMore(report, elementKey(element, keyName));
        }
        ++count;
    }
    if (keyName == NULL) {
        char number[16];
        snprintf(number, sizeof(number), "%u", count);
        reportMore(report, number);
    }
}

void reportData(FleetReport* report, const char* label, CMPIData data) {
    if (data.type == CMPI_null) {
        reportWord(report, "%s=null", label);
    } else if (data.type == CMPI_uint32) {
        reportWord(report, "%s=uint32:%u", label, (unsigned)data.value.uint32);
    } else {
        reportWord(report, "%s=type%u", label, (unsigned)data.type);
    }
}

const char* fleetKeyOf(const char* className) {
    return strcmp(className, FLEET_DRIVER) == 0 ? "Name" : "Id";
}

CMPIObjectPath* fleetPath(const CMPIBroker* broker, const char* className, const char* key) {
    CMPIObjectPath* op = CMNewObjectPath(broker, FLEET_NAMESPACE, className, NULL);
    if (key != NULL) CMAddKey(op, fleetKeyOf(className), key, CMPI_chars);
    return op;
}

static void checkInstanceUpcalls(const CMPIBroker* broker, const CMPIContext* ctx, const CMPIObjectPath* op,
                                 FleetReport* report) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    CMPIUint32 mileage = 7;
    CMPIInstance* inst;

    reportEnumeration(report, "enum", CBEnumInstances(broker, ctx, op, NULL, &rc), rc, "Id");
    reportEnumeration(report, "names", CBEnumInstanceNames(broker, ctx, op, &rc), rc, "Id");
    inst = CBGetInstance(broker, ctx, op, NULL, &rc);
    reportWord(report, "get=%d", (int)rc.rc);
    if (inst != NULL) {
        reportMore(report, ":");
        reportMore(report, fleetText(CMGetProperty(inst, "Id", NULL)));
    }
    reportData(report, "prop", CBGetProperty(broker, ctx, op, "Wheels", &rc));
    reportWord(report, "set=%d", (int)CBSetProperty(broker, ctx, op, "Mileage", &mileage, CMPI_uint32).rc);
    reportWord(report, "delete=%d", (int)CBDeleteInstance(broker, ctx, op).rc);
}

static void checkAssociationUpcalls(const CMPIBroker* broker, const CMPIContext* ctx, const CMPIObjectPath* op,
                                    FleetReport* report) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    reportEnumeration(report, "assoc", CBAssociators(broker, ctx, op, "", "", "", "", NULL, &rc), rc, "Name");
    reportEnumeration(report, "assocnames", CBAssociatorNames(broker, ctx, op, "", "", "", "", &rc), rc, "Name");
    reportEnumeration(report, "refs", CBReferences(broker, ctx, op, "", "", NULL, &rc), rc, NULL);
    reportEnumeration(report, "refnames", CBReferenceNames(broker, ctx, op, "", "", &rc), rc, NULL);
}

/* The method call lends the caller's own argument objects: `out` carries
 * the input (visits = 5) and comes back with the outputs. */
static void checkMethodUpcall(const CMPIBroker* broker, const CMPIContext* ctx, const CMPIObjectPath* op,
                              const CMPIArgs* in, CMPIArgs* out, FleetReport* report) {
    CMPIStatus rc = {CMPI_RC_ERR_NOT_SUPPORTED, NULL};
    CMPIUint32 visits = 5;
    CMPIData after;
    CMAddArg(out, "visits", &visits, CMPI_uint32);
    CBInvokeMethod(broker, ctx, op, "Service", out, (CMPIArgs*)in, &rc);
    after = CMGetArg(out, "visits", NULL);
    reportWord(report, "invoke=%d:%u", (int)rc.rc, after.type == CMPI_uint32 ? (unsigned)after.value.uint32 : 0u);
}

void fleetCheckPath(const CMPIBroker* broker, const CMPIContext* ctx, const CMPIObjectPath* op, const CMPIArgs* in,
                    CMPIArgs* out, FleetReport* report) {
    checkInstanceUpcalls(broker, ctx, op, report);
    checkAssociationUpcalls(broker, ctx, op, report);
    if (in != NULL && out != NULL) checkMethodUpcall(broker, ctx, op, in, out, report);
}
