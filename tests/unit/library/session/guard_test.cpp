// What a provider throws ends in the entry points.
#include <gtest/gtest.h>

#include "library/calls/status.h"
#include "tavroapi/exported_functions.h"
#include "unit/library/sample_provider.h"

namespace {

using tavrolib_test::Sample;

TEST(Guard, AnExceptionBecomesAStatusWithItsReason) {
    Sample& sample = Sample::Instance();
    sample = {};
    sample.thrown = "torn cable";
    constexpr auto Internal = static_cast<std::uint32_t>(tavrolib::Status::Internal);
    std::string name;
    std::wstring state;
    ASSERT_EQ(TAVROAPI_Initialize(0, nullptr), 0U);
    EXPECT_EQ(TAVROAPI_GetHostName(&name), Internal);
    EXPECT_EQ(TAVROAPI_DoOperation(70, &name, nullptr, &state), Internal);
    tavroapi::ErrorRecord error;
    EXPECT_EQ(TAVROAPI_GetLastErrorMessage(&error), 0U);
    EXPECT_EQ(error.code, Internal);
    EXPECT_EQ(error.details, L"torn cable");
    sample.thrown = nullptr;
    EXPECT_EQ(TAVROAPI_GetHostName(&name), 0U);
    EXPECT_EQ(TAVROAPI_Uninitialize(), 0U);
}

}  // namespace
