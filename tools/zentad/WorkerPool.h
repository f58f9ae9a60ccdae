// The worker processes that answer the server's requests. Each worker is
// owned by a thread of its own for the server's whole life: the library's
// rules allow one request at a time per host, and a worker dies with the
// thread that started it (PR_SET_PDEATHSIG), so a short-lived thread must
// never start one. Requests wait in a bounded queue; a worker is replaced
// after it crashed or hung, after a number of requests, or once its
// resident memory has grown past a limit.
#ifndef ZENTA_ZENTAD_WORKERPOOL_H
#define ZENTA_ZENTAD_WORKERPOOL_H

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Worker.h"

struct TPoolOptions {
    unsigned workers = 1;
    std::size_t queueLimit = 64;       // requests waiting for a worker
    unsigned recycleRequests = 10000;  // 0: never for that reason
    long recycleKilobytes = 0;         // growth of resident memory; 0: never
    int startTimeoutSeconds = 60;
};

class TWorkerPool {
public:
    // A job runs on a pool thread with that thread's worker, running.
    typedef std::function<void(TWorker& worker)> TJob;
    // Said once for each worker replaced or failing to start.
    typedef std::function<void(const std::string& line)> TReport;

    TWorkerPool(const TWorkerSetup& setup, const TPoolOptions& options, const TReport& report);
    // Finishes the queued jobs, then stops the workers.
    ~TWorkerPool();

    // False when the queue is full or the pool is stopping.
    bool Submit(TJob job);
    // Runs what is queued, then stops every worker and joins the threads.
    void Stop();

private:
    void Serve(unsigned index);
    // Starts `worker` if it does not run; false (and reported) when it cannot.
    bool EnsureRunning(TWorker& worker, long& baselineKilobytes, unsigned index);
    void RecycleIfWorn(TWorker& worker, long& baselineKilobytes, unsigned index);

    TWorkerSetup fSetup;
    TPoolOptions fOptions;
    TReport fReport;
    std::mutex fMutex;
    std::condition_variable fWake;
    std::deque<TJob> fQueue;
    bool fStopping = false;
    std::vector<std::thread> fThreads;
};

#endif
