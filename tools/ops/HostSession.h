// One run of the host, in-process: the core logger (through the log
// relay), the repository filled with the standard documents, the namespace
// manager over it, the namespace provider libraries and the CMPI namespace
// with its provider modules, attached to the manager.
#ifndef ZENTA_OPS_HOSTSESSION_H
#define ZENTA_OPS_HOSTSESSION_H

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ICIMNamespace.h"
#include "LogRelay.h"
#include "TNamespaceManager.h"
#include "cmpiNspHostApi.h"

struct TSessionOptions {
    // The private directory the CMPI library is opened from (through the
    // link to it placed there, see ProviderStaging.h); empty: the library
    // is opened where it lies and serves the modules beside it.
    std::string stagingDirectory;
    // The directory the staging directory stands for, as log lines show it.
    std::string providerDirectory;
    int logLevel = -1;     // < 0: ZENTA_LOG_LEVEL or the logger's default
    std::string logFile;   // empty: ZENTA_LOG_FILE or stderr
    // Schema directories read into the repository before the modules.
    std::vector<std::string> schemaDirectories;
};

class THostSession {
public:
    explicit THostSession(const TSessionOptions& options);
    ~THostSession();

    // The CMPI namespace: the one requests go to.
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> GetNamespace() const { return fCmpiNamespace; }
    boost::shared_ptr<NVURZENTA20::TNamespaceManager> GetManager() const { return fManager; }
    TLogRelay& GetLog() { return fLog; }

    // Releases the CMPI records the library handed to providers while the
    // request ran. Call it once the answer has been copied out.
    void EndRequest();

    // <directory of the running executable>/../lib
    static std::string DefaultLibraryDirectory();

private:
    void* OpenNamespaceProviderLibrary(const std::string& path);
    void AllocateCmpiNamespace();

    TLogRelay fLog;
    TZentaCmpiClearInstances fClearInstances;
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> fRepository;
    boost::shared_ptr<NVURZENTA20::TNamespaceManager> fManager;
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> fUpcall;  // the manager, as the library reads it
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> fCmpiNamespace;

    THostSession(const THostSession&) = delete;
    THostSession& operator=(const THostSession&) = delete;
};

#endif
