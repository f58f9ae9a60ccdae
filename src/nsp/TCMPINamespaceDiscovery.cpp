// Provider discovery: finds the provider modules beside the library, reads
// their registration and class documents and creates one provider record
// per registered provider.
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>

#include "TCMPINamespace.h"
#include "TCMPINamespaceProvider.h"
#include "TNamespacePopulator.h"
#include "TOSSpecific.h"
#include "TRootObject.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;

namespace {

const char kPluginKind[] = "cmpi";
const unsigned int kAllMIKinds = 47;

typedef std::vector<std::string> TClassNames;
typedef std::map<std::string, boost::shared_ptr<TClassNames> > TProviderClasses;
typedef std::map<std::string, std::string> TProviderNamespaces;

void Log(int level, const std::string& text) { TRootObject::GetCoreLogger()->Log(level, text); }

std::string ReadString(const boost::shared_ptr<ICIMInstance>& instance, const char* property) {
    boost::shared_ptr<ICIMProperty> value = instance->GetProperty(property, TCIMContext());
    return value ? static_cast<std::string>(value->GetValue()) : std::string();
}

std::string ClassNameOf(const boost::shared_ptr<ICIMInstance>& instance) {
    return instance->GetClass(TCIMContext())->GetName(TCIMContext());
}

_ProviderInfo* NewProviderInfo() {
    _ProviderInfo* info = new _ProviderInfo;
    std::memset(info, 0, sizeof(*info));
    return info;
}

// Logs a module that cannot be opened. The formatted text is built and
// dropped; the line carries the module name alone, as it always has.
void LogUnopenedModule(const std::string& name) {
    char message[1024];
    std::snprintf(message, sizeof(message), "Provider module %s failed to initialize properly", name.c_str());
    Log(0, name);
}

// The registration walk: a capabilities entry belongs to the nearest
// provider before it in the document, and only entries of this module count.
struct TRegistration {
    std::string moduleName;
    std::string moduleDescription;
    TProviderClasses providerClasses;
    TProviderNamespaces providerNamespaces;

    void Read(const std::vector<boost::shared_ptr<ICIMInstance> >& instances) {
        std::string currentProvider;
        boost::shared_ptr<TClassNames> currentClasses(new TClassNames);
        std::string currentNamespaces;
        bool seenProvider = false;
        for (std::size_t i = 0; i < instances.size(); ++i) {
            const boost::shared_ptr<ICIMInstance>& instance = instances[i];
            std::string className = ClassNameOf(instance);
            if (className == "PG_ProviderModule") {
                moduleName = ReadString(instance, "Name");
                moduleDescription = ReadString(instance, "dummy");
            } else if (className == "PG_Provider" && ReadString(instance, "ProviderModuleName") == moduleName) {
                if (seenProvider) File(currentProvider, currentClasses, currentNamespaces);
                seenProvider = true;
                currentClasses.reset(new TClassNames);
                currentProvider = ReadString(instance, "Name");
            } else if (className == "PG_ProviderCapabilities" &&
                       ReadString(instance, "ProviderModuleName") == moduleName) {
                currentClasses->push_back(ReadString(instance, "ClassName"));
                currentNamespaces = ReadString(instance, "Namespaces");
            }
        }
        File(currentProvider, currentClasses, currentNamespaces);
    }

    // The first entry filed under a name is kept.
    void File(const std::string& provider, const boost::shared_ptr<TClassNames>& classes,
              const std::string& namespaces) {
        providerClasses.insert(std::make_pair(provider, classes));
        providerNamespaces.insert(std::make_pair(provider, namespaces));
    }
};

boost::shared_ptr<ICIMClass> FindClassByName(const std::vector<boost::shared_ptr<ICIMClass> >& classes,
                                             const std::string& name) {
    for (std::size_t i = 0; i < classes.size(); ++i) {
        if (classes[i]->GetName(TCIMContext()) == name) return classes[i];
    }
    return boost::shared_ptr<ICIMClass>();
}

// A class the document does not define is looked up in the host; a name
// the host cannot resolve is skipped like one it does not know.
boost::shared_ptr<ICIMClass> LookUpClass(const boost::shared_ptr<ICIMNamespace>& upcall, const std::string& name,
                                         const TCIMContext& context) {
    try {
        return upcall->GetClass(name, context);
    } catch (const TZENTAException&) {
        return boost::shared_ptr<ICIMClass>();
    }
}

}  // namespace

void TCMPINamespace::FindAndLoadProviders() {
    std::vector<std::string> modules =
        TOSSpecific::FindPlugins(TCMPINamespaceProvider::GetfgModulePathName(), kPluginKind);
    for (std::size_t i = 0; i < modules.size(); ++i) {
        try {
            LoadPlugin(modules[i]);
        } catch (const TZENTAException& failure) {
            Log(0, failure.what());
        }
    }
}

