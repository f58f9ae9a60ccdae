// Start-up and provider discovery through the real host libraries.
#include <cstdlib>
#include <string>
#include <vector>

#include <boost/bind/bind.hpp>

#include "NspTestHost.h"

using namespace NVURZENTA20;

namespace {

bool Collect(std::vector<boost::shared_ptr<IProvider> >* into, bool goOn, boost::shared_ptr<IProvider> provider) {
    into->push_back(provider);
    return goOn;
}

std::vector<boost::shared_ptr<IProvider> > Providers(ICIMNamespace& ns, TCIMContext context = TCIMContext(),
                                                     bool goOn = true) {
    std::vector<boost::shared_ptr<IProvider> > found;
    ns.EnumerateProviders(boost::bind(&Collect, &found, goOn, boost::placeholders::_1), context);
    return found;
}

std::string PluginNameOf(ICIMNamespace& repository, const std::string& className) {
    boost::shared_ptr<ICIMQualifier> tag =
        repository.GetClass(className, TCIMContext())->GetQualifier("PLUGINNAME", TCIMContext());
    return tag ? static_cast<std::string>(tag->GetValue()) : std::string("<untagged>");
}

TCIMContext PluginType(const TCIMValue& value) {
    TCIMContext context;
    context["pluginType"] = value;
    return context;
}

}  // namespace

typedef NspTestHost Discovery;

TEST_F(Discovery, LibraryRegistersItselfAndRemembersItsDirectory) {
    boost::shared_ptr<INamespaceProvider> cmpi =
        TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("cmpi");
    ASSERT_TRUE(cmpi);
    EXPECT_EQ(&cmpi->GetName(TCIMContext()), &cmpi->GetName(TCIMContext()));
    EXPECT_EQ(cmpi->GetName(TCIMContext()), "cmpi");
    EXPECT_EQ(cmpi->GetType(TCIMContext()), 0);
    EXPECT_FALSE(cmpi->IsIndicationsSupported(TCIMContext()));
    Allocate("road");
    EXPECT_EQ(TCMPINamespaceProvider::GetfgModulePathName(), std::string(ZENTA_NSP_MODULE_ROOT) + "/road");
}

TEST_F(Discovery, ProvidersAreCreatedInNameOrderWithTheirRegistration) {
    Allocate("road");
    std::vector<boost::shared_ptr<IProvider> > providers = Providers(*fNamespace);
    ASSERT_EQ(providers.size(), 2u);
    EXPECT_EQ(providers[0]->GetName(TCIMContext()), "RoadA");
    EXPECT_EQ(providers[1]->GetName(TCIMContext()), "RoadB");
    for (std::size_t i = 0; i < providers.size(); ++i) {
        EXPECT_EQ(providers[i]->GetModuleName(TCIMContext()), "libRoad");
        EXPECT_EQ(providers[i]->GetDescription(TCIMContext()), "Road test module");
        EXPECT_THROW(providers[i]->GetNamespace(TCIMContext()), TZENTAException);
    }
    boost::shared_ptr<TCMPIProvider> roadA = boost::dynamic_pointer_cast<TCMPIProvider>(providers[0]);
    ASSERT_TRUE(roadA);
    EXPECT_TRUE(roadA->IsClassesProvided("Road_Item"));
    EXPECT_FALSE(roadA->IsClassesProvided("road_item"));
    EXPECT_FALSE(roadA->IsClassesProvided("Road_Leaf")) << "capabilities of another module were taken";
    EXPECT_EQ(roadA->GetNameSpaceName(TCIMContext()), "root/road");
    EXPECT_STREQ(roadA->GetProviderInfo()->providerName, "RoadA");
    EXPECT_EQ(roadA->GetProviderInfo()->type, 47u);
    EXPECT_FALSE(roadA->IsInitialized());

    EXPECT_EQ(PluginNameOf(*fRepository, "Road_Item"), "RoadA");
    EXPECT_EQ(PluginNameOf(*fRepository, "Road_Sub"), "RoadB");
    EXPECT_EQ(PluginNameOf(*fRepository, "Road_Leaf"), "RoadB");
    EXPECT_EQ(LogLinesWith("TRACE", "TCMPINamespace::LoadPlugin created Provider RoadA").size(), 1u);
}

