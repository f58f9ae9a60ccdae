// Upcalls that provider modules make while the host is asking them: the
// probe provider calls its broker from inside its method and reports what
// each upcall answered; the fleet providers answer the requests that the
// upcalls turn into.
#include <stdexcept>
#include <string>
#include <vector>

#include "BrokerTestHost.h"
#include "TCMPIInstance.h"

using namespace NVURZENTA20;

namespace {

typedef BrokerTestHost Upcalls;

// What every upcall that takes a path answers for a path naming car1.
const char kCar1Answers[] =
    "enum=0:car1,car2,car3 names=0:car1,car2,car3 get=0:car1 prop=uint32:4 set=0 delete=7 "
    "assoc=0:ann,bob assocnames=0:ann,bob refs=0:2 refnames=0:2";
const char kCar1Invoke[] = " invoke=0:6";

struct TReportCase {
    const char* name;
    std::vector<std::string> params;
    const char* report;
};

std::ostream& operator<<(std::ostream& out, const TReportCase& c) { return out << c.name; }

void ThrowRuntimeError() { throw std::runtime_error("test callback failed"); }

}  // namespace

// --- Instance enumeration --------------------------------------------------

TEST_F(Upcalls, EnumerationsReachTheServingProviderThroughTheManager) {
    const TReportCase cases[] = {
        {"another provider's class", {"target", "Fleet_Car"}, "enum=0:car1,car2,car3 names=0:car1,car2,car3"},
        {"a third provider's class", {"target", "Fleet_Driver"}, "enum=0:ann,bob,cid names=0:ann,bob,cid"},
        {"the asking provider's own class", {"target", "Fleet_Probe"}, "enum=0:p1,p2 names=0:p1,p2"},
        {"a class nobody defines", {"target", "Fleet_Nowhere"}, "enum=6 names=1"},
    };
    for (const TReportCase& c : cases) {
        EXPECT_EQ(Report("enum", c.params), c.report) << c;
    }
}

TEST_F(Upcalls, AClassWhoseProviderIsNotAttachedFails) {
    fManager->DetachProviderNamespace("cmpi");
    EXPECT_EQ(Report("enum", {"target", "Fleet_Car"}), "enum=1 names=1");
}

// That registered enumerations are freed with the registry is for the
// leak checker to see; here: names register exactly one record more than
// the instance walk they are made from.
TEST_F(Upcalls, EnumerationsAreRegisteredAndNamesAddOnlyTheirPathEnumeration) {
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIObjectPath* cars = NewPath("root/fleet", "Fleet_Car");
    std::size_t before = Registry().GetRecordCount();
    CMPIEnumeration* instances = Broker()->bft->enumInstances(Broker(), nullptr, cars, nullptr, &rc);
    ASSERT_NE(instances, nullptr);
    std::size_t byInstances = Registry().GetRecordCount() - before;
    before = Registry().GetRecordCount();
    CMPIEnumeration* names = Broker()->bft->enumInstanceNames(Broker(), nullptr, cars, &rc);
    ASSERT_NE(names, nullptr);
    EXPECT_EQ(Registry().GetRecordCount() - before, byInstances + 1);

    CMPIObjectPath* car1 = CarPath("car1");
    before = Registry().GetRecordCount();
    ASSERT_NE(Broker()->bft->associators(Broker(), nullptr, car1, "", "", "", "", nullptr, &rc), nullptr);
    std::size_t byAssociators = Registry().GetRecordCount() - before;
    before = Registry().GetRecordCount();
    ASSERT_NE(Broker()->bft->associatorNames(Broker(), nullptr, car1, "", "", "", "", &rc), nullptr);
    EXPECT_EQ(Registry().GetRecordCount() - before, byAssociators + 1);
}

// The faulty provider fails as fleet_faulty_mode says (see FleetFaulty.c).
class FaultyProvider : public BrokerTestHost {
protected:
    void SetUp() override {
        BrokerTestHost::SetUp();
        fMode = ModuleVariable<int>("Fleet", "fleet_faulty_mode");
        fHook = ModuleVariable<void (*)(void)>("Fleet", "fleet_faulty_hook");
        ASSERT_NE(fMode, nullptr);
        ASSERT_NE(fHook, nullptr);
        *fHook = &ThrowRuntimeError;
    }
    void TearDown() override {
        if (fMode) *fMode = 0;
        if (fHook) *fHook = nullptr;
        BrokerTestHost::TearDown();
    }

    TCIMReference CalmPath() const {
        TCIMReference path(fUpcall, TCIMContext());
        path.SetClassName("Fleet_Faulty");
        path.AddKeyValue("Id", TCIMValue("calm"));
        return path;
    }

