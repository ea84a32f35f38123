#include <gtest/gtest.h>

#include "tavroapi/exported_functions.h"
#include "unit/library/support.h"

namespace {

using tavrolib_test::Folder;
using tavrolib_test::Variable;

class ExportsTest : public testing::Test {
  protected:
    // Every call without any argument; all but the first and the last are refused.
    static void CallWithNull() {
        EXPECT_NE(TAVROAPI_GetLocalizeMessage(1, nullptr), 12345U);
        EXPECT_EQ(TAVROAPI_GetLastErrorMessage(nullptr), 0U);
        EXPECT_NE(TAVROAPI_GetHostName(nullptr), 0U);
        EXPECT_NE(TAVROAPI_GetDiscoveredAdapters(nullptr), 0U);
        EXPECT_NE(TAVROAPI_GetPortWWNs(nullptr, nullptr, nullptr, nullptr), 0U);
        EXPECT_NE(TAVROAPI_GetPartitionState(nullptr, nullptr), 0U);
        EXPECT_NE(TAVROAPI_GetAdapterType(nullptr, nullptr), 0U);
        EXPECT_NE(TAVROAPI_GetAdapterPortNumber(nullptr, nullptr), 0U);
        for (std::uint32_t operation = 0; operation < 80; ++operation) {
            EXPECT_NE(TAVROAPI_DoOperation(operation, nullptr, nullptr, nullptr), 0U) << operation;
        }
    }

    Folder folder_;
    Variable host_{"TAVROSIM_HOST", (folder_ / "host.json").string()};
    Variable script_{"TAVROSIM_SCRIPT", ""};
    Variable trace_{"TAVROSIM_TRACE", (folder_ / "trace").string()};
};

TEST_F(ExportsTest, NullArgumentsAreSurvivedBeforeDuringAndAfter) {
    CallWithNull();
    EXPECT_EQ(TAVROAPI_Initialize(0, nullptr), 0U);
    CallWithNull();
    EXPECT_EQ(TAVROAPI_Uninitialize(), 0U);
    CallWithNull();
    EXPECT_NE(TAVROAPI_Uninitialize(), 0U);
}

TEST_F(ExportsTest, OddArgumentsAreSurvived) {
    std::wstring locale(100000, L'\xFFFF');
    EXPECT_EQ(TAVROAPI_Initialize(4294967295U, &locale), 0U);
    std::string odd("\0\xFF\x03", 3);
    std::string longText(1000000, 'x');
    std::uint32_t number = 0;
    std::list<tavroapi::FunctionAddress> addresses;
    std::list<tavroapi::FunctionIdentity> identities;
    EXPECT_NE(TAVROAPI_GetPartitionState(&odd, &number), 0U);
    EXPECT_NE(TAVROAPI_GetAdapterType(&longText, &longText), 0U);
    EXPECT_NE(TAVROAPI_GetPortWWNs(&odd, &longText, &addresses, nullptr), 0U);
    EXPECT_NE(TAVROAPI_DoOperation(4294967295U, &odd, &number, &number), 0U);
    tavroapi::ErrorRecord error;
    EXPECT_EQ(TAVROAPI_GetLastErrorMessage(&error), 0U);
    EXPECT_FALSE(error.message.empty());
    std::wstring text;
    EXPECT_NE(TAVROAPI_GetLocalizeMessage(4294967295U, &text), 0U);
    EXPECT_EQ(TAVROAPI_Uninitialize(), 0U);
}

}  // namespace
