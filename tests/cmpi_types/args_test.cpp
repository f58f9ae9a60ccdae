// Argument lists over a caller's parameter map.
#include <string>

#include <gtest/gtest.h>

#include "CmpiTypesTestSupport.h"
#include "cmpiArgs.h"

namespace CmpiTypesTest {
namespace {

using NVURZENTA20::TCIMContext;

class ArgsTest : public RegistryTest {
protected:
    void SetUp() override
    {
        RegistryTest::SetUp();
        fArgs = params2CMPIArgs(&fParams);
    }

    CMPIStatus AddUint32(const char* name, unsigned int value)
    {
        CMPIValue v = {};
        v.uint32 = value;
        return fArgs->ft->addArg(fArgs, name, &v, CMPI_uint32);
    }

    TCIMContext fParams;
    CMPIArgs* fArgs = nullptr;
};

TEST_F(ArgsTest, TableHasNoClone)
{
    EXPECT_EQ(cmpiArgsFtab->ftVersion, 100);
    EXPECT_NE(cmpiArgsFtab->release, nullptr);
    EXPECT_EQ(cmpiArgsFtab->clone, nullptr);
    EXPECT_NE(cmpiArgsFtab->addArg, nullptr);
    EXPECT_NE(cmpiArgsFtab->getArg, nullptr);
    EXPECT_NE(cmpiArgsFtab->getArgAt, nullptr);
    EXPECT_NE(cmpiArgsFtab->getArgCount, nullptr);
}

TEST_F(ArgsTest, RecordWrapsTheCallersMapAndIsRegistered)
{
    EXPECT_EQ(fArgs->hdl, &fParams);
    EXPECT_EQ(fArgs->ft, cmpiArgsFtab);
    EXPECT_EQ(Registered(), 1u);
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    EXPECT_EQ(fArgs->ft->getArgCount(fArgs, &rc), 0u);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(AddUint32("count", 3).rc, CMPI_RC_OK);
    EXPECT_TRUE(fParams["count"] == TCIMValue(3u));
    EXPECT_EQ(fArgs->ft->release(fArgs).rc, CMPI_RC_OK);
    // Clearing frees the record, never the caller's map.
    Registry()->ClearInstances();
    EXPECT_EQ(fParams.size(), 1u);
}

TEST_F(ArgsTest, GetArgLeavesTheStatusAloneOnSuccess)
{
    fParams["Limit"] = TCIMValue(25u);
    CMPIStatus rc = {CMPI_RC_ERR_ACCESS_DENIED, nullptr};
    const CMPIData data = fArgs->ft->getArg(fArgs, "Limit", &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_EQ(data.type, CMPI_uint32);
    EXPECT_EQ(data.state, CMPI_goodValue);
    EXPECT_EQ(data.value.uint32, 25u);
}

TEST_F(ArgsTest, AbsentNullAndDifferentlyCasedNamesAreNotFound)
{
    fParams["Limit"] = TCIMValue(25u);
    fParams["Empty"] = NullOf(TCIMType::kString);
    for (const char* name : {"Missing", "Empty", "limit"}) {
        SCOPED_TRACE(name);
        CMPIStatus rc = {CMPI_RC_OK, nullptr};
        const CMPIData data = fArgs->ft->getArg(fArgs, name, &rc);
        EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND);
        EXPECT_EQ(data.type, 0);
        EXPECT_EQ(data.state, CMPI_nullValue);
        EXPECT_EQ(data.value.uint64, 0u);
    }
}

TEST_F(ArgsTest, GetArgAtWalksTheMapInKeyOrder)
{
    fParams["b"] = TCIMValue("bee");
    fParams["A"] = TCIMValue(1u);
    fParams["c"] = NullOf(TCIMType::kUint32);
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIString* name = nullptr;
    const CMPIData first = fArgs->ft->getArgAt(fArgs, 0, &name, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(Text(name), "A");
    EXPECT_EQ(first.value.uint32, 1u);
    const CMPIData second = fArgs->ft->getArgAt(fArgs, 1, &name, &rc);
    EXPECT_EQ(Text(name), "b");
    EXPECT_EQ(Text(second.value.string), "bee");

    // A null entry is not found and its name is not written.
    CMPIString* untouched = nullptr;
    const CMPIData third = fArgs->ft->getArgAt(fArgs, 2, &untouched, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(third.type, 0);
    EXPECT_EQ(third.state, CMPI_nullValue);
    EXPECT_EQ(untouched, nullptr);

    // So is an index past the end.
    fArgs->ft->getArgAt(fArgs, 3, &untouched, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(untouched, nullptr);
}

TEST_F(ArgsTest, BooleanArgumentReadsTypedWithoutValue)
{
    fParams["Force"] = TCIMValue(true);
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    CMPIString* name = nullptr;
    const CMPIData data = fArgs->ft->getArgAt(fArgs, 0, &name, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(data.type, CMPI_boolean);
    EXPECT_EQ(data.state, CMPI_goodValue);
    EXPECT_EQ(data.value.uint64, 0u);
}

TEST_F(ArgsTest, AddArgReplacesTheFirstEntryContainingTheLowerCasedName)
{
    fParams["xaby"] = TCIMValue(1u);
    fParams["zz"] = TCIMValue(2u);
    AddUint32("ab", 3);
    EXPECT_EQ(fParams.count("xaby"), 0u);
    EXPECT_TRUE(fParams["ab"] == TCIMValue(3u));
    EXPECT_EQ(fParams.size(), 2u);

    // Only the first match in key order goes.
    fParams.clear();
    fParams["aq1"] = TCIMValue(1u);
    fParams["bq1"] = TCIMValue(2u);
    AddUint32("q1", 9);
    EXPECT_EQ(fParams.count("aq1"), 0u);
    EXPECT_EQ(fParams.count("bq1"), 1u);
    EXPECT_TRUE(fParams["q1"] == TCIMValue(9u));
}

TEST_F(ArgsTest, AddArgReplacesLowerCaseNamesButKeepsTheFirstValueOfCapitalisedOnes)
{
    AddUint32("count", 1);
    AddUint32("count", 2);
    EXPECT_TRUE(fParams["count"] == TCIMValue(2u));

    AddUint32("Limit", 1);
    AddUint32("Limit", 2);
    EXPECT_TRUE(fParams["Limit"] == TCIMValue(1u));
    EXPECT_EQ(fParams.size(), 2u);
}

TEST_F(ArgsTest, AddArgConvertsStringsAndStoresNullsForMissingValues)
{
    const char text[] = "hello";
    EXPECT_EQ(fArgs->ft->addArg(fArgs, "greeting", reinterpret_cast<const CMPIValue*>(text), CMPI_chars).rc,
              CMPI_RC_OK);
    EXPECT_TRUE(fParams["greeting"] == TCIMValue("hello"));
    EXPECT_EQ(fArgs->ft->addArg(fArgs, "nothing", nullptr, CMPI_uint32).rc, CMPI_RC_OK);
    EXPECT_TRUE(fParams["nothing"].IsNull());
}

}  // namespace
}  // namespace CmpiTypesTest
