#include "databaselocation.h"

#include "localdb/localdatabase.h"

#include "startup/inifile.h"
#include "startup/paths.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

namespace pg::localdb {

namespace {

const QString Section = QStringLiteral("Database");
constexpr int ValueLimit = 256;

QString quotedOption(const QString &value)
{
    QString escaped = value;
    escaped.replace(u'\\', QLatin1String("\\\\"));
    escaped.replace(u'\'', QLatin1String("\\'"));
    return u'\'' + escaped + u'\'';
}

// The "Name=value;" parts of a connection string, names without regard to letter case.
QString part(const QString &connectionString, const QString &name)
{
    for (const QString &p : connectionString.split(u';', Qt::SkipEmptyParts)) {
        const qsizetype eq = p.indexOf(u'=');
        if (eq > 0 && p.left(eq).trimmed().compare(name, Qt::CaseInsensitive) == 0)
            return p.mid(eq + 1).trimmed();
    }
    return QString();
}

} // namespace

DatabaseLocation DatabaseLocation::file(const QString &path)
{
    DatabaseLocation location;
    location.filePath = path;
    return location;
}

std::optional<DatabaseLocation> DatabaseLocation::ofCompany(const QString &companyArchiveDir,
                                                            QString *error)
{
    const QString directory = paths::withTrailingSeparator(companyArchiveDir);
    const QString settingsPath = paths::resolveCase(directory + SettingsFileName);
    if (!QFileInfo(settingsPath).isFile())
        return file(directory + FileName);
    const IniFile ini = IniFile::load(settingsPath);
    const auto value = [&](const char *key) {
        return ini.read(Section, QLatin1String(key), QString(), ValueLimit).trimmed();
    };
    const QString engine = value("Engine");
    if (engine.isEmpty() || engine.compare(QLatin1String("SQLite"), Qt::CaseInsensitive) == 0)
        return file(directory + FileName);
    const QString where = QDir::toNativeSeparators(settingsPath);
    if (engine.compare(QLatin1String("PostgreSQL"), Qt::CaseInsensitive) != 0) {
        if (error)
            *error = QStringLiteral("Il file %1 indica il motore di database \"%2\", che il "
                                    "programma non conosce: i valori ammessi per Engine sono "
                                    "SQLite e PostgreSQL.")
                         .arg(where, engine);
        return std::nullopt;
    }
    DatabaseLocation location;
    location.engine = Engine::PostgreSQL;
    location.service = value("Service");
    location.host = value("Host");
    location.database = value("Database");
    location.user = value("User");
    const QString port = value("Port");
    if (!port.isEmpty()) {
        bool ok = false;
        location.port = port.toInt(&ok);
        if (!ok || location.port < 1 || location.port > 65535) {
            if (error)
                *error = QStringLiteral("Il file %1 indica la porta \"%2\" per il server "
                                        "PostgreSQL: deve essere un numero da 1 a 65535.")
                             .arg(where, port);
            return std::nullopt;
        }
    }
    if (!value("Password").isEmpty()) {
        if (error)
            *error = QStringLiteral("Il file %1 contiene una password: per sicurezza il "
                                    "programma non la usa. Toglierla dal file e indicarla nel "
                                    "file .pgpass dell'utente (o in PGPASSFILE).")
                         .arg(where);
        return std::nullopt;
    }
    if (location.service.isEmpty() && location.database.isEmpty()) {
        if (error)
            *error = QStringLiteral("Il file %1 sceglie il server PostgreSQL ma non indica né "
                                    "il servizio (Service) né il database (Database).")
                         .arg(where);
        return std::nullopt;
    }
    return location;
}

QString DatabaseLocation::connectionString() const
{
    if (!isPostgres())
        return QStringLiteral("Data Source=") + filePath + u';';
    QString text = QStringLiteral("Provider=PostgreSQL;");
    const auto add = [&](const char *name, const QString &value) {
        if (!value.isEmpty())
            text += QLatin1String(name) + u'=' + value + u';';
    };
    add("Service", service);
    add("Host", host);
    add("Port", port > 0 ? QString::number(port) : QString());
    add("Database", database);
    add("User", user);
    return text;
}

DatabaseLocation DatabaseLocation::fromConnectionString(const QString &connectionString)
{
    if (part(connectionString, QStringLiteral("Provider"))
            .compare(QLatin1String("PostgreSQL"), Qt::CaseInsensitive) != 0)
        return file(part(connectionString, QStringLiteral("Data Source")));
    DatabaseLocation location;
    location.engine = Engine::PostgreSQL;
    location.service = part(connectionString, QStringLiteral("Service"));
    location.host = part(connectionString, QStringLiteral("Host"));
    location.port = part(connectionString, QStringLiteral("Port")).toInt();
    location.database = part(connectionString, QStringLiteral("Database"));
    location.user = part(connectionString, QStringLiteral("User"));
    return location;
}

QString DatabaseLocation::libpqOptions() const
{
    QStringList options;
    const auto add = [&](const char *name, const QString &value) {
        if (!value.isEmpty())
            options << QLatin1String(name) + u'=' + quotedOption(value);
    };
    add("service", service);
    add("host", host);
    add("port", port > 0 ? QString::number(port) : QString());
    add("dbname", database);
    add("user", user);
    return options.join(u' ');
}

QString DatabaseLocation::displayName() const
{
    if (!isPostgres())
        return QDir::toNativeSeparators(filePath);
    QString text = database.isEmpty() ? service : database;
    if (!host.isEmpty())
        text += QStringLiteral(" sul server %1").arg(host);
    else if (!service.isEmpty() && !database.isEmpty())
        text += QStringLiteral(" (servizio %1)").arg(service);
    return text;
}

} // namespace pg::localdb
