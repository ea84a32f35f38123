#include "simulator/simulator.h"

#include <memory>
#include <utility>

#include "library/platform/environment.h"
#include "library/platform/file.h"
#include "library/session/version.h"
#include "library/text/text.h"
#include "simulator/messages/error_texts.h"
#include "simulator/model/serve.h"

namespace tavrosim {
namespace {

namespace platform = tavrolib::platform;
using tavrolib::Call;
using tavrolib::Done;
using tavrolib::Outcome;
using tavrolib::ShapeError;
using tavrolib::WideFromUtf8;

Outcome ScriptUnusable(std::wstring details) {
    return Refused(tavrolib::Status::ScriptUnusable, L"The script of answers cannot be used.",
                   L"Correct the script.", std::move(details));
}

}  // namespace

std::wstring Simulator::Description() const {
    std::wstring text = L"Simulator ";
    text += tavrolib::LibraryVersion;
    if (script_.HasModel()) {
        text += L", " + store_.Description();
    }
    if (scriptFile_) {
        text += L", script \"" + platform::TextOf(*scriptFile_) + L"\"";
    }
    return text;
}

Outcome Simulator::Configure() {
    scriptFile_ = platform::PathVariable("TAVROSIM_SCRIPT");
    if (!scriptFile_) {
        return Done();
    }
    const std::filesystem::path& path = *scriptFile_;
    try {
        const auto text = platform::ReadWholeFile(path);
        if (!text) {
            return ScriptUnusable(platform::TextOf(path) + L": there is no such file");
        }
        script_ = Script::FromText(*text);
        return Done();
    } catch (const platform::FileError& error) {
        return ScriptUnusable(error.Text());
    } catch (const ShapeError& error) {
        return ScriptUnusable(platform::TextOf(path) + L": " + WideFromUtf8(error.what()));
    }
}

// The script's answer, else nothing, so that the model serves; without the model a success that
// changes nothing.
std::optional<Outcome> Simulator::Intercept(const Call& call) {
    try {
        if (std::optional<Outcome> answer = script_.Take(call)) {
            return answer;
        }
    } catch (const ShapeError& error) {
        return ScriptUnusable(WideFromUtf8(error.what()));
    }
    if (script_.HasModel()) {
        return std::nullopt;
    }
    return Done();
}

Outcome Simulator::Open() {
    return store_.IsLoaded() ? Done() : store_.Load();
}

Outcome Simulator::Serve(const Call& call) {
    const Host& host = store_.Current();
    return ChangesHost(host, call)
               ? store_.Change([&](Host& fresh) { return ServeCall(fresh, call); })
               : ServeReading(host, call);
}

std::optional<std::wstring> Simulator::MessageText(tavrolib::Language language,
                                                   std::uint32_t id) const {
    return script_.MessagesAreNumbers() ? L'#' + std::to_wstring(id)
                                        : Provider::MessageText(language, id);
}

}  // namespace tavrosim

std::unique_ptr<tavrolib::Provider> tavrolib::MakeProvider() {
    return std::make_unique<tavrosim::Simulator>();
}
