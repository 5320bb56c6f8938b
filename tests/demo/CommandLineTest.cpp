// --demo --screenshot makes the demo plant and a PNG of every screen; --demo on data refuses.
#include "shell/ScreenRegistry.h"
#include "support/LiveDrive.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QByteArray bytesOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

TEST(DemoCommandLine, ScreenshotsOfEveryScreenOnTheDemoPlantThenNoSecondDemo)
{
    QTemporaryDir home, pictures;
    const auto [made, madeErr] = runVelmora({"--demo", "--screenshot", pictures.path(), "--home", home.path()});
    EXPECT_EQ(made, 0) << qPrintable(madeErr);
    EXPECT_TRUE(madeErr.contains("Impianto dimostrativo:")) << qPrintable(madeErr);

    // The main screen, the about screen and every working screen built so far (the
    // documents show only from a print command), each a real PNG.
    QStringList expected{"frmMain", "frmAbout"};
    for (const QString& name : shell::ScreenRegistry::names())
        if (shell::ScreenRegistry::built(name) && !expected.contains(name) &&
            !name.startsWith(QLatin1String("DataReport")))
            expected << name;
    for (const QString& name : expected) {
        const QByteArray png = bytesOf(QDir(pictures.path()).filePath(name + ".png"));
        EXPECT_TRUE(png.startsWith(QByteArray("\x89PNG\r\n\x1a\n", 8)))
            << qPrintable(name) << "; " << qPrintable(madeErr);
        EXPECT_GT(png.size(), 1000) << qPrintable(name);
    }

    // The folder now holds a store with data: a second --demo leaves it alone.
    const QString store = QDir(home.path()).filePath("Velmora.sqlite");
    const QByteArray before = bytesOf(store);
    ASSERT_FALSE(before.isEmpty());
    const auto [again, againErr] = runVelmora({"--demo", "--home", home.path()});
    EXPECT_EQ(again, 1);
    EXPECT_TRUE(againErr.contains("contiene già dei dati")) << qPrintable(againErr);
    EXPECT_EQ(bytesOf(store), before);
}

} // namespace
