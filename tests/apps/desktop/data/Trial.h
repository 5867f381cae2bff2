#pragma once

#include "apps/desktop/data/DataLoader.h"
#include "host/session/ActiveData.h"
#include "tests/apps/desktop/Labels.h"
#include "tests/support/MakeData.h"

#include <QtTest>
#include <QtWidgets>
#include <gtest/gtest.h>
#include <memory>

namespace korvana::desktop {

/// A folder for the files of one test.
class Folder {
public:
    QString write(const QString& name, const QByteArray& content) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
    }
    QString path(const QString& name) const { return folder_.filePath(name); }

private:
    QTemporaryDir folder_;
};

inline void open(ActiveData& data, const QByteArray& content) {
    const Folder folder;
    ReadFault fault;
    ASSERT_TRUE(openDataFile(data, folder.write(QStringLiteral("trial.csv"), content), &fault))
        << fault.text.toStdString();
}

/// Numbers with labels and a missing code, texts, dates, case names, and a name that is not a plain word.
inline void openTrial(ActiveData& data) {
    open(data, ",age,sex,entry,status,white cells\n"
               "Ada,51,female,1995-01-10,0,1.5\n"
               "Ben,62,male,1996-02-29,1,NA\n"
               "Cyd,70,male,,9,3.25\n"
               "Dora,48,female,2001-12-31,1,4\n");
    data.describe(3, "alive or dead", 9, {{0, "alive"}, {1, "dead"}});
}

/// A dialog for the trial data; to be opened by the test.
template <class Dialog>
struct DataDialog : testing::Test {
    DataDialog() { openTrial(data); }
    void openDialog() {
        dialog = std::make_unique<Dialog>(data);
        dialog->show();
    }
    template <class Part>
    Part* part(const QString& name = {}) const {
        return dialog->template findChild<Part*>(name);
    }
    /// Whether the dialog shows this text sooner or later.
    bool says(const QString& text) const {
        return QTest::qWaitFor([&] { return desktop::says(*dialog, text); });
    }
    bool accepted() const { return !dialog->isVisible() && dialog->result() == QDialog::Accepted; }
    /// Whether it closes when asked to.
    bool accepts() const {
        dialog->accept();
        return accepted();
    }

    ActiveData data;
    std::unique_ptr<Dialog> dialog;
};

inline DataSet numbers(int cases) {
    DataSet data("numbers.csv", cases);
    Variable variable;
    variable.name = "x";
    test::addVariable(data, variable, [](int i) { return i; });
    return data;
}

} // namespace korvana::desktop
