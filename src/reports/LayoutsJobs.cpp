// Orders, operators, spare parts lists and job sheets: DataReport1 to DataReport7.
#include "reports/LayoutBuilder.h"
#include "reports/LayoutCatalogue.h"

namespace reports::layouts {

using namespace design;
using S = Section;

namespace {
// The sheet line of the job sheets: sheet, its date, revision and revision date.
Line sheetLine()
{
    return {L("Scheda:", 0).right(),       F("Scheda", 900).grow(),   L("Data Scheda:", 2835).right(),
            F("Data_Scheda", 4567).grow(), L("Rev:", 5837).right(),   F("Rev", 6435).grow(),
            L("Data Rev:", 7371).right(),  F("Data_Rev", 8536).grow()};
}

Line machineHeadings()
{
    return {L("MARCA E TIPO DI MACCHINA", 0), L("TIPO DI MANUTENZIONE", 7370)};
}
} // namespace

ReportLayout DataReport1()
{
    return Builder("DataReport1", "REPORT ORDINE RICAMBI")
        .band(S::ReportHeader, {{L("", 0).as("Label1")}})
        .band(S::PageHeader, {{L("RICAMBI", 0), L("DESCRIZIONE", 2987), L("CODICE", 6583), L("QTà", 8197).right(),
                               L("FORNITORE", 8934)}})
        .band(S::Detail, {{F("Ricambi", 0).grow(), F("Descrizione", 2987).grow(), F("Codice", 6583),
                           F("Quantita", 8197).right(), F("Fornitore", 8934)}})
        // The order print carries the page text alone.
        .pageFooter(false, true, 8504)
        .build();
}

ReportLayout DataReport2()
{
    return Builder("DataReport2", "OPERATORI")
        .groupValues(192)
        .band(S::ReportHeader, {{L("LISTA OPERATORI", 3402).centre(), L("", 9638).as("Label2")}})
        .band(S::GroupHeader,
              {{L("OPERATORE:", 10).right(), F("Operatore", 1701).as("TextBox1"), L("QUALIFICA:", 5680).right(),
                F("Qualifica", 7371)},
               {L("NASCITA:", 10).right(), F("Data_Nascita", 1701), L("INIZIO RAPPORTO:", 5113).right(),
                F("Inizio_Rapp", 7371)},
               {L("TIPO:", 10).right(), F("Tipo", 1701)},
               // the date column is narrower than its heading, which takes two lines
               {L("Ultima Manutenz", 0).grow(), L("Macchina e Numerazione", 1250), L("Manutenzione", 6150)}})
        .band(S::Detail, {{F("Ultima", 0).grow(), F("Modello", 1250).grow(), F("Numerazione", 5464).grow(),
                           F("Manutenzione_Tipo", 6150).grow()}})
        .band(S::GroupFooter, {{L("TOTALE OPERATORI", 100), L("Interventi Eseguiti", 2834),
                                F("ConteggioDiManutenzione_Tipo", 5434).as("TextBox12")}})
        .band(S::ReportFooter, {{L("TOTALE MANUTENZIONI ESEGUITE:", 0), SumOf("ConteggioDiManutenzione_Tipo", 3969)}})
        .build();
}

ReportLayout DataReport3()
{
    return Builder("DataReport3", "REPORT LIST MATERIALI  RICAMBI")
        .groupValues(192)
        .band(S::ReportHeader, {{L("LISTA RICAMBI", 2835).centre(), L("", 8504).as("Label2")}})
        .band(S::GroupHeader, {{L("MACCHINA:", 50).right(), F("Macchina", 2268).as("TextBox1")},
                               {L("MODELLO:", 3401).right(), F("Modello", 5102)},
                               {L("RICAMBIO", 50), L("DESCRIZIONE", 2468), L("DESTINAZIONE", 5100)}})
        .band(S::Detail, {{F("Ricambi", 0).grow(), F("Descrizione", 2468).grow(), F("Destinazione", 5100).grow()}})
        .build();
}

ReportLayout DataReport4()
{
    return Builder("DataReport4", "RICAMBI")
        .band(S::ReportHeader, {{L("LISTA RICAMBI", 2835).centre()}})
        .band(S::PageHeader, {{L("RICAMBI", 0), L("Descrizione", 3969).right(), L("COSTO €", 5670).right(),
                               L("Giacenza", 6804).right(), L("NOTE", 8504).centre()}})
        .band(S::Detail, {{F("Ricambi", 0).grow(), F("Descrizione", 3969).right().grow(), F("Costo", 5670).right(),
                           F("Giacenza", 6804).right(), F("Note", 8504).grow()}})
        .build();
}

ReportLayout DataReport5()
{
    return Builder("DataReport5", "RAPPORTO MANUTENZIONE")
        .band(S::ReportHeader, {{L("RAPPORTO MANUTENZIONE", 3401).centre()}})
        .band(S::GroupHeader,
              BandSpec{sheetLine(),
                       machineHeadings(),
                       {F("Macchina", 0).grow().as("TextBox11"), F("Modello", 3667).grow().as("TextBox4"),
                        F("Maint_Tipo", 7370).grow().as("TextBox5")},
                       {L("TEMPO LAVORO PREVISTO", 0), L("in Minuti:", 3000),
                        F("SommaDiMinuti", 4100).grow().as("TextBox7"), L("TEMPO LAVORO PREVISTO", 5800),
                        L("in hh:mm", 8700), F("Ore", 10206).grow().as("TextBox1")},
                       {L("N°", 0), L("TITOLO PROCEDURA", 567), L("B", 9638).centre(), L("R", 10205).centre(),
                        L("S", 10772).centre()}}
                  .framed())
        // The tick columns B, R, S are ruled off for the technician's marks.
        .band(S::Detail, BandSpec{{F("Num", 0), F("Titolo", 567).grow().w(9071)}}.rules({9608, 10175, 10742}))
        .band(S::GroupFooter, BandSpec{{L("B", 0).centre(), L("= Buono", 573), L("R", 3969).centre(),
                                        L("= Riparato", 4542), L("S", 7938).centre(), L("= Sostituito", 8511)},
                                       {L("NOTE DI MANUTENZIONE", 0)},
                                       // room for hand-written notes
                                       {},
                                       {},
                                       {},
                                       {},
                                       sheetLine()}
                                  .framed())
        .build();
}

ReportLayout DataReport6()
{
    return Builder("DataReport6", "PROCEDURE MANUTENZIONE GENERALE")
        .band(S::ReportHeader, {{L("", 7370).as("Label2")}})
        // TextBox7 and TextBox1 are bound by the machines screen's print, which reads the
        // hours as minutes / 60 and has them under "#,###.00"; they do not show.
        .band(S::GroupHeader,
              BandSpec{machineHeadings(),
                       {F("Macchina", 0).grow().as("TextBox11"), F("Modello", 3667).grow().as("TextBox4"),
                        L("Generale", 7370), F("SommaDiMinuti", 7370).hide().as("TextBox7"),
                        F("Ore", 7370).hide().fmt("#,###.00").as("TextBox1")}}
                  .framed())
        .band(S::Detail, {{F("Num", 0).grow(), F("Titolo", 567).grow()}, {F("Procedura", 0).grow()}})
        .build();
}

ReportLayout DataReport7()
{
    return Builder("DataReport7", "PROCEDURA MANUTENZIONI")
        .band(S::ReportHeader, {{L("", 7370).as("Label2")}})
        .band(S::GroupHeader,
              BandSpec{sheetLine(),
                       machineHeadings(),
                       {F("Macchina", 0).grow().as("TextBox11"), F("Modello", 3667).grow().as("TextBox4"),
                        F("Maint_Tipo", 7370).grow().as("TextBox6")},
                       {L("TEMPO LAVORO PREVISTO", 0), L("In Minuti:", 2950),
                        F("SommaDiMinuti", 4000).grow().as("TextBox7"), L("TEMPO LAVORO PREVISTO", 5670),
                        L("in hh:mm", 8600), F("Ore", 10206).grow().as("TextBox1")}}
                  .framed())
        .band(S::Detail, {{F("Num", 0).grow(), F("Titolo", 567).grow()}, {F("Procedura", 0).grow()}})
        .band(S::GroupFooter, BandSpec{sheetLine()}.newPage(PageBreak::After))
        .build();
}

} // namespace reports::layouts
