#include "expat_tree.h"

#include <expat.h>

#include <algorithm>
#include <memory>

namespace tavro::xml {
namespace {

// The state of one parse, which expat hands to every function below.
struct Reading {
    XML_Parser parser = nullptr;
    FlatTree tree;
    // The places of the open elements in the list.
    std::vector<std::size_t> open;
    // Regions before the top element, which has them in the end.
    std::vector<std::string> earlyRegions;
    bool inDoctype = false;
    bool inCdata = false;

    std::vector<std::string>& Regions() {
        if (!open.empty()) {
            return tree.elements[open.back()].regions;
        }
        return tree.elements.empty() ? earlyRegions : tree.elements.front().regions;
    }
};

Reading& ReadingOf(void* user) {
    return *static_cast<Reading*>(user);
}

void XMLCALL OnStart(void* user, const XML_Char* name, const XML_Char** attributes) {
    Reading& reading = ReadingOf(user);
    FlatElement element;
    element.depth = reading.open.size() + 1;
    element.name = name;
    const int stated = XML_GetSpecifiedAttributeCount(reading.parser);
    for (int index = 0; index < stated; index += 2) {
        element.attributes.emplace_back(attributes[index], attributes[index + 1]);
    }
    if (reading.tree.elements.empty()) {
        element.regions = std::move(reading.earlyRegions);
    }
    reading.open.push_back(reading.tree.elements.size());
    reading.tree.elements.push_back(std::move(element));
}

void XMLCALL OnEnd(void* user, const XML_Char* /*name*/) {
    ReadingOf(user).open.pop_back();
}

void XMLCALL OnText(void* user, const XML_Char* text, int size) {
    Reading& reading = ReadingOf(user);
    std::string& target = reading.inCdata ? reading.Regions().back()
                                          : reading.tree.elements[reading.open.back()].text;
    target.append(text, static_cast<std::size_t>(size));
}

void XMLCALL OnComment(void* user, const XML_Char* text) {
    Reading& reading = ReadingOf(user);
    if (!reading.inDoctype) {
        reading.Regions().push_back(std::string("<!--") + text);
    }
}

void XMLCALL OnCdataStart(void* user) {
    ReadingOf(user).Regions().emplace_back("<![CDATA[");
    ReadingOf(user).inCdata = true;
}

void XMLCALL OnCdataEnd(void* user) {
    ReadingOf(user).inCdata = false;
}

void XMLCALL OnDoctypeStart(void* user, const XML_Char* /*name*/, const XML_Char* /*systemId*/,
                            const XML_Char* /*publicId*/, int /*hasBrackets*/) {
    ReadingOf(user).inDoctype = true;
}

void XMLCALL OnDoctypeEnd(void* user) {
    ReadingOf(user).inDoctype = false;
}

// What no other function takes, references to entities among it. That it is there keeps expat from
// replacing them.
void XMLCALL OnRest(void* /*user*/, const XML_Char* /*text*/, int /*size*/) {}

int XMLCALL OnExternalEntity(XML_Parser /*parser*/, const XML_Char* /*context*/,
                             const XML_Char* /*base*/, const XML_Char* /*systemId*/,
                             const XML_Char* /*publicId*/) {
    return XML_STATUS_OK;
}

bool IsAboutDeclarations(XML_Error error) {
    constexpr XML_Error Errors[] = {
        XML_ERROR_RECURSIVE_ENTITY_REF,
        XML_ERROR_BINARY_ENTITY_REF,
        XML_ERROR_ATTRIBUTE_EXTERNAL_ENTITY_REF,
        XML_ERROR_ASYNC_ENTITY,
        XML_ERROR_UNDEFINED_ENTITY,
        XML_ERROR_ENTITY_DECLARED_IN_PE,
        XML_ERROR_EXTERNAL_ENTITY_HANDLING,
        XML_ERROR_NOT_STANDALONE,
        XML_ERROR_AMPLIFICATION_LIMIT_BREACH,
    };
    return std::ranges::find(Errors, error) != std::end(Errors);
}

}  // namespace

ExpatResult ReadWithExpat(std::string_view bytes) {
    const bool isUtf16 = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate(isUtf16 ? "UTF-16" : "UTF-8"), XML_ParserFree);
    Reading reading;
    reading.parser = parser.get();
    XML_SetUserData(parser.get(), &reading);
    XML_SetElementHandler(parser.get(), OnStart, OnEnd);
    XML_SetCharacterDataHandler(parser.get(), OnText);
    XML_SetCommentHandler(parser.get(), OnComment);
    XML_SetCdataSectionHandler(parser.get(), OnCdataStart, OnCdataEnd);
    XML_SetDoctypeDeclHandler(parser.get(), OnDoctypeStart, OnDoctypeEnd);
    XML_SetDefaultHandler(parser.get(), OnRest);
    XML_SetExternalEntityRefHandler(parser.get(), OnExternalEntity);
    XML_SetParamEntityParsing(parser.get(), XML_PARAM_ENTITY_PARSING_UNLESS_STANDALONE);
    XML_UseForeignDTD(parser.get(), XML_TRUE);

    // Expat takes pieces of at most 2 GB.
    constexpr std::size_t PieceSize = 1U << 30U;
    XML_Status status = XML_STATUS_OK;
    do {
        const std::string_view piece = bytes.substr(0, PieceSize);
        bytes.remove_prefix(piece.size());
        status = XML_Parse(parser.get(), piece.data(), static_cast<int>(piece.size()),
                           bytes.empty() ? 1 : 0);
    } while (status == XML_STATUS_OK && !bytes.empty());

    ExpatResult result;
    result.wellFormed = status == XML_STATUS_OK;
    result.tree = std::move(reading.tree);
    if (!result.wellFormed) {
        const XML_Error error = XML_GetErrorCode(parser.get());
        result.error = std::string(XML_ErrorString(error)) + " at " +
                       std::to_string(XML_GetCurrentLineNumber(parser.get())) + ":" +
                       std::to_string(XML_GetCurrentColumnNumber(parser.get()) + 1);
        result.errorInDeclarations = reading.inDoctype || IsAboutDeclarations(error);
        result.errorInToken = error == XML_ERROR_INVALID_TOKEN;
    }
    return result;
}

}  // namespace tavro::xml
