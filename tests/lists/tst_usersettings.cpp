#include "lists/usersettings.h"

#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;

class TestUserSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void emptyStoreGivesDefaults();
    void roundTripAndFixedDescriptions();
    void badValuesTakeDefaults();
};

void TestUserSettings::emptyStoreGivesDefaults()
{
    QTemporaryDir dir;
    QSettings store(dir.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
    UserSettings s;
    s.editor = 1;
    s.load(store);
    QCOMPARE(s, UserSettings());
    QCOMPARE(s.editor, quint8(99));
    QCOMPARE(s.deviceName, QStringLiteral("NOPRINTER"));
    QCOMPARE(s.fontName, QStringLiteral("Courier New"));
    QCOMPARE(s.fontSize, qint16(8));
    QCOMPARE(s.raggruppa, quint8(0));
    QCOMPARE(s.modDescr, quint8(0));
    QCOMPARE(s.desPag, QStringLiteral("Vs.Fatt. NNNNNN/N del DD/DD/DD"));
    QCOMPARE(s.desAlt, QStringLiteral("Pagamentio NNN Scadenze       "));
    QVERIFY(s.columns.isEmpty());
}

void TestUserSettings::roundTripAndFixedDescriptions()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("s.ini"));
    UserSettings s;
    s.editor = 1;
    s.editorPath = QStringLiteral("/usr/bin/libreoffice");
    s.deviceName = QStringLiteral("Ufficio");
    s.driverName = QStringLiteral("HP LaserJet");
    s.port = QStringLiteral("ipp://stampante/ipp");
    s.autoPrint = 1;
    s.fontSize = 10;
    s.raggruppa = 1;
    s.desAlt = QStringLiteral("Pagamento NNN Scadenze");
    s.columns.insert(QStringLiteral("Codice"), false);
    s.columns.insert(QStringLiteral("C/F"), true);
    s.columnLayout = QStringLiteral("ragsoc=300;des_num_doc=52");
    {
        QSettings store(path, QSettings::IniFormat);
        s.save(store);
        // A description longer than 30 characters, written by hand, is cut when read.
        store.setValue(QStringLiteral("Lista/DesPag"), QStringLiteral("Pagamento fattura NNNNNN/N del DD/DD/DD"));
    }
    QSettings store(path, QSettings::IniFormat);
    UserSettings read;
    read.load(store);
    QCOMPARE(read.desPag, QStringLiteral("Pagamento fattura NNNNNN/N del"));
    read.desPag = s.desPag;
    s.desAlt = UserSettings::fixed30(s.desAlt);
    QCOMPARE(read, s);
    QCOMPARE(read.columns.value(QStringLiteral("C/F")), true);
}

void TestUserSettings::badValuesTakeDefaults()
{
    QTemporaryDir dir;
    QSettings store(dir.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
    store.setValue(QStringLiteral("Editor/Editor"), QStringLiteral("300"));
    store.setValue(QStringLiteral("Lista/FontSize"), QStringLiteral("grande"));
    store.setValue(QStringLiteral("Lista/Raggruppa"), QStringLiteral("1"));
    store.setValue(QStringLiteral("Colonne/N. Doc."), QStringLiteral("forse"));
    store.setValue(QStringLiteral("Colonne/Val."), QStringLiteral("Vero"));
    store.setValue(QStringLiteral("Colonne/Pag."), QString());
    UserSettings s;
    s.load(store);
    QCOMPARE(s.editor, quint8(99));
    QCOMPARE(s.fontSize, qint16(8));
    QCOMPARE(s.raggruppa, quint8(1));
    QCOMPARE(s.columns.size(), 1);
    QCOMPARE(s.columns.value(QStringLiteral("Val.")), true);
}

QTEST_GUILESS_MAIN(TestUserSettings)
#include "tst_usersettings.moc"
