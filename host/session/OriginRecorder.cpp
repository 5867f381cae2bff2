#include "host/session/OriginRecorder.h"

#include "host/data/Expression.h"
#include "host/session/DialogValues.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <string>

namespace korvana {
namespace {

std::vector<MissingCode> missingCodes(const ActiveData& active, const std::vector<DialogSettings>& dialogs) {
    const DataSet& data = active.dataSet();
    std::set<int> used;
    for (const DialogSettings& dialog : dialogs)
        for (const Setting& setting : dialog.settings)
            if (const auto* roles = std::get_if<std::vector<Setting::Role>>(&setting.value))
                for (const Setting::Role& role : *roles)
                    for (const std::string& name : role.variables)
                        if (const auto found = data.find(name)) used.insert(*found);
    if (active.weightVariable() > 0) used.insert(active.weightVariable() - 1);
    if (!active.condition().empty()) {
        const Expression condition(active.condition(), data);
        for (const int variable : condition.referencedVariables())
            used.insert(variable - 1);
    }
    std::vector<MissingCode> codes;
    for (const int variable0 : used) {
        const Variable& variable = data.variable(variable0);
        if (!std::isnan(variable.missingCode)) codes.push_back({variable.name, variable.missingCode});
    }
    return codes;
}

} // namespace

void OriginRecorder::restart() {
    pressed_.reset();
    run_.reset();
    remarks_.clear();
}

/// The run so far, and then this dialog's settings.
std::shared_ptr<RunOrigin> OriginRecorder::runWith(const ozm::CAnalysisDialog& dialog) const {
    auto run = run_ != nullptr ? std::make_shared<RunOrigin>(*run_) : std::make_shared<RunOrigin>();
    DialogSettings settings = settingsOf(dialog, data_.dataSet());
    // A dialog that is accepted again, perhaps in another of its forms, replaces its earlier settings, and
    // those of the dialogs that followed.
    run->dialogs.erase(std::find_if(run->dialogs.begin(), run->dialogs.end(),
                                    [&settings](const DialogSettings& earlier) {
                                        return earlier.number == settings.number;
                                    }),
                       run->dialogs.end());
    settings.asked = settingsOf(dialog, data_.dataSet(), Greyed::Taken).settings;
    run->dialogs.push_back(std::move(settings));
    return run;
}

void OriginRecorder::alsoAccepted(const ozm::CAnalysisDialog& dialog, std::vector<Setting> asked) {
    if (run_ == nullptr) return;
    const auto run = runWith(dialog);
    run->dialogs.back().onTheWay = true;
    if (!asked.empty()) run->dialogs.back().asked = std::move(asked);
    run_ = run;
}

void OriginRecorder::answered(bool yes) {
    if (pressed_ != nullptr) {
        pressed_->answers.push_back(yes);
    } else if (run_ != nullptr && !run_->dialogs.empty()) {
        const auto run = std::make_shared<RunOrigin>(*run_);
        run->dialogs.back().answers.push_back(yes);
        run_ = run;
    }
}

void OriginRecorder::accepted(const ozm::CAnalysisDialog& dialog) {
    const auto run = runWith(dialog);
    run->analysis = dialog.Analysis().GetAnalysisName();
    run->data = pressed_ != nullptr ? stateAtPress_ : data_.state();
    run->weightGiven = pressed_ != nullptr ? weightAtPress_ : run->data.weightVariable;
    if (pressed_ != nullptr) {
        run->dialogs.back().asked = askedAtPress_;
        run->dialogs.back().answers = pressed_->answers;
    }
    run->missingCodes = missingCodes(data_, run->dialogs);
    run->missingAtFirst = data_.missingAtFirst();
    run->descriptions = data_.changes();
    run->reading = data_.dataSet().readSettings();
    run->definitions.clear();
    for (int i = 0; i < data_.dataSet().variableCount(); ++i)
        if (const Variable& variable = data_.dataSet().variable(i); !variable.expression.empty())
            run->definitions.push_back({variable.name, variable.expression});
    run->remarks = std::move(remarks_);
    remarks_.clear();
    run_ = run;
}

std::shared_ptr<const OutputOrigin> OriginRecorder::current() const {
    if (pressed_ != nullptr) return pressed_;
    auto origin = std::make_shared<OutputOrigin>();
    origin->made = std::chrono::system_clock::now();
    origin->run = run_;
    return origin;
}

void OriginRecorder::CommandBegins(ozm::CAnalysisDialog& dialog, int control) {
    auto origin = std::make_shared<OutputOrigin>();
    const ButtonName name = nameOfButton(dialog, control);
    origin->id = name.id;
    origin->label = name.label;
    origin->made = std::chrono::system_clock::now();
    origin->run = run_;
    origin->settings = settingsOf(dialog, data_.dataSet()).settings;
    askedAtPress_ = settingsOf(dialog, data_.dataSet(), Greyed::Taken).settings;
    pressed_ = std::move(origin);
    stateAtPress_ = data_.state();
    weightAtPress_ = stateAtPress_.weightVariable;
    remarks_.clear();
}

void OriginRecorder::CommandEnded(ozm::CAnalysisDialog& /*dialog*/, int /*control*/, bool /*succeeded*/) {
    pressed_.reset();
}

} // namespace korvana
