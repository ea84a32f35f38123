#include "linux/state/state_json.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>
#include <nlohmann/json.hpp>
#include <span>
#include <system_error>
#include <vector>

#include "library/json/json.h"
#include "library/text/text.h"
#include "linux/system/wipe.h"

namespace tavrolinux {
namespace {

using tavroapi::LoginOptions;
using tavrolib::Json;
using tavrolib::Place;

constexpr std::int64_t Format = 1;
constexpr std::size_t MostElements = 100000;

// Secrets stand behind everything else in the file, and the options refer to them by their numbers:
// what turns documents into texts, and back, keeps copies that nobody could wipe.
constexpr const char* SecretsName = "secrets";
constexpr std::string_view SecretsBegin = ",\n  \"secrets\": [";
constexpr std::string_view SecretBegin = "\n    \"";
constexpr std::string_view SecretsEnd = "\n  ]\n}\n";
constexpr std::string_view DocumentEnd = "\n}";

// Where the secrets are while a text is made.
using SecretsOfState = std::vector<const std::string*>;

constexpr bool IsSecret(std::size_t position) {
    return std::ranges::find(LoginOptions::SecretPositions, position) !=
           LoginOptions::SecretPositions.end();
}

// Texts of users, and names of interfaces, are bytes of any encoding.
Json JsonOf(const LoginOptions& login, SecretsOfState& secrets) {
    Json json = Json::object();
    tavroapi::ForEachField(
        login, [&](std::size_t position, std::string_view name, const std::string& text) {
            if (!IsSecret(position)) {
                json[std::string(name)] = tavrolib::Utf8FromBytes(text);
            } else if (!text.empty()) {
                json[std::string(name)] = secrets.size();
                secrets.push_back(&text);
            }
        });
    return json;
}

template <class Kept>
Json JsonOfPlace(const Kept& kept, SecretsOfState& secrets) {
    return {{"address", kept.address}, {"port", kept.port}, {"login", JsonOf(kept.login, secrets)}};
}

Json JsonOf(const InterfaceState& state, SecretsOfState& secrets) {
    Json json = Json::object();
    for (const auto& [family, baseline] : state.baselines) {
        json["baselines"][family] = {{"interfaceIndex", baseline.number.index},
                                     {"network", baseline.number.network},
                                     {"address", baseline.address},
                                     {"counters", baseline.counters}};
    }
    for (const KeptPortal& portal : state.portals) {
        json["portals"].push_back(JsonOfPlace(portal, secrets));
    }
    for (const KeptLogin& login : state.logins) {
        Json kept = JsonOfPlace(login, secrets);
        kept["target"] = tavrolib::Utf8FromBytes(login.target);
        json["logins"].push_back(std::move(kept));
    }
    return json;
}

// A character of a secret as it stands in a text of JSON: figures where it is none of ASCII, or
// would end the text.
void AppendWritten(char character, std::string& text) {
    constexpr std::string_view Figures = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= 0x20 && byte < 0x7F && character != '"' && character != '\\') {
        text += character;
    } else {
        text += "\\u00";
        text += Figures[byte >> 4U];
        text += Figures[byte & 0xFU];
    }
}

// The document with the secrets behind it, in memory that is taken once.
std::string WithSecrets(const std::string& document, const SecretsOfState& secrets) {
    constexpr std::size_t LongestCharacter = 6;
    std::size_t size = document.size() + SecretsBegin.size() + SecretsEnd.size();
    for (const std::string* const secret : secrets) {
        size += SecretBegin.size() + 2 + LongestCharacter * secret->size();
    }
    std::string text;
    text.reserve(size);
    text.append(document, 0, document.size() - DocumentEnd.size()).append(SecretsBegin);
    for (const std::string* const secret : secrets) {
        text.append(secret == secrets.front() ? "" : ",").append(SecretBegin);
        for (const char character : *secret) {
            AppendWritten(character, text);
        }
        text += '"';
    }
    text.append(SecretsEnd);
    return text;
}

// A text without the secrets behind it, and where they are, each still as it is written.
struct DividedText {
    std::string document;
    std::vector<std::string_view> secrets;
};

DividedText Divided(std::string_view text) {
    const auto begin = text.rfind(SecretsBegin);
    if (begin == std::string_view::npos) {
        return {std::string(text), {}};
    }
    DividedText divided{std::string(text.substr(0, begin)).append(DocumentEnd), {}};
    text.remove_prefix(begin + SecretsBegin.size());
    do {
        const auto end = text.find('"', std::min(SecretBegin.size(), text.size()));
        if (!text.starts_with(SecretBegin) || end == std::string_view::npos) {
            break;
        }
        divided.secrets.push_back(text.substr(SecretBegin.size(), end - SecretBegin.size()));
        text.remove_prefix(end + 1);
        if (text == SecretsEnd) {
            return divided;
        }
    } while (text.starts_with(',') && (text.remove_prefix(1), true));
    throw tavrolib::ShapeError(Place(Place(), SecretsName), "a list of texts is wanted");
}

// Makes `secret` the one that is written so.
void ReadSecret(std::string_view written, const Place& place, std::string& secret) {
    constexpr std::string_view Escape = "\\u00";
    secret.reserve(written.size());
    while (!written.empty()) {
        std::size_t size = 1;
        auto byte = static_cast<unsigned char>(written.front());
        bool isCharacter = byte >= 0x20;
        if (written.front() == '\\') {
            size = Escape.size() + 2;
            const std::string_view figures =
                written.substr(std::min(Escape.size(), written.size()), 2);
            const auto [stop, error] =
                std::from_chars(figures.data(), figures.data() + figures.size(), byte, 16);
            isCharacter = written.starts_with(Escape) && figures.size() == 2 &&
                          error == std::errc() && stop == figures.data() + figures.size();
        }
        if (!isCharacter) {
            throw tavrolib::ShapeError(place, "a text is wanted");
        }
        secret += static_cast<char>(byte);
        written.remove_prefix(size);
    }
}

// Members of an object by their names, each read where it is there.
class Reader {
  public:
    Reader(const Json& json, Place place) : json_(json), place_(place) {
        tavrolib::WantObject(json_, place_);
    }

