/* A provider module for the MI loader tests: generic and/or fixed ("Foo")
 * factories that append "<G|F><Kind>[*zentaTestWatchedFlag] " to zentaTestCalls. */
#include <stdio.h>
#include <string.h>

#include "cmpidt.h"
#include "cmpift.h"

CMPI_EXPORT char zentaTestCalls[512];
CMPI_EXPORT const char *zentaTestLastProviderName;
CMPI_EXPORT const CMPIContext *zentaTestLastContext;
CMPI_EXPORT int zentaTestReturnNull;
CMPI_EXPORT const int *zentaTestWatchedFlag;

/* One MI per kind and factory form, so that a test can tell who made a pointer. */
CMPI_EXPORT CMPIInstanceMI zentaTestGenericInstanceMI, zentaTestFixedInstanceMI;
CMPI_EXPORT CMPIAssociationMI zentaTestGenericAssociationMI, zentaTestFixedAssociationMI;
CMPI_EXPORT CMPIMethodMI zentaTestGenericMethodMI, zentaTestFixedMethodMI;
CMPI_EXPORT CMPIIndicationMI zentaTestGenericIndicationMI, zentaTestFixedIndicationMI;
CMPI_EXPORT CMPIPropertyMI zentaTestGenericPropertyMI, zentaTestFixedPropertyMI;

#if defined(ZENTA_TEST_GENERIC) || defined(ZENTA_TEST_FIXED)
static void *recordCall(const char *call, const CMPIContext *ctx, const char *name, void *mi)
{
    size_t used = strlen(zentaTestCalls);
    if (zentaTestWatchedFlag != NULL) {
        snprintf(zentaTestCalls + used, sizeof zentaTestCalls - used, "%s%d ", call, *zentaTestWatchedFlag);
    } else {
        snprintf(zentaTestCalls + used, sizeof zentaTestCalls - used, "%s ", call);
    }
    zentaTestLastProviderName = name;
    zentaTestLastContext = ctx;
    return zentaTestReturnNull ? NULL : mi;
}
#endif

#ifdef ZENTA_TEST_GENERIC
#define ZENTA_TEST_GENERIC_FACTORY(Kind) \
    CMPI_EXPORT CMPI##Kind##MI *_Generic_Create_##Kind##MI(CMPIBroker *broker, CMPIContext *ctx, const char *name) \
    { (void)broker; return recordCall("G" #Kind, ctx, name, &zentaTestGeneric##Kind##MI); }
ZENTA_TEST_GENERIC_FACTORY(Instance)
ZENTA_TEST_GENERIC_FACTORY(Association)
ZENTA_TEST_GENERIC_FACTORY(Method)
ZENTA_TEST_GENERIC_FACTORY(Indication)
ZENTA_TEST_GENERIC_FACTORY(Property)
#endif

#ifdef ZENTA_TEST_FIXED
#define ZENTA_TEST_FIXED_FACTORY(Kind) \
    CMPI_EXPORT CMPI##Kind##MI *Foo_Create_##Kind##MI(CMPIBroker *broker, CMPIContext *ctx) \
    { (void)broker; return recordCall("F" #Kind, ctx, NULL, &zentaTestFixed##Kind##MI); }
ZENTA_TEST_FIXED_FACTORY(Instance)
ZENTA_TEST_FIXED_FACTORY(Association)
ZENTA_TEST_FIXED_FACTORY(Method)
ZENTA_TEST_FIXED_FACTORY(Indication)
ZENTA_TEST_FIXED_FACTORY(Property)
#endif
