// A host for the broker tests: the CMPI namespace over the fleet modules
// (cars, drivers, their assignments, a faulty provider and the probe that
// makes upcalls), with access to the probe's method and the modules'
// exported test variables.
#ifndef ZENTA_TESTS_BROKERTESTHOST_H
#define ZENTA_TESTS_BROKERTESTHOST_H

#include <dlfcn.h>

#include <string>
#include <vector>

#include <boost/bind/bind.hpp>

#include "NspTestHost.h"
#include "cmpiInstanceRegistry.h"

class BrokerTestHost : public NspTestHost {
protected:
    void SetUp() override {
        NspTestHost::SetUp();
        Allocate("fleet");
        // A method never starts its provider: enumerating does.
        ASSERT_EQ(Keys("Fleet_Probe", "Id"), std::vector<std::string>({"p1", "p2"}));
    }

    void TearDown() override {
        CMPINSPInstanceRegistry::GetRegistrySingleton()->ClearInstances();
        NspTestHost::TearDown();
    }

    static CMPINSPInstanceRegistry& Registry() { return *CMPINSPInstanceRegistry::GetRegistrySingleton(); }

    const CMPIBroker* Broker() const { return fNamespace->GetBroker().get(); }

    // A path from the broker's factory, as providers make them.
    CMPIObjectPath* NewPath(const char* ns, const char* cls) {
        CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
        CMPIObjectPath* path = Broker()->eft->newObjectPath(Broker(), ns, cls, &rc);
        EXPECT_EQ(rc.rc, CMPI_RC_OK);
        return path;
    }

    CMPIObjectPath* CarPath(const char* id) {
        CMPIObjectPath* path = NewPath("root/fleet", "Fleet_Car");
        path->ft->addKey(path, "Id", reinterpret_cast<const CMPIValue*>(id), CMPI_chars);
        return path;
    }

    boost::shared_ptr<NVURZENTA20::ICIMClass> Class(const std::string& name) {
        return fNamespace->GetClass(name, NVURZENTA20::TCIMContext());
    }

    // The values of `property` of the instances the class's provider serves,
    // in the provider's order.
    std::vector<std::string> Keys(const std::string& className, const std::string& property) {
        std::vector<boost::shared_ptr<NVURZENTA20::ICIMInstance> > instances = Instances(Class(className));
        std::vector<std::string> keys;
        for (std::size_t i = 0; i < instances.size(); ++i) {
            keys.push_back(instances[i]->GetProperty(property, NVURZENTA20::TCIMContext())->GetValue());
        }
        return keys;
    }

    static std::vector<boost::shared_ptr<NVURZENTA20::ICIMInstance> > Instances(
        const boost::shared_ptr<NVURZENTA20::ICIMClass>& cls) {
        std::vector<boost::shared_ptr<NVURZENTA20::ICIMInstance> > found;
        cls->EnumerateInstances(boost::bind(&Collect, &found, boost::placeholders::_1), false,
                                NVURZENTA20::TCIMContext());
        return found;
    }

    // Runs the probe's method Run with `upcall` and the string parameters
    // `params` (name, value, name, value, ...); returns its outputs.
    NVURZENTA20::TCIMContext Run(const std::string& upcall, const std::vector<std::string>& params = {}) {
        NVURZENTA20::TCIMContext parameters;
        parameters["upcall"] = NVURZENTA20::TCIMValue(upcall);
        for (std::size_t i = 0; i + 1 < params.size(); i += 2) {
            parameters[params[i]] = NVURZENTA20::TCIMValue(params[i + 1]);
        }
        return Run(parameters);
    }

    NVURZENTA20::TCIMContext Run(NVURZENTA20::TCIMContext parameters) {
        Class("Fleet_Probe")->InvokeMethod("Run", parameters, NVURZENTA20::TCIMContext());
        return parameters;
    }

    // The probe's report of one scenario; empty when the probe gave none.
    std::string Report(const std::string& upcall, const std::vector<std::string>& params = {}) {
        return ReportOf(Run(upcall, params));
    }

    static std::string ReportOf(const NVURZENTA20::TCIMContext& outputs) {
        NVURZENTA20::TCIMContext::const_iterator report = outputs.find("report");
        return report == outputs.end() ? std::string() : static_cast<std::string>(report->second);
    }

    // A variable a test module exports, or null.
    template <class T>
    T* ModuleVariable(const std::string& module, const char* name) const {
        std::string path = std::string(ZENTA_NSP_MODULE_ROOT) + "/fleet/" + module + ".cmpi.so";
        void* handle = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
        if (handle == nullptr) return nullptr;
        T* variable = static_cast<T*>(dlsym(handle, name));
        dlclose(handle);
        return variable;
    }

    // The logger appends, so it goes on writing at the new end.
    void ClearLog() const { std::ofstream(fLogPath.c_str(), std::ios::trunc); }

    // Log lines (level name and text, without the time stamp) that contain
    // `text`.
    std::vector<std::string> LoggedWith(const std::string& text) const {
        std::vector<std::string> found;
        std::vector<std::string> lines = LogLines();
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (lines[i].find(text) == std::string::npos) continue;
            // "<date> <time> <LEVEL> <text>"
            std::string::size_type date = lines[i].find(' ');
            std::string::size_type time = lines[i].find(' ', date + 1);
            found.push_back(lines[i].substr(time + 1));
        }
        return found;
    }

private:
    static bool Collect(std::vector<boost::shared_ptr<NVURZENTA20::ICIMInstance> >* into,
                        boost::shared_ptr<NVURZENTA20::ICIMInstance> instance) {
        into->push_back(instance);
        return true;
    }
};

#endif
