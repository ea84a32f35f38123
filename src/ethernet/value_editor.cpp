// Asking for the value of one adapter setting.
#include "ethernet/value_editor.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "cli/questions.h"
#include "cli/validation.h"
#include "console/console.h"
#include "mgmt/text.h"

namespace tavro {

using tavroapi::AdapterSetting;

namespace {

void SetValue(AdapterSetting& setting, const std::string& value) {
    if (value != setting.value) {
        setting.value = value;
        setting.changed = "1";
    }
}

void EditByList(AdapterSetting& setting) {
    console::ShowEach(setting.choices, [](const auto& choice) {
        const auto& [key, text] = choice;
        ShowMessage(MessageId::Choice, ToNarrow(text), Layout::Row, std::to_string(key));
    });
    const auto choice = setting.choices.find(LeadingInteger(AskLine(MessageId::AskChoice)));
    if (choice == setting.choices.end()) {
        ShowNotice(MessageId::ChoiceRefused);
        console::NoteRefusedAnswer();
        return;
    }
    const std::string value = ToNarrow(choice->second);
    console::PrintLine(L"\tNew Value is set to : " + ToWide(value));
    SetValue(setting, value);
}

// The decimal text of the bound of that name; empty when the setting has none.
std::string BoundText(const AdapterSetting& setting, std::wstring_view name) {
    const auto bound = std::ranges::find_if(
        setting.choices, [name](const auto& choice) { return choice.second == name; });
    return bound == setting.choices.end() ? "" : std::to_string(bound->first);
}

std::optional<std::uint32_t> NumberIn(std::string_view text) {
    try {
        return ParseUnsigned(text);
    } catch (const std::invalid_argument&) {
        return std::nullopt;
    } catch (const std::out_of_range&) {
        return std::nullopt;
    }
}

struct RangeTexts {
    std::string minimum;
    std::string maximum;
    std::string step;
};

// The message that refuses an answer; none when it is accepted. Everything is compared as unsigned
// numbers, and it is the answer itself, not its distance from the minimum, that the step divides.
std::optional<MessageId> RefusalOf(std::string_view answer, const RangeTexts& range) {
    const auto number = NumberIn(answer);
    const auto minimum = NumberIn(range.minimum);
    const auto maximum = NumberIn(range.maximum);
    const auto step = NumberIn(range.step);
    if (!number || !minimum || !maximum || !step || *step == 0 || *number < *minimum ||
        *number > *maximum) {
        return MessageId::OutsideBounds;
    }
    return *number % *step == 0 ? std::nullopt : std::optional(MessageId::NotMultipleOfStep);
}

void EditByRange(AdapterSetting& setting) {
    const RangeTexts range{.minimum = BoundText(setting, L"min"),
                           .maximum = BoundText(setting, L"max"),
                           .step = BoundText(setting, L"step")};
    console::EndLine();
    console::Print(ToWide("\tNew Value (" + range.minimum + "~" + range.maximum +
                          ", step: " + range.step + ") : "));
    const std::string answer = console::ReadLine();
    if (const auto refusal = RefusalOf(answer, range)) {
        ShowNotice(*refusal);
        console::NoteRefusedAnswer();
        return;
    }
    SetValue(setting, answer);
}

void EditFreely(AdapterSetting& setting) {
    console::EndLine();
    console::Print(L"\tNew Value ( 0 or XX-XX-XX-XX-XX-XX ): ");
    SetValue(setting, console::ReadLine());
}

}  // namespace

void EditAdapterSetting(AdapterSetting& setting, MessageId title, EditKind kind) {
    ShowMessage(title, NoValue, Layout::Section);
    ShowMessage(MessageId::CurrentValue, setting.value, Layout::Row);
    console::EndLine();
    switch (kind) {
        case EditKind::List:
            EditByList(setting);
            break;
        case EditKind::Range:
            EditByRange(setting);
            break;
        case EditKind::Address:
            EditFreely(setting);
            break;
        case EditKind::ShowOnly:
            break;
    }
}

}  // namespace tavro
