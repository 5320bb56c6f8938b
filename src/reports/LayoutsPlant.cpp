// Machines, parts replaced, notes, plan, suppliers and history: DataReport8 to DataReport14.
#include "reports/LayoutBuilder.h"
#include "reports/LayoutCatalogue.h"
#include "reports/LayoutsNotes.h"

namespace reports::layouts {

using namespace design;
using S = Section;

ReportLayout DataReport8()
{
    return Builder("DataReport8", "LISTA MACCHINE")
        .band(S::ReportHeader, {{L("LISTA MACCHINE", 1134).centre(), L("", 6803).as("Label2")}})
        .band(S::GroupHeader, {{L("REPARTO:", 10).right(), F("Reparto", 2268).as("TextBox1")},
                               {L("MACCHINA", 0), L("Modello", 2834), L("Costruttore", 4866), L("Stato", 6733),
                                L("Anno", 8200).right()}})
        .band(S::Detail, {{F("Macchina", 0).grow(), F("Modello", 2835), F("Costruttore", 4866).grow(), F("Stato", 6803),
                           F("Anno", 8200).right()}})
        // The machines screen's print binds the count with this spelling; column names
        // are found whatever their case.
        .band(S::GroupFooter, {{L("TOTALE MACCHINE", 100), F("Reparto", 2268).as("TextBox7"),
                                F("ConteggioDiMAcchina", 5365).as("TextBox8")}})
        .band(S::ReportFooter, {{L("TOTALE MACCHINE IN TUTTI I REPARTI:", 0), SumOf("ConteggioDiMacchina", 3969)}})
        .build();
}

ReportLayout DataReport9()
{
    return Builder("DataReport9", "RICAMBI")
        .groupValues(192)
        .band(S::ReportHeader, {{L("", 9071).as("Label2")}})
        .band(S::PageHeader, {{L("RICAMBI", 2835).centre()}})
        .band(S::GroupHeader,
              BandSpec{
                  {L("MACCHINA:", 0), F("Macchina", 1450).as("TextBox1"), L("MODELLO:", 5102).right(),
                   F("Modello", 6403).as("TextBox9"), L("N°:", 9071).right(), F("Numerazione", 9805)},
                  {L("DATA", 0), L("RICAMBIO", 1134), L("DESCRIZIONE", 3402), L("Q.Tà", 5603), L("DESTINAZIONE", 6437)}}
                  .rules()
                  .newPage(PageBreak::Before))
        .band(S::Detail, BandSpec{{F("Data", 0).grow(), F("Ricambi", 1134).grow(), F("Descrizione", 3402).grow(),
                                   F("Quantita", 5670).grow(), F("Destinazione", 6400).grow()}}
                             .rules())
        .build();
}

ReportLayout DataReport10()
{
    return notesReport("DataReport10", "REPORT NOTE", 567, "Tipo_Nota", true);
}

ReportLayout DataReport11()
{
    const int toEdge = ReportLayout().reportWidth - 8900;
    return Builder("DataReport11", "RICAMBI")
        .groupValues(192)
        .band(S::PageHeader, {{L("LISTA RICAMBI", 2835).centre().as("Label5")}})
        .band(S::GroupHeader, {{L("Ricambi:", 0).right(), F("Ricambi", 2268)},
                               {L("RICAMBI", 0), L("COSTO €", 6237).right(), L("GIACENZA", 7938).right()}})
        .band(S::Detail, {{F("Descrizione", 0).grow(), F("Costo", 6237).right(), F("Giacenza", 7937).right().grow()}})
        .band(S::GroupFooter,
              {{F("ConteggioDiRicambi", 97).right().as("TextBox8"), L("CONTEGGIO DI", 950), F("Ricambi", 2500),
                L("Costo Min €", 5883).right(), L("Costo Max €", 7199).right(),
                L("Totale in Giacenza", 8900).right().w(toEdge)},
               // the stock total and its heading end together at the right margin
               {F("MinDiCosto", 5883).right().as("TextBox5"), F("MaxDiCosto", 7199).right().as("TextBox6"),
                F("SommaDiGiacenza", 8900).right().w(toEdge)}})
        .band(S::ReportFooter, {{L("CONTEGGIO DI RICAMBI N°", 383).right(), CountOf("ConteggioDiRicambi", 3969)},
                                {L("TOTALE MATERIALI PRESENTI N°", 383).right(), SumOf("ConteggioDiRicambi", 3969)}})
        .build();
}

ReportLayout DataReport12()
{
    // Label8, Label7 and Label9 get the week numbers before, of and after the week.
    return Builder("DataReport12", "PLAN MAINTENANCE")
        .band(S::ReportHeader, {{L("MANUTENZIONI SETTIMANA N°", 2835).centre().as("Label5")},
                                {L("N° Settimane", 7938).centre().w(3402)}}) // over the three week columns
        .band(S::PageHeader, BandSpec{{L("MACCHINA", 0), L("MODELLO", 3402).right(), L("N°", 6804),
                                       L("WEEK1", 7938).centre().as("Label8"), L("WEEK2", 9072).centre().as("Label7"),
                                       L("WEEK3", 10206).centre().as("Label9")},
                                      {L("Sett Odierna", 9100).centre().w(1134)}}
                                 .rules({}, 0))
        .band(S::Detail, BandSpec{{F("Macchina", 0).grow(), F("Modello", 3402).right().grow(), F("Numerazione", 6804),
                                   F("Week_Meno", 7938).centre().grow(), F("Week", 9072).centre().grow(),
                                   F("Week_Piu", 10206).centre().grow()}}
                             .rules())
        .build();
}

ReportLayout DataReport13()
{
    auto card = [](const char* caption, const char* field) {
        return Line{L(QString::fromUtf8(caption), 0).right(), F(field, 2835)};
    };
    Line company = card("Nome Società:", "Nome_Soceta");
    company.push_back(F("Nome_Soceta", 2835)); // the design has the field twice, one over the other
    return Builder("DataReport13", "FORNITORI")
        .band(S::ReportHeader, {{L("LISTA FORNITORI", 1701).centre(), L("", 7937).as("Label2")}})
        .band(S::GroupHeader, {{L("FORNITORE: ", 0).right(), F("Fornitore", 2835).grow().as("TextBox17")}})
        .band(S::Detail, {card("Fornitore:", "Fornitore"), company, card("Part IVA / Cod Fisc:", "Part_IVA/Cod_Fisc"),
                          card("Citta/Paese:", "Citta/Paese"), card("CAP:", "CAP"), card("Provincia:", "Provincia"),
                          card("Via:", "Via"), card("Telefono:", "Tel"), card("Fax:", "Fax"), card("Email:", "Email"),
                          card("Url:", "Url")})
        .build();
}

ReportLayout DataReport14()
{
    return Builder("DataReport14", "STORICO MACCHINA")
        .groupValues(128)
        .band(S::ReportHeader, {{L("STORICO INTERVENTI", 2268).centre(), L("", 9071).as("Label2")}})
        .band(S::GroupHeader,
              {{L("MACCHINA:", 50).right(), F("Macchina", 1701), F("Modello", 5103), L("N°:", 9071).right(),
                F("Numerazione", 9405)},
               {L("PERIODO:", 1133).right(), F("Mese", 2834).right(), L("/", 3303).centre(), F("Anno", 3483).right()},
               {L("DATA", 50), L("MANUTENZIONE", 1400), L("RICAMBIO", 3250), L("DESCRIZIONE", 5530),
                L("DESTINAZIONE", 7935)}})
        .band(S::Detail, {{F("Data", 0).grow(), F("Manutenzione", 1400).grow().as("TextBox13"), F("Rica", 3250).grow(),
                           F("Descri", 5530).grow(), F("Destina", 7935).grow()}})
        .band(S::GroupFooter,
              {{L("Totale Interventi eseguiti nel periodo:", 0).right(), F("Mese", 4535).right(), L("/", 5004).centre(),
                F("Anno", 5184).right(), L("N°", 6400).right(), F("ConteggioDiData", 6803).grow().as("TextBox10")}})
        .band(S::ReportFooter,
              {{L("Totale Interventi Macchina:", 0).right(), L("N°", 6400).right(), SumOf("ConteggioDiData", 6803)}})
        .build();
}

} // namespace reports::layouts
