#include "shell/DriverReports.h"

#include "runtime/VBError.h"

namespace shell {

namespace {
vb::VBError notAvailable(const QString& name)
{
    return vb::VBError(5, QStringLiteral("Report non disponibile: %1").arg(name));
}
} // namespace

void driverShowReport(const QString& name, const QString&)
{
    throw notAvailable(name);
}

QString driverReportPages(const QString& name)
{
    throw notAvailable(name);
}

void driverReportPdf(const QString& name, const QString&)
{
    throw notAvailable(name);
}

} // namespace shell
