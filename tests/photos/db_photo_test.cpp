// dbPhoto: photos stored byte for byte, refused when they are no pictures,
// found by mail address, scaled to fit.
#include "zelvo/db_photo.h"

#include <filesystem>
#include <fstream>

#include "personslist/lvw_add_persons.h"
#include "personslist/persons_book.h"
#include "photos/person_list_photos.h"
#include "photos/photo_queries.h"
#include "platform/ui/scripted_host.h"
#include "support/shared_data.h"
#include "zelvo/enums.h"

namespace zelvo::testing {
namespace {

Bytes ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), {});
}
std::string Seed(const char* name) { return std::string(ZELVO_PICTURE_SEEDS) + "/" + name; }

class DbPhotoTest : public PersonsBookTest {
protected:
    void SetUp() override {
        PersonsBookTest::SetUp();
        photo_.SetpicPhoto(&pic_);
        photo_.SetScaledPhoto(&scaled_);
        scaled_.Width = 120 * 15;  // 120 x 160 pixels
        scaled_.Height = 160 * 15;
    }
    void TearDown() override {
        photo_.SetRecordset({});
        PersonsBookTest::TearDown();
    }
    std::string WriteFile(const std::string& name, const Bytes& bytes) {
        std::string path = dir_.File(name);
        std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
        return path;
    }
    // Adds the file as person `id`'s photo through the dialog.
    bool Add(std::int32_t id, const std::string& path) {
        host_.QueueFileDialogAnswer(path);
        return photo_.AddPhoto(id, &host_);
    }
    std::vector<Bytes> Stored(std::int32_t id) {
        std::vector<Bytes> all;
        for (auto rs = db_.OpenRecordset(SqlPersonPhotos(id)); !rs.IsEOF(); rs.MoveNext()) all.push_back(rs("Photo").bytes());
        return all;
    }
    void StoreRaw(std::int32_t id, const Bytes& bytes) {
        dao::Recordset rs = db_.OpenRecordset("Photo", dao::dbOpenTable);
        rs.AddNew();
        rs.SetValue("Personal ID", Variant(std::int64_t{id}));
        rs.SetValue("Photo", Variant(bytes));
        rs.Update();
    }
    void Mail(const std::string& text, int owner, int ownerType) {
        db_.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"" + text + "\", 2)");
        db_.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Select Max([Resource ID]), " +
                    std::to_string(owner) + ", " + std::to_string(ownerType) + " From Resources");
    }

    ui::ScriptedUiHost host_;
    ui::ScopedUiHost scoped_{host_};
    ui::PictureBox pic_, scaled_;
    dbPhoto photo_;
};

TEST_F(DbPhotoTest, AddedPhotoIsStoredAsTheFilesOwnBytes) {
    for (const char* seed : {"tiny_ours.jpg", "tiny_rgba.png", "tiny.gif", "tiny_8bit.bmp", "tiny.tif"}) {
        const Bytes file = ReadBytes(Seed(seed));
        ASSERT_FALSE(file.empty()) << seed;
        ASSERT_TRUE(Add(3, Seed(seed))) << seed;
        EXPECT_EQ(Stored(3).front(), file) << seed;  // newest first
    }
    EXPECT_EQ(Stored(3).size(), 5u);
    EXPECT_EQ(host_.Log().size(), 5u);  // five dialogs, no message
}

TEST_F(DbPhotoTest, RealPhotoRoundTripsByteForByte) {
    ZELVO_NEEDS_SHARED_IMAGES();
    const std::string path = std::string(ZELVO_SHARED_DATA) + "/images/kodim04.png";
    ASSERT_TRUE(Add(1, path));
    EXPECT_EQ(Stored(1).front(), ReadBytes(path));
}

TEST_F(DbPhotoTest, CancelledDialogChangesNothing) {
    host_.QueueFileDialogAnswer("");
    EXPECT_FALSE(photo_.AddPhoto(1, &host_));
    EXPECT_TRUE(Stored(1).empty());
    EXPECT_EQ(host_.Log().size(), 1u);  // the dialog, no message
}

