#pragma once

#include "apps/desktop/data/RecentFiles.h"
#include "apps/desktop/window/Leaving.h"
#include "apps/desktop/window/StatusHint.h"
#include "host/data/ReadData.h"
#include "host/results/ResultsBook.h"
#include "host/session/ModuleLibrary.h"
#include "host/session/SessionServices.h"

#include <QMainWindow>
#include <QStringList>

#include <map>
#include <memory>

class QAction;
class QMenu;
class QStackedWidget;
class QTabWidget;

namespace korvana::desktop {

class ElidedLabel;
class AnalysisRunner;
class DataView;
class FocusRing;
class StartPage;
class VariablesView;
class Workbook;

/// The main window: data and variables at the left, the results workbook at the right, and the menus. It
/// offers the analysis it was given under the analysis' own name.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// @param analysis      may be nullptr: the window then only shows data, and `noAnalysis` says why
    /// @param settingsFile  where recent files and the like are remembered; empty: with the user's settings
    explicit MainWindow(Analysis analysis, const QString& noAnalysis = {}, const QString& settingsFile = {});
    ~MainWindow() override;

    /// Opens a data file. If it cannot be opened, the reason is shown, the previous data stay, and the answer
    /// is false.
    bool openFile(const QString& path) { return openFileWith(path, {}); }
    bool openFileWith(const QString& path, const ReadOptions& options);
    /// Stops any computation and closes without asking: there may be nobody to answer.
    void abandon();
    [[nodiscard]] AnalysisRunner& runner() { return *runner_; }
    [[nodiscard]] Workbook& workbook() { return *workbook_; }
    [[nodiscard]] DataView& dataView() { return *dataView_; }
    [[nodiscard]] const FocusRing& focusRing() const { return *ring_; }

    /// False when none was chosen, or it was not opened.
    bool askForFile();
    void askForFileAndOptions();
    void defineWeights();
    void defineSelection();
    void computeVariable();
    void startAnalysis();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void openDropped(const QStringList& paths);

private:
    void buildMenus(const QString& noAnalysis);
    void connectRunner();
    /// Updates views and titles after data, selection or weights have changed.
    void showData();
    void showOutputs(const std::shared_ptr<ResultsBook>& book, bool changed);
    /// The parent of a dialog: the dialog of the analysis if that asks for it, else this window.
    QWidget* front();
    /// What opening other data or closing would lose.
    [[nodiscard]] DataEdits edits() const;
    /// Offers to open data when there are none. True when there are data afterwards.
    bool openFirst();
    QString chooseFile();
    bool loadFile(const QString& path, ReadOptions options);
    void about();

    RecentFiles recent_;
    std::unique_ptr<AnalysisRunner> runner_;
    DataView* dataView_;
    VariablesView* variablesView_;
    QTabWidget* dataTabs_;
    StartPage* startPage_;
    QStackedWidget* left_; ///< start page or data
    Workbook* workbook_;
    FocusRing* ring_;
    ElidedLabel* state_; ///< selected cases and weights, in the status line
    StatusHint hint_{*statusBar()};
    QMenu* recentMenu_ = nullptr;
    QAction* startAction_ = nullptr;
    std::map<const ResultsBook*, int> runs_;
    bool labelsEdited_ = false;
    bool closeWhenFinished_ = false;
};

} // namespace korvana::desktop
