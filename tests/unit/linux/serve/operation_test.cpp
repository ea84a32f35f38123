#include "linux/serve/operation.h"

#include <gtest/gtest.h>

#include <map>

#include "library/calls/operations.h"

namespace tavrolinux {
namespace {

TEST(Operations, AreServedOrRefusedEachByOneRow) {
    std::map<std::uint32_t, int> rows;
    for (const auto family :
         {EthernetPortOperations(), EthernetStatisticsOperations(), AdapterSettingsOperations(),
          TcpIpOperations(), InitiatorOperations(), IscsiPortOperations(), IscsiStorageOperations(),
          FcoeOperations(), OtherOperations()}) {
        for (const Operation& row : family) {
            ++rows[static_cast<std::uint32_t>(row.code)];
            EXPECT_NE(row.serve == nullptr, row.missing == nullptr)
                << static_cast<std::uint32_t>(row.code);
        }
    }
    for (const tavrolib::Operation& described : tavrolib::Operations()) {
        const auto code = static_cast<std::uint32_t>(described.code);
        EXPECT_EQ(rows[code], 1) << described.name;
        const Operation* const found = FindOperation(code);
        ASSERT_NE(found, nullptr) << described.name;
        EXPECT_EQ(found->code, described.code);
    }
    EXPECT_EQ(rows.size(), tavrolib::Operations().size());
    EXPECT_EQ(FindOperation(0xffffffff), nullptr);
}

}  // namespace
}  // namespace tavrolinux
