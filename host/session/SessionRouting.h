#pragma once

#include "host/session/RoutedSheet.h"
#include "host/session/SessionParts.h"
#include "support/services/ResultsRouting.h"

#include <map>
#include <string>
#include <vector>

namespace korvana {

/// Saves the outputs of scripts' actions in a file besides, as the members `Results...` of the dialog say.
/// The book always has all outputs whole; the members are about the file alone. It holds the outputs of the
/// dialog's actions since the file was named, and is written anew after each.
class SessionRouting final : public ozm::ResultsRouting {
public:
    explicit SessionRouting(SessionParts& parts) : parts_(parts) {}

    ozm::AutomationValue Get(const ozm::CAnalysisDialog& dialog, std::string_view member) override;
    void Put(const ozm::CAnalysisDialog& dialog, std::string_view member,
             const ozm::AutomationValue& value) override;
    void Route(const ozm::CAnalysisDialog& dialog, std::string_view action) override;

    /// The dialog is about to be destroyed.
    void forget(const ozm::CAnalysisDialog& dialog) { routes_.erase(&dialog); }
    void forgetAll() { routes_.clear(); }

private:
    /// Of one dialog.
    struct DialogRoute {
        std::vector<std::string> actions;
        bool allButThese = false;
        bool toFile = true;
        std::string file;
        SheetPart part;
        ResultsBook saved; ///< what the file holds

        [[nodiscard]] bool takes(std::string_view action) const;
    };

    SessionParts& parts_;
    std::map<const ozm::CAnalysisDialog*, DialogRoute> routes_;
};

} // namespace korvana
