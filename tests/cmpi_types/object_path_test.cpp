// The object-path table: readers, key access, the inert setters and the
// null-handle checks.
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "CmpiTypesTestSupport.h"
#include "TCIMReference.h"
#include "cmpiValue.h"

namespace CmpiTypesTest {
namespace {

using NVURZENTA20::TCIMContext;
using NVURZENTA20::TCIMReference;

class ObjectPathTest : public RegistryTest {
protected:
    ObjectPathTest() : fRef(TCIMReference::Parse("root/cimv2:Test_Widget.Name=\"w1\",Id=7"))
    {
        fPath = ref2CMPIObjectPath(fRef);
    }
    ~ObjectPathTest() override { delete fPath; }

    TCIMReference fRef;
    CMPIObjectPath* fPath;
    CMPIObjectPath fNullPath = {nullptr, cmpiObjectPathFt};
};

TEST_F(ObjectPathTest, TableHasItsMembersAndNullsWhereTheLibraryServesNothing)
{
    const CMPIObjectPathFT* ft = cmpiObjectPathFt;
    EXPECT_EQ(ft->ftVersion, 100);
    EXPECT_EQ(ft->release, nullptr);
    EXPECT_EQ(ft->clone, nullptr);
    EXPECT_EQ(ft->getClassQualifier, nullptr);
    EXPECT_EQ(ft->getPropertyQualifier, nullptr);
    EXPECT_EQ(ft->getMethodQualifier, nullptr);
    EXPECT_EQ(ft->getParameterQualifier, nullptr);
    EXPECT_NE(ft->toString, nullptr);
    EXPECT_NE(ft->setHostAndNameSpaceFromObjectPath, nullptr);
}

TEST_F(ObjectPathTest, Ref2CMPIObjectPathWrapsTheReferenceItselfUnregistered)
{
    EXPECT_EQ(fPath->hdl, &fRef);
    EXPECT_EQ(fPath->ft, cmpiObjectPathFt);
    EXPECT_EQ(Registered(), 0u);
    // Readable as a shared pointer to the same reference as well.
    EXPECT_EQ(static_cast<boost::shared_ptr<TCIMReference>*>(fPath->hdl)->get(), &fRef);
}

TEST_F(ObjectPathTest, NamesAndTextComeBackAsRegisteredStrings)
{
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    EXPECT_EQ(Text(fPath->ft->getNameSpace(fPath, &rc)), "root/cimv2");
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    rc.rc = CMPI_RC_ERR_FAILED;
    EXPECT_EQ(Text(fPath->ft->getClassName(fPath, &rc)), "Test_Widget");
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    rc.rc = CMPI_RC_ERR_FAILED;
    EXPECT_EQ(Text(fPath->ft->toString(fPath, &rc)), "root/cimv2:" + fRef.GetPath());
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(Registered(), 3u);
}

TEST_F(ObjectPathTest, HostnameIsAlwaysNoHostEvenWithoutAHandle)
{
    for (CMPIObjectPath* path : {fPath, &fNullPath}) {
        CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
        EXPECT_EQ(Text(path->ft->getHostname(path, &rc)), "no_host");
        EXPECT_EQ(rc.rc, CMPI_RC_OK);
    }
}

TEST_F(ObjectPathTest, SettersNeverChangeThePath)
{
    EXPECT_EQ(fPath->ft->setClassName(fPath, "Other").rc, CMPI_RC_OK);
    EXPECT_EQ(fPath->ft->setNameSpace(fPath, "root/other").rc, CMPI_RC_OK);
    EXPECT_EQ(fPath->ft->setHostname(fPath, "elsewhere").rc, CMPI_RC_OK);
    TCIMReference other = TCIMReference::Parse("root/other:Other");
    CMPIObjectPath* otherPath = ref2CMPIObjectPath(other);
    EXPECT_EQ(fPath->ft->setNameSpaceFromObjectPath(fPath, otherPath).rc, CMPI_RC_OK);
    EXPECT_EQ(fPath->ft->setHostAndNameSpaceFromObjectPath(fPath, otherPath).rc, CMPI_RC_OK);
    delete otherPath;
    EXPECT_EQ(Text(fPath->ft->getClassName(fPath, nullptr)), "Test_Widget");
    EXPECT_EQ(Text(fPath->ft->getNameSpace(fPath, nullptr)), "root/cimv2");
    EXPECT_EQ(fRef.GetClassName(), "Test_Widget");
}

TEST_F(ObjectPathTest, EveryHandleUsingOperationRefusesANullHandle)
{
    const struct {
        const char* name;
        std::function<CMPIrc(CMPIObjectPath*)> call;
    } cases[] = {
        {"getNameSpace", [](CMPIObjectPath* p) { CMPIStatus rc{}; EXPECT_EQ(p->ft->getNameSpace(p, &rc), nullptr); return rc.rc; }},
        {"getClassName", [](CMPIObjectPath* p) { CMPIStatus rc{}; EXPECT_EQ(p->ft->getClassName(p, &rc), nullptr); return rc.rc; }},
        {"toString", [](CMPIObjectPath* p) { CMPIStatus rc{}; EXPECT_EQ(p->ft->toString(p, &rc), nullptr); return rc.rc; }},
        {"getKeyCount", [](CMPIObjectPath* p) { CMPIStatus rc{}; EXPECT_EQ(p->ft->getKeyCount(p, &rc), 0u); return rc.rc; }},
        {"getKey", [](CMPIObjectPath* p) { CMPIStatus rc{}; p->ft->getKey(p, "Id", &rc); return rc.rc; }},
        {"getKeyAt", [](CMPIObjectPath* p) { CMPIStatus rc{}; p->ft->getKeyAt(p, 0, nullptr, &rc); return rc.rc; }},
        {"addKey", [](CMPIObjectPath* p) { CMPIValue v{}; return p->ft->addKey(p, "Id", &v, CMPI_uint32).rc; }},
        {"setNameSpace", [](CMPIObjectPath* p) { return p->ft->setNameSpace(p, "x").rc; }},
        {"setNameSpaceFromObjectPath", [](CMPIObjectPath* p) { return p->ft->setNameSpaceFromObjectPath(p, p).rc; }},
        {"setHostAndNameSpaceFromObjectPath", [](CMPIObjectPath* p) { return p->ft->setHostAndNameSpaceFromObjectPath(p, p).rc; }},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.call(&fNullPath), CMPI_RC_ERR_INVALID_PARAMETER) << c.name;
    }
    // A valid path with a null source is refused as well.
    EXPECT_EQ(fPath->ft->setNameSpaceFromObjectPath(fPath, &fNullPath).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(fPath->ft->setHostAndNameSpaceFromObjectPath(&fNullPath, fPath).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    // The two setters that check nothing.
    EXPECT_EQ(fNullPath.ft->setHostname(&fNullPath, "h").rc, CMPI_RC_OK);
    EXPECT_EQ(fNullPath.ft->setClassName(&fNullPath, "C").rc, CMPI_RC_OK);
    const CMPIData missing = fNullPath.ft->getKeyAt(&fNullPath, 0, nullptr, nullptr);
    EXPECT_EQ(missing.state, CMPI_nullValue | CMPI_notFound);
}

TEST_F(ObjectPathTest, KeysAreCountedReadByNameAndIndexInByteOrder)
{
    TCIMReference ref = TCIMReference::Parse("Test_Widget");
    ref.AddKeyValue("b", TCIMValue(2u));
    ref.AddKeyValue("C", TCIMValue("see"));
    ref.AddKeyValue("a", TCIMValue(1u));
    CMPIObjectPath* path = ref2CMPIObjectPath(ref);

    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    EXPECT_EQ(path->ft->getKeyCount(path, &rc), 3u);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);

    // Byte order puts the capital first.
    const char* expectedNames[] = {"C", "a", "b"};
    for (CMPICount i = 0; i < 3; ++i) {
        CMPIString* name = nullptr;
        rc.rc = CMPI_RC_ERR_FAILED;
        const CMPIData key = path->ft->getKeyAt(path, i, &name, &rc);
        EXPECT_EQ(rc.rc, CMPI_RC_OK);
        EXPECT_EQ(Text(name), expectedNames[i]);
        EXPECT_EQ(key.state, CMPI_goodValue);
    }
    const CMPIData c = path->ft->getKeyAt(path, 0, nullptr, nullptr);
    EXPECT_EQ(c.type, CMPI_string);
    EXPECT_EQ(Text(c.value.string), "see");

    const CMPIData b = path->ft->getKey(path, "b", &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(b.type, CMPI_uint32);
    EXPECT_EQ(b.value.uint32, 2u);
    delete path;
}

TEST_F(ObjectPathTest, MissingKeysAreNotFoundWithANullNotFoundDatum)
{
    CMPIStatus rc = {CMPI_RC_OK, nullptr};
    const CMPICount count = fPath->ft->getKeyCount(fPath, nullptr);
    CMPIString* name = nullptr;
    const CMPIData pastEnd = fPath->ft->getKeyAt(fPath, count, &name, &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(pastEnd.type, 0);
    EXPECT_EQ(pastEnd.state, 0x0500);
    EXPECT_EQ(pastEnd.value.uint64, 0u);
    EXPECT_EQ(name, nullptr);

    // Names are compared exactly.
    rc.rc = CMPI_RC_OK;
    const CMPIData wrongCase = fPath->ft->getKey(fPath, "name", &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(wrongCase.state, 0x0500);
    rc.rc = CMPI_RC_OK;
    fPath->ft->getKey(fPath, "Name", &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
}

TEST_F(ObjectPathTest, KeysOfUnsupportedTypesComeBackTypedWithoutValue)
{
    TCIMReference ref = TCIMReference::Parse("Test_Widget");
    ref.AddKeyValue("Flag", TCIMValue(true));
    CMPIObjectPath* path = ref2CMPIObjectPath(ref);
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
    const CMPIData flag = path->ft->getKey(path, "Flag", &rc);
    EXPECT_EQ(rc.rc, CMPI_RC_OK);
    EXPECT_EQ(flag.type, CMPI_boolean);
    EXPECT_EQ(flag.state, CMPI_goodValue);
    EXPECT_EQ(flag.value.uint64, 0u);
    delete path;
}

TEST_F(ObjectPathTest, AddKeyConvertsTheValueIntoTheReference)
{
    CMPIValue id = {};
    id.uint32 = 99;
    EXPECT_EQ(fPath->ft->addKey(fPath, "Serial", &id, CMPI_uint32).rc, CMPI_RC_OK);
    EXPECT_TRUE(fRef.GetKeyValue("Serial") == TCIMValue(99u));
    const char text[] = "w2";
    EXPECT_EQ(fPath->ft->addKey(fPath, "Name", reinterpret_cast<const CMPIValue*>(text), CMPI_chars).rc,
              CMPI_RC_OK);
    EXPECT_TRUE(fRef.GetKeyValue("Name") == TCIMValue("w2"));
    EXPECT_EQ(fPath->ft->getKeyCount(fPath, nullptr), 3u);
}

TEST_F(ObjectPathTest, KeyBindingCallbackKeepsTheFirstValueAndGoesOn)
{
    TCIMContext map;
    TAddKeyBindingsToMapCallback callback(map);
    EXPECT_TRUE(callback(std::make_pair(std::string("k"), TCIMValue(1u))));
    EXPECT_TRUE(callback(std::make_pair(std::string("k"), TCIMValue(2u))));
    EXPECT_EQ(map.size(), 1u);
    EXPECT_TRUE(map["k"] == TCIMValue(1u));
}

TEST_F(ObjectPathTest, DeleteOwningObjectPathFreesTheHeapReference)
{
    CMPIObjectPath* owned = ref2CMPIObjectPath(*new TCIMReference(fRef));
    EXPECT_EQ(Text(owned->ft->getClassName(owned, nullptr)), "Test_Widget");
    deleteOwningObjectPath(owned);
}

}  // namespace
}  // namespace CmpiTypesTest
