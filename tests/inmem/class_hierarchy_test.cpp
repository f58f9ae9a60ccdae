// Repository classes: inheritance of declarations and qualifiers over three
// levels, the CIM propagation and override rules, static values, filing.
#include <gtest/gtest.h>

#include "InmemTestSupport.h"
#include "TInmemInstance.h"
#include "TZENTAException.h"

using namespace inmemtest;

namespace {

typedef ICIMQualifierDecl D;

int StatusOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const TZENTAException& e) {
        return e.GetStatusCode().GetCode();
    }
    return 0;
}

std::vector<std::string> DeclNames(const ICIMClass& cls) {
    std::vector<std::string> names;
    cls.EnumeratePropertyDecls(
        [&](boost::shared_ptr<ICIMPropertyDecl> decl) {
            names.push_back(decl->GetName());
            return true;
        },
        NoContext());
    return names;
}

std::vector<std::string> KeyNames(const ICIMClass& cls) {
    std::vector<std::string> names;
    cls.EnumerateKeyNames(
        [&](const std::string* name) {
            names.push_back(*name);
            return true;
        },
        NoContext());
    return names;
}

std::vector<std::string> QualifierNames(const ICIMNamedElement& element) {
    std::vector<std::string> names;
    element.EnumerateQualifiers(
        [&](boost::shared_ptr<ICIMQualifier> qualifier) {
            names.push_back(qualifier->GetName());
            return true;
        },
        NoContext());
    return names;
}

// Base (abstract, versioned, served by provider P) <- Middle <- Leaf.
class ClassHierarchy : public ::testing::Test {
protected:
    void SetUp() override {
        ns = StandardRepository();
        base = ns->AllocateClass("Base", {}, NoContext());
        Qualify(*ns, *base, "Description", TCIMValue("base"));
        Qualify(*ns, *base, "Abstract", TCIMValue(true));
        Qualify(*ns, *base, "Version", TCIMValue("1.0"));
        Qualify(*ns, *base, "PLUGINNAME", TCIMValue("P"));
        AddKey(*ns, *base, "Id");
        boost::shared_ptr<ICIMPropertyDecl> count = base->AllocatePropertyDecl("Count", TCIMValue(7u), NoContext());
        Qualify(*ns, *count, "Description", TCIMValue("how many"));
        base->AllocatePropertyDecl("Label", NullString(), NoContext());
        boost::shared_ptr<ICIMMethodDecl> reset =
            base->AllocateMethodDecl("Reset", TCIMValue::TCIMType::kUint32, NoContext());
        boost::shared_ptr<ICIMParameterDecl> force =
            reset->AllocateParameterDecl("Force", TCIMValue::TCIMType::kBoolean, false, "", NoContext());
        Qualify(*ns, *force, "IN", TCIMValue(true));

        middle = ns->AllocateClass("Middle", base, NoContext());
        Qualify(*ns, *middle, "Description", TCIMValue("middle"));
        middle->AllocatePropertyDecl("Count", TCIMValue(9u), NoContext());
        AddKey(*ns, *middle, "Slot", TCIMValue(static_cast<unsigned short>(0)));

        leaf = ns->AllocateClass("Leaf", middle, NoContext());
        leaf->AllocatePropertyDecl("Extra", TCIMValue(-1LL), NoContext());
    }

    boost::shared_ptr<TInmemNamespace> ns;
    boost::shared_ptr<ICIMClass> base, middle, leaf;
};

TEST_F(ClassHierarchy, SuperclassChainAndSubclassTree) {
    EXPECT_EQ(leaf->GetSuperClass(NoContext()), middle);
    EXPECT_EQ(middle->GetSuperClass(NoContext()), base);
    EXPECT_FALSE(base->GetSuperClass(NoContext()));
    EXPECT_TRUE(base->IsRootClass(NoContext()));
    EXPECT_FALSE(leaf->IsRootClass(NoContext()));
    EXPECT_TRUE(leaf->IsSubclassOf(base, NoContext()));
    EXPECT_TRUE(leaf->IsSubclassOf(middle, NoContext()));
    EXPECT_FALSE(leaf->IsSubclassOf(leaf, NoContext())) << "strict";
    EXPECT_FALSE(base->IsSubclassOf(leaf, NoContext()));
    EXPECT_EQ(SubClassNames(*base, false), std::vector<std::string>({"Middle"}));
    EXPECT_EQ(SubClassNames(*base, true), std::vector<std::string>({"Middle", "Leaf"}));
}

