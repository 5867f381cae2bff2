#pragma once

#include <QDialog>

#include <span>
#include <string>
#include <vector>

class QTableWidget;

namespace korvana::desktop {

class ErrorLine;

/// A table of names with a value for each: those that an estimation starts from, for example. Enter and Tab
/// go on to the next row; several numbers can be pasted at once.
class NamedValuesDialog : public QDialog {
    Q_OBJECT

public:
    NamedValuesDialog(std::span<const std::string> names, std::span<const double> values,
                      QWidget* parent = nullptr);

    /// The values in the table, one per name.
    [[nodiscard]] const std::vector<double>& values() const { return values_; }
    /// Closes only when all of them are numbers; else says which is not.
    void accept() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void paste();
    void fillWithZeros();

    std::vector<double> values_;
    QTableWidget* table_;
    ErrorLine* reason_;
};

} // namespace korvana::desktop
