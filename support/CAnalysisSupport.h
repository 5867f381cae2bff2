#pragma once

#include "support/CAnalysisDoc.h"
#include "support/CChartInfo.h"
#include "support/CIterDisplay.h"
#include "support/Export.h"
#include "support/ModuleResources.h"
#include "support/services/ChartService.h"
#include "support/services/DataService.h"
#include "support/services/DialogService.h"
#include "support/services/ExpressionService.h"
#include "support/services/FileService.h"
#include "support/services/HostServices.h"
#include "support/services/MemoryService.h"
#include "support/services/MessageService.h"
#include "support/services/ProgressService.h"
#include "support/services/ReportService.h"
#include "support/services/SheetService.h"
#include "support/services/VariableService.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ozm {

class CAnalysisSupport;

/// A step function: returns the number of the next step, -1 while a dialog owns the step, or 0 to end; any
/// other number means the step that follows by default.
using StepFunction = int (*)(CAnalysisSupport& analysis);

/// One row of a step table.
struct SEQFUNCTTBL {
    int step = 0;
    StepFunction function = nullptr;
    int followsByDefault = 0; ///< 0: none
};

/// A memory area that a module shares with its host.
struct WorkArea {
    void* address = nullptr;
    std::size_t bytes = 0;
};

/// The host's side of an analysis object: a step table, and every operation that an analysis may ask of the
/// host, under the names that analyses know. Each is one call of the service that does the work (see
/// support/services for what it takes and returns). Without a document every operation fails.
class KORVANA_SUPPORT CAnalysisSupport {
public:
    explicit CAnalysisSupport(CAnalysisDoc* document = nullptr);
    virtual ~CAnalysisSupport();
    CAnalysisSupport(const CAnalysisSupport&) = delete;
    CAnalysisSupport& operator=(const CAnalysisSupport&) = delete;

    virtual int InitializeAfterFileChanged();
    virtual void Initialize();
    /// Whether the sequence may go from one step to another: 1 when the second is a row of the step table,
    /// else 0.
    virtual unsigned char ForwardSequence(int fromStep, int toStep);
    virtual ModuleHandle GetLibInstance();
    virtual int GetAnalysisID();
    virtual std::string GetAnalysisName();

    /// Gives the object a document, or none (nullptr): the factory makes objects without one.
    void AttachDocument(CAnalysisDoc* document);

    void SetSequenceTable(std::span<const SEQFUNCTTBL> table) { sequence_ = table; }
    [[nodiscard]] std::span<const SEQFUNCTTBL> SequenceTable() const { return sequence_; }

    /// Registers the work areas that the module shares with the host; they are cleared.
    void InitCommons(std::span<const WorkArea> areas);
    [[nodiscard]] std::span<const WorkArea> Commons() const { return commons_; }

    // Data set
    short cstart(int caseNumber, std::span<double> values, std::span<const int> variables) {
        return data_->cstart(caseNumber, values, variables);
    }
    void cstarts(int firstCase, std::span<short> answers, std::span<double> values,
                 std::span<const int> variables) {
        data_->cstarts(firstCase, answers, values, variables);
    }
    int ss_nb() { return data_->ss_nb(); }
    short getmd5(int variable, double& missingCode) { return data_->getmd5(variable, missingCode); }
    int WeightVariable() { return data_->WeightVariable(); }
    std::string CaseName(int caseNumber) { return data_->CaseName(caseNumber); }
    std::string FileName() { return data_->FileName(); }
    int NumberOfVariables() { return variables_->NumberOfVariables(); }
    short getvn5(int variable, std::string& name) { return variables_->getvn5(variable, name); }
    std::string VariableLabel(int variable) { return variables_->VariableLabel(variable); }
    int FindVariable(std::string_view name) { return variables_->FindVariable(name); }
    bool HoldsTexts(int variable) { return variables_->HoldsTexts(variable); }
    bool HoldsDates(int variable) { return variables_->HoldsDates(variable); }
    int vvlcod8(int variable, LabelLookup mode, std::string& text, double& value) {
        return variables_->vvlcod8(variable, mode, text, value);
    }
    /// As `vvlcod8`, in single precision.
    int vvlcod(int variable, LabelLookup mode, std::string& text, float& value);
    int ReadDataToGetDefaultCodes(int variable, const DefaultCodeOptions& options,
                                  std::vector<CodeCount>& codes) {
        return variables_->ReadDataToGetDefaultCodes(variable, options, codes);
    }

    // Report text
    void writst(int length, std::string_view text) { report_->writst(length, text); }
    void writch(char character) { report_->writch(character); }
    void newline(int count) { report_->newline(count); }
    void prttop() { report_->prttop(); }
    void type() { report_->type(); }
    void cup(int row, int column) { report_->cup(row, column); }
    void cupst(int row, int column, int attribute, std::string_view text) {
        report_->cupst(row, column, attribute, text);
    }
    void normal() { report_->normal(); }
    void revers() { report_->revers(); }
    void SetAttribColor(int colour) { report_->SetAttribColor(colour); }

    // Spreadsheets and charts
    short table4(const SheetSpec& sheet) { return sheets_->table4(sheet); }
    short looka4(const SheetSpec& sheet) { return sheets_->looka4(sheet); }
    short RenameColumn(int column, std::string_view heading1, std::string_view heading2) {
        return sheets_->RenameColumn(column, heading1, heading2);
    }
    short NewGeneralMultipleChartLongEx(const CChartInfo& chart) {
        return charts_->NewGeneralMultipleChartLongEx(chart);
    }
    short MakeScatterplot(std::span<const float> x, std::span<const float> y, std::string_view title,
                          std::string_view xAxis, std::string_view yAxis) {
        return charts_->MakeScatterplot(x, y, title, xAxis, yAxis);
    }
    void c_gr0(CChartInfo& chart) { charts_->c_gr0(chart); }

