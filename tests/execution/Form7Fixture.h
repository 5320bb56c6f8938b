#pragma once
// A small plant for the register: two machines with procedures and assignments, three
// numbered units, one operator, and helpers to put register rows and stop records in
// place and to load and drive Form7.

#include "execution/Form7.h"
#include "shell/ShellFixture.h"

#include <QDate>

class Form7Fixture : public ShellFixture
{
protected:
    /// The frozen today of every test.
    static QDate today() { return QDate(2026, 11, 15); }

    void SetUp() override
    {
        ShellFixture::SetUp();
        // The note type column comes with the start-up upgrade.
        for (const QString& s : shell::frmMain::upgradeStatements()) {
            try {
                exec(s);
            } catch (const vb::VBError&) {
            }
        }
        // Models 1 (PRESSA AX100) and 2 (TORNIO T200); units 1 and 2 of model 1, unit 3 of model 2.
        exec("INSERT INTO Tbl_Macchina (Macchina, Modello) VALUES ('PRESSA', 'AX100')");
        exec("INSERT INTO Tbl_Macchina (Macchina, Modello) VALUES ('TORNIO', 'T200')");
        exec("INSERT INTO Tbl_Macchina (Macchina, Modello) VALUES ('FRESA', 'F10')"); // no numbers
        exec("INSERT INTO Tbl_Numerazione (Numerazione, ID_MODELLO) VALUES ('1', 1)");
        exec("INSERT INTO Tbl_Numerazione (Numerazione, ID_MODELLO) VALUES ('2', 1)");
        exec("INSERT INTO Tbl_Numerazione (Numerazione, ID_MODELLO) VALUES ('10', 2)");
        // Types: 2 Mensile (4 weeks), 3 Bimestrale (8 weeks).
        exec("INSERT INTO Tbl_ProcedureM (ID_MODELLO, ID_MAINT_TIPO, Num, Titolo) VALUES (1, 2, 1, 'Olio')");
        exec("INSERT INTO Tbl_ProcedureM (ID_MODELLO, ID_MAINT_TIPO, Num, Titolo) VALUES (1, 3, 1, 'Filtri')");
        exec("INSERT INTO Tbl_ProcedureM (ID_MODELLO, ID_MAINT_TIPO, Num, Titolo) VALUES (2, 2, 1, 'Olio')");
        exec("INSERT INTO Tbl_ProcedureM (ID_MODELLO, ID_MAINT_TIPO, Num, Titolo) VALUES (3, 2, 1, 'Olio')");
        exec("INSERT INTO Tbl_Assegna_M (ID_MODELLO, ID_MAINT_TIPO, Macchina, Modello, Manutenzione_Tipo, "
             "Tempo_Minuti) VALUES (1, 2, 'PRESSA', 'AX100', 'Mensile', 30)");
        exec("INSERT INTO Tbl_Assegna_M (ID_MODELLO, ID_MAINT_TIPO, Macchina, Modello, Manutenzione_Tipo, "
             "Tempo_Minuti) VALUES (1, 3, 'PRESSA', 'AX100', 'Bimestrale', 60)");
        exec("INSERT INTO Tbl_Assegna_M (ID_MODELLO, ID_MAINT_TIPO, Macchina, Modello, Manutenzione_Tipo, "
             "Tempo_Minuti) VALUES (2, 2, 'TORNIO', 'T200', 'Mensile', 45)");
        exec("INSERT INTO Tbl_Operatore (Operatore, Qualifica) VALUES ('ROSSI', 'Tecnico')");
    }

    /// A register row of unit idNum (model from the unit) and a type; its key.
    int addMaintenance(int idNum, int tipo, const QDate& ultima, const QDate& prossima, double frequenza = 0)
    {
        static const std::map<int, std::tuple<int, const char*, const char*, const char*>> units = {
            {1, {1, "PRESSA", "AX100", "1"}}, {2, {1, "PRESSA", "AX100", "2"}}, {3, {2, "TORNIO", "T200", "10"}}};
        const auto& [model, machine, modello, number] = units.at(idNum);
        store::Recordset rs;
        rs.Open("Select * from Tbl_Maintenance");
        rs.AddNew();
        const int id = rs.Fields("ID").Value().toLong();
        rs.Fields("ID_MODELLO") = model;
        rs.Fields("Macchina") = machine;
        rs.Fields("Modello") = modello;
        rs.Fields("ID_NUM") = idNum;
        rs.Fields("Numerazione") = number;
        rs.Fields("ID_MAINT_TIPO") = tipo;
        rs.Fields("Manutenzione_Tipo") = tipo == 2 ? "Mensile" : "Bimestrale";
        rs.Fields("Frequenza_Sett") = frequenza > 0 ? frequenza : (tipo == 2 ? 4.0 : 8.0);
        rs.Fields("Ultima") = vb::Variant::fromDate(ultima);
        rs.Fields("Prossima") = vb::Variant::fromDate(prossima);
        rs.Fields("Operatore") = "";
        rs.UpdateBatch();
        return id;
    }

    /// A stop record as the screen writes it.
    void addStop(int idNum, int tipo, const QString& fermaDal, int numero, int tot)
    {
        exec(QStringLiteral("INSERT INTO Tbl_Fermi_Macchina (ID_NUM, ID_MAINT_TIPO, Ferma_Dal, Giorni_Stop, "
                            "TOT_Giorni_Stop, Numero_Stop) VALUES (%1, %2, %3, 0, %4, %5)")
                 .arg(idNum)
                 .arg(tipo)
                 .arg(fermaDal.isEmpty() ? QStringLiteral("Null") : QLatin1Char('\'') + fermaDal + QLatin1Char('\''))
                 .arg(tot)
                 .arg(numero));
    }

    /// One value of the first row of a statement.
    vb::Variant value(const QString& jet)
    {
        const auto r = rows(jet);
        return r.empty() ? vb::Variant::null() : r.front().front();
    }

    QDate dateOf(const QString& jet) { return value(jet).isNull() ? QDate() : vb::dateFromSerial(value(jet).toDate().serial); }

    /// Form7 as it is now, loaded (hidden) when needed.
    execution::Form7* form7() { return shell::screens().formAs<execution::Form7>(QStringLiteral("Form7")); }

    /// A fresh load of Form7.
    execution::Form7* reload()
    {
        shell::screens().unload(QStringLiteral("Form7"));
        return form7();
    }

    /// Selects the register row with this key in DataGrid1, as a click does.
    void selectRow(execution::Form7* f, int id)
    {
        for (int r = 0; r < f->DataGrid1->RecordCount(); ++r) {
            if (f->DataGrid1->cellValue(r, 0).toLong() == id) {
                f->DataGrid1->select(r);
                return;
            }
        }
        FAIL() << "no register row " << id;
    }

    std::vector<vb::ShownBox> boxes() { return vb::MsgBoxService::takeShown(); }

    static void answer(std::initializer_list<int> answers) { vb::MsgBoxService::queueAnswers(answers); }
};
