#include "ModuleSurvey.h"

#include <strings.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>

#include "ICIMClass.h"
#include "ICIMInstance.h"
#include "ICIMNamespace.h"
#include "ICIMProperty.h"
#include "ICoreLogger.h"
#include "INamespaceProvider.h"
#include "INamespaceProviderManager.h"
#include "ModuleProbe.h"
#include "TNamespacePopulator.h"
#include "TOSSpecific.h"
#include "TRootObject.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;
namespace fs = std::filesystem;

namespace {

const char kPluginKind[] = "cmpi";
const char kModuleSuffix[] = ".cmpi.so";
const char kGenericPrefix[] = "_Generic";
// The document suffixes the host reads beside a module.
const char* const kDocumentSuffixes[] = {".reg.xml", ".reg.mof", ".classes.xml", ".classes.mof"};

// The ProviderType values of a capability and the MI kind each asks for.
struct TProviderType {
    int value;
    const char* kind;
};
const TProviderType kProviderTypes[] = {{2, "Instance"}, {3, "Association"}, {4, "Indication"}, {5, "Method"}};

bool EndsWith(const std::string& text, const std::string& suffix) {
    return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

std::string FileName(const std::string& path) { return fs::path(path).filename().string(); }

bool Exists(const std::string& path) {
    std::error_code ignored;
    return !path.empty() && fs::exists(path, ignored);
}

std::string ReadString(const ICIMInstance& instance, const char* property) {
    const boost::shared_ptr<ICIMProperty> value = instance.GetProperty(property, TCIMContext());
    if (!value || value->GetValue().IsNull()) return std::string();
    return value->GetValue().ToString();
}

std::vector<int> ReadIntegers(const ICIMInstance& instance, const char* property) {
    std::vector<int> numbers;
    const boost::shared_ptr<ICIMProperty> value = instance.GetProperty(property, TCIMContext());
    if (!value || value->GetValue().IsNull()) return numbers;
    const TCIMValue read = value->GetValue();
    try {
        if (!read.IsArray()) return {static_cast<int>(read)};
        for (const TCIMValue& element : static_cast<const std::vector<TCIMValue>&>(read)) {
            if (!element.IsNull()) numbers.push_back(static_cast<int>(element));
        }
    } catch (const TZENTAException&) {
        // Not numbers: nothing to learn from them.
    }
    return numbers;
}

// The registration classes are the host's standard ones: a fresh
// repository with only the standard documents reads any registration.
boost::shared_ptr<ICIMNamespace> ScratchRepository() {
    boost::shared_ptr<INamespaceProvider> inmem = TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("inmem");
    if (!inmem) throw TZENTAException(TZENTAStatusCode::kNotInitialized, "the in-memory repository is not registered");
    return inmem->AllocateNamespace(TCIMContext(), true);
}

std::size_t EditDistance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> previous(b.size() + 1);
    std::vector<std::size_t> current(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) previous[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        current[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const bool same = std::tolower(static_cast<unsigned char>(a[i - 1])) ==
                              std::tolower(static_cast<unsigned char>(b[j - 1]));
            current[j] = std::min({previous[j] + 1, current[j - 1] + 1, previous[j - 1] + (same ? 0 : 1)});
        }
        previous.swap(current);
    }
    return previous[b.size()];
}

// The provider part of an exported factory name: Hello of Hello_Create_InstanceMI.
std::string ProviderPartOf(const std::string& factory) {
    const std::size_t create = factory.rfind("_Create_");
    return create == std::string::npos ? std::string() : factory.substr(0, create);
}

// The MI kinds the library will find a factory of for `provider`.
std::set<std::string> KindsOf(const TElfFacts& elf, const std::string& provider) {
    std::set<std::string> kinds;
    for (int k = 0; k < kMiKindCount; ++k) {
        const std::string kind = kMiKinds[k];
        if (elf.factories.count(provider + "_Create_" + kind + "MI") ||
            elf.factories.count(std::string(kGenericPrefix) + "_Create_" + kind + "MI")) {
            kinds.insert(kind);
        }
    }
    return kinds;
}

}  // namespace

