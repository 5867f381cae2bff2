// The file dialogs that an analysis asks for.

#include "apps/desktop/window/FileChooser.h"
#include "tests/apps/desktop/Modals.h"
#include "tests/apps/desktop/data/Trial.h"

namespace korvana::desktop {
namespace {

struct Choosing : testing::Test {
    std::string save() {
        return chooser.toSave({"Save As File", "NEW.INI", ".INI"}, data, &window).value_or("none");
    }
    std::string open() {
        return chooser.toOpen({"Open File", "*.INI", ".INI"}, data, &window).value_or("none");
    }
    std::string at(const char* name) { return folder.path(name).toStdString(); }
    std::string write(const char* name) { return folder.write(name, "").toStdString(); }

    Folder folder;
    std::string data = write("data.csv");
    QWidget window;
    FileChooser chooser;
};

TEST_F(Choosing, AnEndingIsAddedWhereNoneIsTyped) {
    std::string chosen;
    for (const auto& [typed, expected] :
         {std::pair{"plain", "plain.INI"}, {"own.ini", "own.ini"}, {"other.txt", "other.txt"}}) {
        answering([&] { chosen = save(); }, naming(folder.path(typed)));
        EXPECT_EQ(chosen, at(expected));
    }
    answering([&] { chosen = save(); },
              [&](QFileDialog& dialog) {
                  EXPECT_EQ(dialog.windowTitle(), "Save As File");
                  EXPECT_EQ(dialog.selectedFiles().value(0).toStdString(), at("NEW.INI"))
                      << "beside the data";
                  QMetaObject::invokeMethod(&dialog, "accept");
              });
    EXPECT_EQ(chosen, at("NEW.INI"));
    answering([&] { chosen = save(); }, [](QFileDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(chosen, "none");
}

TEST_F(Choosing, AFileIsReplacedOnlyWhenThatIsConfirmed) {
    write("there.INI");
    std::string chosen;
    answering([&] { chosen = save(); }, naming(folder.path("there")), pressing(QMessageBox::No),
              naming(folder.path("free")));
    EXPECT_EQ(chosen, at("free.INI"));
    answering([&] { chosen = save(); }, naming(folder.path("there")), pressing(QMessageBox::Yes));
    EXPECT_EQ(chosen, at("there.INI"));
}

TEST_F(Choosing, FilesToOpenAreThoseOfTheEndingInAnyLetters) {
    write("small.ini");
    write("LARGE.INI");
    std::string chosen;
    QStringList shown;
    answering([&] { chosen = open(); },
              [&](QFileDialog& dialog) {
                  EXPECT_EQ(dialog.windowTitle(), "Open File");
                  EXPECT_EQ(dialog.findChild<QLineEdit*>("fileNameEdit")->text(), "");
                  auto* list = dialog.findChild<QListView*>("listView");
                  EXPECT_TRUE(
                      QTest::qWaitFor([&] { return list->model()->rowCount(list->rootIndex()) == 2; }));
                  for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row)
                      shown += list->model()->index(row, 0, list->rootIndex()).data().toString();
                  naming(folder.path("small.ini"))(dialog);
              });
    shown.sort();
    EXPECT_EQ(shown.join(' '), "LARGE.INI small.ini");
    EXPECT_EQ(chosen, at("small.ini"));
    answering([&] { chosen = open(); },
              [&](QFileDialog& dialog) {
                  EXPECT_EQ(dialog.directory(), QDir(folder.path("")));
                  dialog.reject();
              });
    EXPECT_EQ(chosen, "none");
}

} // namespace
} // namespace korvana::desktop
