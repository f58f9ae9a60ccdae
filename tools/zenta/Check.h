// zenta check: a provider doctor. It reports every problem it finds in a
// provider directory, one line each ("FILE: problem"), and exits 1 when any
// is an error (0, with a one-line summary, when all is well).
#ifndef ZENTA_TOOL_CHECK_H
#define ZENTA_TOOL_CHECK_H

#include "ServedDirectory.h"

int RunCheck(const TServeOptions& options, int timeoutSeconds, bool json);

#endif
