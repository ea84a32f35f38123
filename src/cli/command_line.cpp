#include "cli/command_line.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

namespace tavro {

std::string CurrentMacText;
std::string CurrentWwnText;

namespace {

constexpr std::size_t AnyCount = std::numeric_limits<std::size_t>::max();

// One accepted form. The first keyword stands at the family's keyword position; the second, where
// the form has one, at `secondPosition`. With fewer than `enough` arguments the form gives `tooFew`
// instead of `code`; with more than `most` it is not recognised.
struct Form {
    std::string_view keyword;
    std::size_t secondPosition;
    std::string_view secondKeyword;
    std::size_t enough;
    CommandCode tooFew;
    CommandCode code;
    std::size_t most = AnyCount;
};

constexpr CommandCode Zero = CommandCode::NotRecognised;
constexpr CommandCode One = CommandCode::TooFewArguments;

constexpr Form Plain(std::string_view keyword, CommandCode code) {
    return {keyword, 0, {}, 0, Zero, code};
}

constexpr Form WithOperand(std::string_view keyword, std::size_t enough, CommandCode tooFew,
                           CommandCode code) {
    return {keyword, 0, {}, enough, tooFew, code};
}

constexpr Form IscsiHostForms[] = {
    Plain("-getinitiator", CommandCode::GetInitiator),
    WithOperand("-setinitiator", 4, One, CommandCode::SetInitiator),
    {"-isns", 3, "-listall", 4, Zero, CommandCode::ListIsnsServers},
    {"-isns", 3, "-add", 5, One, CommandCode::AddIsnsServer},
    {"-isns", 3, "-remove", 5, One, CommandCode::RemoveIsnsServer},
};

constexpr Form IscsiPortForms[] = {
    Plain("-portinfo", CommandCode::IscsiPortInfo),
    Plain("-portstat", CommandCode::IscsiPortStatistics),
    Plain("-defparam", CommandCode::IscsiDefaultParameters),
    Plain("-ping", CommandCode::IscsiPing),
    Plain("-getbootconfig", CommandCode::GetIscsiBoot),
    Plain("-setbootconfig", CommandCode::SetIscsiBoot),
    {"-portal", 4, "-listall", 5, Zero, CommandCode::ListPortals},
    {"-portal", 4, "-add", 6, One, CommandCode::AddPortal},
    {"-portal", 4, "-remove", 6, One, CommandCode::RemovePortal},
    {"-target", 4, "-listall", 5, Zero, CommandCode::ListTargets},
    {"-target", 4, "-listactive", 5, Zero, CommandCode::ListActiveTargets},
    {"-target", 4, "-getinfo", 6, One, CommandCode::TargetInfo},
    {"-target", 4, "-login", 7, One, CommandCode::TargetLogin},
    // The session ID is optional here; the handlers see to it.
    {"-target", 4, "-sessioninfo", 6, One, CommandCode::SessionInfo},
    {"-target", 4, "-remove", 6, One, CommandCode::RemoveTarget},
    {"-target", 4, "-logout", 6, One, CommandCode::TargetLogout},
    {"-target", 4, "-lunlist", 6, One, CommandCode::LunList},
    {"-modifytcpip", 4, "-dhcp", 5, Zero, CommandCode::IscsiTcpIpDhcp},
    {"-modifytcpip", 4, "-static", 8, One, CommandCode::IscsiTcpIpStatic},
};

constexpr Form FcoeForms[] = {
    Plain("-portinfo", CommandCode::FcoePortInfo),
    {"-target", 4, "-listactive", 5, Zero, CommandCode::FcoeActiveTargets},
    {"-target", 4, "-getinfo", 6, One, CommandCode::FcoeTargetInfo},
    {"-target", 4, "-pbindinfo", 5, Zero, CommandCode::FcoeBindings},
    {"-target", 4, "-lunlist", 6, One, CommandCode::FcoeLunList},
    Plain("-portstat", CommandCode::FcoePortStatistics),
    Plain("-resetstat", CommandCode::ResetFcoeStatistics),
    Plain("-getdcbinfo", CommandCode::GetDcbInfo),
    Plain("-getdcbconfig", CommandCode::GetDcbConfig),
    Plain("-setdcb", CommandCode::SetDcb),
    Plain("-getbootconfig", CommandCode::GetFcoeBoot),
    Plain("-setbootconfig", CommandCode::SetFcoeBoot),
    WithOperand("-ping", 5, Zero, CommandCode::FcoePing),
    // The only form that refuses further arguments, a trailing "-debug" included.
    {"-getfip", 0, {}, 4, Zero, CommandCode::GetFip, 4},
    WithOperand("-setfip", 5, Zero, CommandCode::SetFip),
    Plain("-getvirtualportinfo", CommandCode::VirtualPortInfo),
    WithOperand("-createvirtualport", 5, Zero, CommandCode::CreateVirtualPort),
    WithOperand("-deletevirtualport", 5, Zero, CommandCode::DeleteVirtualPort),
    WithOperand("-getvirtualporttarget", 5, Zero, CommandCode::VirtualPortTargets),
    WithOperand("-getvirtualporttargetlun", 5, Zero, CommandCode::VirtualPortLuns),
};

constexpr Form EthernetForms[] = {
    Plain("-portinfo", CommandCode::EthernetPortInfo),
    Plain("-getadapinfo", CommandCode::GetAdapterSettings),
    Plain("-portstat", CommandCode::EthernetPortStatistics),
    Plain("-resetstat", CommandCode::ResetEthernetStatistics),
    Plain("-gettcpip", CommandCode::GetTcpIp),
    Plain("-getxml", CommandCode::GetEthernetXml),
    Plain("-setadapinfo", CommandCode::SetAdapterSettings),
    // Position 4 holds the address family, which the handlers read.
    {"-modifytcpip", 5, "-dhcp", 6, Zero, CommandCode::EthernetTcpIpDhcp},
    {"-modifytcpip", 5, "-static", 6, Zero, CommandCode::EthernetTcpIpStatic},
};

constexpr Form PartitionForms[] = {
    Plain("-get", CommandCode::GetPartitions),
    Plain("-set", CommandCode::SetPartitions),
};

constexpr Form PersonalityForms[] = {
    Plain("-get", CommandCode::GetPersonality),
    Plain("-set", CommandCode::SetPersonality),
};

constexpr Form TopLevelForms[] = {
    Plain("-about", CommandCode::About),
    Plain("-help", CommandCode::Help),
    Plain("-showadapter", CommandCode::ShowAdapter),
    Plain("-import", CommandCode::Import),
};

// A family whose forms are addressed to a port: the identifier stands at position 2, the keyword
// at 3.
struct PortFamily {
    std::string_view name;
    std::string& identifier;
    std::span<const Form> forms;
};

const PortFamily PortFamilies[] = {
    {"-iscsi", CurrentMacText, IscsiPortForms},   {"-fcoe", CurrentWwnText, FcoeForms},
    {"-npar", CurrentMacText, PartitionForms},    {"-res", CurrentMacText, PersonalityForms},
    {"-ethernet", CurrentMacText, EthernetForms},
};

std::string_view WordAt(Arguments arguments, std::size_t position) {
    return position < arguments.size() ? arguments[position] : std::string_view{};
}

bool Matches(const Form& form, Arguments arguments, std::size_t keywordPosition) {
    return WordAt(arguments, keywordPosition) == form.keyword &&
           (form.secondKeyword.empty() ||
            WordAt(arguments, form.secondPosition) == form.secondKeyword);
}

CommandCode FindForm(std::span<const Form> forms, Arguments arguments,
                     std::size_t keywordPosition) {
    for (const Form& form : forms) {
        if (Matches(form, arguments, keywordPosition)) {
            if (arguments.size() > form.most) {
                return CommandCode::NotRecognised;
            }
            return arguments.size() < form.enough ? form.tooFew : form.code;
        }
    }
    return CommandCode::NotRecognised;
}

bool IsIscsiHostKeyword(std::string_view word) {
    return std::ranges::any_of(IscsiHostForms,
                               [word](const Form& form) { return form.keyword == word; });
}

}  // namespace

CommandCode ParseCommandLine(Arguments arguments) {
    const std::string_view family = WordAt(arguments, 1);
    if (family == "-iscsi" && IsIscsiHostKeyword(WordAt(arguments, 2))) {
        return FindForm(IscsiHostForms, arguments, 2);
    }
    for (const PortFamily& portFamily : PortFamilies) {
        if (portFamily.name == family) {
            if (arguments.size() < 4) {
                return CommandCode::NotRecognised;
            }
            portFamily.identifier = arguments[2];
            return FindForm(portFamily.forms, arguments, 3);
        }
    }
    return FindForm(TopLevelForms, arguments, 1);
}

}  // namespace tavro
