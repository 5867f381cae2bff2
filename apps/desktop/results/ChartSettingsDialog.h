#pragma once

#include <QDialog>
#include <array>

#include "apps/desktop/results/ChartEdits.h"

class QCheckBox;
class QLineEdit;

namespace korvana::desktop {

class ErrorLine;

/// Title, axis titles and ranges of a chart, and whether numbers at risk stand under it.
class ChartSettingsDialog : public QDialog {
    Q_OBJECT

public:
    enum class Field { Title, XAxis, YAxis };

    /// `x` and `y` are the ranges on the screen, offered where the user has set none.
    ChartSettingsDialog(const ozm::CChartInfo& original, const ChartEdits& edits, Extent x, Extent y,
                        Field field, QWidget* parent = nullptr);

    /// To be called after acceptance. Only what differs from the analysis' chart counts as a change.
    [[nodiscard]] const ChartEdits& edits() const { return edits_; }

    void accept() override;

private:
    struct Axis {
        QLineEdit* title = nullptr;
        QCheckBox* automatic = nullptr;
        QLineEdit* low = nullptr;
        QLineEdit* high = nullptr;
        Extent offered{}; ///< which the texts of both show with fewer digits
    };

    void addAxis(Axis& axis, const QString& heading, const QString& name, const std::string& title,
                 const std::optional<Extent>& chosen, Extent shown);
    /// False, with the focus on the field and the reason shown, when the numbers are not a valid range.
    bool takeRange(const Axis& axis, const QString& name, std::optional<Extent>& range);
    void restoreOriginal();

    const ozm::CChartInfo& original_;
    ChartEdits edits_;
    QLineEdit* title_;
    std::array<Axis, 2> axes_;
    QCheckBox* atRisk_ = nullptr;
    ErrorLine* problem_;
};

} // namespace korvana::desktop
