#include "ElfInspector.h"

#include <elf.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

// Only the class and machine this program is built for can be loaded.
#if defined(__x86_64__)
const unsigned char kOwnClass = ELFCLASS64;
const unsigned kOwnMachine = EM_X86_64;
#elif defined(__i386__)
const unsigned char kOwnClass = ELFCLASS32;
const unsigned kOwnMachine = EM_386;
#else
#error "unknown target"
#endif

const char kFactoryInfix[] = "_Create_";
const char kFactorySuffix[] = "MI";

struct TElf64 {
    typedef Elf64_Ehdr Header;
    typedef Elf64_Phdr ProgramHeader;
    typedef Elf64_Shdr SectionHeader;
    typedef Elf64_Sym Symbol;
    static unsigned char Binding(unsigned char info) { return ELF64_ST_BIND(info); }
};

struct TElf32 {
    typedef Elf32_Ehdr Header;
    typedef Elf32_Phdr ProgramHeader;
    typedef Elf32_Shdr SectionHeader;
    typedef Elf32_Sym Symbol;
    static unsigned char Binding(unsigned char info) { return ELF32_ST_BIND(info); }
};

// True when [offset, offset + count * size) lies inside the image.
bool Inside(std::size_t imageSize, unsigned long long offset, unsigned long long count, unsigned long long size) {
    if (offset > imageSize) return false;
    if (size != 0 && count > (imageSize - offset) / size) return false;
    return true;
}

bool IsFactoryName(const char* name, std::size_t length) {
    const std::size_t suffix = sizeof(kFactorySuffix) - 1;
    if (length <= suffix || std::memcmp(name + length - suffix, kFactorySuffix, suffix) != 0) return false;
    return std::string(name, length).find(kFactoryInfix) != std::string::npos;
}

// Headers are copied out before they are read: a damaged file may place
// them at any offset, aligned or not.
template <class T>
T CopyAt(const unsigned char* data, unsigned long long offset) {
    T value;
    std::memcpy(&value, data + offset, sizeof(value));
    return value;
}

template <class E>
void ReadSymbols(const unsigned char* data, std::size_t size, const typename E::SectionHeader& symbols,
                 const typename E::SectionHeader& strings, TElfFacts& facts) {
    typedef typename E::Symbol Symbol;
    const std::size_t count = symbols.sh_size / sizeof(Symbol);
    if (!Inside(size, symbols.sh_offset, count, sizeof(Symbol)) || !Inside(size, strings.sh_offset, strings.sh_size, 1)) {
        return;
    }
    const char* names = reinterpret_cast<const char*>(data + strings.sh_offset);
    for (std::size_t s = 0; s < count; ++s) {
        const Symbol symbol = CopyAt<Symbol>(data, symbols.sh_offset + s * sizeof(Symbol));
        const unsigned char binding = E::Binding(symbol.st_info);
        if (symbol.st_shndx == SHN_UNDEF || (binding != STB_GLOBAL && binding != STB_WEAK)) continue;
        if (symbol.st_name >= strings.sh_size) continue;
        const char* name = names + symbol.st_name;
        const std::size_t length = strnlen(name, strings.sh_size - symbol.st_name);
        if (IsFactoryName(name, length)) facts.factories.insert(std::string(name, length));
    }
}

template <class E>
void ReadFactories(const unsigned char* data, std::size_t size, const typename E::Header& header, TElfFacts& facts) {
    typedef typename E::SectionHeader Section;
    if (header.e_shoff == 0 || header.e_shentsize != sizeof(Section)) return;
    if (!Inside(size, header.e_shoff, header.e_shnum, sizeof(Section))) return;
    for (unsigned i = 0; i < header.e_shnum; ++i) {
        const Section symbols = CopyAt<Section>(data, header.e_shoff + i * sizeof(Section));
        if (symbols.sh_type != SHT_DYNSYM || symbols.sh_entsize != sizeof(typename E::Symbol)) continue;
        if (symbols.sh_link >= header.e_shnum) continue;
        const Section strings = CopyAt<Section>(data, header.e_shoff + symbols.sh_link * sizeof(Section));
        ReadSymbols<E>(data, size, symbols, strings, facts);
        facts.symbolsRead = true;
    }
}

