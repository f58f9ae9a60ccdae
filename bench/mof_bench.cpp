// Document reading: the DMTF CIM Schema 2.41 (about 1,440 class files
// through #pragma include) read into a fresh repository, and one module's
// class document of generated classes read in each format.
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "ICIMNamespace.h"
#include "INamespaceProvider.h"
#include "TNamespacePopulator.h"
#include "TNamespaceManager.h"

using namespace NVURZENTA20;

namespace {

std::string SchemaDirectory() { return std::filesystem::path(ZENTA_SCHEMA_DIR).lexically_normal().string(); }

// A manager over a fresh repository with the standard documents, as the
// library sees the repository when it reads module documents.
boost::shared_ptr<ICIMNamespace> FreshRepository() {
    return TNamespaceManager::GetManagerProvider()->AllocateNamespace(TCIMContext(), true);
}

std::size_t ClassCount(ICIMNamespace& ns) {
    std::size_t count = 0;
    ns.GetClass("<root>", TCIMContext())
        ->EnumerateSubClasses([&](boost::shared_ptr<ICIMClass>) { return ++count != 0; }, true, TCIMContext());
    return count;
}

void BM_ReadCimSchema(benchmark::State& state) {
    const std::string schema = SchemaDirectory();
    if (!std::filesystem::is_directory(schema)) {
        state.SkipWithError(("no CIM schema at " + schema).c_str());
        return;
    }
    std::size_t classes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        boost::shared_ptr<ICIMNamespace> repository = FreshRepository();
        state.ResumeTiming();
        if (!TNamespacePopulator::PopulateFromSchemaDirectories(repository, {schema}).empty()) {
            state.SkipWithError("the schema did not read");
            return;
        }
        state.PauseTiming();
        classes = ClassCount(*repository);
        repository.reset();
        state.ResumeTiming();
    }
    state.counters["classes"] = static_cast<double>(classes);
}
BENCHMARK(BM_ReadCimSchema)->Unit(benchmark::kMillisecond)->Iterations(5);

// A class document of `count` classes with ten properties each, in MOF
// (`mof` true) or CIM-XML, written once into a scratch directory.
std::string GeneratedDocument(bool mof, int count) {
    const std::string path = "/tmp/zenta-mof-bench-" + std::to_string(::getpid()) + (mof ? ".mof" : ".xml");
    std::ofstream out(path);
    if (!mof) out << "<CIM><DECLARATION><DECLGROUP>\n";
    for (int c = 0; c < count; ++c) {
        const std::string name = "Bench_C" + std::to_string(c);
        if (mof) {
            out << "[Description (\"class " << c << "\")]\nclass " << name << " {\n  [Key] string Id;\n";
            for (int p = 0; p < 9; ++p) out << "  [Units (\"Bytes\")] uint32 P" << p << " = " << p << ";\n";
            out << "};\n";
        } else {
            out << "<VALUE.OBJECT><CLASS NAME=\"" << name << "\">"
                << "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>class " << c << "</VALUE></QUALIFIER>\n"
                << "<PROPERTY NAME=\"Id\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>TRUE</VALUE>"
                << "</QUALIFIER></PROPERTY>\n";
            for (int p = 0; p < 9; ++p) {
                out << "<PROPERTY NAME=\"P" << p << "\" TYPE=\"uint32\"><QUALIFIER NAME=\"Units\" TYPE=\"string\">"
                    << "<VALUE>Bytes</VALUE></QUALIFIER><VALUE>" << p << "</VALUE></PROPERTY>\n";
            }
            out << "</CLASS></VALUE.OBJECT>\n";
        }
    }
    if (!mof) out << "</DECLGROUP></DECLARATION></CIM>\n";
    return path;
}

void BM_ReadClassDocument(benchmark::State& state) {
    const bool mof = state.range(0) == 1;
    const int count = static_cast<int>(state.range(1));
    const std::string path = GeneratedDocument(mof, count);
    for (auto _ : state) {
        state.PauseTiming();
        boost::shared_ptr<ICIMNamespace> repository = FreshRepository();
        state.ResumeTiming();
        benchmark::DoNotOptimize(TNamespacePopulator::PopulateFromXMLFile(repository, path));
        state.PauseTiming();
        repository.reset();
        state.ResumeTiming();
    }
    std::filesystem::remove(path);
    state.SetItemsProcessed(state.iterations() * count);
    state.SetLabel(mof ? "MOF" : "CIM-XML");
}
BENCHMARK(BM_ReadClassDocument)->ArgsProduct({{0, 1}, {1000}})->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