    int* fMode = nullptr;
    void (**fHook)(void) = nullptr;
};

TEST_F(FaultyProvider, ExceptionsInsideTheEnumerationAreLoggedAndReported) {
    // The host's own words for the failure the factory meets in mode 2.
    std::string hostText;
    TCIMContext fromProvider;
    fromProvider["nspID"] = TCIMValue("cmpi");
    try {
        fManager->GetClass("Fleet_Nowhere", fromProvider);
    } catch (const TZENTAException& failure) {
        hostText = failure.what();
    }
    ASSERT_FALSE(hostText.empty());

    const std::string other = "ERROR cmpi.nsp: CMPIBroker enumInstance upcall threw an exception";
    const std::string zenta = "ERROR cmpi.nsp: CMPIBroker enumInstance upcall threw ZENTA exception: " + hostText;
    const struct {
        int mode;
        const char* report;
        std::string line;
    } cases[] = {
        {1, "enum=100 names=1", other},  // a test callback throws std::runtime_error
        {3, "enum=100 names=1", other},  // the factory cannot allocate the array
        {2, "enum=1 names=1", zenta},    // the factory meets a host failure
    };
    for (const auto& c : cases) {
        *fMode = c.mode;
        ClearLog();
        EXPECT_EQ(Report("enum", {"target", "Fleet_Faulty"}), c.report) << "mode " << c.mode;
        // One line for each of the two enumerations.
        EXPECT_EQ(LoggedWith("CMPIBroker enumInstance"), std::vector<std::string>(2, c.line)) << "mode " << c.mode;
    }
    // Nothing of the failed enumerations is left on the way of the next.
    *fMode = 0;
    EXPECT_EQ(Report("enum", {"target", "Fleet_Faulty"}), "enum=0:calm names=0:calm");
    EXPECT_EQ(Keys("Fleet_Car", "Id"), std::vector<std::string>({"car1", "car2", "car3"}));
}

// Only enumerations through the broker catch: other requests hand a
// provider's failure to the host's caller.
TEST_F(FaultyProvider, ExceptionsInsideGetInstanceAndMethodsReachTheCaller) {
    std::vector<boost::shared_ptr<ICIMInstance> > calm = Instances(Class("Fleet_Faulty"));
    ASSERT_EQ(calm.size(), 1u);
    *fMode = 1;
    EXPECT_THROW(fNamespace->GetInstance(CalmPath(), TCIMContext()), std::runtime_error);
    TCIMContext parameters;
    EXPECT_THROW(calm[0]->InvokeMethod("Fail", parameters, TCIMContext()), std::runtime_error);
    *fMode = 0;
    EXPECT_TRUE(fNamespace->GetInstance(CalmPath(), TCIMContext()));
}

// --- Object paths of every origin -------------------------------------------

TEST_F(Upcalls, EveryUpcallReadsPathsOfEveryOriginTheProviderCanHold) {
    const char* const origins[] = {"factory", "instance", "names"};
    for (const char* origin : origins) {
        EXPECT_EQ(Report("paths", {"origin", origin}), std::string(kCar1Answers) + kCar1Invoke) << origin;
    }
}

// The car provider checks the path of its next get or method call when
// fleet_check_driver_path is set (see FleetCars.c).
class DriverPaths : public BrokerTestHost {
protected:
    void SetUp() override {
        BrokerTestHost::SetUp();
        fCheck = ModuleVariable<int>("Fleet", "fleet_check_driver_path");
        fReport = ModuleVariable<char>("Fleet", "fleet_driver_path_report");
        ASSERT_NE(fCheck, nullptr);
        ASSERT_NE(fReport, nullptr);
    }

    int* fCheck = nullptr;
    char* fReport = nullptr;
};

TEST_F(DriverPaths, ThePathHandedToGetInstanceServesEveryUpcall) {
    const struct {
        const char* name;
        boost::shared_ptr<ICIMNamespace> ns;
        std::string answers;
    } cases[] = {
        // As the host's tools build paths: the manager's, no context.
        {"the manager's path", fUpcall, kCar1Answers},
        // Only the class name is left to go by.
        {"a path without namespace", boost::shared_ptr<ICIMNamespace>(),
         "enum=0:car1,car2,car3 names=0:car1,car2,car3 get=1 prop=null set=1 delete=1 "
         "assoc=1 assocnames=1 refs=1 refnames=1"},
    };
    for (const auto& c : cases) {
        TCIMReference path(c.ns, TCIMContext());
        path.SetClassName("Fleet_Car");
        path.AddKeyValue("Id", TCIMValue("car1"));
        *fCheck = 1;
        boost::shared_ptr<ICIMInstance> car = fNamespace->GetInstance(path, TCIMContext());
        ASSERT_TRUE(car) << c.name;
        EXPECT_EQ(static_cast<std::string>(car->GetProperty("Model", TCIMContext())->GetValue()), "roadster");
        EXPECT_EQ(std::string(fReport), c.answers) << c.name;
    }
}

