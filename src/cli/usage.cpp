#include "cli/usage.h"

#include <product_version.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "cli/invocation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/text.h"

namespace tavro {

namespace {

constexpr std::string_view ProductTitle = "Tavro Converged Network Adapter CLI";
constexpr std::string_view ProductVersion = TAVRO_PRODUCT_VERSION;
constexpr std::string_view ProductNotice = "Copyright (C) 2015 Tavro. All rights reserved.";

struct UsageLine {
    std::size_t indent;
    std::string_view text;
};

// Forms that share their leading words are written once and aligned below. The two blanks after the
// WWN, and "option" beside "options", are what scripts that read this screen expect.
constexpr UsageLine UsageLines[] = {
    {0, "tavrocli -about"},
    {0, "tavrocli -showadapter"},
    {0, "tavrocli -import"},
    {9, "-iscsi -getinitiator"},
    {9, "-iscsi -setinitiator <Initiator Name> [*login options]"},
    {16, "-isns -listall"},
    {22, "-add <iSNS Server IP>"},
    {22, "-remove <iSNS Server IP>"},
    {9, "-iscsi <MAC> -portinfo"},
    {22, "-portstat"},
    {22, "-defparam"},
    {22, "-getbootconfig"},
    {22, "-setbootconfig"},
    {22, "-portal -listall"},
    {30, "-add <Portal IP> <Port Number**> [*login option]"},
    {30, "-remove <Portal IP> <Port Number**>"},
    {22, "-target -listall"},
    {30, "-listactive"},
    {30, "-login <Target Name> <IP> <Port Number**> [*login option]"},
    {30, "-getinfo <Target Name>"},
    {30, "-sessioninfo <Target Name> <Session ID>"},
    {30, "-logout <Target Name> <Session ID>"},
    {30, "-remove <Target Name>"},
    {30, "-lunlist <Target Name>"},
    {22, "-ping <IP Address>"},
    {22, "-modifytcpip -dhcp [VLAN ID***]"},
    {35, "-static <VLAN ID> <IP Address> <Subnet Mask> <Gateway>"},
    {9, "-fcoe <portWWN>  -portinfo"},
    {9, "-fcoe <portWWN>  -portstat"},
    {9, "-fcoe <portWWN>  -resetstat"},
    {9, "-fcoe <portWWN>  -getdcbinfo"},
    {9, "-fcoe <portWWN>  -getdcbconfig"},
    {9, "-fcoe <portWWN>  -setdcb"},
    {9, "-fcoe <portWWN>  -target -listactive"},
    {34, "-pbindinfo"},
    {34, "-getinfo <Target Name>"},
    {34, "-lunlist <Target Name>"},
    {26, "-getbootconfig"},
    {26, "-setbootconfig"},
    {26, "-ping <Target Name>"},
    {26, "-ping <Target Name> -pcount <Count>"},
    {26, "-ping <Target Name> -timeout <time in secs>"},
    {0, ""},
    {9, "-npar <MAC> -get"},
    {9, "-npar <MAC> -set"},
    {9, "-res <MAC> -get"},
    {9, "-res <MAC> -set"},
    {9, "-ethernet <MAC> -portinfo"},
    {9, "-ethernet <MAC> -portstat"},
    {9, "-ethernet <MAC> -resetstat"},
    {9, "-ethernet <MAC> -getadapinfo"},
    {9, "-ethernet <MAC> -setadapinfo"},
    {9, "-ethernet <MAC> -gettcpip"},
    {9, "-ethernet <MAC> -modifytcpip -ipv4 -dhcp [VLAN ID***]"},
    {38, "-ipv6 -dhcp [VLAN ID***]"},
    {38, "-ipv4 -static <VLAN ID> <IP Address> <Subnet Mask> <Gateway>"},
    {38, "-ipv6 -static <VLAN ID> <IP Address> <Prefix Length> [Gateway]"},
    {0, ""},
    {0,
     "* <-mp> <-hd> <-dd> <-Option (-mutualCHAP | -oneWayCHAP)> "
     "  <TargetCHAP> <TargetSecret> <InitiatorCHAP> <InitiatorSecret>"},
    {0, "** Default Port Number : 3260 "},
    {0, "*** Default VLAN ID : 1 "},
};

std::wstring TitleLine() {
    return ToWide(ProductTitle) + L"(" + ToWide(ProductVersion) + L")";
}

// Prints the usage screen: title, the library's introduction and every advertised command form.
void ShowUsage(const Invocation&) {
    console::EndLine();
    console::PrintLine(TitleLine());
    console::PrintLine(ToWide(ProductNotice));
    console::EndLine();
    ShowMessage(MessageId::UsageIntroduction1);
    ShowMessage(MessageId::UsageIntroduction2);
    ShowMessage(MessageId::UsageIntroduction3);
    console::EndLine();
    for (const UsageLine& line : UsageLines) {
        console::PrintLine(std::wstring(line.indent, L' ') + ToWide(line.text));
    }
}

// Prints the framed title and notice.
void ShowAbout(const Invocation&) {
    const std::wstring frame = L"\t\t" + std::wstring(74, L'*');
    console::EndLine();
    console::PrintLine(frame);
    console::PrintLine(L"\t\t\t\t" + TitleLine());
    console::PrintLine(L"\t\t\t" + ToWide(ProductNotice));
    console::EndLine();
    console::PrintLine(frame);
}

}  // namespace

std::span<const Command> ScreenCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{2},
         .form = {"-about"},
         .access = AccessClass::Runs,
         .decidedBy = Decision::Always(),
         .handler = ShowAbout},
        {.code = CommandCode{3},
         .form = {"-help"},
         .access = AccessClass::Warns,
         .decidedBy = Decision::Always(),
         .handler = ShowUsage},
    };
    return Rows;
}

}  // namespace tavro
