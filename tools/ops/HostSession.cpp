#include "HostSession.h"

#include <dlfcn.h>
#include <limits.h>

#include <cstdint>
#include <filesystem>

#include "INamespaceProvider.h"
#include "TNamespacePopulator.h"
#include "TRootObject.h"
#include "ToolError.h"

using namespace NVURZENTA20;
namespace fs = std::filesystem;

namespace {

const char kRepositoryProvider[] = "inmem";
const char kCmpiProvider[] = "cmpi";
const char kInmemLibrary[] = "libinmem.nsp.so";
const char kCmpiLibrary[] = "libcmpi.nsp.so";
const char kCoreLibrary[] = "libzentacore.so";

boost::shared_ptr<INamespaceProvider> RegisteredProvider(const std::string& name, const std::string& library) {
    boost::shared_ptr<INamespaceProvider> provider =
        TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider(name);
    if (!provider) {
        throw TToolError(library + " did not register the namespace provider \"" + name + "\" (see the log)");
    }
    return provider;
}

// The library reads "repository" and "upcall" as the address of a
// boost::shared_ptr<ICIMNamespace> in the caller's memory.
TCIMValue AddressOf(const boost::shared_ptr<ICIMNamespace>& ns) {
    return TCIMValue(static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(&ns)));
}

}  // namespace

// The dynamic loader found libzentacore.so through the tool's RUNPATH
// ($ORIGIN/../lib in a build tree, $ORIGIN/../lib/zenta once installed):
// its directory holds the namespace provider libraries too. Asking the
// loader keeps the libraries opened here consistent with the core library
// already mapped, and states the layout in one place only, the RUNPATH.
std::string THostSession::DefaultLibraryDirectory() {
    void* core = dlopen(kCoreLibrary, RTLD_LAZY | RTLD_NOLOAD);
    if (core == nullptr) throw TToolError(std::string("cannot locate the loaded ") + kCoreLibrary);
    char origin[PATH_MAX];
    const int failed = dlinfo(core, RTLD_DI_ORIGIN, origin);
    dlclose(core);
    if (failed != 0) throw TToolError(std::string("cannot locate the directory of ") + kCoreLibrary);
    // The origin is the tool's real directory followed by the RUNPATH's
    // "../lib...": no link can lie under "..", so folding it is exact.
    return fs::path(origin).lexically_normal().string();
}

THostSession::THostSession(const TSessionOptions& options)
    : fLog(options.logLevel, options.logFile), fClearInstances(nullptr) {
    const std::string libraries = DefaultLibraryDirectory();
    OpenNamespaceProviderLibrary(libraries + "/" + kInmemLibrary);
    std::string cmpiLibrary = libraries + "/" + kCmpiLibrary;
    if (!options.stagingDirectory.empty()) {
        if (!options.providerDirectory.empty()) {
            fLog.AddPathAlias(options.stagingDirectory, fs::absolute(options.providerDirectory).lexically_normal().string());
        }
        cmpiLibrary = options.stagingDirectory + "/" + kCmpiLibrary;
    }
    void* cmpi = OpenNamespaceProviderLibrary(cmpiLibrary);
    fClearInstances = reinterpret_cast<TZentaCmpiClearInstances>(dlsym(cmpi, ZENTA_CMPI_CLEAR_INSTANCES_SYMBOL));
    if (fClearInstances == nullptr) {
        throw TToolError(cmpiLibrary + " does not export " + ZENTA_CMPI_CLEAR_INSTANCES_SYMBOL);
    }

    fRepository = RegisteredProvider(kRepositoryProvider, kInmemLibrary)->AllocateNamespace(TCIMContext(), true);
    TNamespacePopulator::PopulateFromSchemaDirectories(fRepository, options.schemaDirectories);
    fManager = TNamespaceManager::Create(fRepository);
    fUpcall = fManager;
    AllocateCmpiNamespace();
    fLog.Collect();
}

THostSession::~THostSession() {
    try {
        EndRequest();
        if (fCmpiNamespace) {
            // The CMPI namespace's ClearInstances makes its namespace
            // provider let go of it; the manager and this session hold the
            // rest.
            fCmpiNamespace->ClearInstances();
            fManager->DetachProviderNamespace(kCmpiProvider);
        }
    } catch (...) {
        // Tearing down after a failed request: what is left goes at exit.
    }
    fCmpiNamespace.reset();
    fUpcall.reset();
    fManager.reset();
    fRepository.reset();
    fLog.Collect();
}

void THostSession::EndRequest() {
    if (fClearInstances != nullptr) fClearInstances();
}

// Libraries stay loaded for the life of the process: provider modules and
// host objects made by their code live until exit.
void* THostSession::OpenNamespaceProviderLibrary(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* reason = dlerror();
        throw TToolError("cannot load " + path + ": " + (reason != nullptr ? reason : "unknown reason"));
    }
    return handle;
}

void THostSession::AllocateCmpiNamespace() {
    TCIMContext context;
    context["repository"] = AddressOf(fRepository);
    context["upcall"] = AddressOf(fUpcall);
    // Modules that fail to load are logged and skipped by the library.
    fCmpiNamespace = RegisteredProvider(kCmpiProvider, kCmpiLibrary)->AllocateNamespace(context, false);
    if (!fCmpiNamespace) throw TToolError(std::string(kCmpiLibrary) + " allocated no namespace");
    fManager->AttachProviderNamespace(kCmpiProvider, fCmpiNamespace);
}
