// Association walks: the instances associated with one hub, which the
// provider links to N spokes (bench/modules/BenchAssoc.c), against the
// enumeration of the N spokes themselves. The walk enumerates the links and
// reaches every spoke it names; the target is a cost linear in N and at
// most three times the enumeration's.
//
// The registry is released inside the timed region after every request, as
// in the enumeration benchmark.
#include <benchmark/benchmark.h>

#include <memory>

#include "BenchHost.h"

using namespace NVURZENTA20;

namespace {

std::unique_ptr<bench::THost> gHost;

void SetSpokeCount(std::size_t count) {
    bench::ModuleVariable<unsigned int>(bench::ModuleDirectory("enum") + "/BenchAssoc.cmpi.so", "bench_spoke_count") =
        static_cast<unsigned int>(count);
}

boost::shared_ptr<ICIMInstance> Hub() {
    TCIMReference path(gHost->Upcall(), TCIMContext());
    path.SetClassName("Bench_Hub");
    path.AddKeyValue("Id", TCIMValue("hub"));
    boost::shared_ptr<ICIMInstance> hub = gHost->Namespace()->GetInstance(path, TCIMContext());
    bench::ReleaseRecords();
    return hub;
}

// One request each: bench/instruction-counts counts the instructions of
// these functions alone.
__attribute__((noinline)) void MeasuredWalk(ICIMInstance& hub, const TInstanceCallback& callback) {
    bench::CountMeasured();
    hub.EnumerateAssociatedInstances(callback, "", "", "", "", TCIMContext());
    bench::ReleaseRecords();
}

__attribute__((noinline)) void MeasuredFarEnumeration(ICIMClass& spokes, const TInstanceCallback& callback) {
    bench::CountMeasured();
    spokes.EnumerateInstances(callback, false, TCIMContext());
    bench::ReleaseRecords();
}

void ReportSpokes(benchmark::State& state, std::size_t n) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * n));
    state.counters["time_per_far_end"] = benchmark::Counter(static_cast<double>(state.iterations() * n),
                                                            benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_AssociatorsOfHub(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    std::size_t count = 0;
    const TInstanceCallback callback = bench::TCountingCallback{&count};
    SetSpokeCount(n);
    boost::shared_ptr<ICIMInstance> hub = Hub();
    if (!hub) {
        state.SkipWithError("the hub cannot be got");
        return;
    }
    // The first walk starts the provider; it is not measured.
    hub->EnumerateAssociatedInstances(callback, "", "", "", "", TCIMContext());
    bench::ReleaseRecords();
    bench::RunRequests(state, n, count, "the walk did not reach every spoke", [&] { MeasuredWalk(*hub, callback); });
    ReportSpokes(state, n);
}

void BM_EnumerateSpokes(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    std::size_t count = 0;
    const TInstanceCallback callback = bench::TCountingCallback{&count};
    SetSpokeCount(n);
    boost::shared_ptr<ICIMClass> spokes = gHost->ServedClass("Bench_Spoke");
    spokes->EnumerateInstances(callback, false, TCIMContext());
    bench::ReleaseRecords();
    bench::RunRequests(state, n, count, "the enumeration did not deliver every spoke",
                       [&] { MeasuredFarEnumeration(*spokes, callback); });
    ReportSpokes(state, n);
}

void Repeated(benchmark::internal::Benchmark* benchmark) {
    benchmark->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);
}

BENCHMARK(BM_AssociatorsOfHub)->Arg(100)->Arg(1000)->Arg(10000)->Apply(Repeated);
BENCHMARK(BM_EnumerateSpokes)->Arg(100)->Arg(1000)->Arg(10000)->Apply(Repeated);

}  // namespace

int main(int argc, char** argv) { return bench::RunOverEnumerationModules(argc, argv, gHost); }
