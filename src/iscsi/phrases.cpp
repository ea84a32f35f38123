#include "iscsi/phrases.h"

#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/rules.h"

namespace tavro {

void ShowPleaseWait() {
    ShowMessage(MessageId::PleaseWait);
    console::EndLine();
}

void ShowClosingRules() {
    console::PrintLine(TabRule65);
    console::PrintLine(Rule78);
}

}  // namespace tavro
