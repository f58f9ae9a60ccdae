// Memory of the enumeration road: resident size and heap in use over 1,000
// requests of 1,000 instances each, the registry released after every
// request (a long-running host must not grow); and the heap a request
// keeps per instance until the registry is released.
#include <benchmark/benchmark.h>

#include <memory>

#include "BenchHost.h"

using namespace NVURZENTA20;

namespace {

const std::size_t kInstancesPerRequest = 1000;
const int kRequests = 1000;

std::unique_ptr<bench::THost> gHost;

struct TSample {
    std::size_t resident;
    std::size_t heap;
};

TSample Sample() { return TSample{bench::ResidentSize(), bench::HeapInUse()}; }

double KiB(std::size_t bytes) { return static_cast<double>(bytes) / 1024.0; }

double GrowthPercent(std::size_t from, std::size_t to) {
    return from == 0 ? 0.0 : (static_cast<double>(to) - static_cast<double>(from)) * 100.0 / static_cast<double>(from);
}

// One request, its instances counted and dropped by the callback.
bool Enumerate(const boost::shared_ptr<ICIMClass>& cls, std::size_t expected) {
    std::size_t count = 0;
    cls->EnumerateInstances(bench::TCountingCallback{&count}, false, TCIMContext());
    return count == expected;
}

void Report(benchmark::State& state, const char* name, const TSample& sample) {
    state.counters[std::string("rss_") + name + "_KiB"] = KiB(sample.resident);
    state.counters[std::string("heap_") + name + "_KiB"] = KiB(sample.heap);
}

// First: before any request (the provider not yet started). Round 1: after
// the first request and its release. Round 10: the allocator's per-size
// caches hold freed chunks that mallinfo2 still counts as in use, and they
// fill over the first few requests. Last: after request 1,000.
void BM_SteadyStateMemory(benchmark::State& state) {
    boost::shared_ptr<ICIMClass> cls = gHost->ServedClass("Bench_Item");
    bench::SetItemCount(kInstancesPerRequest);
    for (auto _ : state) {
        const TSample first = Sample();
        TSample roundOne = first;
        TSample roundTen = first;
        std::size_t peakHeap = 0;
        for (int request = 1; request <= kRequests; ++request) {
            if (!Enumerate(cls, kInstancesPerRequest)) {
                state.SkipWithError("the callback did not receive every instance");
                return;
            }
            bench::ReleaseRecords();
            const TSample now = Sample();
            if (request == 1) roundOne = now;
            if (request == 10) roundTen = now;
            if (now.heap > peakHeap) peakHeap = now.heap;
        }
        const TSample last = Sample();
        Report(state, "first", first);
        Report(state, "round1", roundOne);
        Report(state, "round10", roundTen);
        Report(state, "last", last);
        state.counters["heap_peak_after_release_KiB"] = KiB(peakHeap);
        state.counters["rss_growth_pct"] = GrowthPercent(roundOne.resident, last.resident);
        state.counters["heap_growth_pct"] = GrowthPercent(roundOne.heap, last.heap);
        state.counters["rss_growth_after_round10_pct"] = GrowthPercent(roundTen.resident, last.resident);
        state.counters["heap_growth_after_round10_pct"] = GrowthPercent(roundTen.heap, last.heap);
    }
}

// Heap held by one request's records until the release, per instance; and
// what is left of it after the release. Records partly come from blocks
// the library kept from the previous request: the heap does not grow for
// those, but the request holds them all the same.

void BM_RetainedPerInstance(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    boost::shared_ptr<ICIMClass> cls = gHost->ServedClass("Bench_Item");
    bench::SetItemCount(n);
    // A first request starts the provider and sizes the registry's lists.
    Enumerate(cls, n);
    bench::ReleaseRecords();
    for (auto _ : state) {
        const std::size_t before = bench::HeapInUse();
        const std::size_t keptBefore = CMPINSPInstanceRegistry::GetKeptRecordBytes();
        if (!Enumerate(cls, n)) {
            state.SkipWithError("the callback did not receive every instance");
            return;
        }
        const std::size_t held = bench::HeapInUse() + (keptBefore - CMPINSPInstanceRegistry::GetKeptRecordBytes());
        bench::ReleaseRecords();
        const std::size_t after = bench::HeapInUse();
        state.counters["bytes_held_per_instance"] =
            (static_cast<double>(held) - static_cast<double>(before)) / static_cast<double>(n);
        state.counters["kept_record_KiB"] = KiB(CMPINSPInstanceRegistry::GetKeptRecordBytes());
        state.counters["bytes_left_per_instance"] =
            (static_cast<double>(after) - static_cast<double>(before)) / static_cast<double>(n);
    }
}

BENCHMARK(BM_SteadyStateMemory)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RetainedPerInstance)->Arg(1000)->Arg(10000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return bench::RunOverEnumerationModules(argc, argv, gHost); }
