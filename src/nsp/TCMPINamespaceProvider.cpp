#include "TCMPINamespaceProvider.h"

#include <dlfcn.h>

#include <cstring>

#include "TCMPINamespace.h"
#include "TRootObject.h"

using namespace NVURZENTA20;

namespace {

// The provider's name as the host knows it; one string object for the
// process so that GetName can hand out a reference.
const std::string& ProviderName() {
    static const std::string name("cmpi");
    return name;
}

}  // namespace

// Runs when the dynamic loader maps the library: find our own directory (the
// provider modules lie beside us) and register with the host.
__attribute__((constructor, visibility("hidden"))) void CmpiInit() {
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&CmpiInit), &info) == 0 || info.dli_fname == nullptr) {
        TRootObject::GetCoreLogger()->Log(0, "CMPI NSP initialization failed");
        return;
    }
    // The loader always reports an absolute path well below this size.
    char directory[512];
    std::strcpy(directory, info.dli_fname);
    *std::strrchr(directory, '/') = '\0';
    TCMPINamespaceProvider::Initialize(directory);
}

TCMPINamespaceProvider::TCMPINamespaceProvider() {}

TCMPINamespaceProvider::~TCMPINamespaceProvider() {}

int TCMPINamespaceProvider::Initialize(char* directory) {
    GetfgModulePathName() = directory;
    boost::shared_ptr<INamespaceProviderManager> manager = TRootObject::GetNamespaceProviderManager();
    manager->RegisterNamespaceProvider(GetInstance());
    return 0;
}

boost::shared_ptr<TCMPINamespaceProvider> TCMPINamespaceProvider::GetInstance() {
    static boost::shared_ptr<TCMPINamespaceProvider> instance(new TCMPINamespaceProvider());
    return instance;
}

std::string& TCMPINamespaceProvider::GetfgModulePathName() {
    static std::string fgModulePathName;
    return fgModulePathName;
}

boost::shared_ptr<TCMPINamespace> TCMPINamespaceProvider::GetNamespace() { return GetInstance()->fNamespace; }

void TCMPINamespaceProvider::ClearNamespace() { GetInstance()->fNamespace.reset(); }

const std::string& TCMPINamespaceProvider::GetName(TCIMContext) const { return ProviderName(); }

boost::shared_ptr<ICIMNamespace> TCMPINamespaceProvider::AllocateNamespace(TCIMContext context, bool) const {
    TCIMContext copy(context);
    fNamespace.reset(new TCMPINamespace(copy));
    fNamespace->FindAndLoadProviders();
    return fNamespace;
}

INamespaceProvider::ENamespaceType TCMPINamespaceProvider::GetType(TCIMContext) const {
    return kProviderNamespace;
}

bool TCMPINamespaceProvider::IsIndicationsSupported(TCIMContext) const { return false; }
