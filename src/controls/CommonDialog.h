#pragma once
/// @file CommonDialog.h
/// VB's CommonDialog as the program uses it: the open dialog for picture files. Every
/// file dialog goes through FileDialogService, so that the driver and the tests answer it
/// from a script and read what was asked, as with the message boxes.

#include "controls/Control.h"

#include <QObject>

#include <functional>
#include <optional>
#include <vector>

namespace vb {

// VB's flags and error of the dialog.
namespace cdl {
constexpr int FileMustExist = 0x1000; ///< cdlOFNFileMustExist
constexpr int Cancel = 32755;         ///< cdlCancel: raised on a cancel when CancelError is on
} // namespace cdl

/// What a dialog asked: the texts as the screen set them; once shown, its answer too.
struct FileDialogRequest
{
    QString title;
    QString filter; ///< VB's form: "JPG (...)|*.Jpg|BMP (...)|*.Bmp"
    int filterIndex = 1;
    QString defaultExt;
    QString initDir;
    QString fileName; ///< the starting file
    int flags = 0;
    bool save = false;             ///< a file to write (a save dialog) rather than one to open
    std::optional<QString> answer; ///< the chosen path; nullopt for a cancel

    /// Where the dialog opens: the starting file when there is one, else the folder.
    QString initial() const { return fileName.isEmpty() ? initDir : fileName; }
};

class FileDialogService
{
public:
    /// The chosen path, or nullopt for a cancel.
    using Presenter = std::function<std::optional<QString>(const FileDialogRequest&)>;
    /// The desktop's dialog; without one a Qt file dialog is shown.
    static void setPresenter(Presenter p);
    /// Answers for the next dialogs, in order; "" is a cancel. They are used whenever the
    /// message boxes are scripted; a dialog with no answer queued is cancelled.
    static void queueAnswers(const std::vector<QString>& paths);
    /// The dialogs shown since the last call, each with its answer.
    static std::vector<FileDialogRequest> takeShown();
    static void clear();

    /// Shows one dialog: the chosen path, nullopt on a cancel.
    static std::optional<QString> ask(const FileDialogRequest& request);
};

/// CommonDialog: DialogTitle, Filter, FilterIndex, DefaultExt, InitDir, FileName,
/// FileTitle (the chosen file's name without its folder), Flags, CancelError. ShowOpen
/// asks for a file; a cancel leaves FileName and FileTitle as they were and, with
/// CancelError on, raises 32755.
class CommonDialog : public QObject, public Control
{
public:
    CommonDialog(QObject* parent, const QString& name);

    QString DialogTitle;
    QString Filter;
    int FilterIndex = 1;
    QString DefaultExt;
    QString InitDir;
    QString FileName;
    QString FileTitle;
    int Flags = 0;
    bool CancelError = false;

    void ShowOpen();

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
};

} // namespace vb
