#include "controls/CommonDialog.h"

#include "runtime/MsgBox.h"
#include "runtime/VBError.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>

#include <deque>

namespace vb {

namespace {

struct DialogState
{
    FileDialogService::Presenter presenter;
    std::deque<QString> answers;
    std::vector<FileDialogRequest> shown;
};

DialogState& state()
{
    static DialogState s;
    return s;
}

/// "Text|*.Jpg|Text|*.Bmp" as Qt writes it: "Text (*.Jpg);;Text (*.Bmp)".
QString qtFilter(const QString& vbFilter, QString* selected, int index)
{
    const QStringList parts = vbFilter.split(QLatin1Char('|'));
    QStringList out;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        out << parts[i] + QStringLiteral(" (") + QString(parts[i + 1]).replace(QLatin1Char(';'), QLatin1Char(' ')) +
                   QLatin1Char(')');
        if (i / 2 + 1 == index)
            *selected = out.back();
    }
    return out.join(QStringLiteral(";;"));
}

std::optional<QString> desktopDialog(const FileDialogRequest& r)
{
    QString selected;
    const QString filter = qtFilter(r.filter, &selected, r.filterIndex);
    const QString path =
        r.save ? QFileDialog::getSaveFileName(QApplication::activeWindow(), r.title, r.initial(), filter, &selected)
               : QFileDialog::getOpenFileName(QApplication::activeWindow(), r.title, r.initial(), filter, &selected);
    if (path.isEmpty())
        return std::nullopt;
    return path;
}

bool is(const QString& n, const char* name)
{
    return n == QLatin1String(name);
}

} // namespace

void FileDialogService::setPresenter(Presenter p)
{
    state().presenter = std::move(p);
}

void FileDialogService::queueAnswers(const std::vector<QString>& paths)
{
    for (const QString& p : paths)
        state().answers.push_back(p);
}

std::vector<FileDialogRequest> FileDialogService::takeShown()
{
    return std::exchange(state().shown, {});
}

void FileDialogService::clear()
{
    state().answers.clear();
    state().shown.clear();
}

std::optional<QString> FileDialogService::ask(const FileDialogRequest& request)
{
    DialogState& s = state();
    std::optional<QString> path;
    if (!MsgBoxService::scripted()) {
        path = s.presenter ? s.presenter(request) : desktopDialog(request);
    } else if (!s.answers.empty()) {
        if (!s.answers.front().isEmpty())
            path = s.answers.front();
        s.answers.pop_front();
    }
    FileDialogRequest shown = request;
    shown.answer = path;
    s.shown.push_back(std::move(shown));
    return path;
}

CommonDialog::CommonDialog(QObject* parent, const QString& name) : QObject(parent), Control(this)
{
    setObjectName(name);
}

void CommonDialog::ShowOpen()
{
    FileDialogRequest r;
    r.title = DialogTitle;
    r.filter = Filter;
    r.filterIndex = FilterIndex;
    r.defaultExt = DefaultExt;
    r.initDir = InitDir;
    r.fileName = FileName;
    r.flags = Flags;
    const std::optional<QString> path = FileDialogService::ask(r);
    if (!path) {
        if (CancelError)
            throw VBError(cdl::Cancel, QStringLiteral("È stato scelto Annulla."));
        return;
    }
    FileName = *path;
    FileTitle = QFileInfo(*path).fileName();
}

std::optional<Variant> CommonDialog::getProp(const QString& n) const
{
    if (is(n, "dialogtitle"))
        return Variant(DialogTitle);
    if (is(n, "filter"))
        return Variant(Filter);
    if (is(n, "filterindex"))
        return Variant(FilterIndex);
    if (is(n, "defaultext"))
        return Variant(DefaultExt);
    if (is(n, "initdir"))
        return Variant(InitDir);
    if (is(n, "filename"))
        return Variant(FileName);
    if (is(n, "filetitle"))
        return Variant(FileTitle);
    if (is(n, "flags"))
        return Variant(Flags);
    if (is(n, "cancelerror"))
        return Variant(CancelError);
    return Control::getProp(n);
}

bool CommonDialog::setProp(const QString& n, const Variant& v)
{
    if (is(n, "dialogtitle"))
        DialogTitle = v.toString();
    else if (is(n, "filter"))
        Filter = v.toString();
    else if (is(n, "filterindex"))
        FilterIndex = int(v.toLong());
    else if (is(n, "defaultext"))
        DefaultExt = v.toString();
    else if (is(n, "initdir"))
        InitDir = v.toString();
    else if (is(n, "filename"))
        FileName = v.toString();
    else if (is(n, "flags"))
        Flags = int(v.toLong());
    else if (is(n, "cancelerror"))
        CancelError = v.toBool();
    else
        return Control::setProp(n, v);
    return true;
}

} // namespace vb
