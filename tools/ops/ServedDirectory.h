// The provider directory a host serves, made ready before any host code
// sees it: the modules are surveyed (each checked in a child process; one
// that would take the host down is left out with a one-line reason), and a
// private staging directory at a short path mirrors the rest for the
// library to load. Both programs (zenta and zentad) start their workers
// from here.
#ifndef ZENTA_OPS_SERVEDDIRECTORY_H
#define ZENTA_OPS_SERVEDDIRECTORY_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ModuleSurvey.h"
#include "ProviderStaging.h"
#include "Worker.h"

struct TServeOptions {
    std::string providerDirectory;  // empty: the bundled modules beside the libraries
    std::vector<std::string> schemaDirectories;  // read before the modules
    int logLevel = -1;
    std::string logFile;
    std::string servedNamespace = "root/cimv2";
};

// ZENTA_SCHEMA_PATH: directories separated by ":"; empty entries are skipped.
std::vector<std::string> SchemaPathFromEnvironment();

class TServedDirectory {
public:
    typedef std::function<void(const std::string&)> TReport;

    // Surveys and stages the directory; each left-out module is reported
    // through `report`, one line each.
    TServedDirectory(const TServeOptions& options, const TReport& report);

    const TWorkerSetup& GetWorkerSetup() const { return fSetup; }
    const TModuleSurvey& GetSurvey() const { return fSurvey; }
    // The directory served, as the user named it (absolute).
    const std::string& GetDirectory() const { return fDirectory; }

private:
    std::string fDirectory;
    TModuleSurvey fSurvey;
    std::unique_ptr<TProviderStaging> fStaging;
    TWorkerSetup fSetup;
};

#endif