TEST_F(Discovery, RegistrationOrderDecidesWhoServesWhat) {
    Allocate("order");
    std::vector<boost::shared_ptr<IProvider> > providers = Providers(*fNamespace);
    ASSERT_EQ(providers.size(), 2u) << "a provider before the module instance must be ignored";
    boost::shared_ptr<TCMPIProvider> alpha = boost::dynamic_pointer_cast<TCMPIProvider>(providers[0]);
    boost::shared_ptr<TCMPIProvider> zed = boost::dynamic_pointer_cast<TCMPIProvider>(providers[1]);
    EXPECT_EQ(alpha->GetName(TCIMContext()), "Alpha");
    EXPECT_EQ(zed->GetName(TCIMContext()), "Zed");
    EXPECT_TRUE(alpha->IsClassesProvided("Road_Sub"));
    EXPECT_FALSE(zed->IsClassesProvided("Road_Sub"));
    EXPECT_TRUE(zed->IsClassesProvided("Road_Item"));
    // An unknown class is skipped silently; the last capabilities entry
    // decides the namespace.
    EXPECT_EQ(alpha->GetCollectedClasses().size(), 1u);
    EXPECT_EQ(alpha->GetNameSpaceName(TCIMContext()), "root/last");
    EXPECT_EQ(alpha->GetModuleName(TCIMContext()), "libOrder");
    EXPECT_TRUE(LogLinesWith("ERROR", "").empty());
}

TEST_F(Discovery, AModuleThatCannotBeOpenedIsLoggedOnceAndTheNextIsLoaded) {
    Allocate("mixed");
    std::string broken = std::string(ZENTA_NSP_MODULE_ROOT) + "/mixed/Broken.cmpi.so";
    std::vector<std::string> errors = LogLinesWith("ERROR", "");
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(errors[0].substr(errors[0].size() - broken.size()), broken);
    EXPECT_EQ(Providers(*fNamespace).size(), 2u);
}

TEST_F(Discovery, AModuleWithoutRegistrationBecomesOneProviderOfItsOwnClasses) {
    Allocate("lonely");
    std::vector<boost::shared_ptr<IProvider> > providers = Providers(*fNamespace);
    ASSERT_EQ(providers.size(), 1u);
    boost::shared_ptr<TCMPIProvider> lonely = boost::dynamic_pointer_cast<TCMPIProvider>(providers[0]);
    EXPECT_EQ(lonely->GetPath(), std::string(ZENTA_NSP_MODULE_ROOT) + "/lonely/Lonely.cmpi.so");
    EXPECT_TRUE(lonely->IsClassesProvided("Lonely_Item"));
    EXPECT_TRUE(lonely->IsClassesProvided("Lonely_Leaf"));
    EXPECT_EQ(PluginNameOf(*fRepository, "Lonely_Sub"), lonely->GetName(TCIMContext()));
}

TEST_F(Discovery, PluginTypeSelectsTheProvidersOffered) {
    Allocate("road");
    EXPECT_EQ(Providers(*fNamespace, PluginType(TCIMValue(static_cast<signed char>(4)))).size(), 2u);
    EXPECT_EQ(Providers(*fNamespace, PluginType(TCIMValue(static_cast<signed char>(-1)))).size(), 2u);
    EXPECT_EQ(Providers(*fNamespace, PluginType(TCIMValue(static_cast<signed char>(2)))).size(), 0u);
    EXPECT_THROW(
        {
            try {
                Providers(*fNamespace, PluginType(TCIMValue(4)));
            } catch (const TZENTAException& failure) {
                EXPECT_EQ(failure.GetStatusCode().GetCode(), 14);
                throw;
            }
        },
        TZENTAException);
    EXPECT_EQ(LogLinesWith("ERROR", "must be of type kSint8.").size(), 1u);
}

