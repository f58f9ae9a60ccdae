// The MI loader: entry-point precedence, the null-broker marker, caching
// in the accessors, failing factories and the order of initProvider.
#include <dlfcn.h>

#include <cstdint>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "providerInit.h"

namespace {

const CMPIContext kNoCall = {};
void* const kAllOnes = reinterpret_cast<void*>(~std::uintptr_t(0));

// A provider module opened through the loader, with what its factories recorded.
struct TProviderModule {
    explicit TProviderModule(const char* path) : fLibrary(loadLibib(path))
    {
        EXPECT_NE(fLibrary, nullptr) << path << ": " << dlerror();
        Var<char>("zentaTestCalls") = '\0';
        Var<int>("zentaTestReturnNull") = 0;
        Var<const CMPIContext*>("zentaTestLastContext") = &kNoCall;
    }
    ~TProviderModule()
    {
        Var<const int*>("zentaTestWatchedFlag") = nullptr;
        dlclose(fLibrary);
    }
    template <class T>
    T& Var(const char* name) const { return *static_cast<T*>(dlsym(fLibrary, name)); }
    void* MI(const std::string& form, const std::string& kind) const { return &Var<char>(("zentaTest" + form + kind + "MI").c_str()); }
    std::string Calls() const { return &Var<char>("zentaTestCalls"); }

