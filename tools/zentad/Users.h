// The users a server lets in: a file of `name:hash` lines, the hash in
// crypt(3) form (yescrypt as `zentad passwd` writes it; SHA-512-crypt and
// the other methods libcrypt knows are read too). HTTP Basic credentials
// are checked against it.
#ifndef ZENTA_ZENTAD_USERS_H
#define ZENTA_ZENTAD_USERS_H

#include <chrono>
#include <map>
#include <mutex>
#include <string>

class TUsers {
public:
    TUsers() {}
    // Throws std::runtime_error naming the file and line of a bad entry.
    static TUsers Load(const std::string& path);

    bool IsEmpty() const { return fHashes.empty(); }
    // True when `password` is `user`'s. Costs a hash computation.
    bool Check(const std::string& user, const std::string& password) const;
    // The value of an Authorization header, checked: "Basic base64(user:password)".
    bool CheckAuthorization(const std::string& header, std::string& user) const;

private:
    std::map<std::string, std::string> fHashes;
};

// Checks Authorization headers against the users, remembering for a while
// the exact headers that passed: a hash is meant to be slow (tens of
// milliseconds), and a client sends the same header with every request.
// Safe to call from several threads.
class TAuthenticator {
public:
    explicit TAuthenticator(const TUsers& users, int rememberSeconds = 300, std::size_t capacity = 1024)
        : fUsers(users), fRememberSeconds(rememberSeconds), fCapacity(capacity) {}

    bool Check(const std::string& header, std::string& user);

private:
    struct TPassed {
        std::string user;
        std::chrono::steady_clock::time_point until;
    };

    const TUsers& fUsers;
    int fRememberSeconds;
    std::size_t fCapacity;
    std::mutex fMutex;
    std::map<std::string, TPassed> fPassed;
};

// A salted hash of `password` (yescrypt).
std::string HashPassword(const std::string& password);

// Sets `user`'s password in the users file at `path` (made, mode 0600, when
// it does not exist), replacing the file in one step. Throws
// std::runtime_error saying what failed.
void StorePassword(const std::string& path, const std::string& user, const std::string& password);

// Decodes base64; false on text that is not.
bool DecodeBase64(const std::string& text, std::string& decoded);

#endif
