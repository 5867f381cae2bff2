#include "apps/cli/AnalysisCommand.h"

#include "apps/cli/Lists.h"
#include "apps/cli/MemoryRefusals.h"
#include "apps/cli/PhaseTimes.h"
#include "apps/cli/ProgressLine.h"
#include "host/results/JoinedRuns.h"

#include <algorithm>

namespace korvana::cli {

void AnalysisCommand::declareOutputs(CLI::App& app) {
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
}

void AnalysisCommand::declareForPrograms(CLI::App& app) {
    data_.declare(app);
    declareOptions(app);
    declareOutputs(app);
}

void AnalysisCommand::declare(CLI::App& app) {
    data_.declare(app);
    declareOptions(app);
    declareOutputs(app);
    output_.declare(app);
    log_.declare(app);
    app.add_flag("--timing", timing_, "report on standard error how long each phase took")->group("Output");
    app.footer("Example: " + app.get_name() + " " + description_.example +
               "\n\n"
               "Without -o the report goes to standard output and nothing else does. Messages,\n"
               "notes and progress go to standard error. Exit codes: 0 results; 1 the analysis\n"
               "refused the data; 2 wrong usage, data that cannot be read, results that cannot be\n"
               "written, or too little memory; 130 stopped by Ctrl-C, 143 and 129 by SIGTERM and\n"
               "SIGHUP.");
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

AnalysisCommand::Tally AnalysisCommand::makeOutputs(const Work& work, Script& script, bool ofAllRuns) {
    Tally tally;
    for (const std::size_t place : work.chosen) {
        const Output& output = description_.outputs[place];
        if (isOfAllRuns(output) != ofAllRuns) continue;
        if (list_.empty() && !isMadeUnasked(output, script)) continue;
        for (const Settings& settings : settingsOf(output)) {
            for (const auto& [member, value] : settings)
                script.put(member, value);
            makeOutput(work, output, script, tally);
        }
    }
    work.progress.clear();
    for (const std::string& reason : tally.reasons)
        work.console.say(reason);
    return tally;
}

void AnalysisCommand::makeOutput(const Work& work, const Output& output, Script& script, Tally& tally) {
    for (const char* const action : output.actions) {
        bool made = false;
        (void)work.refusals.more(); // what an earlier output got over
        try {
            made = script.press(action);
        } catch (const ScriptError& error) { // one without memory, say: the others may have enough
            tally.reasons.push_back(std::string{output.name} + " is not made: " + error.what());
        }
        if (!made && work.refusals.more()) tally.lackedMemory = true;
        log_.tell(std::string{made ? "Made " : "Not made: "} + action);
        ++(made ? tally.made : tally.failed);
    }
}

bool AnalysisCommand::runOnce(const Work& work, std::size_t run, bool& lackedMemory) {
    Script script(work.session);
    const auto say = [&](const std::string& text) {
        work.progress.clear();
        const std::string name = runs()[run];
        work.console.say(name.empty() ? text : name + ": " + text);
    };
    (void)work.refusals.more();
    bool computed = false;
    Tally tally;
    try {
        computed = compute(script, run);
        if (computed) {
            prepareOutputs(script);
            tally = makeOutputs(work, script, false);
        }
    } catch (const ScriptError& error) {
        say(error.what());
        lackedMemory |= work.refusals.more();
        return false;
    }
    lackedMemory |= computed ? tally.lackedMemory : work.refusals.more();
    if (computed) return tally.made > 0 || tally.failed == 0; // their messages say why
    if (work.progress.messageCount() == 0) say("the analysis ended without a result and without a message");
    const std::vector<ResultMessage>& messages = work.session.book().messages;
    if (const std::string text = advice(messages.empty() ? 0 : messages.back().id); !text.empty()) say(text);
    return false;
}

AnalysisCommand::Results AnalysisCommand::runAll(const Work& work) {
    Results results;
    std::vector<NamedBook> books;
    ResultsBook ofAll;
    work.session.start();
    const std::vector<std::string> names = runs();
    for (std::size_t run = 0; run < names.size(); ++run) {
        work.progress.begin(names[run]);
        if (!names[run].empty()) log_.tell("Run: " + names[run]);
        const bool succeeded = runOnce(work, run, results.lackedMemory);
        books.push_back({names[run], work.session.takeBook()});
        if (succeeded && ++results.succeeded == 1) {
            Script script(work.session);
            work.progress.begin({});
            results.lackedMemory |= makeOutputs(work, script, true).lackedMemory;
            ofAll = work.session.takeBook();
        }
        results.failed += succeeded ? 0 : 1;
    }
    results.run = work.session.run();
    work.session.close(); // the analysis' own arrays are not needed any more
    books.push_back({{}, std::move(ofAll)});
    results.book = joinedRuns(std::move(books));
    return results;
}

AnalysisCommand::Results
AnalysisCommand::perform(const Around& around, const std::vector<std::size_t>& chosen, Embedding embedding) {
    struct Answers final : FrontEnd {
        explicit Answers(AnalysisCommand& asked) : command(asked) {}
        bool ask(const ResultMessage& question, ozm::CAnalysisDialog* /*window*/) override {
            return command.answer(question);
        }
        AnalysisCommand& command;
    } answers(*this);
    Session session(load(), {.frontEnd = &answers,
                             .stops = embedding.stops,
                             .modalScript = [this](ozm::AutomationObject& dialog) { fillIn(dialog); }});
    session.addObserver(around.refusals);
    session.addObserver(around.progress);
    session.addObserver(around.times);
    session.addObserver(log_);
    if (embedding.observer != nullptr) session.addObserver(*embedding.observer);
    if (!embedding.data) {
        log_.tell("Reading " + data_.source());
        around.progress.status("Reading " + data_.source() + " ...");
    }
    around.times.status("Opening the file");
    const auto open = [&](const std::stop_token& stop) {
        data_.open(session.data(), std::move(embedding.data), stop);
    };
    if (embedding.opening) {
        embedding.opening(open);
    } else {
        open({});
    }
    prepareData(session.data());
    log_.tellData(session.data());
    around.times.status("Checking codes");
    const std::vector<ResultMessage> remarks = checkData(session.data());
    around.progress.clear();
    for (const ResultMessage& remark : remarks)
        if (remark.severity == ResultMessage::Severity::Warning && around.console.heard == nullptr)
            around.console.say("warning: " + remark.text);
    around.times.status({});

    Results results = runAll({session, around.progress, around.console, around.refusals, chosen});
    ResultsBook& book = results.book;
    book.analysis = description_.title;
    if (results.failed > 0) book.status = 1;
    for (const ResultMessage& remark : remarks) {
        if (remark.severity == ResultMessage::Severity::Note)
            book.notes.push_back(remark.text);
        else
            book.messages.push_back(remark);
    }
    return results;
}

int AnalysisCommand::run(Console& console) {
    output_.check(data_.path());
    checkOptions();
    const std::vector<std::size_t> chosen = chosenOutputs();
    if (std::none_of(chosen.begin(), chosen.end(),
                     [&](std::size_t place) { return description_.outputs[place].isChart; }))
        output_.checkWithoutChart(list_);
    MemoryRefusals refusals;
    PhaseTimes times;
    ProgressLine progress(console, output_.quiet(), log_.isWanted());
    log_.begin(console);
    const Results results = perform({console, progress, refusals, times}, chosen, {});
    if (results.lackedMemory)
        console.say(
            "there is not enough memory: what is named above is not made; leave out cases or variables "
            "that are not needed");
    if (results.succeeded == 0) return results.lackedMemory ? ExitUsage : ExitRefused;
    times.status("Writing");
    log_.tell("Writing results");
    const int exit = output_.write(results.book, console);
    output_.record(results.book, results.run, console);
    log_.tell("Done");
    if (timing_) times.write(console.err);
    if (exit == ExitResults && results.lackedMemory) return ExitUsage;
    return exit == ExitResults && results.failed > 0 ? ExitRefused : exit;
}

ResultsBook AnalysisCommand::call(Embedding embedding) {
    checkOptions();
    const std::vector<std::size_t> chosen = chosenOutputs();
    std::ostream nowhere(nullptr);
    Console silent{nowhere, nowhere};
    std::vector<std::string> said;
    Console console{nowhere, nowhere, false, &said};
    MemoryRefusals refusals(MemoryRefusals::Of::Nobody);
    PhaseTimes times;
    ProgressLine progress(silent, true, true);
    StopSignals* const stops = embedding.stops;
    Results results = perform({console, progress, refusals, times}, chosen, std::move(embedding));
    if (stops != nullptr && stops->has(StopSignals::External)) throw CallStopped();
    std::vector<ResultMessage>& messages = results.book.messages;
    if (results.succeeded > 0) {
        for (std::string& text : said)
            messages.push_back({0, std::move(text), {}, ResultMessage::Severity::Warning});
        return std::move(results.book);
    }
    // The last error says why; what the program adds to it is advice.
    ResultMessage why;
    for (const ResultMessage& message : messages)
        if (message.id != 0 && (message.severity >= why.severity || why.id == 0)) why = message;
    for (std::string& text : said) {
        std::string& place = why.text.empty() ? why.text : why.detail;
        place.append(place.empty() ? "" : "\n").append(text);
    }
    why.severity = ResultMessage::Severity::Error;
    throw CallRefused(std::move(why), std::move(messages));
}

} // namespace korvana::cli
