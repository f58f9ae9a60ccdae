/* The provider helpers as compiled by a C89 provider (helpers_c89.c). */
#ifndef ZENTA_TESTS_SDK_HELPERS_C89_H
#define ZENTA_TESTS_SDK_HELPERS_C89_H

#include "cmpidt.h"
#include "cmpift.h"

#ifdef __cplusplus
extern "C" {
#endif

int c89UnsignedOf(CMPIData data, CMPIUint64* value);
const char* c89StringOf(CMPIData data);
const char* c89NamespaceOf(const CMPIObjectPath* ref, const char* fallback);
/* The instance MI of a read-only provider made with ZENTA_READ_ONLY_INSTANCE_MI. */
CMPIInstanceMI* c89ReadOnlyInstanceMI(void);

#ifdef __cplusplus
}
#endif

#endif
