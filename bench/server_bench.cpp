// zentad under load: small requests per second with 1 and 8 clients on
// keep-alive connections, and one enumeration of 100,000 Bench_Item
// instances (five properties) through the server against `zenta ei` of the
// same instances: CPU time of all the processes involved and their peak
// resident memory.
#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

const char kModules[] = ZENTA_BENCH_MODULE_ROOT "/enum";
const unsigned kLargeCount = 100000;

std::string Call(const std::string& method, const std::string& parameters) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
           "<MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL NAME=\"" + method +
           "\"><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH>" +
           parameters + "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
}

std::string EnumerateItems() {
    return Call("EnumerateInstances", "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"Bench_Item\"/></IPARAMVALUE>");
}

pid_t Spawn(std::vector<std::string> arguments, const std::string& environment, int out) {
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(&argument[0]);
    argv.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        putenv(const_cast<char*>(environment.c_str()));
        const int null = open("/dev/null", O_RDWR);
        dup2(null, STDIN_FILENO);
        dup2(out < 0 ? null : out, STDOUT_FILENO);
        execv(argv[0], argv.data());
        _exit(127);
    }
    return child;
}

struct TUsage {
    double cpuSeconds = 0;
    long peakKilobytes = 0;  // the largest of the process and its descendants
};

TUsage Reap(pid_t child) {
    int status = 0;
    struct rusage usage;
    wait4(child, &status, 0, &usage);
    TUsage result;
    result.cpuSeconds = usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
                        (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    result.peakKilobytes = usage.ru_maxrss;
    return result;
}

long PeakOf(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.compare(0, 6, "VmHWM:") == 0) return std::atol(line.c_str() + 6);
    }
    return 0;
}

class TServer {
public:
    TServer(const std::string& environment, unsigned workers) {
        int out[2];
        if (pipe(out) != 0) throw std::runtime_error("pipe");
        fPid = Spawn({ZENTAD, "--no-auth", "--listen", "127.0.0.1:0", "--providers", kModules, "--log-level", "0",
                      "--workers", std::to_string(workers)},
                     environment, out[1]);
        close(out[1]);
        std::string line;
        char c;
        while (line.find('\n') == std::string::npos && read(out[0], &c, 1) == 1) line += c;
        close(out[0]);
        const std::size_t colon = line.find(':', line.find("127.0.0.1"));
        if (colon == std::string::npos) throw std::runtime_error("zentad did not start: " + line);
        fPort = static_cast<unsigned short>(std::atoi(line.c_str() + colon + 1));
    }
    ~TServer() {
        if (fPid > 0) Stop();
    }
    TUsage Stop() {
        kill(fPid, SIGTERM);
        const TUsage usage = Reap(fPid);
        fPid = -1;
        return usage;
    }
    unsigned short Port() const { return fPort; }
    pid_t Pid() const { return fPid; }

private:
    pid_t fPid = -1;
    unsigned short fPort = 0;
};

