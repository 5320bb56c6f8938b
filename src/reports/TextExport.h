#pragma once
/// @file TextExport.h
/// The text files that take a list out of the program (spare parts, supplier cards):
/// one writer for the pattern they all share, and the user's own Note.txt.

#include <QString>
#include <QStringList>

namespace reports {

struct TextExport
{
    enum class Ending {
        Signature,   ///< the row of signs, "VELMORA", the row of signs
        Instruction, ///< the row of signs and the line with the support address
    };

    QString fileName;  ///< in the program's folder, e.g. "RICAMBI.txt"
    QString title;     ///< short name for the box's title, e.g. "SCHEDA Fornitori"
    QStringList lines; ///< the contents, line by line
    bool blankBeforeEnding = true;
    Ending ending = Ending::Signature;
};

/// Writes the file (replacing it): "DATA {today}", an empty line, the lines, the ending;
/// then the information box "Il File '{name}.txt' che verrà aperto automaticamente dopo
/// il Click, è stato salvato in:  {folder}" titled "{title} -{today}-", and then hands
/// the file to the desktop. A write failure raises its VBError before any box.
void WriteTextExport(const TextExport& text);

/// Note.txt: opened for appending and closed at once (so it exists and keeps what the
/// user typed), then handed to the desktop with no message.
void OpenNotesFile();

} // namespace reports