// A PNG header claiming 20,000 x 20,000 pixels, chunks with good checksums.
Bytes PngBomb() {
    auto crc = [](const Bytes& b, std::size_t from) {
        std::uint32_t c = 0xFFFFFFFF;
        for (std::size_t i = from; i < b.size(); ++i) {
            c ^= b[i];
            for (int k = 0; k < 8; ++k) c = (c >> 1) ^ (0xEDB88320 & (0 - (c & 1)));
        }
        return ~c;
    };
    auto be32 = [](Bytes& b, std::uint32_t v) {
        for (int s = 24; s >= 0; s -= 8) b.push_back(std::uint8_t(v >> s));
    };
    Bytes png = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
    be32(png, 13);
    std::size_t start = png.size();
    for (char c : std::string("IHDR")) png.push_back(std::uint8_t(c));
    be32(png, 20000), be32(png, 20000);
    png.insert(png.end(), {8, 2, 0, 0, 0});
    be32(png, crc(png, start));
    be32(png, 0);
    start = png.size();
    for (char c : std::string("IEND")) png.push_back(std::uint8_t(c));
    be32(png, crc(png, start));
    return png;
}

TEST_F(DbPhotoTest, FilesThatAreNoPicturesAreRefusedAndNothingIsStored) {
    const Bytes jpeg = ReadBytes(Seed("tiny_ours.jpg"));
    const std::string text = "not a picture at all, only a name that ends in .jpg";
    const Bytes gifNoFrames = {'G', 'I', 'F', '8', '9', 'a', 4, 0, 4, 0, 0, 0, 0, 0x3B};
    const std::vector<std::pair<std::string, Bytes>> bad = {
        {"truncated.jpg", Bytes(jpeg.begin(), jpeg.begin() + long(jpeg.size() / 2))},
        {"text.jpg", Bytes(text.begin(), text.end())},
        {"empty.jpg", Bytes{}},
        {"bomb.png", PngBomb()},
        {"noframes.gif", gifNoFrames},
    };
    for (const auto& [name, bytes] : bad) {
        std::size_t shown = host_.Log().size();
        EXPECT_FALSE(Add(2, WriteFile(name, bytes))) << name;
        ASSERT_EQ(host_.Log().size(), shown + 2) << name;  // the dialog, then the message
        EXPECT_EQ(host_.Log().back().prompt, "Invalid image") << name;
        EXPECT_EQ(host_.Log().back().buttons, ui::vbExclamation) << name;
    }
    EXPECT_TRUE(Stored(2).empty());
    EXPECT_EQ(db_.OpenRecordset("Select Count(*) As n From Photo")("n").AsInteger(), 0);
}

TEST_F(DbPhotoTest, FitArithmetic) {
    struct Case { double pw, ph, sw, sh, nw, nh, dx, dy; };
    for (const Case& c : {Case{400, 300, 200, 200, 200, 150, 0, 25}, Case{300, 400, 200, 200, 150, 200, 25, 0},
                          Case{100, 50, 200, 200, 100, 50, 50, 75}, Case{400, 400, 200, 200, 200, 200, 0, 0}}) {
        double nw = 0, nh = 0, dx = -1, dy = -1;
        dbPhoto::GetNewDimensions(c.pw, c.ph, c.sw, c.sh, nw, nh, &dx, &dy);
        EXPECT_DOUBLE_EQ(nw, c.nw) << c.pw << "x" << c.ph;
        EXPECT_DOUBLE_EQ(nh, c.nh) << c.pw << "x" << c.ph;
        EXPECT_DOUBLE_EQ(dx, c.dx) << c.pw << "x" << c.ph;
        EXPECT_DOUBLE_EQ(dy, c.dy) << c.pw << "x" << c.ph;
    }
}

