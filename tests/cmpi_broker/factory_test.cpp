// The broker's encapsulated-object factory as providers reach it (through
// the namespace's broker record), and the per-call records of the driver.
#include <cstring>
#include <functional>
#include <string>

#include "BrokerTestHost.h"
#include "TCMPIInstance.h"
#include "TOSSpecific.h"
#include "cmpiBrokerEnc.h"
#include "cmpiContext.h"
#include "cmpiDateTime.h"
#include "cmpiInstance.h"
#include "cmpiObjectPath.h"
#include "cmpiResult.h"
#include "cmpiString.h"

using namespace NVURZENTA20;

namespace {

class Factory : public BrokerTestHost {
protected:
    const CMPIBrokerEncFT& Enc() const { return *Broker()->eft; }

    // How many records `make` entered in the registry.
    std::size_t Registered(const std::function<void()>& make) {
        std::size_t before = Registry().GetRecordCount();
        make();
        return Registry().GetRecordCount() - before;
    }
};

const TCIMReference& ReferenceOf(const CMPIObjectPath* path) { return *static_cast<const TCIMReference*>(path->hdl); }

std::string PropertyText(const ICIMInstance& instance, const char* name) {
    return instance.GetProperty(name, TCIMContext())->GetValue();
}

// The date and time digits of a CIM timestamp, and its offset from UTC.
std::string Digits(const TCIMDateTime& value) { return value.ToString().substr(0, 21); }
std::string Offset(const TCIMDateTime& value) { return value.ToString().substr(21); }

}  // namespace

TEST_F(Factory, NewPathsLiveInTheUpcallNamespaceMarkedAsMadeForProviders) {
    const struct {
        const char* ns;
        const char* cls;
    } cases[] = {{"root/fleet", "Fleet_Car"}, {"root/elsewhere", "Fleet_Nowhere"}, {"", ""}};
    for (const auto& c : cases) {
        CMPIObjectPath* path = nullptr;
        EXPECT_EQ(Registered([&] { path = NewPath(c.ns, c.cls); }), 1u) << c.cls;
        ASSERT_NE(path, nullptr);
        EXPECT_EQ(path->ft, cmpiObjectPathFt);
        const TCIMReference& ref = ReferenceOf(path);
        EXPECT_EQ(ref.GetClassName(), c.cls);
        EXPECT_EQ(ref.GetNameSpaceName(), c.ns);
        EXPECT_EQ(ref.GetNamespace(), fUpcall);
        EXPECT_EQ(ref.GetKeyCount(), 0u);
        ASSERT_EQ(ref.GetContext().size(), 1u);
        ASSERT_EQ(ref.GetContext().count("nspID"), 1u);
        EXPECT_EQ(ref.GetContext().at("nspID").GetType(), TCIMValue::TCIMType::kString);
        EXPECT_EQ(static_cast<std::string>(ref.GetContext().at("nspID")), "cmpi");
        // Read as a shared reference, the handle leads to the same path.
        EXPECT_EQ(static_cast<boost::shared_ptr<TCIMReference>*>(path->hdl)->get(), &ref);
    }
}

TEST_F(Factory, NewInstancesTakeTheirKeysFromThePath) {
    CMPIObjectPath* path = CarPath("car5");
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIInstance* record = nullptr;
    EXPECT_EQ(Registered([&] { record = Enc().newInstance(Broker(), path, &rc); }), 1u);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->ft, cmpiInstanceFt);
    boost::shared_ptr<ICIMInstance> instance = instanceOfRecord(record);
    ASSERT_TRUE(boost::dynamic_pointer_cast<TCMPIInstance>(instance));
    EXPECT_EQ(instance->GetClass(TCIMContext())->GetName(TCIMContext()), "Fleet_Car");
    EXPECT_EQ(PropertyText(*instance, "Id"), "car5");
    EXPECT_TRUE(instance->GetProperty("Model", TCIMContext())->GetValue().IsNull());
    // The class's allocation leaves non-key properties as they are.
    EXPECT_TRUE(instance->GetProperty("Mileage", TCIMContext())->GetValue().IsNull());
}

