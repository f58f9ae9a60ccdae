/* Helpers shared by the bundled provider modules (C99, CMPI 1.0).
 *
 * ZENTA_READ_ONLY_INSTANCE_MI(pfx) defines the instance MI operations a
 * read-only provider does not offer (create, modify, delete, query and
 * instance names; the ZENTA host only ever enumerates and gets instances)
 * and the cleanup, so that a provider writes only pfx##EnumInstances and
 * pfx##GetInstance before CMInstanceMIStub. */
#ifndef ZENTA_PROVIDERS_ZENTAPROVIDER_H
#define ZENTA_PROVIDERS_ZENTAPROVIDER_H

#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

/* The namespace of a request's path; paths the host builds from text may
 * carry none. */
static inline const char* zentaNamespaceOf(const CMPIObjectPath* ref, const char* fallback) {
    CMPIString* ns = CMGetNameSpace(ref, NULL);
    const char* text = ns != NULL ? CMGetCharPtr(ns) : NULL;
    return text != NULL && *text != '\0' ? text : fallback;
}

/* A string key or argument, or NULL when it is missing or not a string. */
static inline const char* zentaStringOf(CMPIData data) {
    if (data.type != CMPI_string || (data.state & CMPI_nullValue) || data.value.string == NULL) return NULL;
    return CMGetCharPtr(data.value.string);
}

/* An unsigned number given as any integer type or as decimal text (paths
 * typed on a command line carry numbers that way). 0 on success. */
static inline int zentaUnsignedOf(CMPIData data, CMPIUint64* value) {
    const char* text;
    char* end;
    if (data.state & CMPI_nullValue) return -1;
    switch (data.type) {
        case CMPI_uint8: *value = data.value.uint8; return 0;
        case CMPI_uint16: *value = data.value.uint16; return 0;
        case CMPI_uint32: *value = data.value.uint32; return 0;
        case CMPI_uint64: *value = data.value.uint64; return 0;
        case CMPI_sint8: if (data.value.sint8 < 0) return -1; *value = (CMPIUint64)data.value.sint8; return 0;
        case CMPI_sint16: if (data.value.sint16 < 0) return -1; *value = (CMPIUint64)data.value.sint16; return 0;
        case CMPI_sint32: if (data.value.sint32 < 0) return -1; *value = (CMPIUint64)data.value.sint32; return 0;
        case CMPI_sint64: if (data.value.sint64 < 0) return -1; *value = (CMPIUint64)data.value.sint64; return 0;
        case CMPI_string:
            text = zentaStringOf(data);
            if (text == NULL || *text < '0' || *text > '9') return -1;
            errno = 0;
            *value = strtoull(text, &end, 10);
            return errno == 0 && *end == '\0' ? 0 : -1;
        default: return -1;
    }
}

#define ZENTA_READ_ONLY_INSTANCE_MI(pfx) \
    static CMPIStatus pfx##Cleanup(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) { \
        (void)mi; (void)ctx; (void)terminating; \
        CMReturn(CMPI_RC_OK); \
    } \
    static CMPIStatus pfx##EnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* ctx, \
                                             const CMPIResult* rslt, const CMPIObjectPath* ref) { \
        (void)mi; (void)ctx; (void)rslt; (void)ref; \
        CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); \
    } \
    static CMPIStatus pfx##CreateInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt, \
                                          const CMPIObjectPath* ref, const CMPIInstance* inst) { \
        (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst; \
        CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); \
    } \
    static CMPIStatus pfx##ModifyInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt, \
                                          const CMPIObjectPath* ref, const CMPIInstance* inst, \
                                          const char** properties) { \
        (void)mi; (void)ctx; (void)rslt; (void)ref; (void)inst; (void)properties; \
        CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); \
    } \
    static CMPIStatus pfx##DeleteInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt, \
                                          const CMPIObjectPath* ref) { \
        (void)mi; (void)ctx; (void)rslt; (void)ref; \
        CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); \
    } \
    static CMPIStatus pfx##ExecQuery(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt, \
                                     const CMPIObjectPath* ref, const char* lang, const char* query) { \
        (void)mi; (void)ctx; (void)rslt; (void)ref; (void)lang; (void)query; \
        CMReturn(CMPI_RC_ERR_NOT_SUPPORTED); \
    }

/* The method MI's cleanup, which has nothing to release. */
#define ZENTA_METHOD_MI_CLEANUP(pfx) \
    static CMPIStatus pfx##MethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx, CMPIBoolean terminating) { \
        (void)mi; (void)ctx; (void)terminating; \
        CMReturn(CMPI_RC_OK); \
    }

#endif
