// What a module file is, read from its ELF headers without loading it: is
// it a shared object this process can load (class, machine, whole), and
// which CMPI factory functions does it export. Loading a truncated module
// kills the loading process with SIGBUS, so this comes first.
#ifndef ZENTA_OPS_ELFINSPECTOR_H
#define ZENTA_OPS_ELFINSPECTOR_H

#include <cstddef>
#include <set>
#include <string>

struct TElfFacts {
    bool loadable = false;
    std::string problem;             // why not: "not an ELF file", "truncated: ..."
    std::set<std::string> factories;  // exported functions named *_Create_*MI
    bool symbolsRead = false;          // the dynamic symbol table was found (else `factories` says nothing)
};

TElfFacts InspectElf(const std::string& path);
// The same for a file's bytes (the inspection reads nothing else).
TElfFacts InspectElfImage(const unsigned char* data, std::size_t size);

#endif
