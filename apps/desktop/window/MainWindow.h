#pragma once

#include "apps/desktop/data/RecentFiles.h"
#include "apps/desktop/window/Leaving.h"
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
/// offers the analysis that it was given under the name that the analysis has.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// @param analysis      may be nullptr: the window then shows data, and `noAnalysis` says why there is
    /// nothing more
    /// @param settingsFile  where recent files are remembered; empty: with the user's settings
    explicit MainWindow(Analysis analysis, const QString& noAnalysis = {}, const QString& settingsFile = {});
    ~MainWindow() override;

    /// Opens a data file; what is wrong with it is shown, and the data before stay. False when it was not
    /// opened.
    bool openFile(const QString& path) { return openFileWith(path, {}); }
    bool openFileWith(const QString& path, const ReadOptions& options);
    /// Stops what runs and closes without asking: nobody may be there to answer.
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

private:
    void buildMenus(const QString& noAnalysis);
    void connectRunner();
    /// Views and titles after data, selection or weights changed.
    void showData();
    void showOutputs(const std::shared_ptr<ResultsBook>& book, bool changed);
    /// What a dialog stands over: the dialog of the analysis while that asks for it, else this window.
    QWidget* front();
    /// What opening other data or closing would lose.
    [[nodiscard]] DataEdits edits() const;
    /// Offers to open data where there are none; whether there are some now.
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
    QMenu* recentMenu_ = nullptr;
    QAction* startAction_ = nullptr;
    std::map<const ResultsBook*, int> runs_;
    bool labelsEdited_ = false;
    bool closeWhenFinished_ = false;
};

} // namespace korvana::desktop
