#pragma once

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

#include "library/messages/catalogue.h"

// What errors say, in every language. A library lists its texts in a table; code gives a text in
// English, and one that has no row in the table does not compile.
namespace tavrolib {

// One text of an error: its reason, or what the user can do.
struct ErrorTextRow {
    std::wstring_view english;
    std::wstring_view japanese;
    std::wstring_view chinese;
};

// A text of an error that is told in the language of the session; none at first.
class ErrorText {
  public:
    constexpr ErrorText() = default;
    constexpr explicit ErrorText(const ErrorTextRow& row) : row_(&row) {}

    constexpr bool IsSet() const { return row_ != nullptr; }

    // The text in a language; empty when there is none.
    constexpr std::wstring_view In(Language language) const {
        if (row_ == nullptr) {
            return {};
        }
        switch (language) {
            case Language::Japanese:
                return row_->japanese;
            case Language::Chinese:
                return row_->chinese;
            case Language::English:
                break;
        }
        return row_->english;
    }

  private:
    const ErrorTextRow* row_ = nullptr;  // a row of a constant table
};

// The row of an English text; null when there is none.
constexpr const ErrorTextRow* FindErrorText(std::span<const ErrorTextRow> rows,
                                            std::wstring_view english) {
    for (const ErrorTextRow& row : rows) {
        if (row.english == english) {
            return &row;
        }
    }
    return nullptr;
}

// Whether every row is complete and no English text stands twice. Every table asserts it.
constexpr bool AreCompleteAndUnique(std::span<const ErrorTextRow> rows) {
    return std::all_of(rows.begin(), rows.end(), [rows](const ErrorTextRow& row) {
        return !row.english.empty() && !row.japanese.empty() && !row.chinese.empty() &&
               FindErrorText(rows, row.english) == &row;
    });
}

namespace detail {

// Not to be called in a constant expression: the compiler names it where a text lacks a row.
void ErrorTextLacksARow();

}  // namespace detail

// An error text of the table `Rows`, written in English where it is used.
template <const auto& Rows>
struct ErrorTextOf {
    // NOLINTNEXTLINE(google-explicit-constructor): a text is written as a plain literal
    consteval ErrorTextOf(const wchar_t* english) {
        const ErrorTextRow* const row = FindErrorText(Rows, english);
        if (row == nullptr) {
            detail::ErrorTextLacksARow();
        } else {
            text = ErrorText(*row);
        }
    }

    ErrorText text;
};

}  // namespace tavrolib
