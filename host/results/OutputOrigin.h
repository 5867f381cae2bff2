#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/data/ReadSettings.h"

namespace korvana {

/// Which cases of which data took part, and how. Equal states mean that an analysis reads the same.
struct DataState {
    std::string file;     ///< path as the user named it; empty without data
    std::string place{};  ///< absolute path of that file, whatever the working folder is now; may be empty
    int generation = 0;   ///< counts the data sets opened
    int descriptions = 0; ///< counts the changes to labels and missing codes since
    int cases = 0;
    int selectedCases = 0;
    std::string condition;      ///< empty: all cases
    std::string weightVariable; ///< empty: weighting off
    bool operator==(const DataState&) const = default;

    /// The path to look at.
    [[nodiscard]] const std::string& where() const { return place.empty() ? file : place; }
};

/// One property of a dialog, with the value that it had.
struct Setting {
    struct Code {
        double value = 0.0; ///< NaN: none given
        std::string label;  ///< may be empty
        bool operator==(const Code&) const = default;
    };
    struct Choice {
        std::string name; ///< for programs: the member of the enumeration
        std::string text; ///< for people
        bool operator==(const Choice&) const = default;
    };
    struct Role {
        std::string prompt;
        std::vector<std::string> variables; ///< names, in the order chosen
        bool operator==(const Role&) const = default;
    };
    using Value = std::variant<bool, int, double, std::string, Choice, Code, std::vector<Role>,
                               std::vector<Code>, std::vector<double>, std::vector<std::string>>;

    std::string id;    ///< the member of the dialog's automation interface, the same in every run
    std::string label; ///< as the dialog shows it
    Value value;
    bool oneOfSeveral = false; ///< stands for a choice that excludes others: true chooses it
    bool asks = false;         ///< once a script switches it on, another dialog opens on the way
};

/// The settings of one dialog.
struct DialogSettings {
    std::string id;    ///< the name of its automation interface
    std::string title; ///< as the dialog shows it
    int number = 0;    ///< of its template; forms of one dialog share it
    std::vector<Setting> settings;
    /// The same when its button was pressed, also of controls that were greyed out: what is done then may
    /// change them.
    std::vector<Setting> asked;
    std::vector<bool> answers; ///< to yes/no questions from then on until the next dialog was accepted
    bool onTheWay = false;     ///< a script meets it while the OK of the one before is not done
    std::string askedBy{};     ///< the setting of the one before that opens it, if there is one
};

/// A missing code that held for a variable.
struct MissingCode {
    std::string variable;
    double code = 0.0;
};

/// What a user changed about a variable; what is empty was not changed.
struct Description {
    std::string variable;
    int after = 0; ///< how many variables had been computed before: these may depend on it, and it on these
    std::optional<std::string> label{};
    std::optional<double> missingCode{};                                 ///< NaN: none any more
    std::optional<std::vector<std::pair<double, std::string>>> labels{}; ///< of its values
};

/// A variable that was computed from others.
struct ComputedName {
    std::string variable;
    std::string expression;
};

/// What a run of an analysis was made from: the state of the data when its specification's OK was pressed,
/// and the settings of the dialogs that led to it, the first one first.
struct RunOrigin {
    std::string name;     ///< among several runs whose results were put together; else empty
    std::string analysis; ///< its name
    DataState data;
    std::string weightGiven; ///< the variable that weighted the cases before the analysis turned that off
    std::vector<MissingCode> missingCodes;   ///< of the variables used, also in condition and weights
    std::vector<MissingCode> missingAtFirst; ///< of all variables when the data were opened
    std::vector<Description> descriptions;   ///< what was changed since, in order
    ReadSettings reading;                    ///< the layout options that the user gave
    std::vector<ComputedName> definitions;   ///< in order, also of unused variables
    std::vector<DialogSettings> dialogs;
    std::vector<std::string> remarks; ///< by the analysis about this run, for example what it left out
};

/// What an output was made from. One press of a button may make several outputs, which share this.
struct OutputOrigin {
    std::string id;    ///< the action of the results dialog that made it; empty when no button did
    std::string label; ///< as the dialog shows it
    std::chrono::system_clock::time_point made;
    std::shared_ptr<const RunOrigin> run; ///< nullptr when no analysis had run
    std::vector<Setting> settings;        ///< of the results dialog when its button was pressed
    std::vector<bool> answers;            ///< to yes/no questions meanwhile
};

} // namespace korvana
