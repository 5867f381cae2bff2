#pragma once

namespace ozm {

class ChartService;
class DataService;
class DialogService;
class ExpressionService;
class FileService;
class MemoryService;
class MessageService;
class ProgressService;
class ReportService;
class SheetService;
class VariableService;

/// Gives access to all services that a host offers to a module. All operations are called on the host's
/// user-interface thread; the services live at least as long as the analysis object that uses them.
class HostServices {
public:
    virtual ~HostServices() = default;

    virtual DataService& Data() = 0;
    virtual VariableService& Variables() = 0;
    virtual ReportService& Report() = 0;
    virtual SheetService& Sheets() = 0;
    virtual ChartService& Charts() = 0;
    virtual ProgressService& Progress() = 0;
    virtual MessageService& Messages() = 0;
    virtual MemoryService& Memory() = 0;
    virtual ExpressionService& Expressions() = 0;
    virtual FileService& Files() = 0;
    virtual DialogService& Dialogs() = 0;
};

} // namespace ozm
