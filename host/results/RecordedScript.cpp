#include "host/results/RecordedScript.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include "host/data/FileName.h"
#include "host/results/DataFile.h"
#include "host/results/PythonText.h"
#include "host/results/Utf8.h"

namespace korvana {
namespace {

/// A run, and one origin for each press of a button of its results.
struct Recorded {
    std::shared_ptr<const RunOrigin> run;
    std::vector<const OutputOrigin*> presses;
};

std::vector<Recorded> runsOf(const ResultsBook& book, const std::vector<std::size_t>& without,
                             const std::shared_ptr<const RunOrigin>& only) {
    std::vector<Recorded> runs;
    std::set<const OutputOrigin*> seen;
    for (std::size_t place = 0; place < book.outputs.size(); ++place) {
        if (std::ranges::binary_search(without, place)) continue;
        const auto& origin = ResultsBook::originOf(book.outputs[place]);
        if (origin == nullptr || origin->run == nullptr) continue;
        // What a dialog made on the way comes with its OK, and was made when the run was not complete yet.
        if (origin->id.empty() || origin->id == "OK" || !seen.insert(origin.get()).second) continue;
        auto found = std::ranges::find(runs, origin->run, &Recorded::run);
        if (found == runs.end()) found = runs.insert(found, {origin->run, {}});
        found->presses.push_back(origin.get());
    }
    if (runs.empty() && only != nullptr) runs.push_back({only, {}});
    return runs;
}

/// A setting's value as Python has it, and what a reader should know besides.
struct Value {
    std::string literal{};
    std::vector<std::string> list{}; ///< a list, of literals; the literal is not used
    bool isList = false;
    std::string remark{};
};

Value listOf(std::vector<std::string> literals, std::string remark = {}) {
    return {.list = std::move(literals), .isList = true, .remark = std::move(remark)};
}

struct ValueOf {
    Value operator()(bool value) const { return {pythonBool(value)}; }
    Value operator()(int value) const { return {std::to_string(value)}; }
    Value operator()(double value) const { return std::isnan(value) ? Value{} : Value{pythonNumber(value)}; }
    Value operator()(const std::string& value) const { return {pythonText(value)}; }
    Value operator()(const Setting::Choice& value) const {
        return value.name.empty() ? Value{} : Value{"kv." + value.name};
    }
    Value operator()(const Setting::Code& code) const {
        if (std::isnan(code.value)) return {};
        return {.literal = pythonNumber(code.value), .remark = labelOf(code)};
    }
    Value operator()(const std::vector<Setting::Role>& roles) const {
        std::vector<std::string> lists;
        for (const Setting::Role& role : roles) {
            std::vector<std::string> names;
            for (const std::string& name : role.variables)
                names.push_back(pythonText(name));
            lists.push_back(pythonList(names));
        }
        return listOf(std::move(lists));
    }
    Value operator()(const std::vector<Setting::Code>& codes) const {
        std::vector<std::string> literals;
        std::string labels;
        for (const Setting::Code& code : codes) {
            literals.push_back(pythonNumber(code.value));
            if (const std::string label = labelOf(code); !label.empty())
                labels += (labels.empty() ? "" : ", ") + label;
        }
        return listOf(std::move(literals), std::move(labels));
    }
    Value operator()(const std::vector<double>& numbers) const {
        std::vector<std::string> literals;
        for (const double number : numbers)
            literals.push_back(std::isnan(number) ? "None" : pythonNumber(number));
        return listOf(std::move(literals));
    }
    Value operator()(const std::vector<std::string>& texts) const {
        std::vector<std::string> literals;
        for (const std::string& text : texts)
            literals.push_back(pythonText(text));
        return listOf(std::move(literals));
    }

private:
    static std::string labelOf(const Setting::Code& code) {
        if (code.label.empty() || code.label == pythonNumber(code.value)) return {};
        return pythonText(code.label);
    }
};

/// The value to set, or nothing: a choice is made by choosing it, not by leaving the others.
bool isSet(const Setting& setting, const Value& value) {
    const bool* const chosen = std::get_if<bool>(&setting.value);
    if (setting.oneOfSeveral && chosen != nullptr) return *chosen;
    return value.isList || !value.literal.empty();
}

class Script {
public:
    explicit Script(std::string& text) : text_(text) {}

