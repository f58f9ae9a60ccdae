// Edges the repository's hot paths must answer as the plain algorithms do.
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "InmemTestSupport.h"
#include "TNamespaceManager.h"

using namespace inmemtest;

namespace {

typedef std::vector<std::string> TNames;

TNames PropertyNames(ICIMInstance& instance) {
    TCollector<ICIMProperty> properties;
    instance.EnumerateProperties(properties.Callback(), NoContext());
    TNames names;
    for (const auto& property : properties.items) names.push_back(property->GetName());
    return names;
}

TNames DeclNames(const ICIMClass& cls) {
    TCollector<ICIMPropertyDecl> decls;
    cls.EnumeratePropertyDecls(decls.Callback(), NoContext());
    TNames names;
    for (const auto& decl : decls.items) names.push_back(decl->GetName());
    return names;
}

class HotPaths : public ::testing::Test {
protected:
    boost::shared_ptr<ICIMClass> NewClass(const std::string& name, boost::shared_ptr<ICIMClass> superClass = {}) {
        return repository->AllocateClass(name, superClass, NoContext());
    }
    boost::shared_ptr<TInmemNamespace> repository = StandardRepository();
};

TEST_F(HotPaths, NamesFoldOnlyASCIILetters) {
    boost::shared_ptr<ICIMClass> cls = NewClass("Sized");
    AddKey(*repository, *cls, "Id");
    cls->AllocatePropertyDecl("Gr\xC3\xB6\xC3\x9F" "e", TCIMValue(1u), NoContext());  // "Größe" in UTF-8
    cls->AllocatePropertyDecl("Count", TCIMValue(2u), NoContext());
    boost::shared_ptr<ICIMInstance> instance = cls->AllocateInstance(NoContext());
    const std::pair<std::string, bool> cases[] = {
        {"COUNT", true}, {"Coun", false}, {"Counts", false}, {"iD", true},
        {"GR\xC3\xB6\xC3\x9F" "E", true},   // only G, R and E fold
        {"Gr\xC3\x96\xC3\x9F" "e", false},  // Ö is another byte than ö
    };
    for (const auto& c : cases) {
        EXPECT_EQ(static_cast<bool>(instance->GetProperty(c.first, NoContext())), c.second) << c.first;
    }
    EXPECT_TRUE(cls->GetPropertyDecl("ID", NoContext())->GetQualifier("KEY", NoContext())) << "qualifiers fold too";
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
    EXPECT_EQ(DeclNames(*leaf), TNames({"Id", "COUNT", "label", "Extra", "Last"}));
    boost::shared_ptr<ICIMInstance> instance = leaf->AllocateInstance(NoContext());
    EXPECT_EQ(PropertyNames(*instance), DeclNames(*leaf));
    EXPECT_EQ(static_cast<unsigned int>(instance->GetProperty("count", NoContext())->GetValue()), 2u);

    // A declaration that replaces an own one takes its place in every subclass.
    boost::shared_ptr<ICIMPropertyDecl> replacement =
        NewClass("Donor")->AllocatePropertyDecl("extra", TCIMValue("d"), NoContext());
    middle->AddPropertyDecl(replacement);
    EXPECT_EQ(DeclNames(*leaf), TNames({"Id", "COUNT", "label", "extra", "Last"}));
    EXPECT_EQ(leaf->GetPropertyDecl("EXTRA", NoContext()), replacement);

    // Wide classes get every property, in order.
    boost::shared_ptr<ICIMClass> wide = NewClass("Wide");
    TNames expected;
    for (unsigned int i = 0; i < 40; ++i) {
        expected.push_back("P" + std::to_string(i));
        wide->AllocatePropertyDecl(expected.back(), TCIMValue(i), NoContext());
    }
    instance = wide->AllocateInstance(NoContext());
    EXPECT_EQ(PropertyNames(*instance), expected);
    EXPECT_EQ(static_cast<unsigned int>(instance->GetProperty("p39", NoContext())->GetValue()), 39u);
}

// Instances share what their class's declarations say, built once: every
// later change of a declaration, a qualifier or an ancestor must show in the
// instances made after it, and leave those made before as they were.
TEST_F(HotPaths, WhatInstancesShareFollowsEveryChangeOfTheClassAndItsAncestors) {
    boost::shared_ptr<ICIMClass> base = NewClass("Base");
    boost::shared_ptr<ICIMPropertyDecl> id = base->AllocatePropertyDecl("Id", TCIMValue("none"), NoContext());
    boost::shared_ptr<ICIMClass> leaf = NewClass("Leaf", base);
    leaf->AllocatePropertyDecl("Size", TCIMValue(1u), NoContext());
    const auto keys = [&] {
        TNames names;
        leaf->EnumerateKeyNames([&](const std::string* name) { names.push_back(*name); return true; }, NoContext());
        return names;
    };
    boost::shared_ptr<ICIMInstance> before = leaf->AllocateInstance(NoContext());
    EXPECT_EQ(keys(), TNames());

    Qualify(*repository, *id, "Key", TCIMValue(true));
    id->SetDefaultValue(TCIMValue("unnamed"));
    base->AllocatePropertyDecl("Extra", TCIMValue(2u), NoContext());
    EXPECT_EQ(keys(), TNames({"Id"}));
    boost::shared_ptr<ICIMInstance> after = leaf->AllocateInstance(NoContext());
    EXPECT_EQ(PropertyNames(*after), TNames({"Id", "Extra", "Size"}));
    EXPECT_EQ(static_cast<std::string>(after->GetProperty("id", NoContext())->GetValue()), "unnamed");
    EXPECT_EQ(PropertyNames(*before), TNames({"Id", "Size"}));
    EXPECT_EQ(static_cast<std::string>(before->GetProperty("Id", NoContext())->GetValue()), "none");

    id->GetQualifier("Key", NoContext())->SetValue(TCIMValue(false));
    EXPECT_EQ(keys(), TNames()) << "a qualifier changed in place";
    base->RemovePropertyDecl(id);
    EXPECT_EQ(PropertyNames(*leaf->AllocateInstance(NoContext())), TNames({"Extra", "Size"}));
    EXPECT_EQ(static_cast<std::string>(before->GetProperty("Id", NoContext())->GetValue()), "none");
}

// Property objects are views of their instance: they keep it alive, and
// writes through them are checked as writes through the instance are.
TEST_F(HotPaths, PropertiesOfAnInstanceKeepItAliveAndCheckTheirWrites) {
    boost::shared_ptr<ICIMClass> cls = NewClass("Held");
    cls->AllocatePropertyDecl("Count", TCIMValue(1u), NoContext());
    boost::shared_ptr<ICIMInstance> instance = cls->AllocateInstance(NoContext());
    boost::shared_ptr<ICIMProperty> count = instance->GetProperty("COUNT", NoContext());
    instance->SetPropertyValue("count", TCIMValue(5u), NoContext());
    boost::weak_ptr<ICIMInstance> watch = instance;
    instance.reset();
    ASSERT_FALSE(watch.expired());
    EXPECT_EQ(static_cast<unsigned int>(count->GetValue()), 5u);
    EXPECT_EQ(StatusOf([&] { count->SetValue(TCIMValue("five")); }), TZENTAStatusCode::kTypeMismatch);
    count->SetValue(TCIMValue());
    EXPECT_TRUE(count->GetValue().IsNull() && count->GetValue().GetType() == TCIMValue::TCIMType::kUint32);
    EXPECT_EQ(count->GetDecl(), cls->GetPropertyDecl("Count", NoContext()));
    count.reset();
    EXPECT_TRUE(watch.expired());
}

TEST_F(HotPaths, AChildIsFiledOnceAndAGoneChildIsNeitherListedNorMistakenForANewOne) {
    boost::shared_ptr<ICIMClass> root = repository->GetClass("<root>", NoContext());
    boost::shared_ptr<ICIMClass> parent = NewClass("Parent");
    parent->AddChildClass(NewClass("Child", parent));
    root->AddChildClass(parent);
    const TNames roots = SubClassNames(*root, false);
    EXPECT_EQ(std::count(roots.begin(), roots.end(), "Parent"), 1);

    boost::shared_ptr<TInmemNamespace> elsewhere = TInmemNamespace::Create();
    parent->AddChildClass(elsewhere->AllocateClass("Stray", {}, NoContext()));
    EXPECT_EQ(SubClassNames(*parent, false), TNames({"Child", "Stray"}));
    elsewhere.reset();
    EXPECT_EQ(SubClassNames(*parent, false), TNames({"Child"}));
    parent->AddChildClass(NewClass("Second", parent));
    EXPECT_EQ(SubClassNames(*parent, false), TNames({"Child", "Second"}));
}

// A provider namespace that remembers the context of the last class look-up.
struct TRecordingNamespace : TFakeProviderNamespace {
    TRecordingNamespace() : TFakeProviderNamespace({"Served"}) {}
    boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TCIMContext context) override {
        fLastContext = context;
        return TFakeProviderNamespace::GetClass(name, context);
    }
    TCIMContext fLastContext;
};

TEST_F(HotPaths, ARoutedRequestLosesOnlyItsOrigin) {
    boost::shared_ptr<TNamespaceManager> manager = TNamespaceManager::Create(repository);
    Qualify(*repository, *NewClass("Served"), "PLUGINNAME", TCIMValue("Served"));
    boost::shared_ptr<TRecordingNamespace> provider(new TRecordingNamespace);
    LoadStandardDocuments(provider->Store());
    boost::shared_ptr<ICIMClass> providerClass = provider->Store()->AllocateClass("Served", {}, NoContext());
    manager->AttachProviderNamespace("recording", provider);

    TCIMContext context = OriginContext("cmpi");
    context["aaa"] = TCIMValue(1u);  // sorts before the origin
    context["zzz"] = TCIMValue("last");
    EXPECT_EQ(manager->GetClass("Served", context), providerClass);
    TCIMContext expected = context;
    expected.erase("nspID");
    EXPECT_EQ(provider->fLastContext, expected);
    EXPECT_EQ(context.size(), 3u) << "the caller's map is left alone";
}

}  // namespace
