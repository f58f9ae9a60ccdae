/* Reading the running system: /proc and uname(2). Plain C, no CMPI. */
#define _DEFAULT_SOURCE

#include "SystemData.h"

#include <ctype.h>
#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* The whole of a (small, virtual) file, NUL-terminated, or NULL. */
char* readWholeFile(const char* path, size_t* length) {
    FILE* file = fopen(path, "r");
    char* text = NULL;
    size_t size = 0;
    size_t capacity = 0;
    size_t count;
    if (file == NULL) return NULL;
    do {
        if (capacity - size < 1024) {
            char* larger = realloc(text, capacity + 4096);
            if (larger == NULL) {
                free(text);
                fclose(file);
                return NULL;
            }
            text = larger;
            capacity += 4096;
        }
        count = fread(text + size, 1, capacity - size - 1, file);
        size += count;
    } while (count > 0);
    if (ferror(file)) {
        free(text);
        text = NULL;
    } else {
        text[size] = '\0';
        if (length != NULL) *length = size;
    }
    fclose(file);
    return text;
}

/* The number after `label` in a "label value" file such as /proc/stat. */
int readLabelledNumber(const char* path, const char* label, unsigned long long* value) {
    char* text = readWholeFile(path, NULL);
    const char* at;
    size_t labelLength = strlen(label);
    int found = -1;
    if (text == NULL) return -1;
    for (at = text; at != NULL && *at != '\0'; at = strchr(at, '\n'), at = at != NULL ? at + 1 : NULL) {
        if (strncmp(at, label, labelLength) == 0 && sscanf(at + labelLength, "%llu", value) == 1) {
            found = 0;
            break;
        }
    }
    free(text);
    return found;
}

int isProcessDirectory(const char* name) {
    if (*name == '\0') return 0;
    for (; *name != '\0'; ++name) {
        if (!isdigit((unsigned char)*name)) return 0;
    }
    return 1;
}

/* 0 when the process exists and /proc/<pid>/stat could be read. */
int readProcess(unsigned pid, ProcessInfo* info) {
    char path[64];
    char* text;
    const char* open;
    const char* close;
    size_t nameLength;
    int parent = 0;
    int fields;
    snprintf(path, sizeof(path), "/proc/%u/stat", (unsigned)pid);
    text = readWholeFile(path, NULL);
    if (text == NULL) return -1;
    /* "pid (comm) state ppid ..."; comm may hold blanks and parentheses. */
    open = strchr(text, '(');
    close = strrchr(text, ')');
    if (open == NULL || close == NULL || close < open) {
        free(text);
        return -1;
    }
    nameLength = (size_t)(close - open - 1);
    if (nameLength >= sizeof(info->name)) nameLength = sizeof(info->name) - 1;
    memcpy(info->name, open + 1, nameLength);
    info->name[nameLength] = '\0';
    info->pid = pid;
    fields = sscanf(close + 1,
                    " %c %d %*d %*d %*d %*d %*u %*u %*u %*u %*u %*u %*u %*d %*d %*d %*d %*d %*d %llu %*u %lld",
                    &info->state, &parent, &info->startTicks, &info->residentPages);
    free(text);
    info->parent = parent > 0 ? (unsigned)parent : 0;
    return fields == 4 ? 0 : -1;
}

const char* stateName(char state) {
    switch (state) {
        case 'R': return "Running";
        case 'S': return "Sleeping";
        case 'D': return "Waiting";
        case 'Z': return "Zombie";
        case 'T': return "Stopped";
        case 't': return "Traced";
        case 'X': return "Dead";
        case 'I': return "Idle";
        default: return "Unknown";
    }
}

unsigned long long bootTime(void) {
    unsigned long long seconds = 0;
    readLabelledNumber("/proc/stat", "btime", &seconds);
    return seconds;
}

/* CIM date-time text "yyyymmddhhmmss.mmmmmmsutc" in local time. */
void formatDateTime(time_t seconds, long microseconds, char* text, size_t size) {
    struct tm local;
    long offset;
    localtime_r(&seconds, &local);
    offset = local.tm_gmtoff / 60;
    snprintf(text, size, "%04d%02d%02d%02d%02d%02d.%06ld%c%03ld", local.tm_year + 1900, local.tm_mon + 1,
             local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, microseconds, offset < 0 ? '-' : '+',
             labs(offset));
}

unsigned countProcesses(void) {
    unsigned count = 0;
    struct dirent* entry;
    DIR* proc = opendir("/proc");
    if (proc == NULL) return 0;
    while ((entry = readdir(proc)) != NULL) {
        if (isProcessDirectory(entry->d_name)) ++count;
    }
    closedir(proc);
    return count;
}

/* The arguments of /proc/<pid>/cmdline (NUL-separated) joined with
 * `separator`; NULL when the process is gone. Kernel threads have none. */
char* joinedCommandLine(unsigned pid, const char* separator) {
    char path[64];
    size_t length = 0;
    size_t separatorLength = strlen(separator);
    size_t arguments = 0;
    size_t i;
    char* raw;
    char* joined;
    char* out;
    snprintf(path, sizeof(path), "/proc/%u/cmdline", (unsigned)pid);
    raw = readWholeFile(path, &length);
    if (raw == NULL) return NULL;
    if (length > 0 && raw[length - 1] == '\0') --length;
    for (i = 0; i < length; ++i) {
        if (raw[i] == '\0') ++arguments;
    }
    joined = malloc(length + arguments * separatorLength + 1);
    if (joined == NULL) {
        free(raw);
        return NULL;
    }
    out = joined;
    for (i = 0; i < length; ++i) {
        if (raw[i] == '\0') {
            memcpy(out, separator, separatorLength);
            out += separatorLength;
        } else {
            *out++ = raw[i];
        }
    }
    *out = '\0';
    free(raw);
    return joined;
}
