#pragma once
/// @file TextFile.h
/// The text files the program writes beside its store (guides, lists, sheets), line by
/// line as the old program's "Print #" did.
///
/// Files are written in UTF-8 without a byte-order mark, with the platform's line ends.
/// The old files were Windows-1252; UTF-8 keeps every character of the texts ("°", "è",
/// curly quotes) and is what every current editor opens by default.

#include <QFile>
#include <QString>
#include <QStringList>

namespace vb {

/// The rule of degree signs that closes the guides and the transfer text.
inline QString DegreeRule()
{
    return QStringLiteral("°°°°°°°°°°°°°°°°°°°°°°°°°°°°°°°");
}

class TextFile
{
public:
    /// Opens @p path for output, replacing any old content. A file that cannot be
    /// written raises VBError 76 (missing folder) or 75 (path/file access error).
    explicit TextFile(const QString& path);
    ~TextFile();
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    /// Writes one line; no argument writes an empty line.
    void print(const QString& line = {});
    /// Writes several lines.
    void print(const QStringList& lines);
    /// Flushes and closes; a failed write raises VBError 75.
    void close();

    const QString& path() const { return m_path; }

private:
    QString m_path;
    QFile m_file;
};

/// Writes @p lines to @p path in one go (TextFile, then close).
void WriteTextFile(const QString& path, const QStringList& lines);

} // namespace vb
