// The namespace manager: plain requests stay in the repository, requests
// from providers ("nspID") reach the provider namespace serving the class.
#include <gtest/gtest.h>

#include "InmemTestSupport.h"
#include "TInmemInstance.h"
#include "TNamespaceManager.h"
#include "TZENTAException.h"

using namespace inmemtest;

namespace {

int StatusOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const TZENTAException& e) {
        return e.GetStatusCode().GetCode();
    }
    return 0;
}

// A repository with Plain (unmarked) and Served (marked PLUGINNAME=Served),
// and a fake provider namespace "fake" whose provider "Served" keeps its own
// Served class with instances.
class Manager : public ::testing::Test {
protected:
    void SetUp() override {
        repository = StandardRepository();
        manager = TNamespaceManager::Create(repository);
        plain = repository->AllocateClass("Plain", {}, NoContext());
        AddKey(*repository, *plain, "Id");
        served = repository->AllocateClass("Served", {}, NoContext());
        AddKey(*repository, *served, "Id");
        Qualify(*repository, *served, "PLUGINNAME", TCIMValue("Served"));

        fake.reset(new TFakeProviderNamespace({"Other", "Served"}));
        LoadStandardDocuments(fake->Store());
        providerClass = fake->Store()->AllocateClass("Served", {}, NoContext());
        AddKey(*fake->Store(), *providerClass, "Id");
        AddInstance(*providerClass, {{"Id", TCIMValue("s1")}});
        AddInstance(*providerClass, {{"Id", TCIMValue("s2")}});
        manager->AttachProviderNamespace("fake", fake);
    }

    TCIMReference PathTo(const char* cls, const char* id, const TCIMContext& context) {
        TCIMReference path(manager, context);
        path.SetClassName(cls);
        path.AddKeyValue("Id", TCIMValue(id));
        return path;
    }

    boost::shared_ptr<TInmemNamespace> repository;
    boost::shared_ptr<TNamespaceManager> manager;
    boost::shared_ptr<ICIMClass> plain, served, providerClass;
    boost::shared_ptr<TFakeProviderNamespace> fake;
};

TEST_F(Manager, PlainRequestsNeverReachTheProviderNamespace) {
    EXPECT_EQ(manager->GetClass("Served", NoContext()), served);
    EXPECT_EQ(manager->GetClass("Plain", NoContext()), plain);
    EXPECT_FALSE(manager->GetClass("Unknown", NoContext())) << "plain requests answer empty";
    EXPECT_EQ(manager->GetClass("<root>", OriginContext("plugin")), repository->GetClass("<root>", NoContext()));
    TCIMContext other;
    other["nspID"] = TCIMValue("");
    EXPECT_EQ(manager->GetClass("Served", other), served) << "an empty origin is a plain request";
    EXPECT_EQ(fake->ClassLookups(), 0);
}

TEST_F(Manager, ProviderRequestsAreRoutedByTheServingProvider) {
    for (const char* origin : {"plugin", "cmpi"}) {
        EXPECT_EQ(manager->GetClass("Served", OriginContext(origin)), providerClass) << origin;
        EXPECT_EQ(manager->GetClass("Plain", OriginContext(origin)), plain) << origin;
    }
    EXPECT_EQ(fake->ClassLookups(), 2);
    EXPECT_FALSE(fake->SawOrigin()) << "the provider namespace gets a plain request";
    EXPECT_EQ(StatusOf([&] { manager->GetClass("Unknown", OriginContext("plugin")); }), TZENTAStatusCode::kNotFound);
}

TEST_F(Manager, AMarkedClassWithoutItsProviderNamespaceIsAnError) {
    Qualify(*repository, *plain, "PLUGINNAME", TCIMValue("Nobody"));
    EXPECT_EQ(StatusOf([&] { manager->GetClass("Plain", OriginContext("plugin")); }),
              TZENTAStatusCode::kProviderFailure);
    manager->DetachProviderNamespace("fake");
    EXPECT_FALSE(manager->GetProviderNamespace("fake"));
    EXPECT_EQ(StatusOf([&] { manager->GetClass("Served", OriginContext("plugin")); }),
              TZENTAStatusCode::kProviderFailure);
    EXPECT_EQ(manager->GetClass("Served", NoContext()), served);
}

TEST_F(Manager, GetInstanceRoutesByThePathsClassAndContext) {
    AddInstance(*plain, {{"Id", TCIMValue("p1")}});
    boost::shared_ptr<ICIMInstance> viaProvider = manager->GetInstance(PathTo("Served", "s2", OriginContext("cmpi")), NoContext());
    ASSERT_TRUE(viaProvider);
    EXPECT_EQ(viaProvider->GetClass(NoContext()), providerClass);
    EXPECT_TRUE(manager->GetInstance(PathTo("Served", "s1", NoContext()), OriginContext("plugin")));
    EXPECT_FALSE(manager->GetInstance(PathTo("Served", "s9", NoContext()), OriginContext("plugin")));
    EXPECT_FALSE(manager->GetInstance(PathTo("Served", "s1", NoContext()), NoContext())) << "the repository has none";
    EXPECT_TRUE(manager->GetInstance(PathTo("Plain", "p1", NoContext()), OriginContext("plugin")));
    const int lookups = fake->ClassLookups();
    EXPECT_TRUE(manager->GetInstance(PathTo("Plain", "p1", NoContext()), NoContext()));
    EXPECT_EQ(fake->ClassLookups(), lookups);
    EXPECT_EQ(StatusOf([&] { manager->GetInstance(PathTo("Unknown", "x", NoContext()), OriginContext("plugin")); }),
              TZENTAStatusCode::kNotFound);
}

