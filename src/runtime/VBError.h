#pragma once
/// @file VBError.h
/// The one exception type of the program: a run-time error as VB raised it,
/// with its number and the Italian description of the Italian run time.

#include <QString>

#include <stdexcept>

namespace vb {

class VBError : public std::exception
{
public:
    VBError(int number, QString description);
    /// An error with the run time's standard description for its number.
    explicit VBError(int number);

    int number() const { return m_number; }
    const QString& description() const { return m_description; }
    const char* what() const noexcept override;

    /// The run time's Italian description of a standard error number ("" if unknown).
    static QString standardDescription(int number);

private:
    int m_number;
    QString m_description;
    std::string m_what;
};

/// Error numbers the handlers test for.
namespace err {
constexpr int Overflow = 6;
constexpr int TypeMismatch = 13;
constexpr int InvalidUseOfNull = 94;
constexpr int InvalidPropertyValue = 380;
constexpr int NoCurrentRecord = 3021;
constexpr int TableExists = 3010;
constexpr int GridDataAccess = 6160;
constexpr int GridData2 = 7005;
constexpr int SyntaxError = -2147217900; // the provider's "syntax error" (0x80040E14)
} // namespace err

} // namespace vb
