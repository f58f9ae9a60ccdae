#include "ClassFindings.h"

#include <filesystem>

#include <nlohmann/json.hpp>

#include "Collect.h"
#include "ICIMClass.h"
#include "ICIMMethodDecl.h"
#include "ICIMNamespace.h"

using namespace NVURZENTA20;

namespace {

std::vector<std::string> AllClassNames(ICIMNamespace& ns) {
    std::vector<std::string> names;
    for (const auto& cls : ClassesOf(ns, true)) names.push_back(cls->GetName(TCIMContext()));
    return names;
}

bool HasKey(const ICIMClass& cls) {
    bool found = false;
    cls.EnumerateKeyNames(
        [&found](const std::string* key) {
            found = key != nullptr;
            return !found;
        },
        TCIMContext());
    return found;
}

bool HasMethods(const ICIMClass& cls) {
    bool found = false;
    cls.EnumerateMethodDecls(
        [&found](boost::shared_ptr<ICIMMethodDecl>) {
            found = true;
            return false;
        },
        TCIMContext());
    return found;
}

TFinding Finding(TFinding::ESeverity severity, const TClassClaim& claim, const std::string& text, bool silent) {
    TFinding finding;
    finding.severity = severity;
    finding.file = claim.document;
    finding.text = "provider " + claim.provider + ": " + text;
    finding.silent = silent;
    return finding;
}

}  // namespace

std::vector<TClassClaim> ClaimsOf(const TModuleSurvey& survey) {
    std::vector<TClassClaim> claims;
    for (const TModuleReport& module : survey.GetModules()) {
        if (!module.loadable || module.registrationPath.empty()) continue;
        const std::string document = std::filesystem::path(module.registrationPath).filename().string();
        for (const TRegisteredProvider& provider : module.providers) {
            for (const TCapability& capability : provider.capabilities) {
                claims.push_back(TClassClaim{module.file, document, provider.name, capability.className});
            }
        }
    }
    return claims;
}

std::vector<TFinding> CheckClaims(const std::vector<TClassClaim>& claims, ICIMNamespace& ns,
                                  const TProviderIndex& providers) {
    std::vector<TFinding> findings;
    std::vector<std::string> known;
    for (const TClassClaim& claim : claims) {
        const boost::shared_ptr<ICIMClass> cls =
            claim.className.empty() ? boost::shared_ptr<ICIMClass>() : ns.GetClass(claim.className, TCIMContext());
        if (!cls) {
            if (known.empty()) known = AllClassNames(ns);
            std::string text = "the class \"" + claim.className + "\" is defined by no document: it is not served";
            const std::string near = NearestName(claim.className, known);
            if (!near.empty()) text += "; did you mean " + near + "?";
            findings.push_back(Finding(TFinding::kError, claim, text, true));
            continue;
        }
        const std::string className = cls->GetName(TCIMContext());
        if (!cls->IsAbstract(TCIMContext()) && !HasKey(*cls)) {
            findings.push_back(Finding(TFinding::kWarning, claim,
                                       "the class " + className + " has no key property: its instances have no path to "
                                       "get them by",
                                       false));
        }
        if (HasMethods(*cls) && !providers.Has(claim.provider, "Method")) {
            findings.push_back(Finding(TFinding::kWarning, claim,
                                       "the class " + className + " declares methods, but the provider has no method "
                                       "MI (its module exports neither " + claim.provider +
                                           "_Create_MethodMI nor _Generic_Create_MethodMI): calls to them fail",
                                       true));
        }
        if (cls->IsAssociation(TCIMContext()) && providers.Has(claim.provider, "Association") &&
            !providers.Has(claim.provider, "Instance")) {
            findings.push_back(Finding(TFinding::kError, claim,
                                       "the association " + className + " is served only through an association MI, "
                                       "which this host never calls: give the provider an instance MI (" +
                                           claim.provider + "_Create_InstanceMI) that enumerates the association's "
                                           "instances",
                                       true));
        }
    }
    return findings;
}

std::string ClaimsToJson(const std::vector<TClassClaim>& claims) {
    nlohmann::json array = nlohmann::json::array();
    for (const TClassClaim& claim : claims) array.push_back({claim.module, claim.document, claim.provider, claim.className});
    return array.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::vector<TClassClaim> ClaimsFromJson(const std::string& text) {
    std::vector<TClassClaim> claims;
    for (const nlohmann::json& entry : nlohmann::json::parse(text)) {
        claims.push_back(TClassClaim{entry.at(0).get<std::string>(), entry.at(1).get<std::string>(),
                                     entry.at(2).get<std::string>(), entry.at(3).get<std::string>()});
    }
    return claims;
}
