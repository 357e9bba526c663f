// The exception that carries an agent's result code.
#include "values/AgentException.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using corvane::ny::utils::Check;
using corvane::ny::utils::exception;

TEST(AgentException, CarriesTheCodeAndSaysNothingInItsText) {
    for (const int32_t code : {1, 705, -1, 0}) {
        const exception raised(code);
        EXPECT_EQ(raised.Code(), code);
        EXPECT_STREQ(raised.what(), "Unknown exception");
    }
}

TEST(AgentException, CopiesItsCode) {
    const exception raised(705);
    const exception copy = raised;
    exception assigned(1);
    assigned = raised;
    EXPECT_EQ(copy.Code(), 705);
    EXPECT_EQ(assigned.Code(), 705);
    EXPECT_STREQ(copy.what(), "Unknown exception");
}

TEST(AgentException, IsAStandardExceptionAndEndsAsOne) {
    const std::unique_ptr<std::exception> raised = std::make_unique<exception>(705);
    EXPECT_STREQ(raised->what(), "Unknown exception");
    EXPECT_NE(dynamic_cast<const exception*>(raised.get()), nullptr);
    try {
        throw exception(706);
    } catch (const std::exception& caught) {
        EXPECT_STREQ(caught.what(), "Unknown exception");
    }
}

TEST(AgentException, IsRaisedForEveryCodeButSuccess) {
    EXPECT_NO_THROW(Check(0));
    for (const int32_t code : {1, -1, 14, 705, INT32_MIN, INT32_MAX}) {
        try {
            Check(code);
            ADD_FAILURE() << "no exception for " << code;
        } catch (const exception& raised) {
            EXPECT_EQ(raised.Code(), code);
        }
    }
}

}  // namespace
