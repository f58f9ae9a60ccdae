/* Reading the running system from /proc and uname(2), for the providers of
 * the System module. Every reader copes with processes that vanish while
 * they are read: it reports failure and the caller skips the process. */
#ifndef ZENTA_PROVIDERS_SYSTEMDATA_H
#define ZENTA_PROVIDERS_SYSTEMDATA_H

#include <stddef.h>
#include <time.h>

typedef struct {
    unsigned pid;
    char name[64];
    char state;                    /* as in /proc/<pid>/stat: R, S, D, Z, ... */
    unsigned parent;
    unsigned long long startTicks; /* clock ticks after boot */
    long long residentPages;
} ProcessInfo;

/* The whole of a small (virtual) file, NUL-terminated, malloc'ed; NULL
 * when it cannot be read. `length` (may be NULL) receives its size. */
char* readWholeFile(const char* path, size_t* length);
/* The number after `label` at the start of a line, as in /proc/stat or
 * /proc/meminfo. 0 on success. */
int readLabelledNumber(const char* path, const char* label, unsigned long long* value);
/* True for a directory name of /proc that is a process id. */
int isProcessDirectory(const char* name);
/* 0 when the process exists and its /proc/<pid>/stat was read. */
int readProcess(unsigned pid, ProcessInfo* info);
/* "Running", "Sleeping", ... for a state letter. */
const char* stateName(char state);
/* Seconds since the epoch at boot (btime of /proc/stat); 0 if unknown. */
unsigned long long bootTime(void);
/* CIM date-time text "yyyymmddhhmmss.mmmmmmsutc" of a moment, in local
 * time; `size` of at least 26. */
void formatDateTime(time_t seconds, long microseconds, char* text, size_t size);
/* How many processes /proc lists. */
unsigned countProcesses(void);
/* The arguments of a process (/proc/<pid>/cmdline) joined with
 * `separator`, malloc'ed; NULL when the process is gone. */
char* joinedCommandLine(unsigned pid, const char* separator);

#endif