template <class E>
TElfFacts Inspect(const unsigned char* data, std::size_t size) {
    typedef typename E::Header Header;
    typedef typename E::ProgramHeader ProgramHeader;
    TElfFacts facts;
    if (size < sizeof(Header)) {
        facts.problem = "truncated: " + std::to_string(size) + " bytes cannot hold an ELF header";
        return facts;
    }
    const Header header = CopyAt<Header>(data, 0);
    if (header.e_type != ET_DYN) {
        facts.problem = "not a shared object (ELF type " + std::to_string(header.e_type) + ")";
        return facts;
    }
    if (header.e_machine != kOwnMachine) {
        facts.problem = "built for another machine (ELF machine " + std::to_string(header.e_machine) + ")";
        return facts;
    }
    if (header.e_phentsize != sizeof(ProgramHeader) || !Inside(size, header.e_phoff, header.e_phnum, sizeof(ProgramHeader))) {
        facts.problem = "truncated: " + std::to_string(size) + " bytes do not hold its program headers";
        return facts;
    }
    for (unsigned i = 0; i < header.e_phnum; ++i) {
        const ProgramHeader segment = CopyAt<ProgramHeader>(data, header.e_phoff + i * sizeof(ProgramHeader));
        if (segment.p_type == PT_LOAD && !Inside(size, segment.p_offset, segment.p_filesz, 1)) {
            facts.problem = "truncated: " + std::to_string(size) + " of at least " +
                            std::to_string(static_cast<unsigned long long>(segment.p_offset) + segment.p_filesz) +
                            " bytes";
            return facts;
        }
    }
    facts.loadable = true;
    ReadFactories<E>(data, size, header, facts);
    return facts;
}

}  // namespace

TElfFacts InspectElfImage(const unsigned char* data, std::size_t size) {
    TElfFacts facts;
    if (size < EI_NIDENT || std::memcmp(data, ELFMAG, SELFMAG) != 0) {
        facts.problem = "not an ELF file";
        return facts;
    }
    if (data[EI_CLASS] != kOwnClass) {
        facts.problem = data[EI_CLASS] == ELFCLASS32 ? "a 32-bit module; this host runs 64-bit code"
                                                      : "a 64-bit module; this host runs 32-bit code";
        if (data[EI_CLASS] != ELFCLASS32 && data[EI_CLASS] != ELFCLASS64) facts.problem = "not a valid ELF file";
        return facts;
    }
    if (data[EI_DATA] != ELFDATA2LSB) {
        facts.problem = "built for a big-endian machine";
        return facts;
    }
    return kOwnClass == ELFCLASS64 ? Inspect<TElf64>(data, size) : Inspect<TElf32>(data, size);
}

TElfFacts InspectElf(const std::string& path) {
    TElfFacts facts;
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status;
    if (descriptor < 0 || fstat(descriptor, &status) != 0) {
        facts.problem = std::string("cannot be read: ") + std::strerror(errno);
        if (descriptor >= 0) close(descriptor);
        return facts;
    }
    if (!S_ISREG(status.st_mode)) {
        close(descriptor);
        facts.problem = "not a regular file";
        return facts;
    }
    const std::size_t size = static_cast<std::size_t>(status.st_size);
    if (size == 0) {
        close(descriptor);
        facts.problem = "an empty file";
        return facts;
    }
    void* image = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    close(descriptor);
    if (image == MAP_FAILED) {
        facts.problem = std::string("cannot be read: ") + std::strerror(errno);
        return facts;
    }
    facts = InspectElfImage(static_cast<const unsigned char*>(image), size);
    munmap(image, size);
    return facts;
}
