#include "dispatch.h"

#include <algorithm>
#include <vector>

#include "adapters/listing.h"
#include "boot/commands.h"
#include "cli/invocation.h"
#include "cli/usage.h"
#include "ethernet/commands.h"
#include "fcoe/commands.h"
#include "import/import.h"
#include "iscsi/commands.h"
#include "mgmt/message.h"
#include "partition/commands.h"

namespace tavro {

namespace {

void ShowNotRecognised(const Invocation&) {
    ShowMessage(MessageId::UnknownCommand);
}

void ShowTooFewArguments(const Invocation&) {
    ShowMessage(MessageId::TooFewArguments);
}

// What the command line gives when it names no command. Nobody types them.
constexpr Command ErrorRows[] = {
    {.code = CommandCode::NotRecognised,
     .form = {},
     .access = AccessClass::Runs,
     .decidedBy = Decision::Never(),
     .handler = ShowNotRecognised},
    {.code = CommandCode::TooFewArguments,
     .form = {},
     .access = AccessClass::Runs,
     .decidedBy = Decision::Never(),
     .handler = ShowTooFewArguments},
};

std::span<const Command> ErrorCommands() {
    return ErrorRows;
}

// The groups of rows that make the table. A new group goes here, a new row into its group.
constexpr std::span<const Command> (*Groups[])() = {
    ErrorCommands,
    ScreenCommands,
    ImportCommands,
    ListingCommands,
    IscsiPortCommands,
    InitiatorCommands,
    PortalCommands,
    IscsiTargetCommands,
    SessionCommands,
    IscsiTcpIpCommands,
    IsnsCommands,
    IscsiBootCommands,
    FcoePortCommands,
    FcoeTargetCommands,
    DcbCommands,
    DcbDialogueCommands,
    FipPingCommands,
    FcoeBootCommands,
    VirtualPortCommands,
    PartitionCommands,
    PersonalityCommands,
    EthernetPortCommands,
    AdapterSettingCommands,
    XmlExportCommands,
    EthernetStatisticsCommands,
    EthernetTcpIpCommands,
};

std::vector<const Command*> JoinGroups() {
    std::vector<const Command*> commands;
    for (const auto group : Groups) {
        for (const Command& command : group()) {
            commands.push_back(&command);
        }
    }
    std::ranges::sort(commands, {}, &Command::code);
    return commands;
}

}  // namespace

std::span<const Command* const> Commands() {
    static const std::vector<const Command*> commands = JoinGroups();
    return commands;
}

const Command* FindCommand(CommandCode code) {
    const auto found = std::ranges::find(Commands(), code, &Command::code);
    return found == Commands().end() ? nullptr : *found;
}

}  // namespace tavro
