// Requests that travel from the host through the CMPI-backed classes and
// instances to the test providers and back.
#include <dlfcn.h>

#include <string>
#include <vector>

#include <boost/bind/bind.hpp>

#include "NspTestHost.h"
#include "TCMPIClass.h"
#include "TCMPIInstance.h"
#include "cmpiInstanceRegistry.h"

using namespace NVURZENTA20;

namespace {

struct TCollector {
    std::vector<boost::shared_ptr<ICIMInstance> > instances;
    std::size_t stopAfter;
    TCollector() : stopAfter(0) {}
    bool operator()(boost::shared_ptr<ICIMInstance> instance) {
        instances.push_back(instance);
        return stopAfter == 0 || instances.size() < stopAfter;
    }
    std::vector<std::string> Ids() const {
        std::vector<std::string> ids;
        for (std::size_t i = 0; i < instances.size(); ++i) {
            ids.push_back(instances[i]->GetProperty("Id", TCIMContext())->GetValue());
        }
        return ids;
    }
};

int* ModuleCounter(const std::string& module, const char* name) {
    void* handle = dlopen(module.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle == nullptr) return nullptr;
    int* counter = static_cast<int*>(dlsym(handle, name));
    dlclose(handle);
    return counter;
}

class RequestRoad : public NspTestHost {
protected:
    void SetUp() override {
        NspTestHost::SetUp();
        Allocate("road");
        fModule = std::string(ZENTA_NSP_MODULE_ROOT) + "/road/Road.cmpi.so";
    }
    void TearDown() override {
        CMPINSPInstanceRegistry::GetRegistrySingleton()->ClearInstances();
        NspTestHost::TearDown();
    }

    boost::shared_ptr<TCMPIClass> Class(const std::string& name) {
        return boost::dynamic_pointer_cast<TCMPIClass>(fNamespace->GetClass(name, TCIMContext()));
    }

    std::vector<std::string> Enumerate(const std::string& className, bool deep, std::size_t stopAfter = 0) {
        TCollector collector;
        collector.stopAfter = stopAfter;
        Class(className)->EnumerateInstances(boost::ref(collector), deep, TCIMContext());
        return collector.Ids();
    }

    TCIMReference ItemPath(const std::string& id) {
        TCIMReference path(fManager, TCIMContext());
        path.SetClassName("Road_Item");
        path.AddKeyValue("Id", TCIMValue(id));
        return path;
    }

    std::string fModule;
};

std::vector<std::string> Strings(const char* a, const char* b = nullptr, const char* c = nullptr,
                                 const char* d = nullptr, const char* e = nullptr, const char* f = nullptr) {
    std::vector<std::string> out;
    const char* all[] = {a, b, c, d, e, f};
    for (std::size_t i = 0; i < 6 && all[i] != nullptr; ++i) out.push_back(all[i]);
    return out;
}

}  // namespace

TEST_F(RequestRoad, EnumerationReachesTheProviderAndFilesStrayInstancesWithTheirClass) {
    EXPECT_EQ(Enumerate("Road_Item", false), Strings("item1", "item2", "item3"));
}

TEST_F(RequestRoad, DeepEnumerationReachesEveryLevelThroughOneCallback) {
    EXPECT_EQ(Enumerate("Road_Item", true), Strings("item1", "item2", "item3", "sub1", "sub2", "leaf1"));
    EXPECT_EQ(Enumerate("Road_Sub", true), Strings("sub1", "sub2", "leaf1"));
}

TEST_F(RequestRoad, ACallbackThatStopsGetsNoMoreWhileTheProviderRunsToItsEnd) {
    int* enumCalls = ModuleCounter(fModule, "road_enum_calls");
    ASSERT_NE(enumCalls, nullptr);
    int before = *enumCalls;
    EXPECT_EQ(Enumerate("Road_Item", false, 1), Strings("item1"));
    EXPECT_EQ(*enumCalls, before + 1);
    // The stop flag belonged to that enumeration only.
    EXPECT_EQ(Enumerate("Road_Item", false), Strings("item1", "item2", "item3"));
}

TEST_F(RequestRoad, ProvidersStartLazilyAndOnce) {
    int* factoryCalls = ModuleCounter(fModule, "road_factory_calls");
    int* brokerChecks = ModuleCounter(fModule, "road_broker_checks");
    ASSERT_NE(factoryCalls, nullptr);
    int before = *factoryCalls;
    Enumerate("Road_Item", false);
    Enumerate("Road_Item", false);
    EXPECT_EQ(*factoryCalls, before + 1);
    EXPECT_GE(*brokerChecks, 1) << "the provider was not handed the ZENTA broker";
    Enumerate("Road_Sub", false);
    EXPECT_EQ(*factoryCalls, before + 2);
}

