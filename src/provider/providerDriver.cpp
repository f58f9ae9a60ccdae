#include "providerDriver.h"

#include <sstream>

#include "TRootObject.h"
#include "cmpiArgs.h"
#include "cmpiBrokerEnc.h"
#include "cmpiObjectPath.h"

using namespace NVURZENTA20;

namespace {

// A failed downcall is only reported in the log, at the trace level.
void LogFailure(const std::string& what, const char* subject) {
    std::ostringstream line;
    line << what << subject;
    TRootObject::GetCoreLogger()->Log(3, line.str());
}

// Right after its failure line, the status the provider gave, so that a host
// can tell the user why: "providerDriver status <code> from <provider>:
// <message>". The message is the provider's own text, on one line.
void LogStatus(const CMPIStatus& status, const char* provider) {
    std::string message;
    if (status.msg != nullptr && status.msg->ft != nullptr && status.msg->ft->getCharPtr != nullptr) {
        const char* text = status.msg->ft->getCharPtr(status.msg, nullptr);
        if (text != nullptr) message = text;
    }
    for (char& c : message) {
        if (c == '\n' || c == '\r') c = ' ';
    }
    std::ostringstream line;
    line << "providerDriver status " << static_cast<int>(status.rc) << " from " << (provider ? provider : "")
         << ": " << message;
    TRootObject::GetCoreLogger()->Log(4, line.str());
}

// Removes the unregistered records of one downcall however it ends: a host
// exception may travel back through the provider. A null record is skipped.
class TCallRecords {
public:
    TCallRecords(CMPIObjectPath* path, CMPIResult* result, CMPIContext* context)
        : fPath(path), fResult(result), fContext(context) {}
    ~TCallRecords() {
        if (fPath != nullptr) removeCMPIObjectPath(fPath);
        if (fResult != nullptr) removeCMPIResult(fResult);
        if (fContext != nullptr) removeCMPIContext(fContext);
    }
    TCallRecords(const TCallRecords&) = delete;
    TCallRecords& operator=(const TCallRecords&) = delete;

private:
    CMPIObjectPath* fPath;
    CMPIResult* fResult;
    CMPIContext* fContext;
};

}  // namespace

boost::shared_ptr<ICIMInstance> getInstance(const CMPIBroker*, _ProviderInfo* info, const TCIMReference& reference) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    CMPIObjectPath* path = ref2CMPIObjectPath(reference);
    CMPIResult* result = newCMPIResult(&status);
    CMPIContext* context = newCMPIContext("dummy", &status);

    // A provider without an instance MI fails the get like any failed
    // downcall instead of taking the host down.
    CMPIInstanceMI* mi = info->instanceMI;
    if (mi == nullptr) status.rc = CMPI_RC_ERR_NOT_SUPPORTED;
    // The per-call path and context are released on every road: they are
    // not registered, so nothing else would ever free them.
    {
        TCallRecords records(path, nullptr, context);
        if (mi != nullptr) status = mi->ft->getInstance(mi, context, result, path, nullptr);
    }
    if (status.rc != CMPI_RC_OK) {
        LogFailure("providerDriver::getInstance failed for ", info->providerName);
        LogStatus(status, info->providerName);
        return boost::shared_ptr<ICIMInstance>();
    }
    // The result's cell holds the handle of the instance the provider
    // returned last: a holder of a shared reference to the host instance.
    boost::shared_ptr<ICIMInstance>* returned = *static_cast<boost::shared_ptr<ICIMInstance>**>(result->hdl);
    return returned ? *returned : boost::shared_ptr<ICIMInstance>();
}

int enumInstances(const CMPIBroker* broker, _ProviderInfo* info, const char* className) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    CMPIObjectPath* path = newCMPIObjectPath(broker, info->namespaceName, className, &status);
    CMPIResult* result = newCMPIEnumInstanceResult(&status);
    CMPIContext* context = newCMPIContext(className, &status);

    TCallRecords records(nullptr, result, context);
    CMPIInstanceMI* mi = info->instanceMI;
    if (mi != nullptr) {
        if (mi->ft != nullptr) status = mi->ft->enumInstances(mi, context, result, path, nullptr);
        if (status.rc != CMPI_RC_OK) {
            LogFailure("providerDriver::enumInstances failed for ", info->providerName);
            LogStatus(status, info->providerName);
        }
    }
    return 0;
}

int invokeMethod(_ProviderInfo* info, const TCIMReference& reference, const std::string& methodName,
                 TCIMContext* in, TCIMContext* out) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    CMPIObjectPath* path = ref2CMPIObjectPath(reference);
    CMPIArgs* inArgs = params2CMPIArgs(in);
    CMPIArgs* outArgs = params2CMPIArgs(out);
    CMPIResult* result = newCMPIResult(&status);
    CMPIContext* context = newCMPIContext(methodName.c_str(), &status);

    TCallRecords records(path, nullptr, context);
    CMPIMethodMI* mi = info->methodMI;
    if (mi != nullptr) {
        status = mi->ft->invokeMethod(mi, context, result, path, methodName.c_str(), inArgs, outArgs);
        if (status.rc != CMPI_RC_OK) {
            LogFailure("providerDriver::invokeMethod ", methodName.c_str());
            LogStatus(status, info->providerName);
        }
    }
    return 0;
}
