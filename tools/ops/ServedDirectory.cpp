#include "ServedDirectory.h"

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

const char kCmpiLibrary[] = "libcmpi.nsp.so";

}  // namespace

std::vector<std::string> SchemaPathFromEnvironment() {
    std::vector<std::string> directories;
    const char* path = std::getenv("ZENTA_SCHEMA_PATH");
    std::string rest = path != nullptr ? path : "";
    while (!rest.empty()) {
        const std::string::size_type colon = rest.find(':');
        const std::string entry = rest.substr(0, colon);
        if (!entry.empty()) directories.push_back(entry);
        rest = colon == std::string::npos ? std::string() : rest.substr(colon + 1);
    }
    return directories;
}

TServedDirectory::TServedDirectory(const TServeOptions& options, const TReport& report) {
    const std::string libraries = THostSession::DefaultLibraryDirectory();
    fDirectory = options.providerDirectory.empty()
                     ? libraries
                     : fs::absolute(options.providerDirectory).lexically_normal().string();
    fSurvey.Run(fDirectory, true);
    for (const TModuleReport& module : fSurvey.GetModules()) {
        if (!module.loadable) report(fDirectory + "/" + module.file + ": left out: " + module.problem);
    }
    fStaging.reset(new TProviderStaging(fDirectory, libraries + "/" + kCmpiLibrary, fSurvey.GetLeftOut()));

    fSetup.session.stagingDirectory = fStaging->GetDirectory();
    fSetup.session.providerDirectory = fDirectory;
    fSetup.session.logLevel = options.logLevel;
    fSetup.session.logFile = options.logFile;
    fSetup.session.schemaDirectories = options.schemaDirectories;
    fSetup.providers = fSurvey.BuildIndex();
    fSetup.servedNamespace = options.servedNamespace;
    fSetup.claims = ClaimsOf(fSurvey);
    for (const TFinding& finding : fSurvey.GetFindings()) {
        if (finding.silent) fSetup.warnings.push_back(finding.FormatIn(fDirectory));
    }
}
