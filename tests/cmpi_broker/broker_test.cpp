// The broker as providers reach it: its encapsulated-object factory (the objects
// themselves are tested with the CMPI types) and its upcalls, some made inside a
// provider's call with what the driver handed to it.
#include <stdexcept>
#include <string>
#include <vector>

#include "BrokerTestHost.h"
#include "TCMPIInstance.h"
#include "TOSSpecific.h"
#include "cmpiArgs.h"
#include "cmpiInstance.h"
#include "cmpiObjectPath.h"

using namespace NVURZENTA20;

namespace {

typedef BrokerTestHost Factory;
typedef BrokerTestHost Upcalls;

const TCIMReference& ReferenceOf(const CMPIObjectPath* path) { return *static_cast<const TCIMReference*>(path->hdl); }

// What every upcall that takes a path answers for a path naming car1.
const std::string kCar1Answers =
    "enum=0:car1,car2,car3 names=0:car1,car2,car3 get=0:car1 prop=uint32:4 set=0 delete=7 "
    "assoc=0:ann,bob assocnames=0:ann,bob refs=0:2 refnames=0:2";
const std::string kNoWalk = "assoc=1 assocnames=1 refs=1 refnames=1";

}  // namespace

TEST_F(Factory, NewPathsLiveInTheUpcallNamespaceMarkedAsMadeForProviders) {
    CMPIObjectPath* path = nullptr;
    EXPECT_EQ(Registered([&] { path = NewPath("root/elsewhere", "Fleet_Nowhere"); }), 1u);
    ASSERT_NE(path, nullptr);
    const TCIMReference& ref = ReferenceOf(path);
    EXPECT_EQ(ref.GetClassName(), "Fleet_Nowhere");
    EXPECT_EQ(ref.GetNameSpaceName(), "root/elsewhere");
    EXPECT_EQ(ref.GetNamespace(), fUpcall);
    EXPECT_EQ(ref.GetContext(), (TCIMContext{{"nspID", TCIMValue("cmpi")}}));
    // Read as a shared reference, the handle leads to the same path.
    EXPECT_EQ(static_cast<boost::shared_ptr<TCIMReference>*>(path->hdl)->get(), &ref);
}

TEST_F(Factory, NewInstancesTakeTheirKeysReferencesTooFromThePath) {
    CMPIObjectPath* car = CarPath("car1");
    CMPIObjectPath* driver = NewPath("root/fleet", "Fleet_Driver", "ann");
    CMPIObjectPath* assignment = NewPath("root/fleet", "Fleet_Assignment");
    CMAddKey(assignment, "Car", &car, CMPI_ref);
    CMAddKey(assignment, "Driver", &driver, CMPI_ref);
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIInstance* record = nullptr;
    EXPECT_EQ(Registered([&] { record = Enc().newInstance(Broker(), assignment, &rc); }), 1u);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    ASSERT_NE(record, nullptr);
    boost::shared_ptr<ICIMInstance> instance = instanceOfRecord(record);
    ASSERT_TRUE(boost::dynamic_pointer_cast<TCMPIInstance>(instance));
    EXPECT_EQ(instance->GetClass(TCIMContext())->GetName(TCIMContext()), "Fleet_Assignment");
    EXPECT_EQ(static_cast<TCIMReference>(instance->GetProperty("Car", TCIMContext())->GetValue()), ReferenceOf(car));
    EXPECT_EQ(static_cast<TCIMReference>(instance->GetProperty("Driver", TCIMContext())->GetValue()),
              ReferenceOf(driver));
}

