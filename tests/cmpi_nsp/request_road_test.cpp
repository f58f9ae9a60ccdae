// Requests that travel from the host through the CMPI-backed classes and
// instances to the test providers and back. A class without provider has no
// methods: see the end-to-end tests.
#include <dlfcn.h>

#include <string>
#include <vector>

#include "NspTestHost.h"
#include "TCMPIClass.h"
#include "TCMPIInstance.h"
#include "cmpiInstanceRegistry.h"

using namespace NVURZENTA20;

namespace {

class RequestRoad : public NspTestHost {
protected:
    void SetUp() override {
        NspTestHost::SetUp();
        Allocate("road");
    }
    void TearDown() override {
        CMPINSPInstanceRegistry::GetRegistrySingleton()->ClearInstances();
        NspTestHost::TearDown();
    }

    boost::shared_ptr<TCMPIClass> Class(const std::string& name) {
        return boost::dynamic_pointer_cast<TCMPIClass>(fNamespace->GetClass(name, TCIMContext()));
    }

    // The instances' Ids; the callback asks for no more after `stopAfter`.
    std::vector<std::string> Enumerate(const std::string& className, bool deep, std::size_t stopAfter = 0,
                                       boost::shared_ptr<ICIMInstance>* first = nullptr) {
        std::vector<std::string> ids;
        Class(className)->EnumerateInstances(
            [&](boost::shared_ptr<ICIMInstance> instance) {
                if (first != nullptr && ids.empty()) *first = instance;
                ids.push_back(instance->GetProperty("Id", TCIMContext())->GetValue());
                return stopAfter == 0 || ids.size() < stopAfter;
            },
            deep, TCIMContext());
        return ids;
    }

    TCIMReference ItemPath(const std::string& id) {
        TCIMReference path(fManager, TCIMContext());
        path.SetClassName("Road_Item");
        path.AddKeyValue("Id", TCIMValue(id));
        return path;
    }

    // A counter the test module exports.
    static int& Counter(const char* name) {
        const std::string module = std::string(ZENTA_NSP_MODULE_ROOT) + "/road/Road.cmpi.so";
        void* handle = dlopen(module.c_str(), RTLD_LAZY | RTLD_NOLOAD);
        EXPECT_NE(handle, nullptr);
        int* counter = static_cast<int*>(dlsym(handle, name));
        dlclose(handle);
        return *counter;
    }
};

typedef std::vector<std::string> TIds;

}  // namespace

TEST_F(RequestRoad, ShallowAndDeepEnumerationsReachEveryLevelThroughOneCallback) {
    EXPECT_EQ(Enumerate("Road_Item", false), (TIds{"item1", "item2", "item3"})) << "a stray instance was offered";
    EXPECT_EQ(Enumerate("Road_Item", true), (TIds{"item1", "item2", "item3", "sub1", "sub2", "leaf1"}));
    EXPECT_EQ(Enumerate("Road_Sub", true), (TIds{"sub1", "sub2", "leaf1"}));
}

TEST_F(RequestRoad, ACallbackThatStopsGetsNoMoreWhileTheProviderRunsToItsEnd) {
    const int before = Counter("road_enum_calls");
    EXPECT_EQ(Enumerate("Road_Item", false, 1), TIds{"item1"});
    EXPECT_EQ(Counter("road_enum_calls"), before + 1);
    // The stop flag belonged to that enumeration only.
    EXPECT_EQ(Enumerate("Road_Item", false), (TIds{"item1", "item2", "item3"}));
}

TEST_F(RequestRoad, ProvidersStartLazilyAndOnce) {
    const int before = Counter("road_factory_calls");
    Enumerate("Road_Item", false);
    Enumerate("Road_Item", false);
    EXPECT_EQ(Counter("road_factory_calls"), before + 1);
    EXPECT_GE(Counter("road_broker_checks"), 1) << "the provider was not handed the ZENTA broker";
    Enumerate("Road_Sub", false);
    EXPECT_EQ(Counter("road_factory_calls"), before + 2);
}

TEST_F(RequestRoad, GetInstanceSucceedsAndFailsWithItsLogLine) {
    boost::shared_ptr<ICIMInstance> found = Class("Road_Item")->GetInstance(ItemPath("abcd"), TCIMContext());
    ASSERT_TRUE(found);
    EXPECT_EQ(static_cast<std::string>(found->GetProperty("Id", TCIMContext())->GetValue()), "abcd");
    EXPECT_EQ(static_cast<unsigned int>(found->GetProperty("Count", TCIMContext())->GetValue()), 4u);
    found = fNamespace->GetInstance(ItemPath("xyz"), TCIMContext());
    ASSERT_TRUE(found) << "the namespace does not go through the class";
    EXPECT_EQ(static_cast<std::string>(found->GetProperty("Id", TCIMContext())->GetValue()), "xyz");

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
    EXPECT_TRUE(Class("Road_Item")->InvokeMethod("Echo", parameters, TCIMContext()).IsNull());
    ASSERT_EQ(parameters.size(), 3u) << "only the output parameters come back";
    EXPECT_EQ(static_cast<std::string>(parameters["Reply"]), "echo:hi");
    EXPECT_EQ(static_cast<unsigned int>(parameters["tally"]), 8u);
    // A provider cannot replace an argument whose name has capitals: its
    // lower-cased name is not found in the exact one, and the insert keeps
    // the first value. Existing providers rely on this, so it stays.
    EXPECT_EQ(static_cast<unsigned int>(parameters["Counter"]), 5u);
}

TEST_F(RequestRoad, AFailedInstanceMethodLeavesNoOutputsAndItsLogLine) {
    boost::shared_ptr<ICIMInstance> first;
    Enumerate("Road_Item", false, 0, &first);
    ASSERT_TRUE(boost::dynamic_pointer_cast<TCMPIInstance>(first));
    TCIMContext failing;
    failing["Text"] = TCIMValue("fail");
    first->InvokeMethod("Echo", failing, TCIMContext());
    EXPECT_TRUE(failing.empty());
    EXPECT_EQ(LogLinesWith("TRACE", "providerDriver::invokeMethod Echo").size(), 1u);
}

// A host that reloads its providers allocates the namespace again over the
// same repository: the module's class document defines its classes again
// (identically), and every provider serves them from the new namespace.
TEST_F(RequestRoad, ASecondAllocationOverTheSameRepositoryServesEveryProviderAgain) {
    EXPECT_EQ(Enumerate("Road_Item", true).size(), 6u);
    CMPINSPInstanceRegistry::GetRegistrySingleton()->ClearInstances();
    boost::shared_ptr<TCMPINamespace> first = fNamespace;
    Allocate("road");
    ASSERT_NE(fNamespace, first);
    EXPECT_EQ(LogLinesWith("ERROR", "").size(), 0u) << "a document was refused on the second reading";
    EXPECT_EQ(LogLinesWith("TRACE", "TCMPINamespace::LoadPlugin created Provider RoadB").size(), 2u);
    EXPECT_EQ(Enumerate("Road_Item", true), (TIds{"item1", "item2", "item3", "sub1", "sub2", "leaf1"}));
}
