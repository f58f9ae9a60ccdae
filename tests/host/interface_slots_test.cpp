// Binary plug-ins call the host interfaces through their virtual tables, so
// every operation must stay in its slot. A pointer to a virtual member
// function holds (1 + byte offset into the table) under the Itanium C++ ABI
// that GCC uses on x86; from it we read the slot index and pin it here.
#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>

#include "ICIMClass.h"
#include "ICIMInstance.h"
#include "ICIMNamespace.h"
#include "ICoreLogger.h"
#include "INamespaceProvider.h"
#include "INamespaceProviderManager.h"
#include "IProvider.h"

using namespace NVURZENTA20;

namespace {

struct TSlot {
    std::ptrdiff_t index;   // slot in the table, counting the two destructor slots
    std::ptrdiff_t adjust;  // offset of the base whose table holds the slot
};

template <class F>
TSlot SlotOf(F member) {
    static_assert(sizeof(F) == 2 * sizeof(std::ptrdiff_t), "Itanium member pointer layout");
    std::ptrdiff_t words[2];
    std::memcpy(words, &member, sizeof(words));
    EXPECT_EQ(words[0] % 2, 1) << "not a virtual member";
    return TSlot{(words[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)), words[1]};
}

template <class F>
std::ptrdiff_t Slot(F member) {
    return SlotOf(member).index;
}

}  // namespace

TEST(InterfaceSlots, ClassPrimaryTableFollowsTheHostOrder) {
    typedef ICIMClass C;
    EXPECT_EQ(Slot(&C::Validate), 2);
    EXPECT_EQ(Slot(&C::AddToNamespace), 3);
    EXPECT_EQ(Slot(&C::RemoveFromNamespace), 4);
    EXPECT_EQ(Slot(&C::ModifyClass), 5);
    EXPECT_EQ(Slot(&C::GetName), 6);
    EXPECT_EQ(Slot(&C::GetNamespace), 7);
    EXPECT_EQ(Slot(&C::IsAssociation), 8);
    EXPECT_EQ(Slot(&C::IsAbstract), 9);
    EXPECT_EQ(Slot(&C::IsRootClass), 10);
    EXPECT_EQ(Slot(&C::GetSuperClass), 11);
    EXPECT_EQ(Slot(&C::EnumerateSubClasses), 12);
    EXPECT_EQ(Slot(&C::IsSubclassOf), 13);
    EXPECT_EQ(Slot(&C::EnumerateAssociatedClasses), 14);
    EXPECT_EQ(Slot(&C::EnumerateAssociationClasses), 15);
    EXPECT_EQ(Slot(&C::EnumerateKeyNames), 16);
    EXPECT_EQ(Slot(&C::AllocatePropertyDecl), 17);
    EXPECT_EQ(Slot(&C::GetPropertyDecl), 18);
    EXPECT_EQ(Slot(&C::EnumeratePropertyDecls), 19);
    EXPECT_EQ(Slot(&C::GetProperty), 20);
    EXPECT_EQ(Slot(&C::SetPropertyValue), 21);
    EXPECT_EQ(Slot(&C::EnumerateStaticProperties), 22);
    EXPECT_EQ(Slot(&C::AllocateInstance), 23);
    EXPECT_EQ(Slot(&C::EnumerateInstances), 24);
    EXPECT_EQ(Slot(&C::AllocateMethodDecl), 25);
    EXPECT_EQ(Slot(&C::GetMethodDecl), 26);
    EXPECT_EQ(Slot(&C::EnumerateMethodDecls), 27);
    EXPECT_EQ(Slot(&C::InvokeMethod), 28);
    EXPECT_EQ(Slot(&C::operator==), 29);
    EXPECT_EQ(Slot(&C::operator<), 30);
    EXPECT_EQ(Slot(static_cast<ICIMClass& (C::*)(const ICIMClass&)>(&C::operator=)), 31);
    EXPECT_EQ(Slot(&C::AddChildClass), 32);
    EXPECT_EQ(Slot(&C::RemoveChildClass), 33);
    EXPECT_EQ(Slot(&C::AddInstance), 34);
    EXPECT_EQ(Slot(&C::RemoveInstance), 35);
    EXPECT_EQ(Slot(&C::AddAssociationClass), 36);
    EXPECT_EQ(Slot(&C::RemoveAssociationClass), 37);
    EXPECT_EQ(Slot(&C::AddPropertyDecl), 38);
    EXPECT_EQ(Slot(&C::RemovePropertyDecl), 39);
    EXPECT_EQ(Slot(&C::AddMethodDecl), 40);
    EXPECT_EQ(Slot(&C::RemoveMethodDecl), 41);
}

