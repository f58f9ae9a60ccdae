// Provider discovery: allocating the CMPI namespace over 10, 100 and 1,000
// generated modules, against the raw cost of what it cannot avoid — opening
// the same modules with the dynamic loader and reading the same documents
// into a fresh repository with TNamespacePopulator. And the repository's
// share of it: defining 1,000 to 40,000 root classes.
//
// Every run gets modules of its own: one compiled module copied under new
// file names (the loader would hand back an already open file instead of
// opening it), with registration and class documents naming a distinct
// class per module. Generating them, the fresh repository and the clean-up
// are outside the measured time; the clean-up closes the modules so that
// every run starts with the same set of loaded objects. The measured time
// is the process's CPU time.
#include <benchmark/benchmark.h>

#include <dlfcn.h>
#include <stdlib.h>

#include <time.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

#include "BenchHost.h"
#include "TNamespacePopulator.h"

using namespace NVURZENTA20;
namespace fs = std::filesystem;

namespace {

const char kRegistration[] = R"(<?xml version="1.0" encoding="utf-8"?>
<CIM CIMVERSION="2.0" DTDVERSION="2.0">
 <DECLARATION>
  <DECLGROUP>
   <VALUE.OBJECT>
    <INSTANCE CLASSNAME="PG_ProviderModule">
     <PROPERTY NAME="Name" TYPE="string"><VALUE>@NAME@</VALUE></PROPERTY>
     <PROPERTY NAME="dummy" TYPE="string"><VALUE>Discovery benchmark module @NAME@</VALUE></PROPERTY>
     <PROPERTY NAME="Location" TYPE="string"><VALUE>@NAME@</VALUE></PROPERTY>
    </INSTANCE>
   </VALUE.OBJECT>
   <VALUE.OBJECT>
    <INSTANCE CLASSNAME="PG_Provider">
     <PROPERTY NAME="ProviderModuleName" TYPE="string"><VALUE>@NAME@</VALUE></PROPERTY>
     <PROPERTY NAME="Name" TYPE="string"><VALUE>@NAME@</VALUE></PROPERTY>
    </INSTANCE>
   </VALUE.OBJECT>
   <VALUE.OBJECT>
    <INSTANCE CLASSNAME="PG_ProviderCapabilities">
     <PROPERTY NAME="ProviderModuleName" TYPE="string"><VALUE>@NAME@</VALUE></PROPERTY>
     <PROPERTY NAME="ProviderName" TYPE="string"><VALUE>@NAME@</VALUE></PROPERTY>
     <PROPERTY NAME="CapabilityID" TYPE="string"><VALUE>1</VALUE></PROPERTY>
     <PROPERTY NAME="ClassName" TYPE="string"><VALUE>@NAME@_Item</VALUE></PROPERTY>
     <PROPERTY NAME="Namespaces" TYPE="string"><VALUE>root/disco</VALUE></PROPERTY>
    </INSTANCE>
   </VALUE.OBJECT>
  </DECLGROUP>
 </DECLARATION>
</CIM>
)";

const char kClasses[] = R"(<?xml version="1.0" encoding="utf-8"?>
<CIM CIMVERSION="2.0" DTDVERSION="2.0">
 <DECLARATION>
  <DECLGROUP>
   <VALUE.OBJECT>
    <CLASS NAME="@NAME@_Item">
     <PROPERTY NAME="Id" TYPE="string">
      <QUALIFIER NAME="Key" TYPE="boolean"><VALUE>TRUE</VALUE></QUALIFIER>
     </PROPERTY>
     <PROPERTY NAME="Count" TYPE="uint32"/>
     <PROPERTY NAME="Total" TYPE="uint64"/>
     <PROPERTY NAME="Label" TYPE="string"/>
     <PROPERTY NAME="Stamp" TYPE="datetime"/>
    </CLASS>
   </VALUE.OBJECT>
  </DECLGROUP>
 </DECLARATION>
