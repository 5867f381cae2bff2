// Computed variables in the window: made, seen, and taken away again.

#include "apps/desktop/data/ComputeDialog.h"

#include "apps/desktop/data/ConditionEdit.h"
#include "apps/desktop/data/DataView.h"
#include "apps/desktop/data/VariableChooser.h"
#include "apps/desktop/data/VariablesView.h"
#include "tests/apps/desktop/data/Trial.h"

namespace korvana::desktop {
namespace {

struct Compute : DataDialog<ComputeDialog> {
    Compute() { openDialog(); }
    QLineEdit* name() { return part<QLineEdit>("name"); }
    ConditionEdit* expression() { return part<ConditionEdit>(); }
    void write(const char* named, const char* as) {
        name()->setText(named);
        expression()->setPlainText(as);
    }
};

TEST_F(Compute, ShowsWhatTheFirstCasesGetAndAddsTheVariable) {
    QTest::keyClicks(name(), "old");
    auto* variables = part<VariableChooser>();
    variables->setCurrent(0);
    QTest::keyClick(variables->list(), Qt::Key_Space);
    EXPECT_EQ(expression()->toPlainText(), "age") << "pieces are inserted";
    QTest::keyClicks(expression(), " >= 62");
    EXPECT_TRUE(says("The first cases: 0, 1, 1, 0"));
    write("pay", "`white cells` / (age - 62)");
    EXPECT_TRUE(says("The first cases: -0.136364, ., 0.40625, -0.285714"));
    write("old", "age >= 62");
    QTest::keyClick(variables->search(), Qt::Key_Return); // OK, wherever the keyboard is
    ASSERT_TRUE(accepted());
    ASSERT_EQ(data.dataSet().variableCount(), 6);
    EXPECT_EQ(data.dataSet().variable(5).name, "old");
    EXPECT_EQ(data.dataSet().column(5)[1], 1.0);
}

TEST_F(Compute, SaysWhatIsWrongAndWhereAndAddsNothing) {
    struct Wrong {
        const char* name;
        const char* expression;
        const char* said;
    };
    for (const Wrong& wrong : {Wrong{"x", "age + ages", "ages"},
                               {"x", "age +", "age +"},
                               {"AGE", "age + 1", "there is already a variable 'age'"},
                               {"", "age + 1", "needs a name"},
                               {"x", " ", "write an expression"}}) {
        write(wrong.name, wrong.expression);
        EXPECT_FALSE(accepts()) << wrong.said;
        EXPECT_TRUE(says(wrong.said)) << wrong.said;
        EXPECT_EQ(expression()->markedAt() == 6, wrong.said == std::string_view("ages"));
    }
    EXPECT_EQ(data.dataSet().variableCount(), 5);
}

TEST_F(Compute, ViewsFollowAVariableThatComesAndGoes) {
    DataView cases;
    VariablesView variables;
    const QAbstractItemModelTester casesTester(cases.table()->model(),
                                               QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QAbstractItemModelTester variablesTester(variables.table()->model(),
                                                   QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto show = [&] {
        cases.setData(&data);
        variables.setData(&data);
    };
    show();
    cases.goToCase(3);
    data.define(Definition{"older", "age + 1"});
    data.define(Definition{"oldest", "older + 1"});
    show();
    cases.resize(300, 200);
    cases.show();
    for (int i = 0; i < 20; ++i) {
        data.define(Definition{"a long name of a variable, number " + std::to_string(i), "age"});
        cases.setData(&data); // the window shows what is new before events are handled
        cases.showLastVariable();
        const QRect cell = cases.table()->visualRect(cases.table()->currentIndex());
        EXPECT_TRUE(cases.table()->viewport()->rect().contains(cell)) << i;
    }
    while (data.dataSet().variableCount() > 7)
        data.undefine(data.dataSet().variableCount() - 1);
    show();
    cases.showLastVariable();
    EXPECT_EQ(cases.table()->currentIndex().row(), 2) << "the place among the cases stays";
    EXPECT_EQ(cases.table()->currentIndex().data().toString(), "72");
    EXPECT_EQ(variables.table()->model()->rowCount(), 7);

    // By key, when nothing uses it.
    variables.show();
    const auto remove = [&](int row) {
        variables.table()->setCurrentIndex(variables.table()->model()->index(row, 0));
        for (QAction* action : variables.table()->actions())
            if (action->objectName() == "remove") action->trigger();
        show();
        return variables.table()->model()->rowCount();
    };
    EXPECT_EQ(remove(0), 7);
    EXPECT_TRUE(desktop::says(variables, "'age' stays: it was read"));
    EXPECT_EQ(remove(5), 7);
    EXPECT_TRUE(desktop::says(variables, "'oldest' is computed from it"));
    data.select("oldest > 60");
    EXPECT_EQ(remove(6), 7);
    EXPECT_TRUE(desktop::says(variables, "the selection of cases uses it"));
    data.select("");
    data.weightBy("oldest");
    EXPECT_EQ(remove(6), 7);
    EXPECT_TRUE(desktop::says(variables, "it weights the cases"));
    data.define(Definition{"last", "age"});
    show();
    data.weightBy("last");
    EXPECT_EQ(remove(6), 7);
    EXPECT_EQ(data.weightVariable(), 7) << "the weights are still those of 'last'";
    EXPECT_EQ(data.dataSet().variable(6).name, "last");
    EXPECT_EQ(data.columns().size(), 7U);
    EXPECT_EQ(data.columns()[6].first, data.dataSet().column(6).data());
    variables.setEditable(false);
    data.weightBy("");
    EXPECT_EQ(remove(6), 7);
    EXPECT_TRUE(desktop::says(variables, "while an analysis runs"));
    for (const std::string& note : data.notes())
        EXPECT_EQ(note.find("oldest"), std::string::npos) << note;
}

} // namespace
} // namespace korvana::desktop
