// A CIM-XML document (DSP0201) as the namespace populator reads it: the
// parsed tree, failures that name the file and line, the typed attributes
// and the declaration items wherever they stand under CIM/DECLARATION.
#ifndef ZENTA_HOST_CORE_TCIMXMLDOCUMENT_H
#define ZENTA_HOST_CORE_TCIMXMLDOCUMENT_H

#include <cstddef>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "TCIMValue.h"

namespace NVURZENTA20 {

class TCIMXMLDocument {
public:
    explicit TCIMXMLDocument(const std::string& path) : fPath(path) {}

    // False when there is no file at the path; throws kInvalidDocument when
    // it cannot be read or is not well-formed XML with a CIM root.
    bool Load();

    const std::string& GetPath() const { return fPath; }
    pugi::xml_node GetRoot() const { return fDocument.document_element(); }

    // Throws TZENTAException (kInvalidDocument): "<path>:<line>: <reason>".
    [[noreturn]] void Fail(pugi::xml_node at, const std::string& reason) const;
    [[noreturn]] void FailAtOffset(std::ptrdiff_t offset, const std::string& reason) const;
    int LineOf(pugi::xml_node node) const;

    // Attribute readers that fail with the node's line.
    std::string RequireAttribute(pugi::xml_node node, const char* name) const;
    // "true"/"false" in any case; `fallback` when absent.
    bool BoolAttribute(pugi::xml_node node, const char* name, bool fallback) const;
    // A CIM type name other than "reference" (references have elements of
    // their own).
    TCIMValue::TCIMType TypeAttribute(pugi::xml_node node, const char* name) const;

    // The QUALIFIER.DECLARATION, CLASS and INSTANCE elements of the
    // document in document order, looked for through the DECLARATION,
    // DECLGROUP* and VALUE.*OBJECT* wrappers. An unknown element there
    // fails.
    struct TItems {
        std::vector<pugi::xml_node> qualifierDecls;
        std::vector<pugi::xml_node> classes;
        std::vector<pugi::xml_node> instances;
    };
    TItems CollectItems() const;

private:
    void Collect(pugi::xml_node container, TItems& items) const;

    std::string fPath;
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
