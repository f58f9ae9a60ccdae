#include "AnswerFormats.h"

#include "JsonAnswer.h"
#include "TextAnswer.h"

std::unique_ptr<IAnswerWriter> MakeAnswerWriter(EFormat format, TOutputBuffer& out, const std::string&) {
    switch (format) {
        case EFormat::kJson: return std::unique_ptr<IAnswerWriter>(new TJsonAnswer(out));
        case EFormat::kText:
        default: return std::unique_ptr<IAnswerWriter>(new TTextAnswer(out));
    }
}
