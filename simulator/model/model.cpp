#include "simulator/model/model.h"

#include "simulator/model/families.h"
#include "simulator/text.h"

namespace tavrosim {

Outcome MissingArgument(const wchar_t* what) {
    return Refused(Status::MissingArgument, std::wstring(L"The call has no ") + what + L".",
                   L"This is an error of the calling program.");
}

Outcome UnknownIdentifier(const std::string& request, const std::wstring& kind) {
    const std::wstring function = kind.empty() ? L"function" : kind + L" function";
    const std::wstring identifier = kind == L"FCoE" ? L"port WWN"
                                    : kind.empty()  ? L"MAC or WWN"
                                                    : L"MAC";
    return Refused(
        Status::UnknownIdentifier,
        L"No " + function + L" of this host has the " + identifier + L" \"" +
            WideFromUtf8(request) + L"\".",
        L"Run \"tavrocli -showadapter\" to see the identifiers of this host's functions.");
}

const OperationModel* FindModel(std::uint32_t code) {
    for (const auto family :
         {AdapterOperations(), InitiatorOperations(), TcpIpOperations(), IscsiPortInfoOperations(),
          IscsiPortalOperations(), IscsiTargetOperations(), IscsiSessionOperations(),
          FcoePortOperations(), FcoeTargetOperations(), FcoePingOperations(),
          VirtualPortOperations(), DcbOperations(), BootOperations(), PartitionOperations(),
          EthernetPortOperations(), EthernetStatisticsOperations(), AdapterSettingsOperations()}) {
        for (const OperationModel& row : family) {
            if (static_cast<std::uint32_t>(row.code) == code) {
                return &row;
            }
        }
    }
    return nullptr;
}

}  // namespace tavrosim
