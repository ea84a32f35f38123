#include "dispatch.h"

#include <algorithm>

#include "adapters/listing.h"
#include "cli/command_line.h"
#include "cli/usage.h"
#include "ethernet/adapter_settings.h"
#include "ethernet/port_info.h"
#include "ethernet/statistics.h"
#include "ethernet/tcpip.h"
#include "fcoe/boot.h"
#include "fcoe/dcb.h"
#include "fcoe/dcb_dialogue.h"
#include "fcoe/fip_ping.h"
#include "fcoe/port_info.h"
#include "fcoe/targets.h"
#include "fcoe/virtual_ports.h"
#include "import/import.h"
#include "iscsi/boot.h"
#include "iscsi/initiator.h"
#include "iscsi/isns.h"
#include "iscsi/port_info.h"
#include "iscsi/portals.h"
#include "iscsi/sessions.h"
#include "iscsi/targets.h"
#include "iscsi/tcpip.h"
#include "mgmt/message.h"
#include "partition/partitions.h"
#include "partition/personality.h"

namespace tavro {

namespace {

// What a command's handler is given.
template <void (*Handler)()>
void Bare(const Invocation&) {
    Handler();
}

template <void (*Handler)(EntryCache&)>
void WithCache(const Invocation& invocation) {
    Handler(invocation.cache);
}

template <void (*Handler)(Arguments)>
void WithArguments(const Invocation& invocation) {
    Handler(invocation.arguments);
}

template <void (*Handler)(const std::string&)>
void WithMac(const Invocation&) {
    Handler(CurrentMacText);
}

template <void (*Handler)(const std::string&, Arguments)>
void WithMacAndArguments(const Invocation& invocation) {
    Handler(CurrentMacText, invocation.arguments);
}

template <void (*Handler)(const std::string&, EntryCache&)>
void WithMacAndCache(const Invocation& invocation) {
    Handler(CurrentMacText, invocation.cache);
}

template <void (*Handler)(const std::string&)>
void WithWwn(const Invocation&) {
    Handler(CurrentWwnText);
}

template <void (*Handler)(const std::string&, Arguments)>
void WithWwnAndArguments(const Invocation& invocation) {
    Handler(CurrentWwnText, invocation.arguments);
}

template <MessageId Id>
void Say(const Invocation&) {
    ShowMessage(Id);
}

constexpr Command CommandTable[] = {
    {CommandCode::NotRecognised, AccessClass::Runs, Say<MessageId::UnknownCommand>},
    {CommandCode::TooFewArguments, AccessClass::Runs, Say<MessageId::TooFewArguments>},
    {CommandCode::About, AccessClass::Runs, Bare<ShowAbout>},
    {CommandCode::Help, AccessClass::Warns, Bare<ShowUsage>},
    {CommandCode::Import, AccessClass::Runs, WithCache<ImportConfiguration>},
    {CommandCode::ShowAdapter, AccessClass::Warns, WithCache<ListAdapters>},
    {CommandCode::IscsiPortInfo, AccessClass::Runs, WithMac<ShowIscsiPort>},
    {CommandCode::IscsiPortStatistics, AccessClass::Runs, WithMac<ShowIscsiStatistics>},
    {CommandCode::IscsiDefaultParameters, AccessClass::Runs, WithMac<ShowIscsiDefaults>},
    {CommandCode::GetInitiator, AccessClass::Runs, Bare<GetInitiator>},
    {CommandCode::SetInitiator, AccessClass::Runs, WithArguments<SetInitiator>},
    {CommandCode::ListPortals, AccessClass::Runs, WithMac<ListPortals>},
    {CommandCode::AddPortal, AccessClass::Runs, WithMacAndArguments<AddPortal>},
    {CommandCode::RemovePortal, AccessClass::Runs, WithMacAndArguments<RemovePortal>},
    {CommandCode::ListTargets, AccessClass::Runs, WithMac<ListTargets>},
    {CommandCode::ListActiveTargets, AccessClass::Runs, WithMac<ListActiveTargets>},
    {CommandCode::TargetInfo, AccessClass::Runs, WithMacAndArguments<ShowTarget>},
    {CommandCode::TargetLogin, AccessClass::Runs, WithMacAndArguments<LogInToTarget>},
    {CommandCode::SessionInfo, AccessClass::Runs, WithMacAndArguments<ShowSession>},
    {CommandCode::RemoveTarget, AccessClass::Runs, WithMacAndArguments<RemoveTarget>},
    {CommandCode::TargetLogout, AccessClass::Runs, WithMacAndArguments<LogOutOfTarget>},
    {CommandCode::LunList, AccessClass::Runs, WithMacAndArguments<ListLuns>},
    {CommandCode::IscsiTcpIpDhcp, AccessClass::Runs, WithMacAndArguments<SetIscsiTcpIpByDhcp>},
    {CommandCode::IscsiTcpIpStatic, AccessClass::Runs,
     WithMacAndArguments<SetIscsiTcpIpStatically>},
    {CommandCode::ListIsnsServers, AccessClass::Runs, Bare<ListIsnsServers>},
    {CommandCode::AddIsnsServer, AccessClass::Runs, WithArguments<AddIsnsServer>},
    {CommandCode::RemoveIsnsServer, AccessClass::Runs, WithArguments<RemoveIsnsServer>},
    {CommandCode::IscsiPing, AccessClass::Runs, WithMacAndArguments<PingFromIscsiPort>},
    {CommandCode::GetIscsiBoot, AccessClass::Runs, WithMac<ShowIscsiBoot>},
    {CommandCode::SetIscsiBoot, AccessClass::Blocked, WithMacAndCache<SetIscsiBoot>},
    {CommandCode::FcoePortInfo, AccessClass::Runs, WithWwn<ShowFcoePortInfo>},
    {CommandCode::FcoeActiveTargets, AccessClass::Runs, WithWwn<ListFcoeTargets>},
    {CommandCode::FcoeTargetInfo, AccessClass::Runs, WithWwnAndArguments<ShowFcoeTarget>},
    {CommandCode::FcoeBindings, AccessClass::Runs, WithWwn<ListFcoeBindings>},
    {CommandCode::FcoePortStatistics, AccessClass::Runs, WithWwn<ShowFcoeStatistics>},
    {CommandCode::ResetFcoeStatistics, AccessClass::Blocked, WithWwn<ResetFcoeStatistics>},
    {CommandCode::FcoeLunList, AccessClass::Runs, WithWwnAndArguments<ListFcoeLuns>},
    {CommandCode::GetDcbInfo, AccessClass::Runs, WithWwn<ShowDcbInfo>},
    {CommandCode::GetDcbConfig, AccessClass::Runs, WithWwn<ShowDcbConfig>},
    {CommandCode::SetDcb, AccessClass::Blocked, WithWwn<ChangeDcbConfig>},
    {CommandCode::FcoePing, AccessClass::Runs, WithWwnAndArguments<PingFromFcoePort>},
    {CommandCode::GetFcoeBoot, AccessClass::Runs, WithWwn<ShowFcoeBoot>},
    {CommandCode::SetFcoeBoot, AccessClass::Blocked, WithWwn<SetFcoeBoot>},
    {CommandCode::GetFip, AccessClass::Runs, WithWwn<ShowFip>},
    {CommandCode::SetFip, AccessClass::Blocked, WithWwnAndArguments<SetFip>},
    {CommandCode::VirtualPortInfo, AccessClass::Runs, WithWwn<ListVirtualPorts>},
    {CommandCode::CreateVirtualPort, AccessClass::Blocked, WithWwnAndArguments<CreateVirtualPorts>},
    {CommandCode::DeleteVirtualPort, AccessClass::Blocked, WithWwnAndArguments<DeleteVirtualPorts>},
    {CommandCode::VirtualPortTargets, AccessClass::Runs,
     WithWwnAndArguments<ListVirtualPortTargets>},
    {CommandCode::VirtualPortLuns, AccessClass::Runs, WithWwnAndArguments<ListVirtualPortLuns>},
    {CommandCode::GetPartitions, AccessClass::Runs, WithMac<ShowPartitions>},
    {CommandCode::SetPartitions, AccessClass::Blocked, WithMac<SetPartitions>},
    {CommandCode::GetPersonality, AccessClass::Runs, WithMac<ShowPersonality>},
    {CommandCode::SetPersonality, AccessClass::Blocked, WithMac<SetPersonality>},
    {CommandCode::EthernetPortInfo, AccessClass::Runs, WithMac<ShowEthernetPortInfo>},
    {CommandCode::GetAdapterSettings, AccessClass::Runs, WithMac<ShowAdapterSettings>},
    {CommandCode::EthernetPortStatistics, AccessClass::Runs, WithMac<ShowEthernetPortStatistics>},
    {CommandCode::ResetEthernetStatistics, AccessClass::Blocked,
     WithMac<ResetEthernetPortStatistics>},
    {CommandCode::GetTcpIp, AccessClass::Runs, WithMac<ShowEthernetTcpIp>},
    {CommandCode::EthernetTcpIpDhcp, AccessClass::Blocked,
     WithMacAndArguments<SetEthernetTcpIpByDhcp>},
    {CommandCode::EthernetTcpIpStatic, AccessClass::Blocked,
     WithMacAndArguments<SetEthernetTcpIpStatically>},
    {CommandCode::GetEthernetXml, AccessClass::Runs, WithMac<GetEthernetXml>},
    {CommandCode::SetAdapterSettings, AccessClass::Blocked, WithMac<ChangeAdapterSettings>},
};

static_assert(std::ranges::is_sorted(CommandTable, {}, &Command::code) &&
                  std::ranges::adjacent_find(CommandTable, {}, &Command::code) ==
                      std::end(CommandTable),
              "each code has one row");

}  // namespace

std::span<const Command> Commands() {
    return CommandTable;
}

const Command* FindCommand(CommandCode code) {
    const auto found = std::ranges::find(CommandTable, code, &Command::code);
    return found == std::end(CommandTable) ? nullptr : &*found;
}

}  // namespace tavro
