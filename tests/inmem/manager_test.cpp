// The namespace manager: requests from providers ("nspID") reach the provider namespace serving the class.
#include <memory>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "InmemTestSupport.h"
#include "TNamespaceManager.h"

using namespace inmemtest;

namespace {

const int kNotFound = TZENTAStatusCode::kNotFound;

// A repository with Plain and Served (PLUGINNAME=Served); provider Served of the attached "fake" has its own Served.
class Manager : public ::testing::Test {
protected:
    void SetUp() override {
        AddKey(*repository, *plain, "Id");
        AddKey(*repository, *served, "Id");
        Qualify(*repository, *served, "PLUGINNAME", TCIMValue("Served"));
        LoadStandardDocuments(fake->Store());
        AddKey(*fake->Store(), *providerClass, "Id");
        for (const char* id : {"s1", "s2"}) AddInstance(*providerClass, {{"Id", TCIMValue(id)}});
        manager->AttachProviderNamespace("fake", fake);
    }

    TCIMReference PathTo(const char* cls, const char* id, const TCIMContext& context = NoContext()) {
        TCIMReference path(manager, context);
        path.SetClassName(cls);
        path.AddKeyValue("Id", TCIMValue(id));
        return path;
    }

    boost::shared_ptr<TInmemNamespace> repository = StandardRepository();
    boost::shared_ptr<TNamespaceManager> manager = TNamespaceManager::Create(repository);
    boost::shared_ptr<ICIMClass> plain = repository->AllocateClass("Plain", {}, NoContext());
    boost::shared_ptr<ICIMClass> served = repository->AllocateClass("Served", {}, NoContext());
    boost::shared_ptr<TFakeProviderNamespace> fake{new TFakeProviderNamespace({"Other", "Served"})};
    boost::shared_ptr<ICIMClass> providerClass = fake->Store()->AllocateClass("Served", {}, NoContext());
};

TEST_F(Manager, RoutesClassesByOriginAndServingProvider) {
    EXPECT_EQ(manager->GetClass("Served", NoContext()), served);
    EXPECT_FALSE(manager->GetClass("Unknown", NoContext())) << "plain requests answer empty";
    EXPECT_EQ(manager->GetClass("Served", TCIMContext{{"nspID", TCIMValue("")}}), served) << "an empty origin is plain";
    EXPECT_EQ(manager->GetClass("<root>", OriginContext("cmpi")), repository->GetClass("<root>", NoContext()));
    EXPECT_EQ(fake->ClassLookups(), 0);
    EXPECT_EQ(manager->GetClass("Served", OriginContext("plugin")), providerClass);
    EXPECT_EQ(manager->GetClass("Plain", OriginContext("cmpi")), plain);
    EXPECT_EQ(StatusOf([&] { manager->GetClass("Unknown", OriginContext("cmpi")); }), kNotFound);
    const TCIMReference s2 = PathTo("Served", "s2", OriginContext("cmpi"));
    EXPECT_EQ(s2.GetClass(), providerClass) << "a path resolves through the manager with its own context";
    EXPECT_EQ(PathTo("Served", "s2").GetClass(), served);
    EXPECT_EQ(s2.GetCIMElement(false), fake->Store()->GetInstance(s2, NoContext()));

    Qualify(*repository, *plain, "PLUGINNAME", TCIMValue("Nobody"));
    EXPECT_EQ(StatusOf([&] { manager->GetClass("Plain", OriginContext("cmpi")); }), TZENTAStatusCode::kProviderFailure);
    manager->DetachProviderNamespace("fake");
    EXPECT_EQ(StatusOf([&] { manager->GetClass("Served", OriginContext("cmpi")); }),
              TZENTAStatusCode::kProviderFailure);
}

// A provider's instance is asked of its namespace, one look-up per path,
// whichever namespace the path names; one that only enumerates is found
// among what it enumerates.
TEST_F(Manager, FindsAProvidersInstanceByAskingItsNamespaceWhateverNamespaceThePathNames) {
    AddInstance(*plain, {{"Id", TCIMValue("p1")}});
    TCIMReference inRepository(repository, NoContext());
    inRepository.SetClassName("Served");
    inRepository.AddKeyValue("Id", TCIMValue("s2"));
    EXPECT_TRUE(manager->GetInstance(PathTo("Served", "s1", OriginContext("cmpi")), NoContext()));
    EXPECT_TRUE(manager->GetInstance(PathTo("Served", "s1"), OriginContext("plugin")));
    EXPECT_TRUE(manager->GetInstance(PathTo("Served", "s1"), NoContext()));
    EXPECT_TRUE(inRepository.GetCIMElement(false)) << "the repository routes its providers' classes";
    EXPECT_EQ(fake->InstanceLookups(), 4);
    EXPECT_EQ(fake->ClassLookups(), 0) << "nothing was enumerated";
    EXPECT_TRUE(manager->GetInstance(PathTo("Plain", "p1"), NoContext()));
    EXPECT_FALSE(manager->GetInstance(PathTo("Plain", "p2"), OriginContext("cmpi")));
    EXPECT_EQ(fake->InstanceLookups(), 4);

    fake->AnswerSingleInstances(false);
    EXPECT_TRUE(manager->GetInstance(PathTo("Served", "s2", OriginContext("cmpi")), NoContext()));
    EXPECT_FALSE(manager->GetInstance(PathTo("Served", "s9", OriginContext("cmpi")), NoContext()));
    EXPECT_EQ(fake->InstanceLookups(), 6);
    EXPECT_EQ(StatusOf([&] { manager->GetInstance(PathTo("X", "x"), OriginContext("cmpi")); }), kNotFound);
    manager->DetachProviderNamespace("fake");
    EXPECT_FALSE(inRepository.GetCIMElement(false)) << "a class nobody serves now has no instance";
}

// Routes are kept, and forgotten when a class or the attached namespaces
// change.
TEST_F(Manager, KeepsItsRoutesOnlyWhileClassesAndAttachedNamespacesStayAsTheyWere) {
    EXPECT_EQ(manager->GetClass("Served", OriginContext("cmpi")), providerClass);
    EXPECT_EQ(manager->GetClass("SERVED", OriginContext("cmpi")), providerClass);
    EXPECT_EQ(fake->ClassLookups(), 1);
    boost::shared_ptr<TFakeProviderNamespace> other{new TFakeProviderNamespace({"Served"})};
    LoadStandardDocuments(other->Store());
    boost::shared_ptr<ICIMClass> otherClass = other->Store()->AllocateClass("Served", {}, NoContext());
    manager->DetachProviderNamespace("fake");
    manager->AttachProviderNamespace("other", other);
    EXPECT_EQ(manager->GetClass("Served", OriginContext("cmpi")), otherClass);
    Qualify(*repository, *served, "PLUGINNAME", TCIMValue("Other"));
    manager->AttachProviderNamespace("fake", fake);
    EXPECT_EQ(manager->GetClass("Served", OriginContext("cmpi")), providerClass) << "Other is the fake's";
    EXPECT_EQ(manager->GetClass("Plain", OriginContext("cmpi")), plain);
    Qualify(*repository, *plain, "PLUGINNAME", TCIMValue("Served"));
    EXPECT_EQ(StatusOf([&] { manager->GetClass("Plain", OriginContext("cmpi")); }), kNotFound)
        << "routed now, to a namespace that lacks the class";
}

// A walk from a repository instance over an association one provider
// namespace serves, to far ends another one serves and to far ends of the
// repository: one look-up per far end, and a provider that gets no single
// instances has its class enumerated once, however many far ends it has.
TEST(ManagerWalks, FarEndsComeFromTheirOwnNamespaceWithOneLookUpEach) {
    typedef std::multiset<std::string> S;
    boost::shared_ptr<TInmemNamespace> repository = StandardRepository();
    boost::shared_ptr<TNamespaceManager> manager = TNamespaceManager::Create(repository);
    boost::shared_ptr<TFakeProviderNamespace> links{new TFakeProviderNamespace({"Links"})};
    boost::shared_ptr<TFakeProviderNamespace> items{new TFakeProviderNamespace({"Items"})};
    const auto define = [](TInmemNamespace& ns, const char* provider) {
        for (const char* name : {"Owner", "Item", "Tag"}) AddKey(ns, *ns.AllocateClass(name, {}, NoContext()), "Id");
        for (const char* name : {"Owns", "Tagged"}) {
            boost::shared_ptr<ICIMClass> association =
                AddAssociation(ns, name, {{"Owner", "Owner"}, {"Part", name == std::string("Owns") ? "Item" : "Tag"}});
            if (provider != nullptr) Qualify(ns, *association, "PLUGINNAME", TCIMValue(provider));
        }
    };
    define(*repository, "Links");
    Qualify(*repository, *repository->GetClass("Item", NoContext()), "PLUGINNAME", TCIMValue("Items"));
    for (const auto& store : {links, items}) {
        LoadStandardDocuments(store->Store());
        define(*store->Store(), nullptr);
    }
    boost::shared_ptr<ICIMInstance> owner = AddInstance(*repository->GetClass("Owner", {}), {{"Id", TCIMValue("o")}});
    AddInstance(*repository->GetClass("Tag", {}), {{"Id", TCIMValue("t")}});
    const auto path = [&](const char* cls, const std::string& id) {
        TCIMReference reference(manager, NoContext());
        reference.SetClassName(cls);
        reference.AddKeyValue("Id", TCIMValue(id));
        return TCIMValue(reference);
    };
    S expected = {"t"};
    for (int i = 0; i < 6; ++i) {
        const std::string id = "i" + std::to_string(i);
        AddInstance(*items->Store()->GetClass("Item", {}), {{"Id", TCIMValue(id)}});
        AddInstance(*links->Store()->GetClass("Owns", {}), {{"Owner", path("Owner", "o")}, {"Part", path("Item", id)}});
        expected.insert(id);
    }
    AddInstance(*links->Store()->GetClass("Owns", {}), {{"Owner", path("Owner", "x")}, {"Part", path("Item", "i0")}});
    AddInstance(*links->Store()->GetClass("Tagged", {}), {{"Owner", path("Owner", "o")}, {"Part", path("Tag", "t")}});
    AddInstance(*links->Store()->GetClass("Tagged", {}), {{"Owner", path("Owner", "o")}, {"Part", path("Tag", "u")}});
    manager->AttachProviderNamespace("links", links);
    manager->AttachProviderNamespace("items", items);
    const auto associators = [&] {
        TCollector<ICIMInstance> found;
        owner->EnumerateAssociatedInstances(found.Callback(), "", "", "", "", NoContext());
        S ids;
        for (const auto& instance : found.items) ids.insert(instance->GetProperty("Id", {})->GetValue().ToString());
        return ids;
    };
    EXPECT_EQ(associators(), expected) << "t from the repository; u names nothing";
    EXPECT_EQ(items->InstanceLookups(), 6);
    EXPECT_EQ(items->ClassLookups(), 0);

    items->AnswerSingleInstances(false);
    EXPECT_EQ(associators(), expected);
    EXPECT_EQ(items->InstanceLookups(), 7) << "one miss, then the enumeration of the class serves the rest";
    EXPECT_EQ(items->ClassLookups(), 1);
}

// Paths resolve their class through the manager they name without copying
// their context; with more managers alive than that road keeps track of,
// or after managers come and go, every path still gets its own manager's
// answer, and a path whose manager has gone gets none.
TEST(ManagerLookUps, EveryPathGetsItsOwnManagersClassWhateverManagersComeAndGo) {
    struct TServed {
        boost::shared_ptr<TInmemNamespace> repository = StandardRepository();
        boost::shared_ptr<TNamespaceManager> manager = TNamespaceManager::Create(repository);
        boost::shared_ptr<ICIMClass> cls = repository->AllocateClass("Cls", {}, NoContext());
        TCIMReference Path() const { return PathIn(manager); }
        // Namespaces of other kinds may take the memory of managers that
        // have gone: they must never be taken for one.
        TCIMReference RepositoryPath() const { return PathIn(repository); }
        static TCIMReference PathIn(const boost::shared_ptr<ICIMNamespace>& ns) {
            TCIMReference path(ns, OriginContext("cmpi"));
            path.SetClassName("Cls");
            return path;
        }
    };
    std::vector<std::unique_ptr<TServed>> served;
    for (int i = 0; i < 24; ++i) served.emplace_back(new TServed);
    const auto expectOwnAnswers = [&](const char* when) {
        for (std::size_t i = 0; i < served.size(); ++i) {
            EXPECT_EQ(served[i]->Path().GetClass(), served[i]->cls) << when << ", manager " << i;
            EXPECT_EQ(served[i]->RepositoryPath().GetClass(), served[i]->cls) << when << ", repository " << i;
        }
    };
    expectOwnAnswers("24 managers");
    const TCIMReference orphan = served[3]->Path();
    served.erase(served.begin(), served.begin() + 8);
    EXPECT_FALSE(orphan.GetClass()) << "the manager has gone";
    for (int i = 0; i < 8; ++i) served.emplace_back(new TServed);
    expectOwnAnswers("after 8 went and 8 came");
}

TEST_F(Manager, EnumeratesTheProvidersOfItsNamespacesAndRefusesItself) {
    manager->AttachProviderNamespace("more", boost::shared_ptr<ICIMNamespace>(new TFakeProviderNamespace({"Third"})));
    TCollector<IProvider> all, first;
    manager->EnumerateProviders(all.Callback(), NoContext());
    manager->EnumerateProviders([&](boost::shared_ptr<IProvider> p) { first.items.push_back(p); return false; }, {});
    EXPECT_EQ(all.items.size(), 3u);
    EXPECT_EQ(first.items.size(), 1u);
    EXPECT_EQ(StatusOf([&] { manager->AttachProviderNamespace("self", manager); }), TZENTAStatusCode::kInvalidArgument);
    EXPECT_EQ(StatusOf([] { TNamespaceManager::Create({}); }), TZENTAStatusCode::kMissingRepository);
}

}  // namespace
