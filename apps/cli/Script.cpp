#include "apps/cli/Script.h"

namespace korvana::cli {
namespace {

void require(const ozm::AutomationResult& result) {
    if (!result.ok)
        throw ScriptError(result.detail.empty() ? result.error : result.detail + " (" + result.error + ")");
}

} // namespace

ozm::AutomationObject Script::dialog() const {
    const auto dialog = session_.currentDialog();
    if (!dialog) throw ScriptError("the analysis shows no dialog");
    return *dialog;
}

void Script::put(const std::string& member, const ozm::AutomationValue& value) {
    require(dialog().Put(member, value));
}

void Script::press(const std::string& action) {
    const ozm::AutomationResult result = dialog().Call(action);
    session_.pump();
    require(result);
}

} // namespace korvana::cli
