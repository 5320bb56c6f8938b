#pragma once
/// @file Filter.h
/// The criteria of a recordset's Filter ("Reparto like 'A%'", "ID = 3 AND Stato <> 'x'"),
/// evaluated on the rows already read, and the value comparison it shares with the
/// relations of SHAPE: text ignoring case and respecting accents, numbers and dates by
/// value, Null equal to nothing.

#include "runtime/Variant.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <span>

namespace store::filter {

/// <0, 0, >0; nullopt when either side is Null or the two cannot be compared.
std::optional<int> compare(const vb::Variant& a, const vb::Variant& b);

/// LIKE as the provider's filter has it: "%" or "*" any run, "_" or "?" one character,
/// case ignored.
bool like(const QString& text, const QString& pattern);

class Criteria
{
public:
    /// Parses the criteria against the recordset's column names (case ignored). Raises
    /// vb::VBError 3001 ("Argomenti non validi...") on text it cannot read.
    Criteria(const QString& text, const QStringList& columns);
    ~Criteria();
    bool matches(std::span<const vb::Variant> row) const;

    struct Node;

private:
    std::unique_ptr<Node> m_root;
};

} // namespace store::filter
