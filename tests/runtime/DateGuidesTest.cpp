// The date format guides, the session stamp and the duration text.
#include "Helpers.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/DateGuides.h"
#include "runtime/MsgBox.h"
#include "runtime/OpenFile.h"
#include "runtime/TextFile.h"
#include "runtime/VBError.h"
#include "runtime/Variant.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vb;

class DateGuidesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_oldPath = AppPath();
        setAppPath(m_dir.path());
        Clock::freeze(QDateTime(QDate(2026, 11, 15), QTime(8, 0)));
        MsgBoxService::setScripted(true);
        MsgBoxService::clear();
        OpenFileService::setRecording(true);
        OpenFileService::takeOpened();
    }
    void TearDown() override
    {
        Clock::unfreeze();
        setAppPath(m_oldPath);
        OpenFileService::setOpener({});
        OpenFileService::setRecording(true);
    }
    QStringList readLines(const QString& name) const
    {
        QFile f(AppFile(name));
        EXPECT_TRUE(f.open(QIODevice::ReadOnly | QIODevice::Text));
        QStringList lines = QString::fromUtf8(f.readAll()).split(u'\n');
        EXPECT_EQ(lines.takeLast(), QString()); // the last line ends too
        return lines;
    }

    QTemporaryDir m_dir;
    QString m_oldPath;
};

TEST_F(DateGuidesTest, ErrorGuideIsWrittenLineByLineAndOpened)
{
    WriteDateErrorGuide();
    const QStringList lines = readLines("Errore_Formato_Data.txt");
    ASSERT_EQ(lines.size(), 11);
    EXPECT_EQ(lines[0], "DATA 15/11/2026");
    EXPECT_EQ(lines[1], "");
    EXPECT_EQ(lines[2], "IL FORMATO DATA IMPOSTATO SU QUESTO PC HA CAUSATO UN ERRORE AL SOFTWARE");
    EXPECT_EQ(lines[3], "PER UN CORRETTO FUNZIONAMENTO DEVI IMPOSTARE IL SEGUENTE FORMATO gg/MM/aaaa");
    EXPECT_EQ(lines[5], "SEGUI LA PROCEDURA SOTTOSTANTE:");
    EXPECT_TRUE(lines[6].startsWith(QString::fromUtf8("dal menu avvio (o start) di Windows, selezionare l'opzione “Impostazioni”")));
    EXPECT_TRUE(lines[6].contains(QString::fromUtf8("cliccando su  “applica” e premere “OK” riavviare")));
    EXPECT_TRUE(lines[6].endsWith("il problema dovrebbe essere risolto."));
    EXPECT_EQ(lines[7], "");
    EXPECT_EQ(lines[8], "");
    EXPECT_EQ(lines[9], QString(31, QChar(0x00B0)));
    EXPECT_EQ(lines[10], "Per Ulteriori Anomalie scrivete una Email a " + SupportAddress());
    EXPECT_EQ(OpenFileService::takeOpened(), std::vector<QString>{AppFile("Errore_Formato_Data.txt")});
    EXPECT_TRUE(MsgBoxService::takeShown().empty());
}

TEST_F(DateGuidesTest, InfoFileTellsWhereItIsBeforeOpening)
{
    std::size_t boxesWhenOpened = 0;
    OpenFileService::setRecording(false);
    OpenFileService::setOpener([&](const QString&) { boxesWhenOpened = MsgBoxService::shown().size(); });
    WriteDateInfo();
    EXPECT_EQ(boxesWhenOpened, 1u);

    const QStringList lines = readLines("Info.txt");
    ASSERT_EQ(lines.size(), 10);
    EXPECT_EQ(lines[2], "INFORMAZIONI PER UNA VISUALIZZAZIONE CORRETTA DELLE DATE");
    EXPECT_EQ(lines[3], "");
    EXPECT_EQ(lines[4], "");
    EXPECT_TRUE(lines[5].startsWith("dal menu avvio"));

    const auto shown = MsgBoxService::takeShown();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title, "Info --");
    EXPECT_EQ(shown[0].buttons, mb::Information);
    EXPECT_EQ(shown[0].prompt,
              QString::fromUtf8("Il File 'Info.txt' che verrà aperto automaticamente dopo il Click, è stato salvato in:  ")
                  + AppPath());
}

TEST_F(DateGuidesTest, AFolderThatIsMissingIsError76AndNothingOpens)
{
    setAppPath(m_dir.path() + "/missing");
    EXPECT_EQ(errorOf([] { WriteDateErrorGuide(); }), 76);
    EXPECT_TRUE(OpenFileService::takeOpened().empty());
}

TEST(SessionStamp, PlainNumbersTwoBlanksAndReadableAsADate)
{
    const QDateTime at(QDate(2016, 7, 3), QTime(9, 5, 0));
    EXPECT_EQ(SessionStamp(at), "3/7/2016  9.5.0");
    EXPECT_EQ(SessionStamp(QDateTime(QDate(2026, 12, 25), QTime(23, 59, 59))), "25/12/2026  23.59.59");
    EXPECT_EQ(Variant(SessionStamp(at)).toDate().serial, toSerial(at));
}

TEST(DurationText, HoursAreNotLimitedToADay)
{
    EXPECT_EQ(DurationText(0), "00:00:00");
    EXPECT_EQ(DurationText(1200), "20:00:00");
    EXPECT_EQ(DurationText(2160), "36:00:00");
    EXPECT_EQ(DurationText(90.5), "01:30:30");
    EXPECT_EQ(DurationText(6000), "100:00:00");
    // 59.5 seconds: Mod rounds the seconds to 60 (halves to even) while the minutes are
    // truncated, so the duration reads as nothing. Kept as the old program computed it.
    EXPECT_EQ(DurationText(59.5 / 60), "00:00:00");
    // The one command that used 16-bit integers overflows above 546 minutes.
    EXPECT_EQ(DurationText16(546), "09:06:00");
    EXPECT_THROW(DurationText16(547), VBError);
}
