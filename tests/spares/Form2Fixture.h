#pragma once
// Three categories and three parts for the parts register: VITE M8 (pz) with two parts,
// VITE (pz) with none, OLIO (lt) with one; past interventions of the first part on two
// machines and one of the second.

#include "shell/ShellFixture.h"
#include "spares/Form2.h"

class Form2Fixture : public ShellFixture
{
protected:
    void SetUp() override
    {
        ShellFixture::SetUp();
        exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('VITE M8', 'pz')");
        exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('VITE', 'pz')");
        exec("INSERT INTO Tbl_Ricambi (Ricambi, Unita_Misura) VALUES ('OLIO', 'lt')");
        exec("INSERT INTO Tbl_Descrizione_Ricambi (ID_Ricambi, Ricambi, Descrizione, Codice, Costo, Giacenza, Scorta, "
             "[NOTE]) VALUES (1, 'VITE M8', 'Testa esagonale', 'V8-1', 0.35, 100, 20, 'zincata')");
        exec("INSERT INTO Tbl_Descrizione_Ricambi (ID_Ricambi, Ricambi, Descrizione, Codice, Costo, Giacenza, Scorta) "
             "VALUES (1, 'VITE M8', 'Brugola', 'V8-2', 0.5, 50, 10)");
        exec("INSERT INTO Tbl_Descrizione_Ricambi (ID_Ricambi, Ricambi, Descrizione, Costo, Giacenza, Scorta) "
             "VALUES (3, 'OLIO', 'Idraulico', 1234.5, 4, 2)");
        exec("INSERT INTO Tbl_Ricerca (ID_DESCRIZIONE_RICAMBI, Descrizione, ID_RICAMBI, Ricambi, ID_MODELLO, Macchina, "
             "Modello, Destinazione) VALUES (1, 'Testa esagonale', 1, 'VITE M8', 1, 'PRESSA', 'AX100', 'Reparto A')");
        exec("INSERT INTO Tbl_Ricerca (ID_DESCRIZIONE_RICAMBI, Descrizione, ID_RICAMBI, Ricambi, ID_MODELLO, Macchina, "
             "Modello, Destinazione) VALUES (1, 'Testa esagonale', 1, 'VITE M8', 2, 'TORNIO', 'T200', 'Reparto B')");
        exec("INSERT INTO Tbl_Ricerca (ID_DESCRIZIONE_RICAMBI, Descrizione, ID_RICAMBI, Ricambi, ID_MODELLO, Macchina, "
             "Modello, Destinazione) VALUES (2, 'Brugola', 1, 'VITE M8', 2, 'TORNIO', 'T200', 'Reparto B')");
    }

    spares::Form2* form() { return shell::screens().formAs<spares::Form2>(QStringLiteral("Form2")); }

    std::vector<vb::ShownBox> boxes() { return vb::MsgBoxService::takeShown(); }
    static void answer(std::initializer_list<int> answers) { vb::MsgBoxService::queueAnswers(answers); }

    /// The first column of a statement's rows as text ("<null>" for Null).
    QStringList column(const QString& jet)
    {
        QStringList out;
        for (const auto& r : rows(jet))
            out << (r.front().isNull() ? QStringLiteral("<null>") : r.front().toString());
        return out;
    }

    /// A category, then one of its parts, as two clicks do.
    void pick(spares::Form2* f, const QString& category, const QString& part = {})
    {
        f->List1->choose(category);
        if (!part.isEmpty())
            f->List2->choose(part);
    }

    /// Replaces a field's text by typing, as the user does (focus selects it all).
    static void retype(vb::TextBox* t, const QString& text)
    {
        t->setText(QString());
        t->typeText(text);
    }
};
