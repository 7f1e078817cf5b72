// The desktop host under Qt's offscreen platform: the address book window on
// a small book, driven through its widgets as a person would.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QImage>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QToolBar>
#include <filesystem>
#include <functional>

#include "offscreen_app.h"
#include "personswindow/frm_persons.h"
#include "platform/dao/dbengine.h"
#include "qt_ui_host.h"
#include "store/library_state.h"
#include "support/book_fixture.h"
#include "support/run_program.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

QAction* ToolbarAction(QWidget& window, const char* bar, const char* key) {
    auto* tb = window.findChild<QToolBar*>(bar);
    if (!tb) return nullptr;
    for (QAction* a : tb->actions())
        if (a->objectName() == key) return a;
    return nullptr;
}

class DesktopWindowTest : public DesktopTest {
protected:
    // The sample book: 1 "Иванов Иван" in "A" and "A\B", 2 "Smith" in
    // "AB", 3 with no name and no project, 4 "Archive Person" archived.
    void SetUp() override {
        DesktopTest::SetUp();
        std::filesystem::create_directories(dir_.path() / ".archive" / "Old");
    }
};

TEST_F(DesktopWindowTest, TheWindowShowsItsRowsAndAToolbarKeyChangesThem) {
    bool ran = false;
    Drive([&](ui::Form& form, QWidget& window) {
        ran = true;
        auto* persons = window.findChild<QListView*>("LvwUser");
        ASSERT_NE(persons, nullptr);
        ASSERT_EQ(persons->model()->rowCount(), 1);  // the project "AB": Smith
        EXPECT_EQ(persons->model()->index(0, 0).data().toString(), "Smith");
        EXPECT_EQ(window.findChild<QLineEdit*>("txtPrj")->text(), "AB");
        EXPECT_EQ(window.windowTitle(), "Address Book");

        QAction* all = ToolbarAction(window, "tbPrj", "AllPersons");
        ASSERT_NE(all, nullptr);
        all->trigger();
        EXPECT_EQ(persons->model()->rowCount(), 2);
        EXPECT_TRUE(all->isChecked());
        EXPECT_FALSE(ToolbarAction(window, "tbPrj", "CurPrj")->isChecked());
        EXPECT_EQ(window.findChild<QLineEdit*>("txtPrj")->text(), "");

        ToolbarAction(window, "tbPrj", "Projects")->trigger();
        ASSERT_EQ(persons->model()->rowCount(), 1);
        EXPECT_EQ(persons->model()->index(0, 0).data().toString(), "Archive Person");
        ToolbarAction(window, "tbPrj", "Projects")->trigger();

        // The picture of the window shows the rows' text.
        QCoreApplication::processEvents();
        QImage shot = window.grab().toImage();
        std::string file = std::string(ZELVO_TEST_OUTPUT) + "/persons_window.png";
        EXPECT_TRUE(shot.save(QString::fromStdString(file), "PNG")) << file;
        QRect firstRow = persons->visualRect(persons->model()->index(0, 0));
        QPoint at = persons->viewport()->mapTo(&window, firstRow.topLeft());
        EXPECT_GT(InkIn(shot, QRect(at, firstRow.size())), 30) << "no text in the first row of " << file;
        QRect belowRows = persons->visualRect(persons->model()->index(1, 0));
        belowRows.translate(0, belowRows.height() * 2);
        EXPECT_EQ(InkIn(shot, QRect(persons->viewport()->mapTo(&window, belowRows.topLeft()), belowRows.size())), 0);

        // Closed by its frame.
        window.close();
        EXPECT_TRUE(form.Unloaded());
    });
    EXPECT_EQ(PickPerson("AB", false, 0, 0, false), 0);
    EXPECT_TRUE(ran);
}

TEST_F(DesktopWindowTest, APersonsSelectionInTheViewIsTheOneOKGives) {
    Drive([&](ui::Form& form, QWidget& window) {
        auto* persons = window.findChild<QListView*>("LvwUser");
        ASSERT_NE(persons, nullptr);
        ToolbarAction(window, "tbPrj", "AllPersons")->trigger();
        ASSERT_EQ(persons->model()->rowCount(), 2);
        // The window selected the first row; the person clicks the second.
        EXPECT_TRUE(persons->selectionModel()->isRowSelected(0, {}));
        persons->selectionModel()->setCurrentIndex(persons->model()->index(1, 0),
                                                   QItemSelectionModel::ClearAndSelect);
        auto& f = static_cast<frmPersons&>(form);
        EXPECT_EQ(f.Personal_ID(), 1);
        window.findChild<QPushButton*>("cmdOK")->click();
    });
    EXPECT_EQ(PickPerson("", false, 0, 0, false), 1);
}

