#pragma once
// An analysis with one dialog that has a control of every kind, with data of four variables, in a session.

#include "apps/desktop/dialogs/Callout.h"
#include "apps/desktop/dialogs/ControlField.h"
#include "apps/desktop/dialogs/DialogView.h"
#include "apps/desktop/dialogs/DragList.h"
#include "host/session/Session.h"
#include "support/CAnalysisSupport.h"
#include "support/dialogs/CAnalysisModelessDialog.h"
#include "tests/support/MakeData.h"

#include <QtTest>
#include <QtWidgets>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace everykind {

using namespace ozm;

enum Control {
    Box = 10,
    Choice,
    Count,
    Level,
    Name,
    Code,
    Entries,
    Variables,
    Codes,
    Names,
    Numbers,
    Overview,
    Go,
    Beside,
    Table,
    Formula,
    Aside
};

inline constexpr std::uint8_t first[] = {0};
inline constexpr std::uint8_t second[] = {1};
inline constexpr std::uint8_t both[] = {0, 1};
inline constexpr RoleTemplate roles[] = {{"Times", 0, 1, 3, true}, {"Indicator", 1, 1, 1}};
inline constexpr int headings[] = {1, 2};
inline constexpr ChoiceTemplate choices[] = {{.text = 1}, {.text = 2}, {.text = 3}};
inline constexpr ChoiceTemplate entries[] = {{.text = 1, .icon = 5, .command = 101},
                                             {.text = 0, .icon = 6, .command = 7},
                                             {.text = 2, .command = 102}};
inline constexpr ControlTemplate controls[] = {
    {.id = Overview, .kind = ControlKind::Summary},
    {.id = Variables,
     .kind = ControlKind::VariableSelection,
     .text = "&Variables",
     .pages = first,
     .roles = roles},
    {.id = Code,
     .kind = ControlKind::CodeField,
     .text = "Code for &events:",
     .pages = first,
     .decimals = 4,
     .codesOfRole = 1},
    {.id = Level, .kind = ControlKind::Real, .text = "&Level:", .pages = both, .decimals = 3},
    {.id = Go, .text = "!249&Go on", .pages = both},
    {.id = Box, .kind = ControlKind::CheckBox, .text = "&Box", .pages = second},
    {.id = Choice, .kind = ControlKind::RadioGroup, .text = "Choice", .pages = second, .choices = choices},
    {.id = Count,
     .kind = ControlKind::Integer,
     .text = "&Number:",
     .pages = second,
     .range = {.least = std::numeric_limits<int>::min(), .greatest = 40}},
    {.id = Name, .kind = ControlKind::Text, .text = "N&ame:", .pages = second},
    {.id = Codes,
     .kind = ControlKind::CodeList,
     .text = "Gro&ups:",
     .pages = second,
     .decimals = 4,
     .codesOfRole = 1,
     .hint = 4},
    {.id = Entries, .kind = ControlKind::List, .text = "Entries", .pages = second, .choices = entries},
    {.id = Names, .kind = ControlKind::TextList, .text = "&Texts", .pages = second},
    {.id = Numbers, .kind = ControlKind::NumberList, .text = "Num&bers:", .pages = second, .mayMiss = true},
    {.id = Formula, .kind = ControlKind::Text, .text = "&Formula:", .pages = second, .isExpression = true},
    {.id = Table, .kind = ControlKind::List, .text = "Table", .pages = second, .columns = headings},
    {.id = Aside, .text = "Aside", .pages = second, .beside = Table},
    {.id = ControlOk, .text = "OK"},
    {.id = ControlCancel, .text = "Cancel"},
    {.id = Beside, .text = "&Select Cases"},
};
inline constexpr std::string_view pages[] = {"Quick", "Advanced"};
inline constexpr DialogTemplate everyKind{1, "One of each", pages, controls};
// The same without an OK.
inline constexpr ControlTemplate resultControls[] = {controls[3], controls[4], controls[17]};
inline constexpr DialogTemplate results{2, "Results", pages, resultControls};
inline constexpr StringResource strings[] = {
    {1, "Alpha"}, {2, "Beta "}, {3, "Gamma"}, {4, "Select the codes."}, {5, "T_"}};

class EveryKindDlg;

class EveryKind final : public CAnalysisSupport {
public:
    explicit EveryKind(const DialogTemplate& shape) : shape_(shape) {
        SetSequenceTable(table);
        resources_.strings = strings;
    }
    ModuleHandle GetLibInstance() override { return &resources_; }

    std::function<void(EveryKindDlg&, int)> onCommand;
    std::function<void(EveryKindDlg&, int)> onValue;
    std::vector<int> commands;
    int codeReads = 0;

private:
    static int Specify(CAnalysisSupport& analysis);
    static constexpr SEQFUNCTTBL table[] = {{1, &Specify, 0}};
    const DialogTemplate& shape_;
    ModuleResources resources_;
};

class EveryKindDlg final : public CAnalysisModelessDialog {
public:
    EveryKindDlg(EveryKind& analysis, const DialogTemplate& shape)
        : CAnalysisModelessDialog(analysis, shape), own_(analysis) {}
    using CAnalysisModelessDialog::Enable;
    using CAnalysisModelessDialog::ExitDialog;
    using CAnalysisModelessDialog::SetEntries;
    using CAnalysisModelessDialog::SetValue;

private:
    bool OnCommand(int control) override {
        own_.commands.push_back(control);
        if (own_.onCommand) own_.onCommand(*this, control);
        if (control == ControlCancel) ExitDialog(0, ExitMode::Back);
        return true;
    }
    void OnValueChanged(int control) override {
        if (own_.onValue) own_.onValue(*this, control);
    }
    EveryKind& own_;
};