TEST_F(DriverPaths, ThePathHandedToAMethodServesEveryUpcall) {
    std::vector<boost::shared_ptr<ICIMInstance> > cars = Instances(Class("Fleet_Car"));
    ASSERT_EQ(cars.size(), 3u);
    TCIMContext parameters;
    parameters["visits"] = TCIMValue(1u);
    *fCheck = 1;
    cars[0]->InvokeMethod("Service", parameters, TCIMContext());
    EXPECT_EQ(std::string(fReport), std::string(kCar1Answers) + kCar1Invoke);
    EXPECT_EQ(static_cast<unsigned int>(parameters["visits"]), 2u);
    EXPECT_EQ(static_cast<std::string>(parameters["receipt"]), "serviced car1");
}

TEST_F(Upcalls, APathWithANullHandleIsRefusedByEveryUpcall) {
    EXPECT_EQ(Report("nullpath"),
              "enum=4 names=1 get=1 prop=null set=1 delete=1 assoc=1 assocnames=1 refs=1 refnames=1 invoke=1:5");
}

TEST_F(Upcalls, APathNamingNoInstanceFindsNothingToChange) {
    int* services = ModuleVariable<int>("Fleet", "fleet_service_calls");
    ASSERT_NE(services, nullptr);
    int before = *services;
    EXPECT_EQ(Report("missing", {"key", "car8"}),
              "enum=0:car1,car2,car3 names=0:car1,car2,car3 get=6 prop=uint32:4 set=1 delete=1 "
              "assoc=1 assocnames=1 refs=1 refnames=1 invoke=1:5");
    EXPECT_EQ(*services, before);
}

// --- Associations ---------------------------------------------------------------

TEST_F(Upcalls, AssociationWalksGoThroughTheAssociationProvider) {
    const TReportCase cases[] = {
        {"two drivers, in the provider's order",
         {"key", "car1"},
         "assoc=0:ann,bob assocnames=0:ann,bob refs=0:2 refnames=0:2"},
        {"one driver", {"key", "car2"}, "assoc=0:bob assocnames=0:bob refs=0:1 refnames=0:1"},
        {"from the other end",
         {"target", "Fleet_Driver", "key", "bob"},
         "assoc=0:car1,car2 assocnames=0:car1,car2 refs=0:2 refnames=0:2"},
        {"the role that names the car", {"key", "car1", "role", "Car"},
         "assoc=0:ann,bob assocnames=0:ann,bob refs=0:2 refnames=0:2"},
        // Walks that find nothing fail instead of answering empty.
        {"a car nobody drives", {"key", "car3"}, "assoc=1 assocnames=1 refs=1 refnames=1"},
        {"a driver without a car", {"target", "Fleet_Driver", "key", "cid"}, "assoc=1 assocnames=1 refs=1 refnames=1"},
        {"a role that does not name the car", {"key", "car1", "role", "Driver"},
         "assoc=1 assocnames=1 refs=1 refnames=1"},
        {"a car that does not exist", {"key", "car8"}, "assoc=1 assocnames=1 refs=1 refnames=1"},
    };
    for (const TReportCase& c : cases) {
        EXPECT_EQ(Report("assoc", c.params), c.report) << c;
    }
}

// --- Methods ---------------------------------------------------------------------

TEST_F(Upcalls, AMethodCallReturnsItsOutputsInTheInputArgumentsAndLeavesTheOutputAlone) {
    int* services = ModuleVariable<int>("Fleet", "fleet_service_calls");
    ASSERT_NE(services, nullptr);
    int before = *services;
    // The probe lends its output object as the call's input (visits = 5)
    // and its input object (upcall, key) as the call's output.
    TCIMContext outputs = Run("invoke", {"key", "car2"});
    EXPECT_EQ(ReportOf(outputs), "invoke=0 in=2->2 upcall=invoke");
    EXPECT_EQ(static_cast<unsigned int>(outputs["visits"]), 6u);
    EXPECT_EQ(static_cast<std::string>(outputs["receipt"]), "serviced car2");
    EXPECT_EQ(*services, before + 1);
}

