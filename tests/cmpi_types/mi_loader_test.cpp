// The MI loader: entry-point names and precedence, the null-broker marker,
// caching in the accessors and the order of initProvider.
#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "providerInit.h"

namespace {

const int kMaxRecordedCalls = 16;
const int kKindSize = 16;

// One provider module opened through the loader, with access to what its
// factories recorded.
class TProviderModule {
public:
    explicit TProviderModule(const char* path) : fLibrary(loadLibib(path))
    {
        if (fLibrary == nullptr) {
            ADD_FAILURE() << "cannot open " << path << ": " << dlerror();
            return;
        }
        Reset();
    }
    ~TProviderModule()
    {
        if (fLibrary != nullptr) {
            *Symbol<const int*>("zentaTestWatchedFlag") = nullptr;
            dlclose(fLibrary);
        }
    }
    TProviderModule(const TProviderModule&) = delete;
    TProviderModule& operator=(const TProviderModule&) = delete;

    void* Library() const { return fLibrary; }

    template <class T>
    T* Symbol(const char* name) const
    {
        return static_cast<T*>(dlsym(fLibrary, name));
    }

    void* MI(const std::string& form, const std::string& kind) const
    {
        return dlsym(fLibrary, ("zentaTest" + form + kind + "MI").c_str());
    }

    int CallCount() const { return *Symbol<int>("zentaTestCallCount"); }

    std::vector<std::string> CallKinds() const
    {
        const char(*kinds)[kKindSize] = Symbol<char[kKindSize]>("zentaTestCallKinds");
        return std::vector<std::string>(kinds, kinds + std::min(CallCount(), kMaxRecordedCalls));
    }

    std::string CallForms() const
    {
        return std::string(Symbol<char>("zentaTestCallForms"), std::min(CallCount(), kMaxRecordedCalls));
    }

    std::vector<int> WatchedAtCall() const
    {
        const int* values = Symbol<int>("zentaTestWatchedAtCall");
        return std::vector<int>(values, values + std::min(CallCount(), kMaxRecordedCalls));
    }

    const char* LastProviderName() const { return *Symbol<const char*>("zentaTestLastProviderName"); }
    const CMPIBroker* LastBroker() const { return *Symbol<const CMPIBroker*>("zentaTestLastBroker"); }
    const CMPIContext* LastContext() const { return *Symbol<const CMPIContext*>("zentaTestLastContext"); }
    void SetReturnNull(bool returnNull) { *Symbol<int>("zentaTestReturnNull") = returnNull ? 1 : 0; }
    void Watch(const std::int32_t* flag) { *Symbol<const int*>("zentaTestWatchedFlag") = flag; }

private:
    void Reset()
    {
        *Symbol<int>("zentaTestCallCount") = 0;
        *Symbol<const char*>("zentaTestLastProviderName") = nullptr;
        *Symbol<const CMPIBroker*>("zentaTestLastBroker") = nullptr;
        *Symbol<const CMPIContext*>("zentaTestLastContext") = nullptr;
        SetReturnNull(false);
    }

    void* fLibrary;
};

void* const kAllOnes = reinterpret_cast<void*>(~std::uintptr_t(0));

typedef std::function<void*(const char*, void*, CMPIBroker*, CMPIContext*)> TLoader;

struct TKindLoader {
    const char* kind;
    TLoader load;
};

const TKindLoader kLoaders[] = {
    {"Instance", [](const char* n, void* l, CMPIBroker* b, CMPIContext* c) -> void* { return loadInstanceMI(n, l, b, c); }},
    {"Association", [](const char* n, void* l, CMPIBroker* b, CMPIContext* c) -> void* { return loadAssociationMI(n, l, b, c); }},
    {"Method", [](const char* n, void* l, CMPIBroker* b, CMPIContext* c) -> void* { return loadMethodMI(n, l, b, c); }},
    {"Indication", [](const char* n, void* l, CMPIBroker* b, CMPIContext* c) -> void* { return loadIndicationMI(n, l, b, c); }},
    {"Property", [](const char* n, void* l, CMPIBroker* b, CMPIContext* c) -> void* { return loadPropertyMI(n, l, b, c); }},
};

// Which factory a module offers for provider "Foo" and what loading gives.
struct TEntryPointCase {
    const char* module;
    const char* providerName;
    const char* expectedForm;  // "Generic", "Fixed", or null for no MI
};

const TEntryPointCase kEntryPointCases[] = {
    {ZENTA_TEST_MODULE_GENERIC, "Foo", "Generic"},
    {ZENTA_TEST_MODULE_GENERIC, "Bar", "Generic"},
    {ZENTA_TEST_MODULE_FIXED, "Foo", "Fixed"},
    {ZENTA_TEST_MODULE_FIXED, "Bar", nullptr},
    {ZENTA_TEST_MODULE_BOTH, "Foo", "Generic"},
    {ZENTA_TEST_MODULE_NONE, "Foo", nullptr},
};

class MILoaderTest : public testing::Test {
protected:
    _ProviderInfo MakeInfo(void* library, std::uint32_t type, char* providerName)
    {
        _ProviderInfo info = {};
        info.library = library;
        info.type = type;
        info.providerName = providerName;
        return info;
    }