</CIM>
)";

std::string Substitute(std::string text, const std::string& name) {
    const std::string marker = "@NAME@";
    for (std::string::size_type at = text.find(marker); at != std::string::npos; at = text.find(marker, at)) {
        text.replace(at, marker.size(), name);
        at += name.size();
    }
    return text;
}

void WriteFile(const fs::path& path, const std::string& text) {
    std::ofstream out(path);
    out << text;
    if (!out) throw std::runtime_error("cannot write " + path.string());
}

// One run's modules in a directory of their own, removed with the object.
class TModuleSet {
public:
    explicit TModuleSet(std::size_t count) {
        static unsigned int generation = 0;
        char pattern[] = "/tmp/zenta-bench-disco-XXXXXX";
        if (mkdtemp(pattern) == nullptr) throw std::runtime_error("cannot make a temporary directory");
        fDirectory = pattern;
        ++generation;
        const fs::path source = fs::path(bench::ModuleDirectory("disco")) / "Disco.cmpi.so";
        for (std::size_t i = 0; i < count; ++i) {
            const std::string name = "Disco" + std::to_string(generation) + "x" + std::to_string(i);
            const fs::path module = fDirectory / (name + ".cmpi.so");
            fs::copy_file(source, module);
            WriteFile(fDirectory / (name + ".reg.xml"), Substitute(kRegistration, name));
            WriteFile(fDirectory / (name + ".classes.xml"), Substitute(kClasses, name));
            fModules.push_back(module.string());
        }
    }
    ~TModuleSet() {
        std::error_code ignored;
        fs::remove_all(fDirectory, ignored);
    }
    TModuleSet(const TModuleSet&) = delete;
    TModuleSet& operator=(const TModuleSet&) = delete;

    std::string Directory() const { return fDirectory.string(); }
    const std::vector<std::string>& Modules() const { return fModules; }
    static std::string Document(const std::string& module, const char* suffix) {
        return module.substr(0, module.size() - std::string(".cmpi.so").size()) + suffix;
    }

private:
    fs::path fDirectory;
    std::vector<std::string> fModules;
};

// The time the process spent on the CPU (user and system): on a machine
// shared with other builds, waiting for a core is not the code's cost.
double CpuSeconds() {
    timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// The library keeps its modules open for the life of the process; the
// benchmark closes them once the namespace is gone.
std::set<void*> LibrariesOf(const TCMPINamespace& ns) {
    std::set<void*> libraries;
    TCMPINamespace& mutableNamespace = const_cast<TCMPINamespace&>(ns);
    for (const boost::shared_ptr<TCMPIProvider>& provider : mutableNamespace.GetProvidersContainer()) {
        libraries.insert(provider->GetProviderInfo()->library);
    }
    return libraries;
}

void CloseAll(const std::set<void*>& libraries) {
    for (void* library : libraries) {
        if (library != nullptr) dlclose(library);
    }
}

void BM_AllocateNamespace(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        TModuleSet modules(n);
        std::set<void*> libraries;
        {
            bench::THost host;
            const double start = CpuSeconds();
            host.Allocate(modules.Directory());
            state.SetIterationTime(CpuSeconds() - start);
            if (host.Namespace()->GetProvidersContainer().size() != n) {
                state.SkipWithError("not every module became a provider");
                return;
            }
            libraries = LibrariesOf(*host.Namespace());
        }
        CloseAll(libraries);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * n));
}

// The raw cost of discovery: every module opened and its two documents
// read into `repository`. Returns how many classes the documents defined.
// Kept out of line, as OpenAll below, so that a profiler can single
// out the measured work.
[[gnu::noinline]] std::size_t OpenAndParse(const TModuleSet& modules,
                                           const boost::shared_ptr<ICIMNamespace>& repository,
                                           std::set<void*>& libraries) {
    std::size_t classes = 0;
    for (const std::string& module : modules.Modules()) {
        libraries.insert(dlopen(module.c_str(), RTLD_LAZY));
        TNamespacePopulator::PopulateFromRegXMLFile(repository, TModuleSet::Document(module, ".reg.xml"));
        classes += TNamespacePopulator::PopulateFromXMLFile(repository, TModuleSet::Document(module, ".classes.xml"))
                       .size();
    }
    return classes;
}