std::string TFinding::FormatIn(const std::string& directory) const {
    return file.empty() ? text : directory + "/" + file + ": " + text;
}

std::string NearestName(const std::string& name, const std::vector<std::string>& candidates) {
    std::string best;
    std::size_t bestDistance = std::string::npos;
    for (const std::string& candidate : candidates) {
        const std::size_t distance = EditDistance(name, candidate);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = candidate;
        }
    }
    // A likely typo: a few letters off, not a different name altogether.
    const std::size_t allowed = std::max<std::size_t>(1, std::min<std::size_t>(3, name.size() / 4));
    return bestDistance != 0 && bestDistance <= allowed ? best : std::string();
}

void TModuleSurvey::Add(TFinding::ESeverity severity, const std::string& file, const std::string& text, bool silent) {
    TFinding finding;
    finding.severity = severity;
    finding.file = file;
    finding.text = text;
    finding.silent = silent;
    fFindings.push_back(finding);
}

// The survey reads documents with the host's readers, which log what they
// notice; the survey reports it as findings instead, so the host's logger
// is kept quiet meanwhile.
class TQuietLogger {
public:
    TQuietLogger() : fLogger(TRootObject::GetCoreLogger()), fThreshold(fLogger->GetThreshold()) { fLogger->SetThreshold(-1); }
    ~TQuietLogger() { fLogger->SetThreshold(fThreshold); }
    TQuietLogger(const TQuietLogger&) = delete;
    TQuietLogger& operator=(const TQuietLogger&) = delete;

private:
    boost::shared_ptr<ICoreLogger> fLogger;
    int fThreshold;
};

void TModuleSurvey::Run(const std::string& directory, bool probe) {
    const TQuietLogger quiet;
    fModules.clear();
    fFindings.clear();
    const boost::shared_ptr<ICIMNamespace> scratch = ScratchRepository();
    for (const std::string& path : TOSSpecific::FindPlugins(directory, kPluginKind)) {
        TModuleReport module;
        module.path = path;
        module.file = FileName(path);
        SurveyModule(module, scratch);
        fModules.push_back(module);
    }
    if (probe) {
        std::vector<std::string> paths;
        std::vector<TModuleReport*> probed;
        for (TModuleReport& module : fModules) {
            if (!module.loadable) continue;
            paths.push_back(module.path);
            probed.push_back(&module);
        }
        const std::vector<TProbeVerdict> verdicts = ProbeModules(paths);
        for (std::size_t i = 0; i < probed.size(); ++i) {
            probed[i]->loadable = verdicts[i].loaded;
            probed[i]->problem = verdicts[i].problem;
        }
    }
    for (const TModuleReport& module : fModules) {
        if (!module.loadable) {
            Add(TFinding::kError, module.file, "cannot be loaded: " + module.problem, false);
        } else {
            CheckFactories(module);
        }
    }
    CheckStrayFiles(directory);
    CheckSharedProviderNames();
}

void TModuleSurvey::CheckSharedProviderNames() {
    std::map<std::string, const TModuleReport*> first;
    for (const TModuleReport& module : fModules) {
        if (!module.loadable) continue;
        for (const TRegisteredProvider& provider : module.providers) {
            const auto known = first.insert(std::make_pair(provider.name, &module));
            if (known.second || known.first->second == &module) continue;
            Add(TFinding::kWarning, FileName(module.registrationPath),
                "provider " + provider.name + " is registered by " + FileName(known.first->second->registrationPath) +
                    " too: the module loaded first (" + known.first->second->file + ") serves it",
                false);
        }
    }
}

