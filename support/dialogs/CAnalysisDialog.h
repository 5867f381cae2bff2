#pragma once

#include "support/CAnalysisSupport.h"
#include "support/Export.h"
#include "support/automation/TypeLibrary.h"
#include "support/dialogs/ControlValue.h"
#include "support/dialogs/DialogTemplate.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ozm {

class CAnalysisDialog;

/// Follows a dialog: a front end that draws it, or a recorder.
class DialogObserver {
public:
    virtual ~DialogObserver() = default;
    /// A control's value changed, by whatever means.
    virtual void ControlChanged(CAnalysisDialog& /*dialog*/, int /*control*/) {}
    /// A list has other entries.
    virtual void EntriesChanged(CAnalysisDialog& /*dialog*/, int /*control*/) {}
    /// A control was enabled or disabled.
    virtual void ControlEnabled(CAnalysisDialog& /*dialog*/, int /*control*/) {}
    /// A button's action begins, and has ended. `succeeded` as in `DialogResult`.
    virtual void CommandBegins(CAnalysisDialog& /*dialog*/, int /*control*/) {}
    virtual void CommandEnded(CAnalysisDialog& /*dialog*/, int /*control*/, bool /*succeeded*/) {}
    virtual void DialogClosed(CAnalysisDialog& /*dialog*/) {}
};

/// The outcome of an operation on a dialog: done, or refused for a reason that can be shown.
struct DialogResult {
    bool done = true;
    std::string reason{};
    /// For a button: whether its action succeeded (an output was made, a specification was accepted).
    bool succeeded = true;
    static DialogResult refused(std::string why) { return {false, std::move(why), false}; }
};

/// A dialog as a model: it owns the controls of its template and reacts to what is done to them; how it looks
/// is up to the front end. Derived dialogs react in `OnOpen`, `OnCommand` and `OnValueChanged`; an exception
/// that they throw is caught here, becomes a `DialogResult` and a message, and never reaches the host.
class KORVANA_SUPPORT CAnalysisDialog {
public:
    CAnalysisDialog(CAnalysisSupport& analysis, const DialogTemplate& dialogTemplate);
    virtual ~CAnalysisDialog();
    CAnalysisDialog(const CAnalysisDialog&) = delete;
    CAnalysisDialog& operator=(const CAnalysisDialog&) = delete;

    [[nodiscard]] const DialogTemplate& Template() const { return template_; }
    [[nodiscard]] CAnalysisSupport& Analysis() const { return analysis_; }
    /// The automation interface that describes the dialog to scripts.
    [[nodiscard]] const AutomationInterface* Interface() const { return interface_; }
    /// The dialog class's name, as shown in error texts and by recorders.
    [[nodiscard]] std::string_view ClassName() const;

    /// Opens the dialog: `OnOpen` runs, once.
    DialogResult Open();
    [[nodiscard]] bool IsOpen() const { return open_; }
    [[nodiscard]] bool IsClosed() const { return closed_; }
    /// Whether it closed to go on to the next step of the analysis (its OK was accepted).
    [[nodiscard]] bool ClosedForward() const { return forward_; }

    /// Throws std::logic_error when the dialog was closed: a script may still hold it.
    void ThrowIfClosed() const;

    /// Presses a button, or performs a list's selected entry (a double-click). Refused for anything else, and
    /// for a button that is disabled.
    DialogResult Press(int control);

    /// Sets the value of any control. A value that does not fit the control (wrong type, no such position, no
    /// such variable in the data, more variables than a box holds, a number out of range) is refused and
    /// changes nothing. A disabled control takes values, so that scripts may set a dialog's values in any
    /// order.
    DialogResult PutValue(int control, ControlValue value);
    /// Whether `PutValue` would take the value, with the reason if not.
    DialogResult Fits(const ControlTemplate& control, const ControlValue& value) const;
    /// The most decimals that a control shows a number with: set by the template, or by the dialog from the
    /// number.
    [[nodiscard]] virtual int Decimals(const ControlTemplate& control, double /*number*/) const {
        return control.decimals;
    }
    /// The value of a control; monostate for a button or an unknown control.
    [[nodiscard]] const ControlValue& Value(int control) const;

    /// The entries of a list with columns, which the dialog sets; empty for any other control.
    [[nodiscard]] const ListRows& EntriesOf(int control) const;

    /// Whether a control can be used; the dialog decides.
    [[nodiscard]] bool IsEnabled(int control) const { return disabled_.count(control) == 0; }

    /// Other data were opened: the dialog shows what is left of its selections, or closes.
    DialogResult DataChanged();

    /// What a dialog gives to scripts apart from its controls' values, by the name of the member.
    [[nodiscard]] std::string Setting(std::string_view name) const;

    void AddObserver(DialogObserver& observer);
    void RemoveObserver(DialogObserver& observer);

protected:
    virtual void OnOpen() {}
    /// Somebody presses a button or changes a value: comes before `OnCommand` and `OnValueChanged`.
    virtual void OnUse() {}
    /// Performs a button's action. Returns whether it succeeded; if not, the user has seen why.
    virtual bool OnCommand(int /*control*/) { return true; }
    virtual void OnValueChanged(int /*control*/) {}
    virtual void OnDataChanged() {}
    /// The number in the string table of the message for running out of memory in this dialog; 0: none.
    [[nodiscard]] virtual int NotEnoughMemoryString() const { return 0; }

    void AttachAutomation(const AutomationInterface& automation) { interface_ = &automation; }

    /// Enables or disables a control and the buttons that repeat it; observers are notified.
    void Enable(int control, bool enabled);
    /// Checks that the number of a control, which the dialog is about to use, lies in its range. If not,
    /// shows the range's message, puts the range's `resetTo` in its place and returns false.
    bool RangeHolds(int control);
    void PutSetting(std::string_view name, std::string value);

    /// Sets a control without checking the value and without `OnValueChanged`; observers are notified.
    void SetValue(int control, ControlValue value);
    /// Sets the entries of a list with columns; observers are notified. Every row gets as many texts as there
    /// are columns. Where the selected entry is no longer there, none is selected, without `OnValueChanged`.
    void SetEntries(int control, ListRows rows);
    template <class T>
    const T& ValueAs(int control) const {
        return std::get<T>(Value(control));
    }

    /// Closes the dialog and names the step that follows (0: none).
    void ExitDialog(int nextStep, ExitMode mode, int page = 0);

    /// For dialogs that are closed without naming a step (a modal one).
    void MarkClosed();

private:
    template <class Event>
    void Tell(const Event& event);
    template <class Action>
    DialogResult
    Guarded(const Action& action); // not std::function, which may allocate when memory has run out
    void TellNoMemory() noexcept;
    DialogResult PositionFits(const ControlTemplate& control, int position) const;
    /// Whether the dialog is open and has the control, with the reason if not.
    DialogResult Usable(int control, std::string_view kind) const;
    std::string TextOf(int string, double number) const;

    CAnalysisSupport& analysis_;
    const DialogTemplate& template_;
    const AutomationInterface* interface_ = nullptr;
    std::map<int, ControlValue> values_;
    std::map<int, ListRows> entries_;
    std::set<int> disabled_;
    std::map<std::string, std::string, std::less<>> settings_;
    std::vector<DialogObserver*> observers_;
    bool open_ = false;
    bool closed_ = false;
    bool forward_ = false;
};

} // namespace ozm