    Script& line(const std::string& text = {}) {
        text_.append(text).append("\n");
        return *this;
    }
    Script& remark(const std::string& text) { return line("# " + oneLine(text)); }
    Script& set(const std::string& what, const Value& value) {
        std::string all = value.isList ? pythonList(what + " = ", value.list) : what + " = " + value.literal;
        if (!value.remark.empty() && all.find('\n') == std::string::npos) all += "  # " + value.remark;
        return line(all);
    }

    void data(const RunOrigin& run);
    void run(const Recorded& recorded, bool keepsOpen);

private:
    void missing(const std::string& variable, double code);
    void describe(const RunOrigin& run, int after);
    void dialogs(const std::vector<DialogSettings>& dialogs);
    void modal(std::vector<DialogSettings>::const_iterator first,
               std::vector<DialogSettings>::const_iterator end);
    void settings(const std::vector<Setting>& settings);
    void answers(const std::vector<bool>& answers);
    void presses(const std::vector<const OutputOrigin*>& presses);

    std::string& text_;
    bool says_ = false; ///< the answer to questions that was set last
};

bool canBeOpenedAgain(const std::filesystem::path& file) {
    std::error_code error;
    return !file.empty() && std::filesystem::is_regular_file(file, error);
}

std::string readingOptions(const ReadSettings& reading) {
    std::string options;
    if (reading.separator)
        options += ", separator=" +
                   pythonText(*reading.separator == '\t' ? "tab" : std::string(1, *reading.separator));
    if (reading.decimalMark) options += ", decimal=" + pythonText(std::string(1, *reading.decimalMark));
    if (reading.dates)
        options += *reading.dates == DateOrder::DayMonthYear   ? ", dates=\"dmy\""
                   : *reading.dates == DateOrder::MonthDayYear ? ", dates=\"mdy\""
                                                               : ", dates=\"ymd\"";
    if (reading.header != HeaderLine::Automatic)
        options += ", header=" + pythonBool(reading.header == HeaderLine::Yes);
    return options;
}

void Script::missing(const std::string& variable, double code) {
    line("app.missing(" + pythonText(variable) + (std::isnan(code) ? "" : ", " + pythonNumber(code)) + ")");
}

/// What was changed about variables when so many had been computed.
void Script::describe(const RunOrigin& run, int after) {
    for (const Description& change : run.descriptions) {
        if (change.after != after) continue;
        if (change.missingCode) missing(change.variable, *change.missingCode);
        std::string what;
        if (change.label) what += ", label=" + pythonText(*change.label);
        if (change.labels) {
            std::string labels;
            for (const auto& [value, text] : *change.labels)
                labels += (labels.empty() ? "" : ", ") + pythonNumber(value) + ": " + pythonText(text);
            what += ", labels={" + labels + "}";
        }
        if (!what.empty()) line("app.describe(" + pythonText(change.variable) + what + ")");
    }
}

void Script::data(const RunOrigin& run) {
    std::error_code error;
    const std::filesystem::path given = run.data.file;
    const std::filesystem::path file = std::filesystem::absolute(run.data.where(), error).lexically_normal();
    if (!error && canBeOpenedAgain(file)) {
        line("DATA = " + pythonText(file.string()) +
             (file != given ? "  # given as " + pythonText(given.string()) : ""));
    } else {
        remark("The data came from " + (given.empty() ? std::string{"memory"} : pythonText(given.string())) +
               ", which cannot be opened again.");
        remark("Name a file with them here, or put a DataFrame in its place:");
        line("DATA = None");
        line("if DATA is None:");
        line("    sys.exit(\"Fill in DATA: the data that this script was recorded with cannot be opened "
             "again.\")");
    }
    line().line("app = kv.Application()");
    line("app.open(DATA" + readingOptions(run.reading) + ")");
    // What is computed depends on what was known of the variables then.
    const auto isComputed = [&](const MissingCode& code) {
        return std::ranges::find(run.definitions, code.variable, &ComputedName::variable) !=
               run.definitions.end();
    };
    for (const MissingCode& code : run.missingAtFirst)
        if (!isComputed(code)) missing(code.variable, code.code);
    describe(run, 0);
    for (std::size_t place = 0; place < run.definitions.size(); ++place) {
        const ComputedName& computed = run.definitions[place];
        line("app.define(" + pythonText(computed.variable) + ", " + pythonText(computed.expression) + ")");
        for (const MissingCode& code : run.missingAtFirst)
            if (code.variable == computed.variable) missing(code.variable, code.code);
        describe(run, static_cast<int>(place) + 1);
    }
    if (!run.data.condition.empty()) line("app.select(" + pythonText(run.data.condition) + ")");
    if (!run.weightGiven.empty()) line("app.weight(" + pythonText(run.weightGiven) + ")");
}

void Script::settings(const std::vector<Setting>& settings) {
    for (const Setting& setting : settings)
        if (const Value value = std::visit(ValueOf{}, setting.value); isSet(setting, value))
            set("run.dialog." + setting.id, value);
}

void Script::modal(std::vector<DialogSettings>::const_iterator first,
                   std::vector<DialogSettings>::const_iterator end) {
    line("run.modal = {");
    for (auto dialog = first; dialog != end; ++dialog) {
        line("    # " + shownLine(dialog->title));
        for (const Setting& setting : dialog->asked)
            if (const Value value = std::visit(ValueOf{}, setting.value); isSet(setting, value))
                line("    " + pythonText(setting.id) + ": " +
                     (value.isList ? pythonList(value.list) : value.literal) + ",");
    }
    line("}");
}

/// Questions are answered No unless the script says otherwise.
void Script::answers(const std::vector<bool>& answers) {
    if (answers.empty()) return;
    const bool first = answers.front();
    if (!std::ranges::all_of(answers, [first](bool answer) { return answer == first; })) {
        std::vector<std::string> literals;
        for (const bool answer : answers)
            literals.push_back(pythonBool(answer));
        line(pythonList("answers = ", literals));
        line("run.answer = lambda question: answers.pop(0)");
        says_ = true;
    } else if (first || says_) {
        line("run.answer = " + pythonBool(first));
        says_ = first;
    }
}

void Script::dialogs(const std::vector<DialogSettings>& dialogs) {
    for (auto dialog = dialogs.begin(); dialog != dialogs.end();) {
        const auto next = std::find_if(dialog + 1, dialogs.end(),
                                       [](const DialogSettings& other) { return !other.onTheWay; });
        line().remark(shownLine(dialog->title));
        std::vector<Setting> asked = dialog->asked;
        // A setting that opens a dialog is switched on only where that dialog opened. In the window the
        // dialog is a step of its own, and the setting may be off again.
        const auto opened = [dialog, next](const Setting& setting) {
            return std::ranges::find(dialog + 1, next, setting.id, &DialogSettings::askedBy) != next;
        };
        std::erase_if(asked, [&opened](const Setting& setting) {
            return setting.asks && setting.value == Setting::Value{true} && !opened(setting);
        });
        for (Setting& setting : asked)
            if (setting.asks && opened(setting)) setting.value = true;
        settings(asked);
        if (next != dialog + 1) modal(dialog + 1, next);
        std::vector<bool> all;
        for (auto one = dialog; one != next; ++one)
            all.insert(all.end(), one->answers.begin(), one->answers.end());
        answers(all);
        line("run.dialog.OK()");
        dialog = next;
    }
}

/// Only what changes from one output to the next is set again.
void Script::presses(const std::vector<const OutputOrigin*>& presses) {
    if (!presses.empty()) line().remark("Results");
    const OutputOrigin* before = nullptr;
    for (const OutputOrigin* press : presses) {
        std::vector<Setting> changed;
        for (const Setting& setting : press->settings) {
            const Value value = std::visit(ValueOf{}, setting.value);
            const auto same = [&](const Setting& its) {
                const Value had = std::visit(ValueOf{}, its.value); // NaN is like NaN
                return its.id == setting.id && had.literal == value.literal && had.list == value.list;
            };
            if (before == nullptr || std::ranges::none_of(before->settings, same)) changed.push_back(setting);
        }
        settings(changed);
        answers(press->answers);
        line("run.dialog." + press->id + "()");
        before = press;
    }
}

void Script::run(const Recorded& recorded, bool keepsOpen) {
    const std::string name = shownLine(recorded.run->name);
    if (!name.empty()) line().remark("Run: " + name);
    line().line("run = app.analysis(" + pythonText(recorded.run->analysis) + ")");
    says_ = false;
    dialogs(recorded.run->dialogs);
    presses(recorded.presses);
    if (keepsOpen) return;
    line("books.append((" + pythonText(recorded.run->name) + ", run.results))");
    line("run.close()");
}

/// Whether two runs open the same data in the same way; each may have read them for itself.
bool usesTheSame(const RunOrigin& one, const RunOrigin& other) {
    std::string first;
    std::string second;
    Script(first).data(one);
    Script(second).data(other);
    return first == second;
}

} // namespace

std::string recordedScript(const ResultsBook& book, const std::vector<std::size_t>& without,
                           const std::shared_ptr<const RunOrigin>& run) {
    std::string text;
    Script script(text);
    const std::vector<Recorded> runs = runsOf(book, without, run);
    text = std::string{scriptMark} + " " KORVANA_VERSION ".\n";
    script.remark("It makes the results again; start it by");
    script.remark("    korvana run script.py            to see them");
    script.remark("    korvana run script.py FOLDER     to write them into a folder");
    script.line("import sys").line();
    if (runs.empty()) {
        script.line("sys.exit(\"It is not known what the results were made from.\")");
        return text;
    }
    script.line("import korvana as kv").line();
    const RunOrigin* of = nullptr;
    const bool several = runs.size() > 1 || !runs.front().run->name.empty();
    if (several) script.line("books = []").line();
    for (const Recorded& recorded : runs) {
        if (of == nullptr || !usesTheSame(*of, *recorded.run)) {
            if (of != nullptr) script.line();
            script.data(*recorded.run);
        }
        of = recorded.run.get();
        script.run(recorded, !several);
    }
    script.line();
    script.line(several ? "results = kv.joined_results(books)" : "results = run.results");
    script.line("if len(sys.argv) > 1:");
    script.line("    results.save(sys.argv[1])");
    script.line("else:");
    script.line("    for output in results:");
    script.line("        print(output)");
    return text;
}

void checkScriptFile(const std::filesystem::path& file, const std::filesystem::path& dataFile) {
    namespace fs = std::filesystem;
    const auto refuse = [&file](const std::string& why) {
        throw std::runtime_error("'" + shownName(file) + "' " + why);
    };
    if (hasNul(file)) refuse(std::string("cannot be written: ") + nulInName);
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::not_found && file != "-") {
        const fs::path folder = file.parent_path();
        if (!folder.empty() && !fs::is_directory(folder, error))
            refuse("cannot be written: there is no folder '" + folder.string() + "'");
        return;
    }
    if (fs::is_directory(status)) refuse("is a folder; name a file in it");
    if (!fs::is_regular_file(status)) refuse("is no file that can be written to");
    refuseDataFile(file, dataFile);
    std::ifstream there(file, std::ios::binary);
    std::string mark(scriptMark.size(), '\0');
    const bool isOurs =
        there.read(mark.data(), static_cast<std::streamsize>(mark.size())) && mark == scriptMark;
    if (!isOurs && fs::file_size(file, error) > 0)
        refuse("is there already and is no recorded script; name another file, or move it");
}

} // namespace korvana
