#include "personslist/lvw_add_persons.h"

#include "persons_book.h"
#include "personslist/persons_query.h"

namespace zelvo::testing {
namespace {

class LvwAddPersonsTest : public PersonsBookTest {
protected:
    // A list with `columns` column headers.
    static std::unique_ptr<ui::ListView> List(int columns) {
        auto lv = std::make_unique<ui::ListView>();
        for (int i = 0; i < columns; ++i) lv->ColumnHeaders().Add("c" + std::to_string(i + 1));
        lv->SetView(ui::lvwReport);
        return lv;
    }

    void Fill(ui::ListView& lv, const std::string& sql, int emailColumn) {
        dao::Recordset rs = db_.OpenRecordset(sql);
        LvwAddPersons2(lv, rs, emailColumn, Variant("User"));
    }

    // Each row as "tag:text|sub1|sub2…".
    static std::vector<std::string> Rows(const ui::ListView& lv) {
        std::vector<std::string> rows;
        for (int i = 1; i <= lv.ListItems().Count(); ++i) {
            const ui::ListItem& it = lv.ListItems().Item(i);
            std::string r = it.Tag().AsText() + ":" + it.Text();
            for (const auto& s : it.SubItemsRaw()) r += "|" + s;
            rows.push_back(r);
        }
        return rows;
    }