    // Progress, status and cancellation
    void dstart(unsigned count) { progress_->dstart(count); }
    void dstop() { progress_->dstop(); }
    void termom(unsigned count) { progress_->termom(count); }
    void bstart() { progress_->bstart(); }
    void dsp_st() { progress_->dsp_st(); }
    void d_stat(std::string_view text) { progress_->d_stat(text); }
    void d_pbar(std::string_view text) { progress_->d_pbar(text); }
    bool pcancel() { return progress_->pcancel(); }
    bool IsExternallyCancelled() { return progress_->IsExternallyCancelled(); }
    const std::atomic<unsigned>* StopWord() { return progress_->StopWord(); }
    CIterDisplay& Iterations() { return *iterations_; }

    // Messages, strings and questions
    std::string GetResourceStringDirect(int id);
    std::string GetResourceString(int id) { return messages_->GetResourceString(GetLibInstance(), id); }
    int DspMessageBox(MessageStyle style, CAnalysisDialog* window, int id, std::string_view detail = {});
    int DspMessageBox(MessageStyle style, CAnalysisDialog* window, int id, std::string_view text,
                      std::string_view detail) {
        return messages_->DspMessageBox(style, window, id, text, detail);
    }
    int DisplayInstQuestion(ModuleHandle module, CAnalysisDialog* window, int id) {
        return messages_->DisplayInstQuestion(module, window, id);
    }

    // Cleaning of texts that users wrote, before they go to a file
    /// Replaces every 8-bit character of a kind by a text, which may be longer; the text grows as it must.
    static void Replace8CharGrow(std::string& text, char what, std::string_view by);
    /// Removes formatting codes, "@X[...]" (a letter and its argument in brackets, "@L[3]"), and control
    /// characters; line ends and tabs become a blank. Any other "@" is kept.
    static void StripFormatting(std::string& text);

    // Memory
    bool AllocMem(void*& memory, std::size_t size) { return memory_->AllocMem(memory, size); }
    bool GetMem(void*& memory, std::size_t size) { return memory_->AllocMem(memory, size); }
    void FreeMem(void* memory) { memory_->FreeMem(memory); }

    // Expressions and files
    short COMP(std::string_view text, std::span<const std::string> extraNames,
               std::unique_ptr<CompiledExpression>& compiled, std::string& error) {
        return expressions_->COMP(text, extraNames, compiled, error);
    }
    int RunSpreadsheetFormula(std::span<const double> values, const CompiledExpression& compiled,
                              double& result) {
        return expressions_->RunSpreadsheetFormula(values, compiled, result);
    }
    int RunSpreadsheetFormulas(std::span<const std::span<const double>> columns,
                               const CompiledExpression& compiled, std::span<double> results) {
        return expressions_->RunSpreadsheetFormulas(columns, compiled, results);
    }
    bool DoFileOpenDlg(std::string_view title, std::string_view defaultName, std::string_view extension,
                       std::string& path) {
        return files_->DoFileOpenDlg(title, defaultName, extension, path);
    }
    bool DoFileSaveAsDlg(std::string_view title, std::string_view defaultName, std::string_view extension,
                         std::string& path) {
        return files_->DoFileSaveAsDlg(title, defaultName, extension, path);
    }
    bool PutInitKeywordPrivate(const std::string& path, std::string_view section, std::string_view keyword,
                               std::string_view value) {
        return files_->PutInitKeywordPrivate(path, section, keyword, value);
    }
    bool ClearInitSection(const std::string& path, std::string_view section) {
        return files_->ClearInitSection(path, section);
    }
    bool GetInitKeywordPrivate(const std::string& path, std::string_view section, std::string_view keyword,
                               std::string& value) {
        return files_->GetInitKeywordPrivate(path, section, keyword, value);
    }
    bool EnumPrivateKeywords(const std::string& path, std::string_view section,
                             std::vector<std::string>& keywords) {
        return files_->EnumPrivateKeywords(path, section, keywords);
    }
    bool GetStartValues(std::span<const std::string> names, std::span<double> values) {
        return files_->GetStartValues(names, values);
    }

    // Dialogs
    DialogService& Dialogs() { return *dialogs_; }
    bool IsOleAutomation() { return dialogs_->IsOleAutomation(); }
    void DefineWeight() { dialogs_->DefineWeight(); }
    void DefineSelCond() { dialogs_->DefineSelCond(); }
    void TurnWeightsOff() { dialogs_->TurnWeightsOff(); }

private:
    std::span<const SEQFUNCTTBL> sequence_;
    std::vector<WorkArea> commons_;
    DataService* data_ = nullptr;
    VariableService* variables_ = nullptr;
    ReportService* report_ = nullptr;
    SheetService* sheets_ = nullptr;
    ChartService* charts_ = nullptr;
    ProgressService* progress_ = nullptr;
    CIterDisplay* iterations_ = nullptr;
    MessageService* messages_ = nullptr;
    MemoryService* memory_ = nullptr;
    ExpressionService* expressions_ = nullptr;
    FileService* files_ = nullptr;
    DialogService* dialogs_ = nullptr;
};

} // namespace ozm
