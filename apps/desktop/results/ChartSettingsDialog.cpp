#include "apps/desktop/results/ChartSettingsDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>
#include <tuple>

#include "apps/desktop/text/ErrorLine.h"
#include "host/charts/AtRisk.h"
#include "host/results/FormatNumber.h"
#include "host/results/Utf8.h"

namespace korvana::desktop {
namespace {

QString text(const std::string& utf8) {
    return QString::fromStdString(shownLine(utf8));
}

QString number(double value) {
    return QString::fromStdString(formatNumber(value, ozm::CellFormat::general(8)));
}

/// A text only counts as changed when it differs from the analysis' own.
std::optional<std::string> changed(const QLineEdit& edit, const std::string& original) {
    if (edit.text() == text(original)) return std::nullopt;
    return edit.text().toStdString();
}

} // namespace

ChartSettingsDialog::ChartSettingsDialog(const ozm::CChartInfo& original, const ChartEdits& edits, Extent x,
                                         Extent y, Field field, QWidget* parent)
    : QDialog(parent), original_(original), edits_(edits), title_(new QLineEdit),
      problem_(new ErrorLine(this)) {
    setWindowTitle(tr("Titles and Ranges"));
    title_->setText(text(edits.title.value_or(original.title)));
    title_->setMinimumWidth(50 * fontMetrics().averageCharWidth());
    auto* column = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    form->addRow(tr("&Title:"), title_);
    column->addLayout(form);
    addAxis(axes_[0], tr("Horizontal Axis"), tr("horizontal axis"),
            edits.xTitle.value_or(original.xAxis.title), edits.x, x);
    addAxis(axes_[1], tr("Vertical Axis"), tr("vertical axis"), edits.yTitle.value_or(original.yAxis.title),
            edits.y, y);
    if (tellsNumbersAtRisk(original)) {
        atRisk_ = new QCheckBox(tr("&Numbers at risk under the horizontal axis"));
        atRisk_->setChecked(edits.numbersAtRisk.value_or(original.numbersAtRisk));
        column->addWidget(atRisk_);
    }
    column->addWidget(problem_);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel |
                                         QDialogButtonBox::RestoreDefaults);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this,
            &ChartSettingsDialog::restoreOriginal);

    QLineEdit* first = field == Field::Title ? title_ : axes_[field == Field::XAxis ? 0 : 1].title;
    first->setFocus();
    first->selectAll();
}

void ChartSettingsDialog::addAxis(Axis& axis, const QString& heading, const QString& name,
                                  const std::string& title, const std::optional<Extent>& chosen,
                                  Extent shown) {
    auto* group = new QGroupBox(heading);
    auto* form = new QFormLayout(group);
    axis.title = new QLineEdit(text(title));
    axis.title->setAccessibleName(tr("Title of the %1").arg(name));
    axis.automatic = new QCheckBox(tr("Range as drawn by the analysis"));
    axis.automatic->setChecked(!chosen.has_value());
    axis.automatic->setAccessibleName(tr("Range of the %1 as drawn by the analysis").arg(name));
    const Extent range = axis.offered = chosen.value_or(shown);
    axis.low = new QLineEdit(number(range.low));
    axis.high = new QLineEdit(number(range.high));
    axis.low->setAccessibleName(tr("The %1 begins at").arg(name));
    axis.high->setAccessibleName(tr("The %1 ends at").arg(name));
    auto* row = new QHBoxLayout;
    row->addWidget(axis.low);
    row->addWidget(new QLabel(tr("to")));
    row->addWidget(axis.high);
    form->addRow(tr("Title:"), axis.title);
    form->addRow(QString(), axis.automatic);
    form->addRow(tr("Range:"), row);
    const auto follow = [low = axis.low, high = axis.high](bool automatic) {
        low->setEnabled(!automatic);
        high->setEnabled(!automatic);
    };
    follow(axis.automatic->isChecked());
    connect(axis.automatic, &QCheckBox::toggled, this, follow);
    layout()->addWidget(group);
}

bool ChartSettingsDialog::takeRange(const Axis& axis, const QString& name, std::optional<Extent>& range) {
    range.reset();
    if (axis.automatic->isChecked()) return true;
    const auto refuse = [this](QLineEdit* edit, const QString& why) {
        problem_->tell(why);
        edit->setFocus();
        edit->selectAll();
        return false;
    };
    Extent wanted;
    for (const auto& [edit, value, offered] : {std::tuple{axis.low, &wanted.low, axis.offered.low},
                                               std::tuple{axis.high, &wanted.high, axis.offered.high}}) {
        bool good = false;
        *value = QLocale::c().toDouble(edit->text().trimmed(), &good);
        if (edit->text() == number(offered)) *value = offered; // unchanged
        if (!good || !isDrawable(*value))
            return refuse(edit,
                          tr("The range of the %1: '%2' is not a number that can be drawn. Write it with a "
                             "decimal point, for example 12.5.")
                              .arg(name, edit->text()));
    }
    // The ticks of an axis whose ends hardly differ could not be told apart.
    const double magnitude = std::max(std::fabs(wanted.low), std::fabs(wanted.high));
    if (!(wanted.span() > 1e-12 * magnitude))
        return refuse(axis.low,
                      tr("The range of the %1 goes from %2 to %3; the first number must be the smaller "
                         "one.")
                          .arg(name, axis.low->text(), axis.high->text()));
    range = wanted;
    return true;
}

void ChartSettingsDialog::restoreOriginal() {
    title_->setText(text(original_.title));
    axes_[0].title->setText(text(original_.xAxis.title));
    axes_[1].title->setText(text(original_.yAxis.title));
    for (const Axis& axis : axes_)
        axis.automatic->setChecked(true);
    if (atRisk_ != nullptr) atRisk_->setChecked(original_.numbersAtRisk);
}

void ChartSettingsDialog::accept() {
    ChartEdits wanted;
    if (!takeRange(axes_[0], tr("horizontal axis"), wanted.x)) return;
    if (!takeRange(axes_[1], tr("vertical axis"), wanted.y)) return;
    wanted.title = changed(*title_, original_.title);
    wanted.xTitle = changed(*axes_[0].title, original_.xAxis.title);
    wanted.yTitle = changed(*axes_[1].title, original_.yAxis.title);
    if (atRisk_ == nullptr)
        wanted.numbersAtRisk = edits_.numbersAtRisk;
    else if (atRisk_->isChecked() != original_.numbersAtRisk)
        wanted.numbersAtRisk = atRisk_->isChecked();
    edits_ = wanted;
    QDialog::accept();
}

} // namespace korvana::desktop
