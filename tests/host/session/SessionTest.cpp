#include "tests/host/session/TinyAnalysis.h"

namespace korvana {
namespace {

struct Recorder final : SessionObserver {
    void dialogOpened(ozm::CAnalysisModelessDialog& dialog, int page) override {
        events.push_back("open " + std::string{dialog.Template().title} + " " + std::to_string(page));
    }
    void dialogClosed(ozm::CAnalysisModelessDialog& dialog) override {
        events.push_back("close " + std::string{dialog.Template().title});
    }
    void analysisEnded() override { events.emplace_back("end"); }
    void outputAdded(const ResultsBook::Output& output) override {
        events.push_back("output " + std::to_string(output.index()));
    }
    void outputChanged(const ResultsBook::Output&) override { events.emplace_back("changed"); }
    std::vector<std::string> events;
};

struct SessionTest : tiny::TinySession {
    SessionTest() { session.addObserver(recorder); }
    Recorder recorder;
};

TEST_F(SessionTest, RunsFromStartToResultsAndBack) {
    session.start();
    EXPECT_EQ(session.currentInterface(), "TinySpecify");
    specify(1);
    EXPECT_EQ(session.currentInterface(), "TinyResults");
    EXPECT_EQ(session.step(), tiny::Results);
    call("Write");
    call("Cancel");
    EXPECT_EQ(session.step(), tiny::Specify);
    call("Cancel");
    EXPECT_FALSE(session.isActive());
    EXPECT_EQ(recorder.events,
              (std::vector<std::string>{"open Specify sums 0", "close Specify sums", "open Sums 0",
                                        "output 0", "output 1", "changed", "output 2", "close Sums",
                                        "open Specify sums 0", "close Specify sums", "end"}));

    const ResultsBook& book = session.book();
    EXPECT_EQ(book.analysis, "Tiny Analysis");
    EXPECT_EQ(book.source, "tiny.csv");
    ASSERT_EQ(book.outputs.size(), 3U);
    EXPECT_EQ(std::get<Report>(book.outputs[0]).title, "Sum");
    EXPECT_EQ(std::get<Report>(book.outputs[0]).lines, std::vector<std::string>{"7.000000"});
    const auto& sheet = std::get<Spreadsheet>(book.outputs[1]);
    EXPECT_EQ(sheet.columns[0].heading(), "Total");
    EXPECT_EQ(sheet.cellText(0, 0), "7.00");
}

TEST_F(SessionTest, ARefusalStaysInItsDialogAndTellsWhy) {
    session.start();
    specify(2);
    EXPECT_EQ(session.currentInterface(), "TinySpecify");
    ASSERT_EQ(session.book().messages.size(), 1U);
    EXPECT_EQ(session.book().messages[0].id, 8);
    EXPECT_EQ(session.book().messages[0].text, "No case has a value.");
    EXPECT_EQ(session.book().messages[0].detail, "Variable 1.");
    EXPECT_EQ(session.book().messages[0].severity, ResultMessage::Severity::Error);
    specify(1);
    const auto thrown = session.currentDialog()->Call("Throw");
    EXPECT_FALSE(thrown.ok);
    EXPECT_EQ(thrown.detail, "broken");
}

TEST_F(SessionTest, WhatWasMendedIsForgottenOnceAnOkSucceeds) {
    session.start();
    for (const std::size_t refusals : {1U, 2U, 3U}) {
        specify(2); // no case has a value
        EXPECT_EQ(session.book().messages.size(), refusals);
    }
    specify(1);
    EXPECT_EQ(session.currentInterface(), "TinyResults");
    EXPECT_TRUE(session.book().messages.empty()) << lastMessage();
    // Messages about results stay with them, even if a later run fails.
    call("Write");
    session.book().messages.push_back({1, "of an output", {}, {}});
    const auto results = session.sharedBook();
    call("Cancel");
    specify(2);
    specify(1);
    EXPECT_TRUE(session.book().messages.empty()) << lastMessage();
    ASSERT_EQ(results->messages.size(), 1U);
    EXPECT_EQ(results->messages[0].text, "of an output");
}

TEST_F(SessionTest, ActionsAndTheBookTellWhetherOutputsCameAbout) {
    session.start();
    specify(2); // refused, and no output
    specify(1);
    EXPECT_EQ(session.book().status, 0);
    const auto write = [this](int digits) {
        put("Digits", digits);
        return session.currentDialog()->Call("Write").value;
    };
    EXPECT_EQ(write(-1), ozm::AutomationValue{false});
    EXPECT_EQ(session.book().status, 1);
    EXPECT_EQ(write(2), ozm::AutomationValue{true});
    EXPECT_EQ(session.book().status, 0) << "made in the end";
    session.currentDialog()->Call("Throw");
    write(2);
    EXPECT_EQ(session.book().status, 1) << "another output was not";
    const auto results = session.sharedBook();
    call("Cancel");
    specify(1);
    write(2);
    EXPECT_EQ(session.book().status, 0);
    EXPECT_EQ(results->status, 1);
}

struct Person : FrontEnd {
    ozm::MessageButton showMessage(const ResultMessage& /*message*/,
                                   ozm::CAnalysisDialog* /*window*/) override {
        ++shown;
        return ozm::ButtonCancel;
    }
    bool ask(const ResultMessage& question, ozm::CAnalysisDialog* /*window*/) override {
        asked = question.text;
        return true;
    }
    bool editStartValues(std::span<const std::string> /*names*/, std::span<double> values) override {
        values[0] = 5;
        return ++edited > 1;
    }
    int shown = 0;
    int edited = 0;
    std::string asked;
};

struct SessionOfAPerson : Person, tiny::TinySession {
    SessionOfAPerson() : TinySession({.automation = false, .frontEnd = this}) {}
    ozm::CAnalysisSupport& host() const { return *analysis; }
};

/// What a dialog refuses is corrected by the user, so its message is not part of the results. That of a
/// failed output is.
TEST_F(SessionOfAPerson, WhatWasRefusedIsShownAndNoPartOfResults) {
    session.start();
    specify(2);
    specify(1);
    for (const int refused : {-1, 0, -1}) {
        put("Digits", refused);
        call("Write");
        EXPECT_TRUE(session.book().messages.empty()) << lastMessage();
    }
    put("Digits", 101);
    call("Write");
    EXPECT_EQ(session.book().messages.size(), 1U);
    const auto results = session.sharedBook();
    EXPECT_EQ(results->outputs.size(), 3U);
    call("Cancel");
    specify(2); // not with the existing results either
    EXPECT_EQ(results->messages.size(), 1U);
    EXPECT_EQ(shown, 5);
}

TEST_F(SessionTest, AClosedDialogCanStillBeHeld) {
    session.start();
    ozm::AutomationObject held = *session.currentDialog();
    specify(1);
    EXPECT_EQ(held.Get("Number").detail, "the dialog has been closed");
    EXPECT_EQ(analysis->dialogsAlive, 1);
    session.start();
    EXPECT_EQ(analysis->dialogsAlive, 1) << "those of the run before are gone, the new one is there";
    EXPECT_EQ(analysis->initialized, 2);
    EXPECT_TRUE(session.book().outputs.empty());
}

TEST_F(SessionTest, AnExitIsFollowedOnlyByPump) {
    session.start();
    put("Number", tiny::Results);
    session.currentDialog()->Call("Leave");
    EXPECT_FALSE(session.currentDialog()) << "closed, not followed";
    EXPECT_TRUE(session.isActive());
    session.pump();
    EXPECT_EQ(recorder.events.back(), "open Sums 3") << "on the page that the dialog before named";
    session.pump();
    EXPECT_EQ(session.currentInterface(), "TinyResults");
}

TEST_F(SessionTest, StepsThatLeadNowhereEndTheAnalysis) {
    session.start();
    put("Number", 99);
    call("Leave");
    EXPECT_FALSE(session.isActive());
    EXPECT_EQ(lastMessage(), "Step 20 leads to step 99, which the analysis does not have.");

    analysis->prepareAnswers = -1;
    session.start();
    EXPECT_EQ(lastMessage(), "Step 10 waits for a dialog that is not there.");
    analysis->prepareAnswers = tiny::Prepare;
    session.start();
    EXPECT_EQ(lastMessage(), "The analysis goes in circles at step 10.");
    analysis->prepareAnswers = 0;
    session.start();
    EXPECT_TRUE(session.book().messages.empty()) << "0 is the orderly end";
    EXPECT_EQ(recorder.events.back(), "end");

    analysis->prepareAnswers = tiny::Results;
    session.start();
    EXPECT_EQ(session.currentInterface(), "TinyResults") << "a row's number wins over the default";
}

TEST_F(SessionTest, DialogsThatFailToOpenEndTheAnalysis) {
    analysis->failToOpen = true;
    session.start();
    EXPECT_FALSE(session.isActive());
    EXPECT_EQ(lastMessage(), "The dialog 'Specify sums' could not be opened: no window.");
    EXPECT_EQ(analysis->dialogsAlive, 0);

    analysis->failToOpen = false;
    analysis->leaveAtOnce = true;
    session.start();
    session.pump();
    EXPECT_EQ(lastMessage(), "The analysis goes in circles at step 20.");

    analysis->failInStep = true;
    session.start();
    EXPECT_EQ(lastMessage(), "Step 20 failed: out of order.");
}

TEST_F(SessionTest, WhatTheAnalysisHeldIsGivenBackAtTheEnd) {
    session.start();
    specify(1);
    EXPECT_EQ(session.outstandingAllocations(), 1U);
    void* empty = nullptr;
    ASSERT_TRUE(analysis->AllocMem(empty, 0));
    EXPECT_NE(empty, nullptr);
    EXPECT_EQ(session.outstandingAllocations(), 2U);
    analysis->FreeMem(nullptr);
    analysis->FreeMem(empty);
    EXPECT_EQ(session.outstandingAllocations(), 1U);
    session.close();
    EXPECT_EQ(session.outstandingAllocations(), 0U);
    EXPECT_FALSE(session.currentDialog());
    session.start();
    EXPECT_EQ(lastMessage(), "The analysis has no steps.");
}

TEST_F(SessionTest, AnotherDataFileForgetsSelectionAndWeights) {
    session.data().select("x1 > 1");
    session.data().weightBy("x1");
    session.start();
    specify(1);
    EXPECT_EQ(analysis->sum, 6.0);
    ASSERT_EQ(session.book().notes.size(), 2U);
    EXPECT_EQ(session.book().notes[0], "Selected 2 of 3 cases: x1 > 1.");
    EXPECT_EQ(session.book().notes[1], "Cases weighted by 'x1'.");
    EXPECT_EQ(analysis->WeightVariable(), 1);

    session.openData(tiny::DataOf({{5}}));
    EXPECT_EQ(analysis->fileChanges, 1);
    EXPECT_EQ(analysis->WeightVariable(), 0);
    EXPECT_EQ(session.book().notes.size(), 2U) << "what stands in the book is of the data before";
    call("Cancel");
    specify(1);
    EXPECT_EQ(analysis->sum, 5.0);
    EXPECT_TRUE(session.book().notes.empty());
}

TEST_F(SessionOfAPerson, AnswersWhatTheAnalysisAsks) {
    EXPECT_FALSE(host().IsOleAutomation());
    EXPECT_EQ(host().DspMessageBox(ozm::MessageStyle::Warning, nullptr, 8), ozm::ButtonCancel);
    EXPECT_EQ(host().DspMessageBox(ozm::MessageStyle::YesNo, nullptr, 9), ozm::ButtonYes);
    EXPECT_EQ(std::exchange(asked, ""), "Again?");
    EXPECT_EQ(host().DisplayInstQuestion(host().GetLibInstance(), nullptr, 9), ozm::ButtonYes);
    EXPECT_EQ(asked, "Again?");
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(session.book().messages.size(), 1U) << "questions are no messages";
    const std::string names[] = {"b"};
    double values[] = {1};
    EXPECT_FALSE(host().GetStartValues(names, values)); // cancelled
    EXPECT_EQ(values[0], 1.0);
    EXPECT_TRUE(host().GetStartValues(names, values));
    EXPECT_EQ(values[0], 5.0);
}

TEST_F(SessionOfAPerson, NotesStandInTheBookAndAskNobody) {
    session.data().weightBy("x1");
    session.start();
    const auto note = [&](const char* text, const char* detail) {
        return host().DspMessageBox(ozm::MessageStyle::Note, nullptr, 0, text, detail);
    };
    EXPECT_EQ(note("1 case left out.", ""), ozm::ButtonOk);
    note("1 case left out.", ""); // the same run again
    note("2 cases left out.", "Look.");
    EXPECT_EQ(session.book().notes, (std::vector<std::string>{"Cases weighted by 'x1'.", "1 case left out.",
                                                              "2 cases left out. Look."}));
    EXPECT_EQ(shown, 0);
    EXPECT_TRUE(session.book().messages.empty());
    session.openData(tiny::DataOf({{5}}));
    EXPECT_EQ(session.book().notes.size(), 2U) << "results of the run still stand in the book";
    session.start();
    EXPECT_TRUE(session.book().notes.empty());
}

TEST_F(SessionTest, StopsFromOutsideAndFromTheDisplay) {
    session.start();
    session.stops().requestStop();
    specify(1);
    EXPECT_EQ(session.currentInterface(), "TinySpecify");
    call("OK");
    EXPECT_EQ(session.currentInterface(), "TinySpecify") << "an outside stop holds until it is cleared";
    session.stops().clear(StopSignals::External);
    session.stops().cancel();
    call("OK");
    EXPECT_EQ(session.currentInterface(), "TinyResults") << "a Cancel before the computation is void";

    session.start();
    put("Variables", ozm::AutomationValue::List(1, ozm::AutomationValue::List{1}));
    struct Impatient final : ozm::DialogObserver {
        explicit Impatient(StopSignals& signals) : stops(signals) {}
        void CommandBegins(ozm::CAnalysisDialog&, int) override { stops.cancel(); }
        StopSignals& stops;
    } impatient(session.stops());
    session.currentDialog()->Dialog().AddObserver(impatient);
    call("OK");
    EXPECT_EQ(session.currentInterface(), "TinySpecify") << "one before a part of it is not";
}

} // namespace
} // namespace korvana