TEST_F(Upcalls, AMethodCallFailsWithoutInstanceOrArguments) {
    int* services = ModuleVariable<int>("Fleet", "fleet_service_calls");
    ASSERT_NE(services, nullptr);
    int before = *services;
    EXPECT_EQ(Report("invoke", {"key", "car8"}), "invoke=1 in=2->2 upcall=invoke");
    EXPECT_EQ(Report("invokenull"), "innull=1 outnull=1 bothnull=1");
    EXPECT_EQ(*services, before);
}

// --- Create, modify, delete ------------------------------------------------------

TEST_F(Upcalls, ACreatedInstanceIsFiledWithItsClassAndServesEveryUpcall) {
    EXPECT_EQ(Report("create", {"key", "car9"}),
              "create=0:null modify=7 enum=0:car1,car2,car3 names=0:car1,car2,car3 get=0:car9 prop=uint32:4 "
              "set=0 delete=7 assoc=1 assocnames=1 refs=1 refnames=1 invoke=0:6");
    // Filed with the repository's class, outside the provider's answers;
    // the property write reached it and the delete did not remove it.
    std::vector<boost::shared_ptr<ICIMInstance> > filed = Instances(fRepository->GetClass("Fleet_Car", TCIMContext()));
    ASSERT_EQ(filed.size(), 1u);
    EXPECT_TRUE(boost::dynamic_pointer_cast<TCMPIInstance>(filed[0]));
    EXPECT_EQ(static_cast<std::string>(filed[0]->GetProperty("Id", TCIMContext())->GetValue()), "car9");
    EXPECT_EQ(static_cast<std::string>(filed[0]->GetProperty("Model", TCIMContext())->GetValue()), "prototype");
    EXPECT_EQ(static_cast<unsigned int>(filed[0]->GetProperty("Mileage", TCIMContext())->GetValue()), 7u);
    EXPECT_EQ(Keys("Fleet_Car", "Id"), std::vector<std::string>({"car1", "car2", "car3"}));
}

// --- Properties, context, threads, log ----------------------------------------

TEST_F(Upcalls, PropertiesAreReadFromTheClassAndWrittenToTheInstance) {
    EXPECT_EQ(Report("property"), "wheels=uint32:4 nope=null set=0 setnull=1 setnope=1");
}

TEST_F(Upcalls, TheCallContextIsEmpty) { EXPECT_EQ(Report("context"), "entry=6 value=null count=0"); }

TEST_F(Upcalls, ThreadAndIndicationCallsAreAcceptedAndDoNothing) {
    EXPECT_EQ(Report("threads"), "prepare=null attach=0 thread=0:car1,car2,car3 detach=0 deliver=0");
}

TEST_F(Upcalls, LogMessagesGoToTheHostLogAtTheMappedLevel) {
    const struct {
        unsigned severity;
        const char* id;
        const char* text;
        const char* chars;
        const char* report;
        const char* line;  // null: nothing logged
    } cases[] = {
        {1, "p1", "error text", nullptr, "log=0", "ERROR cmpi.nsp-p1: error text"},
        {2, "p2", "info text", nullptr, "log=0", "INFORMATION cmpi.nsp-p2: info text"},
        {3, "p3", "warning text", nullptr, "log=0", "WARNING cmpi.nsp-p3: warning text"},
        {4, "p4", "debug text", nullptr, "log=0", "TRACE cmpi.nsp-p4: debug text"},
        {7, "p7", "odd text", nullptr, "log=0", "WARNING cmpi.nsp-p7: odd text"},
        {0, "p0", "zero text", nullptr, "log=0", "WARNING cmpi.nsp-p0: zero text"},
        {2, nullptr, "anonymous text", nullptr, "log=0", "INFORMATION cmpi.nsp-anonymous text"},
        {2, "ps", nullptr, "string text", "log=0", "INFORMATION cmpi.nsp-ps: string text"},
        {2, "pb", "plain text", "ignored text", "log=0", "INFORMATION cmpi.nsp-pb: plain text"},
        {2, "pn", nullptr, nullptr, "log=4", nullptr},
    };
    for (const auto& c : cases) {
        TCIMContext parameters;
        parameters["upcall"] = TCIMValue("log");
        parameters["severity"] = TCIMValue(c.severity);
        if (c.id) parameters["id"] = TCIMValue(c.id);
        if (c.text) parameters["text"] = TCIMValue(c.text);
        if (c.chars) parameters["chars"] = TCIMValue(c.chars);
        std::string unique = c.id ? std::string("cmpi.nsp-") + c.id + ":" : std::string("cmpi.nsp-") + c.text;
        EXPECT_EQ(ReportOf(Run(parameters)), c.report) << unique;
        std::vector<std::string> lines = LoggedWith(unique);
        EXPECT_EQ(lines, c.line ? std::vector<std::string>(1, c.line) : std::vector<std::string>()) << unique;
    }
}