TEST_F(Factory, NewInstancesTakeReferenceKeysToo) {
    CMPIObjectPath* car = CarPath("car1");
    CMPIObjectPath* driver = NewPath("root/fleet", "Fleet_Driver");
    driver->ft->addKey(driver, "Name", reinterpret_cast<const CMPIValue*>("ann"), CMPI_chars);
    CMPIObjectPath* assignment = NewPath("root/fleet", "Fleet_Assignment");
    assignment->ft->addKey(assignment, "Car", reinterpret_cast<const CMPIValue*>(&car), CMPI_ref);
    assignment->ft->addKey(assignment, "Driver", reinterpret_cast<const CMPIValue*>(&driver), CMPI_ref);
    CMPIInstance* record = Enc().newInstance(Broker(), assignment, nullptr);
    ASSERT_NE(record, nullptr);
    const ICIMInstance& instance = *instanceOfRecord(record);
    EXPECT_EQ(static_cast<TCIMReference>(instance.GetProperty("Car", TCIMContext())->GetValue()), ReferenceOf(car));
    EXPECT_EQ(static_cast<TCIMReference>(instance.GetProperty("Driver", TCIMContext())->GetValue()),
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

TEST_F(Factory, NewStringsAreRegisteredCopies) {
    for (const char* text : {"fleet", ""}) {
        CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
        CMPIString* string = nullptr;
        EXPECT_EQ(Registered([&] { string = Enc().newString(Broker(), text, &rc); }), 1u);
        EXPECT_EQ(rc.rc, CMPI_RC_OK);
        ASSERT_NE(string, nullptr);
        EXPECT_EQ(string->ft, cmpiStringFt);
        EXPECT_NE(string->hdl, static_cast<const void*>(text));
        EXPECT_STREQ(static_cast<const char*>(string->hdl), text);
    }
}

TEST_F(Factory, NewArraysHoldTypedNullElements) {
    const struct {
        CMPICount count;
        CMPIType type;
        CMPIType elementType;
    } cases[] = {
        {0, CMPI_uint32, CMPI_uint32},         {3, CMPI_uint8, CMPI_uint8},
        {2, CMPI_sint64, CMPI_sint64},         {2, CMPI_real64, CMPI_real64},
        {2, CMPI_string, CMPI_string},         {1, CMPI_ref, CMPI_ref},
        {1, CMPI_dateTime, CMPI_dateTime},     {2, CMPI_instance, CMPI_instance},
        {2, CMPI_uint16A, CMPI_uint16},
    };
    for (const auto& c : cases) {
        CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
        CMPIArray* array = nullptr;
        EXPECT_EQ(Registered([&] { array = Enc().newArray(Broker(), c.count, c.type, &rc); }), 1u);
        EXPECT_EQ(rc.rc, CMPI_RC_OK);
        ASSERT_NE(array, nullptr);
        const CMPIData* store = static_cast<const CMPIData*>(array->hdl);
        EXPECT_EQ(store[0].type, c.elementType) << c.type;
        EXPECT_EQ(store[0].value.uint32, c.count) << c.type;
        EXPECT_EQ(array->ft->getSize(array, nullptr), c.count);
        EXPECT_EQ(array->ft->getSimpleType(array, nullptr), c.elementType);
        for (CMPICount i = 0; i < c.count; ++i) {
            CMPIData element = array->ft->getElementAt(array, i, &rc);
            EXPECT_EQ(rc.rc, CMPI_RC_OK);
            EXPECT_EQ(element.type, c.elementType) << c.type << " at " << i;
            EXPECT_EQ(element.state, CMPI_nullValue) << c.type << " at " << i;
            EXPECT_EQ(element.value.uint64, 0u) << c.type << " at " << i;
        }
        array->ft->getElementAt(array, c.count, &rc);
        EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND);
    }
}

TEST_F(Factory, DateTimesThatCannotBeHonouredAreTheCurrentTime) {
    typedef std::function<CMPIDateTime*(CMPIStatus*)> TMaker;
    const CMPIBroker* broker = Broker();
    const struct {
        const char* name;
        TMaker make;
    } cases[] = {
        {"now", [&](CMPIStatus* rc) { return Enc().newDateTime(broker, rc); }},
        {"binary zero", [&](CMPIStatus* rc) { return Enc().newDateTimeFromBinary(broker, 0, 0, rc); }},
        {"binary interval", [&](CMPIStatus* rc) { return Enc().newDateTimeFromBinary(broker, 86400000000ULL, 1, rc); }},
        {"binary stamp", [&](CMPIStatus* rc) { return Enc().newDateTimeFromBinary(broker, 1000000ULL, 0, rc); }},
        {"one character", [&](CMPIStatus* rc) { return Enc().newDateTimeFromChars(broker, "2", rc); }},
        {"unparsable", [&](CMPIStatus* rc) { return Enc().newDateTimeFromChars(broker, "next tuesday", rc); }},
        {"empty", [&](CMPIStatus* rc) { return Enc().newDateTimeFromChars(broker, "", rc); }},
        {"too short", [&](CMPIStatus* rc) { return Enc().newDateTimeFromChars(broker, "20200102", rc); }},
    };
    for (const auto& c : cases) {
        CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
        const TCIMDateTime before = TOSSpecific::GetLocalTime();
        CMPIDateTime* dateTime = nullptr;
        EXPECT_EQ(Registered([&] { dateTime = c.make(&rc); }), 1u) << c.name;
        const TCIMDateTime after = TOSSpecific::GetLocalTime();
        EXPECT_EQ(rc.rc, CMPI_RC_OK) << c.name;
        ASSERT_NE(dateTime, nullptr) << c.name;
        EXPECT_EQ(dateTime->ft, cmpiDateTimeFt);
        const TCIMDateTime& made = *static_cast<const TCIMDateTime*>(dateTime->hdl);
        EXPECT_FALSE(made.IsInterval()) << c.name;
        EXPECT_LE(Digits(before), Digits(made)) << c.name << ": " << made.ToString();
        EXPECT_LE(Digits(made), Digits(after)) << c.name << ": " << made.ToString();
        EXPECT_EQ(Offset(made), Offset(after)) << c.name;
    }
}

TEST_F(Factory, DateTimesFromCIMTextKeepTheirValue) {
    for (const char* text : {"20200102030405.000000+060", "00000001020304.500000:000"}) {
        CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
        CMPIDateTime* dateTime = nullptr;
        EXPECT_EQ(Registered([&] { dateTime = Enc().newDateTimeFromChars(Broker(), text, &rc); }), 1u);
        EXPECT_EQ(rc.rc, CMPI_RC_OK);
        ASSERT_NE(dateTime, nullptr);
        EXPECT_EQ(static_cast<const TCIMDateTime*>(dateTime->hdl)->ToString(), text);
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

TEST_F(Factory, MembersTheLibraryDoesNotServeAnswerNotSupported) {
    const CMPIBroker* broker = Broker();
    CMPIObjectPath* path = CarPath("car1");
    const struct {
        const char* name;
        std::function<bool(CMPIStatus*)> call;  // true when the result is null
    } cases[] = {
        {"newArgs", [&](CMPIStatus* rc) { return Enc().newArgs(broker, rc) == nullptr; }},
        {"classPathIsA", [&](CMPIStatus* rc) { return Enc().classPathIsA(broker, path, "Fleet_Car", rc) == 0; }},
        {"toString", [&](CMPIStatus* rc) { return Enc().toString(broker, path, rc) == nullptr; }},
        {"isOfType", [&](CMPIStatus* rc) { return Enc().isOfType(broker, path, "CMPIObjectPath", rc) == 0; }},
        {"getType", [&](CMPIStatus* rc) { return Enc().getType(broker, path, rc) == nullptr; }},
        {"getMessage", [&](CMPIStatus* rc) { return Enc().getMessage(broker, "id", "text", rc, 0) == nullptr; }},
        {"trace",
         [&](CMPIStatus* rc) {
             *rc = Enc().trace(broker, 1, "fleet", "untraced text", nullptr);
             return true;
         }},
    };
    for (const auto& c : cases) {
        CMPIStatus rc = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(Registered([&] { EXPECT_TRUE(c.call(&rc)) << c.name; }), 0u) << c.name;
        EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_SUPPORTED) << c.name;
        EXPECT_EQ(rc.msg, nullptr) << c.name;
    }
    EXPECT_TRUE(LoggedWith("untraced text").empty()) << "trace wrote to the log";
}

// --- Per-call records of the driver -----------------------------------------

TEST_F(Factory, ACallContextIsAnEmptyMapOfItsOwn) {
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIContext* context = nullptr;
    EXPECT_EQ(Registered([&] { context = newCMPIContext("dummy", &rc); }), 0u);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(context->ft, cmpiContextFt);
    ASSERT_NE(context->hdl, nullptr);
    EXPECT_TRUE(static_cast<TCIMContext*>(context->hdl)->empty());
    EXPECT_EQ(context->ft->getEntryCount(context, nullptr), 0u);
    context->ft->getEntry(context, "CMPIInvocationFlags", &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND);
    removeCMPIContext(context);
}

TEST_F(Factory, ResultsOfTheTwoKindsAndTheirRegistration) {
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIResult* result = nullptr;
    EXPECT_EQ(Registered([&] { result = newCMPIResult(&rc); }), 1u);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->ft, cmpiResultFt);
    EXPECT_EQ(*static_cast<TResultCell*>(result->hdl), nullptr);

    rc.rc = CMPI_RC_ERR_FAILED;
    CMPIResult* enumResult = nullptr;
    EXPECT_EQ(Registered([&] { enumResult = newCMPIEnumInstanceResult(&rc); }), 0u);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    ASSERT_NE(enumResult, nullptr);
    EXPECT_EQ(enumResult->ft, cmpiEnumInstanceResultFt);
    EXPECT_EQ(enumResult->hdl, nullptr);
    removeCMPIResult(enumResult);
}

TEST_F(Factory, RemovingAPathRecordLeavesItsReference) {
    TCIMReference reference = TCIMReference::Parse("Fleet_Car.Id=\"car1\"");
    removeCMPIObjectPath(ref2CMPIObjectPath(reference));
    EXPECT_EQ(reference.GetPath(), "Fleet_Car.Id=\"car1\"");
}

TEST_F(Factory, AnInstanceFromGetInstanceStaysValidUntilTheRegistryIsCleared) {
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIInstance* car = Broker()->bft->getInstance(Broker(), nullptr, CarPath("car2"), nullptr, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    ASSERT_NE(car, nullptr);
    // Other requests come and go before the provider reads it.
    EXPECT_EQ(Keys("Fleet_Car", "Model"), std::vector<std::string>({"roadster", "van", "truck"}));
    CMPIData model = car->ft->getProperty(car, "Model", &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    ASSERT_EQ(model.type, CMPI_string);
    EXPECT_STREQ(static_cast<const char*>(model.value.string->hdl), "van");
}
