// The tool's readable answers: MOF-style instances and classes, one path or
// name per line, method answers as Name = value; lines.
#ifndef ZENTA_OPS_TEXTANSWER_H
#define ZENTA_OPS_TEXTANSWER_H

#include "Answer.h"

class TTextAnswer : public IAnswerWriter {
public:
    explicit TTextAnswer(TOutputBuffer& out) : fOut(out) {}

    void Begin(EAnswerKind) override {}
    void Provider(const TProviderView& provider) override;
    void ClassSummary(const TClassSummary& summary) override;
    void ClassName(const std::string& name) override;
    void Class(const TClassView& cls) override;
    void Instance(const TInstanceView& instance) override;
    void Path(const TPathView& path) override;
    void Method(const TMethodView& method) override;
    void QualifierDecl(const NVURZENTA20::ICIMQualifierDecl& decl) override;
    void End() override {}

private:
    // Instances and classes are set apart by an empty line.
    void Separate();

    TOutputBuffer& fOut;
    bool fFirstBlock = true;
};

#endif
