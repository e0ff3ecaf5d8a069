#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace pg::cli {

// The arguments of one command: positional arguments and "--name value" (or "--name=value")
// options, checked against the options the command knows.
class CommandArgs
{
public:
    // valueOptions take a value, flags do not (names with their leading "--"). False, with
    // the reason in Italian, for an unknown option or an option without its value.
    bool parse(const QStringList &arguments, const QStringList &valueOptions,
               const QStringList &flags, QString *error);

    const QStringList &positional() const { return m_positional; }
    bool has(const QString &option) const { return m_values.contains(option); }
    QString value(const QString &option, const QString &defaultValue = {}) const
    {
        return m_values.value(option, defaultValue);
    }

    // The option as a whole number within [minimum, maximum]; false with the reason when it
    // is not one. *number is left alone when the option is absent.
    bool number(const QString &option, qint64 minimum, qint64 maximum, qint64 *number,
                QString *error) const;

private:
    QStringList m_positional;
    QHash<QString, QString> m_values;
};

} // namespace pg::cli
