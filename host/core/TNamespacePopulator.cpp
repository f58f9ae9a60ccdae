// Entry points of document reading: a document is read into a plan by the
// reader of its format, then checked and defined by the one definer, with
// the registration guards and the remembered origins around it.
#include "TNamespacePopulator.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "CIMNames.h"
#include "ICoreLogger.h"
#include "TCIMXMLReader.h"
#include "TDocumentDefiner.h"
#include "TDocumentReading.h"
#include "TRootObject.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

void RequireNamespace(const boost::shared_ptr<ICIMNamespace>& ns, const std::string& path) {
    if (!ns) throw TZENTAException(TZENTAStatusCode::kInvalidNamespace, "no namespace to read " + path + " into");
}

// The plan of the document at `path`; false when there is no file.
bool ReadPlanFromFile(const std::string& path, TDocumentPlan& plan) {
    const TDocumentLimits& limits = DefaultDocumentLimits();
    std::string text;
    if (!ReadDocumentFile(path, limits.maxFileBytes, text)) return false;
    plan = ReadDocumentPlan(path, std::move(text), limits);
    return true;
}

std::vector<boost::shared_ptr<ICIMClass> > PopulateClasses(const boost::shared_ptr<ICIMNamespace>& ns,
                                                           const std::string& path, EDocumentRole role) {
    return GuardDocumentReading(path, [&] {
        TDocumentPlan plan;
        if (!ReadPlanFromFile(path, plan)) return std::vector<boost::shared_ptr<ICIMClass> >();
        RequireNamespace(ns, path);
        return DefineClasses(ns, plan, role);
    });
}

// --- registration guards ---

struct TRegisteredName {
    const char* className;
    const char* property;
};
const TRegisteredName kRegisteredNames[] = {
    {"PG_ProviderModule", "Name"},          {"PG_Provider", "Name"},
    {"PG_Provider", "ProviderModuleName"},  {"PG_ProviderCapabilities", "ProviderName"},
    {"PG_ProviderCapabilities", "ProviderModuleName"}};

bool IsRegisteredName(const TInstancePlan& instance, const TPropertyValuePlan& property) {
    for (const auto& name : kRegisteredNames) {
        if (SameCIMName(instance.className, name.className) && SameCIMName(property.name, name.property)) {
            return true;
        }
    }
    return false;
}

void CheckNameLength(const TRawValue& value, const std::string& what) {
    if (value.text.size() > TNamespacePopulator::kMaxRegisteredNameLength) {
        FailAt(value.at, what + " has " + std::to_string(value.text.size()) + " bytes; at most " +
                             std::to_string(TNamespacePopulator::kMaxRegisteredNameLength) + " are allowed");
    }
    for (const auto& element : value.elements) CheckNameLength(element, what);
}

void CheckRegisteredNames(const TDocumentPlan& plan) {
    for (const auto& instance : plan.instances) {
        for (const auto& property : instance.properties) {
            if (IsRegisteredName(instance, property)) {
                CheckNameLength(property.value, instance.className + "." + property.name);
            }
        }
    }
}

void WarnOfSharedProviderNames(const boost::shared_ptr<ICIMNamespace>& ns, const TDocumentPlan& plan) {
    for (const auto& instance : plan.instances) {
        if (!SameCIMName(instance.className, "PG_Provider")) continue;
        for (const auto& property : instance.properties) {
            if (!SameCIMName(property.name, "Name") || property.value.text.empty()) continue;
            const TSourceLocation earlier = TDocumentMemory::RememberProvider(ns, property.value.text, property.at);
            if (!earlier.file) continue;
            TRootObject::GetCoreLogger()->Log(
                ICoreLogger::kWarning, property.at.ToString() + ": provider " + property.value.text +
                                           " is registered by " + earlier.ToString() +
                                           " as well; the classes of both modules reach one module's code");
        }
    }
}

bool EndsWith(const std::string& text, const char* suffix) {
    const std::string tail(suffix);
    return text.size() >= tail.size() && SameCIMName(text.substr(text.size() - tail.size()), tail);
}

std::vector<std::string> SchemaFiles(const std::string& directory) {
    namespace fs = std::filesystem;
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entries(directory, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        const std::string name = entries->path().filename().string();
        if (EndsWith(name, ".mof") || EndsWith(name, ".xml")) names.push_back(name);
    }
    if (error) {
        throw TZENTAException(TZENTAStatusCode::kIOError,
                              "schema directory " + directory + " cannot be read: " + error.message());
    }
    std::sort(names.begin(), names.end());
    for (auto& name : names) name = (fs::path(directory) / name).string();
    return names;
}

}  // namespace

bool IsMOFDocument(const std::string& path) { return EndsWith(path, ".mof"); }

TDocumentPlan ReadDocumentPlan(const std::string& path, std::string text, const TDocumentLimits& limits,
                               const TMOFFileLoader& loader) {
    if (IsMOFDocument(path)) return ReadMOFPlan(path, text, limits, loader);
    return ReadCIMXMLPlan(path, std::move(text), limits);
}

std::vector<boost::shared_ptr<ICIMClass> > TNamespacePopulator::PopulateFromXMLFile(boost::shared_ptr<ICIMNamespace> ns,
                                                                                   std::string path) {
    return PopulateClasses(ns, path, EDocumentRole::kModule);
}

std::vector<boost::shared_ptr<ICIMClass> > TNamespacePopulator::PopulateFromSharedFile(
    boost::shared_ptr<ICIMNamespace> ns, std::string path) {
    return PopulateClasses(ns, path, EDocumentRole::kShared);
}

std::vector<boost::shared_ptr<ICIMInstance> > TNamespacePopulator::PopulateFromRegXMLFile(
    boost::shared_ptr<ICIMNamespace> ns, std::string path) {
    return GuardDocumentReading(path, [&] {
        TDocumentPlan plan;
        if (!ReadPlanFromFile(path, plan)) return std::vector<boost::shared_ptr<ICIMInstance> >();
        RequireNamespace(ns, path);
        CheckRegisteredNames(plan);
        std::vector<boost::shared_ptr<ICIMInstance> > instances = MakeInstances(ns, plan);
        WarnOfSharedProviderNames(ns, plan);
        return instances;
    });
}

std::vector<std::string> TNamespacePopulator::PopulateFromSchemaDirectories(
    boost::shared_ptr<ICIMNamespace> ns, const std::vector<std::string>& directories) {
    std::vector<std::string> failures;
    const auto attempt = [&](const std::function<void()>& read) {
        try {
            read();
        } catch (const TZENTAException& e) {
            failures.push_back(e.GetMessage());
            TRootObject::GetCoreLogger()->Log(ICoreLogger::kError, "schema: " + e.GetMessage());
        }
    };
    for (const auto& directory : directories) {
        std::vector<std::string> files;
        attempt([&] { files = GuardDocumentReading(directory, [&] { return SchemaFiles(directory); }); });
        for (const auto& file : files) attempt([&] { PopulateFromSharedFile(ns, file); });
    }
    return failures;
}

}  // namespace NVURZENTA20
