#pragma once
/// @file Variant.h
/// VB's Variant: the value of every field, control property and expression,
/// with VB's conversion rules under Italian regional settings
/// (dates day/month/year, decimal comma, thousands dot).

#include <QDate>
#include <QDateTime>
#include <QString>

#include <cstdint>
#include <type_traits>
#include <variant>

namespace vb {

/// A date as Jet and VB hold it: days since 30 December 1899, time as the fraction.
struct JetDate
{
    double serial = 0.0;
    bool operator==(const JetDate&) const = default;
};

class Variant
{
public:
    enum class Type { Empty, Null, Boolean, Integer, Long, Double, Date, String };

    Variant() = default; // Empty
    static Variant null();
    Variant(bool b);
    Variant(int v);          // Long (VB's Integer only through CInt)
    Variant(std::int64_t v); // Long
    /// Any other integer type (qint64, sqlite3_int64, unsigned, short) is a Long too.
    template <class T>
    requires(std::is_integral_v<T> && !std::is_same_v<T, bool> && !std::is_same_v<T, char> && !std::is_same_v<T, int> &&
             !std::is_same_v<T, std::int64_t>) Variant(T v)
        : Variant(static_cast<std::int64_t>(v))
    {
    }
    Variant(double v);
    Variant(JetDate d);
    Variant(const QString& s);
    Variant(const char* s);
    static Variant fromInteger(std::int16_t v); // VB Integer
    static Variant fromDate(const QDate& d);
    static Variant fromDateTime(const QDateTime& dt);

    Type type() const { return m_type; }
    bool isNull() const { return m_type == Type::Null; }
    bool isEmpty() const { return m_type == Type::Empty; }
    bool isNumeric() const; // Boolean, Integer, Long, Double (and numeric text: see vb::IsNumeric)
    bool isDate() const { return m_type == Type::Date; }
    bool isString() const { return m_type == Type::String; }

    // Raw access without conversion (caller checked the type).
    bool rawBool() const { return m_bool; }
    std::int64_t rawLong() const { return m_type == Type::Long || m_type == Type::Integer ? m_long : 0; }
    double rawDouble() const { return m_type == Type::Double || m_type == Type::Date ? m_double : 0.0; }
    JetDate rawDate() const { return JetDate{rawDouble()}; }
    const QString& rawString() const { return m_string; }

    // VB conversions; Null raises 94, impossible conversions 13, out of range 6.
    QString toString() const;       ///< CStr (Empty gives "")
    double toDouble() const;        ///< CDbl
    std::int16_t toInteger() const; ///< CInt (banker's rounding, overflow 6)
    std::int32_t toLong() const;    ///< CLng
    bool toBool() const;            ///< CBool
    JetDate toDate() const;         ///< CDate under Italian settings

    /// Text for a control: Null and Empty give "" (what a bound control shows).
    QString displayText() const;

    /// Same type and value (Null == Null); not VB's "=".
    bool operator==(const Variant& o) const;

private:
    Type m_type = Type::Empty;
    bool m_bool = false;
    // One number a value: a list of thousands of rows holds a Variant per field.
    union {
        std::int64_t m_long = 0; // Integer, Long
        double m_double;         // Double, Date
    };
    QString m_string;
};

// Date helpers shared by the runtime and the store.
double toSerial(const QDateTime& dt);
double toSerial(const QDate& d);
QDateTime fromSerial(double serial);
QDate dateFromSerial(double serial);
QTime timeFromSerial(double serial);

} // namespace vb
