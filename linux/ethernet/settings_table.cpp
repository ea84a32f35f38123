#include "linux/ethernet/settings_table.h"

#include <algorithm>
#include <vector>

#include "linux/ethernet/told_setting.h"

namespace tavrolinux {

std::span<const SettingRow> SettingTable() {
    static const std::vector<SettingRow> table = [] {
        std::vector<SettingRow> rows;
        for (const auto part :
             {FeatureSettings(), LinkSettings(), QueueSettings(), ToldSettings()}) {
            rows.insert(rows.end(), part.begin(), part.end());
        }
        std::ranges::sort(rows, {}, &SettingRow::number);
        return rows;
    }();
    return table;
}

}  // namespace tavrolinux