TEST_F(RequestRoad, GetInstanceSucceedsAndFailsWithItsLogLine) {
    boost::shared_ptr<ICIMInstance> found = Class("Road_Item")->GetInstance(ItemPath("abcd"), TCIMContext());
    ASSERT_TRUE(found);
    EXPECT_EQ(static_cast<std::string>(found->GetProperty("Id", TCIMContext())->GetValue()), "abcd");
    EXPECT_EQ(static_cast<unsigned int>(found->GetProperty("Count", TCIMContext())->GetValue()), 4u);

    EXPECT_FALSE(Class("Road_Item")->GetInstance(ItemPath("missing"), TCIMContext()));
    std::vector<std::string> failures = LogLinesWith("TRACE", "providerDriver::getInstance failed for ");
    ASSERT_EQ(failures.size(), 1u);
    EXPECT_EQ(failures[0].substr(failures[0].size() - 5), "RoadA");
}

TEST_F(RequestRoad, ClassMethodsSplitParametersByTheirQualifiers) {
    TCIMContext parameters;
    parameters["Text"] = TCIMValue("hi");
    parameters["Counter"] = TCIMValue(5u);
    parameters["tally"] = TCIMValue(7u);
    parameters["Ignored"] = TCIMValue("x");
    // No provider has been started yet: a method never starts one.
    try {
        Class("Road_Item")->InvokeMethod("Echo", parameters, TCIMContext());
        ADD_FAILURE() << "a method reached a provider that was never started";
    } catch (const TZENTAException& failure) {
        EXPECT_EQ(failure.GetStatusCode().GetCode(), 15);
    }
    EXPECT_EQ(parameters.size(), 4u);

    Enumerate("Road_Item", false);
    TCIMValue result = Class("Road_Item")->InvokeMethod("Echo", parameters, TCIMContext());
    EXPECT_TRUE(result.IsNull());
    ASSERT_EQ(parameters.size(), 3u) << "only the output parameters come back";
    EXPECT_EQ(static_cast<std::string>(parameters["Reply"]), "echo:hi");
    EXPECT_EQ(static_cast<unsigned int>(parameters["tally"]), 8u);
    // A provider cannot replace an argument whose name has capitals: its
    // lower-cased name is not found in the exact one, and the insert keeps
    // the first value. Existing providers rely on this, so it stays.
    EXPECT_EQ(static_cast<unsigned int>(parameters["Counter"]), 5u);
}

TEST_F(RequestRoad, InstanceMethodsTravelTheSameRoad) {
    TCollector collector;
    Class("Road_Item")->EnumerateInstances(boost::ref(collector), false, TCIMContext());
    ASSERT_FALSE(collector.instances.empty());
    boost::shared_ptr<TCMPIInstance> instance = boost::dynamic_pointer_cast<TCMPIInstance>(collector.instances[0]);
    ASSERT_TRUE(instance);

    TCIMContext parameters;
    EXPECT_TRUE(instance->InvokeMethod("Echo", parameters, TCIMContext()).IsNull());
    EXPECT_EQ(static_cast<std::string>(parameters["Reply"]), "echo:");

    TCIMContext failing;
    failing["Text"] = TCIMValue("fail");
    instance->InvokeMethod("Echo", failing, TCIMContext());
    EXPECT_TRUE(failing.empty());
    EXPECT_EQ(LogLinesWith("TRACE", "providerDriver::invokeMethod Echo").size(), 1u);
}

TEST_F(RequestRoad, AClassWithoutProviderTagHasNoMethods) {
    boost::shared_ptr<ICIMClass> registration = fNamespace->GetClass("PG_Provider", TCIMContext());
    ASSERT_TRUE(registration);
    TCIMContext parameters;
    try {
        registration->InvokeMethod("Anything", parameters, TCIMContext());
        ADD_FAILURE() << "a class without provider tag ran a method";
    } catch (const TZENTAException& failure) {
        EXPECT_EQ(failure.GetStatusCode().GetCode(), 15);
    }
}

TEST_F(RequestRoad, NamespaceGetInstanceGoesThroughTheClass) {
    boost::shared_ptr<ICIMInstance> found = fNamespace->GetInstance(ItemPath("xyz"), TCIMContext());
    ASSERT_TRUE(found);
    EXPECT_EQ(static_cast<std::string>(found->GetProperty("Id", TCIMContext())->GetValue()), "xyz");
}
