#include "linux/fcoe/fc_host.h"

namespace tavrolinux {

std::span<const Operation> FcoeOperations() {
    using tavroapi::OperationCode;
    constexpr FunctionKind Kind = FunctionKind::Fcoe;
    static constexpr Operation Rows[] = {
        OnFunction<OperationCode::ReadFcoePort, Kind, ReadFcoePort>(),
        OnFunction<OperationCode::ReadFcoeStatistics, Kind, ReadFcoeStatistics>(),
        OnFunction<OperationCode::ResetFcoeStatistics, Kind, ResetFcoeStatistics>(),
        OnFunction<OperationCode::ListFcoeTargets, Kind, ListFcoeTargets>(),
        OnFunction<OperationCode::ReadFcoeTarget, Kind, ReadFcoeTarget>(),
        OnFunction<OperationCode::ListFcoeLuns, Kind, ListFcoeLuns>(),
        OnFunction<OperationCode::ListFcoeBindings, Kind, ListFcoeBindings>(),
        NotOffered<OperationCode::PingFromFcoePort>(L"a ping over Fibre Channel"),
    };
    return Rows;
}

}  // namespace tavrolinux
