// Answers as WBEM clients read them: the CIM-XML elements that go inside
// an intrinsic method's IRETURNVALUE (instances with their names, paths,
// classes, class names, qualifier declarations) or, for a method call, the
// RETURNVALUE and PARAMVALUE elements of its METHODRESPONSE. The server
// writes the envelope around them, so that a request that fails before
// anything was sent can still be answered with an ERROR element instead.
#ifndef ZENTA_OPS_CIMXMLANSWER_H
#define ZENTA_OPS_CIMXMLANSWER_H

#include <map>
#include <string>
#include <vector>

#include "Answer.h"
#include "Request.h"

class TCimXmlAnswer : public IAnswerWriter {
public:
    // `verb` tells instances of an enumeration (VALUE.NAMEDINSTANCE) from
    // those of a walk (VALUE.OBJECTWITHPATH); `host` and `nameSpace` make
    // the full paths that walks answer with.
    TCimXmlAnswer(TOutputBuffer& out, EVerb verb, const std::string& host, const std::string& nameSpace);

    void Begin(EAnswerKind kind) override { fKind = kind; }
    void Provider(const TProviderView& provider) override;
    void ClassSummary(const TClassSummary& summary) override;
    void ClassName(const std::string& name) override;
    void Class(const TClassView& cls) override;
    void Instance(const TInstanceView& instance) override;
    void Path(const TPathView& path) override;
    void Method(const TMethodView& method) override;
    void QualifierDecl(const NVURZENTA20::ICIMQualifierDecl& decl) override;
    void End() override {}
    bool ReadsPathText() const override { return false; }

private:
    void AppendInstance(std::string& out, const TInstanceView& instance);
    void AppendProperty(std::string& out, const TPropertyView& property, const TInstanceView& instance);
    // `<PROPERTY NAME=... TYPE=...>` and the qualifiers asked for: what
    // comes before the value.
    void AppendPropertyOpening(std::string& out, const TPropertyView& property, const TInstanceView& instance);
    // ` EmbeddedObject="object"` for a string property that holds one.
    const char* EmbeddedObjectAttribute(const NVURZENTA20::ICIMPropertyDecl* decl);

    // What a declared property writes around its value depends only on the
    // declaration and the instance's class: made once per request.
    struct TPropertyTags {
        const NVURZENTA20::ICIMPropertyDecl* decl;
        std::string opening;           // <PROPERTY ...> and its qualifiers
        std::string closing;           // </PROPERTY>
        std::string openingWithValue;  // ...<VALUE>, for a scalar
        std::string closingWithValue;  // </VALUE></PROPERTY>
    };
    // What depends on the class alone: `<INSTANCE CLASSNAME="...">`,
    // `<INSTANCENAME CLASSNAME="...">` and its properties' tags.
    struct TClassTags {
        std::string instanceOpening;
        std::string nameOpening;
        std::vector<TPropertyTags> properties;
        std::size_t next = 0;  // properties come in the same order, instance after instance
    };
    // The tags of `property` of the current class.
    const TPropertyTags& TagsOf(const TPropertyView& property, const TInstanceView& instance);
    // Makes the class of the instance being written the current one.
    void UpdateClassTags(const std::string& className);
    std::map<std::string, TClassTags> fClasses;  // by the class name's text: views' strings may move
    TClassTags* fClass = nullptr;
    const std::string* fClassName = nullptr;  // the key of fClass in fClasses

    TOutputBuffer& fOut;
    EVerb fVerb;
    std::string fNamespacePath;  // <NAMESPACEPATH> of the full paths walks answer with
    EAnswerKind fKind = EAnswerKind::kInstances;
};

// The host name that full paths name: this machine's.
std::string LocalHostName();

#endif
