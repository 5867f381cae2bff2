#include "host/results/OriginText.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <string_view>

#include "host/results/FormatNumber.h"

namespace korvana {
namespace {

std::tm localTime(std::chrono::system_clock::time_point time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local{};
    (void)::localtime_r(&seconds, &local);
    return local;
}

std::string codeText(const Setting::Code& code) {
    if (std::isnan(code.value)) return "not set";
    const std::string number = formatNumber(code.value);
    return code.label.empty() || code.label == number ? number : number + " = " + code.label;
}

template <class List, class Text>
std::string joined(const List& list, Text text, const char* separator = ", ") {
    std::string line;
    for (const auto& one : list)
        line += (line.empty() ? "" : separator) + text(one);
    return line;
}

std::string roleText(const Setting::Role& role) {
    return joined(role.variables, [](const std::string& name) { return name; });
}

/// "time, status"; where a role has several variables "time; status; age, karno; sex": which has which is
/// seen.
std::string rolesText(const std::vector<Setting::Role>& roles) {
    std::vector<Setting::Role> filled;
    bool several = false;
    for (const Setting::Role& role : roles) {
        if (!role.variables.empty()) filled.push_back(role);
        several = several || role.variables.size() > 1;
    }
    return joined(filled, roleText, several ? "; " : ", ");
}

/// The text of a setting's value; empty when it has none.
struct ValueText {
    std::string operator()(bool on) const { return on ? "yes" : "no"; }
    std::string operator()(int number) const { return std::to_string(number); }
    std::string operator()(double number) const { return std::isnan(number) ? "" : formatNumber(number); }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(const Setting::Choice& choice) const { return choice.text; }
    std::string operator()(const Setting::Code& code) const { return codeText(code); }
    std::string operator()(const std::vector<Setting::Role>& roles) const { return rolesText(roles); }
    std::string operator()(const std::vector<Setting::Code>& codes) const { return joined(codes, codeText); }
    std::string operator()(const std::vector<double>& numbers) const {
        return joined(numbers, [](double each) { return std::isnan(each) ? "." : formatNumber(each); });
    }
    std::string operator()(const std::vector<std::string>& texts) const {
        return joined(texts, [](const std::string& text) { return text; });
    }
};

/// "Code for complete responses: 1 = dead".
std::string settingText(const Setting& setting) {
    const std::string value = std::visit(ValueText{}, setting.value);
    if (value.empty()) return {};
    std::string label = setting.label;
    while (!label.empty() && (label.back() == ':' || label.back() == ' '))
        label.pop_back();
    return label.empty() ? value : label + ": " + value;
}

std::string count(int number) {
    return std::to_string(number) + (number == 1 ? " case" : " cases");
}

std::string casesText(const DataState& data) {
    if (data.condition.empty()) return count(data.cases);
    return std::to_string(data.selectedCases) + " of " + count(data.cases) + ": " + data.condition;
}

void addSettings(std::vector<std::string>& lines, const std::vector<Setting>& settings) {
    for (const Setting& setting : settings) {
        if (const auto* roles = std::get_if<std::vector<Setting::Role>>(&setting.value)) {
            for (const Setting::Role& role : *roles)
                if (!role.variables.empty()) lines.push_back(role.prompt + ": " + roleText(role));
        } else if (std::string text = settingText(setting); !text.empty()) {
            lines.push_back(std::move(text));
        }
    }
}

void add(std::string& line, const std::string& part) {
    if (!part.empty()) line += (line.empty() ? "" : " | ") + part;
}

} // namespace

const DialogSettings& specificationOf(const RunOrigin& run) {
    const auto namesVariables = [](const DialogSettings& dialog) {
        return std::any_of(dialog.settings.begin(), dialog.settings.end(), [](const Setting& setting) {
            return std::holds_alternative<std::vector<Setting::Role>>(setting.value);
        });
    };
    const auto last = std::find_if(run.dialogs.rbegin(), run.dialogs.rend(), namesVariables);
    return last != run.dialogs.rend() ? *last : run.dialogs.back();
}

std::string originLine(const RunOrigin& run) {
    std::string line = std::filesystem::path(run.data.file).filename().string();
    add(line, casesText(run.data));
    if (!run.data.weightVariable.empty()) add(line, "weighted by " + run.data.weightVariable);
    if (run.dialogs.empty()) return line;
    for (const DialogSettings* dialog = &specificationOf(run); dialog <= &run.dialogs.back(); ++dialog)
        for (const Setting& setting : dialog->settings) {
            const auto* roles = std::get_if<std::vector<Setting::Role>>(&setting.value);
            add(line, roles != nullptr ? rolesText(*roles) : settingText(setting));
        }
    return line;
}

std::string differingSettings(const OutputOrigin& origin, const std::vector<const OutputOrigin*>& others) {
    std::string line;
    for (const Setting& setting : origin.settings) {
        const auto differs = [&setting](const OutputOrigin* other) {
            return std::any_of(other->settings.begin(), other->settings.end(),
                               [&setting](const Setting& its) {
                                   return its.id == setting.id && settingText(its) != settingText(setting);
                               });
        };
        if (std::any_of(others.begin(), others.end(), differs)) add(line, settingText(setting));
    }
    return line;
}

std::string timeOfDay(const OutputOrigin& origin) {
    const std::tm time = localTime(origin.made);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%H:%M:%S", &time)};
}

std::string dateAndTime(const OutputOrigin& origin) {
    const std::tm time = localTime(origin.made);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &time)};
}

std::vector<std::string> originLines(const RunOrigin& run) {
    std::vector<std::string> lines;
    const DataState& data = run.data;
    lines.push_back("Data: " + data.file);
    lines.push_back("Cases: " + casesText(data));
    lines.push_back("Weights: " + (data.weightVariable.empty() ? "none" : data.weightVariable));
    for (const MissingCode& missing : run.missingCodes)
        lines.push_back("Missing code of " + missing.variable + ": " + formatNumber(missing.code));
    for (const DialogSettings& dialog : run.dialogs)
        addSettings(lines, dialog.settings);
    return lines;
}

std::vector<std::string> originLines(const OutputOrigin& origin) {
    std::vector<std::string> lines{"Made: " + dateAndTime(origin)};
    if (origin.run != nullptr)
        for (std::string& line : originLines(*origin.run))
            lines.push_back(std::move(line));
    addSettings(lines, origin.settings);
    if (origin.run != nullptr)
        lines.insert(lines.end(), origin.run->remarks.begin(), origin.run->remarks.end());
    return lines;
}

} // namespace korvana
