#include "Check.h"

#include <cstdio>
#include <set>

#include <nlohmann/json.hpp>

#include "ClassFindings.h"
#include "ICIMClass.h"
#include "INamespaceProvider.h"
#include "INamespaceProviderManager.h"
#include "TNamespacePopulator.h"
#include "TRootObject.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;

namespace {

// A trial request that does not answer in this time counts as hung.
const int kDefaultTrialSeconds = 30;

class TStringSink : public IByteSink {
public:
    void Write(const char* data, std::size_t size) override { text.append(data, size); }
    std::string text;
};

TFinding Problem(TFinding::ESeverity severity, const std::string& file, const std::string& text) {
    TFinding finding;
    finding.severity = severity;
    finding.file = file;
    finding.text = text;
    return finding;
}

// The classes as the host would define them: the standard documents, the
// schema and every loadable module's class document, in the order
// discovery reads them.
boost::shared_ptr<ICIMNamespace> ReadClasses(const TServeOptions& options, const TModuleSurvey& survey,
                                             std::vector<TFinding>& findings) {
    boost::shared_ptr<ICIMNamespace> classes =
        TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("inmem")->AllocateNamespace(TCIMContext(), true);
    try {
        TNamespacePopulator::PopulateFromSchemaDirectories(classes, options.schemaDirectories);
    } catch (const TZENTAException& failure) {
        findings.push_back(Problem(TFinding::kError, "", failure.GetMessage()));
    }
    for (const TModuleReport& module : survey.GetModules()) {
        if (!module.loadable || module.classPath.empty()) continue;
        try {
            TNamespacePopulator::PopulateFromXMLFile(classes, module.classPath);
        } catch (const TZENTAException& failure) {
            // The reader's message names the file and line.
            findings.push_back(Problem(TFinding::kError, "", failure.GetMessage()));
        }
    }
    return classes;
}

class TTrials {
public:
    TTrials(const TWorkerSetup& setup, int timeoutSeconds, std::vector<TFinding>& findings)
        : fWorker(setup), fTimeout(timeoutSeconds > 0 ? timeoutSeconds : kDefaultTrialSeconds), fFindings(findings) {}

    // Enumerates the class's instance paths, then gets the first one.
    void Try(const TClassClaim& claim) {
        TRequest names;
        names.verb = EVerb::kEnumerateInstanceNames;
        names.format = EFormat::kJson;
        names.className = claim.className;
        std::string answer;
        if (!Run(claim, names, answer)) return;
        const nlohmann::json paths = nlohmann::json::parse(answer, nullptr, false).value("paths", nlohmann::json::array());
        if (paths.empty()) return;
        const std::string first = paths.at(0).get<std::string>();
        if (first.find('.') == std::string::npos) {
            Report(claim, "the instances of " + claim.className + " have no key values: the provider sets none of "
                          "the key properties");
            return;
        }
        TRequest get;
        get.verb = EVerb::kGetInstance;
        get.format = EFormat::kJson;
        get.path = first;
        if (!Run(claim, get, answer)) return;
        const std::string path = nlohmann::json::parse(answer, nullptr, false)["instance"].value("path", "");
        if (path != first) {
            Report(claim, "getting " + first + " answers an instance whose path is " + path +
                              ": getInstance and enumInstances set different key properties");
        }
    }

private:
    bool Run(const TClassClaim& claim, const TRequest& request, std::string& answer) {
        TStringSink sink;
        const TOutcome outcome = fWorker.Run(request, sink, fTimeout);
        answer = sink.text;
        if (outcome.Succeeded()) return true;
        Report(claim, "trying \"" + request.Describe() + "\": " + outcome.Describe(request.Describe(), fTimeout));
        return false;
    }

    void Report(const TClassClaim& claim, const std::string& text) {
        fFindings.push_back(Problem(TFinding::kError, claim.module, text));
    }

    TWorker fWorker;
    int fTimeout;
    std::vector<TFinding>& fFindings;
};

void TryServedClasses(const TServedDirectory& served, ICIMNamespace& classes, int timeoutSeconds,
                      std::vector<TFinding>& findings) {
    TWorkerSetup setup = served.GetWorkerSetup();
    // The report says it all; the worker need not say it again.
    setup.warnings.clear();
    setup.claims.clear();
    TTrials trials(setup, timeoutSeconds, findings);
    std::set<std::string> tried;
    for (const TClassClaim& claim : served.GetWorkerSetup().claims) {
        const boost::shared_ptr<ICIMClass> cls = classes.GetClass(claim.className, TCIMContext());
        if (!cls || cls->IsAbstract(TCIMContext()) || !tried.insert(cls->GetName(TCIMContext())).second) continue;
        trials.Try(claim);
    }
}

// Prints the report; the number of errors.
int Print(const std::vector<TFinding>& findings, const TServedDirectory& served, bool json) {
    int errors = 0;
    for (const TFinding& finding : findings) errors += finding.severity == TFinding::kError;
    const int warnings = static_cast<int>(findings.size()) - errors;
    if (json) {
        nlohmann::ordered_json report;
        report["directory"] = served.GetDirectory();
        report["errors"] = errors;
        report["warnings"] = warnings;
        report["findings"] = nlohmann::ordered_json::array();
        for (const TFinding& finding : findings) {
            report["findings"].push_back({{"severity", finding.severity == TFinding::kError ? "error" : "warning"},
                                          {"file", finding.file},
                                          {"problem", finding.text}});
        }
        std::printf("%s\n", report.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace).c_str());
        return errors;
    }
    for (const TFinding& finding : findings) {
        const char* severity = finding.severity == TFinding::kError ? "error" : "warning";
        if (finding.file.empty()) {
            std::printf("%s: %s\n", severity, finding.text.c_str());
        } else {
            std::printf("%s: %s: %s\n", finding.file.c_str(), severity, finding.text.c_str());
        }
    }
    std::size_t providers = 0;
    for (const TModuleReport& module : served.GetSurvey().GetModules()) providers += module.providers.size();
    std::printf("zenta check: %s: %zu modules, %zu providers: %s\n", served.GetDirectory().c_str(),
                served.GetSurvey().GetModules().size(), providers,
                findings.empty() ? "no problems found"
                                 : (std::to_string(errors) + " errors, " + std::to_string(warnings) + " warnings").c_str());
    return errors;
}

}  // namespace

int RunCheck(const TServeOptions& options, int timeoutSeconds, bool json) {
    try {
        // Left-out modules are among the survey's findings already.
        TServedDirectory served(options, [](const std::string&) {});
        std::vector<TFinding> findings = served.GetSurvey().GetFindings();
        const boost::shared_ptr<ICIMNamespace> classes = ReadClasses(options, served.GetSurvey(), findings);
        const TWorkerSetup& setup = served.GetWorkerSetup();
        const std::vector<TFinding> claimed = CheckClaims(setup.claims, *classes, setup.providers);
        findings.insert(findings.end(), claimed.begin(), claimed.end());
        TryServedClasses(served, *classes, timeoutSeconds, findings);
        return Print(findings, served, json) > 0 ? 1 : 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "zenta: %s\n", failure.what());
        return 1;
    }
}
