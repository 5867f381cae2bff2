// Scripts of any lines drive the analyses over a few cases: "Member=VALUE" sets a property (JSON, or a text
// as it stands), "Member" calls an action, and a number in place of a name counts the members of the dialog
// that is open. Whatever they ask for, the answer is a value or an error in words, nothing is lost and
// nothing crashes.

#include "host/data/TextEncoding.h"
#include "host/session/Session.h"
#include "tests/fuzz/Scratch.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <dlfcn.h>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <unistd.h>

namespace korvana::fuzz {
namespace {

using ozm::AutomationObject;
using ozm::AutomationResult;
using ozm::AutomationValue;

constexpr std::size_t mostLines = 60;
constexpr double none = std::numeric_limits<double>::quiet_NaN();

/// Times, censoring, groups, two covariates, a date; and the rows of a table.
DataSet dataOf(int kind) {
    const int cases = kind % 4 == 3 ? 0 : 18;
    DataSet data("data.csv", cases);
    const auto add = [&](const char* name, auto cell) {
        Variable variable;
        variable.name = name;
        if (variable.name == "group") variable.valueLabels = {{1.0, "one"}, {2.0, "two"}};
        Column column(static_cast<std::size_t>(cases));
        for (int i = 0; i < cases; ++i)
            column.data()[i] = kind % 4 == 1 && i % 5 == 2 ? none : cell(i);
        data.addVariable(std::move(variable), std::move(column));
    };
    add("time", [&](int i) { return kind % 4 == 2 ? 4.0 : (i * 7) % 19 + 1; });
    add("status", [](int i) { return i % 3 != 0 ? 1.0 : 0.0; });
    add("group", [](int i) { return 1.0 + i % 3; });
    add("x", [](int i) { return (i * 5) % 11 / 3.0; });
    add("y", [](int i) { return i % 2 != 0 ? 1.0 : -1.0; });
    add("day", [](int i) { return 2450000.0 + i * i; });
    add("row", [](int i) { return double(i); });
    add("died", [](int i) { return i < 17 ? 5.0 : 0.0; });
    return data;
}

AutomationValue valueOf(const nlohmann::json& json) {
    switch (json.type()) {
    case nlohmann::json::value_t::boolean:
        return json.get<bool>();
    case nlohmann::json::value_t::number_integer:
    case nlohmann::json::value_t::number_unsigned: {
        const auto number = json.get<double>();
        if (std::abs(number) < 1e9) return static_cast<int>(number);
        return number;
    }
    case nlohmann::json::value_t::number_float:
        return json.get<double>();
    case nlohmann::json::value_t::string:
        return json.get<std::string>();
    case nlohmann::json::value_t::array: {
        AutomationValue::List list;
        for (const auto& each : json)
            list.push_back(valueOf(each));
        return list;
    }
    default:
        return {};
    }
}

AutomationValue valueOf(std::string_view text) {
    const auto json = nlohmann::json::parse(text, nullptr, false);
    return json.is_discarded() ? AutomationValue{std::string{text}} : valueOf(json);
}

/// Files stay in the folder of this program, and pictures, which are drawn elsewhere, undrawn.
bool isFileElsewhere(std::string_view member, const AutomationValue& value) {
    const auto* text = std::get_if<std::string>(&value.value);
    if (member != "ResultsSaveFileName" || text == nullptr || text->empty()) return false;
    return text->find('/') != std::string::npos ||
           !(text->ends_with(".csv") || text->ends_with(".txt") || text->ends_with(".json"));
}

class Script {
public:
    explicit Script(std::string_view text) : rest_(text), utf8_(isUtf8(text)) {
        int data = 0;
        if (rest_.starts_with("data=")) data = next().back() & 3;
        session_.data().open(dataOf(data));
        session_.start();
    }

