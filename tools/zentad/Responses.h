// The texts of the server's answers, apart from any connection: the
// CIM-XML envelope around an answer's elements, error documents, HTTP
// heads and header values. Pure functions, so that they are tested alone.
#ifndef ZENTA_ZENTAD_RESPONSES_H
#define ZENTA_ZENTAD_RESPONSES_H

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "CimStatus.h"
#include "CimXmlRequest.h"

// Everything before the answer's elements, up to <IRETURNVALUE> (or the
// METHODRESPONSE start of a method call).
std::string EnvelopeStart(const TCimCall& call);
// Everything after them.
std::string EnvelopeEnd(const TCimCall& call);
// A whole response document holding <ERROR CODE DESCRIPTION/>.
std::string ErrorDocument(const TCimCall& call, ECimStatus status, const std::string& description);

typedef std::vector<std::pair<std::string, std::string> > THeaderFields;

// "HTTP/1.1 200 OK\r\nName: value\r\n...\r\n" (the empty line included).
std::string HeadText(int status, const THeaderFields& fields);

// A header value made safe: control characters, non-ASCII bytes and '%'
// percent-encoded, so that no text of a client or provider can end a
// header or start another.
std::string HeaderValue(const std::string& text);

// The size line of a chunk of `size` bytes, and the last chunk with
// trailer fields.
std::string ChunkHead(std::size_t size);
std::string LastChunkText(const THeaderFields& trailers);

#endif