TEST_F(DbPhotoTest, ScalingCentresOnTheBackColourAndTheBorderMeansNoPhoto) {
    auto pic = std::make_shared<imaging::Picture>();
    pic->Width = 400, pic->Height = 300;
    pic->Pixels.assign(400 * 300 * 3, 0);
    for (std::size_t i = 0; i < pic->Pixels.size(); i += 3) pic->Pixels[i] = 200;  // red
    pic_.Picture = pic;
    scaled_.Width = scaled_.Height = 200 * 15;
    scaled_.BackColor = 0xFF0000;  // blue, as 0x00BBGGRR
    ASSERT_TRUE(photo_.ScalingPhoto());
    const imaging::Picture& img = *scaled_.Image;
    ASSERT_EQ(img.Width, 200);
    ASSERT_EQ(img.Height, 200);
    EXPECT_EQ(scaled_.BorderStyle, 0);
    auto px = [&](int x, int y) { const std::uint8_t* p = img.Row(y) + 3 * x; return std::vector<int>{p[0], p[1], p[2]}; };
    EXPECT_EQ(px(100, 10), (std::vector<int>{0, 0, 255}));    // margin above: 25 rows
    EXPECT_EQ(px(100, 30), (std::vector<int>{200, 0, 0}));    // the photo
    EXPECT_EQ(px(100, 190), (std::vector<int>{0, 0, 255}));   // margin below

    pic_.Picture.reset();
    EXPECT_FALSE(photo_.ScalingPhoto());
    EXPECT_EQ(scaled_.BorderStyle, 1);
}

TEST_F(DbPhotoTest, LookupByPersonMailThenEmployeeMailPersonWins) {
    StoreRaw(1, ReadBytes(Seed("tiny_ours.jpg")));
    StoreRaw(2, ReadBytes(Seed("tiny_rgba.png")));
    StoreRaw(3, ReadBytes(Seed("tiny.gif")));
    db_.Execute("Insert Into Employees ([Job ID], [Personal ID]) Values (1, 2)");  // employee 1 is person 2
    Mail("desk@firm.example", 1, oEmployees_ID);
    Mail("both@firm.example", 1, oEmployees_ID);
    Mail("both@firm.example", 3, oPersonal_ID);
    Mail("job@firm.example", 1, oJob_ID);

    std::int32_t pid = 0;
    std::shared_ptr<imaging::Picture> pic;
    EXPECT_TRUE(photo_.GetPhotoByEmail("ivan@example.org", &pic, false, &pid));
    EXPECT_EQ(pid, 1);
    ASSERT_TRUE(pic);
    EXPECT_EQ(pic->FileBytes, ReadBytes(Seed("tiny_ours.jpg")));

    EXPECT_TRUE(photo_.GetPhotoByEmail("desk@firm.example", &pic, false, &pid));
    EXPECT_EQ(pid, 2);
    EXPECT_TRUE(photo_.GetPhotoByEmail("BOTH@firm.example", &pic, false, &pid));
    EXPECT_EQ(pid, 3);
    EXPECT_FALSE(photo_.GetPhotoByEmail("job@firm.example", &pic, false, &pid));
    EXPECT_FALSE(pic);

    // Quotes and wildcards are part of the text, never of the statement.
    for (const char* odd : {"x\" or \"1\"=\"1", "*", "ivan@example.*", "\"", "a\"\"b"})
        EXPECT_FALSE(photo_.GetPhotoByEmail(odd, &pic)) << odd;

    ui::DataControl data;
    EXPECT_TRUE(photo_.FindPhotoByEmail("desk@firm.example", data));
    EXPECT_EQ(ValueConv::ToLong(data.Recordset()("Photo.Personal ID")), 2);
    EXPECT_FALSE(photo_.FindPhotoByEmail("nobody@example.org", data));
}

TEST_F(DbPhotoTest, ScaledLookupGivesThePictureInTheBox) {
    ZELVO_NEEDS_SHARED_IMAGES();
    StoreRaw(1, ReadBytes(std::string(ZELVO_SHARED_DATA) + "/images/kodim04.png"));  // 512 x 768
    std::shared_ptr<imaging::Picture> pic;
    ASSERT_TRUE(photo_.GetPhotoByEmail("ivan@example.org", &pic, true));
    ASSERT_TRUE(pic);
    EXPECT_EQ(pic->Width, 120);
    EXPECT_EQ(pic->Height, 160);
    EXPECT_EQ(scaled_.Picture, pic);
}

