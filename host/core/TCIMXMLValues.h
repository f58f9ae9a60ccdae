// Values of CIM-XML documents: VALUE text parsed as a declared type,
// VALUE.ARRAY, VALUE.NULL and VALUE.REFERENCE (with its instance-name
// forms).
#ifndef ZENTA_HOST_CORE_TCIMXMLVALUES_H
#define ZENTA_HOST_CORE_TCIMXMLVALUES_H

#include <string>

#include <boost/shared_ptr.hpp>
#include <pugixml.hpp>

#include "TCIMValue.h"
#include "TCIMXMLDocument.h"

namespace NVURZENTA20 {

class ICIMNamespace;

// Parses value text as a scalar of `type` (not a reference): booleans
// TRUE/FALSE in any case, integers in decimal or 0x-hex within the width of
// the type, reals, one char16 character, CIM date-times and strings as
// they are. False, with `reason` set, when the text does not fit.
bool ParseValueText(TCIMValue::TCIMType type, const std::string& text, TCIMValue& value, std::string& reason);

class TCIMXMLValueReader {
public:
    // `ns` resolves the classes that references name, so that key values
    // get the types their key properties are declared with.
    TCIMXMLValueReader(const TCIMXMLDocument& document, boost::shared_ptr<ICIMNamespace> ns)
        : fDocument(document), fNamespace(ns) {}

    // The value `holder` (a PROPERTY*, QUALIFIER* or declaration element)
    // contains: a VALUE, VALUE.ARRAY or VALUE.REFERENCE child as `isArray`
    // and `type` require, or a null of the type when it has none.
    TCIMValue ReadContainedValue(pugi::xml_node holder, TCIMValue::TCIMType type, bool isArray) const;
    // A VALUE.REFERENCE element.
    TCIMValue ReadReference(pugi::xml_node element) const;

private:
    TCIMValue ReadScalar(pugi::xml_node value, TCIMValue::TCIMType type) const;
    TCIMValue ReadArray(pugi::xml_node array, TCIMValue::TCIMType type) const;
    void ReadInstanceName(pugi::xml_node name, TCIMReference& reference) const;
    TCIMValue ReadKeyValue(pugi::xml_node keyValue, const std::string& className, const std::string& keyName) const;

    const TCIMXMLDocument& fDocument;
    boost::shared_ptr<ICIMNamespace> fNamespace;
};

TCIMValue NullOf(TCIMValue::TCIMType type, bool isArray);

}  // namespace NVURZENTA20

#endif
