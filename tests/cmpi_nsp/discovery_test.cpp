// Start-up and provider discovery through the real host libraries. A module
// that cannot be opened is seen by the end-to-end tests.
#include <cstdlib>
#include <string>
#include <vector>

#include "NspTestHost.h"

using namespace NVURZENTA20;

namespace {

// The providers offered for `context`, asking for no more after the first
// unless `goOn`.
std::vector<boost::shared_ptr<IProvider> > Providers(ICIMNamespace& ns, const TCIMContext& context = TCIMContext(),
                                                     bool goOn = true) {
    std::vector<boost::shared_ptr<IProvider> > found;
    ns.EnumerateProviders([&](boost::shared_ptr<IProvider> provider) { found.push_back(provider); return goOn; },
                          context);
    return found;
}

std::vector<std::string> ClassesOf(IProvider& provider, bool goOn = true) {
    std::vector<std::string> names;
    provider.EnumerateClassesProvided(
        [&](boost::shared_ptr<ICIMClass> cls) { names.push_back(cls->GetName(TCIMContext())); return goOn; },
        TCIMContext());
    return names;
}

boost::shared_ptr<TCMPIProvider> AsCmpi(const boost::shared_ptr<IProvider>& provider) {
    return boost::dynamic_pointer_cast<TCMPIProvider>(provider);
}

std::string PluginNameOf(ICIMNamespace& repository, const std::string& className) {
    boost::shared_ptr<ICIMQualifier> tag =
        repository.GetClass(className, TCIMContext())->GetQualifier("PLUGINNAME", TCIMContext());
    return tag ? static_cast<std::string>(tag->GetValue()) : std::string("<untagged>");
}

}  // namespace

typedef NspTestHost Discovery;

TEST_F(Discovery, LibraryRegistersItselfAndRemembersItsDirectory) {
    boost::shared_ptr<INamespaceProvider> cmpi =
        TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("cmpi");
    ASSERT_TRUE(cmpi);
    EXPECT_EQ(&cmpi->GetName(TCIMContext()), &cmpi->GetName(TCIMContext())) << "the name is not one lasting string";
    EXPECT_EQ(cmpi->GetName(TCIMContext()), "cmpi");
    Allocate("road");
    EXPECT_EQ(TCMPINamespaceProvider::GetfgModulePathName(), std::string(ZENTA_NSP_MODULE_ROOT) + "/road");
}

TEST_F(Discovery, ProvidersAreCreatedInNameOrderWithTheirRegistration) {
    Allocate("road");
    std::vector<boost::shared_ptr<IProvider> > providers = Providers(*fNamespace);
    ASSERT_EQ(providers.size(), 2u);
    EXPECT_EQ(providers[1]->GetName(TCIMContext()), "RoadB");
    for (const auto& provider : providers) {
        EXPECT_EQ(provider->GetModuleName(TCIMContext()), "libRoad");
        EXPECT_EQ(provider->GetDescription(TCIMContext()), "Road test module");
        EXPECT_THROW(provider->GetNamespace(TCIMContext()), TZENTAException);
    }
    boost::shared_ptr<TCMPIProvider> roadA = AsCmpi(providers[0]);
    ASSERT_TRUE(roadA);
    EXPECT_STREQ(roadA->GetProviderInfo()->providerName, "RoadA");
    EXPECT_TRUE(roadA->IsClassesProvided("Road_Item"));
    EXPECT_FALSE(roadA->IsClassesProvided("road_item"));
    EXPECT_FALSE(roadA->IsClassesProvided("Road_Leaf")) << "capabilities of another module were taken";
    EXPECT_EQ(roadA->GetProviderInfo()->type, 47u);

    EXPECT_EQ(PluginNameOf(*fRepository, "Road_Leaf"), "RoadB");
    EXPECT_EQ(LogLinesWith("TRACE", "TCMPINamespace::LoadPlugin created Provider RoadA").size(), 1u);
    EXPECT_EQ(Providers(*fNamespace, TCIMContext(), false).size(), 1u) << "a callback that stops ends the walk";
}