TEST_F(DbPhotoTest, NewestPhotoWinsAndUnreadableBytesStayStoredAndShowNothing) {
    const Bytes unknown = {'R', 'I', 'F', 'F', 0, 0, 0, 0, 'W', 'E', 'B', 'P'};
    StoreRaw(1, ReadBytes(Seed("tiny_ours.jpg")));
    StoreRaw(1, unknown);
    std::shared_ptr<imaging::Picture> pic;
    EXPECT_TRUE(photo_.GetPhotoByEmail("ivan@example.org", &pic));
    EXPECT_FALSE(pic);
    bool found = true;
    photo_.LoadPersonPhoto(1, found);
    EXPECT_FALSE(found);
    EXPECT_EQ(scaled_.BorderStyle, 1);
    EXPECT_EQ(Stored(1).front(), unknown);

    StoreRaw(1, ReadBytes(Seed("tiny_rgba.png")));
    photo_.LoadPersonPhoto(1, found);
    EXPECT_TRUE(found);
    EXPECT_EQ(pic_.Picture->FileBytes, ReadBytes(Seed("tiny_rgba.png")));

    photo_.LoadPersonPhoto(3, found);  // nobody's photo
    EXPECT_FALSE(found);
    EXPECT_EQ(scaled_.BorderStyle, 1);
}

TEST_F(DbPhotoTest, DeleteAndUnscaledWorkOnTheCurrentRow) {
    StoreRaw(2, ReadBytes(Seed("tiny_8bit.bmp")));
    photo_.SetRecordset(db_.OpenRecordset("Select * From Photo Where [Personal ID]=2 Order By [Photo ID] Desc"));
    auto full = photo_.UnScaledPhoto();
    ASSERT_TRUE(full);
    EXPECT_EQ(full->FileBytes, ReadBytes(Seed("tiny_8bit.bmp")));
    EXPECT_TRUE(photo_.DeletePhoto());
    EXPECT_TRUE(Stored(2).empty());
    EXPECT_FALSE(photo_.DeletePhoto());
    EXPECT_FALSE(photo_.UnScaledPhoto());
}

TEST_F(DbPhotoTest, BmpHeadDimensions) {
    const Bytes bmp = ReadBytes(Seed("tiny_32bit.bmp"));
    double w = 0, h = 0, depth = 0;
    dbPhoto::GetBMPDimensions(std::string(bmp.begin(), bmp.end()), w, h, &depth);
    EXPECT_GT(w, 0);
    EXPECT_NE(h, 0);
    EXPECT_EQ(depth, 32);
    dbPhoto::GetBMPDimensions("BM", w, h);
    EXPECT_EQ(w, 0);
}

TEST_F(DbPhotoTest, ListsShowPhotosOnlyInTheIconViewAndReadEachOnce) {
    StoreRaw(1, ReadBytes(Seed("tiny_ours.jpg")));
    StoreRaw(2, Bytes{1, 2, 3});
    InstallPersonListPhotos();
    auto icons = std::make_shared<ui::ImageList>();
    icons->ListImages().Add("User", nullptr);
    ui::ListView lv;
    lv.SetIcons(icons);
    lv.SetView(ui::lvwIcon);
    dao::Recordset rs = db_.OpenRecordset("Select * From PersonalData");
    LvwAddPersons2(lv, rs, -1, Variant("User"), true, &pic_, &scaled_);
    SetPersonPhotoLoader(nullptr);
    std::vector<std::string> iconKeys;
    for (int i = 1; i <= lv.ListItems().Count(); ++i) iconKeys.push_back(lv.ListItems().Item(i).Icon().AsText());
    EXPECT_EQ(iconKeys, (std::vector<std::string>{"User", "User", "User", "ID_1"}));
    ASSERT_TRUE(icons->ListImages().Exists("ID_1"));
    EXPECT_EQ(icons->ListImages().Item("ID_1").Picture->Width, 1395 / 15);

    // SetListIcons: nothing in the report view; in the icon view the rows
    // still showing "User" get their photo, the cached one without a read.
    for (int i = 1; i <= lv.ListItems().Count(); ++i) lv.ListItems().Item(i).SetIcon(Variant("User"));
    lv.SetView(ui::lvwReport);
    photo_.SetListIcons(lv);
    EXPECT_EQ(lv.ListItems().Item(4).Icon(), Variant("User"));
    lv.SetView(ui::lvwIcon);
    db_.Execute("Delete From Photo Where [Personal ID]=1");
    photo_.SetListIcons(lv);
    EXPECT_EQ(lv.ListItems().Item(4).Icon(), Variant("ID_1"));
    EXPECT_EQ(lv.ListItems().Item(3).Icon(), Variant("User"));
}

}  // namespace
}  // namespace zelvo::testing
