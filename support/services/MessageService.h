#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ozm {

struct ModuleResources;
class CAnalysisDialog;

/// The module's resources, as its `GetLibInstance` returns them.
using ModuleHandle = const ModuleResources*;

enum class MessageStyle : std::uint8_t {
    Information,
    Warning,
    Error,
    Refusal, ///< an error in what the user entered: nothing was computed, and no results mention it once it
             ///< is corrected
    YesNo,
    Note, ///< a remark kept with the results of the run; no box is shown, and nothing waits
};

enum MessageButton : int { ButtonNone = 0, ButtonOk = 1, ButtonCancel = 2, ButtonYes = 6, ButtonNo = 7 };

/// Messages, questions and the texts of string tables.
class MessageService {
public:
    virtual ~MessageService() = default;

    /// The text with this number in a module's string table; empty when there is none.
    virtual std::string GetResourceString(ModuleHandle module, int id) = 0;

    /// Shows a message over a dialog (nullptr: over the main window). `id` is its number in the string table,
    /// 0 for a text from elsewhere; `detail` adds what is particular to this run (variable, case, codes) and
    /// may be empty. Returns the button pressed.
    virtual int DspMessageBox(MessageStyle style, CAnalysisDialog* window, int id, std::string_view text,
                              std::string_view detail) = 0;

    /// Asks a yes/no question of the string table. Returns ButtonYes or ButtonNo.
    virtual int DisplayInstQuestion(ModuleHandle module, CAnalysisDialog* window, int id) = 0;
};

} // namespace ozm
