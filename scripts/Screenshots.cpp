// Pictures of the window and its dialogs, for the manual: desktop-screenshots FOLDER. They are drawn
// offscreen and in the font that comes with the program, so that they look the same on every machine.

#include "apps/desktop/data/OpenOptionsDialog.h"
#include "apps/desktop/data/SelectionDialog.h"
#include "apps/desktop/data/VariablesView.h"
#include "apps/desktop/data/WeightsDialog.h"
#include "apps/desktop/dialogs/DialogView.h"
#include "apps/desktop/results/Workbook.h"
#include "apps/desktop/window/AnalysisRunner.h"
#include "apps/desktop/window/MainWindow.h"
#include "host/charts/ChartFonts.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <iostream>
#include <memory>
#include <utility>

using namespace korvana;
using namespace korvana::desktop;

namespace {

QDir folder;

void take(QWidget& widget, const QString& name) {
    QTest::qWait(200); // charts follow their size after a while
    const QString file = folder.filePath(name + QStringLiteral(".png"));
    if (!widget.grab().save(file)) {
        std::cerr << "cannot write " << file.toStdString() << '\n';
        std::exit(1);
    }
    std::cout << file.toStdString() << '\n';
}

/// Gives the data so much of the window's width, and the results the rest.
void widenData(MainWindow& window, int width) {
    for (QSplitter* splitter : window.findChildren<QSplitter*>())
        if (splitter->isAncestorOf(&window.workbook()))
            splitter->setSizes({width, splitter->width() - width});
}

void press(MainWindow& window, int control) {
    window.runner().currentView()->dialog()->Press(control);
    window.runner().session().pump();
    QTest::qWait(50);
}

void put(MainWindow& window, int control, ozm::ControlValue value) {
    window.runner().currentView()->dialog()->PutValue(control, std::move(value));
}

/// A window in the state it starts with, showing a file of examples/data.
std::unique_ptr<MainWindow> windowOn(const QString& file) {
    auto window = std::make_unique<MainWindow>(loadAnalysis(findModules()), QString{},
                                               folder.filePath(QStringLiteral(".settings.ini")));
    window->resize(1360, 760); // whatever the screen
    window->show();
    if (!window->openFile(QStringLiteral(KORVANA_SOURCE_DIR "/examples/data/") + file)) std::exit(1);
    return window;
}

/// Opens the startup dialog with an analysis chosen, counted from 0.
void start(MainWindow& window, int analysis) {
    window.startAnalysis();
    put(window, 180, analysis);
}

void oneSample() {
    const auto window = windowOn(QStringLiteral("veteran.csv"));
    auto dialog = [&]() -> DialogView& { return *window->runner().currentView(); };
    start(*window, 1);
    take(dialog(), QStringLiteral("dialog-startup"));
    press(*window, 1);
    put(*window, 1001, ozm::VariableSelection{{3}, {4}});
    put(*window, 1002, 1.0);
    put(*window, 1003, 0.0);
    take(dialog(), QStringLiteral("dialog-specification"));
    press(*window, 1);
    take(dialog(), QStringLiteral("dialog-results"));
    press(*window, 1101);
    press(*window, 1103);
    take(*window, QStringLiteral("window"));
    auto* variables = window->findChild<VariablesView*>();
    for (QTabWidget* tabs : window->findChildren<QTabWidget*>())
        if (tabs->indexOf(variables) >= 0) tabs->setCurrentWidget(variables);
    window->resize(1800, 300); // all columns are seen
    widenData(*window, 920);
    QTest::qWait(300); // counts come while the program is idle
    take(*variables, QStringLiteral("window-variables"));

    window->runner().data().select("celltype = 'squamous' and age >= 60");
    SelectionDialog selection(window->runner().data(), window.get());
    selection.show();
    QTest::qWait(600);
    take(selection, QStringLiteral("dialog-select-cases"));
    WeightsDialog weights(window->runner().data(), window.get());
    weights.show();
    take(weights, QStringLiteral("dialog-case-weights"));
    OpenOptionsDialog options(QStringLiteral(KORVANA_SOURCE_DIR "/examples/data/veteran.csv"), {},
                              window.get());
    options.show();
    take(options, QStringLiteral("dialog-open-options"));
}

void twoSamples() {
    const auto window = windowOn(QStringLiteral("leukaemia-6mp.csv"));
    auto dialog = [&]() -> DialogView& { return *window->runner().currentView(); };
    start(*window, 2);
    press(*window, 1);
    put(*window, 1001, ozm::VariableSelection{{1}, {2}, {3}});
    put(*window, 1002, 1.0);
    put(*window, 1003, 0.0);
    put(*window, 1004, 1.0);
    put(*window, 1005, 2.0);
    take(dialog(), QStringLiteral("dialog-two-sample"));
    press(*window, 1);
    take(dialog(), QStringLiteral("dialog-two-sample-results"));
    for (const int output : {1121, 1125, 1129})
        press(*window, output);
    widenData(*window, 300);
    take(*window, QStringLiteral("window-two-sample"));
}

void lifeTable() {
    const auto window = windowOn(QStringLiteral("angina.csv"));
    auto dialog = [&]() -> DialogView& { return *window->runner().currentView(); };
    start(*window, 0);
    press(*window, 1);
    put(*window, 197, 2);
    window->runner().session().pump();
    put(*window, 1001, ozm::VariableSelection{{1}, {2}, {3}});
    take(dialog(), QStringLiteral("dialog-life-table"));
    press(*window, 1);
    dialog().showPage(1);
    take(dialog(), QStringLiteral("dialog-life-table-results"));
}

void regression() {
    const auto window = windowOn(QStringLiteral("veteran.csv"));
    auto dialog = [&]() -> DialogView& { return *window->runner().currentView(); };
    start(*window, 4);
    press(*window, 1);
    put(*window, 1001, ozm::VariableSelection{{3}, {4}, {5, 7, 8}, {1}});
    put(*window, 1002, 1.0);
    put(*window, 1003, 0.0);
    take(dialog(), QStringLiteral("dialog-regression"));
    QTimer::singleShot(300, [] { // the estimation's dialog is modal
        auto* asked = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (asked == nullptr) std::exit(1);
        take(*asked, QStringLiteral("dialog-regression-estimation"));
        for (QPushButton* button : asked->findChildren<QPushButton*>())
            if (button->isDefault()) button->click();
    });
    press(*window, 1);
    dialog().showPage(1);
    take(dialog(), QStringLiteral("dialog-regression-results"));
}

void timeDependent() {
    const auto window = windowOn(QStringLiteral("veteran.csv"));
    start(*window, 6);
    press(*window, 1);
    put(*window, 1001, ozm::VariableSelection{{3}, {4}, {}});
    put(*window, 1002, 1.0);
    put(*window, 1003, 0.0);
    put(*window, 1048, std::vector<std::string>{"karno", "karnoT"});
    put(*window, 1049, std::vector<std::string>{"karno", "karno * log(T_ + 20)"});
    put(*window, 1041, std::string{"late"});
    put(*window, 1042, std::string{"trt * (T_ > 90)"});
    window->runner().session().pump();
    window->runner().currentView()->resize(720, 790); // all of it is seen, whatever the screen
    take(*window->runner().currentView(), QStringLiteral("dialog-time-dependent"));
}

} // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QFont font = chartFont(12);
    font.setPointSizeF(9); // dialogs ask for the size in points
    QApplication::setFont(font);
    if (argc != 2) {
        std::cerr << "usage: desktop-screenshots FOLDER\n";
        return 2;
    }
    folder.setPath(QString::fromLocal8Bit(argv[1]));
    oneSample();
    twoSamples();
    lifeTable();
    regression();
    timeDependent();
    QFile::remove(folder.filePath(QStringLiteral(".settings.ini")));
    return 0;
}
