// The tool's answers for scripts: one JSON document whose field names do
// not change, with typed values, written as the elements arrive.
#ifndef ZENTA_OPS_JSONANSWER_H
#define ZENTA_OPS_JSONANSWER_H

#include "Answer.h"
#include "JsonEmitter.h"

class TJsonAnswer : public IAnswerWriter {
public:
    explicit TJsonAnswer(TOutputBuffer& out) : fOut(out), fJson(out.Text()) {}

    void Begin(EAnswerKind kind) override;
    void Provider(const TProviderView& provider) override;
    void ClassSummary(const TClassSummary& summary) override;
    void ClassName(const std::string& name) override;
    void Class(const TClassView& cls) override;
    void Instance(const TInstanceView& instance) override;
    void Path(const TPathView& path) override;
    void Method(const TMethodView& method) override;
    void QualifierDecl(const NVURZENTA20::ICIMQualifierDecl& decl) override;
    void End() override;

private:
    void Qualifiers(const NVURZENTA20::ICIMNamedElement& element);
    void OptionalName(const std::string& name);

    TOutputBuffer& fOut;
    TJsonEmitter fJson;
    bool fInList = false;  // the answer is a list under one key
};

#endif
