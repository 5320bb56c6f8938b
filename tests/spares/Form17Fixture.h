#pragma once
// Suppliers for the supplier register, order lines that copy a supplier's name, and
// Form17 loaded and driven.

#include "shell/ShellFixture.h"
#include "spares/Form17.h"

class Form17Fixture : public ShellFixture
{
protected:
    /// A supplier with its card filled; "" leaves a column Null. Its key.
    int addSupplier(const QString& name, const QString& company, const QString& city = "Brescia",
                    const QString& vat = "01234567890")
    {
        store::Recordset rs;
        rs.Open("Select * from Tbl_Fornitori");
        rs.AddNew();
        const int id = rs.Fields("ID_FORNITORE").Value().toLong();
        const std::pair<const char*, QString> columns[] = {
            {"Fornitore", name}, {"Nome_Soceta", company}, {"Part_IVA/Cod_Fisc", vat}, {"Citta/Paese", city},
            {"Provincia", "BS"}, {"Tel", "030 123456"},    {"Url", "www.example.it"}};
        for (const auto& [column, value] : columns)
            rs.Fields(column) = value.isEmpty() ? vb::Variant::null() : vb::Variant(value);
        rs.UpdateBatch();
        return id;
    }

    /// A line of the open order and an evaded one, both naming the supplier.
    void addOrderLines(const QString& supplierKey, const QString& name)
    {
        for (const char* table : {"Tbl_Order", "Tbl_Historian_Orders"})
            exec(QStringLiteral("INSERT INTO %1 (Ricambi, ID_FORNITORE, Fornitore) VALUES ('CUSCINETTI', %2, '%3')")
                     .arg(QString::fromLatin1(table), supplierKey, name));
    }

    QStringList column(const QString& jet)
    {
        QStringList out;
        for (const auto& r : rows(jet))
            out << r.front().toString();
        return out;
    }

    spares::Form17* form17() { return shell::screens().formAs<spares::Form17>(QStringLiteral("Form17")); }

    /// The screen after a reopen of its own, once the old one is gone.
    spares::Form17* reopened()
    {
        QCoreApplication::processEvents();
        return form17();
    }

    /// Selects the grid row of this supplier, as a click does.
    void selectSupplier(spares::Form17* f, int id)
    {
        for (int r = 0; r < f->DataGrid1->RecordCount(); ++r) {
            if (f->DataGrid1->cellValue(r, 0).toLong() == id)
                return f->DataGrid1->select(r);
        }
        FAIL() << "no supplier " << id;
    }

    std::vector<vb::ShownBox> boxes() { return vb::MsgBoxService::takeShown(); }
    static void answer(std::initializer_list<int> answers) { vb::MsgBoxService::queueAnswers(answers); }
};
