#pragma once
// A host in memory: a data set of columns, and all output of a module kept for the test to check. The n-th
// memory request and the n-th stop question can be made to fail.

#include "module/frame/CSurvival.h"
#include "support/automation/AutomationObject.h"
#include "support/dialogs/CAnalysisModalDialog.h"
#include "support/services/NullServices.h"
#include "tests/module/HostParts.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace ozm::test {

inline constexpr double none = std::numeric_limits<double>::quiet_NaN();

struct Column {
    std::string name;
    std::vector<double> values;
    double missingCode = none;
    std::map<double, std::string> labels{};
    bool texts = false;
};

struct Shown {
    int id;
    std::string text;
    std::string detail;
};

struct Sheet {
    std::string title;
    std::vector<std::string> notes;
    std::vector<std::string> rowHeadings;
    std::vector<std::pair<std::string, std::string>> headings;
    std::vector<std::string> ids;                ///< per column
    std::vector<std::vector<double>> numbers;    ///< per column; empty for texts
    std::vector<std::vector<std::string>> texts; ///< per column; empty for numbers
};

class FakeHost final : public CAnalysisDoc,
                       public NullHost,
                       public NullData,
                       public NullVariables,
                       public NullReport,
                       public NullSheets,
                       public NullCharts,
                       public NullProgress,
                       public NullMessages,
                       public NullMemory,
                       public HostFiles,
                       public NullDialogs,
                       public CIterDisplay {
public:
    // Data
    std::vector<Column> columns;
    std::vector<bool> selected; ///< empty: all
    int weight = 0;
    int unreadableFrom = std::numeric_limits<int>::max();
    int throwsFrom = std::numeric_limits<int>::max(); ///< reading that case throws
    std::vector<std::string> caseNames;

    // What came out
    std::vector<Shown> messages;
    std::vector<std::string> notes;
    std::vector<std::string> statusTexts;
    std::vector<Sheet> sheets;
    std::vector<CChartInfo> charts;
    std::string report;
    std::vector<std::string> iterations;

    // Faults
    int refuseRequest = 0;                           ///< the n-th memory request is refused; 0: none
    const std::atomic<unsigned>* stopWord = nullptr; ///< where a test has one
    int stopAt = 0;                                  ///< stops at the n-th stop test, and at all after it
    bool failCharts = false;
    bool failSheets = false;
    int requests = 0;
    int questions = 0;
    int outstanding = 0;
    int mostWithCopies = 0; ///< the most that were outstanding while a column was copied already
    int progressShown = 0;
    unsigned unitsLeft = 0;
    bool beyondUnits = false; ///< more progress was told than had been announced

    // Dialogs
    std::vector<std::unique_ptr<CAnalysisModelessDialog>> dialogs;
    int nextStep = -1;
    ExitMode exitMode = ExitMode::End;
    bool opensData = false;
    bool menus = true;
    bool refuseDialogs = false;
    std::vector<std::string> asked;
    std::function<void()> whenShown; ///< called while a message box stands
    bool automation = true;
    std::function<void(CAnalysisModalDialog&)> operateModal; ///< what is done with a modal dialog
    std::vector<int> modal;                                  ///< the numbers of those that were shown
    int yes = 0; ///< so many questions are answered with Yes, the others with No
    std::vector<int> questionsAsked;
    std::vector<double> offeredStart; ///< what the dialog of start values was opened with
    std::vector<double> startValues;  ///< what the dialog of start values is left with; empty: cancelled
    HostFormulas formulas{[this] {
        std::vector<std::string> names;
        for (const Column& column : columns)
            names.push_back(column.name);
        return names;
    }};

    /// Runs steps from one on until a dialog owns the step or the sequence ends; returns the step reached.
    int Go(CAnalysisSupport& analysis, int step) {
        for (int guard = 0; guard < 50; ++guard) {
            const auto table = analysis.SequenceTable();
            const auto row = std::find_if(table.begin(), table.end(),
                                          [step](const SEQFUNCTTBL& r) { return r.step == step; });
            if (row == table.end()) return 0;
            const int answer = row->function(analysis);
            if (answer == -1) return step;
            if (answer == 0) return 0;
            const bool isStep = std::any_of(table.begin(), table.end(),
                                            [answer](const SEQFUNCTTBL& r) { return r.step == answer; });
            step = isStep ? answer : row->followsByDefault;
        }
        return -2;
    }
    /// Report and sheets in one text.
    [[nodiscard]] std::string Output() const {
        std::string all = report;
        for (const Sheet& sheet : sheets) {
            all += sheet.title;
            for (const std::string& note : sheet.notes)
                all += note;
            for (const std::vector<double>& column : sheet.numbers)
                for (const double each : column)
                    all += std::to_string(each);
            for (const std::vector<std::string>& column : sheet.texts)
                for (const std::string& each : column)
                    all += each;
        }
        return all;
    }
    CAnalysisModelessDialog& Dialog() { return *dialogs.back(); }
    AutomationObject Script() { return AutomationObject{*dialogs.back()}; }
    /// Presses a button and goes on to the step that the dialog names.
    int Press(CAnalysisSupport& analysis, int control) {
        nextStep = -1;
        Dialog().Press(control);
        return nextStep > 0 ? Go(analysis, nextStep) : nextStep;
    }

    HostServices& Services() override { return *this; }
    DataService& Data() override { return *this; }
    VariableService& Variables() override { return *this; }
    ReportService& Report() override { return *this; }
    SheetService& Sheets() override { return *this; }
    ChartService& Charts() override { return *this; }
    ProgressService& Progress() override { return *this; }
    MessageService& Messages() override { return *this; }
    MemoryService& Memory() override { return *this; }
    DialogService& Dialogs() override { return *this; }
    FileService& Files() override { return *this; }
    ExpressionService& Expressions() override { return formulas; }
    CIterDisplay& Iterations() override { return *this; }
    void AddText(std::string_view line) override { iterations.emplace_back(line); }
    bool WasCanceled() override { return false; }
    int DisplayInstQuestion(ModuleHandle, CAnalysisDialog*, int id) override {
        questionsAsked.push_back(id);
        return yes-- > 0 ? ButtonYes : ButtonNo;
    }
    bool GetStartValues(std::span<const std::string> names, std::span<double> values) override {
        offeredStart.assign(values.begin(), values.end());
        if (startValues.size() != names.size()) return false;
        std::ranges::copy(startValues, values.begin());
        return true;
    }
    int RunModal(CAnalysisModalDialog& dialog) override {
        modal.push_back(dialog.Template().number);
        dialog.Open();
        if (operateModal) operateModal(dialog);
        if (automation && !dialog.IsClosed()) dialog.Press(ControlOk);
        return dialog.IsClosed() ? dialog.Result() : -1;
    }

    short cstart(int caseNumber, std::span<double> values, std::span<const int> variables) override {
        if (caseNumber >= throwsFrom) throw std::runtime_error("the file is gone");
        if (caseNumber > ss_nb() || caseNumber >= unreadableFrom) return StopReading;
        const auto n = static_cast<std::size_t>(caseNumber - 1);
        if (!selected.empty() && !selected[n]) return SkipCase;
        for (std::size_t k = 0; k < variables.size(); ++k)
            values[k] =
                variables[k] == 0 ? none : columns[static_cast<std::size_t>(variables[k] - 1)].values[n];
        return UseCase;
    }
    int ss_nb() override { return columns.empty() ? 0 : static_cast<int>(columns.front().values.size()); }
    short getmd5(int variable, double& code) override {
        code = variable > 0 ? columns[static_cast<std::size_t>(variable - 1)].missingCode : none;
        return variable > 0 ? 0 : 1;
    }
    int WeightVariable() override { return weight; }
    std::string CaseName(int n) override {
        return caseNames.empty() ? std::string{} : caseNames[static_cast<std::size_t>(n - 1)];
    }
    std::string FileName() override { return "trial.csv"; }
    int NumberOfVariables() override { return static_cast<int>(columns.size()); }
    bool HoldsTexts(int variable) override { return columns[static_cast<std::size_t>(variable) - 1].texts; }
    short getvn5(int variable, std::string& name) override {
        name = variable > 0 ? columns[static_cast<std::size_t>(variable - 1)].name : "";
        return variable > 0 ? 0 : 1;
    }
    int FindVariable(std::string_view name) override {
        for (std::size_t i = 0; i < columns.size(); ++i)
            if (columns[i].name == name) return static_cast<int>(i) + 1;
        return 0;
    }
    int vvlcod8(int variable, LabelLookup mode, std::string& text, double& value) override {
        for (const auto& [code, label] : columns[static_cast<std::size_t>(variable - 1)].labels) {
            if (mode == LabelLookup::CodeOfText ? label != text : code != value) continue;
            text = label;
            value = code;
            return 1;
        }
        return 0;
    }
    int ReadDataToGetDefaultCodes(int variable, const DefaultCodeOptions& options,
                                  std::vector<CodeCount>& codes) override {
        std::map<double, int> counts;
        const std::vector<double>& values = columns[static_cast<std::size_t>(variable - 1)].values;
        for (std::size_t i = 0; i < values.size(); ++i)
            if ((selected.empty() || selected[i]) && values[i] >= options.least &&
                values[i] <= options.greatest)
                ++counts[values[i]];
        codes.clear();
        for (const auto& [code, count] : counts)
            if (std::ssize(codes) < options.most) codes.push_back({code, {}, count});
        return static_cast<int>(counts.size());
    }

    void writst(int length, std::string_view text) override {
        report += text.substr(0, static_cast<std::size_t>(length));
    }
    void writch(char c) override { report += c; }
    void newline(int count) override { report.append(static_cast<std::size_t>(count), '\n'); }

    short table4(const SheetSpec& sheet) override { return looka4(sheet); }
    short looka4(const SheetSpec& spec) override {
        if (failSheets) return 1;
        Sheet sheet{spec.title, spec.notes, spec.rowHeadings, {}, {}, {}, {}};
        sheet.notes.insert(sheet.notes.end(), spec.footnotes.begin(), spec.footnotes.end());
        for (const SheetColumn& column : spec.columns) {
            sheet.headings.emplace_back(column.heading1, column.heading2);
            sheet.ids.push_back(column.id);
            auto& numbers = sheet.numbers.emplace_back();
            auto& texts = sheet.texts.emplace_back();
            if (const auto* doubles = std::get_if<std::span<const double>>(&column.cells))
                numbers.assign(doubles->begin(), doubles->end());
            else if (const auto* whole = std::get_if<std::span<const std::int32_t>>(&column.cells))
                numbers.assign(whole->begin(), whole->end());
            else if (const auto* words = std::get_if<DictionaryCells>(&column.cells))
                for (const auto i : words->index)
                    texts.emplace_back(words->texts[i]);
            else
                for (const auto& text : std::get<std::span<const std::string>>(column.cells))
                    texts.push_back(text);
            if (column.copied) column.copied();
            mostWithCopies = std::max(mostWithCopies, outstanding);
        }
        sheets.push_back(std::move(sheet));
        return 0;
    }
    short RenameColumn(int column, std::string_view heading1, std::string_view heading2) override {
        sheets.back().headings[static_cast<std::size_t>(column)] = {std::string{heading1},
                                                                    std::string{heading2}};
        return 0;
    }
    short NewGeneralMultipleChartLongEx(const CChartInfo& chart) override {
        if (failCharts) return 1;
        charts.push_back(chart);
        return 0;
    }

    void dstart(unsigned units) override {
        progressShown = 1; // a further part of what runs, where it was shown
        unitsLeft = units;
    }
    void termom(unsigned units) override {
        beyondUnits = beyondUnits || units > unitsLeft;
        unitsLeft -= std::min(units, unitsLeft);
    }
    void bstart() override { progressShown = 1; }
    void dstop() override { progressShown = 0; }
    void d_stat(std::string_view text) override { statusTexts.emplace_back(text); }
    const std::atomic<unsigned>* StopWord() override { return stopWord; }
    bool pcancel() override { return ++questions >= stopAt && stopAt != 0; }

    std::string GetResourceString(ModuleHandle module, int id) override {
        return std::string{module->String(id)};
    }
    int DspMessageBox(MessageStyle style, CAnalysisDialog*, int id, std::string_view text,
                      std::string_view detail) override {
        if (style == MessageStyle::Note)
            notes.emplace_back(text);
        else
            messages.push_back({id, std::string{text}, std::string{detail}});
        if (whenShown) whenShown();
        return ButtonOk;
    }

    bool AllocMem(void*& memory, std::size_t size) override {
        memory = ++requests == refuseRequest ? nullptr : std::malloc(size);
        if (memory != nullptr) ++outstanding;
        return memory != nullptr;
    }
    void FreeMem(void* memory) override {
        if (memory != nullptr) --outstanding;
        std::free(memory);
    }

    bool CreateAnalysisDialog(std::unique_ptr<CAnalysisModelessDialog>& dialog) override {
        if (refuseDialogs) return false;
        dialogs.push_back(std::move(dialog));
        dialogs.back()->Open();
        return true;
    }
    void DialogExits(CAnalysisDialog&, int next, ExitMode mode, int) override {
        nextStep = next;
        exitMode = mode;
    }
    bool IsOleAutomation() override { return automation; }
    bool OpenDataFile() override { return opensData; }
    void DefineWeight() override { asked.emplace_back("weight"); }
    void TurnWeightsOff() override { weight = 0; }
    void DefineSelCond() override { asked.emplace_back("selection"); }
    void EnableStartupMenus(bool enabled) override { menus = enabled; }
    void RestoreResultsWindows(CAnalysisDialog&) override { asked.emplace_back("results"); }
};

} // namespace ozm::test