[[gnu::noinline]] void OpenAll(const TModuleSet& modules, std::set<void*>& libraries) {
    for (const std::string& module : modules.Modules()) libraries.insert(dlopen(module.c_str(), RTLD_LAZY));
}

void BM_OpenAndParseModules(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        TModuleSet modules(n);
        std::set<void*> libraries;
        {
            bench::THost host;
            const double start = CpuSeconds();
            const std::size_t classes = OpenAndParse(modules, host.Repository(), libraries);
            state.SetIterationTime(CpuSeconds() - start);
            if (classes != n || libraries.count(nullptr) != 0) {
                state.SkipWithError("a module did not open or its document held no class");
                return;
            }
        }
        CloseAll(libraries);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * n));
}

// The dynamic loader's share of the raw cost: it compares every name it is
// asked to open with every object already loaded, so its time per module
// grows with the number of modules whoever opens them.
void BM_OpenModules(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        TModuleSet modules(n);
        std::set<void*> libraries;
        const double start = CpuSeconds();
        OpenAll(modules, libraries);
        state.SetIterationTime(CpuSeconds() - start);
        CloseAll(libraries);
        if (libraries.count(nullptr) != 0) {
            state.SkipWithError("a module did not open");
            return;
        }
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * n));
}

// Defining N root classes (one property each) in a fresh repository: every
// root class is filed under one pseudo-class, so this is where filing a
// class could grow with the number of classes already defined.
[[gnu::noinline]] void MeasuredDefineClasses(ICIMNamespace& repository, std::size_t n) {
    bench::CountMeasured();
    for (std::size_t i = 0; i < n; ++i) {
        boost::shared_ptr<ICIMClass> cls =
            repository.AllocateClass("Bench_Class" + std::to_string(i), boost::shared_ptr<ICIMClass>(), TCIMContext());
        cls->AllocatePropertyDecl("Name", TCIMValue("unnamed"), TCIMContext());
    }
}

void BM_DefineRootClasses(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    boost::shared_ptr<INamespaceProvider> inmem =
        TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("inmem");
    for (auto _ : state) {
        boost::shared_ptr<ICIMNamespace> repository = inmem->AllocateNamespace(TCIMContext(), false);
        const double start = CpuSeconds();
        MeasuredDefineClasses(*repository, n);
        state.SetIterationTime(CpuSeconds() - start);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * n));
}

// The big size runs once per repetition: 1,000 modules take a second to
// generate and load. Each figure is the median of three repetitions.
void Repeated(benchmark::internal::Benchmark* benchmark) {
    benchmark->UseManualTime()->Unit(benchmark::kMillisecond)->Repetitions(3)->ReportAggregatesOnly(true);
}

#define DISCOVERY_BENCHMARK(function)                                  \
    BENCHMARK(function)->Arg(10)->Iterations(30)->Apply(Repeated);    \
    BENCHMARK(function)->Arg(100)->Iterations(5)->Apply(Repeated);    \
    BENCHMARK(function)->Arg(1000)->Iterations(1)->Apply(Repeated)

DISCOVERY_BENCHMARK(BM_AllocateNamespace);
DISCOVERY_BENCHMARK(BM_OpenAndParseModules);
DISCOVERY_BENCHMARK(BM_OpenModules);
BENCHMARK(BM_DefineRootClasses)->Arg(1000)->Arg(10000)->Arg(40000)->Iterations(1)->Apply(Repeated);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    bench::WriteMeasuredCalls();
    return 0;
}
