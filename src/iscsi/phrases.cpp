#include "iscsi/phrases.h"

#include "console/console.h"
#include "mgmt/message.h"

namespace tavro {

void ShowPleaseWait() {
    ShowMessage(MessageId::PleaseWait);
    console::EndLine();
}

}  // namespace tavro
