// Consumption, presence and the note prints: DataReport15 to DataReport21.
#include "reports/LayoutBuilder.h"
#include "reports/LayoutCatalogue.h"
#include "reports/LayoutsNotes.h"

namespace reports::layouts {

using namespace design;
using S = Section;

namespace {
BandSpec consumptionHeader()
{
    return {{L("CONSUMO RICAMBI", 2835).centre(), L("", 8504).as("Label2")}};
}
} // namespace

ReportLayout notesReport(const char* name, const char* title, int titleLeft, const char* groupField,
                         bool footerNamesGroup)
{
    Line footer{L("Totale note", 100), F("ConteggioDiNOTE", 3402)};
    if (footerNamesGroup)
        footer.push_back(F(groupField, 1500));
    return Builder(name, QString::fromUtf8(title))
        .band(S::ReportHeader, {{L("", titleLeft).as("Label1")}})
        .band(S::GroupHeader, {{L("NOTA:", 10).right(), F(groupField, 2268)},
                               {L("DATA", 0), L("MACCHINA", 1134), L("N°", 3800), L("NOTA", 4200)}})
        .band(S::Detail, BandSpec{{F("Ultima", 0).grow(), F("Modello", 1134).grow(), F("Numerazione", 3800).grow(),
                                   F("Note", 4200).grow()}}
                             .rules())
        .band(S::GroupFooter, {footer})
        .build();
}

ReportLayout DataReport15()
{
    return Builder("DataReport15", "DataReport15")
        .band(S::ReportHeader, consumptionHeader())
        .band(S::GroupHeader, {{L("ANNO:", 10).right(), F("Anno", 2268)},
                               {L("RICAMBIO", 0), L("DESCRIZIONE", 3401), L("QUANTITA'", 8835)}})
        .band(S::Detail, {{F("Ricambi", 0).grow(), F("Descrizione", 3402), F("SommaDiQuantita", 8835).grow()}})
        .band(S::GroupFooter,
              {{L("TOTALE ANNO", 100), F("Anno", 1500), F("ConteggioDiDescrizione", 3402), F("SommaDiQuantita", 8835)}})
        .build();
}

ReportLayout DataReport16()
{
    return Builder("DataReport16", "DataReport16")
        .band(S::ReportHeader, consumptionHeader())
        .band(S::GroupHeader,
              BandSpec{{L("ANNO:", 10).right(), F("Anno", 2268), L("RICAMBIO:", 3402).right(), F("Ricambi", 5670)},
                       {L("DESCRIZIONE:", 3402).right(), F("Descrizione", 5670)},
                       {L("QUANTITà CONSUMATA:", 2268).right(), F("SommaDiQuantita", 5670)},
                       {L("MESE", 0), L("QUANTITA'", 897), L("MACCHINA", 2199), L("DESTINAZIONE", 4634)}}
                  .rules())
        .band(S::Detail, BandSpec{{F("Mese", 0).grow(), F("SommaDiQuantita", 897).grow(), F("Modello", 2218).grow(),
                                   F("Numerazione", 4249).grow(), F("Destinazione", 4634).grow()}}
                             .rules())
        // The one document whose page footer prints nothing.
        .pageFooter(false, false)
        .build();
}

ReportLayout DataReport17()
{
    return Builder("DataReport17", "RICAMBI")
        .groupValues(192)
        .band(S::ReportHeader, {{L("", 8800).as("Label2")}})
        .band(S::PageHeader, {{L("PRESENZA RICAMBI", 2835).centre()}})
        .band(S::GroupHeader,
              BandSpec{{L("RICAMBIO:", 50), L("DESCRIZIONE:", 5669).right()},
                       {F("Ricambi", 0).grow().as("TextBox1"), F("Descrizione", 5669).grow().as("TextBox9")},
                       {L("MACCHINA", 50), L("MODELLO", 2350), L("DESTINAZIONE", 4600)}}
                  .newPage(PageBreak::Before))
        .band(S::Detail, {{F("Macchina", 0).grow(), F("Modello", 2350).grow(), F("Destinazione", 4600).grow()}})
        .build();
}

ReportLayout DataReport18()
{
    return notesReport("DataReport18", "REPORT NOTE", 1134, "Tipo_Nota", true);
}

ReportLayout DataReport19()
{
    return notesReport("DataReport19", "DataReport19", 1701, "Tipo_Nota2", true);
}

ReportLayout DataReport20()
{
    return notesReport("DataReport20", "DataReport20", 1701, "Tipo_Nota", false);
}

ReportLayout DataReport21()
{
    return Builder("DataReport21", "DataReport21")
        .band(S::ReportHeader, {{L("", 1701).as("Label1")}})
        .band(S::GroupHeader,
              {{L("MACCHINA:", 10).right(), F("Macchina", 1533), L("MODELLO:", 5200).right(), F("Modello", 6269)},
               {L("TIPO NOTA", 0), L("TIPO NOTA 2", 2268), L("NOTA", 4300)}})
        .band(S::Detail,
              BandSpec{{F("Tipo_Nota", 0).grow(), F("Tipo_Nota2", 2268).grow(), F("Note", 4300).grow()}}.rules())
        .band(S::GroupFooter, {{L("Totale note", 100), F("ConteggioDiNOTE", 3402)}})
        .build();
}

} // namespace reports::layouts
