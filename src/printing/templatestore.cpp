#include "templatestore.h"

#include "startup/companyenvironment.h"
#include "startup/paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace pg::printing {

namespace {

const QString ShippedDir = QStringLiteral(":/templates/");
const QStringList Extensions{QStringLiteral("html"), QStringLiteral("htm")};

QString readUtf8(const QString &path, bool *ok)
{
    QFile file(path);
    *ok = file.open(QIODevice::ReadOnly);
    return *ok ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

QStringList TemplateStore::shippedNames()
{
    QStringList names;
    for (const QFileInfo &info : QDir(ShippedDir).entryInfoList(QDir::Files, QDir::Name))
        names << info.completeBaseName();
    return names;
}

TemplateStore::TemplateStore(const QString &directory)
    : m_dir(paths::withTrailingSeparator(
          directory.isEmpty() ? OrvidaDir() + QStringLiteral("D_IMG/") : directory))
{
    m_dir = paths::resolveCase(m_dir);
    if (!m_dir.endsWith(u'/'))
        m_dir += u'/';
}

QStringList TemplateStore::names() const
{
    QStringList names = shippedNames();
    QStringList filters;
    for (const QString &ext : Extensions)
        filters << QStringLiteral("*.") + ext;
    const QDir dir(m_dir);
    for (const QFileInfo &info :
         dir.entryInfoList(filters, QDir::Files | QDir::Readable, QDir::Name | QDir::IgnoreCase))
        if (!names.contains(info.completeBaseName(), Qt::CaseInsensitive))
            names << info.completeBaseName();
    names.sort(Qt::CaseInsensitive);
    return names;
}

QString TemplateStore::fileOf(const QString &name) const
{
    if (name.isEmpty() || name.contains(u'/') || name.contains(u'\\'))
        return {};
    const QDir dir(m_dir);
    const QStringList entries = dir.entryList(QDir::Files | QDir::Readable);
    for (const QString &ext : Extensions)
        for (const QString &entry : entries)
            if (entry.compare(name + u'.' + ext, Qt::CaseInsensitive) == 0)
                return m_dir + entry;
    return {};
}

std::optional<QString> TemplateStore::text(const QString &name) const
{
    bool ok = false;
    const QString file = fileOf(name);
    if (!file.isEmpty()) {
        QString content = readUtf8(file, &ok);
        if (ok)
            return content;
    }
    for (const QString &shipped : shippedNames())
        if (shipped.compare(name, Qt::CaseInsensitive) == 0) {
            QString content = readUtf8(ShippedDir + shipped + QStringLiteral(".html"), &ok);
            if (ok)
                return content;
        }
    return std::nullopt;
}

QString TemplateStore::origin(const QString &name) const
{
    const QString file = fileOf(name);
    if (!file.isEmpty())
        return QDir::toNativeSeparators(file);
    return QStringLiteral("modello interno del programma");
}

bool TemplateStore::installShipped(const QString &directory, QString *error)
{
    const QString dir = paths::withTrailingSeparator(directory);
    if (!QDir().mkpath(dir)) {
        *error =
            QStringLiteral("Impossibile creare la cartella %1").arg(QDir::toNativeSeparators(dir));
        return false;
    }
    for (const QString &name : shippedNames()) {
        const QString target = dir + name + QStringLiteral(".html");
        if (QFileInfo::exists(target))
            continue;
        if (!QFile::copy(ShippedDir + name + QStringLiteral(".html"), target)) {
            *error = QStringLiteral("Impossibile scrivere il modello %1")
                         .arg(QDir::toNativeSeparators(target));
            return false;
        }
        // A copy of a resource is read-only; the company is meant to adapt its templates.
        QFile::setPermissions(target, QFile::permissions(target) | QFileDevice::WriteOwner |
                                          QFileDevice::WriteUser);
    }
    return true;
}

} // namespace pg::printing
