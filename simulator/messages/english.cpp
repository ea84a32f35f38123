#include "simulator/messages/catalogue.h"

namespace tavrosim {
namespace {

// clang-format off
constexpr Message Messages[] = {
    {256, L"Notice: an adapter of this host is in a restricted state."},
    {257, L"Commands that show information can be used as usual."},
    {258, L"Commands that change the adapter will be refused."},
    {259, L"The state can last until pending changes have been applied by a restart of the host."},
    {260, L"If it remains after a restart, contact your support organization."},
    {261, L"This command changes the adapter and cannot be used while the adapter is in a restricted state."},

    {24833, L"Host Name"},
    {24834, L"Adapter"},
    {24835, L"The functions of the port could not be read."},
    {24836, L"The list of adapters could not be read."},
    {24837, L"The host name could not be read."},
    {24838, L"The management library cannot tell the host name."},
    {24839, L"No adapter port could be listed."},
    {24840, L"Function Number"},
    {24841, L"MAC Address"},
    {24842, L"Protocol"},
    {24848, L"Node Name"},
    {24849, L"Port Identifier"},

    {25367, L"The port information could not be read"},

    {25857, L"The TCP/IP settings were applied."},
    {25858, L"The TCP/IP settings were not applied."},
    {25860, L"The TCP/IP settings take effect when the host is restarted."},

    {26113, L"iSNS Servers"},
    {26114, L"The list of iSNS servers could not be read"},
    {26115, L"The iSNS server was added."},
    {26116, L"The iSNS server was not added"},
    {26117, L"The iSNS server was removed."},
    {26118, L"There is no iSNS server"},

    {26369, L"iSCSI Initiator Name"},
    {26370, L"The iSCSI initiator was set."},
    {26371, L"Pinging..."},
    {26372, L"Packets Sent"},
    {26373, L"Packets Received"},
    {26374, L"The ping failed."},
    {26375, L"IP Address"},
    {26376, L"Packets Lost"},

    {28673, L"Invalid IP address"},
    {28674, L"Unknown command. Run \"tavrocli -help\" to see the commands."},
    {28675, L"The command lacks an argument. Run \"tavrocli -help\" to see its form."},
    {28676, L"The management library could not be initialized."},
    {28677, L"The management library is missing or incomplete."},
    {28678, L"This program manages the converged network adapters of this host."},
    {28679, L"Each run performs one command. Keywords are case-sensitive."},
    {28680, L"The commands and their arguments are:"},
    {28684, L"Invalid port number"},
    {28685, L"Invalid VLAN ID (0 to 4094)"},
    {28686, L"Invalid subnet mask"},
    {28687, L"Invalid gateway address"},
    {28690, L"Please answer y (yes) or n (no)"},
    {28691, L"Please wait..."},
    {28692, L"Target CHAP name"},
    {28693, L"Target CHAP secret"},
    {28694, L"Initiator CHAP name"},
    {28695, L"Initiator CHAP secret"},
    {28696, L"The secret must have 12 to 16 characters"},
    {28698, L"Invalid prefix length (0 to 128)"},

    {29726, L"Device Name"},

    {30208, L"TCP/IP Settings"},
    {30210, L"DHCP"},
    {30211, L"IP Address"},
    {30212, L"Subnet Mask"},
    {30213, L"Default Gateway"},
    {30214, L"VLAN"},
    {30215, L"VLAN ID"},
    {30217, L"DHCP"},
    {30224, L"IP Address"},
    {30234, L"Prefix Length"},
    {30235, L"Default Gateway"},
    {30237, L"Link-local Address"},
    {30238, L"VLAN"},
    {30239, L"IPv4"},
    {30240, L"IPv6"},
};
// clang-format on

static_assert(IsSortedById(Messages));

}  // namespace

std::span<const Message> EnglishMessages() {
    return Messages;
}

}  // namespace tavrosim
