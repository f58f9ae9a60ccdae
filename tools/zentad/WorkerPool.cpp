#include "WorkerPool.h"

TWorkerPool::TWorkerPool(const TWorkerSetup& setup, const TPoolOptions& options, const TReport& report)
    : fSetup(setup), fOptions(options), fReport(report) {
    const unsigned count = options.workers == 0 ? 1 : options.workers;
    for (unsigned i = 0; i < count; ++i) fThreads.emplace_back([this, i] { Serve(i); });
}

TWorkerPool::~TWorkerPool() { Stop(); }

bool TWorkerPool::Submit(TJob job) {
    {
        std::lock_guard<std::mutex> lock(fMutex);
        if (fStopping || fQueue.size() >= fOptions.queueLimit) return false;
        fQueue.push_back(std::move(job));
    }
    fWake.notify_one();
    return true;
}

void TWorkerPool::Stop() {
    {
        std::lock_guard<std::mutex> lock(fMutex);
        fStopping = true;
    }
    fWake.notify_all();
    for (std::thread& thread : fThreads) {
        if (thread.joinable()) thread.join();
    }
    fThreads.clear();
}

bool TWorkerPool::EnsureRunning(TWorker& worker, long& baselineKilobytes, unsigned index) {
    if (worker.IsRunning()) return true;
    const TOutcome started = worker.Start(fOptions.startTimeoutSeconds);
    if (!started.Succeeded()) {
        fReport("worker " + std::to_string(index) + " did not start: " +
                started.Describe("the start of the host", fOptions.startTimeoutSeconds));
        return false;
    }
    baselineKilobytes = worker.GetResidentKilobytes();
    return true;
}

void TWorkerPool::RecycleIfWorn(TWorker& worker, long& baselineKilobytes, unsigned index) {
    std::string reason;
    if (!worker.IsRunning()) {
        reason = "it ended";
    } else if (fOptions.recycleRequests != 0 && worker.GetRequestsServed() >= fOptions.recycleRequests) {
        reason = "it served " + std::to_string(worker.GetRequestsServed()) + " requests";
    } else if (fOptions.recycleKilobytes > 0) {
        const long grown = worker.GetResidentKilobytes() - baselineKilobytes;
        if (grown > fOptions.recycleKilobytes) reason = "its memory grew by " + std::to_string(grown) + " KB";
    }
    if (reason.empty()) return;
    worker.Stop();
    fReport("worker " + std::to_string(index) + " replaced: " + reason);
    // The next request should not wait for the new host to start.
    EnsureRunning(worker, baselineKilobytes, index);
}

void TWorkerPool::Serve(unsigned index) {
    TWorker worker(fSetup);
    long baselineKilobytes = 0;
    EnsureRunning(worker, baselineKilobytes, index);
    for (;;) {
        TJob job;
        {
            std::unique_lock<std::mutex> lock(fMutex);
            fWake.wait(lock, [this] { return fStopping || !fQueue.empty(); });
            if (fQueue.empty()) break;
            job = std::move(fQueue.front());
            fQueue.pop_front();
        }
        // A worker that cannot start still gets the job: TWorker::Run tries
        // once more and the job answers the failure.
        job(worker);
        RecycleIfWorn(worker, baselineKilobytes, index);
    }
    worker.Stop();
}
