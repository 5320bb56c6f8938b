#include "demo/Screenshots.h"

#include "controls/Controls.h"
#include "runtime/MsgBox.h"
#include "runtime/OpenFile.h"
#include "runtime/VBError.h"
#include "shell/Program.h"
#include "shell/ScreenRegistry.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>

#include <cstdio>
#include <map>

namespace demo {

namespace {

void settle()
{
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

/// Screens whose lower lists stay empty until a row is chosen are taken with the first
/// row of each of these lists chosen, in order, as a user would.
void chooseFirstRows(vb::Form* form)
{
    static const std::map<QString, QStringList> chosen = {
        {QStringLiteral("Form11"), {QStringLiteral("DataGrid1"), QStringLiteral("DataGrid2")}},
        {QStringLiteral("Form14"), {QStringLiteral("DataGrid1"), QStringLiteral("DataGrid2")}},
        {QStringLiteral("Form19"), {QStringLiteral("List2"), QStringLiteral("DataGrid2")}},
    };
    const auto it = chosen.find(form->objectName());
    if (it == chosen.end())
        return;
    for (const QString& list : it->second)
        if (vb::Control* c = form->control(list))
            c->select(0);
}

/// Commands that open a window of their own, taken as well: the screen, the command, the
/// window's name and the picture's.
struct OwnWindow
{
    const char* screen;
    const char* command;
    const char* window;
    const char* picture;
};
constexpr OwnWindow OwnWindows[] = {{"Form11", "Cmd_Grafico", "Grafici", "Form11_Grafico"}};

QWidget* topLevel(const QString& name)
{
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == name && w->isVisible())
            return w;
    return nullptr;
}

bool grabTo(QWidget* w, const QString& path)
{
    if (!w)
        return false;
    const QPixmap picture = w->grab();
    return !picture.isNull() && picture.save(path, "PNG");
}

} // namespace

QStringList writeScreenshots(const QString& dir)
{
    QDir().mkpath(dir);
    // As under the automation driver: nothing waits for a person, nothing is launched.
    vb::MsgBoxService::setScripted(true);
    vb::OpenFileService::setRecording(true);
    vb::Timer::setManual(true);
    QApplication::setQuitOnLastWindowClosed(false);
    shell::setEndHandler([] {});

    auto& registry = shell::screens();
    QStringList written;
    shell::startProgram();
    settle();
    // frmAbout stands over the main screen after the start; the main screen is taken alone.
    if (vb::Form* about = registry.loaded(QStringLiteral("frmAbout")))
        if (grabTo(about, QDir(dir).filePath(QStringLiteral("frmAbout.png"))))
            written << QStringLiteral("frmAbout");
    registry.unloadAllScreens();
    registry.unload(QStringLiteral("frmAbout"));
    settle();
    if (grabTo(registry.loaded(QStringLiteral("frmMain")), QDir(dir).filePath(QStringLiteral("frmMain.png"))))
        written << QStringLiteral("frmMain");

    for (const QString& name : shell::ScreenRegistry::names()) {
        // The documents (DataReportN) show only on a statement of a screen's print command.
        if (name == QLatin1String("frmMain") || name == QLatin1String("frmAbout") ||
            name.startsWith(QLatin1String("DataReport")) || !shell::ScreenRegistry::built(name))
            continue;
        try {
            registry.unloadAllScreens();
            registry.show(name);
            if (vb::Form* shown = registry.loaded(name))
                chooseFirstRows(shown);
            settle();
            if (grabTo(registry.loaded(name), QDir(dir).filePath(name + QStringLiteral(".png"))))
                written << name;
            else
                std::fprintf(stderr, "velmora: %s non ha prodotto un'immagine\n", qPrintable(name));
            for (const OwnWindow& own : OwnWindows) {
                vb::Form* shown = registry.loaded(name);
                if (!shown || name != QLatin1String(own.screen))
                    continue;
                if (vb::Control* command = shown->control(QString::fromLatin1(own.command)))
                    command->click();
                settle();
                const QString picture = QString::fromLatin1(own.picture);
                if (grabTo(topLevel(QString::fromLatin1(own.window)),
                           QDir(dir).filePath(picture + QStringLiteral(".png"))))
                    written << picture;
            }
        } catch (const vb::VBError& e) {
            std::fprintf(stderr, "velmora: %s non si apre: %d %s\n", qPrintable(name), e.number(),
                         qPrintable(e.description()));
        }
        vb::MsgBoxService::takeShown();
    }
    registry.discardAll();
    return written;
}

} // namespace demo
