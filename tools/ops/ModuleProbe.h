// Loads modules the way the host will (after their ELF headers passed), but
// in a child process and with every symbol bound at once: a module with an
// undefined symbol, or whose initialisation crashes, fails here with the
// loader's own reason instead of killing the host at its first call.
#ifndef ZENTA_OPS_MODULEPROBE_H
#define ZENTA_OPS_MODULEPROBE_H

#include <string>
#include <vector>

struct TProbeVerdict {
    bool loaded = false;
    std::string problem;  // the loader's message, or the signal that ended the probe
};

// One verdict per path, in order. A probe that dies on one module goes on
// with the next in a fresh process.
std::vector<TProbeVerdict> ProbeModules(const std::vector<std::string>& paths);

// The probe's side: called first thing in main(); returns the exit status
// when the process was started as a probe, and -1 otherwise.
int RunProbeIfAsked(int argc, char** argv);

#endif
