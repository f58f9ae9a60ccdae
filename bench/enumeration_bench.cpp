// Enumeration throughput: N instances of Bench_Item through the whole road
// (manager -> TCMPIClass::EnumerateInstances -> driver -> provider ->
// factory -> result -> callback) against the same N instances made as host
// instances and handed to the same callback; and the broker's enumeration
// upcall, a provider walking the names of another provider's instances.
//
// The registry is released inside the timed region, after every request:
// freeing what a request made is part of serving it, as destroying its
// instances is for the baseline.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>

#include "BenchHost.h"

using namespace NVURZENTA20;

namespace {

std::unique_ptr<bench::THost> gHost;

const std::string& CallerModule() {
    static const std::string path = bench::ModuleDirectory("enum") + "/BenchCaller.cmpi.so";
    return path;
}

// Providers start on their first request; that request is not measured.
void StartProvider(const boost::shared_ptr<ICIMClass>& cls, const TInstanceCallback& callback) {
    cls->EnumerateInstances(callback, false, TCIMContext());
    bench::ReleaseRecords();
}

// One request each: bench/instruction-counts counts the instructions of
// these functions alone. The registry release is part of the request.
__attribute__((noinline)) void MeasuredRequest(ICIMClass& cls, const TInstanceCallback& callback) {
    bench::CountMeasured();
    cls.EnumerateInstances(callback, false, TCIMContext());
    bench::ReleaseRecords();
}

__attribute__((noinline)) void MeasuredHostInstances(ICIMClass& cls, std::size_t n, const TCIMValue& stamp,
                                                     const TCIMValue& label, const TInstanceCallback& callback) {
    bench::CountMeasured();
    char id[32];
    for (std::size_t i = 0; i < n; ++i) {
        const unsigned int index = static_cast<unsigned int>(i);
        boost::shared_ptr<ICIMInstance> instance = cls.AllocateInstance(TCIMContext());
        std::snprintf(id, sizeof(id), "item%u", index);
        instance->SetPropertyValue("Id", TCIMValue(id), TCIMContext());
        instance->SetPropertyValue("Count", TCIMValue(index), TCIMContext());
        instance->SetPropertyValue("Total", TCIMValue(static_cast<unsigned long long>(index) * 1000u),
                                   TCIMContext());
        instance->SetPropertyValue("Label", label, TCIMContext());
        instance->SetPropertyValue("Stamp", stamp, TCIMContext());
        if (!callback(instance)) break;
    }
}

void ReportItems(benchmark::State& state, std::size_t perIteration) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * perIteration));
    state.counters["time_per_instance"] = benchmark::Counter(
        static_cast<double>(state.iterations() * perIteration), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_EnumerateThroughProvider(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    std::size_t count = 0;
    const TInstanceCallback callback = bench::TCountingCallback{&count};
    boost::shared_ptr<ICIMClass> cls = gHost->ServedClass("Bench_Item");
    bench::SetItemCount(n);
    StartProvider(cls, callback);
    bench::RunRequests(state, n, count, "the callback did not receive every instance",
                       [&] { MeasuredRequest(*cls, callback); });
    ReportItems(state, n);
}

// What a host-side producer of the same answer does: one host instance per
// item with the same five values (the date-time made once, as the provider
// makes it once), handed to the same callback.
void BM_EnumerateHostInstances(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    std::size_t count = 0;
    const TInstanceCallback callback = bench::TCountingCallback{&count};
    boost::shared_ptr<ICIMClass> cls = gHost->RepositoryClass("Bench_Item");
    const TCIMValue stamp(TCIMDateTime(std::string("20240102030405.000000+000")));
    const TCIMValue label("bench");
    bench::RunRequests(state, n, count, "the callback did not receive every instance",
                       [&] { MeasuredHostInstances(*cls, n, stamp, label, callback); });
    ReportItems(state, n);
}

// BenchCaller walks the names of every Bench_Item through its broker while
// Bench_Caller is enumerated; per item this is the upcall's cost, to be set
// against BM_EnumerateThroughProvider of the same N.
void BM_UpcallEnumInstanceNames(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    std::size_t count = 0;
    const TInstanceCallback callback = bench::TCountingCallback{&count};
    boost::shared_ptr<ICIMClass> cls = gHost->ServedClass("Bench_Caller");
    bench::SetItemCount(n);
    StartProvider(cls, callback);
    unsigned int& seen = bench::ModuleVariable<unsigned int>(CallerModule(), "bench_caller_seen");
    bench::RunRequests(state, n, seen, "the upcall did not deliver every name",
                       [&] { MeasuredRequest(*cls, callback); });
    ReportItems(state, n);
}

// Times depend on the caches a request's objects spill out of, and the
// machine is shared: each figure is the median of five runs.
void Repeated(benchmark::internal::Benchmark* benchmark) {
    benchmark->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);
}

BENCHMARK(BM_EnumerateThroughProvider)->Arg(1000)->Arg(10000)->Arg(100000)->Apply(Repeated);
BENCHMARK(BM_EnumerateHostInstances)->Arg(1000)->Arg(10000)->Arg(100000)->Apply(Repeated);
BENCHMARK(BM_UpcallEnumInstanceNames)->Arg(10000)->Apply(Repeated);

}  // namespace

int main(int argc, char** argv) { return bench::RunOverEnumerationModules(argc, argv, gHost); }
