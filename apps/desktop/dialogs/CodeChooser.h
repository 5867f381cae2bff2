#pragma once

#include <QDialog>
#include <QStringList>

#include <vector>

class QListWidget;

namespace korvana::desktop {

/// Lets one choose any number of the codes of a variable: a box to check for each, and buttons for all and
/// none. The space bar checks all that are selected.
class CodeChooser : public QDialog {
public:
    /// @param texts  one for each code that is offered
    /// @param taken  those chosen so far; they may contain codes that are not offered, which stay
    CodeChooser(const QString& title, const std::vector<double>& codes, const QStringList& texts,
                const std::vector<double>& taken, int more, QWidget* parent);

    /// Those chosen before come first, in their order.
    [[nodiscard]] std::vector<double> chosen() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void check(bool on);
    [[nodiscard]] bool isChecked(std::size_t at) const;

    std::vector<double> codes_;
    std::vector<double> taken_;
    QListWidget* list_;
};

} // namespace korvana::desktop
