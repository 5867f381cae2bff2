// A list whose rows the dialog sets, and the fields from which it gets them.

#include "tests/apps/desktop/dialogs/EveryKind.h"

namespace everykind {
namespace {

enum TableControl { Name8 = 300, Add, Replace, Delete, Scripted };
constexpr ChoiceTemplate timeName[] = {{.text = 5}};
constexpr ControlTemplate tableControls[] = {
    {.id = Name8, .kind = ControlKind::Text, .text = "&Name:", .most = 8, .onEnter = Add},
    {.id = Formula,
     .kind = ControlKind::Text,
     .text = "E&xpression:",
     .choices = timeName,
     .most = 60,
     .onEnter = Add,
     .isExpression = true},
    {.id = Table,
     .kind = ControlKind::List,
     .text = "&Covariates",
     .columns = headings,
     .onEnter = Table,
     .onDelete = Delete},
    {.id = Add, .text = "&Add", .beside = Table},
    {.id = Replace, .text = "&Replace", .beside = Table},
    {.id = Delete, .text = "&Delete", .beside = Table},
    {.id = Scripted, .kind = ControlKind::TextList, .text = "Names", .hidden = true},
    {.id = ControlOk, .text = "OK"},
    {.id = ControlCancel, .text = "Cancel"},
};
constexpr std::string_view onePage[] = {"Quick"};
constexpr DialogTemplate tableTemplate{3, "Covariates", onePage, tableControls};

/// Adds the two texts as a row, deletes the row that is selected, and shows it in the fields.
struct TableView : Window {
    TableView() : Window(tableTemplate) {
        analysis->onCommand = [this](EveryKindDlg& own, int control) {
            const int at = value<int>(Table);
            if (control == Add) rows.push_back({value<std::string>(Name8), value<std::string>(Formula)});
            if (control == Delete && at == noEntry) throw std::runtime_error("nothing is selected");
            if (control == Delete) rows.erase(rows.begin() + at);
            own.SetEntries(Table, rows);
        };
        analysis->onValue = [this](EveryKindDlg& own, int control) {
            if (control != Table || value<int>(Table) == noEntry) return;
            own.SetValue(Name8, rows[static_cast<std::size_t>(value<int>(Table))][0]);
            own.SetValue(Formula, rows[static_cast<std::size_t>(value<int>(Table))][1]);
        };
    }
    void add(const char* name, const char* formula) {
        retype(editor<QLineEdit>(Name8), name);
        retype(editor<QLineEdit>(Formula), formula);
        QTest::keyClick(editor<QLineEdit>(Formula), Qt::Key_Return);
    }
    QTreeWidget* table() { return editor<QTreeWidget>(Table); }
    QStringList shown() {
        QStringList all;
        for (int row = 0; row < table()->topLevelItemCount(); ++row)
            all += table()->topLevelItem(row)->text(0) + '=' + table()->topLevelItem(row)->text(1);
        return all;
    }
    int selected() {
        return table()->selectedItems().isEmpty()
                   ? noEntry
                   : table()->indexOfTopLevelItem(table()->selectedItems().first());
    }

    ListRows rows;
};

TEST_F(TableView, ShowsTheRowsAndTheSelectionThatTheDialogHas) {
    EXPECT_EQ(table()->headerItem()->text(0) + table()->headerItem()->text(1), "AlphaBeta");
    EXPECT_EQ(value<int>(Table), noEntry);
    add("age", "age + 1");
    add("x", "x * log(T_)");
    add("y", "1");
    EXPECT_EQ(shown(), (QStringList{"age=age + 1", "x=x * log(T_)", "y=1"}));
    EXPECT_EQ(selected(), noEntry) << "adding selects nothing";

    table()->setFocus();
    for (const int row : {0, 1, 2, 2}) {
        QTest::keyClick(table(), Qt::Key_Down);
        EXPECT_EQ(value<int>(Table), row);
        EXPECT_EQ(editor<QLineEdit>(Name8)->text().toStdString(), rows[static_cast<std::size_t>(row)][0]);
    }
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, Qt::ControlModifier,
                      table()->visualItemRect(table()->topLevelItem(2)).center());
    EXPECT_EQ(value<int>(Table), noEntry) << "clicked away";
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {},
                      table()->visualItemRect(table()->topLevelItem(2)).center());
    EXPECT_EQ(value<int>(Table), 2);
    const QAccessibleInterface* heard = QAccessible::queryAccessibleInterface(table());
    EXPECT_EQ(heard->text(QAccessible::Name), "Covariates");
    EXPECT_EQ(table()->topLevelItem(1)->data(0, Qt::AccessibleTextRole), "x, x * log(T_)");

