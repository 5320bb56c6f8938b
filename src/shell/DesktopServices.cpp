#include "shell/DesktopServices.h"

#include "controls/ScreenFont.h"
#include "runtime/MsgBox.h"
#include "runtime/OpenFile.h"

#include <QApplication>
#include <QDesktopServices>
#include <QLibraryInfo>
#include <QLocale>
#include <QPushButton>
#include <QTranslator>
#include <QUrl>

namespace shell {

QMessageBox::StandardButtons buttonsFor(int vbFlags)
{
    switch (vbFlags & 7) {
    case vb::mb::OKCancel: return QMessageBox::Ok | QMessageBox::Cancel;
    case vb::mb::AbortRetryIgnore: return QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore;
    case vb::mb::YesNoCancel: return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case vb::mb::YesNo: return QMessageBox::Yes | QMessageBox::No;
    case vb::mb::RetryCancel: return QMessageBox::Retry | QMessageBox::Cancel;
    default: return QMessageBox::Ok;
    }
}

QMessageBox::Icon iconFor(int vbFlags)
{
    switch (vbFlags & 0x70) {
    case vb::mb::Critical: return QMessageBox::Critical;
    case vb::mb::Question: return QMessageBox::Question;
    case vb::mb::Exclamation: return QMessageBox::Warning;
    case vb::mb::Information: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
    }
}

int answerFor(QMessageBox::StandardButton button)
{
    switch (button) {
    case QMessageBox::Cancel: return vb::answer::Cancel;
    case QMessageBox::Abort: return vb::answer::Abort;
    case QMessageBox::Retry: return vb::answer::Retry;
    case QMessageBox::Ignore: return vb::answer::Ignore;
    case QMessageBox::Yes: return vb::answer::Yes;
    case QMessageBox::No: return vb::answer::No;
    default: return vb::answer::OK;
    }
}

namespace {

int presentBox(const vb::ShownBox& box)
{
    QMessageBox mb(iconFor(box.buttons), box.title, box.prompt, buttonsFor(box.buttons), QApplication::activeWindow());
    // The second or third button is the default when the flags say so (256, 512).
    const auto buttons = mb.buttons();
    const int defaultIndex = (box.buttons >> 8) & 3;
    if (defaultIndex < buttons.size())
        mb.setDefaultButton(qobject_cast<QPushButton*>(buttons.at(defaultIndex)));
    const auto pressed = static_cast<QMessageBox::StandardButton>(mb.exec());
    // Closing a box with Escape or the title bar gives Cancel where there is one, else the
    // only button (VB's rule).
    if (pressed == QMessageBox::NoButton || pressed == QMessageBox::Escape)
        return (box.buttons & 7) == vb::mb::YesNo ? vb::answer::No : vb::answer::Cancel;
    return answerFor(pressed);
}

} // namespace

void installDesktopServices()
{
    vb::MsgBoxService::setPresenter(presentBox);
    vb::MsgBoxService::setScripted(false);
    vb::OpenFileService::setOpener([](const QString& path) { QDesktopServices::openUrl(QUrl::fromLocalFile(path)); });
    vb::OpenFileService::setRecording(false);
}

void registerBundledFonts()
{
    vb::useScreenFont();
}

bool installItalianTranslations()
{
    static QTranslator* qtWords = nullptr;
    if (qtWords)
        return true;
    auto* t = new QTranslator(QCoreApplication::instance());
    if (!t->load(QLocale(QLocale::Italian, QLocale::Italy), QStringLiteral("qtbase"), QStringLiteral("_"),
                 QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        delete t;
        return false;
    }
    QCoreApplication::installTranslator(t);
    // The date pickers' calendars name months and days by the default locale.
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    qtWords = t;
    return true;
}

} // namespace shell