TEST_F(Factory, NewInstancesNeedAProviderServedClass) {
    CMPIObjectPath* garage = NewPath("root/fleet", "Fleet_Garage");
    CMPIStatus rc = {CMPI_RC_OK, nullptr};
    EXPECT_EQ(Registered([&] { EXPECT_EQ(Enc().newInstance(Broker(), garage, &rc), nullptr); }), 0u);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND);
    // An unknown class is the host's failure, and it reaches the caller.
    CMPIObjectPath* nowhere = NewPath("root/fleet", "Fleet_Nowhere");
    rc.rc = CMPI_RC_ERR_NOT_SUPPORTED;
    EXPECT_EQ(Registered([&] { EXPECT_THROW(Enc().newInstance(Broker(), nowhere, &rc), TZENTAException); }), 0u);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_F(Factory, NewArraysAreRegisteredAndHoldTypedNullElements) {
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIArray* array = nullptr;
    EXPECT_EQ(Registered([&] { array = Enc().newArray(Broker(), 2, CMPI_uint16A, &rc); }), 1u);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(CMGetArrayCount(array, nullptr), 2u);
    const CMPIData last = CMGetArrayElementAt(array, 1, nullptr);
    EXPECT_TRUE(last.type == CMPI_uint16 && last.state == CMPI_nullValue && last.value.uint64 == 0);
}

TEST_F(Factory, DateTimesFromCimTextKeepItAndAllOthersAreTheCurrentTime) {
    const CMPIBroker* b = Broker();
    for (const char* cim : {"20200102030405.000000+060", "00000001020304.500000:000"}) {
        EXPECT_EQ(static_cast<const TCIMDateTime*>(Enc().newDateTimeFromChars(b, cim, nullptr)->hdl)->ToString(), cim);
    }
    const std::string before = TOSSpecific::GetLocalTime().ToString();
    std::vector<CMPIDateTime*> made;
    CMPIStatus rc[5] = {};
    EXPECT_EQ(Registered([&] {
                  made = {Enc().newDateTime(b, &rc[0]), Enc().newDateTimeFromBinary(b, 86400000000ULL, 1, &rc[1]),
                          Enc().newDateTimeFromBinary(b, 1000000ULL, 0, &rc[2]),
                          Enc().newDateTimeFromChars(b, "2", &rc[3]), Enc().newDateTimeFromChars(b, "?", &rc[4])};
              }),
              5u);
    const std::string after = TOSSpecific::GetLocalTime().ToString();
    for (std::size_t i = 0; i < made.size(); ++i) {
        EXPECT_EQ(rc[i].rc, CMPI_RC_OK) << i;
        const std::string text = static_cast<const TCIMDateTime*>(made[i]->hdl)->ToString();
        // Date and time digits between the two readings, the offset of now.
        EXPECT_LE(before.substr(0, 21), text.substr(0, 21)) << i;
        EXPECT_LE(text.substr(0, 21), after.substr(0, 21)) << i;
        EXPECT_EQ(text.substr(21), after.substr(21)) << i;
    }
}

TEST_F(Factory, SelectExpressionsAreEmptyRecordsThatNobodyRegisters) {
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPISelectExp* expression = nullptr;
    EXPECT_EQ(Registered([&] { expression = Enc().newSelectExp(Broker(), "SELECT *", "WQL", nullptr, &rc); }), 0u);
    ASSERT_NE(expression, nullptr);
    EXPECT_EQ(expression->hdl, nullptr);
    EXPECT_EQ(expression->ft, nullptr);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_FAILED) << "the status is not written";
    delete expression;  // the library never frees it
}