TEST_F(ClassHierarchy, RootPseudoClassListsTheRootClasses) {
    boost::shared_ptr<ICIMClass> other = ns->AllocateClass("Other", {}, NoContext());
    boost::shared_ptr<ICIMClass> root = ns->GetClass("<root>", NoContext());
    ASSERT_TRUE(root);
    EXPECT_EQ(root->GetName(NoContext()), "<root>");
    std::vector<std::string> roots = SubClassNames(*root, false);
    EXPECT_EQ(std::count(roots.begin(), roots.end(), "Base"), 1);
    EXPECT_EQ(roots.back(), "Other");
    EXPECT_EQ(std::count(roots.begin(), roots.end(), "Middle"), 0);
    TCollector<ICIMClass> viaNamespace;
    ns->EnumerateRootClasses(viaNamespace.Callback(), NoContext());
    EXPECT_EQ(ClassNames(viaNamespace.items), roots);
}

TEST_F(ClassHierarchy, LookupIgnoresCaseAndKeepsTheSpelling) {
    EXPECT_EQ(ns->GetClass("lEaF", NoContext()), leaf);
    EXPECT_EQ(ns->GetClass("LEAF", NoContext())->GetName(NoContext()), "Leaf");
    EXPECT_FALSE(ns->GetClass("Leaves", NoContext()));
    EXPECT_EQ(StatusOf([&] { ns->AllocateClass("BASE", {}, NoContext()); }), TZENTAStatusCode::kDuplicateClass);
    EXPECT_EQ(StatusOf([&] { ns->AllocateClass("<root>", {}, NoContext()); }), TZENTAStatusCode::kInvalidClass);
    boost::shared_ptr<TInmemNamespace> elsewhere = TInmemNamespace::Create();
    boost::shared_ptr<ICIMClass> stranger = elsewhere->AllocateClass("Stranger", {}, NoContext());
    EXPECT_EQ(StatusOf([&] { ns->AllocateClass("Child", stranger, NoContext()); }),
              TZENTAStatusCode::kMissingSuperclass);
}

TEST_F(ClassHierarchy, PropertiesAreInheritedWithOverridesInPlace) {
    EXPECT_EQ(DeclNames(*leaf), std::vector<std::string>({"Id", "Count", "Label", "Slot", "Extra"}));
    boost::shared_ptr<ICIMPropertyDecl> count = leaf->GetPropertyDecl("count", NoContext());
    ASSERT_TRUE(count);
    EXPECT_EQ(count->GetClassOrigin(), "Middle");
    EXPECT_EQ(static_cast<unsigned int>(count->GetDefaultValue()), 9u);
    EXPECT_EQ(static_cast<unsigned int>(base->GetPropertyDecl("Count", NoContext())->GetDefaultValue()), 7u);
    EXPECT_EQ(leaf->GetPropertyDecl("Id", NoContext()), base->GetPropertyDecl("Id", NoContext()));
    EXPECT_FALSE(base->GetPropertyDecl("Extra", NoContext()));
}

TEST_F(ClassHierarchy, KeysAreInherited) {
    EXPECT_EQ(KeyNames(*base), std::vector<std::string>({"Id"}));
    EXPECT_EQ(KeyNames(*leaf), std::vector<std::string>({"Id", "Slot"}));
}

TEST_F(ClassHierarchy, BadDeclarationsAreRefused) {
    EXPECT_EQ(StatusOf([&] { middle->AllocatePropertyDecl("Label", TCIMValue(static_cast<unsigned char>(1)), NoContext()); }),
              TZENTAStatusCode::kTypeMismatch);
    EXPECT_EQ(StatusOf([&] { leaf->AllocatePropertyDecl("Extra", TCIMValue(1LL), NoContext()); }),
              TZENTAStatusCode::kAlreadyExists);
    EXPECT_EQ(StatusOf([&] { leaf->AllocatePropertyDecl("Untyped", TCIMValue(), NoContext()); }),
              TZENTAStatusCode::kTypeMismatch);
    EXPECT_EQ(StatusOf([&] { leaf->AllocateMethodDecl("Reset", TCIMValue::TCIMType::kString, NoContext()); }),
              TZENTAStatusCode::kTypeMismatch);
}

