// What a thread worked out from the date-time text it handled last.
// Providers stamp many instances with the same date-time, so checking or
// packing that text is done once and its result kept beside it. An
// aggregate, so that a thread_local of it is zero-initialised without a
// constructor: `thread_local TLastDateTime<F> last = {};`.
#ifndef ZENTA_HOST_CORE_LASTDATETIME_H
#define ZENTA_HOST_CORE_LASTDATETIME_H

#include <cstring>
#include <string>

#include "TCIMDateTime.h"

namespace NVURZENTA20 {

template <class TFacts>
struct TLastDateTime {
    // What was kept for `text`, when `text` is the one handled last.
    const TFacts* Find(const std::string& text) const {
        if (!known || text.size() != sizeof(keptText) || std::memcmp(text.data(), keptText, sizeof(keptText)) != 0) {
            return nullptr;
        }
        return &facts;
    }
    // Only full-length texts are kept.
    void Keep(const std::string& text, const TFacts& worked) {
        if (text.size() != sizeof(keptText)) return;
        std::memcpy(keptText, text.data(), sizeof(keptText));
        facts = worked;
        known = true;
    }

    char keptText[TCIMDateTime::kTextLength];
    TFacts facts;
    bool known;
};

}  // namespace NVURZENTA20

#endif