// Rather than leaving null slots a provider would jump through.
TEST_F(Factory, MembersTheLibraryDoesNotServeAnswerNotSupported) {
    const CMPIBroker* b = Broker();
    CMPIObjectPath* path = CarPath("car1");
    CMPIStatus rc[7] = {};
    std::vector<bool> answeredNothing;
    EXPECT_EQ(Registered([&] {
                  answeredNothing = {Enc().newArgs(b, &rc[0]) == nullptr,
                                     Enc().classPathIsA(b, path, "Fleet_Car", &rc[1]) == 0,
                                     Enc().toString(b, path, &rc[2]) == nullptr,
                                     Enc().isOfType(b, path, "CMPIObjectPath", &rc[3]) == 0,
                                     Enc().getType(b, path, &rc[4]) == nullptr,
                                     Enc().getMessage(b, "id", "text", &rc[5], 0) == nullptr};
                  rc[6] = Enc().trace(b, 1, "fleet", "untraced text", nullptr);
              }),
              0u);
    EXPECT_EQ(answeredNothing, std::vector<bool>(6, true));
    for (const CMPIStatus& status : rc) EXPECT_TRUE(status.rc == CMPI_RC_ERR_NOT_SUPPORTED && status.msg == nullptr);
    EXPECT_TRUE(LoggedWith("untraced text").empty()) << "trace wrote to the log";
}

