#include "shell/Program.h"

#include "controls/Control.h"
#include "runtime/MsgBox.h"
#include "runtime/VBError.h"
#include "shell/ScreenRegistry.h"

#include <QCoreApplication>

namespace shell {

namespace {
std::function<void()>& endHandler()
{
    static std::function<void()> handler;
    return handler;
}
} // namespace

void startProgram()
{
    endOnUncaughtErrors();
    // The start procedure's trap: nothing follows the show, so a failure that leaves
    // frmMain's own traps simply ends the procedure. The procedure is the handler around
    // frmMain's load, so the load's errors come here rather than to the top.
    vb::runEvent([] {
        try {
            screens().show(QStringLiteral("frmMain"));
        } catch (const vb::VBError&) {
        }
    });
}

void endProgram()
{
    if (endHandler())
        endHandler()();
    else
        QCoreApplication::exit(0);
}

void setEndHandler(std::function<void()> handler)
{
    endHandler() = std::move(handler);
}

void endOnUncaughtErrors()
{
    vb::setUncaughtErrorHandler([](const vb::VBError& e) {
        vb::ShowErrorBox(e.number(), e.description(), vb::mb::Critical);
        endProgram();
    });
}

} // namespace shell
