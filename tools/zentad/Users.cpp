#include "Users.h"

#include <crypt.h>
#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace {

// Names go into a line-oriented file before a colon.
bool IsValidUserName(const std::string& user) {
    if (user.empty() || user.size() > 64) return false;
    for (const char c : user) {
        if (c == ':' || c == '\n' || c == '\r' || static_cast<unsigned char>(c) < 0x20) return false;
    }
    return true;
}

bool EqualInConstantTime(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    unsigned char difference = 0;
    for (std::size_t i = 0; i < a.size(); ++i) difference |= static_cast<unsigned char>(a[i] ^ b[i]);
    return difference == 0;
}

int Base64Digit(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    if (c == '+') return 62;
    if (c == '/') return 63;
    return -1;
}

std::vector<std::string> ReadLines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream in(path);
    if (!in) return lines;
    std::string line;
    while (std::getline(in, line)) lines.push_back(line);
    return lines;
}

}  // namespace

bool DecodeBase64(const std::string& text, std::string& decoded) {
    decoded.clear();
    if (text.size() % 4 != 0) return false;
    for (std::size_t i = 0; i < text.size(); i += 4) {
        int digits[4];
        for (int j = 0; j < 4; ++j) {
            const char c = text[i + j];
            const bool padding = c == '=' && i + 4 == text.size() && j >= 2 && (j == 3 || text[i + 3] == '=');
            digits[j] = padding ? 0 : Base64Digit(c);
            if (digits[j] < 0) return false;
        }
        const unsigned bits = (digits[0] << 18) | (digits[1] << 12) | (digits[2] << 6) | digits[3];
        decoded += static_cast<char>((bits >> 16) & 0xFF);
        if (text[i + 2] != '=') decoded += static_cast<char>((bits >> 8) & 0xFF);
        if (text[i + 3] != '=') decoded += static_cast<char>(bits & 0xFF);
    }
    return true;
}

TUsers TUsers::Load(const std::string& path) {
    std::ifstream in(path);
    if (!in) throw std::runtime_error(path + ": cannot read the users file: " + std::strerror(errno));
    TUsers users;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (line.empty() || line[0] == '#') continue;
        const std::size_t colon = line.find(':');
        const std::string where = path + ":" + std::to_string(number) + ": ";
        if (colon == std::string::npos || colon == 0) throw std::runtime_error(where + "not a NAME:HASH line");
        const std::string hash = line.substr(colon + 1);
        if (hash.empty() || hash[0] != '$') throw std::runtime_error(where + "the hash is not in crypt(3) form");
        users.fHashes[line.substr(0, colon)] = hash;
    }
    return users;
}

bool TUsers::Check(const std::string& user, const std::string& password) const {
    const auto found = fHashes.find(user);
    if (found == fHashes.end() || password.find('\0') != std::string::npos) return false;
    struct crypt_data data;
    std::memset(&data, 0, sizeof(data));
    const char* hashed = crypt_rn(password.c_str(), found->second.c_str(), &data, sizeof(data));
    return hashed != nullptr && hashed[0] != '*' && EqualInConstantTime(hashed, found->second);
}

bool TUsers::CheckAuthorization(const std::string& header, std::string& user) const {
    const char kBasic[] = "Basic ";
    if (header.size() <= sizeof(kBasic) - 1 || strncasecmp(header.c_str(), kBasic, sizeof(kBasic) - 1) != 0) {
        return false;
    }
    std::string credentials;
    std::string encoded = header.substr(sizeof(kBasic) - 1);
    while (!encoded.empty() && encoded.front() == ' ') encoded.erase(0, 1);
    while (!encoded.empty() && encoded.back() == ' ') encoded.pop_back();
    if (!DecodeBase64(encoded, credentials)) return false;
    const std::size_t colon = credentials.find(':');
    if (colon == std::string::npos) return false;
    user = credentials.substr(0, colon);
    return Check(user, credentials.substr(colon + 1));
}

bool TAuthenticator::Check(const std::string& header, std::string& user) {
    const auto now = std::chrono::steady_clock::now();
    {
        std::lock_guard<std::mutex> lock(fMutex);
        const auto found = fPassed.find(header);
        if (found != fPassed.end() && found->second.until > now) {
            user = found->second.user;
            return true;
        }
    }
    if (!fUsers.CheckAuthorization(header, user)) return false;
    std::lock_guard<std::mutex> lock(fMutex);
    if (fPassed.size() >= fCapacity) fPassed.clear();
    fPassed[header] = TPassed{user, now + std::chrono::seconds(fRememberSeconds)};
    return true;
}

std::string HashPassword(const std::string& password) {
    char setting[CRYPT_GENSALT_OUTPUT_SIZE];
    if (crypt_gensalt_rn("$y$", 0, nullptr, 0, setting, sizeof(setting)) == nullptr) {
        throw std::runtime_error(std::string("cannot make a salt: ") + std::strerror(errno));
    }
    struct crypt_data data;
    std::memset(&data, 0, sizeof(data));
    const char* hashed = crypt_rn(password.c_str(), setting, &data, sizeof(data));
    if (hashed == nullptr || hashed[0] == '*') throw std::runtime_error("cannot hash the password");
    return hashed;
}

void StorePassword(const std::string& path, const std::string& user, const std::string& password) {
    if (!IsValidUserName(user)) throw std::runtime_error("\"" + user + "\" cannot be a user name");
    if (password.empty()) throw std::runtime_error("the password is empty");
    std::ostringstream text;
    bool replaced = false;
    for (const std::string& line : ReadLines(path)) {
        if (line.compare(0, user.size() + 1, user + ":") == 0) {
            if (!replaced) text << user << ':' << HashPassword(password) << '\n';
            replaced = true;
        } else {
            text << line << '\n';
        }
    }
    if (!replaced) text << user << ':' << HashPassword(password) << '\n';
    const std::string temporary = path + ".new";
    const int descriptor = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (descriptor < 0) throw std::runtime_error(temporary + ": " + std::strerror(errno));
    const std::string content = text.str();
    const bool written = write(descriptor, content.data(), content.size()) == static_cast<ssize_t>(content.size());
    const bool closed = close(descriptor) == 0;
    if (!written || !closed || rename(temporary.c_str(), path.c_str()) != 0) {
        const std::string reason = std::strerror(errno);
        unlink(temporary.c_str());
        throw std::runtime_error(path + ": cannot write the users file: " + reason);
    }
}
