#pragma once
// The interventions' plant: the register's machines, two categories with three parts,
// a known cause, interventions put in place on unit 1, and the driver in the test's own
// process with the boxes it saw.

#include "execution/Form7Fixture.h"
#include "runtime/Helpers.h"
#include "support/InProcessDrive.h"

#include <QJsonArray>
#include <QJsonObject>

class InterventionsFixture : public Form7Fixture
{
protected:
    void SetUp() override
    {
        Form7Fixture::SetUp();
        exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('CUSCINETTI', 'pz')");
        exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('OLIO', 'lt')");
        // Parts 1 and 2 of CUSCINETTI, part 3 of OLIO.
        exec("INSERT INTO Tbl_Descrizione_Ricambi (ID_Ricambi, Ricambi, Descrizione, Giacenza, Scorta) VALUES "
             "(1, 'CUSCINETTI', 'Radiale 6204', 10, 2)");
        exec("INSERT INTO Tbl_Descrizione_Ricambi (ID_Ricambi, Ricambi, Descrizione, Giacenza, Scorta) VALUES "
             "(1, 'CUSCINETTI', 'Assiale 51105', 5, 2)");
        exec("INSERT INTO Tbl_Descrizione_Ricambi (ID_Ricambi, Ricambi, Descrizione, Giacenza, Scorta) VALUES "
             "(2, 'OLIO', 'Idraulico HLP46', 3, 3)");
        exec("INSERT INTO Tbl_Causa_Intervento (Causa_Interv) VALUES ('Usura')");
    }

    /// An intervention already stored on a unit of the register's plant (1 and 2: PRESSA
    /// AX100, 3: TORNIO T200 N° 10); its key.
    int addIntervention(int part, double quantity, const QDate& date = QDate(2026, 10, 1), int cause = 1,
                        int unit = 1, const QString& destination = "Mandrino")
    {
        static const char* const names[] = {"", "Radiale 6204", "Assiale 51105", "Idraulico HLP46"};
        const bool lathe = unit == 3;
        exec(QStringLiteral("INSERT INTO Tbl_Ricerca (Data, ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, "
                            "ID_DESCRIZIONE_RICAMBI, Descrizione, ID_RICAMBI, Ricambi, Quantita, Destinazione, "
                            "ID_CAUSA) VALUES (#%1#, %2, '%3', '%4', %5, '%6', %7, '%8', %9, '%10', %11, '%12', %13)")
                 .arg(date.toString("MM/dd/yyyy"))
                 .arg(lathe ? 2 : 1)
                 .arg(lathe ? "TORNIO" : "PRESSA")
                 .arg(lathe ? "T200" : "AX100")
                 .arg(unit)
                 .arg(lathe ? "10" : QString::number(unit))
                 .arg(part)
                 .arg(names[part])
                 .arg(part == 3 ? 2 : 1)
                 .arg(part == 3 ? "OLIO" : "CUSCINETTI")
                 .arg(quantity)
                 .arg(destination)
                 .arg(cause));
        return rows("SELECT Max(ID) FROM Tbl_Ricerca")[0][0].toLong();
    }

    double stock(int part)
    {
        return rows(QStringLiteral("SELECT Giacenza FROM Tbl_Descrizione_Ricambi WHERE ID_DESCRIZIONE_RICAMBI = %1")
                        .arg(part))[0][0]
            .toDouble();
    }

    /// A property of a control of a screen, as text.
    QString get(const QString& screen, const QString& what)
    {
        return drive("get " + screen + "." + what).toVariant().toString();
    }

    /// A grid's rows as shown, one text line per row, cells joined by "|".
    QStringList grid(const QString& control)
    {
        QStringList out;
        for (const QJsonValue& row : drive("grid " + control)["rows"].toArray()) {
            QStringList cells;
            for (const QJsonValue& c : row.toArray())
                cells << c.toVariant().toString();
            out << cells.join('|');
        }
        return out;
    }

    /// The titles and texts of the boxes shown since the last call.
    QStringList shown()
    {
        QStringList out;
        for (const QJsonValue& b : drive("boxes").toArray())
            out << b["title"].toString() + ": " + b["prompt"].toString();
        return out;
    }

    InProcessDrive drive;
};