TEST_F(Discovery, RegistrationOrderDecidesWhoServesWhat) {
    Allocate("order");
    std::vector<boost::shared_ptr<IProvider> > providers = Providers(*fNamespace);
    ASSERT_EQ(providers.size(), 2u) << "a provider before the module instance must be ignored";
    boost::shared_ptr<TCMPIProvider> alpha = AsCmpi(providers[0]);
    boost::shared_ptr<TCMPIProvider> zed = AsCmpi(providers[1]);
    EXPECT_EQ(zed->GetName(TCIMContext()), "Zed");
    EXPECT_TRUE(alpha->IsClassesProvided("Road_Sub"));
    EXPECT_FALSE(zed->IsClassesProvided("Road_Sub"));
    EXPECT_TRUE(zed->IsClassesProvided("Road_Item"));
    // An unknown class is skipped silently; the last capabilities entry
    // decides the namespace.
    EXPECT_EQ(alpha->GetCollectedClasses().size(), 1u);
    EXPECT_EQ(alpha->GetNameSpaceName(TCIMContext()), "root/last");
    EXPECT_TRUE(LogLinesWith("ERROR", "").empty());
}

TEST_F(Discovery, AModuleWithoutRegistrationBecomesOneProviderOfItsOwnClasses) {
    Allocate("lonely");
    std::vector<boost::shared_ptr<IProvider> > providers = Providers(*fNamespace);
    ASSERT_EQ(providers.size(), 1u);
    boost::shared_ptr<TCMPIProvider> lonely = AsCmpi(providers[0]);
    EXPECT_EQ(lonely->GetPath(), std::string(ZENTA_NSP_MODULE_ROOT) + "/lonely/Lonely.cmpi.so");
    EXPECT_TRUE(lonely->IsClassesProvided("Lonely_Item") && lonely->IsClassesProvided("Lonely_Leaf"));
    EXPECT_EQ(PluginNameOf(*fRepository, "Lonely_Sub"), lonely->GetName(TCIMContext()));
}

TEST_F(Discovery, PluginTypeSelectsTheProvidersOffered) {
    Allocate("road");
    const auto ofType = [this](const TCIMValue& type) { return Providers(*fNamespace, {{"pluginType", type}}).size(); };
    EXPECT_EQ(ofType(TCIMValue(static_cast<signed char>(4))), 2u);
    EXPECT_EQ(ofType(TCIMValue(static_cast<signed char>(-1))), 2u);
    EXPECT_EQ(ofType(TCIMValue(static_cast<signed char>(2))), 0u);
    try {
        ofType(TCIMValue(4));
        ADD_FAILURE() << "a plugin type of the wrong type was taken";
    } catch (const TZENTAException& failure) {
        EXPECT_EQ(failure.GetStatusCode().GetCode(), 14);
    }
    EXPECT_EQ(LogLinesWith("ERROR", "must be of type kSint8.").size(), 1u);
}

TEST_F(Discovery, TheBiosModuleIsHiddenUnlessAskedForInAnyCapitals) {
    Allocate("bios");
    unsetenv("ZENTA_BIOSPROVIDER");
    EXPECT_EQ(Providers(*fNamespace).size(), 0u);
    setenv("ZENTA_BIOSPROVIDER", "no", 1);
    EXPECT_EQ(Providers(*fNamespace).size(), 0u);
    setenv("ZENTA_BIOSPROVIDER", "YeS", 1);
    std::vector<boost::shared_ptr<IProvider> > shown = Providers(*fNamespace);
    unsetenv("ZENTA_BIOSPROVIDER");
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0]->GetModuleName(TCIMContext()), "libbios");
}

