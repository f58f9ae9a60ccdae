// The writer of each answer format.
#ifndef ZENTA_OPS_ANSWERFORMATS_H
#define ZENTA_OPS_ANSWERFORMATS_H

#include <memory>
#include <string>

#include "Answer.h"
#include "Request.h"

// The writer of `request.format` (the CIM-XML writer shapes its elements by
// the request's verb).
std::unique_ptr<IAnswerWriter> MakeAnswerWriter(const TRequest& request, TOutputBuffer& out,
                                                const std::string& servedNamespace);

#endif
