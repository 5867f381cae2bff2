#include "support/services/NullServices.h"

#include "support/dialogs/CAnalysisModelessDialog.h"
#include "support/services/ChartService.h"
#include "support/services/DataService.h"
#include "support/services/DialogService.h"
#include "support/services/ExpressionService.h"
#include "support/services/FileService.h"
#include "support/services/MemoryService.h"
#include "support/services/MessageService.h"
#include "support/services/ProgressService.h"
#include "support/services/ReportService.h"
#include "support/services/SheetService.h"
#include "support/services/VariableService.h"

#include <limits>

namespace ozm {
namespace {

constexpr short failed = 1;

struct NullData final : DataService {
    short cstart(int, std::span<double>, std::span<const int>) override { return StopReading; }
    int ss_nb() override { return 0; }
    short getmd5(int, double& missingCode) override {
        missingCode = std::numeric_limits<double>::quiet_NaN();
        return failed;
    }
    int WeightVariable() override { return 0; }
    std::string CaseName(int) override { return {}; }
    std::string FileName() override { return {}; }
};

struct NullVariables final : VariableService {
    int NumberOfVariables() override { return 0; }
    short getvn5(int, std::string& name) override {
        name.clear();
        return failed;
    }
    std::string VariableLabel(int) override { return {}; }
    int FindVariable(std::string_view) override { return 0; }
    int vvlcod8(int, LabelLookup, std::string&, double&) override { return 0; }
    int ReadDataToGetDefaultCodes(int, const DefaultCodeOptions&, std::vector<CodeCount>& codes) override {
        codes.clear();
        return -1;
    }
};

struct NullReport final : ReportService {
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

struct NullSheets final : SheetService {
    short table4(const SheetSpec&) override { return failed; }
    short looka4(const SheetSpec&) override { return failed; }
    short RenameColumn(int, std::string_view, std::string_view) override { return failed; }
};

struct NullCharts final : ChartService {
    short NewGeneralMultipleChartLongEx(const CChartInfo&) override { return failed; }
    short MakeScatterplot(std::span<const float>, std::span<const float>, std::string_view, std::string_view,
                          std::string_view) override {
        return failed;
    }
    void c_gr0(CChartInfo& chart) override { chart = {}; }
};

struct NullIterations final : CIterDisplay {
    void AddText(std::string_view) override {}
    bool WasCanceled() override { return false; }
};

struct NullProgress final : ProgressService {
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

struct NullMessages final : MessageService {
    std::string GetResourceString(ModuleHandle, int) override { return {}; }
    int DspMessageBox(MessageStyle, CAnalysisDialog*, int, std::string_view, std::string_view) override {
        return ButtonNone;
    }
    int DisplayInstQuestion(ModuleHandle, CAnalysisDialog*, int) override { return ButtonNo; }
};

struct NullMemory final : MemoryService {
    bool AllocMem(void*& memory, std::size_t) override {
        memory = nullptr;
        return false;
    }
    void FreeMem(void*) override {}
};

struct NullExpressions final : ExpressionService {
    short COMP(std::string_view, std::span<const std::string>, std::unique_ptr<CompiledExpression>& compiled,
               std::string& error) override {
        compiled.reset();
        error.clear();
        return failed;
    }
    int RunSpreadsheetFormula(std::span<const double>, const CompiledExpression&, double& result) override {
        result = 0.0;
        return failed;
    }
};

struct NullFiles final : FileService {
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

struct NullDialogs final : DialogService {
    bool CreateAnalysisDialog(std::unique_ptr<CAnalysisModelessDialog>&) override { return false; }
    int RunModal(CAnalysisModalDialog&) override { return -1; }
    void DialogExits(CAnalysisDialog&, int, ExitMode, int) override {}
    bool IsOleAutomation() override { return false; }
    bool OpenDataFile() override { return false; }
    void DefineWeight() override {}
    void DefineSelCond() override {}
    void EnableStartupMenus(bool) override {}
    void RestoreResultsWindows(CAnalysisDialog&) override {}
};

struct NullHost final : HostServices {
    DataService& Data() override { return data; }
    VariableService& Variables() override { return variables; }
    ReportService& Report() override { return report; }
    SheetService& Sheets() override { return sheets; }
    ChartService& Charts() override { return charts; }
    ProgressService& Progress() override { return progress; }
    MessageService& Messages() override { return messages; }
    MemoryService& Memory() override { return memory; }
    ExpressionService& Expressions() override { return expressions; }
    FileService& Files() override { return files; }
    DialogService& Dialogs() override { return dialogs; }

    NullData data;
    NullVariables variables;
    NullReport report;
    NullSheets sheets;
    NullCharts charts;
    NullProgress progress;
    NullMessages messages;
    NullMemory memory;
    NullExpressions expressions;
    NullFiles files;
    NullDialogs dialogs;
};

} // namespace

HostServices& NullServices() {
    static NullHost host;
    return host;
}

} // namespace ozm
