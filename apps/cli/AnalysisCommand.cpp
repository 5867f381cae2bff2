#include "apps/cli/AnalysisCommand.h"

#include "apps/cli/Lists.h"
#include "apps/cli/PhaseTimes.h"
#include "apps/cli/ProgressLine.h"

#include <algorithm>
#include <cstddef>

namespace korvana::cli {

void AnalysisCommand::declare(CLI::App& app) {
    data_.declare(app);
    declareOptions(app);
    std::string help = "what to make:";
    std::string onScreen;
    for (const Output& output : description_.outputs) {
        help += std::string{" "} + output.name;
        if (*output.help != '\0') help += std::string{" ("} + output.help + ")";
        help += ",";
        if (output.onScreen) onScreen += std::string{onScreen.empty() ? "" : ","} + output.name;
    }
    app.add_option("--outputs", list_,
                   help + " or all [" + onScreen + "; with -o: " + description_.unasked + "]")
        ->type_name("O[,O...]")
        ->group("Output");
    output_.declare(app);
    log_.declare(app);
    app.add_flag("--timing", timing_, "report on standard error how long each phase took")->group("Output");
    app.footer("Example: " + app.get_name() + " " + description_.example +
               "\n\n"
               "Without -o the report goes to standard output and nothing else does. Messages,\n"
               "notes and progress go to standard error. Exit codes: 0 results; 1 the analysis\n"
               "refused the data; 2 wrong usage, data that cannot be read or results that cannot\n"
               "be written; 130 stopped by Ctrl-C, 143 and 129 by SIGTERM and SIGHUP.");
}

std::vector<std::string> AnalysisCommand::choices(const std::string& option) const {
    std::vector<std::string> names;
    if (option != "outputs") return names;
    for (const Output& output : description_.outputs)
        names.emplace_back(output.name);
    names.emplace_back("all");
    return names;
}

std::vector<std::size_t> AnalysisCommand::chosenOutputs() const {
    std::vector<std::string_view> names;
    std::vector<std::size_t> onScreen;
    for (const Output& output : description_.outputs) {
        if (isOnScreen(output)) onScreen.push_back(names.size());
        names.emplace_back(output.name);
    }
    if (list_.empty() && !output_.toFiles()) return onScreen;
    return chooseFrom("--outputs", list_.empty() ? "all" : list_, names);
}

AnalysisCommand::Tally AnalysisCommand::makeOutputs(const std::vector<std::size_t>& chosen, Script& script) {
    Tally tally;
    for (const std::size_t place : chosen) {
        const Output& output = description_.outputs[place];
        if (list_.empty() && !isMadeUnasked(output, script)) continue;
        for (const Settings& settings : settingsOf(output)) {
            for (const auto& [member, value] : settings)
                script.put(member, value);
            makeOutput(output, script, tally);
        }
    }
    return tally;
}

void AnalysisCommand::makeOutput(const Output& output, Script& script, Tally& tally) {
    for (const char* const action : output.actions) {
        bool made = false;
        try {
            made = script.press(action);
        } catch (const ScriptError& error) { // one without memory, say: the others may have enough
            const std::string why = error.what();
            tally.reasons.push_back(std::string{output.name} + " is not made: " +
                                    why.substr(0, why.find(" (Exception in analysis method")));
        }
        log_.tell(std::string{made ? "Made " : "Not made: "} + action);
        ++(made ? tally.made : tally.failed);
    }
}

int AnalysisCommand::run(Console& console) {
    output_.check();
    checkOptions();
    const std::vector<std::size_t> chosen = chosenOutputs();
    if (std::none_of(chosen.begin(), chosen.end(),
                     [&](std::size_t place) { return description_.outputs[place].isChart; }))
        output_.checkWithoutChart(list_);
    PhaseTimes times;
    ProgressLine progress(console, output_.quiet(), log_.isWanted());
    struct Answers final : FrontEnd {
        explicit Answers(AnalysisCommand& asked) : command(asked) {}
        bool ask(const ResultMessage& question, ozm::CAnalysisDialog* /*window*/) override {
            return command.answer(question);
        }
        AnalysisCommand& command;
    } answers(*this);
    Session session(load(), {.frontEnd = &answers,
                             .modalScript = [this](ozm::AutomationObject& dialog) { fillIn(dialog); }});
    session.addObserver(progress);
    session.addObserver(times);
    session.addObserver(log_);
    log_.begin(console);
    log_.tell("Reading " + data_.source());
    progress.status("Reading " + data_.source() + " ...");
    times.status("Opening the file");
    data_.open(session.data());
    prepareData(session.data());
    log_.tellData(session.data());
    times.status("Checking codes");
    const std::vector<ResultMessage> remarks = checkData(session.data());
    for (const ResultMessage& remark : remarks) {
        if (remark.severity != ResultMessage::Severity::Warning) continue;
        progress.clear();
        console.say("warning: " + remark.text);
    }
    times.status({});

    try {
        session.start();
        Script script(session);
        Tally tally;
        const bool computed = compute(script);
        if (computed) {
            prepareOutputs(script);
            tally = makeOutputs(chosen, script);
        }
        progress.clear();
        for (const std::string& reason : tally.reasons)
            console.say(reason);
        if (!computed) {
            if (progress.messageCount() == 0)
                console.say("the analysis ended without a result and without a message");
            if (const std::string text = advice(); !text.empty()) console.say(text);
            return ExitRefused;
        }
        if (tally.made == 0 && tally.failed > 0) return ExitRefused; // their messages say why
    } catch (const ScriptError& error) {
        progress.clear();
        console.say(error.what());
        return ExitRefused;
    }
    session.close(); // the analysis' own arrays are not needed any more
    ResultsBook& book = session.book();
    book.analysis = description_.title;
    for (const ResultMessage& remark : remarks) {
        if (remark.severity == ResultMessage::Severity::Note)
            book.notes.push_back(remark.text);
        else
            book.messages.push_back(remark);
    }
    times.status("Writing");
    log_.tell("Writing results");
    const int exit = output_.write(book, console);
    log_.tell("Done");
    if (timing_) times.write(console.err);
    return exit;
}

} // namespace korvana::cli