TEST_F(Discovery, NamespaceAnswersFromItsTwoHostNamespaces) {
    Allocate("road");
    EXPECT_FALSE(fNamespace->GetClass("No_Such_Class", TCIMContext()));
    EXPECT_TRUE(fNamespace->GetQualifierDecl("PLUGINNAME", TCIMContext()));
    EXPECT_THROW(fNamespace->AddUnderlyingNamespace(fRepository, TCIMContext()), TZENTAException);
    EXPECT_THROW(fNamespace->Subscribe(boost::shared_ptr<ICIMIndicationFilter>(), TInstanceCallback(), TCIMContext()),
                 TZENTAException);
    EXPECT_EQ(TCMPINamespaceProvider::GetNamespace(), fNamespace);
    fNamespace->ClearInstances();
    EXPECT_FALSE(TCMPINamespaceProvider::GetNamespace());
}

TEST_F(Discovery, AnExpiredUpcallNamespaceIsAnEmptyPointer) {
    Allocate("road");
    EXPECT_EQ(fNamespace->GetUpcallNamespace(), fUpcall);
    boost::shared_ptr<ICIMNamespace> other = TNamespaceManager::Create(fRepository);
    fNamespace->SetUpcallNamespace(other, TCIMContext());
    EXPECT_EQ(fNamespace->GetUpcallNamespace(), other);
    other.reset();
    EXPECT_FALSE(fNamespace->GetUpcallNamespace());
}

TEST_F(Discovery, MissingRepositoryIsRefused) {
    TCIMContext context;
    context["repository"] = TCIMValue("not an address");
    try {
        TCMPINamespace ns(context);
        ADD_FAILURE() << "a namespace was built without a repository";
    } catch (const TZENTAException& failure) {
        EXPECT_EQ(failure.GetStatusCode().GetCode(), 38);
    }
}

TEST_F(Discovery, ClassOnlyProvidersComeFirstAndBelongToNoModule) {
    Allocate("road");
    fNamespace->AddClassProvider("Shapes", "Classes without instances",
                                 std::string(ZENTA_NSP_MODULE_ROOT) + "/lonely/Lonely.classes.xml");
    fNamespace->AddClassProvider("Nothing", "No document", "/no/such/file.classes.xml");
    std::vector<boost::shared_ptr<IProvider> > providers = Providers(*fNamespace);
    ASSERT_EQ(providers.size(), 4u);
    EXPECT_EQ(providers[0]->GetName(TCIMContext()), "Shapes");
    EXPECT_EQ(providers[0]->GetModuleName(TCIMContext()), "");
    EXPECT_EQ(providers[0]->GetDescription(TCIMContext()), "Classes without instances");
    EXPECT_EQ(providers[0]->GetNamespace(TCIMContext()), fRepository);
    EXPECT_EQ(providers[2]->GetName(TCIMContext()), "RoadA");
    EXPECT_EQ(ClassesOf(*providers[0]), (std::vector<std::string>{"Lonely_Item", "Lonely_Sub", "Lonely_Leaf"}));
    EXPECT_EQ(ClassesOf(*providers[0], false).size(), 1u);
    EXPECT_TRUE(ClassesOf(*providers[1]).empty());
}

TEST_F(Discovery, ProvidersOfferTheirConcreteCollectedClassesWrapped) {
    Allocate("road");
    std::vector<boost::shared_ptr<IProvider> > providers = Providers(*fNamespace);
    ASSERT_EQ(providers.size(), 2u);
    // Abstract classes and classes marked DONTCOLLECT are not offered; a
    // DONTCOLLECT that reads false hides nothing.
    EXPECT_EQ(ClassesOf(*providers[1]), (std::vector<std::string>{"Road_Sub", "Road_Leaf", "Road_Visible"}));
    EXPECT_EQ(ClassesOf(*providers[1], false).size(), 1u);
    EXPECT_EQ(LogLinesWith("TRACE", "Asking plugin RoadB for Road_Sub").size(), 2u);
}