    std::string Text(const char* name) const {
        const auto member = json_.find(name);
        return member == json_.end()
                   ? std::string()
                   : tavrolib::BytesFromUtf8(tavrolib::TextAt(*member, Place(place_, name)));
    }

    // Makes the empty text `secret` the one whose number the member is.
    void Secret(const char* name, std::span<const std::string_view> secrets,
                std::string& secret) const {
        const auto member = json_.find(name);
        if (member != json_.end()) {
            const Place place(place_, name);
            const auto last = static_cast<std::int64_t>(secrets.size()) - 1;
            const auto number = tavrolib::NumberAt(*member, 0, last, place);
            ReadSecret(secrets[static_cast<std::size_t>(number)], place, secret);
        }
    }

    template <class Number>
    Number NumberOf(const char* name) const {
        const auto member = json_.find(name);
        return member == json_.end()
                   ? Number{}
                   : static_cast<Number>(tavrolib::NumberAt(
                         *member, std::numeric_limits<Number>::lowest(),
                         std::numeric_limits<Number>::max(), Place(place_, name)));
    }

    // Calls `read` with the name of each member of the object `name`, and a reader of it.
    template <class Read>
    void EachMember(const char* name, Read read) const {
        const auto member = json_.find(name);
        if (member == json_.end()) {
            return;
        }
        const Place place = Place(place_, name);
        tavrolib::WantObject(*member, place);
        for (const auto& [key, inner] : member->items()) {
            read(key, Reader(inner, Place(place, key)));
        }
    }

    template <class Read>
    void EachElement(const char* name, Read read) const {
        const auto member = json_.find(name);
        if (member == json_.end()) {
            return;
        }
        const Place place = Place(place_, name);
        const std::size_t count = tavrolib::SizeAt(*member, MostElements, place);
        for (std::size_t element = 0; element < count; ++element) {
            read(Reader((*member)[element], Place(place, element)));
        }
    }

