#include "spares/RicambiFile.h"

#include "runtime/TextFile.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "store/DataStore.h"

#include <vector>

namespace spares {

using vb::Variant;

namespace {

const QChar Tab = QLatin1Char('\t');

/// The length tests of the padding: a name shorter than `below` gets `blanks` more.
struct PadStep
{
    int below;
    int blanks;
};

/// Built once: the steps in the order they are tested.
const std::vector<PadStep>& padSteps()
{
    static const std::vector<PadStep> steps = [] {
        std::vector<PadStep> s;
        for (int n = 4; n <= 17; ++n)
            s.push_back({n, 54 - n});
        for (int n = 18; n <= 23; ++n)
            s.push_back({n, 53 - n});
        s.push_back({24, 27});
        for (int n = 25; n <= 29; ++n)
            s.push_back({n, 53 - n});
        for (int n = 30; n <= 37; ++n)
            s.push_back({n, 47 - n});
        s.push_back({38, 2});
        s.push_back({39, 2});
        return s;
    }();
    return steps;
}

/// A value as "&" joins it: Null is "".
QString joined(const Variant& v)
{
    return vb::Concat(QString(), v).displayText();
}

} // namespace

QString PaddedCategory(const Variant& name)
{
    if (name.isNull())
        return QString();
    const QString text = name.toString();
    for (const PadStep& step : padSteps()) {
        if (text.size() < step.below)
            return text + QString(step.blanks, QLatin1Char(' '));
    }
    return text;
}

QString PartLine(const Variant& cost, const Variant& category, const Variant& description, const Variant& stock)
{
    return joined(vb::Format(cost, QStringLiteral("#,##0.00"))) + Tab + Tab + PaddedCategory(category) +
           joined(description) + Tab + joined(stock);
}

reports::TextExport RicambiExport(store::Recordset& parts)
{
    reports::TextExport text;
    text.fileName = QStringLiteral("RICAMBI.txt");
    text.boxTitle = QStringLiteral("RICAMBI --");
    text.boxText =
        QStringLiteral("Il File 'RICAMBI.txt' che verrà aperto automaticamente dopo il Click, è stato salvato in:  ");
    text.lines << QStringLiteral("COSTO") + QString(2, Tab) + QStringLiteral("RICAMBI") + QString(6, Tab) +
                      QStringLiteral("DESCRIZIONE") + Tab + QStringLiteral("GIACENZA")
               << QString();
    // A field that cannot be read leaves its place empty and the list goes on.
    vb::Trap trap = vb::Trap::ignoreAll();
    int count = 0;
    while (!parts.Eof()) {
        auto field = [&](const char* name) {
            Variant v;
            trap.step([&] { v = parts.Fields(QString::fromLatin1(name)).Value(); });
            return v;
        };
        text.lines << PartLine(field("Costo"), field("Ricambi"), field("Descrizione"), field("Giacenza"));
        ++count;
        parts.MoveNext();
    }
    text.ending << QString() << vb::DegreeRule() << QStringLiteral("TOTALE RICAMBI PRESENTI ") + QString::number(count)
                << vb::DegreeRule() << QString();
    return text;
}

reports::TextExport RicambiExport()
{
    store::Recordset parts;
    parts.Open(QStringLiteral("Select * from Tbl_Descrizione_Ricambi order by Ricambi,Costo"));
    return RicambiExport(parts);
}

} // namespace spares
