// The pieces of CIM-XML (the WBEM protocol's document format) that the
// answer writer and the server share: escaped text, typed values, object
// paths, qualifiers and error elements. Everything appends to a string, so
// that an answer grows in one buffer without temporaries per element.
#ifndef ZENTA_OPS_CIMXML_H
#define ZENTA_OPS_CIMXML_H

#include <string>
#include <string_view>

#include "Answer.h"
#include "ICIMNamedElement.h"
#include "TCIMReference.h"
#include "TCIMValue.h"

// Text as XML character data or attribute value: markup characters become
// entities, line ends and tabs character references (so that they survive
// attribute normalisation), characters XML 1.0 cannot carry at all (other
// control characters, invalid UTF-8) U+FFFD.
void AppendXmlEscaped(std::string& out, std::string_view text);

// ` NAME="escaped value"`.
void AppendXmlAttribute(std::string& out, const char* name, const std::string& value);

// The TYPE attribute's word for a value type: "uint32", "string", ...
// (empty for an untyped value).
const char* CimXmlTypeName(NVURZENTA20::TCIMValue::TCIMType type);

// A value as the content of a property, parameter or qualifier: <VALUE>,
// <VALUE.ARRAY> (null elements as <VALUE.NULL/>), <VALUE.REFERENCE> or
// <VALUE.REFARRAY>; nothing for a null value.
void AppendCimXmlValue(std::string& out, const NVURZENTA20::TCIMValue& value);
// True when `value` is written as one <VALUE> element.
bool IsPlainCimXmlScalar(const NVURZENTA20::TCIMValue& value);
// The text inside that <VALUE>, escaped.
void AppendCimXmlScalarText(std::string& out, const NVURZENTA20::TCIMValue& value);

// <LOCALNAMESPACEPATH> of "root/cimv2": one <NAMESPACE> per segment.
void AppendLocalNamespacePath(std::string& out, const std::string& nameSpace);
// <NAMESPACEPATH><HOST>host</HOST><LOCALNAMESPACEPATH>...
void AppendNamespacePath(std::string& out, const std::string& host, const std::string& nameSpace);

// <INSTANCENAME CLASSNAME=...> with one <KEYBINDING> per key.
void AppendInstanceName(std::string& out, const std::string& className, const TNamedValues& keys);
// Its parts, for a writer that keeps what depends on the class alone:
// `<INSTANCENAME CLASSNAME="...">`, then the KEYBINDINGs.
void AppendInstanceNameOpening(std::string& out, const std::string& className);
void AppendKeyBindings(std::string& out, const TNamedValues& keys);
// <INSTANCEPATH>: the instance name after `namespacePath`, a
// NAMESPACEPATH as AppendNamespacePath writes it (made once per answer).
void AppendInstancePath(std::string& out, const std::string& namespacePath, const std::string& className,
                        const TNamedValues& keys);

// <QUALIFIER NAME TYPE [PROPAGATED]> with flavours and value, for each
// qualifier of `element`.
void AppendQualifiers(std::string& out, const NVURZENTA20::ICIMNamedElement& element);

// <ERROR CODE="6" DESCRIPTION="..."/>
void AppendErrorElement(std::string& out, int code, const std::string& description);

#endif