    CMPIBroker fBroker = {};
    CMPIContext fContext = {};
    char fFoo[4] = "Foo";
};

TEST_F(MILoaderTest, LoadLibibOpensModulesLocallyAndFailsSilentlyOnMissingFiles)
{
    TProviderModule module(ZENTA_TEST_MODULE_GENERIC);
    ASSERT_NE(module.Library(), nullptr);
    // Opened without RTLD_GLOBAL: the module's symbols stay out of the
    // global scope.
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "zentaTestCallCount"), nullptr);
    EXPECT_EQ(loadLibib("/nonexistent/provider.cmpi.so"), nullptr);
}

TEST_F(MILoaderTest, GenericFactoryWinsAndOnlyItLearnsTheProviderName)
{
    for (const TEntryPointCase& c : kEntryPointCases) {
        for (const TKindLoader& loader : kLoaders) {
            SCOPED_TRACE(std::string(c.module) + " " + c.providerName + " " + loader.kind);
            TProviderModule module(c.module);
            void* mi = loader.load(c.providerName, module.Library(), &fBroker, &fContext);
            if (c.expectedForm == nullptr) {
                EXPECT_EQ(mi, nullptr);
                EXPECT_EQ(module.CallCount(), 0);
                continue;
            }
            const std::string form(c.expectedForm);
            EXPECT_EQ(mi, module.MI(form, loader.kind));
            ASSERT_EQ(module.CallCount(), 1);
            EXPECT_EQ(module.CallKinds()[0], loader.kind);
            EXPECT_EQ(module.CallForms(), form == "Generic" ? "G" : "F");
            EXPECT_EQ(module.LastBroker(), &fBroker);
            EXPECT_EQ(module.LastContext(), &fContext);
            EXPECT_EQ(module.LastProviderName(), form == "Generic" ? c.providerName : nullptr);
        }
    }
}

TEST_F(MILoaderTest, ExistingFactoryWithoutBrokerGivesAllOnesWithoutACall)
{
    for (const char* path : {ZENTA_TEST_MODULE_GENERIC, ZENTA_TEST_MODULE_FIXED, ZENTA_TEST_MODULE_BOTH}) {
        for (const TKindLoader& loader : kLoaders) {
            SCOPED_TRACE(std::string(path) + " " + loader.kind);
            TProviderModule module(path);
            EXPECT_EQ(loader.load("Foo", module.Library(), nullptr, &fContext), kAllOnes);
            EXPECT_EQ(module.CallCount(), 0);
        }
    }
    TProviderModule none(ZENTA_TEST_MODULE_NONE);
    EXPECT_EQ(loadMethodMI("Foo", none.Library(), nullptr, nullptr), nullptr);
}

TEST_F(MILoaderTest, FactoryReturningNullIsLikeAMissingOneAndIsAskedAgain)
{
    TProviderModule module(ZENTA_TEST_MODULE_GENERIC);
    module.SetReturnNull(true);
    _ProviderInfo info = MakeInfo(module.Library(), 0, fFoo);
    CMPIMethodMI* out = reinterpret_cast<CMPIMethodMI*>(&info);
    EXPECT_FALSE(getMethodMI(&info, &fBroker, &out, nullptr));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(info.methodMI, nullptr);
    EXPECT_FALSE(getMethodMI(&info, &fBroker, &out, nullptr));
    EXPECT_EQ(module.CallCount(), 2);

    module.SetReturnNull(false);
    EXPECT_TRUE(getMethodMI(&info, &fBroker, &out, nullptr));
    EXPECT_EQ(out, module.MI("Generic", "Method"));
    EXPECT_EQ(module.CallCount(), 3);
}

TEST_F(MILoaderTest, AccessorsCacheTheirMIAndOnlyTheInstanceAccessorAnswersFalseOnSuccess)
{
    TProviderModule module(ZENTA_TEST_MODULE_FIXED);
    _ProviderInfo info = MakeInfo(module.Library(), 0, fFoo);

    CMPIInstanceMI* instance = nullptr;
    CMPIAssociationMI* association = nullptr;
    CMPIMethodMI* method = nullptr;
    CMPIIndicationMI* indication = nullptr;
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        EXPECT_FALSE(getInstanceMI(&info, &fBroker, &instance, &fContext));
        EXPECT_TRUE(getAssociationMI(&info, &fBroker, &association, &fContext));
        EXPECT_TRUE(getMethodMI(&info, &fBroker, &method, &fContext));
        EXPECT_TRUE(getIndicationMI(&info, &fBroker, &indication, &fContext));
        EXPECT_EQ(instance, module.MI("Fixed", "Instance"));
        EXPECT_EQ(association, module.MI("Fixed", "Association"));
        EXPECT_EQ(method, module.MI("Fixed", "Method"));
        EXPECT_EQ(indication, module.MI("Fixed", "Indication"));
        EXPECT_EQ(info.instanceMI, instance);
        EXPECT_EQ(info.associationMI, association);
        EXPECT_EQ(info.methodMI, method);
        EXPECT_EQ(info.indicationMI, indication);
        EXPECT_EQ(module.CallCount(), 4);
    }
}

