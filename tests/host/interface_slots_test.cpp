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

// The operations of one table, in host order, occupy the slots from 2 on.
template <class... F>
void ExpectHostOrder(const char* table, F... members) {
    const TSlot slots[] = {SlotOf(members)...};
    for (std::size_t i = 0; i < sizeof...(F); ++i) EXPECT_EQ(slots[i].index, std::ptrdiff_t(i + 2)) << table << i;
}

}  // namespace

TEST(InterfaceSlots, EveryTableFollowsTheHostOrder) {
    typedef ICIMClass C;
    ExpectHostOrder("ICIMClass", &C::Validate, &C::AddToNamespace, &C::RemoveFromNamespace, &C::ModifyClass,
                    &C::GetName, &C::GetNamespace, &C::IsAssociation, &C::IsAbstract, &C::IsRootClass,
                    &C::GetSuperClass, &C::EnumerateSubClasses, &C::IsSubclassOf, &C::EnumerateAssociatedClasses,
                    &C::EnumerateAssociationClasses, &C::EnumerateKeyNames, &C::AllocatePropertyDecl,
                    &C::GetPropertyDecl, &C::EnumeratePropertyDecls, &C::GetProperty, &C::SetPropertyValue,
                    &C::EnumerateStaticProperties, &C::AllocateInstance, &C::EnumerateInstances, &C::AllocateMethodDecl,
                    &C::GetMethodDecl, &C::EnumerateMethodDecls, &C::InvokeMethod, &C::operator==, &C::operator<,
                    static_cast<C& (C::*)(const C&)>(&C::operator=), &C::AddChildClass, &C::RemoveChildClass,
                    &C::AddInstance, &C::RemoveInstance, &C::AddAssociationClass, &C::RemoveAssociationClass,
                    &C::AddPropertyDecl, &C::RemovePropertyDecl, &C::AddMethodDecl, &C::RemoveMethodDecl);
    typedef ICIMInstance I;
    ExpectHostOrder("ICIMInstance", &I::Validate, &I::AddToNamespace, &I::ModifyInstance, &I::Delete, &I::GetReference,
                    &I::BuildPath, &I::GetClass, &I::EnumerateAssociatedInstances, &I::EnumerateAssociationInstances,
                    &I::GetProperty, &I::SetPropertyValue, &I::EnumerateProperties, &I::InvokeMethod, &I::operator==,
                    &I::operator<, static_cast<I& (I::*)(const I&)>(&I::operator=));
    typedef ICIMNamespace S;
    ExpectHostOrder("ICIMNamespace", &S::GetNamespaceProvider, &S::SetUpcallNamespace, &S::AddUnderlyingNamespace,
                    &S::AllocateClass, &S::GetClass, &S::EnumerateRootClasses, &S::EnumerateProviders,
                    &S::AllocateQualifierDecl, &S::GetQualifierDecl, &S::EnumerateQualifierDecls, &S::Subscribe,
                    &S::GetInstance, &S::DeleteInstance, &S::ModifyInstance, &S::ExecuteQuery, &S::ClearInstances,
                    static_cast<S& (S::*)(S&)>(&S::operator=));
    typedef IProvider P;
    ExpectHostOrder("IProvider", &P::GetName, &P::GetModuleName, &P::GetDescription, &P::GetNamespace,
                    &P::EnumerateClassesProvided, static_cast<P& (P::*)(const P&)>(&P::operator=));
    typedef INamespaceProvider N;
    ExpectHostOrder("INamespaceProvider", &N::GetName, &N::AllocateNamespace, &N::GetType, &N::IsIndicationsSupported);
    ExpectHostOrder("ICoreLogger", &ICoreLogger::Log);
    ExpectHostOrder("INamespaceProviderManager", &INamespaceProviderManager::RegisterNamespaceProvider);
}

TEST(InterfaceSlots, QualifierOperationsLiveInTheSecondaryBase) {
    typedef ICIMNamedElement N;
    typedef boost::shared_ptr<ICIMQualifier> Q;
    typedef boost::shared_ptr<const ICIMQualifierDecl> D;
    ExpectHostOrder("ICIMNamedElement", &N::AddQualifier,
                    static_cast<Q (N::*)(D, const TCIMValue&, TCIMContext) const>(&N::AllocateQualifier),
                    static_cast<Q (N::*)(D, const TCIMValue&, ICIMQualifierDecl::EFlavor, TCIMContext) const>(
                        &N::AllocateQualifier),
                    static_cast<Q (N::*)(const std::string&, TCIMContext) const>(&N::GetQualifier),
                    &N::EnumerateQualifiers,
                    static_cast<Q (N::*)(const std::string&, bool&, TCIMContext) const>(&N::GetQualifier));
    // Reached through a class, they must resolve through the second base.
    const TSlot slot = SlotOf(static_cast<void (ICIMClass::*)(Q, TCIMContext)>(&ICIMClass::AddQualifier));
    EXPECT_EQ(slot.index, 2);
    EXPECT_EQ(slot.adjust, static_cast<std::ptrdiff_t>(sizeof(void*)));
}
