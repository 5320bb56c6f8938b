// The common pattern of the text files, the date-format advice and the user's own notes.
#include "reports/TextExport.h"

#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/OpenFile.h"
#include "runtime/TextFile.h"
#include "runtime/VBError.h"
#include "support/GoldenFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class TextExportTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_oldPath = vb::AppPath();
        vb::setAppPath(m_dir.path());
        vb::Clock::freeze(QDateTime(QDate(2026, 11, 15), QTime(8, 0)));
        vb::MsgBoxService::setScripted(true);
        vb::MsgBoxService::clear();
        vb::OpenFileService::setRecording(true);
        vb::OpenFileService::takeOpened();
    }
    void TearDown() override
    {
        vb::Clock::unfreeze();
        vb::setAppPath(m_oldPath);
        vb::OpenFileService::setOpener({});
        vb::OpenFileService::setRecording(true);
    }
    /// The file's lines; every line of the file ends with a line end, the last too.
    QStringList linesOf(const QString& name) const
    {
        QFile f(m_dir.filePath(name));
        EXPECT_TRUE(f.open(QIODevice::ReadOnly));
        QString all = QString::fromUtf8(f.readAll());
        all.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        QStringList lines = all.split(u'\n');
        EXPECT_EQ(lines.takeLast(), QString());
        return lines;
    }

    QTemporaryDir m_dir;
    QString m_oldPath;
};

const QString rule(31, QChar(0x00B0));

} // namespace

TEST_F(TextExportTest, ListFileIsReplacedAnnouncedAndOpened)
{
    reports::TextExport text{"SCHEDA_Fornitori.txt",
                             {"Fornitore:ROSSI", "CITTA':Brescia"},
                             QStringList{QString()} + reports::SignatureEnding(),
                             reports::DatedTitle("SCHEDA Fornitori"),
                             {}};
    reports::WriteTextExport(text);
    EXPECT_EQ(linesOf("SCHEDA_Fornitori.txt"),
              (QStringList{"DATA 15/11/2026", "", "Fornitore:ROSSI", "CITTA':Brescia", "", rule, "VELMORA", rule}));

    // A second save overwrites the first without asking; an empty list keeps the frame.
    text.lines.clear();
    reports::WriteTextExport(text);
    EXPECT_EQ(linesOf("SCHEDA_Fornitori.txt"), (QStringList{"DATA 15/11/2026", "", "", rule, "VELMORA", rule}));

    const auto shown = vb::MsgBoxService::takeShown();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0].title, "SCHEDA Fornitori -15/11/2026-");
    EXPECT_EQ(shown[0].buttons, vb::mb::Information);
    EXPECT_EQ(shown[0].prompt, "Il File 'SCHEDA_Fornitori.txt' che verrà aperto automaticamente dopo il Click, "
                               "è stato salvato in:  " +
                                   vb::AppPath());
    EXPECT_EQ(vb::OpenFileService::takeOpened(), std::vector<QString>(2, m_dir.filePath("SCHEDA_Fornitori.txt")));
}

TEST_F(TextExportTest, BoxComesBeforeTheDesktopOpensTheFile)
{
    std::size_t boxesWhenOpened = 0;
    vb::OpenFileService::setRecording(false);
    vb::OpenFileService::setOpener([&](const QString&) { boxesWhenOpened = vb::MsgBoxService::shown().size(); });
    reports::WriteTextExport({"RICAMBI.txt", {}, {}, "RICAMBI --", {}});
    EXPECT_EQ(boxesWhenOpened, 1u);
}

TEST_F(TextExportTest, FileThatCannotBeWrittenRaisesAndNothingIsSaidOrOpened)
{
    vb::setAppPath(m_dir.path() + "/missing");
    try {
        reports::WriteDateInfo();
        ADD_FAILURE() << "a missing folder must raise";
    } catch (const vb::VBError& e) {
        EXPECT_EQ(e.number(), 76);
    }
    EXPECT_TRUE(vb::MsgBoxService::takeShown().empty());
    EXPECT_TRUE(vb::OpenFileService::takeOpened().empty());
}

// The two date-format texts, kept whole in tests/data/texts: the guide comes without a
// box; the advice has two empty lines under its heading and its box no date in the title.
TEST_F(TextExportTest, DateErrorGuideComesWithoutABox)
{
    reports::WriteDateErrorGuide();
    golden::expectMatches("texts/Errore_Formato_Data.txt", linesOf("Errore_Formato_Data.txt").join(u'\n') + u'\n');
    EXPECT_EQ(vb::OpenFileService::takeOpened(), std::vector<QString>{m_dir.filePath("Errore_Formato_Data.txt")});
    EXPECT_TRUE(vb::MsgBoxService::takeShown().empty());
}

TEST_F(TextExportTest, DateInfoHasTwoEmptyLinesForTheHeadingAndTheBoxWithoutADate)
{
    reports::WriteDateInfo();
    golden::expectMatches("texts/Info.txt", linesOf("Info.txt").join(u'\n') + u'\n');
    // Unlike the list files the title has nothing between its dashes: the old program
    // never put the date there, and the title stays as its users know it.
    const auto shown = vb::MsgBoxService::takeShown();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title, "Info --");
    EXPECT_EQ(shown[0].prompt, "Il File 'Info.txt' che verrà aperto automaticamente dopo il Click, è stato "
                               "salvato in:  " +
                                   vb::AppPath());
    EXPECT_EQ(vb::OpenFileService::takeOpened(), std::vector<QString>{m_dir.filePath("Info.txt")});
}

TEST_F(TextExportTest, NotesFileKeepsWhatTheUserWrote)
{
    // Missing: created empty. Present: opened for appending and closed, never changed.
    reports::OpenNotesFile();
    EXPECT_TRUE(QFile::exists(m_dir.filePath("Note.txt")));
    vb::WriteTextFile(m_dir.filePath("Note.txt"), {"mie note", "°à è “ok”"});
    reports::OpenNotesFile();
    reports::OpenNotesFile();
    EXPECT_EQ(linesOf("Note.txt"), (QStringList{"mie note", "°à è “ok”"}));
    EXPECT_TRUE(vb::MsgBoxService::takeShown().empty());
    EXPECT_EQ(vb::OpenFileService::takeOpened(), std::vector<QString>(3, m_dir.filePath("Note.txt")));
}