    static constexpr const char* kAll = "Select * From PersonalData";
};

TEST_F(LvwAddPersonsTest, RowsComeLastRecordFirstWithTheirNames) {
    db_.Execute("Insert Into PersonalData (FirstName, SurName, FullName, MiddleName) Values (\"Petrov\", \"Petrovich\", \"\", \"\")");
    db_.Execute("Insert Into PersonalData (Comments) Values (\"no names at all\")");
    auto lv = List(1);
    Fill(*lv, kAll, -1);
    EXPECT_EQ(Rows(*lv), (std::vector<std::string>{"6:  ", "5:Petrov  Petrovich", "4:Archive Person",
                                                   "3:Nobody No Name", "2:Smith", "1:Иванов Иван"}));
    const ui::ListItem& first = lv->ListItems().Item(6);
    EXPECT_EQ(first.Tag(), Variant(std::int64_t{1}));
    EXPECT_EQ(first.Icon(), Variant("User"));
    EXPECT_EQ(first.SmallIcon(), Variant("User"));
}

TEST_F(LvwAddPersonsTest, EmailColumnTwoAlsoWritesTheTypeTextForEveryRow) {
    auto lv = List(3);
    Fill(*lv, kAll, 2);
    // Person 1 has two addresses: the first row's is shown.
    EXPECT_EQ(Rows(*lv), (std::vector<std::string>{"4:Archive Person| Man", "3:Nobody No Name| Man",
                                                   "2:Smith| Man|smith@example.com",
                                                   "1:Иванов Иван| Man|ivan@example.org"}));
}

TEST_F(LvwAddPersonsTest, EmailColumnOneWritesOnlyTheAddress) {
    auto lv = List(2);
    Fill(*lv, kAll, 1);
    EXPECT_EQ(Rows(*lv), (std::vector<std::string>{"4:Archive Person", "3:Nobody No Name",
                                                   "2:Smith|smith@example.com", "1:Иванов Иван|ivan@example.org"}));
}

TEST_F(LvwAddPersonsTest, ColumnsTheListLacksAreLeftOut) {
    // One column: no address and no type text, whatever the e-mail column.
    for (int column : {1, 2, 5}) {
        auto lv = List(1);
        Fill(*lv, kAll, column);
        EXPECT_EQ(Rows(*lv).back(), "1:Иванов Иван") << column;
    }
    // Two columns and the address asked for in the third: the type text still comes.
    auto lv = List(2);
    Fill(*lv, kAll, 2);
    EXPECT_EQ(Rows(*lv).back(), "1:Иванов Иван| Man");
}

TEST_F(LvwAddPersonsTest, AnEmptyRecordSetLeavesTheListAndItsRedrawAsTheyWere) {
    for (bool redraw : {true, false}) {
        auto lv = List(3);
        lv->ListItems().Add().SetText("kept");
        lv->SetAllowRedraw(redraw);
        int heard = 0;
        lv->Observe([&](const ui::ListViewChange&) { ++heard; });
        Fill(*lv, "Select * From PersonalData Where [Personal ID]=99", 2);
        EXPECT_EQ(Rows(*lv), (std::vector<std::string>{":kept"}));
        EXPECT_EQ(lv->AllowRedraw(), redraw);
        EXPECT_EQ(heard, 0);
    }
}

TEST_F(LvwAddPersonsTest, TheFillIsToldAsOneRedraw) {
    auto lv = List(3);
    std::vector<ui::ListViewChange::Kind> heard;
    lv->Observe([&](const ui::ListViewChange& c) { heard.push_back(c.kind); });
    Fill(*lv, kAll, 2);
    EXPECT_EQ(heard, std::vector{ui::ListViewChange::Redraw});
    EXPECT_TRUE(lv->AllowRedraw());
}

TEST_F(LvwAddPersonsTest, MissingColumnsGiveTagZeroAndBlankNames) {
    auto lv = List(1);
    Fill(*lv, "Select FullName From PersonalData Where [Personal ID]=2", -1);
    EXPECT_EQ(Rows(*lv), (std::vector<std::string>{"0:Smith"}));
}

TEST_F(LvwAddPersonsTest, WithoutABookTheAddressesAreLeftOutQuietly) {
    // The record set is open, but the book of AppPath is not there: the
    // extra database does not open and the rows come without addresses.
    TempDir elsewhere;
    AppPath = elsewhere.path().string();
    auto lv = List(3);
    Fill(*lv, kAll, 2);
    EXPECT_EQ(Rows(*lv).back(), "1:Иванов Иван");
    EXPECT_EQ(lv->ListItems().Count(), 4);
}

TEST_F(LvwAddPersonsTest, PhotoModeUsesThePhotoAsTheLargeIcon) {
    auto lv = List(1);
    lv->SetView(ui::lvwIcon);
    auto images = std::make_shared<ui::ImageList>();
    images->MaskColor = 0x123456;
    images->ListImages().Add("User", nullptr);
    images->ListImages().Add("ID_99", nullptr);  // from an earlier fill
    lv->SetIcons(images);
    ui::PictureBox pic, scaled;
    scaled.Width = 10;
    scaled.Height = 20;
    std::vector<int> asked;
    auto previous = SetPersonPhotoLoader([&](std::int32_t id, ui::PictureBox&, ui::PictureBox& s) {
        asked.push_back(id);
        EXPECT_EQ(s.Width, 1395);
        EXPECT_EQ(s.BackColor, 0x123456);
        if (id != 2) return false;
        s.Picture = std::make_shared<imaging::Picture>();
        s.Picture->Width = 3;
        return true;
    });
    dao::Recordset rs = db_.OpenRecordset("Select * From PersonalData Where [Personal ID]<3");
    LvwAddPersons2(*lv, rs, -1, Variant("User"), true, &pic, &scaled, 1395, 1860);
    SetPersonPhotoLoader(previous);

    EXPECT_EQ(asked, (std::vector{2, 1}));
    EXPECT_EQ(lv->ListItems().Item(1).Icon(), Variant("ID_2"));
    EXPECT_EQ(lv->ListItems().Item(1).SmallIcon(), Variant("User"));
    EXPECT_EQ(lv->ListItems().Item(2).Icon(), Variant("User"));
    ASSERT_EQ(images->ListImages().Count(), 2);
    EXPECT_EQ(images->ListImages().Item(2).Key, "ID_2");
    EXPECT_EQ(images->ListImages().Item(2).Picture->Width, 3);
    EXPECT_EQ(scaled.Width, 10);
    EXPECT_EQ(scaled.Height, 20);

    // Without both pictures photo mode is off and nobody is asked.
    asked.clear();
    SetPersonPhotoLoader([&](std::int32_t id, ui::PictureBox&, ui::PictureBox&) {
        asked.push_back(id);
        return true;
    });
    auto lv2 = List(1);
    dao::Recordset rs2 = db_.OpenRecordset(kAll);
    LvwAddPersons2(*lv2, rs2, -1, Variant("User"), true, &pic, nullptr, 1395, 1860);
    SetPersonPhotoLoader(previous);
    EXPECT_TRUE(asked.empty());
}

}  // namespace
}  // namespace zelvo::testing
