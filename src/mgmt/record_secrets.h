// Wiping what records declare secret.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include "console/wipe.h"
#include "platform/wipe.h"
#include "tavroapi/record.h"

namespace tavro {

namespace detail {

// Wipes the secrets of a record, or of the records in a list or array. Where `isSecret`, all of
// the value is one. A value of another kind does not compile, so that none is passed over.
template <class Value>
void WipeSecrets(Value& value, bool isSecret) noexcept {
    static_assert(!std::is_same_v<Value, std::wstring>, "wide texts are not wiped here");
    if constexpr (tavroapi::DescribedRecord<Value>) {
        tavroapi::ForEachField(
            value, [isSecret](std::size_t position, std::string_view, auto& member) {
                WipeSecrets(member, isSecret || tavroapi::IsSecretPosition<Value>(position));
            });
    } else if constexpr (std::is_same_v<Value, std::string>) {
        if (isSecret) {
            console::WipeSecret(value);
        }
    } else if constexpr (std::is_integral_v<Value>) {
        if (isSecret) {
            platform::WipeBytes(&value, sizeof(value));
        }
    } else {
        for (auto& element : value) {
            WipeSecrets(element, isSecret);
        }
    }
}

}  // namespace detail

// Wipes the secrets of a record that it does not own when the scope is left, by whatever way: what
// stands at the record's `SecretPositions`, and the same in the records that it holds, one by one,
// in arrays and in lists. It may guard a list of records as well. Texts are left empty.
template <class Record>
class RecordSecretsGuard {
  public:
    explicit RecordSecretsGuard(Record& guardedRecord) : record_(guardedRecord) {}
    ~RecordSecretsGuard() { detail::WipeSecrets(record_, false); }
    RecordSecretsGuard(const RecordSecretsGuard&) = delete;
    RecordSecretsGuard& operator=(const RecordSecretsGuard&) = delete;

  private:
    Record& record_;
};

}  // namespace tavro
