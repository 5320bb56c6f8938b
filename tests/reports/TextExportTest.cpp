// The common pattern of the list files, and the user's own notes file.
#include "reports/TextExport.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/OpenFile.h"
#include "runtime/TextFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
QStringList linesOf(const QString& path)
{
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    QString all = QString::fromUtf8(f.readAll());
    all.replace("\r\n", "\n");
    QStringList lines = all.split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}
} // namespace

TEST(TextExport, ListFileIsReplacedAnnouncedAndOpened)
{
    QTemporaryDir dir;
    vb::setAppPath(dir.path());
    vb::Clock::freeze(QDateTime(QDate(2026, 11, 15), QTime(8, 0)));
    vb::MsgBoxService::setScripted(true);
    vb::MsgBoxService::clear();
    vb::OpenFileService::setRecording(true);
    vb::OpenFileService::takeOpened();

    reports::TextExport text{"SCHEDA_Fornitori.txt", "SCHEDA Fornitori", {"Fornitore: ROSSI", "Citta/Paese: Brescia"}};
    reports::WriteTextExport(text);
    // A second save overwrites the first without asking; an empty list keeps the frame.
    text.lines.clear();
    reports::WriteTextExport(text);
    const QStringList expected{"DATA 15/11/2026", "", "", vb::DegreeRule(), "VELMORA", vb::DegreeRule()};
    EXPECT_EQ(linesOf(dir.filePath("SCHEDA_Fornitori.txt")), expected);

    const auto shown = vb::MsgBoxService::takeShown();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0].title, "SCHEDA Fornitori -15/11/2026-");
    EXPECT_EQ(shown[0].buttons, 64);
    EXPECT_EQ(shown[0].prompt, "Il File 'SCHEDA_Fornitori.txt' che verrà aperto automaticamente dopo il Click, "
                               "è stato salvato in:  " + vb::AppPath());
    EXPECT_EQ(vb::OpenFileService::takeOpened().size(), 2u);

    // Note.txt keeps what the user wrote there, click after click, and shows no box.
    vb::WriteTextFile(dir.filePath("Note.txt"), {"mie note"});
    reports::OpenNotesFile();
    reports::OpenNotesFile();
    EXPECT_EQ(linesOf(dir.filePath("Note.txt")), QStringList{"mie note"});
    EXPECT_TRUE(vb::MsgBoxService::takeShown().empty());
    EXPECT_EQ(vb::OpenFileService::takeOpened(), std::vector<QString>(2, dir.filePath("Note.txt")));
    vb::Clock::unfreeze();
}
