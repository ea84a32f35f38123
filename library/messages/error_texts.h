#pragma once

#include "library/messages/error_text.h"

namespace tavrolib {

// What the errors that every library gives in the same words say.
// clang-format off
inline constexpr ErrorTextRow CommonErrorTexts[] = {
    // The library and its callers.
    {L"The management library is not initialized.",
     L"管理ライブラリーが初期化されていません。",
     L"管理库尚未初始化。"},
    {L"The call lacks an argument.",
     L"呼び出しの引数が足りません。",
     L"调用缺少参数。"},
    {L"This is an error of the calling program.",
     L"呼び出し元のプログラムのエラーです。",
     L"这是调用程序的错误。"},
    {L"This operation is not available.",
     L"この操作は使用できません。",
     L"此操作不可用。"},
    {L"Use a management library that has this operation.",
     L"この操作を備えた管理ライブラリーを使用してください。",
     L"请使用具有此操作的管理库。"},
    {L"The management library failed.",
     L"管理ライブラリーの処理が失敗しました。",
     L"管理库处理失败。"},
    {L"Try again.",
     L"もう一度実行してください。",
     L"请重试。"},
    {L"The trace of calls cannot be written.",
     L"呼び出しのトレースを書き込めません。",
     L"无法写入调用跟踪。"},
    {L"Name a file for the trace that can be written.",
     L"トレースに、書き込めるファイルの名前を指定してください。",
     L"请为跟踪指定可写入的文件的名称。"},

    // Addresses.
    {L"The text is not an IP address.",
     L"テキストが IP アドレスではありません。",
     L"该文本不是 IP 地址。"},
    {L"Give an IPv4 or IPv6 address.",
     L"IPv4 または IPv6 アドレスを指定してください。",
     L"请指定 IPv4 或 IPv6 地址。"},

    {L"The address belongs to the interface.",
     L"アドレスはインターフェイスに属しています。",
     L"该地址属于接口。"},
    {L"Use \"tavrocli -ethernet <MAC> -modifytcpip\".",
     L"「tavrocli -ethernet <MAC> -modifytcpip」を使用してください。",
     L"请使用“tavrocli -ethernet <MAC> -modifytcpip”。"},

    // Adapters and ports.
    {L"There is no adapter of this name.",
     L"この名前のアダプターはありません。",
     L"没有此名称的适配器。"},
    {L"The adapter has no port of this name.",
     L"アダプターにこの名前のポートはありません。",
     L"适配器没有此名称的端口。"},
    {L"Run \"tavrocli -showadapter\" to see this host's adapters and ports.",
     L"このホストのアダプターとポートは「tavrocli -showadapter」で表示できます。",
     L"运行“tavrocli -showadapter”可查看本主机的适配器和端口。"},

    // The functions of the host.
    {L"No function of this host has this identifier.",
     L"この識別子を持つファンクションは、このホストにありません。",
     L"本主机没有具有此标识符的功能。"},
    {L"No Ethernet function of this host has this MAC.",
     L"この MAC を持つ Ethernet ファンクションは、このホストにありません。",
     L"本主机没有具有此 MAC 的 Ethernet 功能。"},
    {L"No iSCSI function of this host has this MAC.",
     L"この MAC を持つ iSCSI ファンクションは、このホストにありません。",
     L"本主机没有具有此 MAC 的 iSCSI 功能。"},
    {L"No FCoE function of this host has this port WWN.",
     L"このポート WWN を持つ FCoE ファンクションは、このホストにありません。",
     L"本主机没有具有此端口 WWN 的 FCoE 功能。"},
    {L"Run \"tavrocli -showadapter\" to see the identifiers of this host's functions.",
     L"このホストのファンクションの識別子は「tavrocli -showadapter」で表示できます。",
     L"运行“tavrocli -showadapter”可查看本主机各功能的标识符。"},

    // Adapter settings of Ethernet functions.
    {L"The setting cannot have this value.",
     L"設定をこの値にすることはできません。",
     L"该设置无法使用此值。"},
    {L"Set it to one of its choices.",
     L"選択肢のいずれかに設定してください。",
     L"请设置为其选项之一。"},
    {L"Set it to a multiple of its step within its range.",
     L"範囲内にあるステップの倍数に設定してください。",
     L"请设置为范围内步长的倍数。"},
    {L"Set it to 0, or to a locally administered unicast address such as 02-00-5E-00-00-01.",
     L"0、またはローカル管理のユニキャストアドレスに設定してください (例: 02-00-5E-00-00-01)。",
     L"请设置为 0，或者设置为本地管理的单播地址（例如 02-00-5E-00-00-01）。"},
    {L"The adapter does not have this setting.",
     L"アダプターにこの設定はありません。",
     L"适配器没有此设置。"},
    {L"Run the command with \"-getadapinfo\" to see the settings of the adapter.",
     L"アダプターの設定は、コマンドの「-getadapinfo」で表示できます。",
     L"使用“-getadapinfo”运行命令可查看适配器的设置。"},
    {L"This setting cannot be changed.",
     L"この設定は変更できません。",
     L"此设置无法更改。"},
    {L"Leave it as it is.",
     L"そのままにしてください。",
     L"请保持原样。"},

    // FCoE targets.
    {L"The port does not see this target.",
     L"ポートからこのターゲットは見えません。",
     L"端口不能看到此目标。"},
    {L"Give the port WWN of a target. Run the command with \"-target -listactive\" to see the targets of the port.",
     L"ターゲットのポート WWN を指定してください。ポートのターゲットは、コマンドの「-target -listactive」で表示できます。",
     L"请指定目标的端口 WWN。使用“-target -listactive”运行命令可查看该端口的目标。"},
};
// clang-format on

static_assert(AreCompleteAndUnique(CommonErrorTexts));

}  // namespace tavrolib
