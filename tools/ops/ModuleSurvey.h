// A look at a provider directory before any host code loads it: which
// modules lie there and can be loaded, what their registrations say (read
// the way discovery reads them), which factories each exports, and every
// mistake of the kind discovery passes over in silence. The tool serves
// only the loadable modules, warns about the silent mistakes when a
// request runs, and `zenta check` reports all of it.
#ifndef ZENTA_OPS_MODULESURVEY_H
#define ZENTA_OPS_MODULESURVEY_H

#include <set>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ElfInspector.h"
#include "ProviderIndex.h"
#include "ZentaTypes.h"

struct TFinding {
    enum ESeverity { kError, kWarning };

    ESeverity severity = kError;
    std::string file;  // the file's name in the served directory
    std::string text;
    // Discovery skips it without a word: worth a warning on every request.
    bool silent = false;

    // "FILE: text" ("text" for a finding that names its file itself), the
    // file named by its path in `directory`.
    std::string FormatIn(const std::string& directory) const;
};

struct TCapability {
    std::string providerName;  // as the capability names it
    std::string className;
    std::string namespaces;
    std::vector<int> providerTypes;  // 2 instance, 3 association, 4 indication, 5 method
};

// A provider as discovery files it: its capabilities are those that stand
// after its PG_Provider instance, whatever provider they name.
struct TRegisteredProvider {
    std::string name;
    std::vector<TCapability> capabilities;
};

struct TModuleReport {
    std::string file;              // Hello.cmpi.so
    std::string path;              // in the served directory
    std::string registrationPath;  // empty when there is none
    std::string classPath;         // empty when there is none
    bool loadable = false;
    std::string problem;  // why it cannot be loaded
    std::string moduleName;
    std::vector<TRegisteredProvider> providers;  // in the order discovery files them
    TElfFacts elf;
};

class TModuleSurvey {
public:
    // Looks at every module of `directory` (probing each in a child process
    // when `probe`) and reads its registration.
    void Run(const std::string& directory, bool probe);

    const std::vector<TModuleReport>& GetModules() const { return fModules; }
    const std::vector<TFinding>& GetFindings() const { return fFindings; }
    // File names of the modules that cannot be loaded.
    std::set<std::string> GetLeftOut() const;
    TProviderIndex BuildIndex() const;

private:
    void SurveyModule(TModuleReport& module, const boost::shared_ptr<NVURZENTA20::ICIMNamespace>& scratch);
    void ReadRegistration(TModuleReport& module, const boost::shared_ptr<NVURZENTA20::ICIMNamespace>& scratch);
    void CheckFactories(const TModuleReport& module);
    void CheckStrayFiles(const std::string& directory);
    void CheckSharedProviderNames();
    void Add(TFinding::ESeverity severity, const std::string& file, const std::string& text, bool silent);

    std::vector<TModuleReport> fModules;
    std::vector<TFinding> fFindings;
};

// The name among `candidates` nearest to `name` (by edit distance, any
// case), when it is near enough to be a likely typo; "" otherwise.
std::string NearestName(const std::string& name, const std::vector<std::string>& candidates);

#endif