TEST(InterfaceSlots, QualifierOperationsLiveInTheSecondaryBase) {
    typedef ICIMNamedElement N;
    typedef boost::shared_ptr<ICIMQualifier> Q;
    typedef boost::shared_ptr<const ICIMQualifierDecl> D;
    EXPECT_EQ(Slot(&N::AddQualifier), 2);
    EXPECT_EQ(Slot(static_cast<Q (N::*)(D, const TCIMValue&, TCIMContext) const>(&N::AllocateQualifier)), 3);
    EXPECT_EQ(Slot(static_cast<Q (N::*)(D, const TCIMValue&, ICIMQualifierDecl::EFlavor, TCIMContext) const>(
                  &N::AllocateQualifier)),
              4);
    EXPECT_EQ(Slot(static_cast<Q (N::*)(const std::string&, TCIMContext) const>(&N::GetQualifier)), 5);
    EXPECT_EQ(Slot(&N::EnumerateQualifiers), 6);
    EXPECT_EQ(Slot(static_cast<Q (N::*)(const std::string&, bool&, TCIMContext) const>(&N::GetQualifier)), 7);

    // Reached through a class, they must resolve through the second base.
    void (ICIMClass::*add)(boost::shared_ptr<ICIMQualifier>, TCIMContext) = &ICIMClass::AddQualifier;
    TSlot slot = SlotOf(add);
    EXPECT_EQ(slot.index, 2);
    EXPECT_EQ(slot.adjust, static_cast<std::ptrdiff_t>(sizeof(void*)));
}

TEST(InterfaceSlots, InstanceTableFollowsTheHostOrder) {
    typedef ICIMInstance I;
    EXPECT_EQ(Slot(&I::Validate), 2);
    EXPECT_EQ(Slot(&I::AddToNamespace), 3);
    EXPECT_EQ(Slot(&I::ModifyInstance), 4);
    EXPECT_EQ(Slot(&I::Delete), 5);
    EXPECT_EQ(Slot(&I::GetReference), 6);
    EXPECT_EQ(Slot(&I::BuildPath), 7);
    EXPECT_EQ(Slot(&I::GetClass), 8);
    EXPECT_EQ(Slot(&I::EnumerateAssociatedInstances), 9);
    EXPECT_EQ(Slot(&I::EnumerateAssociationInstances), 10);
    EXPECT_EQ(Slot(&I::GetProperty), 11);
    EXPECT_EQ(Slot(&I::SetPropertyValue), 12);
    EXPECT_EQ(Slot(&I::EnumerateProperties), 13);
    EXPECT_EQ(Slot(&I::InvokeMethod), 14);
    EXPECT_EQ(Slot(&I::operator==), 15);
    EXPECT_EQ(Slot(&I::operator<), 16);
    EXPECT_EQ(Slot(static_cast<ICIMInstance& (I::*)(const ICIMInstance&)>(&I::operator=)), 17);
}

TEST(InterfaceSlots, NamespaceTableFollowsTheHostOrder) {
    typedef ICIMNamespace S;
    EXPECT_EQ(Slot(&S::GetNamespaceProvider), 2);
    EXPECT_EQ(Slot(&S::SetUpcallNamespace), 3);
    EXPECT_EQ(Slot(&S::AddUnderlyingNamespace), 4);
    EXPECT_EQ(Slot(&S::AllocateClass), 5);
    EXPECT_EQ(Slot(&S::GetClass), 6);
    EXPECT_EQ(Slot(&S::EnumerateRootClasses), 7);
    EXPECT_EQ(Slot(&S::EnumerateProviders), 8);
    EXPECT_EQ(Slot(&S::AllocateQualifierDecl), 9);
    EXPECT_EQ(Slot(&S::GetQualifierDecl), 10);
    EXPECT_EQ(Slot(&S::EnumerateQualifierDecls), 11);
    EXPECT_EQ(Slot(&S::Subscribe), 12);
    EXPECT_EQ(Slot(&S::GetInstance), 13);
    EXPECT_EQ(Slot(&S::DeleteInstance), 14);
    EXPECT_EQ(Slot(&S::ModifyInstance), 15);
    EXPECT_EQ(Slot(&S::ExecuteQuery), 16);
    EXPECT_EQ(Slot(&S::ClearInstances), 17);
    EXPECT_EQ(Slot(static_cast<ICIMNamespace& (S::*)(ICIMNamespace&)>(&S::operator=)), 18);
}

TEST(InterfaceSlots, ProviderTablesFollowTheHostOrder) {
    EXPECT_EQ(Slot(&IProvider::GetName), 2);
    EXPECT_EQ(Slot(&IProvider::GetModuleName), 3);
    EXPECT_EQ(Slot(&IProvider::GetDescription), 4);
    EXPECT_EQ(Slot(&IProvider::GetNamespace), 5);
    EXPECT_EQ(Slot(&IProvider::EnumerateClassesProvided), 6);
    EXPECT_EQ(Slot(static_cast<IProvider& (IProvider::*)(const IProvider&)>(&IProvider::operator=)), 7);

    EXPECT_EQ(Slot(&INamespaceProvider::GetName), 2);
    EXPECT_EQ(Slot(&INamespaceProvider::AllocateNamespace), 3);
    EXPECT_EQ(Slot(&INamespaceProvider::GetType), 4);
    EXPECT_EQ(Slot(&INamespaceProvider::IsIndicationsSupported), 5);
}

TEST(InterfaceSlots, LoggingAndRegistrationAreTheFirstOperations) {
    EXPECT_EQ(Slot(&ICoreLogger::Log), 2);
    EXPECT_EQ(Slot(&INamespaceProviderManager::RegisterNamespaceProvider), 2);
}
