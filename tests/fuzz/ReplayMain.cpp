// Runs every file of the directories (or the files) given through the fuzz
// target once: how the corpora replay in the test suite, and how a crasher
// that libFuzzer saved is replayed under a debugger.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::string> InputsOf(const std::string& argument) {
    namespace fs = std::filesystem;
    std::vector<std::string> inputs;
    if (!fs::is_directory(argument)) {
        inputs.push_back(argument);
        return inputs;
    }
    for (const auto& entry : fs::directory_iterator(argument)) {
        if (entry.is_regular_file()) inputs.push_back(entry.path().string());
    }
    return inputs;
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& path : InputsOf(argv[i])) {
            std::ifstream in(path, std::ios::binary);
            const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
            ++replayed;
        }
    }
    std::printf("replayed %zu inputs\n", replayed);
    // An empty corpus replays nothing: that is a broken test, not a pass.
    return replayed == 0 ? 1 : 0;
}
