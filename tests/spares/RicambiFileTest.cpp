// RICAMBI.txt: the padding steps of the category column, the lines of the parts, the
// total block, and the file as Cmd_Save_txt writes it with its box.
#include "spares/RicambiFile.h"

#include "runtime/Clock.h"
#include "runtime/OpenFile.h"
#include "spares/Form2.h"
#include "support/GoldenFile.h"
#include "support/ScreenTest.h"
#include "support/SparesTest.h"

using spares::PaddedCategory;
using spares::PartLine;

namespace {

class RicambiFileTest : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        kit::partsRegister(plant);
    }
};

} // namespace

// The widths are uneven on purpose: 53 up to 16 characters, 52 from 17 to 22 and from 24
// to 28, 50 at 23, 46 from 29 to 36, 39 at 37, 40 at 38, and no blanks from 39 on.
TEST(RicambiFile, CategoryPaddingStepsAtTheirBoundaries)
{
    const std::vector<std::pair<int, int>> widths = {
        {0, 50},  {3, 53},  {4, 53},  {16, 53}, {17, 52}, {18, 52}, {22, 52}, {23, 50}, {24, 52}, {25, 52},
        {28, 52}, {29, 46}, {30, 46}, {36, 46}, {37, 39}, {38, 40}, {39, 39}, {40, 40}, {60, 60}};
    for (const auto& [length, width] : widths) {
        const QString name(length, QLatin1Char('R'));
        const QString padded = PaddedCategory(name);
        EXPECT_EQ(padded.size(), width) << "length " << length;
        EXPECT_TRUE(padded.startsWith(name));
        EXPECT_EQ(padded.mid(length).trimmed(), QString()) << "only blanks are added";
    }
    EXPECT_EQ(PaddedCategory(vb::Variant::null()), QString());
    // Characters, not bytes: an accented name pads like any other of its length.
    EXPECT_EQ(PaddedCategory(QStringLiteral("GUARNIZIONI DI TENUTA à")).size(), 50);
}

TEST(RicambiFile, PartLineJoinsCostCategoryDescriptionAndStock)
{
    EXPECT_EQ(PartLine(1234.5, QStringLiteral("OLIO"), QStringLiteral("Idraulico"), 4.0),
              QStringLiteral("1.234,50\t\tOLIO") + QString(49, QLatin1Char(' ')) + QStringLiteral("Idraulico\t4"));
    // From 39 characters on the description follows the name directly; Nulls print nothing.
    const QString longName(39, QLatin1Char('X'));
    EXPECT_EQ(PartLine(vb::Variant::null(), longName, QStringLiteral("Pezzo"), vb::Variant::null()),
              QStringLiteral("\t\t") + longName + QStringLiteral("Pezzo\t"));
    EXPECT_EQ(PartLine(0.0, QStringLiteral("A"), vb::Variant::null(), 2.5).left(6), QStringLiteral("0,00\t\t"));
}

TEST_F(RicambiFileTest, SaveTxtWritesEveryPartByCategoryAndCostThenTheTotal)
{
    screen<spares::Form2>("Form2")->Cmd_Save_txt->click();
    // By category, then by cost; "OLIO" and "VITE M8" are both padded to 53.
    golden::expectMatches("texts/RICAMBI.txt", linesOf("RICAMBI.txt").join(u'\n'));
    EXPECT_BOX(oneBox(), "RICAMBI --",
               "Il File 'RICAMBI.txt' che verrà aperto automaticamente dopo il Click, è stato salvato in:  " + path(),
               vb::mb::Information);
    EXPECT_EQ(vb::OpenFileService::takeOpened(), std::vector<QString>{path() + QStringLiteral("/RICAMBI.txt")});

    // A second save replaces the first; with no parts the heading and a total of 0 remain.
    exec("Delete * from Tbl_Descrizione_Ricambi");
    vb::Clock::advance(86400);
    screen<spares::Form2>("Form2")->Cmd_Save_txt->click();
    golden::expectMatches("texts/RICAMBI-empty.txt", linesOf("RICAMBI.txt").join(u'\n'));
    EXPECT_EQ(boxes().size(), 1u);
}
