#pragma once

#include "host/session/Session.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace korvana::cli {

/// A call that a dialog refused; what() says why.
class ScriptError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Sets a property of a dialog. Throws ScriptError when the dialog refuses it.
void put(ozm::AutomationObject& dialog, const std::string& member, const ozm::AutomationValue& value);

/// Drives a session through its dialogs' automation objects. Every call throws ScriptError when the dialog
/// refuses it, or when none is open.
class Script {
public:
    explicit Script(Session& session) : session_(session) {}

    /// Sets a property and follows the analysis where that leads to another dialog.
    void put(const std::string& member, const ozm::AutomationValue& value);
    [[nodiscard]] ozm::AutomationValue get(const std::string& member) const;
    /// Performs an action and follows the analysis to its next dialog. Returns whether the action succeeded
    /// (an output was made, a specification was accepted).
    bool press(const std::string& action);
    /// Performs an action that asks for a file, which is the one named.
    bool pressWithFile(const std::string& action, const std::string& path);
    /// What the analysis said so far.
    [[nodiscard]] const std::vector<ResultMessage>& messages() const { return session_.book().messages; }
    [[nodiscard]] const DataSet& data() const { return session_.data().dataSet(); }
    [[nodiscard]] bool isAt(const std::string& interfaceName) const {
        return session_.currentInterface() == interfaceName;
    }

private:
    ozm::AutomationObject dialog() const;
    Session& session_;
};

} // namespace korvana::cli
