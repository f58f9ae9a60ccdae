/* Helpers for CMPI 1.0 provider modules served by the ZENTA host, shared by
 * the bundled modules and installed for provider writers (include/zenta).
 * Needs only the CMPI headers; compiles as C89, C99 and later, and C++.
 *
 * ZENTA_READ_ONLY_INSTANCE_MI(pfx) defines the instance MI operations a
 * read-only provider does not offer (create, modify, delete, query and
 * instance names; the ZENTA host only ever enumerates and gets instances)
 * and the cleanup, so that a provider writes only pfx##EnumInstances and
 * pfx##GetInstance before CMInstanceMIStub. */
#ifndef ZENTA_PROVIDERS_ZENTAPROVIDER_H
#define ZENTA_PROVIDERS_ZENTAPROVIDER_H

#include <stddef.h>

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

/* C89 has no inline; unused static functions would warn there without it. */
#if defined(__cplusplus) || (defined(__STDC_VERSION__) && __STDC_VERSION__ >= 199901L)
#define ZENTA_PROVIDER_INLINE inline
#elif defined(__GNUC__)
#define ZENTA_PROVIDER_INLINE __inline__
#else
#define ZENTA_PROVIDER_INLINE
#endif

/* The namespace of a request's path; paths the host builds from text may
 * carry none. */
static ZENTA_PROVIDER_INLINE const char* zentaNamespaceOf(const CMPIObjectPath* ref, const char* fallback) {
    CMPIString* ns = CMGetNameSpace(ref, NULL);
    const char* text = ns != NULL ? CMGetCharPtr(ns) : NULL;
    return text != NULL && *text != '\0' ? text : fallback;
}

/* A string key or argument, or NULL when it is missing or not a string. */
static ZENTA_PROVIDER_INLINE const char* zentaStringOf(CMPIData data) {
    if (data.type != CMPI_string || (data.state & CMPI_nullValue) || data.value.string == NULL) return NULL;
    return CMGetCharPtr(data.value.string);
}

/* Decimal digits only, up to the largest CMPIUint64; 0 on success. Written
 * out rather than strtoull, which C89 lacks and which takes signs and
 * blanks that a key never carries. */
static ZENTA_PROVIDER_INLINE int zentaParseUnsigned(const char* text, CMPIUint64* value) {
    const CMPIUint64 limit = ~(CMPIUint64)0;
    CMPIUint64 result = 0;
    if (text == NULL || *text == '\0') return -1;
    for (; *text != '\0'; ++text) {
        unsigned digit;
        if (*text < '0' || *text > '9') return -1;
        digit = (unsigned)(*text - '0');
        if (result > (limit - digit) / 10) return -1;
        result = result * 10 + digit;
    }
    *value = result;
    return 0;
}

/* An unsigned number given as any integer type or as decimal text (paths
 * typed on a command line carry numbers that way). 0 on success; *value is
 * left alone on failure. */
static ZENTA_PROVIDER_INLINE int zentaUnsignedOf(CMPIData data, CMPIUint64* value) {
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
        case CMPI_string: return zentaParseUnsigned(zentaStringOf(data), value);
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
