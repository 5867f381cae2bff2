#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ozm {

struct ModuleResources;
class CAnalysisDialog;

/// The module's resources, as its `GetLibInstance` hands them over.
using ModuleHandle = const ModuleResources*;

enum class MessageStyle : std::uint8_t {
    Information,
    Warning,
    Error,
    Refusal, ///< an error in what a dialog was given: nothing came of it, and once it is mended it is no part
             ///< of any results
    YesNo,
    Note, ///< a remark that stands with the results of the run; no box, and nobody is waited for
};

enum MessageButton : int { ButtonNone = 0, ButtonOk = 1, ButtonCancel = 2, ButtonYes = 6, ButtonNo = 7 };

/// Messages, questions and the texts of string tables.
class MessageService {
public:
    virtual ~MessageService() = default;

    /// The text of a number in a module's string table; empty when there is none.
    virtual std::string GetResourceString(ModuleHandle module, int id) = 0;

    /// Shows a message over a dialog (nullptr: over the main window). `id` is its number in the string table,
    /// 0 for a text of no table; `detail` says what only this run knows (variable, case, codes) and may be
    /// empty. Answers the button pressed.
    virtual int DspMessageBox(MessageStyle style, CAnalysisDialog* window, int id, std::string_view text,
                              std::string_view detail) = 0;

    /// Asks a yes/no question of the string table. Answers ButtonYes or ButtonNo.
    virtual int DisplayInstQuestion(ModuleHandle module, CAnalysisDialog* window, int id) = 0;
};

} // namespace ozm
