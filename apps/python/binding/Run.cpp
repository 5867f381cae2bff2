#include "apps/python/binding/Run.h"

#include "apps/python/binding/Errors.h"
#include "apps/python/binding/Library.h"
#include "apps/python/binding/Results.h"
#include "apps/python/binding/Values.h"

#include <cstdint>
#include <utility>

namespace korvana::python {
namespace {

constexpr const char* method = "Exception in analysis method: ";

py::tuple outcome(const ozm::AutomationResult& result) {
    return py::make_tuple(result.ok, toPython(result.value), text(result.error), text(result.detail));
}

std::string whyBusy(const Data& data) {
    const std::string file = data.active.dataSet().fileName();
    return (file.empty() ? std::string{"an analysis"} : "the analysis of '" + file + "'") +
           " is not closed yet, and a process runs one analysis at a time: call its close(), then start the "
           "next "
           "one";
}

} // namespace

/// One call of the analysis: nobody else uses it meanwhile, and its questions go to the handler.
class Run::Operation {
public:
    Operation(Run& run, const py::object& handler)
        : use_(*run.data_->gate), run_(run), before_(std::exchange(run.handler_, handler)) {
        if (run_.operations_++ > 0) return; // called back by a question or a modal dialog
        run_.said_.clear();
        run_.interrupts_.reset();
    }
    ~Operation() {
        run_.handler_ = before_;
        if (--run_.operations_ > 0) return;
        run_.interrupts_.reset();
        if (run_.session_ == nullptr) return;
        run_.book_ = run_.session_->sharedBook();
        if (!run_.session_->isActive()) run_.end();
    }
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    [[nodiscard]] bool isInner() const { return run_.operations_ > 1; }

