#include "providerInit.h"

#include <cstdio>

#include <dlfcn.h>

namespace {

// Entry-point names are built in a fixed buffer; provider names come from
// registration documents that the host controls, so their length is trusted.
const std::size_t kEntryPointNameSize = 255;

// What a factory yields when it exists but no broker was given to call it
// with: non-null, so the accessors cache it like a real MI.
template <class MI>
MI* factoryWithoutBroker()
{
    return reinterpret_cast<MI*>(~std::uintptr_t(0));
}

void* getGenericEntryPoint(void* library, const char* kind)
{
    char name[kEntryPointNameSize];
    std::sprintf(name, "_Generic_Create_%sMI", kind);
    return dlsym(library, name);
}

void* getFixedEntryPoint(const char* providerName, void* library, const char* kind)
{
    char name[kEntryPointNameSize];
    std::sprintf(name, "%s_Create_%sMI", providerName, kind);
    return dlsym(library, name);
}

// A generic factory wins over the provider's own one and is the only form
// that learns which provider it is asked for.
template <class MI>
MI* loadMI(const char* providerName, void* library, CMPIBroker* broker, CMPIContext* ctx, const char* kind)
{
    // Providers built with later CMPI headers declare a trailing status
    // argument; they get a zeroed local one to write to, and factories of
    // the two-argument form simply never look at it.
    typedef MI* (*GenericFactory)(CMPIBroker*, CMPIContext*, const char*, CMPIStatus*);
    typedef MI* (*FixedFactory)(CMPIBroker*, CMPIContext*, CMPIStatus*);
    CMPIStatus status = {CMPI_RC_OK, nullptr};

    if (void* generic = getGenericEntryPoint(library, kind)) {
        if (broker == nullptr) {
            return factoryWithoutBroker<MI>();
        }
        return reinterpret_cast<GenericFactory>(generic)(broker, ctx, providerName, &status);
    }
    void* fixed = getFixedEntryPoint(providerName, library, kind);
    if (fixed == nullptr) {
        return nullptr;
    }
    if (broker == nullptr) {
        return factoryWithoutBroker<MI>();
    }
    return reinterpret_cast<FixedFactory>(fixed)(broker, ctx, &status);
}

// A null cache entry is looked up again on every call.
template <class MI, class Loader>
MI* cachedMI(MI*& field, _ProviderInfo* info, CMPIBroker* broker, CMPIContext* ctx, Loader load)
{
    if (field == nullptr) {
        field = load(info->providerName, info->library, broker, ctx);
    }
    return field;
}

}  // namespace

void* loadLibib(const char* path)
{
    return dlopen(path, RTLD_LAZY);
}

CMPIInstanceMI* loadInstanceMI(const char* providerName, void* library, CMPIBroker* broker, CMPIContext* ctx)
{
    return loadMI<CMPIInstanceMI>(providerName, library, broker, ctx, "Instance");
}

CMPIAssociationMI* loadAssociationMI(const char* providerName, void* library, CMPIBroker* broker,
                                     CMPIContext* ctx)
{
    return loadMI<CMPIAssociationMI>(providerName, library, broker, ctx, "Association");
}

CMPIMethodMI* loadMethodMI(const char* providerName, void* library, CMPIBroker* broker, CMPIContext* ctx)
{
    return loadMI<CMPIMethodMI>(providerName, library, broker, ctx, "Method");
}

CMPIIndicationMI* loadIndicationMI(const char* providerName, void* library, CMPIBroker* broker, CMPIContext* ctx)
{
    return loadMI<CMPIIndicationMI>(providerName, library, broker, ctx, "Indication");
}

CMPIPropertyMI* loadPropertyMI(const char* providerName, void* library, CMPIBroker* broker, CMPIContext* ctx)
{
    return loadMI<CMPIPropertyMI>(providerName, library, broker, ctx, "Property");
}

// Callers read *out or the record's field: the instance accessor answers
// false even when it obtained an MI.
bool getInstanceMI(_ProviderInfo* info, CMPIBroker* broker, CMPIInstanceMI** out, CMPIContext* ctx)
{
    *out = cachedMI(info->instanceMI, info, broker, ctx, loadInstanceMI);
    return false;
}

bool getAssociationMI(_ProviderInfo* info, CMPIBroker* broker, CMPIAssociationMI** out, CMPIContext* ctx)
{
    *out = cachedMI(info->associationMI, info, broker, ctx, loadAssociationMI);
    return *out != nullptr;
}

bool getMethodMI(_ProviderInfo* info, CMPIBroker* broker, CMPIMethodMI** out, CMPIContext* ctx)
{
    *out = cachedMI(info->methodMI, info, broker, ctx, loadMethodMI);
    return *out != nullptr;
}

bool getIndicationMI(_ProviderInfo* info, CMPIBroker* broker, CMPIIndicationMI** out, CMPIContext* ctx)
{
    *out = cachedMI(info->indicationMI, info, broker, ctx, loadIndicationMI);
    return *out != nullptr;
}

// The kinds are obtained in the order instance, association, method,
// indication: method before indication although its bit is higher.
int initProvider(_ProviderInfo* info, CMPIBroker* broker)
{
    info->initialized = 1;
    if (info->type & kInstanceMIKind) {
        CMPIInstanceMI* mi;
        getInstanceMI(info, broker, &mi, nullptr);
    }
    if (info->type & kAssociationMIKind) {
        CMPIAssociationMI* mi;
        getAssociationMI(info, broker, &mi, nullptr);
    }
    if (info->type & kMethodMIKind) {
        CMPIMethodMI* mi;
        getMethodMI(info, broker, &mi, nullptr);
    }
    if (info->type & kIndicationMIKind) {
        CMPIIndicationMI* mi;
        getIndicationMI(info, broker, &mi, nullptr);
    }
    return 0;
}