    auto& own = dynamic_cast<EveryKindDlg&>(dialog());
    own.SetEntries(Table, {{"one"}, {"x", "2", "beyond"}});
    EXPECT_EQ(shown(), (QStringList{"one=", "x=2"})) << "as many texts as columns";
    EXPECT_EQ(selected(), noEntry) << "what was selected is gone";
    EXPECT_EQ(value<int>(Table), noEntry);
    own.SetValue(Table, 1);
    EXPECT_EQ(selected(), 1);
    own.SetEntries(Table, {{"one", "1"}, {"x", "3"}});
    EXPECT_EQ(selected(), 1) << "it is still there";
    own.SetValue(Table, noEntry);
    EXPECT_EQ(selected(), noEntry);

    // A view that comes later shows the same, and a script is told what cannot be.
    korvana::desktop::DialogView again(dialog());
    EXPECT_EQ(again.findChild<QTreeWidget*>()->topLevelItemCount(), 2);
    EXPECT_TRUE(dialog().PutValue(Table, 0).done);
    EXPECT_EQ(dialog().PutValue(Table, 2).reason, "there is no entry 2; entries go from 0 to 1");
    EXPECT_EQ(dialog().PutValue(Table, -2).reason, "there is no entry -2; entries go from 0 to 1");
    EXPECT_TRUE(dialog().PutValue(Table, noEntry).done);
    own.SetEntries(Table, {});
    EXPECT_EQ(dialog().PutValue(Table, 0).reason, "there is no entry 0; the list is empty");
    EXPECT_THROW(own.SetEntries(Name8, {}), std::logic_error);
    EXPECT_TRUE(dialog().EntriesOf(Name8).empty());
}

TEST_F(TableView, KeysPressWhatTheTemplateNames) {
    add("a", "1");
    add("b", "2");
    EXPECT_EQ(analysis->commands, (std::vector<int>{Add, Add})) << "Enter in a field of the row";
    EXPECT_FALSE(editor<QPushButton>(ControlOk)->isDefault());
    analysis->commands.clear();
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_Delete);
    EXPECT_EQ(complaint(), "Nothing is selected.");
    EXPECT_EQ(complainedAt(), editor<QPushButton>(Delete)->parentWidget());
    QTest::keyClick(table(), Qt::Key_Down);
    QTest::keyClick(table(), Qt::Key_Delete);
    EXPECT_EQ(complaint(), "");
    EXPECT_EQ(shown(), QStringList{"b=2"});
    EXPECT_FALSE(editor<QPushButton>(Add)->isDefault()) << "Enter in the table presses no button";
    QTest::keyClick(table(), Qt::Key_Return);
    doubleClick(table(), 0);
    EXPECT_EQ(analysis->commands, (std::vector<int>{Delete, Delete, Table, Table}));
    // A row that is taken away by what the click on it does.
    add("c", "3");
    analysis->onValue = [this](EveryKindDlg& own, int) { own.SetEntries(Table, rows = {}); };
    table()->setFocus();
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {},
                      table()->visualItemRect(table()->topLevelItem(1)).center());
    EXPECT_TRUE(shown().isEmpty());
    editor<QPushButton>(ControlOk)->setFocus();
    EXPECT_TRUE(editor<QPushButton>(ControlOk)->isDefault());
}