void TModuleSurvey::SurveyModule(TModuleReport& module, const boost::shared_ptr<ICIMNamespace>& scratch) {
    module.elf = InspectElf(module.path);
    module.loadable = module.elf.loadable;
    module.problem = module.elf.problem;
    // What cannot be loaded is reported as such; its documents do not matter.
    if (!module.loadable) return;
    try {
        module.registrationPath = TOSSpecific::BuildRegistrationPath(module.path, kPluginKind);
        module.classPath = TOSSpecific::BuildSpecificationPath(module.path, kPluginKind);
    } catch (const TZENTAException& failure) {
        Add(TFinding::kError, module.file, failure.GetMessage(), false);
        return;
    }
    if (!Exists(module.classPath)) module.classPath.clear();
    if (!Exists(module.registrationPath)) {
        module.registrationPath.clear();
        Add(TFinding::kWarning, module.file,
            module.classPath.empty()
                ? "no registration document and no class document beside it: it serves nothing"
                : "no registration document beside it: it becomes one provider with an empty name that serves "
                  "every class of " + FileName(module.classPath),
            true);
        return;
    }
    ReadRegistration(module, scratch);
}

void TModuleSurvey::ReadRegistration(TModuleReport& module, const boost::shared_ptr<ICIMNamespace>& scratch) {
    const std::string file = FileName(module.registrationPath);
    std::vector<boost::shared_ptr<ICIMInstance> > instances;
    try {
        instances = TNamespacePopulator::PopulateFromRegXMLFile(scratch, module.registrationPath);
    } catch (const TZENTAException& failure) {
        // The message names the file and line already.
        Add(TFinding::kError, file, failure.GetMessage(), false);
        return;
    }
    bool moduleSeen = false;
    std::vector<TCapability> beforeAnyProvider;
    for (const auto& instance : instances) {
        const std::string className = instance->GetClass(TCIMContext())->GetName(TCIMContext());
        if (className == "PG_ProviderModule") {
            module.moduleName = ReadString(*instance, "Name");
            moduleSeen = true;
            continue;
        }
        const bool isProvider = className == "PG_Provider";
        if (!isProvider && className != "PG_ProviderCapabilities") continue;
        const std::string owner = ReadString(*instance, "ProviderModuleName");
        const std::string what = isProvider ? "PG_Provider " + ReadString(*instance, "Name")
                                            : "the capability for class " + ReadString(*instance, "ClassName");
        if (owner != module.moduleName) {
            Add(TFinding::kWarning, file,
                what + " names the module \"" + owner + "\", not \"" + module.moduleName + "\"" +
                    (moduleSeen ? "" : " (it stands before the PG_ProviderModule instance)") + ": it is ignored",
                true);
            continue;
        }
        if (isProvider) {
            module.providers.push_back(TRegisteredProvider{ReadString(*instance, "Name"), {}});
            continue;
        }
        TCapability capability{ReadString(*instance, "ProviderName"), ReadString(*instance, "ClassName"),
                               ReadString(*instance, "Namespaces"), ReadIntegers(*instance, "ProviderType")};
        if (module.providers.empty()) {
            beforeAnyProvider.push_back(capability);
            continue;
        }
        TRegisteredProvider& provider = module.providers.back();
        if (capability.providerName != provider.name) {
            Add(TFinding::kWarning, file,
                what + " names the provider " + capability.providerName + " but follows PG_Provider " + provider.name +
                    ": it is filed under " + provider.name +
                    " (a capability belongs to the PG_Provider instance above it)",
                true);
        }
        provider.capabilities.push_back(capability);
    }
    if (!moduleSeen) {
        Add(TFinding::kWarning, file, "no PG_ProviderModule instance: the module has no name", true);
    }
    if (module.providers.empty() && !beforeAnyProvider.empty()) {
        Add(TFinding::kWarning, file, "capabilities without a PG_Provider instance: they are filed under a provider with an empty name", true);
        module.providers.push_back(TRegisteredProvider{"", beforeAnyProvider});
    } else {
        for (const TCapability& capability : beforeAnyProvider) {
            Add(TFinding::kWarning, file,
                "the capability for class " + capability.className + " stands before any PG_Provider instance: it is ignored",
                true);
        }
    }
    std::set<std::string> names;
    for (const TRegisteredProvider& provider : module.providers) {
        if (!names.insert(provider.name).second) {
            Add(TFinding::kWarning, file, "provider " + provider.name + " is registered twice: the first one counts", true);
        }
    }
}

