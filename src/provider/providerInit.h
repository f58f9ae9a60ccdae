// The MI loader: opens a provider module, resolves its CMPI factory entry
// points and caches the management interfaces they return.
#ifndef ZENTA_CMPI_PROVIDERINIT_H
#define ZENTA_CMPI_PROVIDERINIT_H

#include <cstdint>

#include "cmpift.h"

// Bits of _ProviderInfo::type: which MI kinds initProvider obtains.
enum {
    kInstanceMIKind = 0x1,
    kAssociationMIKind = 0x2,
    kIndicationMIKind = 0x4,
    kMethodMIKind = 0x8
};

// One provider's loader record. Allocated zero-filled; shared between the
// namespace and the provider record, freed as a plain record (the two
// strings are never freed, so that the record stays a plain aggregate).
struct _ProviderInfo {
    std::uint32_t type;
    char* providerName;
    char* namespaceName;
    void* library;
    std::int32_t initialized;
    CMPIInstanceMI* instanceMI;
    CMPIAssociationMI* associationMI;
    CMPIMethodMI* methodMI;
    CMPIIndicationMI* indicationMI;
};

void* loadLibib(const char* path);

CMPIInstanceMI* loadInstanceMI(const char* providerName, void* library, CMPIBroker* broker, CMPIContext* ctx);
CMPIAssociationMI* loadAssociationMI(const char* providerName, void* library, CMPIBroker* broker,
                                     CMPIContext* ctx);
CMPIMethodMI* loadMethodMI(const char* providerName, void* library, CMPIBroker* broker, CMPIContext* ctx);
CMPIIndicationMI* loadIndicationMI(const char* providerName, void* library, CMPIBroker* broker, CMPIContext* ctx);
CMPIPropertyMI* loadPropertyMI(const char* providerName, void* library, CMPIBroker* broker, CMPIContext* ctx);

bool getInstanceMI(_ProviderInfo* info, CMPIBroker* broker, CMPIInstanceMI** out, CMPIContext* ctx);
bool getAssociationMI(_ProviderInfo* info, CMPIBroker* broker, CMPIAssociationMI** out, CMPIContext* ctx);
bool getMethodMI(_ProviderInfo* info, CMPIBroker* broker, CMPIMethodMI** out, CMPIContext* ctx);
bool getIndicationMI(_ProviderInfo* info, CMPIBroker* broker, CMPIIndicationMI** out, CMPIContext* ctx);

int initProvider(_ProviderInfo* info, CMPIBroker* broker);

#endif
