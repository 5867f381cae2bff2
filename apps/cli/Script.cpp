#include "apps/cli/Script.h"

#include <utility>

namespace korvana::cli {
namespace {

void require(const ozm::AutomationResult& result) {
    // The error without detail names a function of the program, which tells a user nothing.
    if (!result.ok) throw ScriptError(result.detail.empty() ? result.error : result.detail);
}

} // namespace

void put(ozm::AutomationObject& dialog, const std::string& member, const ozm::AutomationValue& value) {
    require(dialog.Put(member, value));
}

ozm::AutomationObject Script::dialog() const {
    const auto dialog = session_.currentDialog();
    if (!dialog) throw ScriptError("the analysis shows no dialog");
    return *dialog;
}

void Script::put(const std::string& member, const ozm::AutomationValue& value) {
    const ozm::AutomationResult result = dialog().Put(member, value);
    session_.pump();
    require(result);
}

ozm::AutomationValue Script::get(const std::string& member) const {
    ozm::AutomationResult result = dialog().Get(member);
    require(result);
    return std::move(result.value);
}

bool Script::press(const std::string& action) {
    const ozm::AutomationResult result = dialog().Call(action);
    session_.pump();
    require(result);
    const bool* const succeeded = std::get_if<bool>(&result.value.value);
    return succeeded != nullptr && *succeeded;
}

bool Script::pressWithFile(const std::string& action, const std::string& path) {
    session_.nameFile(path);
    return press(action);
}

} // namespace korvana::cli
