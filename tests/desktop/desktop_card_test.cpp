// The person card in the desktop host under Qt's offscreen platform: opened
// as the host's ShowPersProp opens it, typed into through its widgets, and
// drawn.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTabWidget>
#include <QTreeView>
#include <filesystem>
#include <functional>

#include "offscreen_app.h"
#include "platform/core/value_conv.h"
#include "platform/ui/form.h"
#include "qt_ui_host.h"
#include "store/library_state.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"
#include "zelvo/addressbook.h"

namespace zelvo::testing {
namespace {

// The person presses keys in `widget`.
void TypeKeys(QWidget* widget, const QString& text) {
    for (QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(widget, &press);
    }
}

class DesktopCardTest : public DesktopTest {
protected:
    std::string Stored(int id, const char* column) {
        dao::Database db = DBEngine().OpenDatabase(DatabasePath(), false, true, "Access");
        auto rs = db.OpenRecordset("Select * From PersonalData Where [Personal ID]=" + std::to_string(id));
        std::string value = ValueConv::ToText(rs(column));
        rs.Close();
        db.Close();
        return value;
    }
};

TEST_F(DesktopCardTest, TheCardShowsThePersonTakesTypingAndIsDrawn) {
    bool ran = false;
    Drive([&](ui::Form& form, QWidget& window) {
        ran = true;
        EXPECT_EQ(form.Name(), "frmMain");
        EXPECT_EQ(window.windowTitle().toStdString(), "Иванов Иван - the reference data");
        auto* family = window.findChild<QLineEdit*>("txtFamily");
        auto* combo = window.findChild<QComboBox*>("Combo1");
        auto* tabs = window.findChild<QTabWidget*>("SSTab1");
        ASSERT_TRUE(family && combo && tabs);
        EXPECT_EQ(family->text().toStdString(), "Иванов");
        EXPECT_EQ(combo->currentText().toStdString(), "Иванов Иван");
        EXPECT_EQ(combo->count(), 5);  // four suggestions, then the name as it is
        EXPECT_EQ(tabs->currentIndex(), 1);  // Home
        EXPECT_EQ(tabs->tabText(2).toStdString(), "Projects");
        auto* mails = window.findChild<QTreeView*>("lvwEmail");
        ASSERT_NE(mails, nullptr);
        EXPECT_EQ(mails->model()->rowCount(), 2);
        EXPECT_EQ(window.findChild<QTreeView*>("LvwProjects")->model()->rowCount(), 2);

        window.resize(640, 600);
        QApplication::processEvents();
        QImage shot = window.grab().toImage();
        std::string file = std::string(ZELVO_TEST_OUTPUT) + "/person_card.png";
        EXPECT_TRUE(shot.save(QString::fromStdString(file), "PNG")) << file;
        QRect names(family->mapTo(&window, QPoint(0, 0)), family->size());
        EXPECT_GT(InkIn(shot, names, 3), 30) << "no name drawn in txtFamily of " << file;

        // Typing reaches the book at once; the display name stays.
        family->setFocus();
        family->end(false);
        TypeKeys(family, "у");
        EXPECT_EQ(Stored(1, "FirstName"), "Иванову");
        EXPECT_EQ(Stored(1, "FullName"), "Иванов Иван");
        // The display name is picked from the suggestions.
        emit combo->activated(1);
        EXPECT_EQ(Stored(1, "FullName"), "Иван Иванович Иванову");
    });
    cAddressbook book;
    book.AppPath = AppPath;
    book.ShowPersProp(1);
    EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace zelvo::testing