TEST_F(Manager, EnumeratesTheAttachedNamespacesProviders) {
    boost::shared_ptr<TFakeProviderNamespace> second(new TFakeProviderNamespace({"Third"}));
    manager->AttachProviderNamespace("second", second);
    std::vector<std::string> names;
    manager->EnumerateProviders(
        [&](boost::shared_ptr<IProvider> provider) {
            names.push_back(provider->GetName(NoContext()));
            return true;
        },
        NoContext());
    EXPECT_EQ(names, std::vector<std::string>({"Other", "Served", "Third"}));
    names.clear();
    manager->EnumerateProviders(
        [&](boost::shared_ptr<IProvider> provider) {
            names.push_back(provider->GetName(NoContext()));
            return false;
        },
        NoContext());
    EXPECT_EQ(names, std::vector<std::string>({"Other"}));
    EXPECT_EQ(StatusOf([&] { manager->AttachProviderNamespace("self", manager); }), TZENTAStatusCode::kInvalidArgument);
}

TEST_F(Manager, ForwardsEverythingElseToTheRepository) {
    EXPECT_EQ(repository->GetUpcallNamespace(), manager);
    EXPECT_EQ(manager->GetRepository(), repository);
    boost::shared_ptr<ICIMClass> made = manager->AllocateClass("Made", plain, NoContext());
    EXPECT_EQ(repository->GetClass("Made", NoContext()), made);
    EXPECT_EQ(manager->GetQualifierDecl("Key", NoContext()), repository->GetQualifierDecl("Key", NoContext()));
    boost::shared_ptr<ICIMInstance> p1 = AddInstance(*plain, {{"Id", TCIMValue("p1")}});
    manager->DeleteInstance(p1->GetReference(NoContext()), NoContext());
    EXPECT_FALSE(repository->GetInstance(p1->GetReference(NoContext()), NoContext()));
    EXPECT_EQ(StatusOf([&] { manager->SetUpcallNamespace(repository, NoContext()); }),
              TZENTAStatusCode::kUnsupportedOperation);
    manager->AddUnderlyingNamespace(TInmemNamespace::Create(), NoContext());
    EXPECT_TRUE(manager->GetProviderNamespace("inmem"));
}

TEST_F(Manager, AssociationsServedByAProviderAnswerThroughTheManager) {
    boost::shared_ptr<ICIMClass> link = AddAssociation(*repository, "Link", {{"From", "Plain"}, {"To", "Plain"}});
    Qualify(*repository, *link, "PLUGINNAME", TCIMValue("Served"));
    boost::shared_ptr<ICIMClass> providerPlain = fake->Store()->AllocateClass("Plain", {}, NoContext());
    AddKey(*fake->Store(), *providerPlain, "Id");
    boost::shared_ptr<ICIMClass> providerLink =
        AddAssociation(*fake->Store(), "Link", {{"From", "Plain"}, {"To", "Plain"}});
    boost::shared_ptr<ICIMInstance> p1 = AddInstance(*plain, {{"Id", TCIMValue("p1")}});
    boost::shared_ptr<ICIMInstance> p2 = AddInstance(*plain, {{"Id", TCIMValue("p2")}});
    AddInstance(*providerLink, {{"From", PathOf(p1)}, {"To", PathOf(p2)}});

    TCollector<ICIMInstance> associated, references;
    p1->EnumerateAssociatedInstances(associated.Callback(), "Link", "", "From", "", NoContext());
    EXPECT_EQ(PropertyTexts(associated.items, "Id"), std::vector<std::string>({"p2"}));
    ASSERT_EQ(associated.items.size(), 1u);
    EXPECT_EQ(associated.items[0], p2) << "the far end resolves to the repository instance";
    p2->EnumerateAssociationInstances(references.Callback(), "", "To", NoContext());
    ASSERT_EQ(references.items.size(), 1u);
    EXPECT_EQ(references.items[0]->GetClass(NoContext()), providerLink);
    EXPECT_GT(fake->ClassLookups(), 0);
}

TEST(ManagerProvider, MakesManagersOverPopulatedRepositories) {
    boost::shared_ptr<INamespaceProvider> provider = TNamespaceManager::GetManagerProvider();
    EXPECT_EQ(provider->GetName(NoContext()), "manager");
    EXPECT_EQ(provider->GetType(NoContext()), INamespaceProvider::kManagerNamespace);
    boost::shared_ptr<TNamespaceManager> made =
        boost::dynamic_pointer_cast<TNamespaceManager>(provider->AllocateNamespace(NoContext(), true));
    ASSERT_TRUE(made);
    EXPECT_TRUE(made->GetClass("PG_Provider", NoContext()));
    EXPECT_EQ(made->GetNamespaceProvider(NoContext()), provider);
    EXPECT_EQ(StatusOf([] { TNamespaceManager::Create({}); }), TZENTAStatusCode::kMissingRepository);
}

}  // namespace