    /// Lets the analysis work, without the interpreter's lock.
    template <class Work>
    void work(Work work) {
        {
            const py::gil_scoped_release others;
            work();
            // A dialog that waits for its operation to end goes on when that is done.
            if (!isInner()) run_.session_->pump();
        }
        if (!isInner() && run_.interrupts_.raisePending()) throw py::error_already_set();
    }

private:
    Use use_;
    Run& run_;
    py::handle before_;
};

Run::Run(std::shared_ptr<Data> data)
    : data_(std::move(data)), lease_(std::in_place, whyBusy(*data_)), book_(std::make_shared<ResultsBook>()) {
    session_ = std::make_unique<Session>(
        loadModule(), SessionOptions{.frontEnd = this,
                                     .stops = &stops_,
                                     .modalScript = [this](ozm::AutomationObject& one) { operate(one); },
                                     .data = &data_->active});
    session_->addObserver(*this);
    session_->addObserver(interrupts_);
}

Run::~Run() {
    // A fork in the middle of another thread's operation: here it never ends, and nothing in it is whole.
    if (operations_ > 0)
        (void)session_.release();
    else
        end();
}

void Run::close() {
    const Use use(*data_->gate);
    if (operations_ > 0)
        raise("Busy",
              "the analysis waits for an answer; it can be closed when the call that asked has ended");
    end();
}

void Run::end() {
    if (session_ == nullptr) return;
    *alive_ = false;
    const std::unique_ptr<Session> ending = std::move(session_);
    ending->close();
    book_ = ending->sharedBook();
    lease_.reset();
}

bool Run::ask(const ResultMessage& question, ozm::CAnalysisDialog* /*window*/) {
    const py::gil_scoped_acquire lock;
    try {
        if (!interrupts_.isPending())
            return handler_.attr("ask")(question.id, text(question.text), text(question.detail)).cast<bool>();
    } catch (py::error_already_set& error) {
        error.restore();
        interrupts_.keepException();
    } catch (const py::cast_error&) {
        PyErr_SetString(PyExc_TypeError, "the answer to a question is True or False");
        interrupts_.keepException();
    }
    return false;
}

void Run::operate(const ozm::AutomationObject& dialog) {
    const py::gil_scoped_acquire lock;
    const auto alive = std::make_shared<bool>(true);
    ozm::CAnalysisDialog& open = dialog.Dialog();
    modals_.push_back(&open);
    const Dialog handed{shared_from_this(),
                        &open,
                        alive,
                        std::string{open.ClassName()},
                        open.Interface() != nullptr ? std::string{open.Interface()->name} : std::string{},
                        true};
    try {
        handler_.attr("set_modal")(handed);
    } catch (...) {
        *alive = false;
        modals_.pop_back();
        throw; // the session passes it on to the operation, and leaves the dialog
    }
    *alive = false;
    modals_.pop_back();
}

void Run::start(const py::object& handler) {
    Operation operation(*this, handler);
    operation.work([this] { session_->start(); });
}

std::optional<Run::Dialog> Run::dialog() {
    const Use use(*data_->gate);
    if (session_ == nullptr) return std::nullopt;
    const std::optional<ozm::AutomationObject> open = session_->currentDialog();
    if (!open) return std::nullopt;
    ozm::CAnalysisDialog& one = open->Dialog();
    return Dialog{shared_from_this(),
                  &one,
                  alive_,
                  std::string{one.ClassName()},
                  one.Interface() != nullptr ? std::string{one.Interface()->name} : std::string{},
                  false};
}

std::string Run::whyUnusable(const Dialog& dialog, bool changes) const {
    if (!*dialog.alive) return dialog.modal ? "the dialog has been closed" : "the analysis has been closed";
    if (!lease_->holds()) return "another analysis has begun in this process, a fork of the first";
    if (changes && operations_ > 0 && (modals_.empty() || modals_.back() != dialog.dialog))
        return "the analysis waits for an answer; until then the dialog can only be read";
    return {};
}

py::tuple Run::refusal(const Dialog& dialog, const char* prefix, const std::string& member,
                       const std::string& why) const {
    return py::make_tuple(false, py::none(), method + dialog.dialogClass + "::" + prefix + member, why);
}

py::tuple Run::get(const Dialog& dialog, const std::string& member) {
    const Use use(*data_->gate);
    if (const std::string why = whyUnusable(dialog, false); !why.empty())
        return refusal(dialog, "get_", member, why);
    return outcome(ozm::AutomationObject{*dialog.dialog}.Get(member));
}

py::tuple Run::put(const Dialog& dialog, const std::string& member, const py::object& value,
                   const py::object& handler) {
    const Use use(*data_->gate);
    if (const std::string why = whyUnusable(dialog, true); !why.empty())
        return refusal(dialog, "put_", member, why);
    ozm::AutomationValue converted;
    try {
        converted = toAutomation(value);
    } catch (const UnknownValue& unknown) {
        return refusal(dialog, "put_", member, unknown.what());
    }
    ozm::AutomationResult result;
    Operation operation(*this, handler);
    operation.work([&] { result = ozm::AutomationObject{*dialog.dialog}.Put(member, converted); });
    return outcome(result);
}

py::tuple Run::call(const Dialog& dialog, const std::string& member, const py::object& handler,
                    const py::object& file) {
    const Use use(*data_->gate);
    if (const std::string why = whyUnusable(dialog, true); !why.empty())
        return refusal(dialog, "", member, why);
    ozm::AutomationResult result;
    Operation operation(*this, handler);
    const std::shared_ptr<ResultsBook> before = session_->sharedBook();
    const std::size_t count = before->outputs.size();
    const std::size_t messages = said_.size();
    if (!file.is_none()) session_->nameFile(file.cast<std::string>());
    operation.work([&] { result = ozm::AutomationObject{*dialog.dialog}.Call(member); });
    py::list said;
    for (std::size_t i = messages; i < said_.size(); ++i)
        said.append(messageTuple(said_[i]));
    return py::make_tuple(result.ok, toPython(result.value), text(result.error), text(result.detail), said,
                          outputsSince(before, count));
}

py::list Run::outputsSince(const std::shared_ptr<ResultsBook>& before, std::size_t count) const {
    const std::shared_ptr<ResultsBook> now = session_->sharedBook();
    py::list outputs;
    for (std::size_t place = now == before ? count : 0; place < now->outputs.size(); ++place)
        outputs.append(Output{{now, data_->gate}, place});
    return outputs;
}

void Run::dataReplaced(const py::object& handler) {
    if (session_ == nullptr) return;
    Operation operation(*this, handler);
    operation.work([this] { session_->dataReplaced(); });
}

void bindRun(py::module_& module) {
    py::class_<Run::Dialog>(module, "Dialog")
        .def_readonly("interface", &Run::Dialog::interfaceName)
        .def_readonly("modal", &Run::Dialog::modal)
        .def_property_readonly("open",
                               [](const Run::Dialog& one) { return *one.alive && !one.dialog->IsClosed(); })
        // Of dialogs that are open at a time: a later one may be in the place of one that is gone.
        .def_property_readonly("identity", [](const Run::Dialog& one) {
            return py::make_tuple(reinterpret_cast<std::uintptr_t>(one.alive.get()), // NOLINT
                                  reinterpret_cast<std::uintptr_t>(one.dialog));     // NOLINT
        });
    py::class_<Run, std::shared_ptr<Run>>(module, "Run")
        .def(py::init<std::shared_ptr<Data>>(), py::arg("data").none(false))
        .def("start", &Run::start)
        .def_property_readonly("active", &Run::isActive)
        .def("dialog",
             [](Run& run) -> py::object {
                 std::optional<Run::Dialog> open = run.dialog();
                 return open ? py::cast(std::move(*open)) : py::none();
             })
        .def("get", &Run::get)
        .def("put", &Run::put)
        .def("call", &Run::call)
        .def("data_replaced", &Run::dataReplaced)
        .def("book", [](const Run& run) { return run.results(); })
        .def("close", &Run::close);
}

} // namespace korvana::python
