#pragma once
/// @file OpenFile.h
/// Hands a document to the desktop's default program (verb "open").

#include <QString>

#include <functional>
#include <vector>

namespace vb {

void OpenFile(const QString& path);

class OpenFileService
{
public:
    using Opener = std::function<void(const QString&)>;
    static void setOpener(Opener o);   ///< the desktop opener, installed by the program
    static void setRecording(bool on); ///< record only, launch nothing (driver, tests)
    static std::vector<QString> takeOpened();
};

} // namespace vb
