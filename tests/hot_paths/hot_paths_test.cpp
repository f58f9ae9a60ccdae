// What every instance and every routed request goes through: property and
// qualifier names matched without regard to ASCII case (and only ASCII),
// inherited declarations merged with overrides in place, instances built
// with all their properties, children filed once, and the provider origin
// the only context entry a routed request loses.
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "InmemTestSupport.h"
#include "TNamespaceManager.h"

using namespace inmemtest;

namespace {

std::vector<std::string> PropertyNames(ICIMInstance& instance) {
    TCollector<ICIMProperty> properties;
    instance.EnumerateProperties(properties.Callback(), NoContext());
    std::vector<std::string> names;
    for (const auto& property : properties.items) names.push_back(property->GetName());
    return names;
}

std::vector<std::string> DeclNames(const ICIMClass& cls) {
    TCollector<ICIMPropertyDecl> decls;
    cls.EnumeratePropertyDecls(decls.Callback(), NoContext());
    std::vector<std::string> names;
    for (const auto& decl : decls.items) names.push_back(decl->GetName());
    return names;
}

class HotPaths : public ::testing::Test {
protected:
    void SetUp() override { repository = StandardRepository(); }

    boost::shared_ptr<ICIMClass> NewClass(const std::string& name, boost::shared_ptr<ICIMClass> superClass = {}) {
        return repository->AllocateClass(name, superClass, NoContext());
    }

