#include "commandargs.h"

namespace pg::cli {

bool CommandArgs::parse(const QStringList &arguments, const QStringList &valueOptions,
                        const QStringList &flags, QString *error)
{
    m_positional.clear();
    m_values.clear();
    bool optionsEnded = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &arg = arguments.at(i);
        if (optionsEnded || !arg.startsWith(QStringLiteral("--"))) {
            m_positional << arg;
            continue;
        }
        if (arg == u"--") {
            optionsEnded = true;
            continue;
        }
        const qsizetype equals = arg.indexOf(u'=');
        const QString name = equals < 0 ? arg : arg.left(equals);
        if (flags.contains(name)) {
            if (equals >= 0) {
                *error = QStringLiteral("L'opzione %1 non vuole un valore.").arg(name);
                return false;
            }
            m_values.insert(name, QString());
        } else if (valueOptions.contains(name)) {
            if (equals >= 0) {
                m_values.insert(name, arg.mid(equals + 1));
            } else if (i + 1 < arguments.size()) {
                m_values.insert(name, arguments.at(++i));
            } else {
                *error = QStringLiteral("Manca il valore dell'opzione %1.").arg(name);
                return false;
            }
        } else {
            *error = QStringLiteral("Opzione sconosciuta: %1").arg(name);
            return false;
        }
    }
    return true;
}

bool CommandArgs::number(const QString &option, qint64 minimum, qint64 maximum, qint64 *number,
                         QString *error) const
{
    if (!has(option))
        return true;
    bool ok = false;
    const qint64 n = value(option).toLongLong(&ok);
    if (!ok || n < minimum || n > maximum) {
        *error = QStringLiteral("Valore non valido per %1: \"%2\" (serve un numero da %3 a %4).")
                     .arg(option, value(option))
                     .arg(minimum)
                     .arg(maximum);
        return false;
    }
    *number = n;
    return true;
}

} // namespace pg::cli
