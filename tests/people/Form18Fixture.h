#pragma once
// Operators as the store holds them, jobs of the register that name them, and Form18
// loaded and driven.

#include "people/Form18.h"
#include "shell/ShellFixture.h"

#include <QFile>

class Form18Fixture : public ShellFixture
{
protected:
    /// An operator; a Null date leaves its column empty. Its key.
    int addOperator(const QString& name, const QString& qualification, const vb::Variant& born,
                    const vb::Variant& started, const vb::Variant& ended = vb::Variant::null(),
                    const QString& type = "Interno")
    {
        store::Recordset rs;
        rs.Open("Select * from Tbl_Operatore");
        rs.AddNew();
        const int id = rs.Fields("ID_OPERATORE").Value().toLong();
        rs.Fields("Operatore") = name;
        rs.Fields("Qualifica") = qualification;
        rs.Fields("Data_Nascita") = born;
        rs.Fields("Inizio_Rapp") = started;
        rs.Fields("Fine_Rapp") = ended;
        rs.Fields("Tipo") = type;
        rs.UpdateBatch();
        return id;
    }

    static vb::Variant date(int y, int m, int d) { return vb::Variant::fromDate(QDate(y, m, d)); }

    /// A maintenance of the register last executed by this operator.
    void addJob(int operatorId, const QDate& ultima, const QString& type, const QString& model, const QString& number)
    {
        store::Recordset rs;
        rs.Open("Select * from Tbl_Maintenance");
        rs.AddNew();
        rs.Fields("Macchina") = "PRESSA";
        rs.Fields("Modello") = model;
        rs.Fields("Numerazione") = number;
        rs.Fields("Manutenzione_Tipo") = type;
        rs.Fields("Ultima") = vb::Variant::fromDate(ultima);
        rs.Fields("Prossima") = vb::Variant::fromDate(ultima.addDays(28));
        rs.Fields("ID_OPERATORE") = operatorId;
        rs.UpdateBatch();
    }

    people::Form18* form18() { return shell::screens().formAs<people::Form18>(QStringLiteral("Form18")); }

    /// The screen after a reopen of its own, once the old one is gone.
    people::Form18* reopened()
    {
        QCoreApplication::processEvents();
        return form18();
    }

    /// Selects the grid row of this operator, as a click does.
    void selectOperator(people::Form18* f, int id)
    {
        for (int r = 0; r < f->DataGrid1->RecordCount(); ++r) {
            if (f->DataGrid1->cellValue(r, 0).toLong() == id)
                return f->DataGrid1->select(r);
        }
        FAIL() << "no operator " << id;
    }

    QStringList column(const QString& jet)
    {
        QStringList out;
        for (const auto& r : rows(jet))
            out << r.front().toString();
        return out;
    }

    QStringList linesOf(const QString& name) const
    {
        QFile f(path() + "/" + name);
        EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << name.toStdString();
        QString all = QString::fromUtf8(f.readAll());
        all.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        return all.split(u'\n');
    }

    std::vector<vb::ShownBox> boxes() { return vb::MsgBoxService::takeShown(); }
    static void answer(std::initializer_list<int> answers) { vb::MsgBoxService::queueAnswers(answers); }
};
