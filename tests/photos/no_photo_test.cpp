// The no-photo card.
#include "photos/no_photo.h"

#include <gtest/gtest.h>

#include "zelvo/db_photo.h"

namespace zelvo {
namespace {

int Ink(const imaging::Picture& p, int x0, int y0, int x1, int y1) {
    int n = 0;
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x) n += p.Row(y)[3 * x] < 128;
    return n;
}

TEST(NoPhoto, WhiteFramedCardWithTheWordsInTheMiddle) {
    auto card = MakeNoPhotoPicture("No Photo", 93, 124);
    ASSERT_TRUE(card);
    EXPECT_EQ(Ink(*card, 0, 0, 93, 1), 93);                 // the frame's top line
    EXPECT_EQ(Ink(*card, 92, 0, 93, 124), 124);             // its right line
    EXPECT_EQ(Ink(*card, 1, 1, 92, 40), 0);                 // white above the text
    EXPECT_GT(Ink(*card, 1, 50, 92, 74), 20);               // the words
    EXPECT_EQ(Ink(*card, 1, 85, 92, 123), 0);               // white below
    // Centred: as much ink left of the middle as right, within a glyph.
    EXPECT_NEAR(Ink(*card, 1, 1, 46, 123), Ink(*card, 47, 1, 92, 123), 30);
}

TEST(NoPhoto, NarrowCardsWrapAtBlanksAndOddSizesGiveNothing) {
    auto wide = MakeNoPhotoPicture("No Photo", 120, 40);
    auto narrow = MakeNoPhotoPicture("No Photo", 40, 60);
    ASSERT_TRUE(wide && narrow);
    auto inkRows = [](const imaging::Picture& p) {
        int rows = 0;
        for (int y = 1; y < p.Height - 1; ++y) rows += Ink(p, 1, y, p.Width - 1, y + 1) > 0;
        return rows;
    };
    EXPECT_GT(inkRows(*narrow), inkRows(*wide) + 5);  // two lines
    EXPECT_FALSE(MakeNoPhotoPicture("x", 0, 10));
    EXPECT_TRUE(MakeNoPhotoPicture("Нет фото \xFF broken", 50, 50));
}

TEST(NoPhoto, ReplaceNoPhotoImageSwapsTheDefaultIcon) {
    ui::ImageList images;
    images.ImageWidth = 93, images.ImageHeight = 124;
    images.ListImages().Add("User", nullptr);
    images.ListImages().Add("Org", nullptr);
    dbPhoto photo;
    photo.ReplaceNoPhotoImage(images);
    ASSERT_TRUE(images.ListImages().Exists("User"));
    ASSERT_TRUE(images.ListImages().Item("User").Picture);
    EXPECT_EQ(images.ListImages().Item("User").Picture->Width, 93);
    EXPECT_FALSE(images.ListImages().Item("Org").Picture);
}

}  // namespace
}  // namespace zelvo
