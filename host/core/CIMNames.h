// CIM names (classes, keys, type names) compare without regard to ASCII
// case but keep their spelling.
#ifndef ZENTA_HOST_CORE_CIMNAMES_H
#define ZENTA_HOST_CORE_CIMNAMES_H

#include <cstddef>
#include <string>

namespace NVURZENTA20 {

inline char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

// <0, 0 or >0 as `a` sorts before, with or after `b` ignoring ASCII case.
inline int CompareCIMNames(const std::string& a, const std::string& b) {
    const std::size_t common = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t i = 0; i < common; ++i) {
        const unsigned char x = static_cast<unsigned char>(LowerAscii(a[i]));
        const unsigned char y = static_cast<unsigned char>(LowerAscii(b[i]));
        if (x != y) return x < y ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

inline bool SameCIMName(const std::string& a, const std::string& b) {
    return a.size() == b.size() && CompareCIMNames(a, b) == 0;
}

}  // namespace NVURZENTA20

#endif
