// ICIMInstance::BuildPath: the path of an instance from its class and the
// values of its key properties.
#include <string>
#include <vector>

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MockHostObjects.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;
using ::testing::_;
using ::testing::Invoke;
using ::testing::NiceMock;
using ::testing::Return;

namespace {

class InstancePath : public ::testing::Test {
protected:
    InstancePath()
        : fNamespace(boost::make_shared<NiceMock<MockNamespace> >()),
          fClass(boost::make_shared<NiceMock<MockClass> >()),
          fInstance(boost::make_shared<NiceMock<MockInstance> >()) {
        fContext["nspID"] = TCIMValue("cmpi");
        ON_CALL(*fInstance, GetClass(_)).WillByDefault(Return(fClass));
        ON_CALL(*fClass, GetName(_)).WillByDefault(Return("CIM_Foo"));
        ON_CALL(*fClass, GetNamespace(_)).WillByDefault(Return(fNamespace));
    }

    // The class declares these keys, in this order.
    void DeclareKeys(const std::vector<std::string>& names) {
        ON_CALL(*fClass, EnumerateKeyNames(_, _))
            .WillByDefault(Invoke([names](const TKeyNameCallback& callback, TCIMContext) {
                for (const std::string& name : names) {
                    if (!callback(&name)) return;
                }
            }));
    }

    void SetProperty(const std::string& name, const TCIMValue& value) {
        boost::shared_ptr<NiceMock<MockProperty> > property = boost::make_shared<NiceMock<MockProperty> >();
        ON_CALL(*property, GetValue()).WillByDefault(Return(value));
        ON_CALL(*fInstance, GetProperty(name, _)).WillByDefault(Return(property));
    }

    boost::shared_ptr<NiceMock<MockNamespace> > fNamespace;
    boost::shared_ptr<NiceMock<MockClass> > fClass;
    boost::shared_ptr<NiceMock<MockInstance> > fInstance;
    TCIMContext fContext;
};

TEST_F(InstancePath, BindsEveryKeyPropertyToItsValue) {
    DeclareKeys({"Name", "Id"});
    SetProperty("Name", TCIMValue("x\"y"));
    SetProperty("Id", TCIMValue(7u));
    SetProperty("Other", TCIMValue("not a key"));
    EXPECT_CALL(*fClass, EnumerateKeyNames(_, fContext));

    const TCIMReference path = fInstance->BuildPath(fContext);
    EXPECT_EQ(path.GetPath(), "CIM_Foo.Id=7,Name=\"x\\\"y\"");
    EXPECT_EQ(path.GetKeyValue("Id"), TCIMValue(7u)) << "key values keep their property types";
    EXPECT_EQ(path.GetNamespace(), fNamespace);
    EXPECT_EQ(path.GetNameSpaceName(), "");
    EXPECT_EQ(path.GetContext(), fContext);
}

TEST_F(InstancePath, ClassWithoutKeysGivesTheClassPath) {
    DeclareKeys({});
    EXPECT_EQ(fInstance->BuildPath(TCIMContext()).GetPath(), "CIM_Foo");
}

TEST_F(InstancePath, NullKeyValueIsKept) {
    DeclareKeys({"Name"});
    TCIMValue null;
    null.SetNullValue(TCIMValue::TCIMType::kString, 0);
    SetProperty("Name", null);
    const TCIMReference path = fInstance->BuildPath(TCIMContext());
    EXPECT_EQ(path.GetKeyCount(), 1u);
    EXPECT_TRUE(path.GetKeyValue("Name").IsNull());
}

TEST_F(InstancePath, MissingKeyPropertyIsReported) {
    DeclareKeys({"Name"});
    try {
        fInstance->BuildPath(TCIMContext());
        ADD_FAILURE() << "built a path without its key";
    } catch (const TZENTAException& failure) {
        EXPECT_EQ(failure.GetStatusCode(), TZENTAStatusCode::kInvalidProperty);
        EXPECT_NE(std::string(failure.what()).find("CIM_Foo has no key property Name"), std::string::npos)
            << failure.what();
    }
}

TEST_F(InstancePath, InstanceWithoutClassIsReported) {
    ON_CALL(*fInstance, GetClass(_)).WillByDefault(Return(boost::shared_ptr<ICIMClass>()));
    try {
        fInstance->BuildPath(TCIMContext());
        ADD_FAILURE() << "built a path without a class";
    } catch (const TZENTAException& failure) {
        EXPECT_EQ(failure.GetStatusCode(), TZENTAStatusCode::kInvalidClass);
    }
}

}  // namespace
