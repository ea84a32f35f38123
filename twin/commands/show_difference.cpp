#include "twin/commands/show_difference.h"

#include "twin/diff/fitted_patch.h"
#include "twin/diff/text.h"
#include "twin/documents/document.h"
#include "twin/documents/json_text.h"

namespace tavrohost {

void ShowDifference(const HostDocument& before, const Difference& difference, bool asPatch) {
    if (!asPatch) {
        WriteOutput(TextOf(difference));
        return;
    }
    const tavrolib::Json document = tavrolib::ParseJson(before.text);
    WriteOutput(JsonText(FittedPatch(document, before.host, difference.patch)));
}

}  // namespace tavrohost
