#pragma once

#include <QString>

#include <exception>
#include <source_location>

namespace pg {

// An error of the program: number, description, the source that raised it and the line.
// Run-time and database errors carry positive numbers; the distinta component's own
// application errors carry the negative numbers 0x80040201 to 0x80040204.
class AppError : public std::exception
{
public:
    AppError(qint32 number, QString description, QString source = {},
             std::source_location where = std::source_location::current());

    qint32 number() const { return m_number; }
    const QString &description() const { return m_description; }
    const QString &source() const { return m_source; }
    // The line that raised the error; 0 when it is not known.
    int line() const { return m_line; }

    const char *what() const noexcept override { return m_what.constData(); }

    // Error numbers used by the program.
    static constexpr qint32 Overflow = 6;
    static constexpr qint32 TypeMismatch = 13;
    static constexpr qint32 FileNotFound = 53;
    static constexpr qint32 PathFileAccess = 75;
    // Database errors: this base plus the engine's own error code.
    static constexpr qint32 DatabaseBase = 3000;
    // The start of the interface-defined range that application errors are numbered from.
    static constexpr qint32 ObjectErrorBase = qint32(0x80040000u);

private:
    qint32 m_number;
    QString m_description;
    QString m_source;
    int m_line;
    QByteArray m_what;
};

} // namespace pg
