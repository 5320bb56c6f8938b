#pragma once
/// @file TextExport.h
/// The text files the program writes beside its store and hands at once to the desktop:
/// the user guide, the date-format advice, the spare parts list, the supplier cards, the
/// transfer procedure and the user's own Note.txt. One writer holds the pattern they all
/// share; each file brings its own contents, ending and box.
///
/// Every file is written in UTF-8 (no byte-order mark): the texts hold "°", "à", "è" and
/// curly quotes, which any current editor shows right when opened from UTF-8, where the
/// old files were Windows-1252.

#include <QString>
#include <QStringList>

namespace reports {

struct TextExport
{
    /// In the program's folder, replaced on every save, e.g. "RICAMBI.txt".
    QString fileName;
    /// The contents between the head ("DATA {today}" and an empty line) and the ending.
    QStringList lines;
    /// The closing lines, e.g. an empty line and SignatureEnding(), or InstructionEnding().
    QStringList ending;
    /// Title of the information box said after the write; empty: no box.
    QString boxTitle;
    /// The name the box speaks of and the desktop is asked to open; empty: fileName.
    QString openedName;
    /// The box's words before the folder, where a file keeps its own wording; empty: the
    /// common words naming openedName.
    QString boxText;
};

/// The row of signs, "VELMORA", the row of signs.
QStringList SignatureEnding();
/// The row of signs and "Per Ulteriori Anomalie scrivete una Email a {support address}".
QStringList InstructionEnding();
/// "{shortName} -{today}-", the box title of a list file.
QString DatedTitle(const QString& shortName);

/// The whole file as written: "DATA {today}", an empty line, the lines, the ending.
QStringList TextExportLines(const TextExport& text);

/// Writes the file (replacing it); then, when it has a box title, the information box
/// "Il File '{name}.txt' che verrà aperto automaticamente dopo il Click, è stato salvato in:  {folder}"
/// (two blanks before the folder); then hands the file to the desktop. A write that fails raises its VBError
/// before any box, and nothing is opened.
void WriteTextExport(const TextExport& text);

/// Note.txt: opened for appending and closed at once (so it exists and keeps what the
/// user typed), then handed to the desktop with no message.
void OpenNotesFile();

/// Errore_Formato_Data.txt: the advice on the computer's date format written when a
/// date control refused a value; opened with no box.
void WriteDateErrorGuide();
/// Info.txt: the same advice on request, announced by the box "Info --".
void WriteDateInfo();

} // namespace reports
