#pragma once

#include "apps/cli/Command.h"
#include "apps/cli/DataOptions.h"
#include "apps/cli/EmbeddedErrors.h"
#include "apps/cli/OutputOptions.h"
#include "apps/cli/Script.h"
#include "apps/cli/VerboseLog.h"
#include "host/session/ModuleLibrary.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace korvana::cli {

class MemoryRefusals;
class PhaseTimes;
class ProgressLine;

/// What a program gives to a command that it calls, in place of a file and of signals.
struct Embedding {
    std::optional<DataSet> data{};       ///< nothing: the file that DATA names
    StopSignals* stops = nullptr;        ///< nullptr: nobody stops the call
    SessionObserver* observer = nullptr; ///< may be nullptr
    /// Does the work that opens the data, on a thread of its choice, and may stop it; the work may throw.
    std::function<void(const std::function<void(const std::stop_token&)>& work)> opening{};
};

/// A command that runs one analysis from its startup dialog to its results: the part that all share. A
/// derived command adds its options, the way to its results dialog and the outputs of that dialog.
class AnalysisCommand : public Command {
public:
    void declare(CLI::App& app) final;
    [[nodiscard]] std::vector<std::string> choices(const std::string& option) const override;
    int run(Console& console) final;

    /// Declares the options that make sense in a call from a program, which has no files and streams.
    void declareForPrograms(CLI::App& app);
    /// The same run without console, files and signals: the results are returned, with all that was said
    /// about them. Throws what `run` throws, CallRefused and CallStopped.
    [[nodiscard]] ResultsBook call(Embedding embedding);

    /// An output, named for --outputs, and the actions of the results dialog that make it.
    struct Output {
        const char* name;
        std::vector<const char*> actions;
        const char* help;     ///< what it shows, empty when the name says it
        bool onScreen;        ///< made by default without -o
        bool isChart = false; ///< a chart and nothing else
    };
    /// Values for properties of the results dialog.
    using Settings = std::vector<std::pair<const char*, ozm::AutomationValue>>;
    struct Description {
        const char* title;   ///< of the results
        const char* example; ///< the arguments of a typical call, for the help text
        std::vector<Output> outputs;
        const char* unasked = "all"; ///< what is made by default with -o, for the help
    };

    [[nodiscard]] const Description& description() const { return description_; }

protected:
    explicit AnalysisCommand(Description description) : description_(std::move(description)) {}

    [[nodiscard]] virtual Analysis load() const = 0;
    virtual void declareOptions(CLI::App& app) = 0;
    /// Checks what can be judged without the data. Throws UsageError.
    virtual void checkOptions() {}
    /// Adds to the data what the options ask for. Throws UsageError.
    virtual void prepareData(ActiveData& /*data*/) {}
    /// Checks the options against the data; returns notes and warnings for the user. Throws UsageError.
    virtual std::vector<ResultMessage> checkData(const ActiveData& data) = 0;
    /// The names of the runs over the same cases that a call makes, one after another; by default it is one,
    /// without a name.
    [[nodiscard]] virtual std::vector<std::string> runs() const { return {std::string{}}; }
    /// Leads a session to the results dialog of a run: the first one a session that has started, a further
    /// one from where the last has ended. False when the analysis does not get there.
    virtual bool compute(Script& script, std::size_t run) = 0;
    /// Sets the members of a modal dialog that the analysis opens on its way; OK is pressed afterwards.
    /// Throws ScriptError.
    virtual void fillIn(ozm::AutomationObject& /*dialog*/) {}
    /// The answer to a yes/no question of the analysis.
    virtual bool answer(const ResultMessage& /*question*/) { return false; }
    /// What to try where a run came to no result, beyond what the analysis said itself; may be empty.
    /// @param message  the number of what it said last, 0 for nothing
    [[nodiscard]] virtual std::string advice(int /*message*/) const { return {}; }
    /// Whether an output is made by default without -o.
    [[nodiscard]] virtual bool isOnScreen(const Output& output) const { return output.onScreen; }
    /// Whether an output is made by default; called when the results dialog is open.
    [[nodiscard]] virtual bool isMadeUnasked(const Output& /*output*/, const Script& /*script*/) const {
        return true;
    }
    /// Whether an output is about all runs together: it is made once.
    [[nodiscard]] virtual bool isOfAllRuns(const Output& /*output*/) const { return false; }
    /// Sets the controls of the results dialog before outputs are made.
    virtual void prepareOutputs(Script& /*script*/) {}
    /// The settings that an output is made with: once for each of them. By default it is made once, with the
    /// results dialog as it is.
    [[nodiscard]] virtual std::vector<Settings> settingsOf(const Output& /*output*/) const {
        return {Settings{}};
    }

private:
    /// How many outputs were made, and how many failed.
    struct Tally {
        int made = 0;
        int failed = 0;
        bool lackedMemory = false;        ///< one that failed
        std::vector<std::string> reasons; ///< of those that failed without a message of the analysis
    };
    /// Who is told about a run.
    struct Around {
        Console& console;
        ProgressLine& progress;
        MemoryRefusals& refusals;
        PhaseTimes& times;
    };
    struct Work {
        Session& session;
        ProgressLine& progress;
        Console& console;
        MemoryRefusals& refusals;
        const std::vector<std::size_t>& chosen; ///< outputs, by their places
    };
    struct Results {
        int succeeded = 0; ///< runs
        int failed = 0;
        bool lackedMemory = false;
        ResultsBook book;
        std::shared_ptr<const RunOrigin> run; ///< the last one
    };
    void declareOutputs(CLI::App& app);
    [[nodiscard]] std::vector<std::size_t> chosenOutputs() const;
    Results perform(const Around& around, const std::vector<std::size_t>& chosen, Embedding embedding);
    Results runAll(const Work& work);
    bool runOnce(const Work& work, std::size_t run, bool& lackedMemory);
    Tally makeOutputs(const Work& work, Script& script, bool ofAllRuns);
    void makeOutput(const Work& work, const Output& output, Script& script, Tally& tally);

    Description description_;
    DataOptions data_;
    OutputOptions output_;
    std::string list_;
    VerboseLog log_;
    bool timing_ = false;
};

} // namespace korvana::cli
