#include <stdexcept>

#include <boost/shared_ptr.hpp>
#include <gtest/gtest.h>

#include "TAssertionFailure.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;

TEST(StatusCode, LibraryStatusesHaveTheirNumbers) {
    EXPECT_EQ(TZENTAStatusCode::kUnsupportedOperation, 1);
    EXPECT_EQ(TZENTAStatusCode::kInvalidContext, 14);
    EXPECT_EQ(TZENTAStatusCode::kNotFound, 15);
    EXPECT_EQ(TZENTAStatusCode::kUnsupportedNamespace, 31);
    EXPECT_EQ(TZENTAStatusCode::kMissingRepository, 38);
}

TEST(StatusCode, TranslationNamesTheStatusAndItsNumber) {
    EXPECT_EQ(TZENTAStatusCode(15).TranslateStatusCode(), "kNotFound (15): not found");
    EXPECT_EQ(TZENTAStatusCode(38).GetName(), "kMissingRepository");
    EXPECT_EQ(TZENTAStatusCode(999).TranslateStatusCode(), "kUnknownStatus (999): unknown status");
}

TEST(Exception, CarriesStatusAndMessageThroughCopies) {
    TZENTAException original(TZENTAStatusCode::kNotFound, "class Foo not found");
    TZENTAException copy(original);
    EXPECT_STREQ(copy.what(), "class Foo not found");
    EXPECT_EQ(copy.GetStatusCode().GetCode(), 15);
    try {
        throw copy;
    } catch (const std::exception& caught) {
        EXPECT_STREQ(caught.what(), "class Foo not found");
    }
}

TEST(AssertionHandler, NullSharedPointerThrowsInsteadOfAborting) {
    boost::shared_ptr<int> empty;
    try {
        int value = *empty;
        ADD_FAILURE() << "dereferenced a null pointer and read " << value;
    } catch (const TAssertionFailure& failure) {
        EXPECT_EQ(failure.GetExpression(), "px != 0");
        EXPECT_NE(std::string(failure.what()).find("px != 0"), std::string::npos);
        EXPECT_GT(failure.GetLine(), 0);
    }
    EXPECT_THROW(*empty, std::logic_error);
}
