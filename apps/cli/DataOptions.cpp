#include "apps/cli/DataOptions.h"

#include "apps/cli/UsageError.h"
#include "host/data/Codes.h"
#include "host/data/DataError.h"
#include "host/data/Describe.h"
#include "host/data/Expression.h"
#include "host/data/NumberText.h"
#include "host/data/ReadData.h"

#include <cctype>
#include <map>

namespace korvana::cli {
namespace {

char separatorOf(const std::string& text) {
    if (text == "tab" || text == "\t" || text == "\\t") return '\t';
    if (text == "," || text == "comma") return ',';
    if (text == ";" || text == "semicolon") return ';';
    if (text == "pipe" || text == "bar") return '|';
    if (text.size() == 1 && std::ispunct(static_cast<unsigned char>(text.front())) != 0) return text.front();
    throw UsageError(
        "--separator is comma, semicolon, tab, pipe or another sign (no letter or digit), not '" + text +
        "'" +
        (text == " " || text == "blank" || text == "space"
             ? "; save a file whose cells are separated by blanks with commas or tabs"
             : ""));
}

char decimalMarkOf(const std::string& text) {
    if (text == "." || text == "point") return '.';
    if (text == "," || text == "comma") return ',';
    throw UsageError("--decimal is point or comma, not '" + text + "'");
}

DateOrder dateOrderOf(const std::string& text) {
    if (text == "dmy") return DateOrder::DayMonthYear;
    if (text == "mdy") return DateOrder::MonthDayYear;
    if (text == "ymd") return DateOrder::YearMonthDay;
    throw UsageError("--dates is dmy (day, month, year), mdy or ymd, not '" + text + "'");
}

/// Sets the codes of --missing as soon as their variables exist: some are computed later.
class MissingCodes {
public:
    explicit MissingCodes(const std::vector<std::string>& entries) {
        for (const std::string& entry : entries) {
            const auto equals = entry.rfind('=');
            if (equals == std::string::npos || equals == 0 || equals + 1 == entry.size())
                throw UsageError("--missing is VARIABLE=CODE, not '" + entry + "'");
            pending_.push_back({entry.substr(0, equals), entry.substr(equals + 1)});
        }
    }

    void setThoseThere(DataSet& data) {
        std::erase_if(pending_, [&](const Entry& entry) {
            if (!data.find(entry.variable)) return false;
            set(data, entry);
            return true;
        });
    }

    void setAll(DataSet& data) {
        for (const Entry& entry : pending_)
            set(data, entry);
    }

private:
    struct Entry {
        std::string variable;
        std::string code;
    };

    void set(DataSet& data, const Entry& entry) {
        const int variable = variableOf(data, "--missing", entry.variable);
        const auto value = resolveCode(data, variable, entry.code);
        const std::string& name = data.variable(variable).name;
        if (!value)
            throw UsageError("--missing: '" + entry.code + "' is neither a number nor a value label of '" +
                             name + "', which has " + fewCodesText(data, variable));
        const auto [before, first] = done_.try_emplace(variable, entry.code);
        if (!first && *value != data.variable(variable).missingCode) {
            const std::string here = nameInExpression(name);
            const std::string one = numberText(data.variable(variable).missingCode);
            const std::string recoded = definitionText(
                {name + "_2", "if(" + here + " = " + numberText(*value) + ", " + one + ", " + here + ")"});
            throw UsageError("--missing: '" + name + "' can have one missing-data code, not two (" +
                             before->second + " and " + entry.code +
                             "); make them one in a new variable, and take that instead: " + "--define \"" +
                             recoded + "\" --missing \"" + name + "_2=" + one + "\"");
        }
        data.variable(variable).missingCode = *value;
    }

    std::vector<Entry> pending_;
    std::map<int, std::string> done_; ///< with the text of the code as given
};

/// The values of a condition's variables, for the message that no case satisfies it.
std::string valuesIn(const DataSet& data, const std::string& condition) {
    constexpr std::size_t most = 3;
    std::string text;
    const Expression expression(condition, data);
    const std::vector<int>& used = expression.referencedVariables();
    for (std::size_t i = 0; i < used.size() && i < most; ++i)
        text += "; '" + data.variable(used[i] - 1).name + "' has " + fewCodesText(data, used[i] - 1);
    return text;
}

} // namespace

int variableOf(const DataSet& data, const std::string& option, const std::string& name) {
    try {
        return data.require(name);
    } catch (const DataError& error) {
        throw UsageError(option + ": " + error.what());
    }
}

void DataOptions::declare(CLI::App& app) {
    app.add_option("DATA", path_,
                   "the data file (CSV, or text separated by tabs, semicolons or |; also packed: .gz); - for "
                   "standard input")
        ->type_name("");
    const std::string group = "Data";
    define_.declare(app, group);
    app.add_option("--select", select_,
                   "take only the cases for which the condition holds, e.g. \"age >= 60\"")
        ->type_name("EXPRESSION")
        ->group(group);
    app.add_option("--weight", weight_, "take a case of weight w >= 2 ceil(w) times, any other once")
        ->type_name("V")
        ->group(group);
    app.add_option("--missing", missing_,
                   "a number that stands for a missing value of a variable; may be repeated")
        ->type_name("V=CODE")
        ->allow_extra_args(false)
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group(group);
    app.add_option("--separator", separator_,
                   "between cells: comma, semicolon, tab, pipe or another sign [detected]")
        ->type_name("S")
        ->group(group);
    app.add_option("--decimal", decimal_, "decimal mark: point or comma [detected]")
        ->type_name("MARK")
        ->group(group);
    app.add_option("--dates", dates_,
                   "order of day, month and year in dates such as 01/02/1995: dmy, mdy or ymd [detected]")
        ->type_name("ORDER")
        ->group(group);
    app.add_flag("--header", header_, "the first line holds the names [detected]")->group(group);
    app.add_flag("--no-header", noHeader_, "there is no line of names: variables are Var1, Var2, ...")
        ->group(group);
}

DataSet DataOptions::readFile(const std::stop_token& stop) const {
    if (path_.empty()) throw UsageError("which data? Name a data file", true);
    if (header_ && noHeader_) throw UsageError("--header and --no-header contradict each other");
    ReadOptions options;
    options.stop = stop;
    if (header_ || noHeader_) options.header = header_ ? HeaderLine::Yes : HeaderLine::No;
    if (!separator_.empty()) options.separator = separatorOf(separator_);
    if (!decimal_.empty()) options.decimalMark = decimalMarkOf(decimal_);
    if (!dates_.empty()) options.dates = dateOrderOf(dates_);
    return readData(path_, options);
}

void DataOptions::open(ActiveData& data, std::optional<DataSet> given, const std::stop_token& stop) const {
    const std::vector<Definition> definitions = define_.read();
    MissingCodes missing(missing_);
    DataSet read = given ? std::move(*given) : readFile(stop);
    missing.setThoseThere(read);
    define(
        read, definitions, [&] { missing.setThoseThere(read); }, stop);
    missing.setAll(read);
    const int all = read.caseCount();
    data.open(std::move(read));
    data.select(select_);
    if (all > 0 && data.selectedCount() == 0)
        throw UsageError("--select \"" + select_ + "\" holds for none of the " + std::to_string(all) +
                         " cases" + valuesIn(data.dataSet(), select_));
    try {
        data.weightBy(weight_);
    } catch (const DataError& error) {
        throw UsageError(std::string{"--weight: "} + error.what());
    }
}

} // namespace korvana::cli
