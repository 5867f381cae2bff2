#pragma once

#include <QList>
#include <QPointer>
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
/// The book of a run grows while its analysis runs. Outputs in it are never moved (`ResultsBook::outputs`)
/// and are shown without a copy. Everything is called in the window's thread.
class Workbook : public QWidget {
    Q_OBJECT

public:
    explicit Workbook(QWidget* parent = nullptr);
    ~Workbook() override;

    /// Appends a run with what its book holds so far; returns its number, from 0. A nullptr counts as an
    /// empty book.
    int addRun(std::shared_ptr<const ResultsBook> book, const QString& title);
    /// The book of a run has grown: by outputs, messages, notes or lines of its iteration protocol. What is
    /// new is listed, and the newest output is shown, except for tables that repeat a report. An unknown run
    /// is ignored.
    void outputAdded(int run);
    /// Existing outputs have changed (report lines, column headings, title): they are redrawn.
    void outputChanged(int run);
    /// Selects a run: its first output, or the run itself while it has none.
    void showRun(int run);
    /// Selects an output of a run by its place in the book; false when there is none.
    bool showOutput(int run, int place);
    /// What is removed stays removed even when its run continues: only later outputs are then listed. `undo`
    /// restores what was removed last.
    void removeRun(int run);
    void removeOutput(int run, int place);
    void undo();
    void clear();
    /// How many outputs were not exported since they were made or (charts) last edited.
    [[nodiscard]] int unsaved() const;
    /// Asks for a folder and exports the selected run or all runs (`all`: which is offered first). False when
    /// the user cancelled or something was not written.
    bool exportRuns(bool all = false);

    [[nodiscard]] bool isEmpty() const;
    [[nodiscard]] int runCount() const;      ///< without removed ones
    [[nodiscard]] int currentRun() const;    ///< -1 when none is selected
    [[nodiscard]] int currentOutput() const; ///< place in the book; -1 when none is selected
    [[nodiscard]] std::shared_ptr<const ResultsBook> book(int run) const; ///< nullptr when unknown

    /// Menu actions for the output that is shown: copy, export, print; those that do not apply are disabled.
    [[nodiscard]] QAction* copyAction() const;
    [[nodiscard]] QAction* exportOutputAction() const;
    [[nodiscard]] QAction* exportRunAction() const;
    [[nodiscard]] QAction* saveScriptAction() const;
    [[nodiscard]] QAction* printAction() const;
    [[nodiscard]] QAction* printPreviewAction() const;
    /// These and the other actions (remove, undo, ...), in menu order.
    [[nodiscard]] QList<QAction*> menuActions() const;

    /// Writes a run into a directory, its charts as the user has edited them. Returns how many files were
    /// written; `problems` gets a text for each that could not be written or drawn. If the user stops it,
    /// nothing is written.
    std::size_t writeRun(int run, const std::filesystem::path& directory, FormatSet formats,
                         QStringList& problems, bool* stopped = nullptr);

signals:
    /// A message about the results for the status line ("4 files were written to ...").
    void statusText(const QString& text);

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Shown {
        OutputView* view = nullptr; ///< nullptr until it is first shown
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
    /// Frees the results of removed runs, except runs that are not finished and the one given.
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
    /// Makes the keys of the view that is shown work, and no longer those of the one before.
    void offerKeysOf(OutputView* shown);
    void makeActions();
    [[nodiscard]] std::map<std::size_t, ChartEdits> editsOf(const Run& run) const;
    [[nodiscard]] std::unique_ptr<Chart> shownChart() const;

    void exportOutput();
    void saveScript();
    void printOutput();
    void previewOutput();
    void printOn(QPrinter& printer);
    void showProblem(const QString& text);

    std::map<int, Run> runs_;
    int next_ = 0;
    std::vector<Removal> removals_;
    QSplitter* splitter_;
    QTreeWidget* tree_;
    WrappedLabel* origin_; ///< above the output that is shown: how it was made
    QStackedWidget* pages_;
    QWidget* nothing_;
    QPointer<OutputView> keysOf_;
    QAction* copy_;
    QAction* exportOutput_;
    QAction* exportRun_;
    QAction* saveScript_;
    QAction* print_;
    QAction* preview_;
    QAction* removeOutput_;
    QAction* removeRun_;
    QAction* undo_;
    std::array<QAction*, 2> separators_{};
};

} // namespace korvana::desktop
