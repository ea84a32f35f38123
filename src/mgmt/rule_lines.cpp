#include "mgmt/rule_lines.h"

#include "console/console.h"

namespace tavro {

void ShowClosingRules() {
    console::PrintLine(TabRule65);
    console::PrintLine(Rule78);
}

}  // namespace tavro
