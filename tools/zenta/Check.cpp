#include "Check.h"

#include <cstdio>

int RunCheck(const TServeOptions& options, int, bool) {
    std::vector<std::string> leftOut;
    TServedDirectory served(options, [&leftOut](const std::string& line) { leftOut.push_back(line); });
    int errors = 0;
    for (const TFinding& finding : served.GetSurvey().GetFindings()) {
        std::printf("%s: %s\n", finding.severity == TFinding::kError ? "error" : "warning", finding.Format().c_str());
        errors += finding.severity == TFinding::kError;
    }
    return errors == 0 ? 0 : 1;
}