    void* const fLibrary;
};

typedef std::function<void*(const char*, void*, CMPIBroker*, CMPIContext*)> TLoader;
#define ZENTA_TEST_LOADER(Kind) {#Kind, [](const char* n, void* l, CMPIBroker* b, CMPIContext* c) -> void* { return load##Kind##MI(n, l, b, c); }}
const std::pair<const char*, TLoader> kLoaders[] = {ZENTA_TEST_LOADER(Instance), ZENTA_TEST_LOADER(Association),
                                                    ZENTA_TEST_LOADER(Method), ZENTA_TEST_LOADER(Indication),
                                                    ZENTA_TEST_LOADER(Property)};
#undef ZENTA_TEST_LOADER

class MILoaderTest : public testing::Test {
protected:
    _ProviderInfo Info(const TProviderModule& module, std::uint32_t type = 0)
    {
        _ProviderInfo info = {};
        info.library = module.fLibrary;
        info.type = type;
        info.providerName = fFoo;
        return info;
    }
    CMPIBroker fBroker = {};
    CMPIContext fContext = {};
    char fFoo[4] = "Foo";
};

TEST_F(MILoaderTest, GenericFactoryWinsAndOnlyItLearnsTheProviderName)
{
    // Modules are opened locally: their symbols stay out of the global scope.
    EXPECT_EQ(loadLibib("/nonexistent/provider.cmpi.so"), nullptr);
    const struct { const char* module; const char* providerName; const char* form; } cases[] = {
        {ZENTA_TEST_MODULE_GENERIC, "Bar", "Generic"}, {ZENTA_TEST_MODULE_FIXED, "Foo", "Fixed"},
        {ZENTA_TEST_MODULE_FIXED, "Bar", nullptr}, {ZENTA_TEST_MODULE_BOTH, "Foo", "Generic"},
    };
    for (const auto& c : cases) {
        for (const auto& loader : kLoaders) {
            SCOPED_TRACE(std::string(c.module) + " " + c.providerName + " " + loader.first);
            TProviderModule module(c.module);
            EXPECT_EQ(dlsym(RTLD_DEFAULT, "zentaTestCalls"), nullptr);
            void* mi = loader.second(c.providerName, module.fLibrary, &fBroker, &fContext);
            EXPECT_EQ(mi, c.form ? module.MI(c.form, loader.first) : nullptr);
            EXPECT_EQ(module.Calls(), c.form ? std::string(c.form, 1) + loader.first + " " : "");
            if (c.form == nullptr) continue;
            const bool generic = std::string(c.form) == "Generic";
            EXPECT_EQ(module.Var<const CMPIContext*>("zentaTestLastContext"), &fContext);
            EXPECT_EQ(module.Var<const char*>("zentaTestLastProviderName"), generic ? c.providerName : nullptr);
        }
    }
}

TEST_F(MILoaderTest, WithoutBrokerAnExistingFactoryGivesAnAllOnesMarkerThatIsCached)
{
    for (const char* path : {ZENTA_TEST_MODULE_GENERIC, ZENTA_TEST_MODULE_FIXED, ZENTA_TEST_MODULE_NONE}) {
        TProviderModule module(path);
        void* const expected = path == std::string(ZENTA_TEST_MODULE_NONE) ? nullptr : kAllOnes;
        for (const auto& loader : kLoaders) {
            EXPECT_EQ(loader.second("Foo", module.fLibrary, nullptr, &fContext), expected) << path << loader.first;
        }
        _ProviderInfo info = Info(module);
        CMPIIndicationMI* indication = nullptr;
        getIndicationMI(&info, nullptr, &indication, nullptr);
        getIndicationMI(&info, &fBroker, &indication, nullptr);
        EXPECT_EQ(static_cast<void*>(indication), expected);
        EXPECT_EQ(module.Calls(), "");
    }
}

TEST_F(MILoaderTest, AccessorsCacheTheirMIAskAgainAfterNullAndOnlyTheInstanceOneAnswersFalse)
{
    TProviderModule module(ZENTA_TEST_MODULE_FIXED);
    module.Var<int>("zentaTestReturnNull") = 1;
    _ProviderInfo info = Info(module);
    CMPIInstanceMI* instance = reinterpret_cast<CMPIInstanceMI*>(&info);
    CMPIMethodMI* method = reinterpret_cast<CMPIMethodMI*>(&info);
    EXPECT_FALSE(getMethodMI(&info, &fBroker, &method, &fContext));
    EXPECT_FALSE(getInstanceMI(&info, &fBroker, &instance, &fContext));
    EXPECT_EQ(method, nullptr);
    module.Var<int>("zentaTestReturnNull") = 0;
    for (int round = 0; round < 2; ++round) {
        EXPECT_FALSE(getInstanceMI(&info, &fBroker, &instance, &fContext));
        EXPECT_TRUE(getMethodMI(&info, &fBroker, &method, &fContext));
        EXPECT_EQ(instance, module.MI("Fixed", "Instance"));
        EXPECT_EQ(info.instanceMI, instance);
    }
    EXPECT_EQ(module.Calls(), "FMethod FInstance FInstance FMethod ");
}

TEST_F(MILoaderTest, InitProviderAsksTheSelectedKindsInFixedOrderAfterMarkingTheRecord)
{
    const struct { const char* module; std::uint32_t type; const char* calls; } cases[] = {
        {ZENTA_TEST_MODULE_GENERIC, 0x2F, "GInstance1 GAssociation1 GMethod1 GIndication1 "},
        {ZENTA_TEST_MODULE_GENERIC, kIndicationMIKind | kMethodMIKind, "GMethod1 GIndication1 "},
        {ZENTA_TEST_MODULE_GENERIC, 0x30, ""},
        {ZENTA_TEST_MODULE_FIXED, kAssociationMIKind, "FAssociation1 "},
        {ZENTA_TEST_MODULE_NONE, 0x2F, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.module) + " " + std::to_string(c.type));
        TProviderModule module(c.module);
        _ProviderInfo info = Info(module, c.type);
        module.Var<const std::int32_t*>("zentaTestWatchedFlag") = &info.initialized;
        EXPECT_EQ(initProvider(&info, &fBroker), 0);
        EXPECT_EQ(info.initialized, 1);
        EXPECT_EQ(module.Calls(), c.calls);
        EXPECT_EQ(module.Var<const CMPIContext*>("zentaTestLastContext"), *c.calls ? nullptr : &kNoCall);
        EXPECT_EQ(info.methodMI != nullptr, std::string(c.calls).find("Method") != std::string::npos);
    }
}

}  // namespace