void TCMPINamespace::LoadPlugin(std::string name) {
    for (std::size_t i = 0; i < fProviders.size(); ++i) {
        if (fProviders[i]->GetPath() == name) return;
    }
    Log(3, name);

    // Owned here until a provider takes it: freed when the module cannot be
    // opened and when one of its documents throws, so that a host rescanning
    // a directory with a broken module does not grow with every scan.
    std::unique_ptr<_ProviderInfo> moduleInfo(NewProviderInfo());
    moduleInfo->library = loadLibib(name.c_str());
    if (moduleInfo->library == nullptr) {
        LogUnopenedModule(name);
        return;
    }
    boost::shared_ptr<TCMPINamespace> current = TCMPINamespaceProvider::GetNamespace();
    std::vector<boost::shared_ptr<ICIMInstance> > instances =
        current->PopulateContainerFromRegFile(TOSSpecific::BuildRegistrationPath(name, kPluginKind));

    if (instances.empty()) {
        boost::shared_ptr<TCMPIProvider> provider(new TCMPIProvider(moduleInfo.release()));
        provider->SetPath(name);
        provider->LoadSpecificationDocument();
        InitializeProvider(provider);
        return;
    }

    TRegistration registration;
    registration.Read(instances);
    std::vector<boost::shared_ptr<ICIMClass> > classes =
        current->PopulateContainerFromFile(TOSSpecific::BuildSpecificationPath(name, kPluginKind));
    void* library = moduleInfo->library;
    moduleInfo.reset();

    for (TProviderClasses::const_iterator entry = registration.providerClasses.begin();
         entry != registration.providerClasses.end(); ++entry) {
        _ProviderInfo* info = NewProviderInfo();
        info->library = library;
        boost::shared_ptr<TCMPIProvider> provider(new TCMPIProvider(info));
        provider->SetPath(name);
        provider->SetName(entry->first);

        TCIMContext lookupContext;
        lookupContext["nspID"] = TCIMValue("cmpi");
        boost::shared_ptr<ICIMQualifierDecl> pluginName = current->GetQualifierDecl("PLUGINNAME", TCIMContext());
        TCMPIProvider::TClassList collected;
        const TClassNames& classNames = *entry->second;
        for (std::size_t i = 0; i < classNames.size(); ++i) {
            boost::shared_ptr<ICIMClass> cls = FindClassByName(classes, classNames[i]);
            if (!cls) cls = LookUpClass(GetUpcallNamespace(), classNames[i], lookupContext);
            if (!cls) continue;
            TCIMValue tag(provider->GetName(TCIMContext()));
            cls->AddQualifier(cls->AllocateQualifier(pluginName, tag, TCIMContext()), TCIMContext());
            collected.push_back(cls);
        }
        provider->SetModuleName("lib" + registration.moduleName);
        provider->SetNameSpaceName(registration.providerNamespaces[entry->first]);
        provider->SetDescription(registration.moduleDescription);
        provider->SetCollectedClasses(collected);
        provider->AddPluginToClass();
        InitializeProvider(provider);
        Log(3, "TCMPINamespace::LoadPlugin created Provider " + provider->GetName(TCIMContext()));
    }
}

void TCMPINamespace::InitializeProvider(boost::shared_ptr<TCMPIProvider> provider) {
    boost::shared_ptr<_ProviderInfo> info = provider->GetProviderInfo();
    info->providerName = strdup(provider->GetName(TCIMContext()).c_str());
    info->namespaceName = strdup(provider->GetNameSpaceName(TCIMContext()).c_str());
    info->type = kAllMIKinds;
    GetProvidersContainer().push_back(provider);
}

boost::shared_ptr<TCMPIProvider> TCMPINamespace::SearchForPluginByName(std::string name) {
    for (std::size_t i = 0; i < fProviders.size(); ++i) {
        if (fProviders[i]->HasName(name)) return fProviders[i];
    }
    return boost::shared_ptr<TCMPIProvider>();
}

std::vector<boost::shared_ptr<ICIMClass> > TCMPINamespace::PopulateContainerFromFile(const std::string& path) {
    return TNamespacePopulator::PopulateFromXMLFile(GetUpcallNamespace(), path);
}

std::vector<boost::shared_ptr<ICIMInstance> > TCMPINamespace::PopulateContainerFromRegFile(
    const std::string& path) {
    return TNamespacePopulator::PopulateFromRegXMLFile(GetUpcallNamespace(), path);
}

void TCMPINamespace::AddClassProvider(std::string name, std::string description, std::string file) {
    fClassProviders.push_back(
        boost::shared_ptr<TClassProvider>(new TClassProvider(name, description, fRepository, file)));
}
