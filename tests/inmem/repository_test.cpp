// The in-memory repository: class trees, the CIM propagation and override
// rules, instances and their paths, and association walks.
#include <set>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "InmemTestSupport.h"
#include "TInmemInstance.h"

using namespace inmemtest;

namespace {

typedef ICIMQualifierDecl D;
typedef TCIMValue::TCIMType T;
typedef std::vector<std::string> TNames;
const int kMismatch = TZENTAStatusCode::kTypeMismatch, kBadQualifier = TZENTAStatusCode::kInvalidQualifier,
          kExists = TZENTAStatusCode::kAlreadyExists;

// The qualifier's value as text, "<none>" without one; `propagated` tells whether it was inherited.
std::string QualifierText(const ICIMNamedElement& element, const char* name, bool* propagated = nullptr) {
    bool inherited = false;
    boost::shared_ptr<ICIMQualifier> qualifier = element.GetQualifier(name, inherited, NoContext());
    if (propagated) *propagated = inherited;
    return qualifier ? qualifier->GetValue().ToString() : "<none>";
}

// Base (restricted qualifiers; key Id; Count; Reset(Force)) <- Middle (key Slot; Count) <- Leaf (Extra).
class Repository : public ::testing::Test {
protected:
    void SetUp() override {
        base = ns->AllocateClass("Base", {}, NoContext());
        Qualify(*ns, *base, "Abstract", true);
        Qualify(*ns, *base, "Version", "1.0");
        Qualify(*ns, *base, "PLUGINNAME", "P");
        AddKey(*ns, *base, "Id");
        Qualify(*ns, *base->AllocatePropertyDecl("Count", TCIMValue(7u), NoContext()), "Description", "how many");
        Qualify(*ns, *base->AllocateMethodDecl("Reset", T::kUint32, NoContext())
                           ->AllocateParameterDecl("Force", T::kBoolean, false, "", NoContext()), "IN", true);
        middle = ns->AllocateClass("Middle", base, NoContext());
        Qualify(*ns, *middle, "Description", TCIMValue("middle"));
        middle->AllocatePropertyDecl("Count", TCIMValue(9u), NoContext());
        AddKey(*ns, *middle, "Slot", TCIMValue(static_cast<unsigned short>(0)));
        leaf = ns->AllocateClass("Leaf", middle, NoContext());
        leaf->AllocatePropertyDecl("Extra", TCIMValue(-1LL), NoContext());
    }

