#include "TCIMXMLDocument.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
    return text;
}

bool IsOneOf(const std::string& name, const std::set<std::string>& names) {
    return names.count(name) != 0;
}

// Elements that only wrap the items (and their paths, which the reader
// does not need: classes and instances carry their own names).
const std::set<std::string> kContainers = {
    "DECLARATION",       "DECLGROUP",        "DECLGROUP.WITHNAME",        "DECLGROUP.WITHPATH",
    "VALUE.OBJECT",      "VALUE.NAMEDOBJECT", "VALUE.OBJECTWITHPATH",     "VALUE.OBJECTWITHLOCALPATH",
    "VALUE.NAMEDINSTANCE"};
const std::set<std::string> kPaths = {"LOCALNAMESPACEPATH", "NAMESPACEPATH", "INSTANCENAME", "INSTANCEPATH",
                                      "LOCALINSTANCEPATH",  "CLASSPATH",     "LOCALCLASSPATH", "CLASSNAME"};

}  // namespace

TCIMXMLDocument::TCIMXMLDocument(const std::string& path, const TDocumentLimits& limits)
    : fPath(std::make_shared<const std::string>(path)), fLimits(limits) {}

void TCIMXMLDocument::Parse(std::string text) {
    fText.swap(text);
    fNewlines.clear();
    for (std::size_t i = 0; i < fText.size(); ++i) {
        if (fText[i] == '\n') fNewlines.push_back(i);
    }
    pugi::xml_parse_result result = fDocument.load_buffer(fText.data(), fText.size(),
                                                          pugi::parse_default | pugi::parse_ws_pcdata_single);
    if (!result) FailAt(LocationAt(result.offset), std::string("malformed XML: ") + result.description());
    if (!IsElement(GetRoot(), "CIM")) Fail(GetRoot(), "the document element is not CIM");
}

TSourceLocation TCIMXMLDocument::LocationAt(std::ptrdiff_t offset) const {
    TSourceLocation at;
    at.file = fPath;
    if (offset < 0) return at;
    const std::size_t byte = static_cast<std::size_t>(offset);
    const auto next = std::lower_bound(fNewlines.begin(), fNewlines.end(), byte);
    at.line = 1 + static_cast<int>(next - fNewlines.begin());
    const std::size_t lineStart = next == fNewlines.begin() ? 0 : *(next - 1) + 1;
    at.column = 1 + static_cast<int>(byte - lineStart);
    return at;
}

TSourceLocation TCIMXMLDocument::LocationOf(pugi::xml_node node) const {
    return LocationAt(node ? node.offset_debug() : -1);
}

void TCIMXMLDocument::Fail(pugi::xml_node at, const std::string& reason) const {
    FailAt(LocationOf(at), reason);
}

std::string TCIMXMLDocument::RequireAttribute(pugi::xml_node node, const char* name) const {
    pugi::xml_attribute attribute = node.attribute(name);
    if (!attribute || std::string(attribute.value()).empty()) {
        Fail(node, std::string(node.name()) + " has no " + name + " attribute");
    }
    return attribute.value();
}

bool TCIMXMLDocument::BoolAttribute(pugi::xml_node node, const char* name, bool fallback) const {
    pugi::xml_attribute attribute = node.attribute(name);
    if (!attribute) return fallback;
    const std::string value = Lower(attribute.value());
    if (value == "true") return true;
    if (value == "false") return false;
    Fail(node, std::string("attribute ") + name + " of " + node.name() + " is neither true nor false");
}

TCIMValue::TCIMType TCIMXMLDocument::TypeAttribute(pugi::xml_node node, const char* name) const {
    const std::string text = RequireAttribute(node, name);
    TCIMValue::TCIMType::ECIMType type = TCIMValue::TCIMType::kNone;
    if (!TCIMValue::TCIMType::FromName(text, type) || type == TCIMValue::TCIMType::kReference) {
        Fail(node, "unknown type " + text);
    }
    return type;
}

TCIMXMLDocument::TItems TCIMXMLDocument::CollectItems() const {
    TItems items;
    Collect(GetRoot(), items, 0);
    return items;
}

void TCIMXMLDocument::Collect(pugi::xml_node container, TItems& items, int depth) const {
    if (depth > fLimits.maxNesting) {
        Fail(container, "wrappers are nested more than " + std::to_string(fLimits.maxNesting) + " deep");
    }
    for (pugi::xml_node child = container.first_child(); child; child = child.next_sibling()) {
        if (child.type() != pugi::node_element) continue;
        const std::string name = child.name();
        if (name == "QUALIFIER.DECLARATION") {
            items.qualifierDecls.push_back(child);
        } else if (name == "CLASS") {
            items.classes.push_back(child);
        } else if (name == "INSTANCE") {
            items.instances.push_back(child);
        } else if (IsOneOf(name, kContainers)) {
            Collect(child, items, depth + 1);
        } else if (!IsOneOf(name, kPaths)) {
            Fail(child, "unknown element " + name + " where a declaration, class or instance is expected");
        }
    }
}

}  // namespace NVURZENTA20
