// Files of expressions, opened by the dialog that has them: any bytes give a list that can be saved, and is
// then read back as it is, or leave the list as it was, with a message. The first byte chooses the answer to
// the question about repeated names, and how many covariates there are before.

#include "host/data/TextEncoding.h"
#include "host/session/Session.h"
#include "tests/fuzz/Scratch.h"

#include <algorithm>
#include <cstdint>
#include <dlfcn.h>
#include <utility>
#include <vector>

namespace korvana::fuzz {
namespace {

using List = ozm::AutomationValue::List;

constexpr const char* names = "TimeDependentCovariateNames";
constexpr const char* expressions = "TimeDependentCovariateExpressions";

struct Answers final : FrontEnd {
    bool yes = false;
    bool ask(const ResultMessage& /*question*/, ozm::CAnalysisDialog* /*window*/) override { return yes; }
};

/// The dialog, open.
class Dialog {
public:
    Dialog() : session_(loadAnalysis(findModules()), {.frontEnd = &answers_}) {
        DataSet data("data.csv", 0);
        for (const char* name : {"age", "drug"}) {
            Variable variable;
            variable.name = name;
            data.addVariable(std::move(variable), Column(0));
        }
        session_.data().open(std::move(data));
        session_.start();
        require(session_.currentDialog()->Put("TypeOfAnalysis", 6).ok, "there is the analysis");
        session_.currentDialog()->Call("OK");
        session_.pump();
        require(session_.currentInterface() == "SurRegressionTimeDependent", "there is the dialog");
    }
    using Covariates = std::pair<List, List>;

    void give(const Covariates& covariates) {
        session_.currentDialog()->Put(names, covariates.first);
        session_.currentDialog()->Put(expressions, covariates.second);
    }
    Covariates held() { return {listOf(names), listOf(expressions)}; }
    bool press(const std::string& action, const std::filesystem::path& file, bool yes = false) {
        answers_.yes = yes;
        (void)session_.takeBook();
        session_.nameFile(file);
        const bool done = session_.currentDialog()->Call(action).value == ozm::AutomationValue{true};
        session_.pump();
        require(done || !session_.book().messages.empty(), "who refuses says why");
        for (const ResultMessage& message : session_.book().messages)
            require(isUtf8(message.text) && isUtf8(message.detail), "messages are UTF-8", message.detail);
        return done;
    }

    void forget() {
        give({});
        (void)session_.takeBook();
    }

private:
    List listOf(const char* member) {
        return std::get<List>(session_.currentDialog()->Get(member).value.value);
    }

    Answers answers_;
    Session session_;
};

Dialog& dialog() {
    static Dialog only;
    return only;
}

void requireTexts(const List& list, std::size_t most, std::string_view what) {
    for (const ozm::AutomationValue& each : list) {
        const auto& text = std::get<std::string>(each.value);
        const auto characters = std::ranges::count_if(
            text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; });
        require(!text.empty() && static_cast<std::size_t>(characters) <= most, what, text);
        require(isUtf8(text), "texts are UTF-8", text);
    }
}

void openAndSave(unsigned choice, std::string_view text) {
    const auto file = scratch().write("any.ini", text);
    Dialog::Covariates before;
    constexpr int counts[] = {0, 1, 2, 3, 5, 0, 2, 39};
    for (int k = 0; k < counts[choice / 2 % 8]; ++k) {
        before.first.emplace_back("n" + std::to_string(k));
        before.second.emplace_back("age+" + std::to_string(k));
    }
    dialog().give(before);
    const bool opened = dialog().press("OpenExpressions", file, choice % 2 != 0);
    const Dialog::Covariates held = dialog().held();
    require(opened || held == before, "who refuses leaves the list as it was", text);
    require(held.first.size() <= 40, "there is room for 40", text);
    requireTexts(held.first, 8, "a name has 1 to 8 characters");
    requireTexts(held.second, 60, "an expression has 1 to 60 characters");

    const auto saved = scratch().folder() / "saved.ini";
    std::filesystem::remove(saved);
    if (!dialog().press("SaveExpressions", saved)) return; // a name twice
    dialog().give({});
    require(dialog().press("OpenExpressions", saved) && dialog().held() == held,
            "what is saved is read back as it is", text);
}

} // namespace
} // namespace korvana::fuzz

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    // Unloading the module would lose the fuzzer's counters of it.
    for (const auto& module : korvana::findModules())
        if (dlopen(module.c_str(), RTLD_NOW | RTLD_NODELETE) == nullptr) return 1;
    (void)korvana::fuzz::scratch(); // which goes after the dialog
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    if (size == 0) return 0;
    korvana::fuzz::openAndSave(bytes[0], {reinterpret_cast<const char*>(bytes) + 1, size - 1});
    korvana::fuzz::dialog().forget(); // else every input is searched for leaks
    return 0;
}
