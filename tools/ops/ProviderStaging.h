// Serving the provider modules of another directory.
//
// libcmpi.nsp.so looks for provider modules in the directory it was loaded
// from (dladdr of itself; the dynamic loader reports the path it was
// opened by, symbolic links unresolved). The staging directory is a
// private temporary directory holding a symbolic link to the real library
// and one link per entry of the user's directory; the tool opens the
// library through its link, so the library sees the staging directory as
// its own and finds the user's modules and their documents there. The
// library's own dependencies are already loaded by then and are matched by
// name, so the library's $ORIGIN (now the staging directory) never needs
// to hold them. The files the links point at are never touched.
//
// The staging directory lies at a short path (in $TMPDIR when that is
// short and usable, else in /tmp): the library keeps the path it was
// loaded from in a fixed buffer, so it must never grow long.
//
// The directory is removed by a small helper process once this process
// has ended, however it ends (a crash included): the library and the
// modules must stay reachable by their paths until the very end, when
// sanitizers still read them to describe what they report.
#ifndef ZENTA_OPS_PROVIDERSTAGING_H
#define ZENTA_OPS_PROVIDERSTAGING_H

#include <set>
#include <string>

class TProviderStaging {
public:
    // Mirrors `providerDirectory` but for the entries named in `leftOut`
    // (modules that would take the host down), and links `library` into
    // the mirror under its own file name (an entry of that name in the
    // user's directory is not mirrored).
    TProviderStaging(const std::string& providerDirectory, const std::string& library,
                     const std::set<std::string>& leftOut);
    // Removes the directory itself only when no helper could be started.
    ~TProviderStaging();

    const std::string& GetDirectory() const { return fDirectory; }

private:
    void Link(const std::string& target, const std::string& name);

    // Starts the helper that removes the directory when this process is
    // gone; false when it could not be started.
    bool StartReaper();

    std::string fDirectory;
    bool fReaped;  // the helper removes the directory, not the destructor

    TProviderStaging(const TProviderStaging&) = delete;
    TProviderStaging& operator=(const TProviderStaging&) = delete;
};

#endif
