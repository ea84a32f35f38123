#include <iconv.h>
#include <langinfo.h>

#include <array>
#include <cerrno>
#include <cstdint>

#include "platform/code_page.h"
#include "platform/encoding.h"
#include "platform/wipe.h"

namespace tavro::platform {
namespace {

// The system's name of the encoding.
std::string EncodingName(unsigned codePage) {
    return codePage == SystemCodePage ? nl_langinfo(CODESET) : "CP" + std::to_string(codePage);
}

// Owns a conversion descriptor.
class Conversion {
  public:
    Conversion(const std::string& to, const std::string& from)
        : descriptor_(iconv_open(to.c_str(), from.c_str())) {}
    ~Conversion() {
        if (IsOpen()) {
            iconv_close(descriptor_);
        }
    }
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;
    Conversion(Conversion&&) = delete;
    Conversion& operator=(Conversion&&) = delete;

    bool IsOpen() const { return reinterpret_cast<std::intptr_t>(descriptor_) != -1; }

    // Converts as far as possible and moves the pointers on. 0, or the error at which it stopped.
    int Run(char** input, std::size_t* inputSize, char** output, std::size_t* outputSize) {
        const std::size_t result = iconv(descriptor_, input, inputSize, output, outputSize);
        return result == static_cast<std::size_t>(-1) ? errno : 0;
    }

  private:
    iconv_t descriptor_;
};

}  // namespace

struct CodePageEncoder::Tables {
    Conversion conversion;
};

CodePageEncoder::CodePageEncoder(unsigned codePage)
    : tables_(new Tables{{EncodingName(codePage), "WCHAR_T"}}) {}

CodePageEncoder::~CodePageEncoder() = default;

bool CodePageEncoder::Append(char32_t character, std::string& bytes) {
    if (!tables_->conversion.IsOpen()) {
        return false;
    }
    auto unit = static_cast<wchar_t>(character);
    char* input = reinterpret_cast<char*>(&unit);
    std::size_t inputSize = sizeof unit;
    std::array<char, 16> encoded{};
    char* output = encoded.data();
    std::size_t room = encoded.size();
    if (tables_->conversion.Run(&input, &inputSize, &output, &room) != 0) {
        return false;
    }
    bytes.append(encoded.data(), encoded.size() - room);
    return true;
}

std::optional<std::wstring> DecodeByTable(std::string_view bytes, unsigned codePage) {
    const std::string encoding = EncodingName(codePage);
    if (encoding == "UTF-8") {
        return DecodeUtf8(bytes);
    }
    std::wstring text;
    text.reserve(bytes.size());
    if (codePage == SystemCodePage && encoding == "ANSI_X3.4-1968") {
        for (const char byte : bytes) {
            text += static_cast<wchar_t>(static_cast<unsigned char>(byte));
        }
        return text;
    }
    Conversion conversion("WCHAR_T", encoding);
    if (!conversion.IsOpen()) {
        return std::nullopt;
    }
    // The interface asks for input that may be changed; it does not change it.
    char* input = const_cast<char*>(bytes.data());
    std::size_t inputSize = bytes.size();
    std::array<wchar_t, 512> decoded{};
    while (inputSize > 0) {
        char* output = reinterpret_cast<char*>(decoded.data());
        std::size_t room = sizeof decoded;
        const int error = conversion.Run(&input, &inputSize, &output, &room);
        text.append(decoded.data(), (sizeof decoded - room) / sizeof(wchar_t));
        WipeBytes(decoded.data(), sizeof decoded);
        if (error == EILSEQ) {
            text += L'\xFFFD';
            ++input;
            --inputSize;
        } else if (error == EINVAL) {
            text += L'\xFFFD';
            inputSize = 0;
        } else if (error != 0 && error != E2BIG) {
            return std::nullopt;
        }
    }
    return text;
}

bool LooksLikeUtf16(std::string_view bytes) {
    if (bytes.substr(0, 2) == "\xFF\xFE") {
        return true;
    }
    // Markup is ASCII, whose upper halves are zero bytes at the odd places; 8-bit text has zeros
    // at its end at most.
    const std::string_view text = bytes.substr(0, bytes.find_last_not_of('\0') + 1);
    const std::string_view sample = text.substr(0, 4096);
    const std::size_t pairs = sample.size() / 2;
    std::size_t zerosAtEven = 0;
    std::size_t zerosAtOdd = 0;
    for (std::size_t pair = 0; pair < pairs; ++pair) {
        zerosAtEven += sample[2 * pair] == '\0' ? 1U : 0U;
        zerosAtOdd += sample[2 * pair + 1] == '\0' ? 1U : 0U;
    }
    return zerosAtOdd > zerosAtEven && zerosAtOdd * 8 >= pairs;
}

}  // namespace tavro::platform
