#include "Responses.h"

#include <cstdio>
#include <ostream>  // the Beast header below uses std::ostream without including it

#include <boost/beast/http/status.hpp>

#include "CimXml.h"

namespace {

const char kDocumentStart[] = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">";

std::string ResponseStart(const TCimCall& call) {
    std::string text = kDocumentStart;
    text += "<MESSAGE";
    AppendXmlAttribute(text, "ID", call.messageId);
    text += " PROTOCOLVERSION=\"1.0\"><SIMPLERSP><";
    text += call.intrinsic ? "IMETHODRESPONSE" : "METHODRESPONSE";
    AppendXmlAttribute(text, "NAME", call.methodName);
    text += '>';
    return text;
}

std::string ResponseEnd(const TCimCall& call) {
    return std::string("</") + (call.intrinsic ? "IMETHODRESPONSE" : "METHODRESPONSE") +
           "></SIMPLERSP></MESSAGE></CIM>\n";
}

}  // namespace

std::string EnvelopeStart(const TCimCall& call) {
    return ResponseStart(call) + (call.intrinsic ? "<IRETURNVALUE>" : "");
}

std::string EnvelopeEnd(const TCimCall& call) {
    return (call.intrinsic ? "</IRETURNVALUE>" : "") + ResponseEnd(call);
}

std::string ErrorDocument(const TCimCall& call, ECimStatus status, const std::string& description) {
    std::string text = ResponseStart(call);
    AppendErrorElement(text, static_cast<int>(status), description);
    return text + ResponseEnd(call);
}

std::string HeadText(int status, const THeaderFields& fields) {
    const auto reason = boost::beast::http::obsolete_reason(static_cast<boost::beast::http::status>(status));
    std::string text = "HTTP/1.1 " + std::to_string(status) + " " + std::string(reason.data(), reason.size()) + "\r\n";
    for (const auto& field : fields) text += field.first + ": " + field.second + "\r\n";
    return text + "\r\n";
}

std::string HeaderValue(const std::string& text) {
    std::string value;
    for (const char ch : text) {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (c < 0x20 || c >= 0x7F || c == '%') {
            char escaped[4];
            std::snprintf(escaped, sizeof(escaped), "%%%02X", c);
            value += escaped;
        } else {
            value += ch;
        }
    }
    return value;
}

std::string ChunkHead(std::size_t size) {
    char head[24];
    std::snprintf(head, sizeof(head), "%zx\r\n", size);
    return head;
}

std::string LastChunkText(const THeaderFields& trailers) {
    std::string text = "0\r\n";
    for (const auto& field : trailers) text += field.first + ": " + field.second + "\r\n";
    return text + "\r\n";
}
