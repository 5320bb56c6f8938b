#pragma once
/// @file AppPath.h
/// The program's folder: where the store, the report store and the text files live.

#include <QString>

namespace vb {

/// The data folder: set at start from --home, VELMORA_HOME or the per-user folder.
QString AppPath();
void setAppPath(const QString& dir);
/// AppPath() + "/" + name.
QString AppFile(const QString& name);

/// The maker's contact points printed in the guides (installation configuration).
QString SupportAddress();
QString SupportSite();

constexpr const char* AppTitle = "VELMORA";

} // namespace vb
