#pragma once

#include "host/session/Session.h"
#include "tests/automation/MemberChecks.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace walk {

/// The type library of the module.
const ozm::TypeLibrary& library();

/// Its interface of that name; throws std::runtime_error.
const ozm::AutomationInterface& interfaceOf(std::string_view name);

/// Nothing is to be shown while a script drives the analysis.
struct Screen : korvana::FrontEnd {
    void runModal(ozm::CAnalysisModalDialog& /*dialog*/) override { ++shown; }
    int shown = 0;
};

/// One way through an analysis.
class Walk {
public:
    /// What happens in a dialog once its members are set; true ends the walk there.
    using Visit = std::function<bool(Walk&, ozm::AutomationObject&)>;

    /// Goes the way to its end, on data of its kind.
    Walk(const Way& way, Visit visit);
    ~Walk();
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    /// The dialogs that were seen, and all that the results say.
    [[nodiscard]] std::string outcome();
    /// Sets members, and pumps, as some lead to another form. False when one did.
    bool set(ozm::AutomationObject& dialog, const Settings& settings);

    std::vector<std::string> seen;

private:
    bool fill(const std::string& name, ozm::AutomationObject& dialog);
    void operate(ozm::AutomationObject& modal);

    const Way& way_;
    Visit visit_;
    Screen screen_;

public:
    korvana::Session session{
        korvana::loadAnalysis(korvana::findModules()),
        {.frontEnd = &screen_, .modalScript = [this](ozm::AutomationObject& modal) { operate(modal); }}};
};

/// The way of that name; throws std::runtime_error.
const Way& wayOf(std::string_view name);

} // namespace walk
