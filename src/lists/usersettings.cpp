#include "usersettings.h"

#include <QSettings>

namespace pg {

namespace {

const QString ColumnLayoutKey = QStringLiteral("PosizioneColonne");

// Reads a number kept as text; outside the type's range or not a number, the default.
template<typename T>
T readNumber(QSettings &store, const QString &key, T fallback)
{
    const QVariant v = store.value(key);
    if (!v.isValid())
        return fallback;
    bool ok = false;
    const qlonglong n = v.toString().trimmed().toLongLong(&ok);
    if (!ok || n < std::numeric_limits<T>::min() || n > std::numeric_limits<T>::max())
        return fallback;
    return T(n);
}

QString readText(QSettings &store, const QString &key, const QString &fallback)
{
    const QVariant v = store.value(key);
    return v.isValid() ? v.toString() : fallback;
}

// A boolean kept as text, as the suite writes them ("True"/"False", or a number).
bool readBool(const QString &text, bool *ok)
{
    const QString t = text.trimmed().toLower();
    *ok = true;
    if (t == u"true" || t == u"vero")
        return true;
    if (t == u"false" || t == u"falso")
        return false;
    bool numeric = false;
    const int n = t.toInt(&numeric);
    *ok = numeric;
    return numeric && n != 0;
}

} // namespace

QString UserSettings::fixed30(const QString &text)
{
    return text.leftJustified(30, u' ', true);
}

void UserSettings::load(QSettings &store)
{
    const UserSettings defaults;
    store.beginGroup(QStringLiteral("Editor"));
    editor = readNumber<quint8>(store, QStringLiteral("Editor"), defaults.editor);
    editorPath = readText(store, QStringLiteral("Path"), defaults.editorPath);
    store.endGroup();

    store.beginGroup(QStringLiteral("Printer"));
    deviceName = readText(store, QStringLiteral("DeviceName"), defaults.deviceName);
    driverName = readText(store, QStringLiteral("DriverName"), defaults.driverName);
    port = readText(store, QStringLiteral("Port"), defaults.port);
    autoPrint = readNumber<quint8>(store, QStringLiteral("AutoPrint"), defaults.autoPrint);
    store.endGroup();

    store.beginGroup(QStringLiteral("Lista"));
    fontName = readText(store, QStringLiteral("FontName"), defaults.fontName);
    fontSize = readNumber<qint16>(store, QStringLiteral("FontSize"), defaults.fontSize);
    saveOnExit = readNumber<quint8>(store, QStringLiteral("SaveOnExit"), defaults.saveOnExit);
    modDescr = readNumber<quint8>(store, QStringLiteral("ModDescr"), defaults.modDescr);
    raggruppa = readNumber<quint8>(store, QStringLiteral("Raggruppa"), defaults.raggruppa);
    desPag = fixed30(readText(store, QStringLiteral("DesPag"), defaults.desPag));
    desAlt = fixed30(readText(store, QStringLiteral("DesAlt"), defaults.desAlt));
    columnLayout = readText(store, ColumnLayoutKey, defaults.columnLayout);
    store.endGroup();

    store.beginGroup(QStringLiteral("Bonifici"));
    const QString formato = readText(store, QStringLiteral("Formato"), QString()).trimmed();
    if (formato.compare(QStringLiteral("XML"), Qt::CaseInsensitive) == 0)
        formatoBonifici = BankFileFormat::SepaXml;
    else if (formato.compare(QStringLiteral("FLAT"), Qt::CaseInsensitive) == 0)
        formatoBonifici = BankFileFormat::CbiFlat;
    else
        formatoBonifici = defaults.formatoBonifici;
    cuc = readText(store, QStringLiteral("CUC"), defaults.cuc).trimmed();
    store.endGroup();

    columns.clear();
    store.beginGroup(QStringLiteral("Colonne"));
    for (const QString &key : store.allKeys()) {
        const QString text = store.value(key).toString();
        bool ok = false;
        const bool visible = readBool(text, &ok);
        if (!text.trimmed().isEmpty() && ok)
            columns.insert(key, visible);
    }
    store.endGroup();
}

void UserSettings::save(QSettings &store) const
{
    store.beginGroup(QStringLiteral("Editor"));
    store.setValue(QStringLiteral("Editor"), QString::number(editor));
    store.setValue(QStringLiteral("Path"), editorPath);
    store.endGroup();

    store.beginGroup(QStringLiteral("Printer"));
    store.setValue(QStringLiteral("DeviceName"), deviceName);
    store.setValue(QStringLiteral("DriverName"), driverName);
    store.setValue(QStringLiteral("Port"), port);
    store.setValue(QStringLiteral("AutoPrint"), QString::number(autoPrint));
    store.endGroup();

    store.beginGroup(QStringLiteral("Lista"));
    store.setValue(QStringLiteral("FontName"), fontName);
    store.setValue(QStringLiteral("FontSize"), QString::number(fontSize));
    store.setValue(QStringLiteral("SaveOnExit"), QString::number(saveOnExit));
    store.setValue(QStringLiteral("ModDescr"), QString::number(modDescr));
    store.setValue(QStringLiteral("Raggruppa"), QString::number(raggruppa));
    store.setValue(QStringLiteral("DesPag"), desPag);
    store.setValue(QStringLiteral("DesAlt"), desAlt);
    store.setValue(ColumnLayoutKey, columnLayout);
    store.endGroup();

    store.beginGroup(QStringLiteral("Colonne"));
    for (auto it = columns.cbegin(); it != columns.cend(); ++it)
        store.setValue(it.key(), it.value() ? QStringLiteral("True") : QStringLiteral("False"));
    store.endGroup();
    saveBonifici(store);
}

void UserSettings::saveBonifici(QSettings &store) const
{
    store.beginGroup(QStringLiteral("Bonifici"));
    store.setValue(QStringLiteral("Formato"), formatoBonifici == BankFileFormat::CbiFlat
                                                  ? QStringLiteral("FLAT")
                                                  : QStringLiteral("XML"));
    store.setValue(QStringLiteral("CUC"), cuc);
    store.endGroup();
    store.sync();
}

void UserSettings::saveColumnLayout(QSettings &store) const
{
    store.beginGroup(QStringLiteral("Lista"));
    store.setValue(ColumnLayoutKey, columnLayout);
    store.endGroup();
    store.sync();
}

namespace {

QString &storeFile()
{
    static QString path;
    return path;
}

} // namespace

void UserSettings::useStoreFile(const QString &iniPath)
{
    storeFile() = iniPath;
}

std::unique_ptr<QSettings> UserSettings::userStore()
{
    if (!storeFile().isEmpty())
        return std::make_unique<QSettings>(storeFile(), QSettings::IniFormat);
#ifdef Q_OS_WIN
    // Where the program has always kept them, so that a clerk's options survive the move.
    return std::make_unique<QSettings>(QStringLiteral("VB and VBA Program Settings"),
                                       QStringLiteral("Pagamenti"));
#else
    return std::make_unique<QSettings>(QStringLiteral("Pagamenti"), QStringLiteral("Pagamenti"));
#endif
}

UserSettings &currentSettings()
{
    static UserSettings settings;
    return settings;
}

void pGetSettings()
{
    currentSettings().load(*UserSettings::userStore());
}

void pSaveSettings()
{
    currentSettings().save(*UserSettings::userStore());
}

void pSaveBonifici()
{
    currentSettings().saveBonifici(*UserSettings::userStore());
}

void pSaveColumnLayout()
{
    currentSettings().saveColumnLayout(*UserSettings::userStore());
}

} // namespace pg
