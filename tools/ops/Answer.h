// An answer is written as it is found: the operations hand each element
// (an instance, a path, a class...) to an answer writer, which formats it
// at once into an output buffer that passes large blocks on. Nothing is
// kept per element, so an answer of any size costs the memory of one.
#ifndef ZENTA_OPS_ANSWER_H
#define ZENTA_OPS_ANSWER_H

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "TCIMValue.h"
#include "ZentaTypes.h"

// Where formatted bytes go: the worker's channel, a string in tests.
class IByteSink {
public:
    virtual ~IByteSink() {}
    virtual void Write(const char* data, std::size_t size) = 0;
};

// Collects formatted text and passes it to the sink in blocks of at least
// `threshold` bytes, so that a small answer reaches the sink whole, at the
// end, and a failure before then can drop it unseen.
class TOutputBuffer {
public:
    TOutputBuffer(IByteSink& sink, std::size_t threshold) : fSink(sink), fThreshold(threshold) {
        fText.reserve(threshold + threshold / 4);
    }

    std::string& Text() { return fText; }
    void Append(const std::string& text) { fText += text; }
    void Append(char c) { fText += c; }
    // Passes the text on when the threshold is reached.
    void Pass() {
        if (fText.size() >= fThreshold) Flush();
    }
    void Flush();
    // Forgets what has not been passed on yet.
    void Drop() { fText.clear(); }

private:
    IByteSink& fSink;
    std::size_t fThreshold;
    std::string fText;
};

typedef std::vector<std::pair<std::string, NVURZENTA20::TCIMValue> > TNamedValues;

// An object path: the class, its key bindings in the class's key order,
// and its text (the form TCIMReference::GetPath writes).
struct TPathView {
    const std::string* className = nullptr;
    const TNamedValues* keys = nullptr;
    const std::string* text = nullptr;  // null for a writer that does not read it
};

struct TPropertyView {
    const std::string* name = nullptr;
    const NVURZENTA20::TCIMValue* value = nullptr;
    const NVURZENTA20::ICIMPropertyDecl* decl = nullptr;  // null when the class does not declare it
};

struct TInstanceView {
    const std::string* className = nullptr;
    TPathView path;
    const std::vector<TPropertyView>* properties = nullptr;  // in declaration order, filtered
    bool includeQualifiers = false;
    bool includeClassOrigin = false;
};

struct TProviderView {
    std::string name;
    std::string module;
    std::string description;
    std::vector<std::string> classes;  // those it offers (not abstract, not hidden)
};

struct TClassSummary {
    std::string name;
    std::string superClass;  // empty for a root class
    std::string provider;    // empty when no provider serves it
    bool isAbstract = false;
    bool isAssociation = false;
};

// How much of a class to show.
struct TClassView {
    const NVURZENTA20::ICIMClass* cls = nullptr;
    bool localOnly = false;
    bool includeQualifiers = true;
    bool includeClassOrigin = false;
    bool hasPropertyList = false;
    const std::vector<std::string>* propertyList = nullptr;
};

struct TMethodView {
    std::string path;
    std::string method;
    NVURZENTA20::TCIMValue returnValue;
    TNamedValues outParameters;  // by name
    // Declarations of the out parameters, by index of outParameters (null
    // when not found).
    std::vector<const NVURZENTA20::ICIMParameterDecl*> outDecls;
};

enum class EAnswerKind {
    kProviders,
    kClassSummaries,
    kClassNames,
    kClasses,
    kClass,  // exactly one class
    kInstances,
    kInstance,  // exactly one instance
    kInstancePaths,
    kObjectPaths,  // paths found by walks: they name their namespace
    kMethod,
    kQualifierDecls,
    kQualifierDecl  // exactly one
};

class IAnswerWriter {
public:
    virtual ~IAnswerWriter() {}
    virtual void Begin(EAnswerKind kind) = 0;
    virtual void Provider(const TProviderView& provider) = 0;
    virtual void ClassSummary(const TClassSummary& summary) = 0;
    virtual void ClassName(const std::string& name) = 0;
    virtual void Class(const TClassView& cls) = 0;
    virtual void Instance(const TInstanceView& instance) = 0;
    virtual void Path(const TPathView& path) = 0;
    virtual void Method(const TMethodView& method) = 0;
    virtual void QualifierDecl(const NVURZENTA20::ICIMQualifierDecl& decl) = 0;
    virtual void End() = 0;
    // Whether the writer reads a path's text; one that writes paths from
    // their keys alone spares the renderer writing it for every instance.
    virtual bool ReadsPathText() const { return true; }
};

#endif
