// Text that must leave as valid UTF-8 (JSON, CIM-XML): process names,
// command lines and provider strings need not be.
#ifndef ZENTA_OPS_UTF8TEXT_H
#define ZENTA_OPS_UTF8TEXT_H

#include <string>
#include <string_view>

// The length of the valid UTF-8 sequence at `at`, or 0.
inline std::size_t Utf8SequenceLength(std::string_view text, std::size_t at) {
    const unsigned char lead = static_cast<unsigned char>(text[at]);
    std::size_t length;
    unsigned int minimum;
    unsigned int code;
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2, minimum = 0x80, code = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3, minimum = 0x800, code = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4, minimum = 0x10000, code = lead & 0x07;
    } else {
        return 0;
    }
    if (at + length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned char next = static_cast<unsigned char>(text[at + i]);
        if ((next & 0xC0) != 0x80) return 0;
        code = (code << 6) | (next & 0x3F);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < minimum || code > 0x10FFFF || surrogate ? 0 : length;
}

// Appends `text` to `out`: valid UTF-8 sequences as they are, each byte
// that is not part of one as U+FFFD, and each ASCII character through
// `escape(out, character)`, which writes it as the format needs.
template <class TEscape>
void AppendValidUtf8(std::string& out, std::string_view text, TEscape escape) {
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c < 0x80) {
            escape(out, c);
            ++i;
            continue;
        }
        const std::size_t length = Utf8SequenceLength(text, i);
        if (length == 0) {
            out += "\xEF\xBF\xBD";
            ++i;
        } else {
            out.append(text.data() + i, length);
            i += length;
        }
    }
}

#endif
