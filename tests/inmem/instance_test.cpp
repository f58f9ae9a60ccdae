// In-memory instances: defaults, typed property access, paths from keys,
// comparison, filing by kind, and the namespace's instance operations.
#include <gtest/gtest.h>

#include "InmemTestSupport.h"
#include "TInmemInstance.h"
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

// Disk (Name key) <- Ssd (Slot key, Wear).
class Instances : public ::testing::Test {
protected:
    void SetUp() override {
        ns = StandardRepository();
        disk = ns->AllocateClass("Disk", {}, NoContext());
        AddKey(*ns, *disk, "Name");
        disk->AllocatePropertyDecl("Size", TCIMValue(512ULL), NoContext());
        std::vector<TCIMValue> tags = {TCIMValue("a")};
        TCIMValue tagArray;
        tagArray.Set(TCIMValue::TCIMType::kString, 1, tags);
        disk->AllocatePropertyDecl("Tags", tagArray, NoContext());
        ssd = ns->AllocateClass("Ssd", disk, NoContext());
        AddKey(*ns, *ssd, "Slot", TCIMValue(static_cast<unsigned short>(0)));
        ssd->AllocatePropertyDecl("Wear", TCIMValue(0.5), NoContext());
    }

    boost::shared_ptr<ICIMInstance> NewSsd(const char* name, unsigned short slot) {
        boost::shared_ptr<ICIMInstance> instance = ssd->AllocateInstance(NoContext());
        instance->SetPropertyValue("Name", TCIMValue(name), NoContext());
        instance->SetPropertyValue("Slot", TCIMValue(slot), NoContext());
        return instance;
    }

    boost::shared_ptr<TInmemNamespace> ns;
    boost::shared_ptr<ICIMClass> disk, ssd;
};

TEST_F(Instances, StartFromTheClassDefaultsInDeclarationOrder) {
    boost::shared_ptr<ICIMInstance> instance = ssd->AllocateInstance(NoContext());
    EXPECT_EQ(dynamic_cast<TInmemInstance&>(*instance).GetKind(), TInmemInstance::kRepositoryInstance);
    EXPECT_EQ(instance->GetClass(NoContext()), ssd);
    std::vector<std::string> names;
    instance->EnumerateProperties(
        [&](boost::shared_ptr<ICIMProperty> property) {
            names.push_back(property->GetName());
            return true;
        },
        NoContext());
    EXPECT_EQ(names, std::vector<std::string>({"Name", "Size", "Tags", "Slot", "Wear"}));
    EXPECT_EQ(static_cast<unsigned long long>(instance->GetProperty("size", NoContext())->GetValue()), 512ULL);
    EXPECT_TRUE(instance->GetProperty("Name", NoContext())->GetValue().IsNull());
    EXPECT_EQ(instance->GetProperty("Tags", NoContext())->GetValue().ToString(), "a");
}

