#include "runtime/TextFile.h"

#include "runtime/VBError.h"

#include <QDir>
#include <QFileInfo>

namespace vb {

namespace {
constexpr int kPathFileAccess = 75;
constexpr int kPathNotFound = 76;
} // namespace

TextFile::TextFile(const QString& path) : m_path(path), m_file(path)
{
    if (!QFileInfo(path).absoluteDir().exists())
        throw VBError(kPathNotFound);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        throw VBError(kPathFileAccess);
}

TextFile::~TextFile()
{
    if (m_file.isOpen())
        m_file.close();
}

void TextFile::print(const QString& line)
{
    if (!m_file.isOpen())
        throw VBError(kPathFileAccess);
    const QByteArray bytes = line.toUtf8() + '\n'; // the Text mode gives the platform's line end
    if (m_file.write(bytes) != bytes.size())
        throw VBError(kPathFileAccess);
}

void TextFile::print(const QStringList& lines)
{
    for (const QString& line : lines)
        print(line);
}

void TextFile::close()
{
    if (!m_file.isOpen())
        return;
    const bool flushed = m_file.flush();
    m_file.close();
    if (!flushed)
        throw VBError(kPathFileAccess);
}

void WriteTextFile(const QString& path, const QStringList& lines)
{
    TextFile file(path);
    file.print(lines);
    file.close();
}

} // namespace vb
