#pragma once

#include "apps/desktop/dialogs/FieldHost.h"
#include "support/dialogs/ControlValue.h"
#include "support/dialogs/DialogTemplate.h"

#include <QString>
#include <QWidget>

namespace korvana::desktop {

/// One control of a dialog on one of its pages. A control that several pages show has a field on each.
class ControlField : public QWidget {
public:
    ControlField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);

    [[nodiscard]] const ozm::ControlTemplate& control() const { return control_; }

    /// Shows the model's value in place of whatever was there.
    virtual void showValue(const ozm::ControlValue& value) = 0;
    /// Shows the entries of a list that the dialog sets.
    virtual void showEntries(const ozm::ListRows& /*rows*/) {}
    /// Whether something was typed that the model does not know yet.
    [[nodiscard]] virtual bool hasPendingEdit() const { return false; }
    /// Writes what was typed. False when it was refused; the reason is then shown.
    virtual bool commit() { return true; }
    /// Names, labels or codes may have changed.
    virtual void dataChanged() {}
    /// The variable whose codes the field offers (0: none), and what its box is called.
    virtual void offerCodesOf(int /*variable*/, const QString& /*prompt*/) {}
    /// Whether the layout writes the control's text to the left of the field.
    [[nodiscard]] virtual bool wantsCaption() const { return false; }
    /// Whether it makes use of more width, of more height.
    [[nodiscard]] virtual bool growsInWidth() const { return true; }
    [[nodiscard]] virtual bool growsInHeight() const { return false; }

protected:
    [[nodiscard]] FieldHost& host() const { return host_; }
    enum class Caption { Elsewhere, Above };
    /// Fills the field with a widget, below the control's text if that is its caption. The widget has the
    /// field's focus and accessible name.
    void fillWith(QWidget* editor, Caption caption = Caption::Elsewhere);
    /// Marks the field as right or wrong.
    bool settled();
    bool complain(const QString& reason);

private:
    const ozm::ControlTemplate& control_;
    FieldHost& host_;
};

/// A control's text with its accelerator, its icon taken away.
QString captionOf(const ozm::ControlTemplate& control);
/// The same without the accelerator mark, for screen readers.
QString plainCaptionOf(const ozm::ControlTemplate& control);
QString fromView(std::string_view text);

} // namespace korvana::desktop
