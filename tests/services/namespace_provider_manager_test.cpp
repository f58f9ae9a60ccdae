#include <cstdlib>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <gtest/gtest.h>

#include "TNamespaceProviderManager.h"
#include "TRootObject.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;

namespace {

class TFakeNamespaceProvider : public INamespaceProvider {
public:
    explicit TFakeNamespaceProvider(const std::string& name) : fName(name) {}
    const std::string& GetName(TCIMContext) const override { return fName; }
    boost::shared_ptr<ICIMNamespace> AllocateNamespace(TCIMContext, bool) const override {
        return boost::shared_ptr<ICIMNamespace>();
    }
    ENamespaceType GetType(TCIMContext) const override { return kRepositoryNamespace; }
    bool IsIndicationsSupported(TCIMContext) const override { return false; }

private:
    std::string fName;
};

typedef boost::shared_ptr<INamespaceProvider> TProviderPtr;

TProviderPtr MakeProvider(const std::string& name) {
    return boost::make_shared<TFakeNamespaceProvider>(name);
}

std::vector<std::string> NamesOf(const std::vector<TProviderPtr>& providers) {
    std::vector<std::string> names;
    for (const TProviderPtr& provider : providers) {
        names.push_back(provider->GetName(TCIMContext()));
    }
    return names;
}

// The providers an enumeration visits when its callback answers false on
// the `stopAt`-th visit (counting from 1; 0: never).
std::vector<TProviderPtr> Visit(const INamespaceProviderManager& manager, std::size_t stopAt = 0) {
    std::vector<TProviderPtr> visited;
    manager.EnumerateNamespaceProviders([&visited, stopAt](TProviderPtr provider) {
        visited.push_back(provider);
        return visited.size() != stopAt;
    });
    return visited;
}

}  // namespace

TEST(NamespaceProviderManager, FindsProvidersByTheirExactName) {
    TNamespaceProviderManager manager;
    const TProviderPtr cmpi = MakeProvider("cmpi");
    const TProviderPtr inmem = MakeProvider("inmem");
    manager.RegisterNamespaceProvider(cmpi);
    manager.RegisterNamespaceProvider(inmem);

    EXPECT_EQ(manager.GetNamespaceProvider("cmpi"), cmpi);
    EXPECT_EQ(manager.GetNamespaceProvider("inmem"), inmem);
    for (const char* unknown : {"CMPI", "cmp", "cmpi ", ""}) {
        EXPECT_FALSE(manager.GetNamespaceProvider(unknown)) << "\"" << unknown << "\"";
    }
}

TEST(NamespaceProviderManager, LaterRegistrationOfANameReplacesAndReleasesTheEarlier) {
    TNamespaceProviderManager manager;
    TProviderPtr first = MakeProvider("cmpi");
    const boost::weak_ptr<INamespaceProvider> firstWatch = first;
    manager.RegisterNamespaceProvider(first);
    first.reset();
    EXPECT_FALSE(firstWatch.expired()) << "the registry must hold its providers";

    const TProviderPtr second = MakeProvider("cmpi");
    manager.RegisterNamespaceProvider(second);

    EXPECT_TRUE(firstWatch.expired());
    EXPECT_EQ(manager.GetNamespaceProvider("cmpi"), second);
    EXPECT_EQ(Visit(manager), std::vector<TProviderPtr>{second});
}

TEST(NamespaceProviderManager, EnumeratesInNameOrderUntilTheCallbackSaysStop) {
    TNamespaceProviderManager manager;
    for (const char* name : {"zeta", "alpha", "Mid", "beta"}) {
        manager.RegisterNamespaceProvider(MakeProvider(name));
    }
    const std::vector<std::string> all = {"Mid", "alpha", "beta", "zeta"};

    EXPECT_EQ(NamesOf(Visit(manager)), all);
    for (std::size_t stopAt = 1; stopAt <= all.size(); ++stopAt) {
        const std::vector<std::string> expected(all.begin(), all.begin() + stopAt);
        EXPECT_EQ(NamesOf(Visit(manager, stopAt)), expected) << "stopping at visit " << stopAt;
    }
    EXPECT_TRUE(Visit(TNamespaceProviderManager()).empty());
}