    boost::shared_ptr<TInmemNamespace> repository;
};

TEST_F(HotPaths, NamesFoldOnlyASCIILetters) {
    // "Größe" in UTF-8: the bytes of ö and ß have no case to fold.
    const std::string umlaut = "Gr\xC3\xB6\xC3\x9F" "e";
    boost::shared_ptr<ICIMClass> cls = NewClass("Sized");
    AddKey(*repository, *cls, "Id");
    cls->AllocatePropertyDecl(umlaut, TCIMValue(1u), NoContext());
    cls->AllocatePropertyDecl("Count", TCIMValue(2u), NoContext());
    boost::shared_ptr<ICIMInstance> instance = cls->AllocateInstance(NoContext());
    struct TCase {
        std::string name;
        bool found;
    };
    const TCase cases[] = {
        {"count", true},
        {"COUNT", true},
        {"Coun", false},
        {"Counts", false},
        {"GR\xC3\xB6\xC3\x9F" "E", true},   // only G, R and E fold
        {"Gr\xC3\x96\xC3\x9F" "e", false},  // Ö is another byte than ö
        {"iD", true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(static_cast<bool>(instance->GetProperty(c.name, NoContext())), c.found) << c.name;
    }
    EXPECT_TRUE(cls->GetPropertyDecl("ID", NoContext())->GetQualifier("KEY", NoContext()))
        << "qualifier names fold as well";
}

TEST_F(HotPaths, OverridesTakeTheInheritedSlotAtEveryLevel) {
    boost::shared_ptr<ICIMClass> base = NewClass("Base");
    AddKey(*repository, *base, "Id");
    base->AllocatePropertyDecl("Count", TCIMValue(1u), NoContext());
    base->AllocatePropertyDecl("Label", TCIMValue("base"), NoContext());
    boost::shared_ptr<ICIMClass> middle = NewClass("Middle", base);
    middle->AllocatePropertyDecl("Extra", TCIMValue("m"), NoContext());
    middle->AllocatePropertyDecl("COUNT", TCIMValue(2u), NoContext());
    boost::shared_ptr<ICIMClass> leaf = NewClass("Leaf", middle);
    leaf->AllocatePropertyDecl("label", TCIMValue("leaf"), NoContext());
    leaf->AllocatePropertyDecl("Last", TCIMValue(true), NoContext());

    EXPECT_EQ(DeclNames(*middle), std::vector<std::string>({"Id", "COUNT", "Label", "Extra"}));
    EXPECT_EQ(DeclNames(*leaf), std::vector<std::string>({"Id", "COUNT", "label", "Extra", "Last"}));
    boost::shared_ptr<ICIMInstance> instance = leaf->AllocateInstance(NoContext());
    EXPECT_EQ(PropertyNames(*instance), DeclNames(*leaf));
    EXPECT_EQ(static_cast<unsigned int>(instance->GetProperty("count", NoContext())->GetValue()), 2u);
    EXPECT_EQ(static_cast<std::string>(instance->GetProperty("LABEL", NoContext())->GetValue()), "leaf");

    // A declaration that replaces an own one takes its place, and every
    // subclass sees the change.
    boost::shared_ptr<ICIMPropertyDecl> replacement =
        NewClass("Donor")->AllocatePropertyDecl("extra", TCIMValue("d"), NoContext());
    middle->AddPropertyDecl(replacement);
    EXPECT_EQ(DeclNames(*leaf), std::vector<std::string>({"Id", "COUNT", "label", "extra", "Last"}));
    EXPECT_EQ(leaf->GetPropertyDecl("EXTRA", NoContext()), replacement);
}

TEST_F(HotPaths, InstancesOfWideClassesGetEveryPropertyInOrder) {
    boost::shared_ptr<ICIMClass> wide = NewClass("Wide");
    std::vector<std::string> expected;
    for (unsigned int i = 0; i < 40; ++i) {
        expected.push_back("P" + std::to_string(i));
        wide->AllocatePropertyDecl(expected.back(), TCIMValue(i), NoContext());
    }
    boost::shared_ptr<ICIMInstance> instance = wide->AllocateInstance(NoContext());
    EXPECT_EQ(PropertyNames(*instance), expected);
    EXPECT_EQ(static_cast<unsigned int>(instance->GetProperty("p39", NoContext())->GetValue()), 39u);
    boost::shared_ptr<ICIMInstance> bare = NewClass("Bare")->AllocateInstance(NoContext());
    EXPECT_TRUE(PropertyNames(*bare).empty());
}

TEST_F(HotPaths, AReferenceDefaultIsStoredWithoutItsNamespaceAndReadWithIt) {
    boost::shared_ptr<ICIMClass> target = NewClass("Target");
    AddKey(*repository, *target, "Id");
    boost::shared_ptr<ICIMInstance> targetInstance = AddInstance(*target, {{"Id", TCIMValue("t")}});
    boost::shared_ptr<ICIMClass> holder = NewClass("Holder");
    holder->AllocatePropertyDecl("Target", PathOf(targetInstance), NoContext());

    boost::shared_ptr<ICIMInstance> instance = holder->AllocateInstance(NoContext());
    {
        const TCIMReference read = instance->GetProperty("Target", NoContext())->GetValue();
        EXPECT_EQ(read.GetNamespace(), repository);
        EXPECT_EQ(read, targetInstance->GetReference(NoContext()));
    }

    boost::weak_ptr<TInmemNamespace> watch = repository;
    repository.reset();
    target.reset();
    targetInstance.reset();
    holder.reset();
    EXPECT_TRUE(watch.expired()) << "an instance made from the default must not keep the repository";
    const TCIMReference orphan = instance->GetProperty("Target", NoContext())->GetValue();
    EXPECT_FALSE(orphan.GetNamespace());
}

TEST_F(HotPaths, AChildIsFiledOnce) {
    boost::shared_ptr<ICIMClass> root = repository->GetClass("<root>", NoContext());
    boost::shared_ptr<ICIMClass> parent = NewClass("Parent");
    boost::shared_ptr<ICIMClass> child = NewClass("Child", parent);
    parent->AddChildClass(child);
    root->AddChildClass(parent);
    EXPECT_EQ(SubClassNames(*parent, false), std::vector<std::string>({"Child"}));
    const std::vector<std::string> roots = SubClassNames(*root, false);
    EXPECT_EQ(std::count(roots.begin(), roots.end(), "Parent"), 1);

    // A child that has gone is neither listed nor mistaken for a new one.
    boost::shared_ptr<TInmemNamespace> elsewhere = TInmemNamespace::Create();
    boost::shared_ptr<ICIMClass> stray = elsewhere->AllocateClass("Stray", {}, NoContext());
    parent->AddChildClass(stray);
    EXPECT_EQ(SubClassNames(*parent, false), std::vector<std::string>({"Child", "Stray"}));
    stray.reset();
    elsewhere.reset();
    EXPECT_EQ(SubClassNames(*parent, false), std::vector<std::string>({"Child"}));
    boost::shared_ptr<ICIMClass> second = NewClass("Second", parent);
    parent->AddChildClass(second);
    EXPECT_EQ(SubClassNames(*parent, false), std::vector<std::string>({"Child", "Second"}));
}

// A provider namespace that remembers the context of the last class look-up.
class TRecordingNamespace : public TFakeProviderNamespace {
public:
    TRecordingNamespace() : TFakeProviderNamespace({"Served"}) {}
    boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TCIMContext context) override {
        fLastContext = context;
        return TFakeProviderNamespace::GetClass(name, context);
    }
    TCIMContext fLastContext;
};

TEST_F(HotPaths, ARoutedRequestLosesOnlyItsOrigin) {
    boost::shared_ptr<TNamespaceManager> manager = TNamespaceManager::Create(repository);
    boost::shared_ptr<ICIMClass> served = NewClass("Served");
    Qualify(*repository, *served, "PLUGINNAME", TCIMValue("Served"));
    boost::shared_ptr<TRecordingNamespace> provider(new TRecordingNamespace);
    LoadStandardDocuments(provider->Store());
    boost::shared_ptr<ICIMClass> providerClass = provider->Store()->AllocateClass("Served", {}, NoContext());
    manager->AttachProviderNamespace("recording", provider);

    TCIMContext context = OriginContext("cmpi");
    context["aaa"] = TCIMValue(1u);  // sorts before the origin
    context["zzz"] = TCIMValue("last");
    EXPECT_EQ(manager->GetClass("Served", context), providerClass);
    TCIMContext expected;
    expected["aaa"] = TCIMValue(1u);
    expected["zzz"] = TCIMValue("last");
    EXPECT_EQ(provider->fLastContext, expected);
    EXPECT_EQ(context.size(), 3u) << "the caller's map is left alone";
}

}  // namespace
