// The program's options, run as a user types them: help and version answer without a
// display, a wrong option is refused by name with the usage line.
#include "support/TestPaths.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace {

struct Ran
{
    int exitCode;
    QString out, err;
};

/// The program with no display at all: a path that tried to open a window would abort.
Ran velmora(const QStringList& args)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove("DISPLAY");
    env.remove("WAYLAND_DISPLAY");
    env.remove("QT_QPA_PLATFORM");
    p.setProcessEnvironment(env);
    p.start(testpaths::velmoraBinary(), args);
    EXPECT_TRUE(p.waitForFinished(30000));
    EXPECT_EQ(p.exitStatus(), QProcess::NormalExit);
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
}

TEST(CommandLineTest, HelpVersionAndWrongOptions)
{
    const Ran help = velmora({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* option : {"--home", "--demo", "--screenshot", "--import", "--replace", "--drive", "--version"})
        EXPECT_TRUE(help.out.contains(QLatin1String(option))) << option;

    const Ran version = velmora({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out, "Velmora 3.0.3\n");

    const struct
    {
        QStringList args;
        const char* says;
    } wrong[] = {{{"--colore"}, "opzione sconosciuta: --colore"},
                 {{"--home"}, "manca il valore di --home"},
                 {{"avanti"}, "argomento non riconosciuto: avanti"}};
    for (const auto& w : wrong) {
        const Ran r = velmora(w.args);
        EXPECT_EQ(r.exitCode, 2) << w.says;
        EXPECT_TRUE(r.err.startsWith(QStringLiteral("velmora: %1\nUso: velmora").arg(QLatin1String(w.says))))
            << r.err.toStdString();
    }
}

} // namespace
