// Codes of the chosen variables: offered, filled in, swapped.
#include "apps/desktop/dialogs/CodeField.h"
#include "apps/desktop/dialogs/DialogView.h"

#include <algorithm>

namespace korvana::desktop {

void DialogView::offerCodes() {
    const auto& controls = dialog_->Template().controls;
    const auto chooser = std::find_if(controls.begin(), controls.end(), [](const ozm::ControlTemplate& c) {
        return c.kind == ozm::ControlKind::VariableSelection;
    });
    if (chooser == controls.end()) return;
    const auto* selection = std::get_if<ozm::VariableSelection>(&dialog_->Value(chooser->id));
    for (const Placed& placed : placed_) {
        const auto role = static_cast<std::size_t>(placed.control->codesOfRole);
        if (placed.control->codesOfRole < 0 || role >= chooser->roles.size() || selection == nullptr)
            continue;
        const bool chosen = role < selection->size() && !(*selection)[role].empty();
        placed.field->offerCodesOf(chosen ? (*selection)[role].front() : 0,
                                   fromView(chooser->roles[role].prompt));
    }
}

void DialogView::offerSwaps() {
    for (const Placed& placed : placed_)
        for (const Placed& before : placed_) {
            if (&before == &placed) break;
            if (before.page != placed.page || pairs_.partnerOf(placed.control->id) != before.control->id)
                continue;
            auto* field = dynamic_cast<CodeField*>(placed.field);
            auto* other = dynamic_cast<CodeField*>(before.field);
            if (field != nullptr && other != nullptr) field->offerSwapWith(*other);
        }
}

void DialogView::fillCodes(int changed) {
    if (dialog_ == nullptr) return;
    const auto untouched = [this](int control) {
        return std::none_of(placed_.begin(), placed_.end(), [control](const Placed& placed) {
            return placed.control->id == control && placed.field->hasPendingEdit();
        });
    };
    for (const CodePairs::Fill& fill : pairs_.after(*dialog_, changed, untouched)) {
        const auto result =
            operate([&](ozm::CAnalysisDialog& dialog) { return dialog.PutValue(fill.control, fill.code); });
        if (!result || dialog_ == nullptr) return;
    }
    remarkFilledCodes();
}

void DialogView::remarkFilledCodes() {
    for (const Placed& placed : placed_)
        if (auto* field = dynamic_cast<CodeField*>(placed.field))
            field->remarkFilled(pairs_.filledIn(placed.control->id, *dialog_));
}

void DialogView::recallCodes(const std::vector<CodePairs::Known>& known) {
    if (dialog_ == nullptr) return;
    pairs_.recall(known, *dialog_);
    remarkFilledCodes();
}

} // namespace korvana::desktop