TEST_F(TableView, MoreCannotBeTypedThanThereIsRoomFor) {
    auto* name = editor<QLineEdit>(Name8);
    retype(name, "12345678");
    EXPECT_EQ(complaint(), "");
    QTest::keyClicks(name, "9");
    settle();
    EXPECT_EQ(name->text(), "12345678");
    EXPECT_TRUE(complaint().contains("room for 8 characters")) << complaint().toStdString();
    QTest::keyClick(name, Qt::Key_Backspace);
    EXPECT_EQ(complaint(), "");
    QGuiApplication::clipboard()->setText("abcdefghij");
    name->selectAll();
    name->paste();
    settle();
    EXPECT_EQ(name->text(), "abcdefgh");
    EXPECT_TRUE(complaint().contains("left out")) << "not cut in silence";
    const std::string tooLong = "more than eight";
    EXPECT_TRUE(dialog().PutValue(Name8, tooLong).done) << "from a script";
    EXPECT_EQ(name->text().toStdString(), tooLong) << "and is not cut by being shown";
    editor<QPushButton>(Add)->click();
    EXPECT_EQ(rows.back()[0], tooLong);
}

TEST_F(TableView, VariablesAreOfferedForTheWordThatIsTyped) {
    korvana::DataSet set("names.csv", 2);
    for (const char* name : {"age", "age at start", "Agent", "and", "tick`s", "t_"}) {
        korvana::Variable variable;
        variable.name = name;
        korvana::test::addVariable(set, variable, [](int i) { return i; });
    }
    session.data().open(std::move(set));
    view->refreshData();
    auto* line = editor<QLineEdit>(Formula);
    const auto popup = [] { return qobject_cast<QAbstractItemView*>(QApplication::activePopupWidget()); };
    const auto offered = [&] {
        QStringList names;
        for (int row = 0; popup() != nullptr && row < popup()->model()->rowCount(); ++row)
            names += popup()->model()->index(row, 0).data().toString();
        return names.join(',');
    };
    const auto choose = [&](int down) {
        for (int i = 0; i < down; ++i)
            QTest::keyClick(popup(), Qt::Key_Down);
        QTest::keyClick(popup(), Qt::Key_Return);
    };
    for (const auto& [typed, names, down, expected] :
         {std::tuple{"2*AG", "age,age at start,Agent", 1, "2*age"},
          {"2*ag", "age,age at start,Agent", 2, "2*`age at start`"},
          {"`age ", "age at start", 1, "`age at start`"},
          {"T_+an", "and", 1, "T_+`and`"},
          {"ti", "tick`s", 1, "`tick``s`"},
          {"log(t", "T_,tick`s", 1, "log(T_"}}) {
        retype(line, typed);
        EXPECT_EQ(offered(), names) << typed;
        ASSERT_NE(popup(), nullptr) << typed;
        choose(down);
        EXPECT_EQ(line->text(), expected);
        EXPECT_EQ(popup(), nullptr) << "not again for what was put in";
        EXPECT_TRUE(analysis->commands.empty()) << "Enter has chosen and nothing else";
    }
    for (const char* nothing : {"2*x", "3e", "Agent", "1.a", ""}) {
        retype(line, nothing);
        EXPECT_EQ(offered(), "") << nothing;
    }
    retype(line, "1 + ");
    QTest::keyClick(line, Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(offered(), "T_,age,age at start,Agent,and,tick`s,`t_`") << "the time, and a variable called so";
    QTest::keyClick(popup(), Qt::Key_Escape);
    EXPECT_TRUE(view->isVisible()) << "Escape closes the list alone";
    line->setCursorPosition(0);
    QTest::mouseClick(editor<QToolButton>(Formula), Qt::LeftButton);
    choose(2);
    EXPECT_EQ(line->text(), "age1 + ") << "at the cursor";
    QTest::keyClick(line, Qt::Key_Tab);
    EXPECT_EQ(value<std::string>(Formula), "age1 + ");
    retype(line, "");
    QTest::keyClick(line, Qt::Key_Space, Qt::ControlModifier);
    choose(7);
    EXPECT_EQ(line->text(), "`t_`");
}

TEST_F(TableView, WhatIsForScriptsIsNotShown) {
    EXPECT_TRUE(view->findChildren<QWidget*>(QStringLiteral("control%1").arg(Scripted)).isEmpty());
    EXPECT_TRUE(dialog().PutValue(Scripted, std::vector<std::string>{"a", "b"}).done);
    EXPECT_EQ(value<std::vector<std::string>>(Scripted).size(), 2U);
    view->showPage(Scripted);
    view->focusOn({0, Scripted, {}});
}

} // namespace
} // namespace everykind
