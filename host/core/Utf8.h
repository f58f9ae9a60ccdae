// One UTF-16 code unit (a char16 value, a \x escape) as UTF-8.
#ifndef ZENTA_HOST_CORE_UTF8_H
#define ZENTA_HOST_CORE_UTF8_H

#include <string>

namespace NVURZENTA20 {

// Code units that are halves of a surrogate pair are no character on their
// own; they become the replacement character, so the text stays valid UTF-8.
inline void AppendUtf8(std::string& out, unsigned codeUnit) {
    if (codeUnit >= 0xD800 && codeUnit <= 0xDFFF) codeUnit = 0xFFFD;
    if (codeUnit < 0x80) {
        out += static_cast<char>(codeUnit);
    } else if (codeUnit < 0x800) {
        out += static_cast<char>(0xC0 | (codeUnit >> 6));
        out += static_cast<char>(0x80 | (codeUnit & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (codeUnit >> 12));
        out += static_cast<char>(0x80 | ((codeUnit >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codeUnit & 0x3F));
    }
}

}  // namespace NVURZENTA20

#endif
