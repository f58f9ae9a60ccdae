#include "TCIMXMLDocument.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <set>
#include <sstream>

#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

bool FileExists(const std::string& path) {
    struct stat info;
    return ::stat(path.c_str(), &info) == 0;
}

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
    return text;
}

bool IsOneOf(const std::string& name, const std::set<std::string>& names) {
    return names.count(name) != 0;
}

// Elements that only wrap the items (and their paths, which the populator
// does not need: classes and instances carry their own names).
const std::set<std::string> kContainers = {
    "DECLARATION",       "DECLGROUP",        "DECLGROUP.WITHNAME",        "DECLGROUP.WITHPATH",
    "VALUE.OBJECT",      "VALUE.NAMEDOBJECT", "VALUE.OBJECTWITHPATH",     "VALUE.OBJECTWITHLOCALPATH",
    "VALUE.NAMEDINSTANCE"};
const std::set<std::string> kPaths = {"LOCALNAMESPACEPATH", "NAMESPACEPATH", "INSTANCENAME", "INSTANCEPATH",
                                      "LOCALINSTANCEPATH",  "CLASSPATH",     "LOCALCLASSPATH", "CLASSNAME"};

}  // namespace

bool TCIMXMLDocument::Load() {
    if (!FileExists(fPath)) return false;
    std::ifstream in(fPath.c_str(), std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    if (!in) FailAtOffset(-1, "the file cannot be read");
    fText = content.str();
    for (std::size_t i = 0; i < fText.size(); ++i) {
        if (fText[i] == '\n') fNewlines.push_back(i);
    }
    pugi::xml_parse_result result = fDocument.load_buffer(fText.data(), fText.size(),
                                                          pugi::parse_default | pugi::parse_ws_pcdata_single);
    if (!result) FailAtOffset(result.offset, std::string("malformed XML: ") + result.description());
    if (!IsElement(GetRoot(), "CIM")) Fail(GetRoot(), "the document element is not CIM");
    return true;
}

int TCIMXMLDocument::LineOf(pugi::xml_node node) const {
    const std::ptrdiff_t offset = node.offset_debug();
    if (offset < 0) return 0;
    return 1 + static_cast<int>(std::lower_bound(fNewlines.begin(), fNewlines.end(), static_cast<std::size_t>(offset)) -
                                fNewlines.begin());
}

void TCIMXMLDocument::FailAtOffset(std::ptrdiff_t offset, const std::string& reason) const {
    std::ostringstream message;
    message << fPath << ":";
    if (offset >= 0) {
        message << 1 + (std::lower_bound(fNewlines.begin(), fNewlines.end(), static_cast<std::size_t>(offset)) -
                        fNewlines.begin());
    } else {
        message << 0;
    }
    message << ": " << reason;
    throw TZENTAException(TZENTAStatusCode::kInvalidDocument, message.str());
}

void TCIMXMLDocument::Fail(pugi::xml_node at, const std::string& reason) const {
    FailAtOffset(at ? at.offset_debug() : -1, reason);
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
    Collect(GetRoot(), items);
    return items;
}

void TCIMXMLDocument::Collect(pugi::xml_node container, TItems& items) const {
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
            Collect(child, items);
        } else if (!IsOneOf(name, kPaths)) {
            Fail(child, "unknown element " + name + " where a declaration, class or instance is expected");
        }
    }
}

}  // namespace NVURZENTA20
