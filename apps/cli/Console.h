#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace korvana::cli {

/// The text with very long quoted parts shortened: names and cells may come from any file.
std::string withShortQuotes(std::string_view line);

/// The output streams of a command.
struct Console {
    std::ostream& out;
    std::ostream& err;
    bool errIsTerminal = false;
    std::vector<std::string>* heard = nullptr; ///< gets the messages in place of standard error

    /// Writes a message to standard error, its first line after "korvana: ". Texts come from files of any
    /// origin: control characters and bytes that are not UTF-8 are escaped, and long quoted parts are
    /// shortened.
    void say(std::string_view text);
    /// Further lines of the message before.
    void sayMore(std::string_view text);
};

enum ExitCode : int {
    ExitResults = 0,
    ExitRefused = 1,    ///< the analysis refused the data
    ExitUsage = 2,      ///< wrong usage, unreadable data, results that cannot be written, too little memory
    ExitBySignal = 128, ///< plus the number of the signal: 130 is Ctrl-C
};

} // namespace korvana::cli
