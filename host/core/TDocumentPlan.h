// What a document says, before anything is checked against a namespace:
// qualifier declarations, classes and instances with their values as
// written, each item with the place it was written at. Both document
// readers (CIM-XML and MOF) produce this form; one definer checks it
// against the namespace and defines it (TDocumentDefiner), so the rules
// for types, flavors, keys and propagation exist once.
#ifndef ZENTA_HOST_CORE_TDOCUMENTPLAN_H
#define ZENTA_HOST_CORE_TDOCUMENTPLAN_H

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ICIMQualifierDecl.h"
#include "TCIMValue.h"

namespace NVURZENTA20 {

// A place in a document: "<file>:<line>[:<column>]". The file name is
// shared by every item read from that file.
struct TSourceLocation {
    std::shared_ptr<const std::string> file;
    int line = 0;
    int column = 0;  // 0: not known (CIM-XML names lines only)

    std::string ToString() const;
};

// Throws TZENTAException (kInvalidDocument): "<location>: <reason>".
[[noreturn]] void FailAt(const TSourceLocation& at, const std::string& reason);

// A value as the document writes it; its type comes from the declaration
// it is given to.
struct TRawValue {
    enum EKind {
        kAbsent,     // no value written: a typed null
        kNull,       // NULL / VALUE.NULL
        kText,       // CIM-XML value text: read as whatever type is declared
        kString,     // MOF string literal
        kInteger,    // MOF integer literal, as decimal text with its sign
        kReal,       // MOF real literal
        kBoolean,    // MOF TRUE/FALSE, as "TRUE"/"FALSE"
        kChar,       // MOF char16 literal, as UTF-8
        kArray,      // elements
        kReference,  // CIM-XML VALUE.REFERENCE: class, namespace and keys
        kAlias       // MOF $alias of an instance of the same document
    };

    EKind kind = kAbsent;
    std::string text;  // scalars; the class of a reference; the alias name
    std::string referenceNamespace;
    // kReference: the key bindings; kText keys also carry the CIM-XML
    // TYPE (typeHint) and VALUETYPE (valueType) attributes.
    std::vector<std::pair<std::string, TRawValue> > keys;
    std::vector<TRawValue> elements;
    std::string typeHint;
    std::string valueType;
    TSourceLocation at;
};

struct TQualifierDeclPlan {
    TSourceLocation at;
    std::string name;
    TCIMValue::TCIMType type;
    bool isArray = false;
    TRawValue defaultValue;
    ICIMQualifierDecl::EScope scope = ICIMQualifierDecl::kScopeAny;
    ICIMQualifierDecl::EFlavor flavor = ICIMQualifierDecl::kFlavorNone;  // only the flavors written
};

struct TQualifierPlan {
    TSourceLocation at;
    std::string name;
    TRawValue value;
    bool hasType = false;  // the document names the type (CIM-XML TYPE)
    TCIMValue::TCIMType type;
    ICIMQualifierDecl::EFlavor flavor = ICIMQualifierDecl::kFlavorNone;  // only the flavors written
};
typedef std::vector<TQualifierPlan> TQualifierPlans;

// A property, reference or parameter: `type` kReference with
// `referenceClass` for references.
struct TFeaturePlan {
    TSourceLocation at;
    std::string name;
    TCIMValue::TCIMType type;
    bool isArray = false;
    std::string referenceClass;
    TRawValue defaultValue;
    TQualifierPlans qualifiers;
};

struct TMethodPlan {
    TSourceLocation at;
    std::string name;
    TCIMValue::TCIMType returnType;
    TQualifierPlans qualifiers;
    std::vector<TFeaturePlan> parameters;
};

struct TClassPlan {
    TSourceLocation at;
    std::string name;
    std::string superClass;
    TQualifierPlans qualifiers;
    std::vector<TFeaturePlan> properties;
    std::vector<TMethodPlan> methods;
};

struct TPropertyValuePlan {
    TSourceLocation at;
    std::string name;
    TRawValue value;
    // What the document says of the property's form, checked against the
    // class: CIM-XML names the element (PROPERTY, PROPERTY.ARRAY,
    // PROPERTY.REFERENCE) and may name the type; MOF says nothing.
    bool hasForm = false;
    TCIMValue::TCIMType type;  // kNone: not written
    bool isArray = false;
    bool isReference = false;
};

struct TInstancePlan {
    TSourceLocation at;
    std::string className;
    std::string alias;
    std::vector<TPropertyValuePlan> properties;
};

struct TDocumentPlan {
    std::string path;  // the document read (its includes are named by the items)
    std::vector<TQualifierDeclPlan> qualifierDecls;
    std::vector<TClassPlan> classes;
    std::vector<TInstancePlan> instances;
};

// CIM names compare without regard to ASCII case.
std::string NameKey(std::string name);

}  // namespace NVURZENTA20

#endif
