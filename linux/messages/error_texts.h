#pragma once

#include "library/calls/outcome.h"
#include "library/messages/error_text.h"

namespace tavrolinux {

// What the errors of the Linux library say. The rooms stand in the order of their dependence.
// clang-format off
inline constexpr tavrolib::ErrorTextRow ErrorTexts[] = {
    // Any call.
    {L"This host cannot do that.",
     L"このホストでは実行できません。",
     L"本主机无法执行此操作。"},
    {L"The details name what is missing.",
     L"不足しているものは詳細に示されています。",
     L"详细信息中说明了缺少的内容。"},
    {L"This process may not do that.",
     L"このプロセスにはその権限がありません。",
     L"此进程无权执行该操作。"},
    {L"Run the command as root, or with the capability that the details name.",
     L"コマンドを root として、または詳細に示されたケーパビリティを付けて実行してください。",
     L"请以 root 身份运行该命令，或授予详细信息中所列的权能。"},
    {L"The system did not do that.",
     L"システムがこれを実行しませんでした。",
     L"系统未执行该操作。"},
    {L"The driver or the kernel has no such thing.",
     L"ドライバーまたはカーネルにその機能がありません。",
     L"驱动程序或内核没有此功能。"},
    {L"See the details for the system's reason.",
     L"システムの示した理由は詳細を参照してください。",
     L"系统给出的原因见详细信息。"},
    {L"The interface is not there any more.",
     L"インターフェースはもう存在しません。",
     L"该接口已不存在。"},
    {L"Several functions of this host have this identifier.",
     L"この識別子を持つファンクションが、このホストに複数あります。",
     L"本主机有多个功能具有此标识符。"},
    {L"Give the interfaces that the details name different addresses.",
     L"詳細に示されたインターフェースに、異なるアドレスを指定してください。",
     L"请为详细信息中所列的接口指定不同的地址。"},

    // What this library keeps.
    {L"The library's own state cannot be used.",
     L"ライブラリー自身の状態を使用できません。",
     L"无法使用库自身的状态。"},
    {L"See that the file can be read and written by root, or move it away to start anew.",
     L"ファイルを root が読み書きできることを確認するか、別の場所に移して最初から始めてください。",
     L"请确认 root 可读写该文件，或将其移走以重新开始。"},

    // Ethernet ports.
    {L"The interface has no address of its own to go back to.",
     L"インターフェースには、元に戻せる固有のアドレスがありません。",
     L"该接口没有可以恢复的自身地址。"},
    {L"Set it to a locally administered unicast address.",
     L"ローカル管理のユニキャストアドレスに設定してください。",
     L"请设置为本地管理的单播地址。"},
    {L"Two settings contradict each other.",
     L"2 つの設定が互いに矛盾しています。",
     L"两个设置相互矛盾。"},
    {L"Give both the same value: the device has one feature for both.",
     L"両方に同じ値を指定してください。デバイスでは 1 つの機能を両方が共有しています。",
     L"请为两者指定相同的值：设备只有一个功能供两者共用。"},
    {L"The driver did not take the value of the setting.",
     L"ドライバーが設定の値を受け入れませんでした。",
     L"驱动程序未采用该设置的值。"},
    {L"Leave the setting as it is.",
     L"設定をそのままにしてください。",
     L"请将设置保持原样。"},
    {L"The changes failed, and not all of them could be taken back.",
     L"変更は失敗し、一部の変更を元に戻せませんでした。",
     L"更改失败，并且部分更改无法撤销。"},
    {L"Run the command with \"-getadapinfo\" to see what the settings are now.",
     L"現在の設定は、コマンドの「-getadapinfo」で確認してください。",
     L"请使用“-getadapinfo”运行命令以查看当前的设置。"},

    // TCP/IP.
    {L"Set it up with the host's network manager.",
     L"ホストのネットワークマネージャーで設定してください。",
     L"请使用主机的网络管理器进行设置。"},
    {L"The text is no subnet mask or prefix length.",
     L"テキストがサブネットマスクでもプレフィックス長でもありません。",
     L"该文本不是子网掩码或前缀长度。"},
    {L"Give a mask of leading ones, such as 255.255.255.0.",
     L"255.255.255.0 のように、先頭から 1 が続くマスクを指定してください。",
     L"请指定前导位为 1 的掩码，例如 255.255.255.0。"},
    {L"A network manager owns this interface.",
     L"このインターフェースはネットワークマネージャーが管理しています。",
     L"此接口由网络管理器管理。"},
    {L"Change the address there, or take the interface out of its hands.",
     L"アドレスをそちらで変更するか、インターフェースを管理対象から外してください。",
     L"请在其中更改地址，或将该接口移出其管理范围。"},

    // iSCSI.

    // FCoE.
};
// clang-format on

static_assert(tavrolib::AreCompleteAndUnique(ErrorTexts));

// A text of the table, for functions that hand one on.
using ErrorText = tavrolib::ErrorTextOf<ErrorTexts>;

// Refuses in words of the table.
inline constexpr tavrolib::Refuser<ErrorTexts> Refused;

}  // namespace tavrolinux
