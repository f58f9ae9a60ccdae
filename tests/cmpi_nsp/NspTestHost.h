// A host for the CMPI namespace tests: a fresh repository populated with
// the standard documents, the namespace manager over it, the CMPI library
// pointed at one test module directory, and the log captured in a file.
#ifndef ZENTA_TESTS_NSPTESTHOST_H
#define ZENTA_TESTS_NSPTESTHOST_H

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <gtest/gtest.h>

#include "TCMPINamespace.h"
#include "TCMPINamespaceProvider.h"
#include "TNamespaceManager.h"
#include "TCMPIClass.h"
#include "TRootObject.h"
#include "TZENTAException.h"

class NspTestHost : public ::testing::Test {
protected:
    void SetUp() override {
        using namespace NVURZENTA20;
        char pattern[] = "/tmp/zenta-nsp-log-XXXXXX";
        int fd = mkstemp(pattern);
        ASSERT_GE(fd, 0);
        close(fd);
        fLogPath = pattern;
        TRootObject::GetCoreLogger()->SetLogFile(fLogPath);
        TRootObject::GetCoreLogger()->SetThreshold(4);
        boost::shared_ptr<INamespaceProvider> inmem =
            TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("inmem");
        ASSERT_TRUE(inmem);
        fRepository = inmem->AllocateNamespace(TCIMContext(), true);
        fManager = TNamespaceManager::Create(fRepository);
        fUpcall = fManager;
    }

    void TearDown() override {
        fNamespace.reset();
        TCMPINamespaceProvider::ClearNamespace();
        NVURZENTA20::TRootObject::GetCoreLogger()->SetLogFile("");
        NVURZENTA20::TRootObject::GetCoreLogger()->SetThreshold(1);
        std::remove(fLogPath.c_str());
    }

    // Allocates the CMPI namespace over the modules of `directory` (a
    // directory under the test module root) and attaches it to the manager.
    void Allocate(const std::string& directory) {
        using namespace NVURZENTA20;
        std::string path = std::string(ZENTA_NSP_MODULE_ROOT) + "/" + directory;
        std::vector<char> buffer(path.begin(), path.end());
        buffer.push_back('\0');
        TCMPINamespaceProvider::Initialize(&buffer[0]);
        TCIMContext context;
        context["repository"] = TCIMValue(static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(&fRepository)));
        context["upcall"] = TCIMValue(static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(&fUpcall)));
        boost::shared_ptr<ICIMNamespace> allocated =
            TCMPINamespaceProvider::GetInstance()->AllocateNamespace(context, false);
        fNamespace = boost::dynamic_pointer_cast<TCMPINamespace>(allocated);
        ASSERT_TRUE(fNamespace);
        fManager->AttachProviderNamespace("cmpi", allocated);
    }

    std::vector<std::string> LogLines() const {
        std::vector<std::string> lines;
        std::ifstream in(fLogPath.c_str());
        std::string line;
        while (std::getline(in, line)) lines.push_back(line);
        return lines;
    }

    // Log lines of `level` (by the logger's level name) that contain `text`.
    std::vector<std::string> LogLinesWith(const std::string& levelName, const std::string& text) const {
        std::vector<std::string> found;
        std::vector<std::string> lines = LogLines();
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (lines[i].find(levelName) != std::string::npos && lines[i].find(text) != std::string::npos) {
                found.push_back(lines[i]);
            }
        }
        return found;
    }

    std::string fLogPath;
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> fRepository;
    boost::shared_ptr<NVURZENTA20::TNamespaceManager> fManager;
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> fUpcall;
    boost::shared_ptr<TCMPINamespace> fNamespace;
};

#endif
