#pragma once

#include "support/Export.h"
#include "support/dialogs/CAnalysisModelessDialog.h"
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

#include <limits>

namespace ozm {

// The services of an analysis object without a document: each operation fails quietly. A host that supports
// only some operations overrides those.

struct NullData : DataService {
    short cstart(int, std::span<double>, std::span<const int>) override { return StopReading; }
    int ss_nb() override { return 0; }
    short getmd5(int, double& missingCode) override {
        missingCode = std::numeric_limits<double>::quiet_NaN();
        return 1;
    }
    int WeightVariable() override { return 0; }
    std::string CaseName(int) override { return {}; }
    std::string FileName() override { return {}; }
};

struct NullVariables : VariableService {
    int NumberOfVariables() override { return 0; }
    short getvn5(int, std::string& name) override {
        name.clear();
        return 1;
    }
    std::string VariableLabel(int) override { return {}; }
    int FindVariable(std::string_view) override { return 0; }
    int vvlcod8(int, LabelLookup, std::string&, double&) override { return 0; }
    int ReadDataToGetDefaultCodes(int, const DefaultCodeOptions&, std::vector<CodeCount>& codes) override {
        codes.clear();
        return -1;
    }
};

struct NullReport : ReportService {
    void writst(int, std::string_view) override {}
    void writch(char) override {}
    void newline(int) override {}
    void prttop() override {}
    void type() override {}
    void cup(int, int) override {}
    void cupst(int, int, int, std::string_view) override {}
    void normal() override {}
    void revers() override {}
    void SetAttribColor(int) override {}
};

struct NullSheets : SheetService {
    short table4(const SheetSpec&) override { return 1; }
    short looka4(const SheetSpec&) override { return 1; }
    short RenameColumn(int, std::string_view, std::string_view) override { return 1; }
};

struct NullCharts : ChartService {
    short NewGeneralMultipleChartLongEx(const CChartInfo&) override { return 1; }
    short MakeScatterplot(std::span<const float>, std::span<const float>, std::string_view, std::string_view,
                          std::string_view) override {
        return 1;
    }
    void c_gr0(CChartInfo& chart) override { chart = {}; }
};

struct NullIterations : CIterDisplay {
    void AddText(std::string_view) override {}
    bool WasCanceled() override { return false; }
};

struct NullProgress : ProgressService {
    void dstart(unsigned) override {}
    void dstop() override {}
    void termom(unsigned) override {}
    void bstart() override {}
    void dsp_st() override {}
    void d_stat(std::string_view) override {}
    void d_pbar(std::string_view) override {}
    bool pcancel() override { return false; }
    bool IsExternallyCancelled() override { return false; }
    CIterDisplay& Iterations() override { return iterations; }
    NullIterations iterations;
};

struct NullMessages : MessageService {
    std::string GetResourceString(ModuleHandle, int) override { return {}; }
    int DspMessageBox(MessageStyle, CAnalysisDialog*, int, std::string_view, std::string_view) override {
        return ButtonNone;
    }
    int DisplayInstQuestion(ModuleHandle, CAnalysisDialog*, int) override { return ButtonNo; }
};

struct NullMemory : MemoryService {
    bool AllocMem(void*& memory, std::size_t) override {
        memory = nullptr;
        return false;
    }
    void FreeMem(void*) override {}
};

struct NullExpressions : ExpressionService {
    short COMP(std::string_view, std::span<const std::string>, std::unique_ptr<CompiledExpression>& compiled,
               std::string& error) override {
        compiled.reset();
        error.clear();
        return 1;
    }
    int RunSpreadsheetFormula(std::span<const double>, const CompiledExpression&, double& result) override {
        result = 0.0;
        return 1;
    }
    int RunSpreadsheetFormulas(std::span<const std::span<const double>>, const CompiledExpression&,
                               std::span<double>) override {
        return -1;
    }
};

struct NullFiles : FileService {
    bool DoFileOpenDlg(std::string_view, std::string_view, std::string_view, std::string&) override {
        return false;
    }
    bool DoFileSaveAsDlg(std::string_view, std::string_view, std::string_view, std::string&) override {
        return false;
    }
    bool PutInitKeywordPrivate(const std::string&, std::string_view, std::string_view,
                               std::string_view) override {
        return false;
    }
    bool ClearInitSection(const std::string&, std::string_view) override { return false; }
    bool GetInitKeywordPrivate(const std::string&, std::string_view, std::string_view,
                               std::string&) override {
        return false;
    }
    bool EnumPrivateKeywords(const std::string&, std::string_view,
                             std::vector<std::string>& keywords) override {
        keywords.clear();
        return false;
    }
    bool GetStartValues(std::span<const std::string>, std::span<double>) override { return false; }
};

struct NullDialogs : DialogService {
    bool CreateAnalysisDialog(std::unique_ptr<CAnalysisModelessDialog>&) override { return false; }
    int RunModal(CAnalysisModalDialog&) override { return -1; }
    void DialogExits(CAnalysisDialog&, int, ExitMode, int) override {}
    std::string ApplicationName() override { return {}; }
    bool IsOleAutomation() override { return false; }
    bool OpenDataFile() override { return false; }
    void DefineWeight() override {}
    void DefineSelCond() override {}
    void TurnWeightsOff() override {}
    void EnableStartupMenus(bool) override {}
    void RestoreResultsWindows(CAnalysisDialog&) override {}
};

class NullHost : public HostServices {
public:
    DataService& Data() override { return data_; }
    VariableService& Variables() override { return variables_; }
    ReportService& Report() override { return report_; }
    SheetService& Sheets() override { return sheets_; }
    ChartService& Charts() override { return charts_; }
    ProgressService& Progress() override { return progress_; }
    MessageService& Messages() override { return messages_; }
    MemoryService& Memory() override { return memory_; }
    ExpressionService& Expressions() override { return expressions_; }
    FileService& Files() override { return files_; }
    DialogService& Dialogs() override { return dialogs_; }

private:
    NullData data_;
    NullVariables variables_;
    NullReport report_;
    NullSheets sheets_;
    NullCharts charts_;
    NullProgress progress_;
    NullMessages messages_;
    NullMemory memory_;
    NullExpressions expressions_;
    NullFiles files_;
    NullDialogs dialogs_;
};

/// The one instance that all such objects share.
KORVANA_SUPPORT HostServices& NullServices();

} // namespace ozm
