#include "apps/python/binding/Errors.h"
#include "apps/python/binding/Frames.h"
#include "apps/python/binding/Interrupts.h"
#include "apps/python/binding/Lease.h"
#include "apps/python/binding/Results.h"
#include "apps/python/binding/Working.h"

#include "apps/cli/EmbeddedCall.h"
#include "apps/cli/UsageError.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace korvana::python {
namespace {

py::list texts(const std::vector<std::string>& all) {
    py::list list;
    for (const std::string& each : all)
        list.append(text(each));
    return list;
}

/// The commands that are functions: (name, summary, options, outputs), each with all that its help tells.
py::list commands() {
    py::list all;
    for (const cli::ProgramCommand& command : cli::programCommands()) {
        py::list options;
        for (const cli::ProgramOption& option : command.options)
            options.append(py::make_tuple(text(option.name), text(option.value), text(option.help),
                                          text(option.group), texts(option.choices), option.isFlag,
                                          option.isList));
        py::list outputs;
        for (const cli::AnalysisCommand::Output& output : command.outputs) {
            py::list actions;
            for (const char* const action : output.actions)
                actions.append(text(action));
            outputs.append(py::make_tuple(text(output.name), actions, text(output.help)));
        }
        all.append(py::make_tuple(text(command.name), text(command.summary), options, outputs));
    }
    return all;
}

/// The actions that made the outputs of a book.
py::list actionsOf(const ResultsBook& book) {
    py::list actions;
    for (const ResultsBook::Output& output : book.outputs) {
        const auto& origin = ResultsBook::originOf(output);
        actions.append(text(origin == nullptr ? std::string{} : origin->id));
    }
    return actions;
}

/// Runs a command, and returns its book with the action that made each output.
/// @param file  bytes, empty where a frame is given
/// @param frame  a Frame or None
/// @param given  (name, values, whether they came as a list) of each option
py::tuple call(const std::string& name, const py::bytes& file, const py::object& frame,
               const std::vector<std::tuple<std::string, std::vector<std::string>, bool>>& given) {
    const Working working;
    const Lease lease("the call of '" + name +
                      "' has not ended yet, and a process runs one analysis at a time: wait until it has");
    StopSignals stops;
    Interrupts interrupts(stops);
    cli::Embedding embedding;
    if (!frame.is_none()) embedding.data = frame.cast<Frame&>().finish();
    embedding.stops = &stops;
    embedding.observer = &interrupts;
    std::vector<cli::GivenOption> options;
    for (const auto& [option, values, areEntries] : given)
        options.push_back({option, values, areEntries});
    const auto computes = [](const cli::GivenOption& option) { return option.name == "define"; };
    // A frame is opened at once: a thread for it would take a noticeable part of a call on a small one.
    if (frame.is_none() || std::any_of(options.begin(), options.end(), computes)) {
        embedding.opening = [&interrupts](const std::function<void(const std::stop_token&)>& work) {
            const py::gil_scoped_acquire lock;
            if (workInterruptibly(work)) return;
            interrupts.keepException();
            throw cli::CallStopped();
        };
    }
    const std::string path = file;
    Book made;
    try {
        const py::gil_scoped_release others;
        made.book =
            std::make_shared<const ResultsBook>(cli::callCommand(name, path, options, std::move(embedding)));
    } catch (const cli::CallStopped&) {
        if (interrupts.raisePending()) throw py::error_already_set();
        throw;
    } catch (const cli::UsageError& error) {
        raise("UsageError", text(error.what()));
    } catch (const cli::CallRefused& refused) {
        const ResultMessage& why = refused.message();
        raise("AnalysisError", why.id, text(why.text), text(why.detail));
    }
    if (interrupts.raisePending()) throw py::error_already_set();
    return py::make_tuple(made, actionsOf(*made.book));
}

} // namespace

void bindFunctions(py::module_& module) {
    module.def("commands", commands);
    module.def("call", call);
}

} // namespace korvana::python
