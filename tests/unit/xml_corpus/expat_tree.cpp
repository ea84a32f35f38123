#include "expat_tree.h"

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace tavro::xml {
namespace {

using Json = nlohmann::json;

std::string BytesOfHex(const std::string& digits) {
    std::string bytes;
    for (std::size_t index = 0; index < digits.size(); index += 2) {
        bytes += static_cast<char>(std::stoi(digits.substr(index, 2), nullptr, 16));
    }
    return bytes;
}

FlatElement ElementOf(const Json& json) {
    FlatElement element;
    json.at("depth").get_to(element.depth);
    json.at("name").get_to(element.name);
    json.at("attributes").get_to(element.attributes);
    json.at("text").get_to(element.text);
    json.at("regions").get_to(element.regions);
    return element;
}

CorpusDocument DocumentOf(const Json& json) {
    CorpusDocument document;
    json.at("name").get_to(document.name);
    document.bytes = BytesOfHex(json.at("bytes").get<std::string>());
    json.at("isUtf16").get_to(document.isUtf16);
    json.at("wellFormed").get_to(document.expat.wellFormed);
    json.at("error").get_to(document.expat.error);
    json.at("errorInDeclarations").get_to(document.expat.errorInDeclarations);
    json.at("errorInToken").get_to(document.expat.errorInToken);
    for (const Json& element : json.at("elements")) {
        document.expat.tree.elements.push_back(ElementOf(element));
    }
    return document;
}

}  // namespace

std::vector<CorpusSource> LoadCorpus(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error(path + " is missing; ctest has it written before this test");
    }
    std::vector<CorpusSource> sources;
    const Json corpus = Json::parse(file);
    for (const Json& json : corpus.at("sources")) {
        CorpusSource& source = sources.emplace_back();
        json.at("name").get_to(source.name);
        json.at("least").get_to(source.least);
        for (const Json& document : json.at("documents")) {
            source.documents.push_back(DocumentOf(document));
        }
    }
    return sources;
}

}  // namespace tavro::xml
