#pragma once

#include <QList>
#include <QWidget>
#include <array>
#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <vector>

#include "apps/desktop/results/ChartEdits.h"
#include "host/results/ResultsBook.h"
#include "host/results/WriteBook.h"

class QAction;
class QPrinter;
class QSplitter;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace korvana::desktop {

class WrappedLabel;
class ExportDialog;
struct FilesAtStake;
class OutputView;
class ReportView;

/// The results of every run: a tree of runs and their outputs at the left, the chosen output at the right.
///
/// A run's book is alive: it grows while its analysis runs. Outputs that stand in it are never moved
/// (`ResultsBook::outputs`) and are shown without a copy. Everything is called in the window's thread.
class Workbook : public QWidget {
    Q_OBJECT

public:
    explicit Workbook(QWidget* parent = nullptr);
    ~Workbook() override;

    /// Appends a run and what its book holds so far; answers its number, which counts from 0. A book that is
    /// nullptr is taken for an empty one.
    int addRun(std::shared_ptr<const ResultsBook> book, const QString& title);
    /// The book of a run has grown: by outputs, messages, notes or lines of its iteration protocol. What is
    /// new is listed, and the newest output is shown, except for tables that repeat a report. An unknown run
    /// is ignored.
    void outputAdded(int run);
    /// Outputs that stood already have changed (report lines, column headings, title): they are drawn anew.
    void outputChanged(int run);
    /// Chooses a run: its first output, or the run itself while it has none.
    void showRun(int run);
    /// Chooses an output of a run by its place in the book; false when there is none such.
    bool showOutput(int run, int place);
    /// What is removed stays removed, also when its run goes on: only what comes later is then listed. `undo`
    /// brings back what was removed last.
    void removeRun(int run);
    void removeOutput(int run, int place);
    void undo();
    void clear();
    /// How many outputs were not exported since they came or, charts, were edited.
    [[nodiscard]] int unsaved() const;
    /// Asks where to, and exports the run that is chosen or (to begin with) all runs. False when the user
    /// does not want to, or something was not written.
    bool exportRuns(bool all = false);

    [[nodiscard]] bool isEmpty() const;
    [[nodiscard]] int runCount() const;      ///< runs that stand
    [[nodiscard]] int currentRun() const;    ///< -1 when none is chosen
    [[nodiscard]] int currentOutput() const; ///< place in the book; -1 when none is chosen
    [[nodiscard]] std::shared_ptr<const ResultsBook> book(int run) const; ///< nullptr when unknown

    /// What a menu offers for the output that is shown: copy, export, print; some are disabled as fits.
    [[nodiscard]] QAction* copyAction() const;
    [[nodiscard]] QAction* exportOutputAction() const;
    [[nodiscard]] QAction* exportRunAction() const;
    [[nodiscard]] QAction* printAction() const;
    [[nodiscard]] QAction* printPreviewAction() const;
    /// All of them and what else there is (remove, undo, ...), in the order of a menu.
    [[nodiscard]] QList<QAction*> menuActions() const;

    /// Writes a run into a directory, its charts as the user has edited them. Answers how many files were
    /// written; what cannot be written or drawn is put into `problems`, one text each. The user may stop it:
    /// nothing is then written.
    std::size_t writeRun(int run, const std::filesystem::path& directory, FormatSet formats,
                         QStringList& problems, bool* stopped = nullptr);

signals:
    /// Something about the results to be said in the status line ("4 files were written to ...").
    void statusText(const QString& text);

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Shown {
        OutputView* view = nullptr; ///< nullptr until looked at
        bool removed = false;
        bool exported = false;
        ChartEdits exportedAs;
    };
    struct Run {
        std::shared_ptr<const ResultsBook> book;
        QString title;
        QTreeWidgetItem* item = nullptr;
        ReportView* overview = nullptr;
        std::vector<Shown> outputs; ///< by place in the book
        bool removed = false;
    };
    struct Removal {
        int run;
        std::vector<std::size_t> places;
        bool whole; ///< and the run itself
    };

    [[nodiscard]] Run* runOf(int run);
    [[nodiscard]] const Run* runOf(int run) const;
    [[nodiscard]] OutputView* currentView() const;
    OutputView* view(Run& run, int place);
    void adopt(OutputView* view);
    void listOutputs(Run& run);
    [[nodiscard]] static QTreeWidgetItem* itemOf(const Run& run, int place);
    /// Lets go of the results of removed runs; not of those that go on, nor of the one given.
    void forgetRemovedRuns(int but);
    static void markExported(Run& run, std::size_t place);
    static void markExported(Run& run, const FormatSet& formats);
    [[nodiscard]] static ChartEdits editsOf(const Run& run, std::size_t place);
    [[nodiscard]] static std::vector<std::size_t> removedOf(const Run& run);
    [[nodiscard]] FilesAtStake filesAtStake(const ExportDialog& dialog) const;
    [[nodiscard]] static std::filesystem::path folderOf(const std::filesystem::path& directory,
                                                        std::size_t number);
    void showCurrent();
    void setIcons();
    void showMenu(const QPoint& place);
    void makeActions();
    [[nodiscard]] std::map<std::size_t, ChartEdits> editsOf(const Run& run) const;
    [[nodiscard]] std::unique_ptr<Chart> shownChart() const;

    void exportOutput();
    void printOutput();
    void previewOutput();
    void printOn(QPrinter& printer);
    void showProblem(const QString& text);

    std::map<int, Run> runs_;
    int next_ = 0;
    std::vector<Removal> removals_;
    QSplitter* splitter_;
    QTreeWidget* tree_;
    WrappedLabel* origin_; ///< above the output that is shown: what it came from
    QStackedWidget* pages_;
    QWidget* nothing_;
    QAction* copy_;
    QAction* exportOutput_;
    QAction* exportRun_;
    QAction* print_;
    QAction* preview_;
    QAction* removeOutput_;
    QAction* removeRun_;
    QAction* undo_;
    std::array<QAction*, 2> separators_{};
};

} // namespace korvana::desktop
