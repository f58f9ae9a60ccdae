// The writer of each answer format.
#ifndef ZENTA_OPS_ANSWERFORMATS_H
#define ZENTA_OPS_ANSWERFORMATS_H

#include <memory>
#include <string>

#include "Answer.h"
#include "Request.h"

std::unique_ptr<IAnswerWriter> MakeAnswerWriter(EFormat format, TOutputBuffer& out, const std::string& servedNamespace);

#endif
