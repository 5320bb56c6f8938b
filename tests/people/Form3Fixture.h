#pragma once
// The register's small plant with two more models, notes of two machine numbers and one
// general note, the register stood in for by a screen with the three fields the notebook
// reads, and Form3 loaded and driven.

#include "execution/Form7Fixture.h"
#include "people/Form3.h"

#include <QDate>

class Form3Fixture : public Form7Fixture
{
protected:
    void SetUp() override
    {
        Form7Fixture::SetUp();
        // Beside PRESSA AX100 (model 1, units 1 "1" and 2 "2") and TORNIO T200 (model 2,
        // unit 3 "10"): PRESSA BX200 (model 4, unit 4 "5") and TORNIO T-50 dell'officina
        // (model 5, unit 5 "7").
        exec("INSERT INTO Tbl_Macchina (Macchina, Modello) VALUES ('PRESSA', 'BX200')");
        exec("INSERT INTO Tbl_Macchina (Macchina, Modello) VALUES ('TORNIO', 'T-50 dell''officina')");
        exec("INSERT INTO Tbl_Numerazione (Numerazione, ID_MODELLO) VALUES ('5', 4)");
        exec("INSERT INTO Tbl_Numerazione (Numerazione, ID_MODELLO) VALUES ('7', 5)");
        olio = addNote(1, 1, "10/11/2026", "Cambiato olio", "Guasto", "Elettrico");
        filtri = addNote(1, 2, "03/03/2025", "Controllo olio e filtri", "Manutenzione", "Meccanico");
        guanti = addNote(0, 0, "12/11/2026", "Ordinare guanti", "Sicurezza", "Magazzino");

        // The register: the three fields the notebook reads, and its date.
        standIn(QStringLiteral("Form7"), [](QWidget* owner) -> vb::Form* {
            auto* f = new StandIn(owner, QStringLiteral("Form7"), nullptr);
            new vb::TextBox(f, QStringLiteral("ID_MOD"));
            new vb::TextBox(f, QStringLiteral("ID_NUM"));
            auto* date = new vb::DTPicker(f, QStringLiteral("DTPicker2"));
            date->setValue(vb::Variant::fromDate(QDate(2026, 11, 10)));
            return f;
        });
    }

    /// A note as the store holds it; its key.
    int addNote(int model, int number, const QString& date, const QString& text, const QString& type,
                const QString& type2, const QString& images = {}, const QString& path = {})
    {
        store::Recordset rs;
        rs.Open("Select * from Tbl_Maintenance_Note");
        rs.AddNew();
        const int id = rs.Fields("ID").Value().toLong();
        rs.Fields("ID_MODELLO") = model;
        rs.Fields("ID_NUM") = number;
        rs.Fields("Ultima") = date;
        rs.Fields("NOTE") = text;
        rs.Fields("Tipo_Nota") = type;
        rs.Fields("Tipo_Nota2") = type2;
        rs.Fields("Images") = images.isEmpty() ? vb::Variant::null() : vb::Variant(images);
        rs.Fields("Percorso") = path.isEmpty() ? vb::Variant::null() : vb::Variant(path);
        rs.UpdateBatch();
        return id;
    }

    people::Form3* form3() { return shell::screens().formAs<people::Form3>(QStringLiteral("Form3")); }

    /// A fresh load of the notebook.
    people::Form3* reload()
    {
        shell::screens().unload(QStringLiteral("Form3"));
        return form3();
    }

    /// The register's fields, as it stands when it opens the notebook.
    void setRegister(const QString& model, const QString& number, bool visible)
    {
        auto* f = shell::screens().form(QStringLiteral("Form7"));
        f->control(QStringLiteral("ID_MOD"))->setVbProperty(QStringLiteral("Text"), model);
        f->control(QStringLiteral("ID_NUM"))->setVbProperty(QStringLiteral("Text"), number);
        f->setVisible(visible);
    }

    /// The keys of a grid's rows, from its ID column.
    static QList<int> keys(vb::DataGrid* grid)
    {
        QList<int> out;
        for (int r = 0; r < grid->RecordCount(); ++r)
            out << grid->cellText(r, QStringLiteral("ID")).toInt();
        return out;
    }

    /// Clicks the row of the note with this key.
    static void selectNote(vb::DataGrid* grid, int id)
    {
        const int row = int(keys(grid).indexOf(id));
        ASSERT_GE(row, 0) << "no note " << id;
        grid->select(row);
    }

    std::vector<std::vector<vb::Variant>> note(int id)
    {
        return rows(QStringLiteral("SELECT ID_MODELLO, ID_NUM, ID_OPERATORE, Ultima, NOTE, Tipo_Nota, Tipo_Nota2, Images, "
                                   "Percorso FROM Tbl_Maintenance_Note WHERE ID = %1")
                        .arg(id));
    }

    int olio = 0, filtri = 0, guanti = 0;
};
