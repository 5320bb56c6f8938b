#include "shell/Program.h"

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
    // The start procedure's trap: nothing follows the show, so a failure that leaves
    // frmMain's own traps simply ends the procedure.
    try {
        screens().show(QStringLiteral("frmMain"));
    } catch (const vb::VBError&) {
    }
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

} // namespace shell
