// Computed variables in the window: added, shown, and removed again.

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
    write("old", "age >= 62");
    QTest::keyClick(variables->search(), Qt::Key_Return); // OK, wherever the focus is
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
                               {"x", " ", "needs an expression"}}) {
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
    const auto fatal = QAbstractItemModelTester::FailureReportingMode::Fatal;
    const QAbstractItemModelTester casesTester(cases.table()->model(), fatal);
    const QAbstractItemModelTester variablesTester(variables.table()->model(), fatal);
    const auto show = [&] {
        cases.setData(&data);
        variables.setData(&data);
    };
    show();
    cases.goToCase(3);
    data.define(Definition{"older", "age + 1"});
    data.define(Definition{"oldest", "older + 1"});
    cases.resize(300, 200);
    cases.show();
    cases.setData(&data); // the window shows what is new before events are handled
    cases.showLastVariable();
    EXPECT_EQ(cases.table()->currentIndex().row(), 2) << "the place among the cases stays";
    EXPECT_EQ(cases.table()->currentIndex().data().toString(), "72");
    const QRect cell = cases.table()->visualRect(cases.table()->currentIndex());
    EXPECT_TRUE(cases.table()->viewport()->rect().contains(cell));

    // It can be removed by key when nothing uses it.
    variables.show();
    const auto stays = [&](int row, const char* why) {
        show();
        const int before = variables.table()->model()->rowCount();
        variables.table()->setCurrentIndex(variables.table()->model()->index(row, 0));
        for (QAction* action : variables.table()->actions())
            if (action->objectName() == "remove") action->trigger();
        show();
        EXPECT_TRUE(*why == '\0' || desktop::says(variables, why)) << why;
        return variables.table()->model()->rowCount() == before;
    };
    EXPECT_TRUE(stays(0, "'age' stays: it was read"));
    EXPECT_TRUE(stays(5, "'oldest' is computed from it"));
    data.select("oldest > 60");
    EXPECT_TRUE(stays(6, "the selection of cases uses it"));
    data.select("v7 > 60");
    EXPECT_TRUE(stays(5, "the selection of cases has a later variable by its number"));
    data.select("");
    data.weightBy("oldest");
    EXPECT_TRUE(stays(6, "it weights the cases"));
    data.define(Definition{"last", "age"});
    data.weightBy("last");
    EXPECT_FALSE(stays(6, ""));
    EXPECT_EQ(data.weightVariable(), 7) << "the weights are still those of 'last'";
    EXPECT_EQ(data.columns()[6].first, data.dataSet().column(6).data());
    variables.setEditable(false);
    data.weightBy("");
    EXPECT_TRUE(stays(6, "while an analysis runs"));
}

} // namespace
} // namespace korvana::desktop