TEST_F(MILoaderTest, MissingFactoriesLeaveTheFieldsNullAndTheAccessorsFalse)
{
    TProviderModule module(ZENTA_TEST_MODULE_NONE);
    _ProviderInfo info = MakeInfo(module.Library(), 0, fFoo);
    CMPIInstanceMI* instance = reinterpret_cast<CMPIInstanceMI*>(&info);
    CMPIAssociationMI* association = reinterpret_cast<CMPIAssociationMI*>(&info);
    CMPIMethodMI* method = reinterpret_cast<CMPIMethodMI*>(&info);
    CMPIIndicationMI* indication = reinterpret_cast<CMPIIndicationMI*>(&info);
    EXPECT_FALSE(getInstanceMI(&info, &fBroker, &instance, nullptr));
    EXPECT_FALSE(getAssociationMI(&info, &fBroker, &association, nullptr));
    EXPECT_FALSE(getMethodMI(&info, &fBroker, &method, nullptr));
    EXPECT_FALSE(getIndicationMI(&info, &fBroker, &indication, nullptr));
    EXPECT_EQ(instance, nullptr);
    EXPECT_EQ(association, nullptr);
    EXPECT_EQ(method, nullptr);
    EXPECT_EQ(indication, nullptr);
}

TEST_F(MILoaderTest, AllOnesMarkerStaysCachedLikeAnMI)
{
    TProviderModule module(ZENTA_TEST_MODULE_GENERIC);
    _ProviderInfo info = MakeInfo(module.Library(), 0, fFoo);
    CMPIMethodMI* method = nullptr;
    EXPECT_TRUE(getMethodMI(&info, nullptr, &method, nullptr));
    EXPECT_EQ(static_cast<void*>(method), kAllOnes);
    EXPECT_TRUE(getMethodMI(&info, &fBroker, &method, nullptr));
    EXPECT_EQ(static_cast<void*>(info.methodMI), kAllOnes);
    EXPECT_EQ(module.CallCount(), 0);
}

struct TInitCase {
    std::uint32_t type;
    std::vector<std::string> expectedKinds;
};

TEST_F(MILoaderTest, InitProviderAsksTheSelectedKindsInFixedOrderAfterMarkingTheRecord)
{
    const TInitCase cases[] = {
        {0x2F, {"Instance", "Association", "Method", "Indication"}},
        {0x0F, {"Instance", "Association", "Method", "Indication"}},
        {kIndicationMIKind | kMethodMIKind, {"Method", "Indication"}},
        {kAssociationMIKind, {"Association"}},
        {0x20, {}},
        {0x10, {}},
    };
    for (const TInitCase& c : cases) {
        SCOPED_TRACE(c.type);
        TProviderModule module(ZENTA_TEST_MODULE_GENERIC);
        _ProviderInfo info = MakeInfo(module.Library(), c.type, fFoo);
        module.Watch(&info.initialized);
        EXPECT_EQ(initProvider(&info, &fBroker), 0);
        EXPECT_EQ(info.initialized, 1);
        EXPECT_EQ(module.CallKinds(), c.expectedKinds);
        EXPECT_EQ(module.WatchedAtCall(), std::vector<int>(c.expectedKinds.size(), 1));
        EXPECT_EQ(module.LastContext(), nullptr);
        EXPECT_EQ(info.methodMI != nullptr, (c.type & kMethodMIKind) != 0);
        EXPECT_EQ(info.instanceMI != nullptr, (c.type & kInstanceMIKind) != 0);
    }
}

TEST_F(MILoaderTest, InitProviderOfAModuleWithoutFactoriesStillSucceeds)
{
    TProviderModule module(ZENTA_TEST_MODULE_NONE);
    _ProviderInfo info = MakeInfo(module.Library(), 0x2F, fFoo);
    EXPECT_EQ(initProvider(&info, &fBroker), 0);
    EXPECT_EQ(info.initialized, 1);
    EXPECT_EQ(info.instanceMI, nullptr);
    EXPECT_EQ(info.associationMI, nullptr);
    EXPECT_EQ(info.methodMI, nullptr);
    EXPECT_EQ(info.indicationMI, nullptr);
}

TEST_F(MILoaderTest, InitProviderUsesTheRecordsProviderNameForFixedFactories)
{
    TProviderModule module(ZENTA_TEST_MODULE_FIXED);
    _ProviderInfo info = MakeInfo(module.Library(), 0x2F, fFoo);
    initProvider(&info, &fBroker);
    EXPECT_EQ(info.instanceMI, module.MI("Fixed", "Instance"));
    EXPECT_EQ(info.indicationMI, module.MI("Fixed", "Indication"));
    EXPECT_EQ(module.CallForms(), "FFFF");
}

}  // namespace
