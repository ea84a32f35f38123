#include "library/calls/operations.h"

#include <gtest/gtest.h>

#include <set>

#include "simulator/model/families.h"
#include "simulator/model/model.h"
#include "tavroapi/operations.h"

namespace tavrosim {
namespace {

using tavrolib::FindOperation;
using tavrolib::Operation;
using tavrolib::Operations;

TEST(Operations, EveryDescribedOperationHasAModelFunction) {
    for (const Operation& operation : Operations()) {
        const OperationModel* model = FindModel(static_cast<std::uint32_t>(operation.code));
        ASSERT_NE(model, nullptr) << operation.name;
        EXPECT_NE(model->read == nullptr, model->change == nullptr) << operation.name;
    }
}

TEST(Operations, NamesAreThoseOfTheEnumeration) {
    const Operation* operation = FindOperation(70);
    ASSERT_NE(operation, nullptr);
    EXPECT_EQ(operation->name, "ReadAdapterState");
    std::set<std::string_view> names;
    for (const Operation& each : Operations()) {
        EXPECT_EQ(
            each.name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"),
            std::string_view::npos)
            << each.name;
        EXPECT_TRUE(names.insert(each.name).second) << each.name;
    }
}

TEST(Operations, NumbersWithoutAnOperationAreUnknown) {
    for (const std::uint32_t code : {0U, 1U, 9U, 71U, 4294967295U}) {
        EXPECT_EQ(FindOperation(code), nullptr) << code;
        EXPECT_EQ(FindModel(code), nullptr) << code;
    }
}

}  // namespace
}  // namespace tavrosim
