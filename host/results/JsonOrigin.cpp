#include "host/results/JsonOrigin.h"

#include <algorithm>
#include <variant>

namespace korvana {
namespace {

struct SettingWriter {
    JsonText& json;

    void operator()(bool value) const { json.raw(value ? "true" : "false"); }
    void operator()(int value) const { json.number(value); }
    void operator()(double value) const { json.number(value); }
    void operator()(const std::string& value) const { json.string(value); }
    void operator()(const Setting::Choice& value) const {
        json.raw("{\"name\": ").string(value.name).raw(", \"text\": ").string(value.text).raw("}");
    }
    void operator()(const Setting::Code& value) const {
        json.raw("{\"code\": ").number(value.value).raw(", \"label\": ").string(value.label).raw("}");
    }
    void operator()(const Setting::Role& value) const {
        json.raw("{\"role\": ").string(value.prompt).raw(", \"variables\": ");
        json.strings(value.variables).raw("}");
    }
    template <class T>
    void operator()(const std::vector<T>& list) const {
        json.array(list, ", ", *this);
    }
};

void writeSettings(const std::vector<Setting>& settings, JsonText& json) {
    json.raw("{");
    for (std::size_t place = 0; place < settings.size(); ++place) {
        if (place > 0) json.raw(", ");
        json.string(settings[place].id).raw(": ");
        std::visit(SettingWriter{json}, settings[place].value);
    }
    json.raw("}");
}

/// The layout options that the user gave, and null for what was detected.
void writeReading(const ReadSettings& reading, JsonText& json) {
    const auto sign = [&json](const std::optional<char>& told) {
        if (told)
            json.string(std::string(1, *told));
        else
            json.raw("null");
    };
    json.raw("{\"separator\": ");
    sign(reading.separator);
    json.raw(", \"decimal\": ");
    sign(reading.decimalMark);
    json.raw(", \"dates\": ");
    json.raw(!reading.dates                              ? "null"
             : *reading.dates == DateOrder::DayMonthYear ? "\"dmy\""
             : *reading.dates == DateOrder::MonthDayYear ? "\"mdy\""
                                                         : "\"ymd\"");
    json.raw(", \"header\": ");
    json.raw(reading.header == HeaderLine::Automatic ? "null"
             : reading.header == HeaderLine::Yes     ? "true"
                                                     : "false");
    json.raw("}");
}

void writeRun(const RunOrigin& run, JsonText& json) {
    const DataState& data = run.data;
    json.raw("{\"name\": ")
        .string(run.name)
        .raw(", \"data\": {\"file\": ")
        .string(data.file)
        .raw(", \"cases\": ")
        .number(data.cases);
    json.raw(", \"selectedCases\": ").number(data.selectedCases);
    json.raw(",\n  \"condition\": ").string(data.condition);
    json.raw(", \"weightVariable\": ").string(data.weightVariable);
    json.raw(",\n  \"missingCodes\": ").array(run.missingCodes, ", ", [&json](const MissingCode& missing) {
        json.raw("{\"variable\": ")
            .string(missing.variable)
            .raw(", \"code\": ")
            .number(missing.code)
            .raw("}");
    });
    json.raw(",\n  \"definitions\": ").array(run.definitions, ", ", [&json](const ComputedName& computed) {
        json.raw("{\"variable\": ").string(computed.variable);
        json.raw(", \"expression\": ").string(computed.expression).raw("}");
    });
    json.raw(",\n  \"reading\": ");
    writeReading(run.reading, json);
    json.raw("},\n \"dialogs\": ").array(run.dialogs, ",\n  ", [&json](const DialogSettings& dialog) {
        json.raw("{\"id\": ").string(dialog.id).raw(", \"title\": ").string(dialog.title);
        json.raw(", \"settings\": ");
        writeSettings(dialog.settings, json);
        json.raw("}");
    });
    json.raw("}");
}

} // namespace

JsonOrigins::JsonOrigins(const ResultsBook& book, JsonText& json)
    : book_(book), json_(json), ids_(outputIds(book)) {
    for (const ResultsBook::Output& output : book.outputs) {
        const auto& origin = ResultsBook::originOf(output);
        if (origin == nullptr || origin->run == nullptr) continue;
        if (std::find(runs_.begin(), runs_.end(), origin->run.get()) == runs_.end())
            runs_.push_back(origin->run.get());
    }
}

void JsonOrigins::writeRuns() {
    json_.array(runs_, ",\n ", [this](const RunOrigin* run) { writeRun(*run, json_); });
}

void JsonOrigins::write(std::size_t place) {
    json_.raw("\"id\": ").string(ids_[place]).raw(", \"origin\": ");
    const auto& origin = ResultsBook::originOf(book_.outputs[place]);
    if (origin == nullptr) {
        json_.raw("null,\n  ");
        return;
    }
    json_.raw("{\"action\": ").string(origin->id).raw(", \"label\": ").string(origin->label);
    const auto run = std::find(runs_.begin(), runs_.end(), origin->run.get());
    json_.raw(", \"run\": ");
    if (run == runs_.end()) {
        json_.raw("null");
    } else {
        json_.number(static_cast<double>(run - runs_.begin()));
    }
    json_.raw(", \"settings\": ");
    writeSettings(origin->settings, json_);
    json_.raw("},\n  ");
}

} // namespace korvana
