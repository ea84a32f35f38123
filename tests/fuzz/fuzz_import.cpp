// Imports documents into a host in memory: well-formed ones, mutated element by element, and
// others. What the reader refuses changes nothing and says nothing; of everything else the summary
// tells what the library was asked and what it answered.
#include <algorithm>
#include <array>
#include <charconv>
#include <clocale>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "fuzz/element.h"
#include "fuzz/mutation.h"
#include "fuzz/played_run.h"
#include "fuzz/require.h"
#include "library/messages/catalogue.h"
#include "library/text/text.h"
#include "mgmt/message_id.h"
#include "tavroapi/operation_code.h"
#include "xml/file.h"
#include "xml/parser.h"

namespace {

using tavro::MessageId;
using tavro_fuzz::PlayedResult;
using tavroapi::OperationCode;

constexpr const char* Names[] = {"Initiator_Login", "Adapter",         "Function",
                                 "TCP_IP_Setting",  "Portal_Login",    "Target_Login",
                                 "Initiator_Name",  "Multipath",       "Header_Digest",
                                 "Data_Digest",     "Auth_Method",     "Target_CHAPName",
                                 "Target_Secret",   "Vlan_Enabled",    "Vlan_Id",
                                 "Vlan_Priority",   "Dhcp_Enabled",    "IP_Address",
                                 "Subnet_Mask",     "Static_IPv6",     "Static_Prefixlen",
                                 "Gateway_IPv6",    "Port_Number",     "Target_Name",
                                 "Target_Alias",    "Portal_IP",       "Portal_PortNumber",
                                 "Immediate_Data",  "Status",          "Initiator_CHAPName",
                                 "Max_Frame_Size",  "Initiator_Alias", "Dhcp_Enabled_IPv6"};
constexpr const char* Values[] = {"",
                                  "0",
                                  "1",
                                  "2",
                                  "3",
                                  "Port 1",
                                  "Port 2",
                                  "Yes",
                                  "No",
                                  "CRC32C",
                                  "None",
                                  "Connected",
                                  "4294967296",
                                  "65536",
                                  "-1",
                                  "192.0.2.7",
                                  "2001:db8::7",
                                  "::",
                                  "backup",
                                  "example-secret",
                                  "One-way CHAP",
                                  "Mutual CHAP",
                                  "198.51.100.20",
                                  "198.51.100.21",
                                  "3260",
                                  "iqn.2015-01.com.example:storage.disks",
                                  "iqn.2015-01.com.example:storage.backup",
                                  "\xE6\x97\xA5\xE6\x9C\xAC",
                                  "\xC2\x9B[2J",
                                  "a<b&c\"d"};

// The document's top element; the empty node where the reader refuses it.
tavro::xml::XmlNode Parsed(std::string_view bytes) {
    // As the program's own locale is.
    static const bool localeSet = std::setlocale(LC_ALL, "C.UTF-8") != nullptr;
    Require(localeSet);
    auto text = tavro::xml::DecodeXmlBytes(bytes);
    tavro::xml::XmlResults results;
    return text ? tavro::xml::ParseXmlText(std::move(*text), results) : tavro::xml::XmlNode();
}

constexpr OperationCode Imported[] = {OperationCode::SetInitiator, OperationCode::SetIscsiTcpIp,
                                      OperationCode::AddPortal, OperationCode::LogInToTarget};

// The number in the line of the summary with that label.
std::uint32_t Told(const std::string& output, MessageId label) {
    const wchar_t* const text =
        tavrolib::FindMessage(tavrolib::Language::English, static_cast<std::uint32_t>(label));
    const std::string_view all = output;
    const std::size_t found = all.rfind(tavrolib::Utf8FromWide(text));
    Require(found != std::string_view::npos);
    const std::string_view line = all.substr(found, all.find('\n', found) - found);
    const std::size_t digits = line.find_last_not_of("0123456789") + 1;
    std::uint32_t number = 0;
    const auto end = std::from_chars(line.data() + digits, line.data() + line.size(), number);
    Require(end.ec == std::errc());
    return number;
}

void RequireSummary(const PlayedResult& result) {
    const auto done = [&](OperationCode code) {
        return std::ranges::count_if(result.calls, [code](const auto& call) {
            return call.operation == static_cast<std::uint32_t>(code) && call.status == 0;
        });
    };
    const auto failed = std::ranges::count_if(result.calls, [](const auto& call) {
        return call.status != 0 &&
               std::ranges::find(Imported, static_cast<OperationCode>(call.operation)) !=
                   std::end(Imported);
    });
    Require(Told(result.output, MessageId::ImportedTcpIpSettings) ==
            done(OperationCode::SetIscsiTcpIp));
    Require(Told(result.output, MessageId::ImportedPortals) == done(OperationCode::AddPortal));
    Require(Told(result.output, MessageId::ImportedTargets) == done(OperationCode::LogInToTarget));
    Require(Told(result.output, MessageId::ImportFailures) == failed);
}

void WriteFile(std::string_view bytes) {
    std::ofstream file("cnadiscovery.xml", std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    Require(file.flush().good());
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t mostSize, unsigned seed) {
    std::mt19937 random(seed);
    const tavro::xml::XmlNode top = Parsed(BytesOf(data, size));
    if (top.IsEmpty() || tavro_fuzz::Below(16, random) == 0) {
        return LLVMFuzzerMutate(data, size, mostSize);
    }
    tavro_fuzz::Element element = tavro_fuzz::ElementOf(top);
    for (std::size_t count = 1 + tavro_fuzz::Below(3, random); count > 0; --count) {
        tavro_fuzz::MutateElement(element, Names, Values, random);
    }
    const std::string document = tavro_fuzz::DocumentOf(element);
    return document.size() > mostSize ? LLVMFuzzerMutate(data, size, mostSize)
                                      : tavro_fuzz::PutInto(data, mostSize, document);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = BytesOf(data, size);
    const bool isDocument = !Parsed(bytes).IsEmpty();
    const tavro_fuzz::InOwnFolder inFolder;
    WriteFile(bytes);
    tavrosim::Host host = tavro_fuzz::BuiltInHost();
    const PlayedResult result = tavro_fuzz::Play({.arguments = {"-import"}}, host);
    Require(result.failure.empty());
    if (isDocument) {
        RequireSummary(result);
    } else {
        Require(!result.changedHost && result.output.empty());
    }
    if (result.changedHost) {
        tavro_fuzz::RequireFile(host);
    }
    return 0;
}