TEST(NamespaceProviderManager, UnregisterRemovesAndReleases) {
    TNamespaceProviderManager manager;
    TProviderPtr provider = MakeProvider("cmpi");
    const boost::weak_ptr<INamespaceProvider> watch = provider;
    manager.RegisterNamespaceProvider(provider);
    manager.RegisterNamespaceProvider(MakeProvider("inmem"));
    provider.reset();

    manager.UnregisterNamespaceProvider("unknown");
    manager.UnregisterNamespaceProvider("cmpi");

    EXPECT_TRUE(watch.expired());
    EXPECT_FALSE(manager.GetNamespaceProvider("cmpi"));
    EXPECT_EQ(NamesOf(Visit(manager)), std::vector<std::string>{"inmem"});
}

TEST(NamespaceProviderManager, CallbacksMayChangeTheRegistryWhileItIsWalked) {
    TNamespaceProviderManager manager;
    manager.RegisterNamespaceProvider(MakeProvider("a"));
    manager.RegisterNamespaceProvider(MakeProvider("b"));

    std::vector<std::string> visited;
    manager.EnumerateNamespaceProviders([&](TProviderPtr provider) {
        const std::string name = provider->GetName(TCIMContext());
        visited.push_back(name);
        manager.UnregisterNamespaceProvider(name);
        manager.RegisterNamespaceProvider(MakeProvider(name + "2"));
        return true;
    });

    EXPECT_EQ(visited, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(NamesOf(Visit(manager)), (std::vector<std::string>{"a2", "b2"}));
}

TEST(NamespaceProviderManager, RejectsAnEmptyProvider) {
    TNamespaceProviderManager manager;
    try {
        manager.RegisterNamespaceProvider(TProviderPtr());
        ADD_FAILURE() << "registered an empty provider";
    } catch (const TZENTAException& failure) {
        EXPECT_EQ(failure.GetStatusCode().GetCode(), TZENTAStatusCode::kInvalidArgument);
    }
    EXPECT_TRUE(Visit(manager).empty());
}

TEST(RootObject, ServicesAreProcessWide) {
    const boost::shared_ptr<INamespaceProviderManager> manager = TRootObject::GetNamespaceProviderManager();
    ASSERT_TRUE(manager);
    ASSERT_TRUE(TRootObject::GetCoreLogger());
    EXPECT_EQ(TRootObject::GetCoreLogger(), TRootObject::GetCoreLogger());

    const TProviderPtr provider = MakeProvider("services-test");
    manager->RegisterNamespaceProvider(provider);
    EXPECT_EQ(TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("services-test"), provider);
    TRootObject::GetNamespaceProviderManager()->UnregisterNamespaceProvider("services-test");
    EXPECT_FALSE(manager->GetNamespaceProvider("services-test"));
}

namespace {

// Uses the process-wide services from a static destructor, as a plug-in
// torn down at exit does. Constructed before main, so before the services
// exist: were they ordinary statics, they would already be gone by the time
// this destructor runs.
struct TLateUser {
    bool fActive = false;
    ~TLateUser() {
        if (!fActive) {
            return;
        }
        const TProviderPtr provider = TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("late");
        TRootObject::GetCoreLogger()->Log(ICoreLogger::kError,
                                          provider ? "late use found " + provider->GetName(TCIMContext()) : "late use found nothing");
    }
};

TLateUser gLateUser;

}  // namespace

TEST(RootObjectDeathTest, ServicesOutliveStaticDestruction) {
    // A fresh process, so that the services are created after gLateUser.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            TRootObject::GetCoreLogger()->SetLogFile("");
            TRootObject::GetCoreLogger()->SetThreshold(ICoreLogger::kError);
            TRootObject::GetNamespaceProviderManager()->RegisterNamespaceProvider(MakeProvider("late"));
            gLateUser.fActive = true;
            std::exit(0);
        },
        testing::ExitedWithCode(0), "ERROR late use found late");
}
