/*
 * A provider module for the MI loader tests. One source, built several
 * times: ZENTA_TEST_GENERIC adds the generic factories
 * (_Generic_Create_<Kind>MI), ZENTA_TEST_FIXED the fixed ones of the
 * provider "Foo" (Foo_Create_<Kind>MI); with neither the module exports no
 * factory at all. Every factory call is recorded in exported globals that
 * the tests read back with dlsym.
 */
#include <string.h>

#include "cmpidt.h"
#include "cmpift.h"

#define ZENTA_TEST_MAX_CALLS 16
#define ZENTA_TEST_KIND_SIZE 16

/* The kind word of each factory call, in call order. */
CMPI_EXPORT char zentaTestCallKinds[ZENTA_TEST_MAX_CALLS][ZENTA_TEST_KIND_SIZE];
/* 'G' for a generic factory call, 'F' for a fixed one, in call order. */
CMPI_EXPORT char zentaTestCallForms[ZENTA_TEST_MAX_CALLS];
CMPI_EXPORT int zentaTestCallCount;
/* The arguments of the last call; the name only from generic calls. */
CMPI_EXPORT const char *zentaTestLastProviderName;
CMPI_EXPORT const CMPIBroker *zentaTestLastBroker;
CMPI_EXPORT const CMPIContext *zentaTestLastContext;
/* When non-zero, every factory returns NULL. */
CMPI_EXPORT int zentaTestReturnNull;
/* When set, each call records the flag's value at the time of the call. */
CMPI_EXPORT const int *zentaTestWatchedFlag;
CMPI_EXPORT int zentaTestWatchedAtCall[ZENTA_TEST_MAX_CALLS];

#if defined(ZENTA_TEST_GENERIC) || defined(ZENTA_TEST_FIXED)
static void recordCall(const char *kind, char form, const CMPIBroker *broker, const CMPIContext *ctx,
                       const char *providerName)
{
    if (zentaTestCallCount < ZENTA_TEST_MAX_CALLS) {
        strncpy(zentaTestCallKinds[zentaTestCallCount], kind, ZENTA_TEST_KIND_SIZE - 1);
        zentaTestCallForms[zentaTestCallCount] = form;
        zentaTestWatchedAtCall[zentaTestCallCount] = zentaTestWatchedFlag != NULL ? *zentaTestWatchedFlag : -1;
    }
    ++zentaTestCallCount;
    zentaTestLastProviderName = providerName;
    zentaTestLastBroker = broker;
    zentaTestLastContext = ctx;
}
#endif

/* The MIs handed out: one object per kind and factory form, so that a test
 * can tell which factory produced a pointer. */
#define ZENTA_TEST_MI_OBJECTS(Kind) \
    CMPI_EXPORT CMPI##Kind##MI zentaTestGeneric##Kind##MI; \
    CMPI_EXPORT CMPI##Kind##MI zentaTestFixed##Kind##MI;

ZENTA_TEST_MI_OBJECTS(Instance)
ZENTA_TEST_MI_OBJECTS(Association)
ZENTA_TEST_MI_OBJECTS(Method)
ZENTA_TEST_MI_OBJECTS(Indication)
ZENTA_TEST_MI_OBJECTS(Property)

#ifdef ZENTA_TEST_GENERIC
#define ZENTA_TEST_GENERIC_FACTORY(Kind) \
    CMPI_EXPORT CMPI##Kind##MI *_Generic_Create_##Kind##MI(CMPIBroker *broker, CMPIContext *ctx, \
                                                            const char *providerName) \
    { \
        recordCall(#Kind, 'G', broker, ctx, providerName); \
        return zentaTestReturnNull ? NULL : &zentaTestGeneric##Kind##MI; \
    }

ZENTA_TEST_GENERIC_FACTORY(Instance)
ZENTA_TEST_GENERIC_FACTORY(Association)
ZENTA_TEST_GENERIC_FACTORY(Method)
ZENTA_TEST_GENERIC_FACTORY(Indication)
ZENTA_TEST_GENERIC_FACTORY(Property)
#endif

#ifdef ZENTA_TEST_FIXED
#define ZENTA_TEST_FIXED_FACTORY(Kind) \
    CMPI_EXPORT CMPI##Kind##MI *Foo_Create_##Kind##MI(CMPIBroker *broker, CMPIContext *ctx) \
    { \
        recordCall(#Kind, 'F', broker, ctx, NULL); \
        return zentaTestReturnNull ? NULL : &zentaTestFixed##Kind##MI; \
    }

ZENTA_TEST_FIXED_FACTORY(Instance)
ZENTA_TEST_FIXED_FACTORY(Association)
ZENTA_TEST_FIXED_FACTORY(Method)
ZENTA_TEST_FIXED_FACTORY(Indication)
ZENTA_TEST_FIXED_FACTORY(Property)
#endif
