// What a dialog says about its entries: all of it is seen, over no field, at every size of the dialog.

#include "apps/desktop/data/ValueLabelsDialog.h"
#include "apps/desktop/results/ChartSettingsDialog.h"
#include "apps/desktop/results/ExportDialog.h"
#include "apps/desktop/window/NamedValuesDialog.h"
#include "tests/apps/desktop/Modals.h"

namespace korvana::desktop {
namespace {

/// The places of a layout's widgets and inner layouts that are seen, one below the other.
std::vector<QRect> placesIn(const QLayout& column) {
    std::vector<QRect> places;
    for (int i = 0; i < column.count(); ++i)
        if (QLayoutItem* item = column.itemAt(i); !item->isEmpty())
            places.push_back(item->widget() != nullptr ? item->widget()->geometry() : item->geometry());
    return places;
}

bool hasItsPlace(const QDialog& dialog) {
    const auto* error = dialog.findChild<QLabel*>("error");
    if (!error->isVisible() || error->height() < error->heightForWidth(error->width())) return false;
    int end = 0;
    for (const QRect& place : placesIn(*dialog.layout())) {
        if (place.top() < end) return false;
        end = place.bottom() + 1;
    }
    return end <= dialog.height();
}

/// Presses OK in the dialog as it opens, with what was entered, and then makes it as narrow and low as it
/// goes, wide, and narrow again.
void expectPlaceAtEverySize(QDialog& dialog, const std::string& what) {
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    dialog.accept();
    ASSERT_TRUE(dialog.isVisible()) << what;
    EXPECT_TRUE(QTest::qWaitFor([&] { return hasItsPlace(dialog); }, 2000)) << what << ", as it opens";
    for (const int width : {0, 400, 1200, 0}) {
        dialog.resize(width, 0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return hasItsPlace(dialog); }, 2000)) << what << ", " << width;
    }
}

const std::vector<QString> entries{"abc", "a value in many words " + QString("and more ").repeated(20),
                                   QString(300, 'x')};

TEST(ErrorLine, HasItsPlaceInTheTableOfValues) {
    for (const std::size_t rows : {1U, 4U, 30U})
        for (const QString& entry : entries) {
            const std::vector<std::string> names(rows, "a covariate with a name");
            NamedValuesDialog dialog(names, std::vector<double>(rows));
            dialog.findChild<QTableWidget*>()->item(0, 0)->setText(entry);
            expectPlaceAtEverySize(dialog, std::to_string(rows) + " rows, " + entry.left(9).toStdString());
        }
}

TEST(ErrorLine, HasItsPlaceInOtherDialogs) {
    for (const QString& entry : entries) {
        const std::string what = entry.left(9).toStdString();
        Variable variable;
        variable.name = "x";
        variable.valueLabels = {{1, "one"}};
        ValueLabelsDialog labels(variable, nullptr);
        labels.findChild<QTableWidget*>()->item(0, 0)->setText(entry);
        expectPlaceAtEverySize(labels, "value labels, " + what);

        const ozm::CChartInfo chart;
        ChartSettingsDialog settings(chart, {}, {0, 9}, {0, 1}, ChartSettingsDialog::Field::Title);
        for (auto* automatic : settings.findChildren<QCheckBox*>())
            automatic->setChecked(false);
        for (auto* line : settings.findChildren<QLineEdit*>())
            line->setText(entry);
        expectPlaceAtEverySize(settings, "titles and ranges, " + what);
    }
    ExportDialog exporting("Run", 2);
    for (auto* format : exporting.findChildren<QCheckBox*>())
        format->setChecked(false);
    expectPlaceAtEverySize(exporting, "export");
}

} // namespace
} // namespace korvana::desktop