TEST_F(Instances, PropertyWritesAreTypeChecked) {
    boost::shared_ptr<ICIMInstance> instance = ssd->AllocateInstance(NoContext());
    struct TCase {
        const char* property;
        TCIMValue value;
        int status;
    };
    TCIMValue nullInteger;
    nullInteger.SetNullValue(TCIMValue::TCIMType::kUint8, 0);
    const TCase cases[] = {
        {"Size", TCIMValue(1u), TZENTAStatusCode::kTypeMismatch},           // uint32 for uint64
        {"Size", TCIMValue("1"), TZENTAStatusCode::kTypeMismatch},          // text for a number
        {"Tags", TCIMValue("a"), TZENTAStatusCode::kTypeMismatch},          // scalar for an array
        {"Wear", TCIMValue(0.25f), TZENTAStatusCode::kTypeMismatch},        // real32 for real64
        {"Nope", TCIMValue("x"), TZENTAStatusCode::kInvalidProperty},       // unknown name
        {"Size", TCIMValue(2ULL), 0},                                       // the declared type
        {"Wear", nullInteger, 0},                                           // a null of any type
        {"Slot", TCIMValue(static_cast<unsigned short>(3)), 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(StatusOf([&] { instance->SetPropertyValue(c.property, c.value, NoContext()); }), c.status)
            << c.property;
    }
    EXPECT_EQ(static_cast<unsigned long long>(instance->GetProperty("Size", NoContext())->GetValue()), 2ULL);
    const TCIMValue wear = instance->GetProperty("Wear", NoContext())->GetValue();
    EXPECT_TRUE(wear.IsNull());
    EXPECT_EQ(wear.GetType(), TCIMValue::TCIMType::kReal64) << "a null takes the declared type";
    EXPECT_FALSE(instance->GetProperty("Nope", NoContext())) << "unknown names read as empty";
    EXPECT_EQ(StatusOf([&] { instance->GetProperty("Size", NoContext())->SetValue(TCIMValue(true)); }),
              TZENTAStatusCode::kTypeMismatch);
}

TEST_F(Instances, PathComesFromTheKeysIncludingInheritedOnes) {
    boost::shared_ptr<ICIMInstance> instance = NewSsd("sda", 2);
    const TCIMReference path = instance->GetReference(NoContext());
    EXPECT_EQ(path.GetClassName(), "Ssd");
    EXPECT_EQ(path.GetKeyCount(), 2u);
    EXPECT_EQ(static_cast<std::string>(path.GetKeyValue("Name")), "sda");
    EXPECT_EQ(static_cast<unsigned short>(path.GetKeyValue("Slot")), 2);
    EXPECT_EQ(path.GetNamespace(), ns);
    EXPECT_TRUE(instance->Validate(NoContext()));
    instance->SetPropertyValue("Name", NullString(), NoContext());
    EXPECT_FALSE(instance->Validate(NoContext())) << "a key without a value";
}

TEST_F(Instances, CompareByPath) {
    boost::shared_ptr<ICIMInstance> a = NewSsd("a", 1), alsoA = NewSsd("a", 1), b = NewSsd("b", 1);
    alsoA->SetPropertyValue("Wear", TCIMValue(0.9), NoContext());
    EXPECT_TRUE(*a == *alsoA) << "non-key properties do not count";
    EXPECT_FALSE(*a == *b);
    EXPECT_TRUE(*a < *b);
    EXPECT_FALSE(*b < *a);
    EXPECT_FALSE(*a < *alsoA);
}

TEST_F(Instances, OnlyRepositoryInstancesAreFiledAndDeleteUnfilesThem) {
    boost::shared_ptr<ICIMInstance> filed = NewSsd("filed", 1);
    EXPECT_TRUE(filed->AddToNamespace(NoContext()));
    for (int kind : {TInmemInstance::kTransientInstance, TInmemInstance::kRegistrationInstance,
                     TInmemInstance::kProviderInstance}) {
        boost::shared_ptr<ICIMInstance> other(new TInmemInstance(ssd, kind));
        other->SetPropertyValue("Name", TCIMValue("other"), NoContext());
        EXPECT_FALSE(other->AddToNamespace(NoContext())) << kind;
    }
    TCollector<ICIMInstance> before;
    ssd->EnumerateInstances(before.Callback(), true, NoContext());
    EXPECT_EQ(PropertyTexts(before.items, "Name"), std::vector<std::string>({"filed"}));
    filed->Delete(NoContext());
    TCollector<ICIMInstance> after;
    ssd->EnumerateInstances(after.Callback(), true, NoContext());
    EXPECT_TRUE(after.items.empty());
}

TEST_F(Instances, ModifyAndAssignCopyValuesAllOrNone) {
    boost::shared_ptr<ICIMInstance> target = NewSsd("t", 1);
    boost::shared_ptr<ICIMInstance> source = NewSsd("s", 4);
    source->SetPropertyValue("Wear", TCIMValue(0.75), NoContext());
    target->ModifyInstance(source, NoContext());
    EXPECT_EQ(target->GetProperty("Name", NoContext())->GetValue().ToString(), "s");
    EXPECT_EQ(static_cast<double>(target->GetProperty("Wear", NoContext())->GetValue()), 0.75);

    boost::shared_ptr<ICIMInstance> plainDisk = disk->AllocateInstance(NoContext());
    plainDisk->SetPropertyValue("Name", TCIMValue("d"), NoContext());
    *target = *plainDisk;
    EXPECT_EQ(target->GetProperty("Name", NoContext())->GetValue().ToString(), "d");
    EXPECT_EQ(static_cast<unsigned short>(target->GetProperty("Slot", NoContext())->GetValue()), 4)
        << "properties the source lacks keep their values";
}

TEST_F(Instances, NamespaceFindsModifiesAndDeletesByPath) {
    boost::shared_ptr<ICIMInstance> instance = NewSsd("sdb", 7);
    ASSERT_TRUE(instance->AddToNamespace(NoContext()));
    TCIMReference path = instance->GetReference(NoContext());
    EXPECT_EQ(ns->GetInstance(path, NoContext()), instance);
    TCIMReference viaSuperclass(path);
    viaSuperclass.SetClassName("ssd");
    EXPECT_EQ(ns->GetInstance(viaSuperclass, NoContext()), instance) << "class names ignore case";

    TCIMContext change;
    change["Wear"] = TCIMValue(0.125);
    change["Size"] = TCIMValue("big");
    EXPECT_EQ(StatusOf([&] { ns->ModifyInstance(path, change, NoContext()); }), TZENTAStatusCode::kTypeMismatch);
    EXPECT_EQ(static_cast<double>(instance->GetProperty("Wear", NoContext())->GetValue()), 0.5) << "nothing written";
    change.erase("Size");
    change["Name"] = TCIMValue("renamed");
    EXPECT_EQ(StatusOf([&] { ns->ModifyInstance(path, change, NoContext()); }), TZENTAStatusCode::kInvalidProperty);
    change.erase("Name");
    ns->ModifyInstance(path, change, NoContext());
    EXPECT_EQ(static_cast<double>(instance->GetProperty("Wear", NoContext())->GetValue()), 0.125);

    ns->DeleteInstance(path, NoContext());
    EXPECT_FALSE(ns->GetInstance(path, NoContext()));
    EXPECT_EQ(StatusOf([&] { ns->DeleteInstance(path, NoContext()); }), TZENTAStatusCode::kInstanceNotFound);
}

TEST_F(Instances, StoredReferencesDoNotKeepTheRepositoryAlive) {
    boost::shared_ptr<ICIMClass> holder = ns->AllocateClass("Holder", {}, NoContext());
    AddKey(*ns, *holder, "Id");
    holder->AllocatePropertyDecl("Target", NullReference(), NoContext());
    boost::shared_ptr<ICIMInstance> target = NewSsd("sdc", 1);
    ASSERT_TRUE(target->AddToNamespace(NoContext()));
    AddInstance(*holder, {{"Id", TCIMValue("h")}, {"Target", PathOf(target)}});

    {
        TCollector<ICIMInstance> holders;
        holder->EnumerateInstances(holders.Callback(), false, NoContext());
        ASSERT_EQ(holders.items.size(), 1u);
        const TCIMReference stored = holders.items[0]->GetProperty("Target", NoContext())->GetValue();
        EXPECT_EQ(stored.GetNamespace(), ns) << "the namespace comes back on reading";
        EXPECT_EQ(stored.GetClass(), ssd);
    }
    boost::weak_ptr<TInmemNamespace> watch = ns;
    target.reset();
    holder.reset();
    disk.reset();
    ssd.reset();
    ns.reset();
    EXPECT_TRUE(watch.expired());
}

}  // namespace
