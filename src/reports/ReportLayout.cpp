#include "reports/ReportLayout.h"

#include "runtime/VBError.h"

namespace reports {

namespace {
// The designer numbered its sections in the order they were added, not the print order.
constexpr const char* SectionNames[SectionCount] = {"Section4", "Section2", "Section6", "Section1",
                                                    "Section7", "Section3", "Section5"};
} // namespace

QString sectionName(Section s)
{
    return QString::fromLatin1(SectionNames[static_cast<int>(s)]);
}

bool sectionFromName(const QString& name, Section& out)
{
    for (int i = 0; i < SectionCount; ++i) {
        if (name.compare(QLatin1String(SectionNames[i]), Qt::CaseInsensitive) == 0) {
            out = static_cast<Section>(i);
            return true;
        }
    }
    return false;
}

Control* ReportLayout::control(Section s, const QString& name)
{
    for (Control& c : band(s).controls)
        if (c.name.compare(name, Qt::CaseInsensitive) == 0)
            return &c;
    return nullptr;
}

Control* ReportLayout::control(const QString& name)
{
    for (int i = 0; i < SectionCount; ++i)
        if (Control* c = control(static_cast<Section>(i), name))
            return c;
    return nullptr;
}

const Control* ReportLayout::control(const QString& name) const
{
    return const_cast<ReportLayout*>(this)->control(name);
}

void ReportLayout::setCaption(Section s, const QString& name, const QString& caption)
{
    Control* c = control(s, name);
    if (!c)
        throw vb::VBError(9);
    c->caption = caption;
}

void ReportLayout::setDataField(Section s, const QString& name, const QString& field)
{
    Control* c = control(s, name);
    if (!c)
        throw vb::VBError(9);
    c->dataField = field;
}

bool ReportLayout::isGrouped() const
{
    for (const Control& c : band(Section::Detail).controls)
        if (!c.dataMember.isEmpty())
            return true;
    return false;
}

} // namespace reports
