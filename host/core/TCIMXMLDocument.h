// A CIM-XML document (DSP0201) as the document reader reads it: the parsed
// tree, failures that name the file, line and column, the typed attributes
// and the declaration items wherever they stand under CIM/DECLARATION.
#ifndef ZENTA_HOST_CORE_TCIMXMLDOCUMENT_H
#define ZENTA_HOST_CORE_TCIMXMLDOCUMENT_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "TCIMValue.h"
#include "TDocumentFile.h"
#include "TDocumentPlan.h"

namespace NVURZENTA20 {

class TCIMXMLDocument {
public:
    TCIMXMLDocument(const std::string& path, const TDocumentLimits& limits = DefaultDocumentLimits());

    // Parses `text` as the document's content; throws kInvalidDocument
    // when it is not well-formed XML with a CIM root.
    void Parse(std::string text);

    const std::string& GetPath() const { return *fPath; }
    const TDocumentLimits& GetLimits() const { return fLimits; }
    pugi::xml_node GetRoot() const { return fDocument.document_element(); }

    // Throws TZENTAException (kInvalidDocument): "<path>:<line>:<column>: <reason>".
    [[noreturn]] void Fail(pugi::xml_node at, const std::string& reason) const;
    TSourceLocation LocationOf(pugi::xml_node node) const;

    // Attribute readers that fail with the node's place.
    std::string RequireAttribute(pugi::xml_node node, const char* name) const;
    // "true"/"false" in any case; `fallback` when absent.
    bool BoolAttribute(pugi::xml_node node, const char* name, bool fallback) const;
    // A CIM type name other than "reference" (references have elements of
    // their own).
    TCIMValue::TCIMType TypeAttribute(pugi::xml_node node, const char* name) const;

    // The QUALIFIER.DECLARATION, CLASS and INSTANCE elements of the
    // document in document order, looked for through the DECLARATION,
    // DECLGROUP* and VALUE.*OBJECT* wrappers. An unknown element there
    // fails, and so do wrappers nested deeper than the limits allow.
    struct TItems {
        std::vector<pugi::xml_node> qualifierDecls;
        std::vector<pugi::xml_node> classes;
        std::vector<pugi::xml_node> instances;
    };
    TItems CollectItems() const;

private:
    TSourceLocation LocationAt(std::ptrdiff_t offset) const;
    void Collect(pugi::xml_node container, TItems& items, int depth) const;

    std::shared_ptr<const std::string> fPath;
    TDocumentLimits fLimits;
    std::string fText;
    std::vector<std::size_t> fNewlines;  // offsets of '\n' in fText
    pugi::xml_document fDocument;
};

// True when `name` is the element name `expected` (CIM-XML names are
// upper case; they are compared exactly).
inline bool IsElement(pugi::xml_node node, const char* expected) {
    return node.type() == pugi::node_element && std::string(node.name()) == expected;
}

}  // namespace NVURZENTA20

#endif