void TModuleSurvey::CheckFactories(const TModuleReport& module) {
    if (!module.elf.symbolsRead) return;
    std::vector<std::string> exportedProviders;
    for (const std::string& factory : module.elf.factories) {
        const std::string provider = ProviderPartOf(factory);
        if (provider != kGenericPrefix) exportedProviders.push_back(provider);
    }
    for (const TRegisteredProvider& provider : module.providers) {
        if (provider.name.empty()) continue;
        const std::set<std::string> kinds = KindsOf(module.elf, provider.name);
        if (kinds.empty()) {
            std::string text = "provider " + provider.name + ": the module exports no factory for it (" + provider.name +
                               "_Create_InstanceMI, " + provider.name + "_Create_MethodMI, ... or _Generic_Create_<Kind>MI)";
            const std::string near = NearestName(provider.name, exportedProviders);
            if (!near.empty()) text += "; did you mean " + near + "? (it exports factories for " + near + ")";
            Add(TFinding::kError, module.file, text, true);
            continue;
        }
        for (const TCapability& capability : provider.capabilities) {
            for (const TProviderType& type : kProviderTypes) {
                const bool declared = std::find(capability.providerTypes.begin(), capability.providerTypes.end(),
                                                type.value) != capability.providerTypes.end();
                if (!declared || kinds.count(type.kind)) continue;
                Add(TFinding::kError, module.file,
                    "provider " + provider.name + ": the capability for class " + capability.className +
                        " declares ProviderType " + std::to_string(type.value) + " (" + type.kind +
                        "), but the module exports neither " + provider.name + "_Create_" + type.kind +
                        "MI nor _Generic_Create_" + type.kind + "MI",
                    true);
            }
        }
    }
}

void TModuleSurvey::CheckStrayFiles(const std::string& directory) {
    std::set<std::string> moduleStems;
    for (const TModuleReport& module : fModules) {
        moduleStems.insert(module.file.substr(0, module.file.size() - std::strlen(kModuleSuffix)));
    }
    std::vector<std::string> stems(moduleStems.begin(), moduleStems.end());
    std::set<std::string> otherLibraries;
    std::vector<std::pair<std::string, std::string> > documents;  // file, stem
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (EndsWith(name, ".so") && !EndsWith(name, kModuleSuffix)) otherLibraries.insert(name);
        for (const char* suffix : kDocumentSuffixes) {
            if (EndsWith(name, suffix) && name.size() > std::strlen(suffix)) {
                documents.push_back(std::make_pair(name, name.substr(0, name.size() - std::strlen(suffix))));
            }
        }
    }
    for (const auto& document : documents) {
        const std::string& stem = document.second;
        if (moduleStems.count(stem)) continue;
        std::string text = "there is no module " + stem + kModuleSuffix + " beside it: nothing reads it";
        for (const std::string& library : {"lib" + stem + ".so", stem + ".so"}) {
            if (otherLibraries.count(library)) {
                text += "; " + library + " is named as other servers name modules: this host loads NAME" + kModuleSuffix +
                        ", so rename it " + stem + kModuleSuffix;
            }
        }
        const std::string near = NearestName(stem, stems);
        if (!near.empty()) text += "; did you mean the module " + near + kModuleSuffix + "?";
        Add(TFinding::kWarning, document.first, text, true);
    }
}

std::set<std::string> TModuleSurvey::GetLeftOut() const {
    std::set<std::string> leftOut;
    for (const TModuleReport& module : fModules) {
        if (!module.loadable) leftOut.insert(module.file);
    }
    return leftOut;
}

TProviderIndex TModuleSurvey::BuildIndex() const {
    TProviderIndex index;
    for (const TModuleReport& module : fModules) {
        if (!module.loadable) continue;
        for (const TRegisteredProvider& provider : module.providers) {
            TProviderEntry entry;
            entry.module = module.file;
            entry.kindsKnown = module.elf.symbolsRead;
            entry.kinds = KindsOf(module.elf, provider.name);
            // Discovery keeps the first provider of a name.
            if (index.Find(provider.name) == nullptr) index.Add(provider.name, entry);
        }
    }
    return index;
}