TEST_F(ClassHierarchy, QualifiersPropagateUnlessRestricted) {
    bool propagated = false;
    boost::shared_ptr<ICIMQualifier> description = leaf->GetQualifier("description", propagated, NoContext());
    ASSERT_TRUE(description);
    EXPECT_TRUE(propagated);
    EXPECT_EQ(static_cast<std::string>(description->GetValue()), "middle");
    EXPECT_EQ(static_cast<std::string>(middle->GetQualifier("Description", propagated, NoContext())->GetValue()),
              "middle");
    EXPECT_FALSE(propagated);
    for (const char* restricted : {"Abstract", "Version", "PLUGINNAME"}) {
        EXPECT_TRUE(base->GetQualifier(restricted, NoContext())) << restricted;
        EXPECT_FALSE(middle->GetQualifier(restricted, NoContext())) << restricted;
        EXPECT_FALSE(leaf->GetQualifier(restricted, NoContext())) << restricted;
    }
    EXPECT_TRUE(base->IsAbstract(NoContext()));
    EXPECT_FALSE(middle->IsAbstract(NoContext()));
    EXPECT_EQ(QualifierNames(*leaf), std::vector<std::string>({"Description"}));
}

TEST_F(ClassHierarchy, QualifiersAddedLaterReachExistingSubclasses) {
    Qualify(*ns, *base, "Terminal", TCIMValue(true));
    EXPECT_TRUE(leaf->GetQualifier("Terminal", NoContext()));
}

TEST_F(ClassHierarchy, AQualifiersOwnFlavorDecidesItsPropagation) {
    boost::shared_ptr<ICIMQualifierDecl> shown = ns->GetQualifierDecl("DisplayName", NoContext());
    middle->AddQualifier(middle->AllocateQualifier(shown, TCIMValue("M"), D::kRestricted, NoContext()), NoContext());
    EXPECT_TRUE(middle->GetQualifier("DisplayName", NoContext()));
    EXPECT_FALSE(leaf->GetQualifier("DisplayName", NoContext()));
    boost::shared_ptr<ICIMQualifierDecl> version = ns->GetQualifierDecl("Version", NoContext());
    boost::shared_ptr<ICIMQualifier> spread =
        middle->AllocateQualifier(version, TCIMValue("2.0"), D::kToSubclass, NoContext());
    EXPECT_EQ(spread->GetFlavor() & (D::kToSubclass | D::kRestricted), D::kToSubclass);
    EXPECT_TRUE(spread->GetFlavor() & D::kTranslatable) << "kept from the declaration";
    middle->AddQualifier(spread, NoContext());
    EXPECT_TRUE(leaf->GetQualifier("Version", NoContext()));
}

TEST_F(ClassHierarchy, PropertyQualifiersFollowTheOverriddenDeclaration) {
    boost::shared_ptr<ICIMPropertyDecl> slot = leaf->GetPropertyDecl("Slot", NoContext());
    EXPECT_TRUE(slot->IsKey());
    boost::shared_ptr<ICIMPropertyDecl> count = middle->GetPropertyDecl("Count", NoContext());
    bool propagated = false;
    ASSERT_TRUE(count->GetQualifier("Description", propagated, NoContext()));
    EXPECT_TRUE(propagated);
}

TEST_F(ClassHierarchy, DisableOverrideRefusesAnotherValue) {
    boost::shared_ptr<ICIMPropertyDecl> id = middle->AllocatePropertyDecl("Id", NullString(), NoContext());
    EXPECT_TRUE(id->IsKey()) << "Key propagates to the overriding declaration";
    EXPECT_EQ(StatusOf([&] { Qualify(*ns, *id, "Key", TCIMValue(false)); }), TZENTAStatusCode::kInvalidQualifier);
    Qualify(*ns, *id, "Key", TCIMValue(true));
    EXPECT_TRUE(id->IsKey());
    boost::shared_ptr<ICIMClass> link = AddAssociation(*ns, "Link", {{"A", "Base"}, {"B", "Base"}});
    boost::shared_ptr<ICIMClass> special = ns->AllocateClass("SpecialLink", link, NoContext());
    EXPECT_TRUE(special->IsAssociation(NoContext()));
    EXPECT_EQ(StatusOf([&] { Qualify(*ns, *special, "Association", TCIMValue(false)); }),
              TZENTAStatusCode::kInvalidQualifier);
    // Description allows overriding: the value changes without complaint.
    Qualify(*ns, *leaf, "Description", TCIMValue("leaf"));
    EXPECT_EQ(static_cast<std::string>(leaf->GetQualifier("Description", NoContext())->GetValue()), "leaf");
}

