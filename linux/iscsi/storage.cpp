#include "linux/iscsi/rows.h"

namespace tavrolinux {

std::span<const Operation> IscsiStorageOperations() {
    using tavroapi::OperationCode;
    constexpr const wchar_t* Sessions = L"an initiator that keeps sessions";
    static constexpr Operation Rows[] = {
        OnFunction<OperationCode::ListPortals, FunctionKind::Iscsi, ListPortals>(),
        OnFunction<OperationCode::AddPortal, FunctionKind::Iscsi, AddPortal>(),
        OnFunction<OperationCode::RemovePortal, FunctionKind::Iscsi, RemovePortal>(),
        OnFunction<OperationCode::ListTargets, FunctionKind::Iscsi, ListTargets>(),
        OnFunction<OperationCode::ListActiveTargets, FunctionKind::Iscsi, ListActiveTargets>(),
        OnFunction<OperationCode::ReadTarget, FunctionKind::Iscsi, ReadTarget>(),
        OnFunction<OperationCode::LogInToTarget, FunctionKind::Iscsi, LogInToTarget>(),
        OnFunction<OperationCode::RemoveTarget, FunctionKind::Iscsi, RemoveTarget>(),
        OnFunction<OperationCode::ListLuns, FunctionKind::Iscsi, ListLuns>(),
        NotOffered<OperationCode::ReadSession>(Sessions),
        NotOffered<OperationCode::LogOutOfTarget>(Sessions),
    };
    return Rows;
}

}  // namespace tavrolinux
