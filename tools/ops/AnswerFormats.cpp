#include "AnswerFormats.h"

#include "CimXmlAnswer.h"
#include "JsonAnswer.h"
#include "TextAnswer.h"

std::unique_ptr<IAnswerWriter> MakeAnswerWriter(const TRequest& request, TOutputBuffer& out,
                                                const std::string& servedNamespace) {
    switch (request.format) {
        case EFormat::kJson: return std::unique_ptr<IAnswerWriter>(new TJsonAnswer(out));
        case EFormat::kCimXml:
            return std::unique_ptr<IAnswerWriter>(
                new TCimXmlAnswer(out, request.verb, LocalHostName(), servedNamespace));
        case EFormat::kText:
        default: return std::unique_ptr<IAnswerWriter>(new TTextAnswer(out));
    }
}