TEST_F(Factory, AnInstanceFromGetInstanceStaysValidUntilTheRegistryIsCleared) {
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIInstance* car = Broker()->bft->getInstance(Broker(), nullptr, CarPath("car2"), nullptr, &rc);
    ASSERT_NE(car, nullptr);
    // Other requests come and go before the provider reads it.
    EXPECT_EQ(Keys("Fleet_Car", "Model"), std::vector<std::string>({"roadster", "van", "truck"}));
    CMPIData model = car->ft->getProperty(car, "Model", &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    ASSERT_EQ(model.type, CMPI_string);
    EXPECT_STREQ(static_cast<const char*>(model.value.string->hdl), "van");
}

TEST_F(Upcalls, EnumerationsReachTheServingProviderThroughTheManager) {
    EXPECT_EQ(Enumerations("Fleet_Driver", "Name"), "enum=0:ann,bob,cid names=0:ann,bob,cid");
    EXPECT_EQ(Enumerations("Fleet_Nowhere"), "enum=6 names=1");
    fManager->DetachProviderNamespace("cmpi");
    EXPECT_EQ(Enumerations("Fleet_Car"), "enum=1 names=1") << "a class whose provider is not attached";
}

// Names register one record more than the walk they are made from (the leak
// checker sees that registered enumerations are freed with the registry).
TEST_F(Upcalls, EnumerationsAreRegisteredAndNamesAddOnlyTheirPathEnumeration) {
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIObjectPath* cars = NewPath("root/fleet", "Fleet_Car");
    CMPIObjectPath* car1 = CarPath("car1");
    const CMPIBroker* b = Broker();
    const std::size_t byInstances = Registered([&] { ASSERT_TRUE(CBEnumInstances(b, nullptr, cars, nullptr, &rc)); });
    EXPECT_EQ(Registered([&] { ASSERT_TRUE(CBEnumInstanceNames(b, nullptr, cars, &rc)); }), byInstances + 1);
    const std::size_t byAssociators =
        Registered([&] { ASSERT_TRUE(CBAssociators(b, nullptr, car1, "", "", "", "", nullptr, &rc)); });
    EXPECT_EQ(Registered([&] { ASSERT_TRUE(CBAssociatorNames(b, nullptr, car1, "", "", "", "", &rc)); }),
              byAssociators + 1);
}

TEST_F(Upcalls, EveryUpcallReadsPathsOfEveryOriginAndRefusesBrokenOnes) {
    TCIMContext inputs, outputs;
    CMPIArgs* in = params2CMPIArgs(&inputs);
    CMPIArgs* out = params2CMPIArgs(&outputs);
    CMPIInstance* got = CBGetInstance(Broker(), nullptr, CarPath("car1"), nullptr, nullptr);
    CMPIEnumeration* names = CBEnumInstanceNames(Broker(), nullptr, NewPath("root/fleet", "Fleet_Car"), nullptr);
    const CMPIObjectPath* origins[] = {CarPath("car1"), CMGetObjectPath(got, nullptr),
                                       CMGetNext(names, nullptr).value.ref};
    for (const CMPIObjectPath* path : origins) {
        EXPECT_EQ(CheckPath(nullptr, path, in, out), kCar1Answers + " invoke=0:6");
    }
    // A path record whose handle is null, as a careless provider may pass.
    const CMPIObjectPath nullPath = {nullptr, origins[0]->ft};
    EXPECT_EQ(CheckPath(nullptr, &nullPath, in, out),
              "enum=4 names=1 get=1 prop=null set=1 delete=1 " + kNoWalk + " invoke=1:5");
    // A path naming no instance finds nothing to change; getInstance still
    // answers OK, with a record over no instance.
    const int* services = ModuleVariable<int>("fleet_service_calls");
    const int before = *services;
    EXPECT_EQ(CheckPath(nullptr, CarPath("car8"), in, out),
              "enum=0:car1,car2,car3 names=0:car1,car2,car3 get=0 prop=uint32:4 set=1 delete=1 " + kNoWalk +
                  " invoke=1:5");
    EXPECT_EQ(*services, before);
}

// Instance upcalls ask the namespace the path names and nothing else: the
// repository (where the host's own paths of provider instances point) finds
// them, drivers too although their provider gets no single instance; a
// namespace that lacks the instance answers for itself.
TEST_F(Upcalls, InstanceUpcallsAskOnlyTheNamespaceThePathNames) {
    const auto pathIn = [](const boost::shared_ptr<ICIMNamespace>& ns, const char* cls, const char* key,
                           const char* id) {
        CMPIObjectPath* record = newOwningObjectPath();
        TCIMReference* path = static_cast<TCIMReference*>(record->hdl);
        path->SetNamespace(ns);
        path->SetClassName(cls);
        path->AddKeyValue(key, TCIMValue(id));
        CMPINSPInstanceRegistry::GetRegistrySingleton()->RegisterObjectPath(record);
        return record;
    };
    const std::string kFound = "get=0:car1 prop=uint32:4 set=0 delete=7";
    EXPECT_NE(CheckPath(nullptr, pathIn(fRepository, "Fleet_Car", "Id", "car1")).find(kFound), std::string::npos);
    EXPECT_EQ(Walks(pathIn(fRepository, "Fleet_Driver", "Name", "ann"), "Id"),
              "assoc=0:car1 assocnames=0:car1 refs=0:1 refnames=0:1");
    const CMPIBroker* b = Broker();
    EXPECT_EQ(CBDeleteInstance(b, nullptr, NewPath("root/fleet", "Fleet_Driver", "ann")).rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(CBDeleteInstance(b, nullptr, NewPath("root/fleet", "Fleet_Driver", "zoe")).rc, CMPI_RC_ERR_FAILED);

    // A repository instance of a class no provider serves.
    boost::shared_ptr<ICIMInstance> garage =
        fRepository->GetClass("Fleet_Garage", TCIMContext())->AllocateInstance(TCIMContext());
    garage->SetPropertyValue("Name", TCIMValue("north"), TCIMContext());
    ASSERT_TRUE(garage->AddToNamespace(TCIMContext()));
    EXPECT_EQ(CBDeleteInstance(b, nullptr, pathIn(fRepository, "Fleet_Garage", "Name", "north")).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(CBDeleteInstance(b, nullptr, pathIn(fUpcall, "Fleet_Garage", "Name", "south")).rc, CMPI_RC_ERR_FAILED);

    // Another namespace that knows nothing of the fleet: nothing is found,
    // however much the broker's own namespace would know.
    boost::shared_ptr<ICIMNamespace> elsewhere =
        NVURZENTA20::TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("inmem")->AllocateNamespace(
            TCIMContext(), true);
    EXPECT_EQ(CheckPath(nullptr, pathIn(elsewhere, "Fleet_Car", "Id", "car1")),
              "enum=0:car1,car2,car3 names=0:car1,car2,car3 get=0 prop=null set=1 delete=1 " + kNoWalk);
}

TEST_F(Upcalls, AssociationWalksGoThroughTheAssociationProvider) {
    CMPIObjectPath* bob = NewPath("root/fleet", "Fleet_Driver", "bob");
    EXPECT_EQ(Walks(CarPath("car1")), "assoc=0:ann,bob assocnames=0:ann,bob refs=0:2 refnames=0:2");  // in order
    EXPECT_EQ(Walks(CarPath("car2")), "assoc=0:bob assocnames=0:bob refs=0:1 refnames=0:1");
    EXPECT_EQ(Walks(bob, "Id"), "assoc=0:car1,car2 assocnames=0:car1,car2 refs=0:2 refnames=0:2");
    // Walks that find nothing fail instead of answering empty.
    EXPECT_EQ(Walks(CarPath("car3")), kNoWalk);
    EXPECT_EQ(Walks(NewPath("root/fleet", "Fleet_Driver", "cid"), "Id"), kNoWalk);
    EXPECT_EQ(Walks(CarPath("car1"), "Name", "Driver"), kNoWalk) << "a role that does not name the car";
}

// Inside a provider's call: the paths the driver hands to providers serve
// every upcall, and the call context is empty.
TEST_F(Upcalls, WhatTheDriverHandsToAProviderServesItsUpcalls) {
    const struct {
        boost::shared_ptr<ICIMNamespace> ns;
        std::string answers;
    } gets[] = {
        {fUpcall, kCar1Answers},  // as the host's tools build paths: the manager's, no context
        // Without namespace, only the class name is left to go by.
        {boost::shared_ptr<ICIMNamespace>(),
         "enum=0:car1,car2,car3 names=0:car1,car2,car3 get=1 prop=null set=1 delete=1 " + kNoWalk},
    };
    std::string report;
    for (const auto& c : gets) {
        InsideNextCarCall([&](const CMPIContext* ctx, const CMPIObjectPath* ref, const CMPIArgs*, CMPIArgs*) {
            report = CheckPath(ctx, ref);
        });
        boost::shared_ptr<ICIMInstance> car = fNamespace->GetInstance(Car1Reference(c.ns), TCIMContext());
        ASSERT_TRUE(car);
        EXPECT_EQ(Text(*car, "Model"), "roadster");
        EXPECT_EQ(report, c.answers);
    }
    TCIMContext parameters = {{"visits", TCIMValue(1u)}};
    const TInstance car1 = Instances("Fleet_Car").at(0);
    InsideNextCarCall([&](const CMPIContext* ctx, const CMPIObjectPath* ref, const CMPIArgs* in, CMPIArgs* out) {
        report = CheckPath(ctx, ref, in, out);
        CMPIStatus rc = {CMPI_RC_OK, nullptr};
        CMGetContextEntry(ctx, "CMPIInvocationFlags", &rc);
        report += " entry=" + std::to_string(rc.rc) + " count=" + std::to_string(CMGetContextEntryCount(ctx, nullptr));
    });
    car1->InvokeMethod("Service", parameters, TCIMContext());
    EXPECT_EQ(report, kCar1Answers + " invoke=0:6 entry=6 count=0");
    EXPECT_EQ(static_cast<unsigned int>(parameters["visits"]), 2u);
    EXPECT_EQ(static_cast<std::string>(parameters["receipt"]), "serviced car1");
}

TEST_F(Upcalls, AMethodCallReturnsItsOutputsInTheInputArgumentsAndLeavesTheOutputAlone) {
    const int* services = ModuleVariable<int>("fleet_service_calls");
    const int before = *services;
    TCIMContext lentAsInput = {{"visits", TCIMValue(5u)}};
    TCIMContext lentAsOutput = {{"upcall", TCIMValue("invoke")}, {"key", TCIMValue("car2")}};
    const TCIMContext untouched = lentAsOutput;
    CMPIArgs* in = params2CMPIArgs(&lentAsInput);
    CMPIArgs* out = params2CMPIArgs(&lentAsOutput);
    CMPIStatus rc = {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    CBInvokeMethod(Broker(), nullptr, CarPath("car2"), "Service", in, out, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(lentAsOutput, untouched);
    EXPECT_EQ(lentAsInput, (TCIMContext{{"visits", TCIMValue(6u)}, {"receipt", TCIMValue("serviced car2")}}));
    EXPECT_EQ(*services, before + 1);
    // Without instance or argument objects, nothing reaches the provider.
    CBInvokeMethod(Broker(), nullptr, CarPath("car8"), "Service", in, out, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_FAILED);
    CMPIArgs nullArgs = {nullptr, in->ft};
    for (const auto& args : {std::make_pair(&nullArgs, out), std::make_pair(in, &nullArgs),
                             std::make_pair(&nullArgs, &nullArgs)}) {
        rc.rc = CMPI_RC_OK;
        CBInvokeMethod(Broker(), nullptr, CarPath("car1"), "Service", args.first, args.second, &rc);
        EXPECT_EQ(rc.rc, CMPI_RC_ERR_FAILED);
    }
    EXPECT_EQ(*services, before + 1);
}

TEST_F(Upcalls, ACreatedInstanceIsFiledWithItsClassAndServesEveryUpcall) {
    CMPIObjectPath* path = CarPath("car9");
    CMPIInstance* car = CMNewInstance(Broker(), path, nullptr);
    CMSetProperty(car, "Model", "prototype", CMPI_chars);
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    EXPECT_EQ(CBCreateInstance(Broker(), nullptr, path, car, &rc), nullptr);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(CBModifyInstance(Broker(), nullptr, path, car, nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(CheckPath(nullptr, CMGetObjectPath(car, nullptr)),
              "enum=0:car1,car2,car3 names=0:car1,car2,car3 get=0:car9 prop=uint32:4 set=0 delete=7 " + kNoWalk);
    // Filed with the repository's class, outside the provider's answers;
    // the property write reached it and the delete did not remove it.
    std::vector<TInstance> filed = Instances("Fleet_Car", true);
    ASSERT_EQ(filed.size(), 1u);
    EXPECT_TRUE(boost::dynamic_pointer_cast<TCMPIInstance>(filed[0]));
    EXPECT_EQ(Text(*filed[0], "Id"), "car9");
    EXPECT_EQ(Text(*filed[0], "Model"), "prototype");
    EXPECT_EQ(static_cast<unsigned int>(filed[0]->GetProperty("Mileage", TCIMContext())->GetValue()), 7u);
    EXPECT_EQ(Keys("Fleet_Car", "Id"), std::vector<std::string>({"car1", "car2", "car3"}));
}

TEST_F(Upcalls, PropertiesAreReadFromTheClassAndWrittenToTheInstance) {
    CMPIObjectPath* car1 = CarPath("car1");
    CMPIUint32 mileage = 5;
    EXPECT_EQ(DataText(CBGetProperty(Broker(), nullptr, car1, "Wheels", nullptr)), "uint32:4");
    EXPECT_EQ(DataText(CBGetProperty(Broker(), nullptr, car1, "Nope", nullptr)), "null");
    EXPECT_EQ(CBSetProperty(Broker(), nullptr, car1, "Mileage", &mileage, CMPI_uint32).rc, CMPI_RC_OK);
    EXPECT_EQ(CBSetProperty(Broker(), nullptr, car1, "Mileage", &mileage, CMPI_null).rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(CBSetProperty(Broker(), nullptr, car1, "Nope", &mileage, CMPI_uint32).rc, CMPI_RC_ERR_FAILED);
}

TEST_F(Upcalls, LogMessagesGoToTheHostLogAtTheMappedLevel) {
    const struct {
        int severity;
        const char *id, *text, *chars;
        const char* line;  // null: nothing logged, the call fails
    } cases[] = {
        {1, "p1", "error text", nullptr, "ERROR cmpi.nsp-p1: error text"},
        {7, "p7", "odd text", nullptr, "WARNING cmpi.nsp-p7: odd text"},
        {2, nullptr, "anonymous text", nullptr, "INFORMATION cmpi.nsp-anonymous text"},
        {2, "ps", nullptr, "string text", "INFORMATION cmpi.nsp-ps: string text"},
        {2, "pb", "plain text", "ignored text", "INFORMATION cmpi.nsp-pb: plain text"},
        {2, "pn", nullptr, nullptr, nullptr},
    };
    for (const auto& c : cases) {
        CMPIString* string = c.chars ? CMNewString(Broker(), c.chars, nullptr) : nullptr;
        const std::string unique = c.id ? std::string("cmpi.nsp-") + c.id + ":" : std::string("cmpi.nsp-") + c.text;
        EXPECT_EQ(CMLogMessage(Broker(), c.severity, c.id, c.text, string).rc,
                  c.line ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_PARAMETER) << unique;
        EXPECT_EQ(LoggedWith(unique), c.line ? std::vector<std::string>(1, c.line) : std::vector<std::string>())
            << unique;
    }
}

TEST_F(Upcalls, ExceptionsInsideAnEnumerationThroughTheBrokerAreLoggedAndReported) {
    // The host's own words for the failure the factory meets below.
    std::string hostText;
    try {
        fManager->GetClass("Fleet_Nowhere", {{"nspID", TCIMValue("cmpi")}});
    } catch (const TZENTAException& failure) {
        hostText = failure.what();
    }
    ASSERT_FALSE(hostText.empty());
    const std::string other = "ERROR cmpi.nsp: CMPIBroker enumInstance upcall threw an exception";
    const std::string zenta = "ERROR cmpi.nsp: CMPIBroker enumInstance upcall threw ZENTA exception: " + hostText;
    const struct {
        TCall misbehave;
        const char* report;
        std::string line;
    } cases[] = {
        {[](auto...) { throw std::runtime_error("test provider failed"); }, "enum=100 names=1", other},
        {[&](auto...) { CMNewArray(Broker(), 0xFFFFFFFFu, CMPI_uint32, nullptr); }, "enum=100 names=1", other},
        {[&](auto...) { CMNewInstance(Broker(), NewPath("root/fleet", "Fleet_Nowhere", "x"), nullptr); },
         "enum=1 names=1", zenta},
    };
    for (const auto& c : cases) {
        InsideNextCarCall(c.misbehave, true);
        ClearLog();
        EXPECT_EQ(Enumerations("Fleet_Car"), c.report);
        // One line for each of the two enumerations.
        EXPECT_EQ(LoggedWith("CMPIBroker enumInstance"), std::vector<std::string>(2, c.line));
    }
    // Nothing of the failed enumerations is left on the way of the next.
    InsideNextCarCall([](auto...) {});
    EXPECT_EQ(Enumerations("Fleet_Car"), "enum=0:car1,car2,car3 names=0:car1,car2,car3");
    EXPECT_EQ(Keys("Fleet_Car", "Id"), std::vector<std::string>({"car1", "car2", "car3"}));
}

// Only enumerations through the broker catch: other requests hand a
// provider's failure to the host's caller.
TEST_F(Upcalls, ExceptionsInsideGetInstanceAndMethodsReachTheCaller) {
    const TInstance car = Instances("Fleet_Car").at(0);
    const TCIMReference path = Car1Reference(fUpcall);
    InsideNextCarCall([](auto...) { throw std::runtime_error("test provider failed"); }, true);
    EXPECT_THROW(fNamespace->GetInstance(path, TCIMContext()), std::runtime_error);
    TCIMContext parameters;
    EXPECT_THROW(car->InvokeMethod("Service", parameters, TCIMContext()), std::runtime_error);
    InsideNextCarCall([](auto...) {});
    EXPECT_TRUE(fNamespace->GetInstance(path, TCIMContext()));
}