TEST_F(DesktopWindowTest, TheSelectedPersonsSummaryIsDrawnBesideTheList) {
    {
        dao::Database db = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access");
        db.Execute("Insert Into PostAddresses ([aParent ID], aType, Address, PostIndex) Values (0, 2, \"Moscow\", \"101000\")");
        db.Execute("Insert Into AddressesOwners ([Address ID], [Owner ID], OwnerType) Values (1, 1, 0)");
        db.Close();
    }
    bool ran = false;
    Drive([&](ui::Form&, QWidget& window) {
        ran = true;
        auto* persons = window.findChild<QListView*>("LvwUser");
        ASSERT_NE(persons, nullptr);
        int row = -1;
        for (int i = 0; i < persons->model()->rowCount(); ++i)
            if (persons->model()->index(i, 0).data().toString() == QString::fromUtf8("Иванов Иван")) row = i;
        ASSERT_GE(row, 0);
        persons->selectionModel()->setCurrentIndex(persons->model()->index(row, 0),
                                                   QItemSelectionModel::ClearAndSelect);
        auto* name = window.findChild<QLineEdit*>("txtName");
        auto* address = window.findChild<QLineEdit*>("txtAddress");
        ASSERT_TRUE(name && address);
        EXPECT_EQ(name->text(), QString::fromUtf8("Иванов Иван"));
        EXPECT_EQ(address->text(), "101000, Moscow");

        QCoreApplication::processEvents();
        QImage shot = window.grab().toImage();
        std::string file = std::string(ZELVO_TEST_OUTPUT) + "/persons_summary.png";
        EXPECT_TRUE(shot.save(QString::fromStdString(file), "PNG")) << file;
        for (QLineEdit* edit : {name, address}) {
            QRect box(edit->mapTo(&window, QPoint(0, 0)), edit->size());
            EXPECT_GT(InkIn(shot, box.adjusted(4, 4, -4, -4)), 30)
                << edit->objectName().toStdString() << " shows no text in " << file;
        }
        // An empty field of the summary stays blank.
        auto* job = window.findChild<QLineEdit*>("txtJob");
        ASSERT_NE(job, nullptr);
        EXPECT_EQ(job->text(), "");
        window.close();
    });
    PickPerson("", false, 0, 0, true);
    EXPECT_TRUE(ran);
}

TEST_F(DesktopWindowTest, TheProgramWritesItsScreenshotAndExits) {
    std::string png = dir_.File("shot.png");
    Outcome r = RunProgram(std::string(ZELVO_BIN_DIR) + "/zelvo-desktop",
                           {"--app-path", dir_.path().string(), "--screenshot", png}, dir_.File("stderr.txt"),
                           "QT_QPA_PLATFORM=offscreen");
    ASSERT_EQ(r.status, 0) << r.err;
    QImage image(QString::fromStdString(png));
    ASSERT_FALSE(image.isNull());
    EXPECT_GT(image.width(), 300);
    EXPECT_GT(image.height(), 200);

    r = RunProgram(std::string(ZELVO_BIN_DIR) + "/zelvo-desktop",
                   {"--app-path", dir_.path().string(), "--screenshot", dir_.File("no/such/folder/x.png")},
                   dir_.File("stderr.txt"), "QT_QPA_PLATFORM=offscreen");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("cannot write"), std::string::npos) << r.err;
}

}  // namespace
}  // namespace zelvo::testing

namespace zelvo::testing {
namespace {

TEST(QtFileFilterTest, TheLibrarysFilterBecomesQtsWithThePatternsShown) {
    EXPECT_EQ(desktop::QtFileFilter("vCard (*.vcf)|*.vcf|All files|*.*").toStdString(),
              "vCard (*.vcf);;All files (*.*)");
    EXPECT_EQ(desktop::QtFileFilter("Pictures|*.jpg;*.png").toStdString(), "Pictures (*.jpg *.png)");
    EXPECT_EQ(desktop::QtFileFilter("").toStdString(), "");
}

}  // namespace
}  // namespace zelvo::testing
