#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "library/session/provider.h"

namespace tavrolib_test {

// What the sample provider does next and what it has been asked. Every provider that the session
// makes shares it, so a test gives it its first value back.
struct Sample {
    tavrolib::Outcome configured;
    std::optional<tavrolib::Outcome> intercepted;
    tavrolib::Outcome opened;
    tavrolib::Outcome served;
    const char* thrown = nullptr;    // what serving throws
    std::vector<std::string> asked;  // the provider's functions as they were called

    static Sample& Instance();
};

// The words of the sample's refusals.
inline constexpr tavrolib::ErrorTextRow SampleErrorTexts[] = {
    {L"Message.", L"理由。", L"原因。"},
    {L"Action.", L"対処。", L"措施。"},
};
inline constexpr tavrolib::Refuser<SampleErrorTexts> RefusedBySample;

// What the sample says of itself; the line end has no place in a log.
inline constexpr const wchar_t* SampleDescription = L"Sample 1.0,\nhost 日本";

// What the names of the sample's environment variables begin with.
inline constexpr const char* SamplePrefix = "TAVRO_SAMPLE_";

}  // namespace tavrolib_test
