#pragma once
/// @file RicambiFile.h
/// RICAMBI.txt, the spare parts list as text: one line a part with its cost, its
/// category name padded to a column and its description, then the total block.

#include "reports/TextExport.h"
#include "runtime/Variant.h"

#include <QString>

namespace store {
class Recordset;
}

namespace spares {

/// The category name as the list pads it. The widths come from a chain of length tests
/// in rising order, the first that holds adding its blanks: most names reach 53, 52 or
/// 46 characters, one of 23 reaches 50, of 37 reaches 39, of 38 reaches 40, and from 39
/// characters on nothing is added. Users' lists line up this way; the steps stay. A Null
/// name is "" with no blanks (its length is no number to test).
QString PaddedCategory(const vb::Variant& name);

/// One line of a part: cost "#,##0.00", two tabs, the padded category, the description
/// straight behind it, a tab, the stock.
QString PartLine(const vb::Variant& cost, const vb::Variant& category, const vb::Variant& description,
                 const vb::Variant& stock);

/// The file from the parts of a recordset (ordered by the caller): the heading, a line a
/// part, and the total block with the number of parts written.
reports::TextExport RicambiExport(store::Recordset& parts);

/// The same on "Select * from Tbl_Descrizione_Ricambi order by Ricambi,Costo".
reports::TextExport RicambiExport();

} // namespace spares
