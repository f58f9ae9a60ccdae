#include "Answer.h"

void TOutputBuffer::Flush() {
    if (fText.empty()) return;
    fSink.Write(fText.data(), fText.size());
    fText.clear();
}
