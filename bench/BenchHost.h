// The host the benchmarks run in, built as the tool builds it: a fresh
// repository with the standard documents, the namespace manager over it
// and the CMPI namespace over one directory of provider modules, attached
// to the manager. Plus the few measuring helpers the benchmarks share.
#ifndef ZENTA_BENCH_BENCHHOST_H
#define ZENTA_BENCH_BENCHHOST_H

#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/shared_ptr.hpp>

#include "ICIMClass.h"
#include "INamespaceProvider.h"
#include "TCMPINamespace.h"
#include "TCMPINamespaceProvider.h"
#include "TNamespaceManager.h"
#include "TRootObject.h"
#include "cmpiInstanceRegistry.h"

namespace bench {

// The directory a benchmark's modules were built into.
inline std::string ModuleDirectory(const std::string& name) { return std::string(ZENTA_BENCH_MODULE_ROOT) + "/" + name; }

// The context entry that carries the address of a namespace reference.
inline NVURZENTA20::TCIMValue AddressOf(boost::shared_ptr<NVURZENTA20::ICIMNamespace>& ns) {
    return NVURZENTA20::TCIMValue(static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(&ns)));
}

class THost {
public:
    THost() {
        using namespace NVURZENTA20;
        // Trace lines are built and dropped, as in a host at its default level.
        TRootObject::GetCoreLogger()->SetThreshold(1);
        boost::shared_ptr<INamespaceProvider> inmem =
            TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("inmem");
        if (!inmem) throw std::runtime_error("the in-memory namespace provider is not registered");
        fRepository = inmem->AllocateNamespace(TCIMContext(), true);
        fManager = TNamespaceManager::Create(fRepository);
        fUpcall = fManager;
    }

    THost(const THost&) = delete;
    THost& operator=(const THost&) = delete;

    ~THost() {
        if (fNamespace) fManager->DetachProviderNamespace("cmpi");
        fNamespace.reset();
        TCMPINamespaceProvider::ClearNamespace();
    }

    // Allocates the CMPI namespace over the modules of `directory` and
    // attaches it to the manager.
    void Allocate(const std::string& directory) {
        using namespace NVURZENTA20;
        std::vector<char> path(directory.begin(), directory.end());
        path.push_back('\0');
        TCMPINamespaceProvider::Initialize(&path[0]);
        TCIMContext context;
        context["repository"] = AddressOf(fRepository);
        context["upcall"] = AddressOf(fUpcall);
        fNamespace = boost::dynamic_pointer_cast<TCMPINamespace>(
            TCMPINamespaceProvider::GetInstance()->AllocateNamespace(context, false));
        if (!fNamespace) throw std::runtime_error("the CMPI namespace could not be allocated");
        fManager->AttachProviderNamespace("cmpi", fNamespace);
    }

    // The class as a request from a provider namespace sees it: a class a
    // provider serves comes back as the CMPI namespace's class.
    boost::shared_ptr<NVURZENTA20::ICIMClass> ServedClass(const std::string& name) {
        NVURZENTA20::TCIMContext routed;
        routed[NVURZENTA20::TNamespaceManager::kOriginKey] = NVURZENTA20::TCIMValue("cmpi");
        return Require(fManager->GetClass(name, routed), name);
    }

    // The repository's own class of that name.
    boost::shared_ptr<NVURZENTA20::ICIMClass> RepositoryClass(const std::string& name) {
        return Require(fRepository->GetClass(name, NVURZENTA20::TCIMContext()), name);
    }

    boost::shared_ptr<NVURZENTA20::ICIMNamespace>& Repository() { return fRepository; }
    boost::shared_ptr<NVURZENTA20::ICIMNamespace>& Upcall() { return fUpcall; }
    boost::shared_ptr<TCMPINamespace> Namespace() const { return fNamespace; }

private:
    static boost::shared_ptr<NVURZENTA20::ICIMClass> Require(boost::shared_ptr<NVURZENTA20::ICIMClass> cls,
                                                             const std::string& name) {
        if (!cls) throw std::runtime_error("no class " + name);
        return cls;
    }

    boost::shared_ptr<NVURZENTA20::ICIMNamespace> fRepository;
    boost::shared_ptr<NVURZENTA20::TNamespaceManager> fManager;
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> fUpcall;
    boost::shared_ptr<TCMPINamespace> fNamespace;
};

// Frees every CMPI record handed to providers, as the host does after a request.
inline void ReleaseRecords() { CMPINSPInstanceRegistry::GetRegistrySingleton()->ClearInstances(); }

// A variable exported by a module the namespace has loaded.
template <class T>
T& ModuleVariable(const std::string& module, const char* name) {
    void* handle = dlopen(module.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle == nullptr) throw std::runtime_error(module + " is not loaded");
    void* symbol = dlsym(handle, name);
    dlclose(handle);
    if (symbol == nullptr) throw std::runtime_error(module + " exports no " + name);
    return *static_cast<T*>(symbol);
}

// How many Bench_Item instances the BenchItem provider returns per request.
inline void SetItemCount(std::size_t count) {
    ModuleVariable<unsigned int>(ModuleDirectory("enum") + "/Bench.cmpi.so", "bench_item_count") =
        static_cast<unsigned int>(count);
}

// Runs `request` once per iteration and fails the benchmark with `failure`
// when a request leaves `delivered` short of `n` (it is set to 0 before
// each request).
template <class TCount, class TRequest>
void RunRequests(benchmark::State& state, std::size_t n, TCount& delivered, const char* failure, TRequest request) {
    for (auto _ : state) {
        delivered = 0;
        request();
        if (delivered != n) {
            state.SkipWithError(failure);
            return;
        }
    }
}

// The instance callback of every enumeration benchmark: counts and goes on.
struct TCountingCallback {
    std::size_t* count;
    bool operator()(boost::shared_ptr<NVURZENTA20::ICIMInstance>) const {
        ++*count;
        return true;
    }
};

// Heap in use (every arena and the mapped chunks) and resident set size.
inline std::size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

inline std::size_t ResidentSize() {
    std::FILE* statm = std::fopen("/proc/self/statm", "r");
    if (statm == nullptr) return 0;
    unsigned long size = 0;
    unsigned long resident = 0;
    const int read = std::fscanf(statm, "%lu %lu", &size, &resident);
    std::fclose(statm);
    return read == 2 ? resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) : 0;
}

// How often the measured requests ran. bench/instruction-counts divides
// the instructions callgrind counts inside the functions that call
// CountMeasured() by this number; the program writes it to the file that
// ZENTA_BENCH_CALLS_FILE names when it ends.
inline std::size_t& MeasuredCalls() {
    static std::size_t calls = 0;
    return calls;
}

inline void CountMeasured() { ++MeasuredCalls(); }

inline void WriteMeasuredCalls() {
    const char* file = std::getenv("ZENTA_BENCH_CALLS_FILE");
    if (file == nullptr) return;
    std::FILE* out = std::fopen(file, "w");
    if (out == nullptr) return;
    std::fprintf(out, "%zu\n", MeasuredCalls());
    std::fclose(out);
}

// The main of a benchmark program whose benchmarks share one host over the
// "enum" modules: the host lives from before the first benchmark to after
// the last.
inline int RunOverEnumerationModules(int argc, char** argv, std::unique_ptr<THost>& host) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    host.reset(new THost);
    host->Allocate(ModuleDirectory("enum"));
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    host.reset();
    WriteMeasuredCalls();
    return 0;
}

}  // namespace bench

#endif
