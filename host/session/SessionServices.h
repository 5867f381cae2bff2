#pragma once

#include "host/session/SessionCharts.h"
#include "host/session/SessionData.h"
#include "host/session/SessionDialogs.h"
#include "host/session/SessionExpressions.h"
#include "host/session/SessionFiles.h"
#include "host/session/SessionMemory.h"
#include "host/session/SessionMessages.h"
#include "host/session/SessionProgress.h"
#include "host/session/SessionReport.h"
#include "host/session/SessionSheets.h"
#include "host/session/SessionVariables.h"
#include "support/CAnalysisDoc.h"
#include "support/services/HostServices.h"

#include <type_traits>

namespace korvana {

/// Services to be used in place of the session's own (nullptr: its own). They must outlive the session.
struct ServiceOverrides {
    ozm::DataService* data = nullptr;
    ozm::VariableService* variables = nullptr;
    ozm::ReportService* report = nullptr;
    ozm::SheetService* sheets = nullptr;
    ozm::ChartService* charts = nullptr;
    ozm::ProgressService* progress = nullptr;
    ozm::MessageService* messages = nullptr;
    ozm::MemoryService* memory = nullptr;
    ozm::ExpressionService* expressions = nullptr;
    ozm::FileService* files = nullptr;
};

/// The document that a session gives its analysis, and the services behind it.
class SessionServices final : public ozm::HostServices, public ozm::CAnalysisDoc {
public:
    SessionServices(SessionParts& parts, const ServiceOverrides& overrides)
        : data_(parts), variables_(parts), report_(parts), sheets_(parts), charts_(parts), progress_(parts),
          messages_(parts), expressions_(parts), files_(parts), dialogs_(parts), overrides_(overrides) {}

    HostServices& Services() override { return *this; }

    ozm::DataService& Data() override { return pick(overrides_.data, data_); }
    ozm::VariableService& Variables() override { return pick(overrides_.variables, variables_); }
    ozm::ReportService& Report() override { return pick(overrides_.report, report_); }
    ozm::SheetService& Sheets() override { return pick(overrides_.sheets, sheets_); }
    ozm::ChartService& Charts() override { return pick(overrides_.charts, charts_); }
    ozm::ProgressService& Progress() override { return pick(overrides_.progress, progress_); }
    ozm::MessageService& Messages() override { return pick(overrides_.messages, messages_); }
    ozm::MemoryService& Memory() override { return pick(overrides_.memory, memory_); }
    ozm::ExpressionService& Expressions() override { return pick(overrides_.expressions, expressions_); }
    ozm::FileService& Files() override { return pick(overrides_.files, files_); }
    ozm::DialogService& Dialogs() override { return dialogs_; }

    SessionDialogs& dialogs() { return dialogs_; }
    const SessionDialogs& dialogs() const { return dialogs_; }
    const SessionMemory& memory() const { return memory_; }
    SessionReport& report() { return report_; }

private:
    template <class Service>
    static Service& pick(Service* other, std::type_identity_t<Service>& own) {
        return other != nullptr ? *other : own;
    }

    SessionData data_;
    SessionVariables variables_;
    SessionReport report_;
    SessionSheets sheets_;
    SessionCharts charts_;
    SessionProgress progress_;
    SessionMessages messages_;
    SessionMemory memory_;
    SessionExpressions expressions_;
    SessionFiles files_;
    SessionDialogs dialogs_;
    ServiceOverrides overrides_;
};

} // namespace korvana
