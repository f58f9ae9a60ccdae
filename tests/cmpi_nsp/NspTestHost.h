// A host for the CMPI namespace tests: a fresh repository populated with
// the standard documents, the namespace manager over it, the CMPI library
// pointed at one test module directory, and the log captured in a file.
#ifndef ZENTA_TESTS_NSPTESTHOST_H
#define ZENTA_TESTS_NSPTESTHOST_H

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <gtest/gtest.h>

#include "TCMPIClass.h"
#include "TCMPINamespace.h"
#include "TCMPINamespaceProvider.h"
#include "TNamespaceManager.h"
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
        fRepository = TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("inmem")->AllocateNamespace(
            TCIMContext(), true);
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

    // Allocates the CMPI namespace over the test modules of `directory` and attaches it.
    void Allocate(const std::string& directory) {
        using namespace NVURZENTA20;
        std::string path = std::string(ZENTA_NSP_MODULE_ROOT) + "/" + directory;
        TCMPINamespaceProvider::Initialize(&path[0]);
        const auto address = [](const void* at) {
            return TCIMValue(static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(at)));
        };
        TCIMContext context = {{"repository", address(&fRepository)}, {"upcall", address(&fUpcall)}};
        boost::shared_ptr<ICIMNamespace> allocated =
            TCMPINamespaceProvider::GetInstance()->AllocateNamespace(context, false);
        fNamespace = boost::dynamic_pointer_cast<TCMPINamespace>(allocated);
        ASSERT_TRUE(fNamespace);
        fManager->AttachProviderNamespace("cmpi", allocated);
    }

    // Log lines that contain `levelName` (the logger's name of a level) and `text`.
    std::vector<std::string> LogLinesWith(const std::string& levelName, const std::string& text) const {
        std::vector<std::string> found;
        std::ifstream in(fLogPath.c_str());
        for (std::string line; std::getline(in, line);) {
            if (line.find(levelName) != std::string::npos && line.find(text) != std::string::npos) {
                found.push_back(line);
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
