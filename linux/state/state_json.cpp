#include "linux/state/state_json.h"

#include <cstddef>
#include <limits>
#include <nlohmann/json.hpp>

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

// Texts of users, and names of interfaces, are bytes of any encoding.
Json JsonOf(const LoginOptions& login) {
    Json json = Json::object();
    tavroapi::ForEachField(login,
                           [&json](std::size_t, std::string_view name, const std::string& text) {
                               json[std::string(name)] = tavrolib::Utf8FromBytes(text);
                           });
    return json;
}

template <class Kept>
Json JsonOfPlace(const Kept& kept) {
    return {{"address", kept.address}, {"port", kept.port}, {"login", JsonOf(kept.login)}};
}

Json JsonOf(const InterfaceState& state) {
    Json json = Json::object();
    for (const auto& [family, baseline] : state.baselines) {
        json["baselines"][family] = {{"interfaceIndex", baseline.interfaceIndex},
                                     {"counters", baseline.counters}};
    }
    for (const KeptPortal& portal : state.portals) {
        json["portals"].push_back(JsonOfPlace(portal));
    }
    for (const KeptLogin& login : state.logins) {
        Json kept = JsonOfPlace(login);
        kept["target"] = tavrolib::Utf8FromBytes(login.target);
        json["logins"].push_back(std::move(kept));
    }
    return json;
}

// A document holds secrets, which are wiped out of it before its memory goes.
void WipeTexts(Json& json) {
    if (auto* const text = json.get_ptr<Json::string_t*>()) {
        Wipe(*text);
    } else if (json.is_structured()) {
        for (Json& inner : json) {
            WipeTexts(inner);
        }
    }
}

struct WipedDocument {
    Json json;
    ~WipedDocument() { WipeTexts(json); }
};

// Members of an object by their names, each read where it is there.
class Reader {
  public:
    Reader(const Json& json, Place place) : json_(json), place_(std::move(place)) {
        tavrolib::WantObject(json_, place_);
    }

    std::string Text(const char* name) const {
        const auto member = json_.find(name);
        return member == json_.end()
                   ? std::string()
                   : tavrolib::BytesFromUtf8(tavrolib::TextAt(*member, Place(place_, name)));
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

LoginOptions LoginFrom(const Reader& reader) {
    LoginOptions login;
    tavroapi::ForEachField(login, [&reader](std::size_t, std::string_view name, std::string& text) {
        text = reader.Text(std::string(name).c_str());
    });
    return login;
}

template <class Kept>
Kept PlaceFrom(const Reader& reader) {
    Kept kept;
    kept.address = reader.Text("address");
    kept.port = reader.NumberOf<std::uint16_t>("port");
    kept.login = LoginFrom(reader.Inner("login"));
    return kept;
}

InterfaceState InterfaceFrom(const Reader& reader) {
    InterfaceState state;
    reader.EachMember("baselines", [&state](const std::string& family, const Reader& baseline) {
        state.baselines[family] = {baseline.NumberOf<std::int32_t>("interfaceIndex"),
                                   baseline.Inner("counters").Counters()};
    });
    reader.EachElement("portals", [&state](const Reader& portal) {
        state.portals.push_back(PlaceFrom<KeptPortal>(portal));
    });
    reader.EachElement("logins", [&state](const Reader& login) {
        state.logins.push_back(PlaceFrom<KeptLogin>(login));
        state.logins.back().target = login.Text("target");
    });
    return state;
}

}  // namespace

std::string TextFromState(const State& state) {
    WipedDocument document{{{"format", Format},
                            {"bootId", state.bootId},
                            {"initiatorLogin", JsonOf(state.initiatorLogin)},
                            {"interfaces", Json::object()}}};
    for (const auto& [name, interface] : state.interfaces) {
        document.json["interfaces"][tavrolib::Utf8FromBytes(name)] = JsonOf(interface);
    }
    return document.json.dump(2) + '\n';
}

State StateFromText(std::string_view text) {
    const WipedDocument document{tavrolib::ParseJson(text)};
    const Reader reader(document.json, tavrolib::Place());
    if (reader.NumberOf<std::int64_t>("format") != Format) {
        throw tavrolib::ShapeError(tavrolib::Place(tavrolib::Place(), "format"),
                                   "this format is not known");
    }
    State state;
    state.bootId = reader.Text("bootId");
    state.initiatorLogin = LoginFrom(reader.Inner("initiatorLogin"));
    reader.EachMember("interfaces", [&state](const std::string& name, const Reader& interface) {
        state.interfaces[tavrolib::BytesFromUtf8(name)] = InterfaceFrom(interface);
    });
    return state;
}

}  // namespace tavrolinux