    void run() {
        while (const auto line = nextLine()) {
            std::optional<AutomationObject> dialog = session_.currentDialog();
            if (!dialog) {
                session_.start();
                dialog = session_.currentDialog();
                require(dialog.has_value(), "the analysis begins again");
            }
            perform(*dialog, *line);
            session_.pump();
            if (dialog->Dialog().IsClosed())
                for (const AutomationResult& answer : {dialog->Get("Name"), dialog->Call("OK")})
                    require(!answer.ok && answer.detail == "the dialog has been closed",
                            "a closed dialog says so", answer.detail);
        }
        for (const ResultMessage& message : session_.book().messages)
            require(!utf8_ || (isUtf8(message.text) && isUtf8(message.detail)),
                    "no character of what is quoted is cut", message.detail);
        session_.close();
        require(session_.outstandingAllocations() == 0, "all memory is given back");
    }

private:
    std::string_view next() {
        const std::size_t end = std::min(rest_.find('\n'), rest_.size());
        const std::string_view line = rest_.substr(0, end);
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        return line;
    }
    std::optional<std::string_view> nextLine() {
        if (rest_.empty() || ++lines_ > mostLines) return std::nullopt;
        return next();
    }
    /// Until a line closes it.
    void operate(AutomationObject& modal) {
        while (!modal.Dialog().IsClosed()) {
            const auto line = nextLine();
            if (!line) return;
            perform(modal, *line);
        }
    }

    static std::string nameOf(const AutomationObject& dialog, std::string_view word) {
        std::size_t place = 0;
        const auto read = std::from_chars(word.data(), word.data() + word.size(), place);
        if (read.ec != std::errc{} || read.ptr != word.data() + word.size()) return std::string{word};
        const auto own = dialog.Dialog().Interface()->members;
        const auto base = ozm::BaseDialogInterface().members;
        place %= own.size() + base.size();
        return std::string{place < own.size() ? own[place].name : base[place - own.size()].name};
    }

    void perform(AutomationObject& dialog, std::string_view line) {
        const std::size_t sign = line.find('=');
        const std::string member = nameOf(dialog, line.substr(0, sign));
        if (sign == std::string_view::npos) {
            session_.nameFile("expressions.ini");
            return expect(dialog, member, dialog.Call(member));
        }
        const AutomationValue value = valueOf(line.substr(sign + 1));
        if (isFileElsewhere(member, value)) return;
        const AutomationResult before = dialog.Get(member);
        const AutomationResult put = dialog.Put(member, value);
        expect(dialog, member, put);
        if (dialog.Dialog().IsClosed()) return; // it went to another form
        const AutomationResult after = dialog.Get(member);
        if (put.ok)
            expect(dialog, member, after);
        else
            require(isSame(before.value, after.value), "what is refused changes nothing", member);
    }

    /// NaN is the same as NaN here.
    static bool isSame(const AutomationValue& one, const AutomationValue& other) {
        const auto* a = std::get_if<double>(&one.value);
        const auto* b = std::get_if<double>(&other.value);
        if (a != nullptr && b != nullptr && std::isnan(*a) && std::isnan(*b)) return true;
        const auto* list = std::get_if<AutomationValue::List>(&one.value);
        const auto* others = std::get_if<AutomationValue::List>(&other.value);
        if (list != nullptr && others != nullptr)
            return std::equal(list->begin(), list->end(), others->begin(), others->end(), isSame);
        return one == other;
    }

    static void expect(const AutomationObject& dialog, const std::string& member,
                       const AutomationResult& answer) {
        if (answer.ok) return;
        if (member.empty()) // which leaves nothing to name
            return require(!answer.error.empty() && !answer.detail.empty(), "an error says why");
        require(answer.error.starts_with(
                    "Exception in analysis method: " + std::string{dialog.Dialog().ClassName()} + "::"),
                "an error names the accessor", answer.error);
        require(answer.error.ends_with(member) && !answer.detail.empty(), "an error says why", answer.error);
    }

    std::string_view rest_;
    bool utf8_; ///< the script
    std::size_t lines_ = 0;
    Session session_{loadAnalysis(findModules()),
                     {.modalScript = [this](AutomationObject& modal) { operate(modal); }}};
};

} // namespace
} // namespace korvana::fuzz

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    // Unloading the module would lose the fuzzer's counters of it.
    for (const auto& module : korvana::findModules())
        if (dlopen(module.c_str(), RTLD_NOW | RTLD_NODELETE) == nullptr) return 1;
    return chdir(korvana::fuzz::scratch().folder().c_str());
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    korvana::fuzz::Script({reinterpret_cast<const char*>(bytes), size}).run();
    return 0;
}
