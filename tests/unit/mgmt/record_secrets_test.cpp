#include "mgmt/record_secrets.h"

#include <gtest/gtest.h>

#include <array>
#include <list>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "tavroapi/described_operations.h"

namespace tavro {
namespace {

using tavroapi::Field;
using tavroapi::SpreadField;

// Long enough that the text lies in storage of its own, which stays while the record does.
constexpr const char* Secret = "a secret of more than a few characters";

struct Inner {
    std::string open = "open";
    std::string secret = Secret;

    static constexpr std::array<std::size_t, 1> SecretPositions{1};
    static constexpr auto Fields(auto visit) {
        return visit(Field{"open", &Inner::open}, Field{"secret", &Inner::secret});
    }
};

struct Outer {
    std::string open = "open";
    std::array<std::string, 3> spread = {"first", Secret, "third"};
    Inner record;
    std::array<Inner, 2> array;
    std::list<Inner> list{2};
    std::uint32_t openNumber = 7;
    std::uint32_t secretNumber = 8;
    std::list<std::string> secretList{Secret, Secret};

    static constexpr std::array<std::size_t, 3> SecretPositions{2, 8, 9};
    static constexpr auto Fields(auto visit) {
        return visit(Field{"open", &Outer::open}, SpreadField{"spread", &Outer::spread},
                     Field{"record", &Outer::record}, Field{"array", &Outer::array},
                     Field{"list", &Outer::list}, Field{"openNumber", &Outer::openNumber},
                     Field{"secretNumber", &Outer::secretNumber},
                     Field{"secretList", &Outer::secretList});
    }
};

// The texts and numbers of a record, one after another.
template <class Value>
void AppendTexts(const Value& value, std::vector<std::string>& texts) {
    if constexpr (tavroapi::DescribedRecord<Value>) {
        tavroapi::ForEachField(value, [&](std::size_t, std::string_view, const auto& member) {
            AppendTexts(member, texts);
        });
    } else if constexpr (std::is_same_v<Value, std::string>) {
        texts.push_back(value);
    } else if constexpr (std::is_integral_v<Value>) {
        texts.push_back(std::to_string(value));
    } else {
        for (const auto& element : value) {
            AppendTexts(element, texts);
        }
    }
}

template <class Value>
std::vector<std::string> TextsOf(const Value& value) {
    std::vector<std::string> texts;
    AppendTexts(value, texts);
    return texts;
}

using Texts = std::vector<std::string>;

TEST(RecordSecretsGuard, WipesWhatIsDeclaredSecretAndNothingElse) {
    Outer record;
    { const RecordSecretsGuard guard(record); }
    EXPECT_EQ(
        TextsOf(record),
        (Texts{"open", "first", "", "third", "open", "",  // the record itself and the one in it
               "open", "", "open", "", "open", "", "open", "",  // the array and the list
               "7", "0", "", ""}));
}

TEST(RecordSecretsGuard, LeavesNoCharacterBehind) {
    Outer record;
    const std::vector<const std::string*> secrets = {
        &record.spread[1], &record.record.secret, &record.array[1].secret,
        &record.list.back().secret, &record.secretList.front()};
    std::vector<const char*> storage;
    for (const std::string* const secret : secrets) {
        storage.push_back(secret->data());
    }
    { const RecordSecretsGuard guard(record); }
    for (std::size_t place = 0; place < secrets.size(); ++place) {
        ASSERT_EQ(secrets[place]->data(), storage[place]);
        const std::string left(storage[place], std::string_view(Secret).size());
        EXPECT_EQ(left, std::string(left.size(), '\0')) << place;
    }
}

TEST(RecordSecretsGuard, WipesAtTheEndOfItsScopeAlsoByAnException) {
    Inner record;
    try {
        const RecordSecretsGuard guard(record);
        EXPECT_EQ(record.secret, Secret);
        throw std::runtime_error("left");
    } catch (const std::runtime_error&) {
        EXPECT_EQ(record.secret, "");
    }
}

TEST(RecordSecretsGuard, GuardsAListOfRecords) {
    std::list<Inner> records(2);
    { const RecordSecretsGuard guard(records); }
    EXPECT_EQ(TextsOf(records), (Texts{"open", "", "open", ""}));
}

// The texts of a login that stands behind `before` texts: its two secrets are gone.
Texts LoginTexts(Texts before) {
    for (const char* const text : {"T", "T", "T", "T", "T", "", "T", ""}) {
        before.emplace_back(text);
    }
    return before;
}

// The record's texts, each "T" at first, once a guard was there.
template <class Record>
Texts Guarded(Record& record) {
    tavroapi::ForEachField(record, [](std::size_t, std::string_view, auto& member) {
        using Member = std::remove_reference_t<decltype(member)>;
        if constexpr (std::is_same_v<Member, std::string>) {
            member = "T";
        } else if constexpr (std::is_same_v<Member, tavroapi::LoginOptions>) {
            tavroapi::ForEachField(member,
                                   [](std::size_t, std::string_view, auto& text) { text = "T"; });
        }
    });
    { const RecordSecretsGuard guard(record); }
    return TextsOf(record);
}

TEST(RecordSecretsGuard, KnowsTheSecretsOfLogins) {
    tavroapi::InitiatorRecord initiator;
    EXPECT_EQ(Guarded(initiator), LoginTexts({"T"}));
    tavroapi::PortalRecord portal;
    EXPECT_EQ(Guarded(portal), LoginTexts({"T", "T"}));
    tavroapi::PlacedTargetLogin login;
    EXPECT_EQ(Guarded(login.record), LoginTexts({"0", "T", "T", "T", "T", "T"}));
}

TEST(RecordSecretsGuard, WipesTheSecretsOfABootConfigurationAndNothingElse) {
    tavroapi::IscsiBootConfig config;
    for (std::size_t i = 0; i < config.texts.size(); ++i) {
        config.texts[i] = "T" + std::to_string(i);
    }
    const char* const firstSecret = config.texts[tavroapi::iscsi_boot::ChapSecret].data();
    { const RecordSecretsGuard guard(config); }
    for (std::size_t i = 0; i < config.texts.size(); ++i) {
        const bool isSecret = i == 13 || i == 20 || i == 27;
        EXPECT_EQ(config.texts[i], isSecret ? "" : "T" + std::to_string(i));
    }
    EXPECT_EQ(firstSecret[1], '\0');
}

template <class Record>
struct Place {
    Record record;
};
template <>
struct Place<tavroapi::TargetLoginRecord> : tavroapi::PlacedTargetLogin {};

// Looks for fields that are called secret and not declared so, in records within records too.
template <class Value>
void FindUndeclared(std::set<std::string>& declared, std::set<std::string>& undeclared) {
    if constexpr (tavroapi::DescribedRecord<Value>) {
        static const Place<Value> Sample{};
        tavroapi::ForEachField(Sample.record, [&](std::size_t position, std::string_view name,
                                                  const auto& member) {
            if (name.find("ecret") != std::string_view::npos) {
                (tavroapi::IsSecretPosition<Value>(position) ? declared : undeclared).emplace(name);
            }
            FindUndeclared<std::remove_cvref_t<decltype(member)>>(declared, undeclared);
        });
    } else if constexpr (requires { typename Value::value_type; }) {
        FindUndeclared<typename Value::value_type>(declared, undeclared);
    }
}

template <tavroapi::OperationCode... Codes>
void FindUndeclared(tavroapi::OperationList<Codes...>, std::set<std::string>& declared,
                    std::set<std::string>& undeclared) {
    (FindUndeclared<tavroapi::InputOf<Codes>>(declared, undeclared), ...);
    (FindUndeclared<tavroapi::OutputOf<Codes>>(declared, undeclared), ...);
}

TEST(RecordSecrets, WhatIsCalledSecretIsDeclaredSecret) {
    std::set<std::string> declared;
    std::set<std::string> undeclared;
    FindUndeclared(tavroapi::DescribedOperations{}, declared, undeclared);
    EXPECT_EQ(undeclared, std::set<std::string>{});
    EXPECT_EQ(declared, (std::set<std::string>{"initiatorSecret", "targetSecret"}));
}

}  // namespace
}  // namespace tavro
