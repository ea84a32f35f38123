#include "import/import_keys.h"

#include <span>

#include "console/wipe.h"
#include "mgmt/text.h"

namespace tavro {

using tavroapi::InitiatorRecord;
using tavroapi::LoginOptions;
using tavroapi::PortalRecord;
using tavroapi::TargetLoginRecord;
using tavroapi::TcpIpSettings;
using xml::XmlNode;

namespace {

// The name of an element and the field that its value goes into.
template <class Record>
struct Key {
    std::wstring_view name;
    std::string Record::*field;
};

constexpr Key<LoginOptions> LoginKeys[] = {
    {L"Multipath", &LoginOptions::multipath},
    {L"Header_Digest", &LoginOptions::headerDigest},
    {L"Data_Digest", &LoginOptions::dataDigest},
    {L"Auth_Method", &LoginOptions::authentication},
    {L"Target_CHAPName", &LoginOptions::targetChapName},
    {L"Target_Secret", &LoginOptions::targetSecret},
    {L"Initiator_CHAPName", &LoginOptions::initiatorChapName},
    {L"Initiator_Secret", &LoginOptions::initiatorSecret},
};

// "Initiator_Alias" is accepted and has no field.
constexpr Key<InitiatorRecord> InitiatorKeys[] = {
    {L"Initiator_Name", &InitiatorRecord::name},
};

constexpr Key<TcpIpSettings> TcpIpKeys[] = {
    {L"Vlan_Enabled", &TcpIpSettings::vlanEnabled},
    {L"Vlan_Id", &TcpIpSettings::vlanId},
    {L"Vlan_Priority", &TcpIpSettings::vlanPriority},
    {L"Dhcp_Enabled", &TcpIpSettings::dhcpEnabled},
    {L"IP_Address", &TcpIpSettings::ipAddress},
    {L"Subnet_Mask", &TcpIpSettings::subnetMask},
    {L"Default_Gateway", &TcpIpSettings::defaultGateway},
    {L"Max_Frame_Size", &TcpIpSettings::maxFrameSize},
    {L"Dhcp_Enabled_IPv6", &TcpIpSettings::dhcpEnabledIPv6},
    {L"Static_IPv6", &TcpIpSettings::staticIPv6},
    {L"Static_Prefixlen", &TcpIpSettings::staticPrefixLength},
    {L"Gateway_IPv6", &TcpIpSettings::gatewayIPv6},
};

constexpr Key<PortalRecord> PortalKeys[] = {
    {L"IP_Address", &PortalRecord::address},
    {L"Port_Number", &PortalRecord::port},
};

constexpr Key<TargetLoginRecord> TargetKeys[] = {
    {L"Target_Name", &TargetLoginRecord::targetName},
    {L"Target_Alias", &TargetLoginRecord::text4},
    {L"Portal_IP", &TargetLoginRecord::portalAddress},
    {L"Portal_PortNumber", &TargetLoginRecord::portalPort},
    {L"Immediate_Data", &TargetLoginRecord::text2},
};

// Takes the element's value, which may be a secret, into the field; leaves the field as it is when
// there is none.
void TakeValue(const XmlNode& element, std::string& field) {
    if (const auto value = element.ValueAttribute()) {
        console::WipeSecret(field);
        field.reserve(Utf16Length(*value));
        AppendNarrow(*value, field);
    }
}

// Takes the values of the element's children into the fields that the keys name.
template <class Record>
void Fill(Record& record, const XmlNode& element, std::span<const Key<Record>> keys) {
    for (std::size_t index = 0; index < element.ChildCount(); ++index) {
        const XmlNode child = element.Child(index);
        for (const Key<Record>& key : keys) {
            if (key.name == child.Name()) {
                TakeValue(child, record.*key.field);
            }
        }
    }
}

}  // namespace

void TakeValues(const XmlNode& element, InitiatorRecord& initiator) {
    Fill<InitiatorRecord>(initiator, element, InitiatorKeys);
    Fill<LoginOptions>(initiator.login, element, LoginKeys);
}

void TakeValues(const XmlNode& element, TcpIpSettings& settings) {
    Fill<TcpIpSettings>(settings, element, TcpIpKeys);
}

void TakeValues(const XmlNode& element, PortalRecord& portal) {
    Fill<PortalRecord>(portal, element, PortalKeys);
    Fill<LoginOptions>(portal.login, element, LoginKeys);
}

void TakeValues(const XmlNode& element, TargetLoginRecord& login) {
    login.text2 = "No";
    Fill<TargetLoginRecord>(login, element, TargetKeys);
    Fill<LoginOptions>(login.login, element, LoginKeys);
}

bool WasConnected(const XmlNode& element) {
    bool connected = false;
    for (std::size_t index = 0; index < element.ChildCount(); ++index) {
        const XmlNode child = element.Child(index);
        const auto value = child.ValueAttribute();
        if (child.Name() == L"Status" && value) {
            connected = *value == L"Connected";
        }
    }
    return connected;
}

}  // namespace tavro