// One keep-alive connection that sends CIM-XML calls and reads whole answers.
class TClient {
public:
    explicit TClient(unsigned short port) {
        fSocket = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const int one = 1;
        setsockopt(fSocket, IPPROTO_TCP, TCP_NODELAY, &one, sizeof(one));
        if (connect(fSocket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
            throw std::runtime_error("cannot connect to zentad");
        }
    }
    ~TClient() { close(fSocket); }

    // Sends the call; returns the size of the answer's body (chunked or not).
    std::size_t Ask(const std::string& method, const std::string& body) {
        const std::string request = "POST /cimom HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/xml\r\n"
                                    "CIMOperation: MethodCall\r\nCIMMethod: " + method +
                                    "\r\nCIMObject: root/cimv2\r\nContent-Length: " + std::to_string(body.size()) +
                                    "\r\n\r\n" + body;
        if (write(fSocket, request.data(), request.size()) != static_cast<ssize_t>(request.size())) {
            throw std::runtime_error("cannot send");
        }
        std::size_t end;
        while ((end = fBuffer.find("\r\n\r\n")) == std::string::npos) Fill();
        const std::string head = fBuffer.substr(0, end);
        fBuffer.erase(0, end + 4);
        const std::size_t length = head.find("Content-Length: ");
        if (length != std::string::npos) return Take(std::strtoul(head.c_str() + length + 16, nullptr, 10));
        std::size_t total = 0;
        for (;;) {
            while ((end = fBuffer.find("\r\n")) == std::string::npos) Fill();
            const std::size_t chunk = std::strtoul(fBuffer.c_str(), nullptr, 16);
            fBuffer.erase(0, end + 2);
            if (chunk == 0) {
                while (fBuffer.find("\r\n") != 0 && fBuffer.find("\r\n\r\n") == std::string::npos) Fill();
                fBuffer.erase(0, fBuffer.find("\r\n") == 0 ? 2 : fBuffer.find("\r\n\r\n") + 4);
                return total;
            }
            total += Take(chunk + 2) - 2;
        }
    }

private:
    void Fill() {
        char data[65536];
        const ssize_t got = read(fSocket, data, sizeof(data));
        if (got <= 0) throw std::runtime_error("the server closed the connection");
        fBuffer.append(data, static_cast<std::size_t>(got));
    }
    std::size_t Take(std::size_t size) {
        while (fBuffer.size() < size) Fill();
        fBuffer.erase(0, size);
        return size;
    }

    int fSocket = -1;
    std::string fBuffer;
};

TServer& SmallServer() {
    // One instance per enumeration: the request's own cost, not the provider's.
    static TServer server("ZENTA_BENCH_ITEMS=1", 2);
    return server;
}

void SmallRequests(benchmark::State& state) {
    TClient client(SmallServer().Port());
    const std::string call = EnumerateItems();
    std::size_t bytes = 0;
    for (auto _ : state) bytes += client.Ask("EnumerateInstances", call);
    state.SetItemsProcessed(state.iterations());
    state.counters["answer_bytes"] = benchmark::Counter(static_cast<double>(bytes) / static_cast<double>(state.iterations()),
                                                        benchmark::Counter::kAvgThreads);
}
BENCHMARK(SmallRequests)->Threads(1)->Threads(8)->UseRealTime()->MinTime(3);

// One enumeration of 100,000 instances through zentad (its start, the
// request, its stop) against one `zenta ei` run; CPU of every process. Each
// side's figure is the least of the runs: the machine is shared, and other
// work only ever adds.
void LargeEnumeration(benchmark::State& state) {
    const std::string count = "ZENTA_BENCH_ITEMS=" + std::to_string(kLargeCount);
    TUsage server{1e9, 0};
    TUsage tool{1e9, 0};
    std::size_t bytes = 0;
    long frontPeak = 0;
    for (auto _ : state) {
        TServer instance(count, 1);
        {
            TClient client(instance.Port());
            bytes = client.Ask("EnumerateInstances", EnumerateItems());
        }
        frontPeak = std::max(frontPeak, PeakOf(instance.Pid()));
        const TUsage served = instance.Stop();
        const int null = open("/dev/null", O_WRONLY);
        const TUsage ran = Reap(Spawn({ZENTA, "--providers", kModules, "ei", "Bench_Item"}, count, null));
        close(null);
        server.cpuSeconds = std::min(server.cpuSeconds, served.cpuSeconds);
        server.peakKilobytes = std::max(server.peakKilobytes, served.peakKilobytes);
        tool.cpuSeconds = std::min(tool.cpuSeconds, ran.cpuSeconds);
        tool.peakKilobytes = std::max(tool.peakKilobytes, ran.peakKilobytes);
        state.SetIterationTime(served.cpuSeconds);
    }
    state.counters["server_cpu_s"] = server.cpuSeconds;
    state.counters["zenta_cpu_s"] = tool.cpuSeconds;
    state.counters["cpu_ratio"] = server.cpuSeconds / tool.cpuSeconds;
    state.counters["server_peak_kb"] = static_cast<double>(server.peakKilobytes);
    state.counters["front_peak_kb"] = static_cast<double>(frontPeak);
    state.counters["zenta_peak_kb"] = static_cast<double>(tool.peakKilobytes);
    state.counters["memory_ratio"] = static_cast<double>(server.peakKilobytes) / static_cast<double>(tool.peakKilobytes);
    state.counters["answer_mb"] = static_cast<double>(bytes) / 1e6;
}
BENCHMARK(LargeEnumeration)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