TEST_F(Discovery, ACallbackThatStopsEndsTheWholeEnumeration) {
    Allocate("road");
    EXPECT_EQ(Providers(*fNamespace, TCIMContext(), false).size(), 1u);
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
    boost::shared_ptr<ICIMClass> root = fNamespace->GetClass("<root>", TCIMContext());
    ASSERT_TRUE(root);
    EXPECT_FALSE(fNamespace->GetClass("No_Such_Class", TCIMContext()));
    boost::shared_ptr<ICIMClass> item = fNamespace->GetClass("Road_Item", TCIMContext());
    ASSERT_TRUE(boost::dynamic_pointer_cast<TCMPIClass>(item));
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

namespace {

bool CollectClass(std::vector<std::string>* names, bool goOn, boost::shared_ptr<ICIMClass> cls) {
    names->push_back(cls->GetName(TCIMContext()));
    return goOn;
}

std::vector<std::string> ClassesOf(IProvider& provider, bool goOn = true) {
    std::vector<std::string> names;
    provider.EnumerateClassesProvided(boost::bind(&CollectClass, &names, goOn, boost::placeholders::_1),
                                      TCIMContext());
    return names;
}

}  // namespace

TEST_F(Discovery, ClassOnlyProvidersComeFirstAndBelongToNoModule) {
    Allocate("road");
    std::string document = std::string(ZENTA_NSP_MODULE_ROOT) + "/lonely/Lonely.classes.xml";
    fNamespace->AddClassProvider("Shapes", "Classes without instances", document);
    fNamespace->AddClassProvider("Nothing", "No document", "/no/such/file.classes.xml");
    setenv("ZENTA_BIOSPROVIDER", "no", 1);
    std::vector<boost::shared_ptr<IProvider> > providers = Providers(*fNamespace);
    unsetenv("ZENTA_BIOSPROVIDER");
    ASSERT_EQ(providers.size(), 4u);
    EXPECT_EQ(providers[0]->GetName(TCIMContext()), "Shapes");
    EXPECT_EQ(providers[0]->GetModuleName(TCIMContext()), "");
    EXPECT_EQ(providers[0]->GetDescription(TCIMContext()), "Classes without instances");
    EXPECT_EQ(providers[0]->GetNamespace(TCIMContext()), fRepository);
    EXPECT_EQ(providers[2]->GetName(TCIMContext()), "RoadA");

    std::vector<std::string> classes = ClassesOf(*providers[0]);
    ASSERT_EQ(classes.size(), 3u);
    EXPECT_EQ(classes[0], "Lonely_Item");
    EXPECT_EQ(classes[2], "Lonely_Leaf");
    EXPECT_EQ(ClassesOf(*providers[0], false).size(), 1u);
    EXPECT_TRUE(ClassesOf(*providers[1]).empty());
}

TEST_F(Discovery, ProvidersOfferTheirConcreteCollectedClassesWrapped) {
    Allocate("road");
    std::vector<boost::shared_ptr<IProvider> > providers = Providers(*fNamespace);
    ASSERT_EQ(providers.size(), 2u);
    // Abstract classes and classes marked DONTCOLLECT are not offered; a
    // DONTCOLLECT that reads false hides nothing.
    std::vector<std::string> roadB = ClassesOf(*providers[1]);
    ASSERT_EQ(roadB.size(), 3u);
    EXPECT_EQ(roadB[0], "Road_Sub");
    EXPECT_EQ(roadB[1], "Road_Leaf");
    EXPECT_EQ(roadB[2], "Road_Visible");
    EXPECT_EQ(ClassesOf(*providers[1], false).size(), 1u);
    EXPECT_EQ(LogLinesWith("TRACE", "Asking plugin RoadB for Road_Sub").size(), 2u);
}