    boost::shared_ptr<ICIMInstance> NewMiddle(const char* id) {
        boost::shared_ptr<ICIMInstance> instance = middle->AllocateInstance(NoContext());
        instance->SetPropertyValue("Id", TCIMValue(id), NoContext());
        instance->SetPropertyValue("Slot", TCIMValue(static_cast<unsigned short>(1)), NoContext());
        return instance;
    }

    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    boost::shared_ptr<ICIMClass> base, middle, leaf;
};

TEST_F(Repository, ClassesFormATreeThatGoesAndComesBackWhole) {
    EXPECT_FALSE(leaf->IsSubclassOf(leaf, NoContext())) << "strict";
    EXPECT_EQ(StatusOf([&] { ns->AllocateClass("BASE", {}, NoContext()); }), TZENTAStatusCode::kDuplicateClass);
    EXPECT_EQ(StatusOf([&] { ns->AllocateClass("<root>", {}, NoContext()); }), TZENTAStatusCode::kInvalidClass);
    boost::shared_ptr<ICIMClass> stranger = TInmemNamespace::Create()->AllocateClass("Stranger", {}, NoContext());
    EXPECT_EQ(StatusOf([&] { ns->AllocateClass("C", stranger, NoContext()); }), TZENTAStatusCode::kMissingSuperclass);
    middle->RemoveFromNamespace(NoContext());
    EXPECT_FALSE(ns->GetClass("Leaf", NoContext())) << "subclasses go along";
    EXPECT_TRUE(middle->AddToNamespace(NoContext()) && !middle->AddToNamespace(NoContext())) << "filed once";
    EXPECT_EQ(SubClassNames(*base, true), TNames({"Middle"}));
}

TEST_F(Repository, DeclarationsAreInheritedAndBadOnesRefused) {
    EXPECT_EQ(leaf->GetPropertyDecl("count", NoContext())->GetClassOrigin(), "Middle");
    const struct { std::function<void()> declare; int status; } cases[] = {
        {[&] { leaf->AllocatePropertyDecl("Count", TCIMValue(1ULL), NoContext()); }, kMismatch},
        {[&] { leaf->AllocatePropertyDecl("Extra", TCIMValue(1LL), NoContext()); }, kExists},
        {[&] { leaf->AllocatePropertyDecl("Untyped", TCIMValue(), NoContext()); }, kMismatch},
        {[&] { leaf->AllocateMethodDecl("Reset", T::kString, NoContext()); }, kMismatch},
        {[&] { Qualify(*ns, *leaf, "Key", true); }, kBadQualifier},
        {[&] { Qualify(*ns, *leaf->GetPropertyDecl("Extra", NoContext()), "IN", true); }, kBadQualifier},
        {[&] { Qualify(*ns, *leaf, "Description", true); }, kMismatch},
        {[&] { ns->AllocateQualifierDecl("Key", true, D::kScopeProperty, D::kToSubclass, NoContext()); }, kExists},
    };
    for (const auto& c : cases) EXPECT_EQ(StatusOf(c.declare), c.status);

    boost::shared_ptr<ICIMMethodDecl> reset = leaf->GetMethodDecl("RESET", NoContext());
    EXPECT_EQ(reset->GetClassOrigin(), "Base");
    EXPECT_EQ(QualifierText(*reset->GetParameterDecl("force", NoContext()), "IN"), "TRUE");
    boost::shared_ptr<ICIMMethodDecl> again = leaf->AllocateMethodDecl("Reset", T::kUint32, NoContext());
    EXPECT_EQ(QualifierText(*again->AllocateParameterDecl("Force", T::kBoolean, false, "", NoContext()), "IN"), "TRUE")
        << "parameter qualifiers follow the overridden method";
}

TEST_F(Repository, QualifiersPropagateByFlavorAndDisableOverrideHolds) {
    bool propagated = false;
    EXPECT_EQ(QualifierText(*leaf, "description", &propagated), "middle");
    EXPECT_TRUE(propagated);
    EXPECT_EQ(QualifierText(*middle, "Description", &propagated), "middle");
    EXPECT_FALSE(propagated);
    for (const char* name : {"Abstract", "Version", "PLUGINNAME"}) EXPECT_EQ(QualifierText(*middle, name), "<none>");
    QualifierText(*middle->GetPropertyDecl("Count", NoContext()), "Description", &propagated);
    EXPECT_TRUE(propagated) << "property qualifiers follow the overridden declaration";
    Qualify(*ns, *base, "Terminal", true);
    EXPECT_EQ(QualifierText(*leaf, "Terminal"), "TRUE") << "added later, still reaches subclasses";
    // A qualifier's own flavor decides, keeping the declaration's other flavors.
    boost::shared_ptr<ICIMQualifier> spread = middle->AllocateQualifier(ns->GetQualifierDecl("Version", NoContext()),
                                                                       TCIMValue("2.0"), D::kToSubclass, NoContext());
    EXPECT_EQ(spread->GetFlavor() & (D::kToSubclass | D::kRestricted | D::kTranslatable),
              D::kToSubclass | D::kTranslatable);
    middle->AddQualifier(spread, NoContext());
    EXPECT_EQ(QualifierText(*leaf, "Version"), "2.0");

    boost::shared_ptr<ICIMPropertyDecl> id = middle->AllocatePropertyDecl("Id", NullOf(T::kString), NoContext());
    EXPECT_TRUE(id->IsKey()) << "Key propagates to the overriding declaration";
    EXPECT_EQ(StatusOf([&] { Qualify(*ns, *id, "Key", false); }), kBadQualifier);
    Qualify(*ns, *id, "Key", true);
    boost::shared_ptr<ICIMClass> special =
        ns->AllocateClass("SpecialLink", AddAssociation(*ns, "Link", {{"A", "Base"}}), NoContext());
    EXPECT_EQ(StatusOf([&] { Qualify(*ns, *special, "Association", false); }), kBadQualifier);
    Qualify(*ns, *leaf, "Description", TCIMValue());
    EXPECT_EQ(QualifierText(*leaf, "Description"), "") << "overridable, and a null fits any type";
}

TEST_F(Repository, ValuesStartFromTheDefaultsAndWritesAreTypeChecked) {
    leaf->SetPropertyValue("count", TCIMValue(11u), NoContext());
    EXPECT_EQ(static_cast<unsigned int>(middle->GetProperty("Count", NoContext())->GetValue()), 9u);
    boost::shared_ptr<ICIMInstance> instance = leaf->AllocateInstance(NoContext());
    EXPECT_EQ(static_cast<unsigned int>(instance->GetProperty("Count", NoContext())->GetValue()), 9u);
    const struct { const char* property; TCIMValue value; int status; } cases[] = {
        {"Count", TCIMValue(1ULL), kMismatch}, {"Count", TCIMValue("1"), kMismatch},
        {"Nope", TCIMValue("x"), TZENTAStatusCode::kInvalidProperty}, {"Extra", NullOf(T::kUint8), 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(StatusOf([&] { instance->SetPropertyValue(c.property, c.value, NoContext()); }), c.status);
        EXPECT_EQ(StatusOf([&] { leaf->SetPropertyValue(c.property, c.value, NoContext()); }), c.status);
    }
    EXPECT_EQ(instance->GetProperty("Extra", NoContext())->GetValue(), NullOf(T::kSint64)) << "the declared type";
    EXPECT_EQ(StatusOf([&] { instance->GetProperty("Count", NoContext())->SetValue(true); }), kMismatch);
    EXPECT_FALSE(instance->Validate(NoContext())) << "keys without values";
}

TEST_F(Repository, InstancesAreFiledFoundAndChangedByPath) {
    boost::shared_ptr<ICIMInstance> a = NewMiddle("a"), b = NewMiddle("b");
    ASSERT_TRUE(a->AddToNamespace(NoContext()) && b->AddToNamespace(NoContext()));
    EXPECT_FALSE(middle->AddInstance(NewMiddle("a"))) << "same path";
    EXPECT_FALSE(leaf->AddInstance(NewMiddle("c"))) << "an instance of a superclass";
    EXPECT_TRUE(*a < *b && !(*b < *a) && !(*a == *b));
    const TCIMReference path = a->GetReference(NoContext());
    EXPECT_EQ(path.GetPath(), "Middle.Id=\"a\",Slot=1");
    EXPECT_EQ(ns->GetInstance(TCIMReference::Parse("middle.id=\"a\",slot=1"), NoContext()), a);

    const TCIMContext keyToo{{"Count", TCIMValue(3u)}, {"Id", TCIMValue("z")}}, badType{{"Count", TCIMValue("x")}};
    EXPECT_EQ(StatusOf([&] { ns->ModifyInstance(path, keyToo, NoContext()); }), TZENTAStatusCode::kInvalidProperty);
    EXPECT_EQ(StatusOf([&] { ns->ModifyInstance(path, badType, NoContext()); }), kMismatch);
    EXPECT_EQ(static_cast<unsigned int>(a->GetProperty("Count", NoContext())->GetValue()), 9u) << "all or none";
    ns->DeleteInstance(b->GetReference(NoContext()), NoContext());
    EXPECT_EQ(StatusOf([&] { ns->DeleteInstance(b->GetReference(NoContext()), NoContext()); }),
              TZENTAStatusCode::kInstanceNotFound);
    ASSERT_TRUE(leaf->AddInstance(boost::make_shared<TInmemInstance>(leaf, TInmemInstance::kProviderInstance)));
    ns->ClearInstances();
    TCollector<ICIMInstance> left;
    middle->EnumerateInstances(left.Callback(), true, NoContext());
    EXPECT_EQ(left.items, std::vector<boost::shared_ptr<ICIMInstance> >({a})) << "only repository instances stay";
}

struct TBrokenInstance : TInmemInstance {
    using TInmemInstance::TInmemInstance;
    boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name, TCIMContext context) const override {
        return name == "Slot" ? nullptr : TInmemInstance::GetProperty(name, context);
    }
};

TEST_F(Repository, PathsNeedEveryKeyAndResolveThroughTheirNamespace) {
    TCIMReference path;
    {
        TBrokenInstance broken(middle, TInmemInstance::kTransientInstance);
        std::string message;
        EXPECT_EQ(StatusOf([&] { broken.BuildPath(NoContext()); }, &message), TZENTAStatusCode::kInvalidProperty);
        EXPECT_EQ(message, "an instance of Middle has no key property Slot");
        boost::shared_ptr<ICIMInstance> a = NewMiddle("a");
        ASSERT_TRUE(a->AddToNamespace(NoContext()));
        path = a->GetReference(NoContext());
        EXPECT_EQ(path.GetCIMElement(false), a);
        EXPECT_EQ(path.GetCIMElement(true), middle);
    }
    EXPECT_FALSE(TCIMReference::Parse(path.GetPath()).GetCIMElement(true)) << "no namespace, nothing resolves";
    path.AddKeyValue("Slot", TCIMValue(2u));
    EXPECT_FALSE(path.GetCIMElement(false));
    boost::weak_ptr<TInmemNamespace> watch = ns;
    ns.reset();
    base = middle = leaf = nullptr;
    EXPECT_TRUE(watch.expired()) << "a path names its namespace without holding it";
    EXPECT_FALSE(path.GetNamespace());
    EXPECT_FALSE(path.GetCIMElement(true));
}

// Paths stored in the repository name it: as defaults and as property
// values, at any depth (a key of a key), they must not keep it alive.
TEST_F(Repository, StoredPathsNeverKeepTheirNamespaceAlive) {
    AddKey(*ns, *base, "Next", NullOf(T::kReference))->SetReferenceClassName("Base");
    boost::shared_ptr<ICIMInstance> a = NewMiddle("a");
    ASSERT_TRUE(a->AddToNamespace(NoContext()));
    TCIMReference inner = a->GetReference(NoContext());
    TCIMReference outer(ns, NoContext());
    outer.SetClassName("Middle");
    outer.AddKeyValue("Id", TCIMValue("b"));
    outer.AddKeyValue("Next", TCIMValue(inner));
    std::vector<TCIMValue> pair = {TCIMValue(outer), TCIMValue(inner)};
    boost::shared_ptr<ICIMPropertyDecl> decl = leaf->AllocatePropertyDecl("Chain", TCIMValue(outer), NoContext());
    decl->SetReferenceClassName("Middle");
    TCIMValue array;
    array.Set(T::kReference, 2, pair);
    leaf->AllocatePropertyDecl("Chains", array, NoContext());
    a->SetPropertyValue("Next", TCIMValue(outer), NoContext());
    Qualify(*ns, *leaf, "Description", TCIMValue(outer.GetPath()));
    const TCIMReference read = a->GetProperty("Next", NoContext())->GetValue();
    EXPECT_EQ(read.GetNamespace(), ns) << "a stored path still names its namespace";
    EXPECT_EQ(read.GetKeyValue("Next").GetReference().GetNamespace(), ns);

    boost::weak_ptr<TInmemNamespace> watch = ns;
    ns.reset();
    base = middle = leaf = nullptr;
    a.reset();
    EXPECT_TRUE(watch.expired());
}

TEST_F(Repository, AssociationWalksFilterByAssociationResultClassAndRoles) {
    typedef std::multiset<std::string> S;
    boost::shared_ptr<ICIMClass> owns = AddAssociation(*ns, "Owns", {{"Owner", "Base"}, {"Item", "Base"}});
    boost::shared_ptr<ICIMClass> lends = ns->AllocateClass("Lends", owns, NoContext());
    boost::shared_ptr<ICIMClass> knows = AddAssociation(*ns, "Knows", {{"Who", "Base"}, {"Whom", "Base"}});
    boost::shared_ptr<ICIMInstance> a = AddInstance(*middle, {{"Id", TCIMValue("a")}});
    boost::shared_ptr<ICIMInstance> b = AddInstance(*middle, {{"Id", TCIMValue("b")}});
    boost::shared_ptr<ICIMInstance> c = AddInstance(*leaf, {{"Id", TCIMValue("c")}});
    AddInstance(*owns, {{"Owner", PathOf(a)}, {"Item", PathOf(b)}});
    AddInstance(*lends, {{"Owner", PathOf(a)}, {"Item", PathOf(c)}});
    AddInstance(*knows, {{"Who", PathOf(c)}, {"Whom", PathOf(a)}});
    AddInstance(*knows, {{"Who", PathOf(a)}, {"Whom", PathOf(b)}});
    const auto associators = [](ICIMInstance& source, const char* assocClass, const char* resultClass = "",
                                const char* role = "", const char* resultRole = "") {
        TCollector<ICIMInstance> found;
        source.EnumerateAssociatedInstances(found.Callback(), assocClass, resultClass, role, resultRole, NoContext());
        S ids;
        for (const auto& instance : found.items) ids.insert(instance->GetProperty("Id", {})->GetValue().ToString());
        return ids;
    };
    EXPECT_EQ(associators(*a, ""), S({"b", "b", "c", "c"})) << "once per association instance";
    EXPECT_EQ(associators(*a, "owns"), S({"b", "c"})) << "association subclasses count";
    EXPECT_EQ(associators(*a, "", "Leaf"), S({"c", "c"}));
    EXPECT_EQ(associators(*a, "", "", "Who"), S({"b"}));
    EXPECT_EQ(associators(*a, "", "", "", "Who"), S({"c"}));
    TCollector<ICIMInstance> references;
    a->EnumerateAssociationInstances(references.Callback(), "Owns", "Owner", NoContext());
    EXPECT_EQ(references.items.size(), 2u);
    AddInstance(*knows, {{"Who", PathOf(b)}, {"Whom", PathOf(b)}});
    EXPECT_EQ(associators(*b, "Knows"), S({"a", "b"})) << "a self-association names its instance once";
    c->Delete(NoContext());
    EXPECT_EQ(associators(*a, "Owns"), S({"b"})) << "unresolvable ends are skipped";
    int calls = 0;
    a->EnumerateAssociatedInstances([&](boost::shared_ptr<ICIMInstance>) { return ++calls < 1; }, "", "", "", "", {});
    EXPECT_EQ(calls, 1);
    TCollector<ICIMClass> asking;
    middle->EnumerateAssociationClasses(asking.Callback(), "", "Who", NoContext());
    EXPECT_EQ(ClassNames(asking.items), TNames({"Knows"}));
}

}  // namespace
