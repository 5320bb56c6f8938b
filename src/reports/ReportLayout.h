#pragma once
/// @file ReportLayout.h
/// A printed document's design as data: bands in integer twips, each holding labels,
/// bound fields, totals, rules and boxes. Callers reach controls by name at run time
/// to set a caption or bind a field, as they did on the old report designer.

#include <QString>

#include <array>
#include <cstdint>
#include <vector>

namespace reports {

/// The bands, in the order they print. The names are the designer's section names.
enum class Section { ReportHeader, PageHeader, GroupHeader, Detail, GroupFooter, PageFooter, ReportFooter };
constexpr int SectionCount = 7;

/// "Section4", "Section2", "Section6", "Section1", "Section7", "Section3", "Section5".
QString sectionName(Section s);
/// The section for its designer name (case-insensitive); false when there is none.
bool sectionFromName(const QString& name, Section& out);

enum class ControlKind { Label, Field, Function, Line, Box };
enum class Align { Left, Right, Centre };
enum class Total { Sum, Count };
/// Where a band asks for a new page.
enum class PageBreak { None, Before, After };

/// A VB colour (r + 256 g + 65536 b); NoColour means transparent / the default.
constexpr std::int64_t NoColour = -1;

struct Font
{
    int size = 180; ///< in twips (20 per point)
    bool bold = false;
    bool operator==(const Font&) const = default;
};

struct Control
{
    ControlKind kind = ControlKind::Label;
    QString name;
    int left = 0, top = 0, width = 0, height = 0; ///< twips within the band
    QString caption;                              ///< labels; a page-footer caption may hold %p and %P
    QString dataField;                            ///< fields and totals
    QString dataMember;                           ///< "Dati" for fields bound to the child rows
    QString dataFormat; ///< a Format pattern for the value of a field or total; empty: as read
    Total total = Total::Sum;
    Align align = Align::Left;
    bool canGrow = false;
    bool visible = true;
    std::int64_t foreColor = 0; ///< black
    std::int64_t backColor = NoColour;
    Font font;
};

struct Band
{
    int height = 0;
    PageBreak pageBreak = PageBreak::None;
    bool visible = true;
    std::vector<Control> controls;
};

class ReportLayout
{
public:
    QString name;          ///< "DataReport9"
    QString title;         ///< the document's caption
    int pageWidth = 11906; ///< A4
    int pageHeight = 16838;
    int leftMargin = 283, rightMargin = 283, topMargin = 567, bottomMargin = 567;
    int reportWidth = 11340; ///< the printable width the designs are drawn for

    Band& band(Section s) { return m_bands[static_cast<int>(s)]; }
    const Band& band(Section s) const { return m_bands[static_cast<int>(s)]; }

    /// The control of that name in that band; nullptr when there is none.
    Control* control(Section s, const QString& name);
    /// The control of that name in any band (names are unique within a report).
    Control* control(const QString& name);
    const Control* control(const QString& name) const;

    /// Run-time changes as the callers make them; an unknown section or control raises
    /// error 9 (index out of range), as the designer's collections did.
    void setCaption(Section s, const QString& name, const QString& caption);
    void setDataField(Section s, const QString& name, const QString& field);

    /// Whether the design has any band fed by child rows (a SHAPE document).
    bool isGrouped() const;

private:
    std::array<Band, SectionCount> m_bands;
};

} // namespace reports