TEST_F(ClassHierarchy, QualifiersMustFitScopeAndType) {
    EXPECT_EQ(StatusOf([&] { Qualify(*ns, *leaf, "Key", TCIMValue(true)); }), TZENTAStatusCode::kInvalidQualifier);
    boost::shared_ptr<ICIMPropertyDecl> extra = leaf->GetPropertyDecl("Extra", NoContext());
    EXPECT_EQ(StatusOf([&] { Qualify(*ns, *extra, "IN", TCIMValue(true)); }), TZENTAStatusCode::kInvalidQualifier);
    EXPECT_EQ(StatusOf([&] { Qualify(*ns, *leaf, "Description", TCIMValue(true)); }), TZENTAStatusCode::kTypeMismatch);
    Qualify(*ns, *leaf, "Description", TCIMValue());
    EXPECT_TRUE(leaf->GetQualifier("Description", NoContext())->GetValue().IsNull()) << "a null fits any type";
}

TEST_F(ClassHierarchy, MethodsAndParametersAreInherited) {
    boost::shared_ptr<ICIMMethodDecl> reset = leaf->GetMethodDecl("RESET", NoContext());
    ASSERT_TRUE(reset);
    EXPECT_EQ(reset->GetClassOrigin(), "Base");
    EXPECT_EQ(reset->GetReturnType(), TCIMValue::TCIMType::kUint32);
    boost::shared_ptr<ICIMParameterDecl> force = reset->GetParameterDecl("force", NoContext());
    ASSERT_TRUE(force);
    EXPECT_TRUE(IsTrueQualifier(*force, "IN"));
    EXPECT_EQ(StatusOf([&] { reset->AllocateParameterDecl("FORCE", TCIMValue::TCIMType::kBoolean, false, "", NoContext()); }),
              TZENTAStatusCode::kAlreadyExists);
    boost::shared_ptr<ICIMMethodDecl> override =
        leaf->AllocateMethodDecl("Reset", TCIMValue::TCIMType::kUint32, NoContext());
    boost::shared_ptr<ICIMParameterDecl> again =
        override->AllocateParameterDecl("Force", TCIMValue::TCIMType::kBoolean, false, "", NoContext());
    EXPECT_TRUE(IsTrueQualifier(*again, "IN")) << "parameter qualifiers follow the overridden method";
    EXPECT_EQ(leaf->GetMethodDecl("Reset", NoContext()), override);
    EXPECT_EQ(base->GetMethodDecl("Reset", NoContext()), reset);
    TCIMContext parameters;
    EXPECT_EQ(StatusOf([&] { leaf->InvokeMethod("Reset", parameters, NoContext()); }),
              TZENTAStatusCode::kUnsupportedOperation);
    EXPECT_EQ(StatusOf([&] { leaf->InvokeMethod("Nope", parameters, NoContext()); }), TZENTAStatusCode::kMethodNotFound);
}

TEST_F(ClassHierarchy, StaticValuesStartFromTheDefaults) {
    EXPECT_EQ(static_cast<unsigned int>(leaf->GetProperty("Count", NoContext())->GetValue()), 9u);
    leaf->SetPropertyValue("count", TCIMValue(11u), NoContext());
    EXPECT_EQ(static_cast<unsigned int>(leaf->GetProperty("Count", NoContext())->GetValue()), 11u);
    EXPECT_EQ(static_cast<unsigned int>(middle->GetProperty("Count", NoContext())->GetValue()), 9u);
    EXPECT_FALSE(leaf->GetProperty("Nope", NoContext()));
    EXPECT_EQ(StatusOf([&] { leaf->SetPropertyValue("Nope", TCIMValue(1u), NoContext()); }),
              TZENTAStatusCode::kInvalidProperty);
    EXPECT_EQ(StatusOf([&] { leaf->SetPropertyValue("Count", TCIMValue("x"), NoContext()); }),
              TZENTAStatusCode::kTypeMismatch);
    std::vector<std::string> names;
    leaf->EnumerateStaticProperties(
        [&](boost::shared_ptr<ICIMProperty> property) {
            names.push_back(property->GetName());
            return names.size() < 2;
        },
        NoContext());
    EXPECT_EQ(names, std::vector<std::string>({"Id", "Count"}));
}

