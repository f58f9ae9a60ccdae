#include "ActivityBoard.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace {

const std::size_t kFieldSize = 256;

void CopyField(char* field, const std::string& text) {
    const std::size_t length = text.size() < kFieldSize - 1 ? text.size() : kFieldSize - 1;
    std::memcpy(field, text.data(), length);
    field[length] = '\0';
}

// The reader may come upon a field that a killed writer left half written:
// it never reads past the field, terminated or not.
std::string ReadField(const char* field) { return std::string(field, strnlen(field, kFieldSize)); }

}  // namespace

struct TActivityBoard::TPage {
    char provider[kFieldSize];
    char module[kFieldSize];
};

TActivityBoard::TActivityBoard() : fDescriptor(memfd_create("zenta-activity", MFD_CLOEXEC)), fPage(nullptr) {
    if (fDescriptor < 0 || ftruncate(fDescriptor, sizeof(TPage)) != 0) {
        const std::string reason = std::strerror(errno);
        if (fDescriptor >= 0) close(fDescriptor);
        throw std::runtime_error("cannot make a shared page for the worker: " + reason);
    }
    Map();
}

TActivityBoard::TActivityBoard(int descriptor) : fDescriptor(descriptor), fPage(nullptr) { Map(); }

TActivityBoard::~TActivityBoard() {
    if (fPage != nullptr) munmap(fPage, sizeof(TPage));
    close(fDescriptor);
}

void TActivityBoard::Map() {
    void* page = mmap(nullptr, sizeof(TPage), PROT_READ | PROT_WRITE, MAP_SHARED, fDescriptor, 0);
    if (page == MAP_FAILED) {
        const std::string reason = std::strerror(errno);
        close(fDescriptor);
        throw std::runtime_error("cannot map the worker's shared page: " + reason);
    }
    fPage = static_cast<TPage*>(page);
}

void TActivityBoard::Enter(const std::string& provider, const std::string& module) {
    CopyField(fPage->provider, provider);
    CopyField(fPage->module, module);
}

void TActivityBoard::Leave() {
    fPage->provider[0] = '\0';
    fPage->module[0] = '\0';
}

TActivity TActivityBoard::Read() const { return TActivity{ReadField(fPage->provider), ReadField(fPage->module)}; }
