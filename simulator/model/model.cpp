#include "simulator/model/model.h"

#include "simulator/model/families.h"

namespace tavrosim {

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