inline int EveryKind::Specify(CAnalysisSupport& analysis) {
    auto& own = static_cast<EveryKind&>(analysis);
    return CAnalysisModelessDialog::CreateAnalysisDialog(std::make_unique<EveryKindDlg>(own, own.shape_)) ? -1
                                                                                                          : 0;
}

/// Variables time, date, status (0 = alive, 1 = dead) and long (150 values).
inline korvana::DataSet data() {
    constexpr int cases = 150;
    korvana::DataSet set("every.csv", cases);
    const auto add = [&](const char* name, const char* label, auto cell) {
        korvana::Variable variable;
        variable.name = name;
        variable.label = label;
        if (std::string{name} == "status") variable.valueLabels = {{0, "alive"}, {1, "dead"}};
        korvana::test::addVariable(set, variable, cell);
    };
    add("time", "Survival in days", [](int i) { return i % 7; });
    add("date", "", [](int i) { return i % 5; });
    add("status", "How it ended", [](int i) { return i % 3 == 0 ? 1.0 : 0.0; });
    add("long", "", [](int i) { return i; });
    return set;
}

struct Opened final : korvana::SessionObserver {
    void dialogOpened(CAnalysisModelessDialog& opened, int /*page*/) override { dialog = &opened; }
    CAnalysisModelessDialog* dialog = nullptr;
};

/// The dialog in a session, shown by a view.
struct Window : ::testing::Test {
    explicit Window(const DialogTemplate& shape = everyKind)
        : analysis(new EveryKind(shape)), session(korvana::Analysis(analysis)) {
        session.data().open(data());
        session.addObserver(opened);
        session.start();
        view = std::make_unique<korvana::desktop::DialogView>(*opened.dialog);
        view->show();
        view->activateWindow();
        (void)QTest::qWaitForWindowActive(view.get());
    }

    CAnalysisModelessDialog& dialog() { return *opened.dialog; }
    template <class T>
    const T& value(int control) {
        return std::get<T>(opened.dialog->Value(control));
    }
    /// The editor of a control, on the current page if that has it.
    template <class T>
    T* editor(int control) {
        T* found = nullptr;
        for (QWidget* field : view->findChildren<QWidget*>(QStringLiteral("control%1").arg(control)))
            if (found == nullptr || field->isVisible()) found = field->findChild<T*>();
        return found;
    }
    /// The variables to choose from ("available") or those of a role ("role0").
    korvana::desktop::DragList* list(const char* name) {
        return dynamic_cast<korvana::desktop::DragList*>(view->findChild<QListView*>(name));
    }
    korvana::desktop::DragList* available() { return list("available"); }
    /// Puts these into the box of a role; removes what it holds.
    void choose(Qt::Key role, const std::vector<int>& variables) {
        available()->selectNumbers(variables);
        QTest::keyClick(available(), role, Qt::ControlModifier);
    }
    void empty(int role) {
        auto* box = list(role == 0 ? "role0" : "role1");
        box->selectNumbers(value<VariableSelection>(Variables).at(static_cast<std::size_t>(role)));
        QTest::keyClick(box, Qt::Key_Delete);
    }
    korvana::desktop::Callout* callout() {
        return dynamic_cast<korvana::desktop::Callout*>(view->findChild<QFrame*>("callout"));
    }
    /// The reason that is shown, and the widget that it is about.
    QString complaint() { return callout()->isHidden() ? QString{} : callout()->text(); }
    QWidget* complainedAt() { return callout()->subject(); }
    QComboBox* combo(int control = Code) { return editor<QComboBox>(control); }
    double code(int control = Code) { return value<double>(control); }
    void type(const char* text, int control = Code) {
        retype(combo(control)->lineEdit(), text);
        QTest::keyClick(combo(control), Qt::Key_Tab);
    }
    void select(VariableSelection selection) {
        ASSERT_TRUE(dialog().PutValue(Variables, std::move(selection)).done);
    }
    /// Opens other data: one variable with these codes, one case each.
    void openCodes(const std::vector<double>& codes) {
        korvana::DataSet set("codes.csv", static_cast<int>(codes.size()));
        korvana::Variable variable;
        variable.name = "code";
        korvana::test::addVariable(set, variable, [&](int i) { return codes[static_cast<std::size_t>(i)]; });
        session.data().open(std::move(set));
        view->refreshData();
    }
    static void retype(QLineEdit* line, const char* text) {
        line->setFocus();
        line->selectAll();
        QTest::keyClick(line, Qt::Key_Delete);
        QTest::keyClicks(line, text);
    }
    static void doubleClick(QAbstractItemView* list, int row) {
        const QPoint at = list->visualRect(list->model()->index(row, 0)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
    }
    /// Handles everything that is queued.
    static void settle() { QCoreApplication::processEvents(); }

    EveryKind* analysis;
    Opened opened;
    korvana::Session session;
    std::unique_ptr<korvana::desktop::DialogView> view;
};

} // namespace everykind
