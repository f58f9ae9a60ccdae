// The standard documents, the registration walk the CMPI library makes,
// and the registration of the "inmem" namespace provider at load time.
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "InmemTestSupport.h"
#include "TNamespacePopulator.h"
#include "TRootObject.h"

using namespace inmemtest;

namespace {

typedef ICIMQualifierDecl D;
typedef TCIMValue::TCIMType T;

TEST(StandardDocuments, DeclareTheStandardAndHostQualifiers) {
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    const char* const standard[] = {
        "Key",      "Abstract",   "Association",  "Indication",    "IN",          "OUT",
        "Description", "Override", "ValueMap",    "Values",        "Required",    "Static",
        "Propagated", "MaxLen",   "Units",        "Deprecated",    "Version",     "Experimental",
        "Aggregate", "Aggregation", "Composition", "Min",          "Max",         "Terminal",
        "Counter",  "Gauge",      "Write",        "Read",          "EmbeddedObject", "ArrayType",
        "ModelCorrespondence", "MappingStrings", "DisplayName", "Exception", "PLUGINNAME", "DONTCOLLECT"};
    for (const char* name : standard) EXPECT_TRUE(ns->GetQualifierDecl(name, NoContext())) << name;

    struct TExpected {
        const char* name;
        T::ECIMType type;
        bool isArray;
        int scope;
        int flavor;
    };
    const TExpected expected[] = {
        {"Key", T::kBoolean, false, D::kScopeProperty | D::kScopeReference, D::kDisableOverride | D::kToSubclass},
        {"ValueMap", T::kString, true, D::kScopeProperty | D::kScopeMethod | D::kScopeParameter,
         D::kEnableOverride | D::kToSubclass},
        {"MaxLen", T::kUint32, false, D::kScopeProperty | D::kScopeMethod | D::kScopeParameter,
         D::kEnableOverride | D::kToSubclass},
        {"Description", T::kString, false, D::kScopeAny, D::kEnableOverride | D::kToSubclass | D::kTranslatable},
        {"PLUGINNAME", T::kString, false, D::kScopeClass, D::kEnableOverride | D::kRestricted},
        {"DONTCOLLECT", T::kBoolean, false, D::kScopeClass, D::kEnableOverride | D::kRestricted},
    };
    for (const auto& e : expected) {
        boost::shared_ptr<ICIMQualifierDecl> decl = ns->GetQualifierDecl(e.name, NoContext());
        EXPECT_EQ(decl->GetType(), e.type) << e.name;
        EXPECT_EQ(decl->IsArray(), e.isArray) << e.name;
        EXPECT_EQ(decl->GetScope(), e.scope) << e.name;
        EXPECT_EQ(decl->GetFlavor(), e.flavor) << e.name;
    }
    EXPECT_EQ(ns->GetQualifierDecl("DONTCOLLECT", NoContext())->GetDefaultValue(), TCIMValue(false));
    EXPECT_EQ(ns->GetQualifierDecl("IN", NoContext())->GetDefaultValue(), TCIMValue(true));
}

TEST(StandardDocuments, AreFoundBesideTheLibrary) {
    const std::string directory = GetStandardDocumentsDirectory();
    EXPECT_EQ(directory.substr(directory.size() - 14), "/lib/documents") << directory;
    for (const auto& path : GetStandardDocumentPaths()) {
        struct stat info;
        EXPECT_EQ(::stat(path.c_str(), &info), 0) << path;
    }
}

TEST(StandardDocuments, RegistrationClassesHaveTheirKeys) {
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    struct TExpected {
        const char* cls;
        std::vector<std::string> keys;
    };
    const TExpected expected[] = {{"PG_ProviderModule", {"Name"}},
                                  {"PG_Provider", {"ProviderModuleName", "Name"}},
                                  {"PG_ProviderCapabilities", {"ProviderModuleName", "ProviderName", "CapabilityID"}}};
    for (const auto& e : expected) {
        boost::shared_ptr<ICIMClass> cls = ns->GetClass(e.cls, NoContext());
        ASSERT_TRUE(cls) << e.cls;
        std::vector<std::string> keys;
        cls->EnumerateKeyNames(
            [&](const std::string* name) {
                keys.push_back(*name);
                return true;
            },
            NoContext());
        EXPECT_EQ(keys, e.keys) << e.cls;
    }
    boost::shared_ptr<ICIMPropertyDecl> types =
        ns->GetClass("PG_ProviderCapabilities", NoContext())->GetPropertyDecl("ProviderType", NoContext());
    EXPECT_EQ(types->GetType(), T::kUint16);
    EXPECT_TRUE(types->IsArray());
}

// The walk the CMPI library makes over a registration document: instances
// in document order, their scalar properties read as strings.
TEST(StandardDocuments, RegistrationWalk) {
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    std::vector<boost::shared_ptr<ICIMInstance> > instances =
        TNamespacePopulator::PopulateFromRegXMLFile(ns, DataFile("registration_walk.xml"));
    std::vector<std::string> walk;
    for (const auto& instance : instances) {
        std::string line = instance->GetClass(NoContext())->GetName(NoContext());
        instance->EnumerateProperties(
            [&](boost::shared_ptr<ICIMProperty> property) {
                const TCIMValue value = property->GetValue();
                const std::string text = value.IsArray() ? value.ToString() : static_cast<std::string>(value);
                line += " " + property->GetName() + "=" + text;
                return true;
            },
            NoContext());
        walk.push_back(line);
    }
    const std::vector<std::string> expected = {
        "PG_ProviderModule Name=Sample Vendor=Example Version=1.0 InterfaceType=CMPI InterfaceVersion=1.0.0 "
        "Location=Sample dummy=Sample providers",
        "PG_Provider ProviderModuleName=Sample Name=Beta",
        "PG_ProviderCapabilities ProviderModuleName=Sample ProviderName=Beta CapabilityID=1 ClassName=Sample_Beta "
        "Namespaces=root/cimv2 ProviderType=2,5 SupportedProperties= SupportedMethods=",
        "PG_Provider ProviderModuleName=Sample Name=Alpha",
        "PG_ProviderCapabilities ProviderModuleName=Sample ProviderName=Alpha CapabilityID=2 ClassName=Sample_Alpha "
        "Namespaces= ProviderType= SupportedProperties= SupportedMethods=Go",
    };
    EXPECT_EQ(walk, expected);
}

TEST(InmemNamespaceProvider, IsRegisteredWhenTheLibraryIsLoaded) {
    boost::shared_ptr<INamespaceProvider> provider =
        TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("inmem");
    ASSERT_TRUE(provider);
    EXPECT_EQ(provider->GetType(NoContext()), INamespaceProvider::kRepositoryNamespace);
    EXPECT_FALSE(provider->IsIndicationsSupported(NoContext()));
    boost::shared_ptr<ICIMNamespace> empty = provider->AllocateNamespace(NoContext(), false);
    boost::shared_ptr<ICIMNamespace> populated = provider->AllocateNamespace(NoContext(), true);
    EXPECT_FALSE(empty->GetQualifierDecl("Key", NoContext()));
    EXPECT_FALSE(empty->GetClass("PG_Provider", NoContext()));
    EXPECT_TRUE(populated->GetClass("PG_Provider", NoContext()));
    EXPECT_EQ(populated->GetNamespaceProvider(NoContext()), provider);
    EXPECT_TRUE(TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("manager"));
}

}  // namespace