    Reader Inner(const char* name) const {
        static const Json Nothing = Json::object();
        const auto member = json_.find(name);
        return {member == json_.end() ? Nothing : *member, Place(place_, name)};
    }

    // The counters that stand in the object itself.
    std::map<std::string, std::uint64_t> Counters() const {
        std::map<std::string, std::uint64_t> counters;
        for (const auto& [key, value] : json_.items()) {
            if (!value.is_number_unsigned()) {
                throw tavrolib::ShapeError(Place(place_, key), "a counter is wanted");
            }
            counters[key] = value.get<std::uint64_t>();
        }
        return counters;
    }

  private:
    const Json& json_;
    Place place_;
};

using WrittenSecrets = std::span<const std::string_view>;

WipedLogin LoginFrom(const Reader& reader, WrittenSecrets secrets) {
    WipedLogin login;
    tavroapi::ForEachField(static_cast<LoginOptions&>(login),
                           [&](std::size_t position, std::string_view name, std::string& text) {
                               const std::string member(name);
                               if (IsSecret(position)) {
                                   reader.Secret(member.c_str(), secrets, text);
                               } else {
                                   text = reader.Text(member.c_str());
                               }
                           });
    return login;
}

template <class Kept>
Kept PlaceFrom(const Reader& reader, WrittenSecrets secrets) {
    Kept kept;
    kept.address = reader.Text("address");
    kept.port = reader.NumberOf<std::uint16_t>("port");
    kept.login = LoginFrom(reader.Inner("login"), secrets);
    return kept;
}

InterfaceState InterfaceFrom(const Reader& reader, WrittenSecrets secrets) {
    InterfaceState state;
    reader.EachMember("baselines", [&state](const std::string& family, const Reader& baseline) {
        state.baselines[family] = {{baseline.NumberOf<std::int32_t>("interfaceIndex"),
                                    baseline.NumberOf<std::uint32_t>("network")},
                                   baseline.Text("address"),
                                   baseline.Inner("counters").Counters()};
    });
    reader.EachElement("portals", [&](const Reader& portal) {
        state.portals.push_back(PlaceFrom<KeptPortal>(portal, secrets));
    });
    reader.EachElement("logins", [&](const Reader& login) {
        state.logins.push_back(PlaceFrom<KeptLogin>(login, secrets));
        state.logins.back().target = login.Text("target");
    });
    return state;
}

}  // namespace

std::string TextFromState(const State& state) {
    SecretsOfState secrets;
    Json document{{"format", Format},
                  {"bootId", state.bootId},
                  {"initiatorLogin", JsonOf(state.initiatorLogin, secrets)},
                  {"interfaces", Json::object()}};
    for (const auto& [name, interface] : state.interfaces) {
        document["interfaces"][tavrolib::Utf8FromBytes(name)] = JsonOf(interface, secrets);
    }
    const std::string text = document.dump(2);
    return secrets.empty() ? text + '\n' : WithSecrets(text, secrets);
}

State StateFromText(std::string_view text) {
    const DividedText divided = Divided(text);
    const Json document = tavrolib::ParseJson(divided.document);
    const WrittenSecrets secrets = divided.secrets;
    const Reader reader(document, tavrolib::Place());
    if (reader.NumberOf<std::int64_t>("format") != Format) {
        throw tavrolib::ShapeError(tavrolib::Place(tavrolib::Place(), "format"),
                                   "this format is not known");
    }
    State state;
    state.bootId = reader.Text("bootId");
    state.initiatorLogin = LoginFrom(reader.Inner("initiatorLogin"), secrets);
    reader.EachMember("interfaces", [&](const std::string& name, const Reader& interface) {
        state.interfaces[tavrolib::BytesFromUtf8(name)] = InterfaceFrom(interface, secrets);
    });
    return state;
}

}  // namespace tavrolinux