TEST_F(ClassHierarchy, RemovingAClassTakesItsSubclassesAlong) {
    middle->RemoveFromNamespace(NoContext());
    EXPECT_FALSE(ns->GetClass("Middle", NoContext()));
    EXPECT_FALSE(ns->GetClass("Leaf", NoContext()));
    EXPECT_TRUE(SubClassNames(*base, true).empty());
    EXPECT_TRUE(middle->AddToNamespace(NoContext()));
    EXPECT_FALSE(middle->AddToNamespace(NoContext())) << "filed already";
    EXPECT_EQ(SubClassNames(*base, true), std::vector<std::string>({"Middle"}));
}

TEST_F(ClassHierarchy, QualifierDeclarationsAreDeclaredOnce) {
    boost::shared_ptr<ICIMQualifierDecl> key = ns->GetQualifierDecl("KEY", NoContext());
    ASSERT_TRUE(key);
    EXPECT_EQ(ns->AllocateQualifierDecl("Key", key->GetDefaultValue(), key->GetScope(), key->GetFlavor(), NoContext()),
              key);
    EXPECT_EQ(StatusOf([&] {
                  ns->AllocateQualifierDecl("Key", TCIMValue(true), key->GetScope(), key->GetFlavor(), NoContext());
              }),
              TZENTAStatusCode::kAlreadyExists);
}

TEST_F(ClassHierarchy, InstancesAreFiledWithTheirClass) {
    boost::shared_ptr<ICIMInstance> b1 = AddInstance(*middle, {{"Id", TCIMValue("b1")}});
    boost::shared_ptr<ICIMInstance> l1 = AddInstance(*leaf, {{"Id", TCIMValue("l1")}});
    boost::shared_ptr<ICIMInstance> b2 = AddInstance(*middle, {{"Id", TCIMValue("b2")}});
    TCollector<ICIMInstance> shallow, deep;
    middle->EnumerateInstances(shallow.Callback(), false, NoContext());
    middle->EnumerateInstances(deep.Callback(), true, NoContext());
    EXPECT_EQ(PropertyTexts(shallow.items, "Id"), std::vector<std::string>({"b1", "b2"}));
    EXPECT_EQ(PropertyTexts(deep.items, "Id"), std::vector<std::string>({"b1", "b2", "l1"}));

    EXPECT_FALSE(middle->AddInstance(b1)) << "filed already";
    boost::shared_ptr<ICIMInstance> twin = middle->AllocateInstance(NoContext());
    twin->SetPropertyValue("Id", TCIMValue("b1"), NoContext());
    EXPECT_FALSE(middle->AddInstance(twin)) << "same path";
    EXPECT_FALSE(leaf->AddInstance(b2)) << "an instance of a superclass";
    EXPECT_TRUE(middle->AddInstance(leaf->AllocateInstance(NoContext()))) << "an instance of a subclass";
}

TEST_F(ClassHierarchy, ClearInstancesKeepsOnlyRepositoryInstances) {
    AddInstance(*leaf, {{"Id", TCIMValue("kept")}});
    boost::shared_ptr<ICIMInstance> served(new TInmemInstance(leaf, TInmemInstance::kProviderInstance));
    served->SetPropertyValue("Id", TCIMValue("served"), NoContext());
    ASSERT_TRUE(leaf->AddInstance(served));
    ns->ClearInstances();
    TCollector<ICIMInstance> left;
    leaf->EnumerateInstances(left.Callback(), false, NoContext());
    EXPECT_EQ(PropertyTexts(left.items, "Id"), std::vector<std::string>({"kept"}));
}

}  // namespace
