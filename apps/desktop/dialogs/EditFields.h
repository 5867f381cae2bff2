#pragma once

#include "apps/desktop/dialogs/ControlField.h"

class QButtonGroup;
class QCheckBox;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;

namespace korvana::desktop {

class ButtonField : public ControlField {
public:
    ButtonField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);
    void showValue(const ozm::ControlValue& /*value*/) override {}
    [[nodiscard]] QPushButton* button() const { return button_; }

private:
    QPushButton* button_;
};

class CheckField : public ControlField {
public:
    CheckField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);
    void showValue(const ozm::ControlValue& value) override;

private:
    QCheckBox* box_;
};

/// Choices one below the other; one without a text is left out.
class RadioField : public ControlField {
public:
    RadioField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);
    void showValue(const ozm::ControlValue& value) override;

private:
    QButtonGroup* group_;
};

class IntegerField : public ControlField {
public:
    IntegerField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);
    void showValue(const ozm::ControlValue& value) override;
    [[nodiscard]] bool hasPendingEdit() const override;
    bool commit() override;
    [[nodiscard]] bool wantsCaption() const override { return true; }
    [[nodiscard]] bool growsInWidth() const override { return false; }

private:
    QSpinBox* box_;
    int shown_ = 0;
};

/// Several texts, one per line. Blank lines are ignored.
class TextListField : public ControlField {
public:
    TextListField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);
    void showValue(const ozm::ControlValue& value) override;
    [[nodiscard]] bool hasPendingEdit() const override;
    bool commit() override;
    [[nodiscard]] bool growsInHeight() const override { return true; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPlainTextEdit* text_;
};

/// Text to read, in columns.
class SummaryField : public ControlField {
public:
    SummaryField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);
    void showValue(const ozm::ControlValue& value) override;
    [[nodiscard]] bool growsInHeight() const override { return true; }

private:
    QPlainTextEdit* text_;
};

} // namespace korvana::desktop
