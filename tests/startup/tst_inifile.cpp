#include "startup/inifile.h"
#include "startup/readsetting.h"

#include <QTemporaryDir>
#include <QTest>

using namespace pg;

class TestIniFile : public QObject
{
    Q_OBJECT

private slots:
    void privateProfileSemantics();
    void bufferLimits();
    void encodings();
    void filesWithoutSections();
    void readSettingForms();

private:
    QString write(const QByteArray &content);
    QTemporaryDir m_dir;
    int m_count = 0;
};

QString TestIniFile::write(const QByteArray &content)
{
    const QString path = m_dir.filePath(QStringLiteral("f%1.ini").arg(++m_count));
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write(content);
    return path;
}

void TestIniFile::privateProfileSemantics()
{
    const QString path = write("; commento\r\n"
                               "[Ambiente]\r\n"
                               "  Dir Orvida =  C:\\ERP  \r\n"
                               "Quoted = \"  spazi  \"\r\n"
                               "Semi = a;b\r\n"
                               "dup = primo\r\n"
                               "DUP = secondo\r\n"
                               ";Commented = x\r\n"
                               "[ambiente]\n"
                               "Altro = ignorato\n"
                               "[Vuota]\n");
    const IniFile ini = IniFile::load(path);
    QVERIFY(ini.exists());
    QCOMPARE(ini.read(QStringLiteral("AMBIENTE"), QStringLiteral("dir orvida"), {}, 40),
             QStringLiteral("C:\\ERP"));
    QCOMPARE(ini.read(QStringLiteral("ambiente"), QStringLiteral("Quoted"), {}, 40),
             QStringLiteral("  spazi  "));
    QCOMPARE(ini.read(QStringLiteral("Ambiente"), QStringLiteral("Semi"), {}, 40), QStringLiteral("a;b"));
    QCOMPARE(ini.read(QStringLiteral("Ambiente"), QStringLiteral("Dup"), {}, 40), QStringLiteral("primo"));
    QCOMPARE(ini.read(QStringLiteral("Ambiente"), QStringLiteral("Commented"), QStringLiteral("d"), 40),
             QStringLiteral("d"));
    // The repeated section is not read.
    QCOMPARE(ini.read(QStringLiteral("Ambiente"), QStringLiteral("Altro"), QStringLiteral("d"), 40),
             QStringLiteral("d"));
    QVERIFY(ini.hasSection(QStringLiteral("VUOTA")));
    // A default loses its trailing blanks, as the system's reader strips them.
    QCOMPARE(ini.read(QStringLiteral("Vuota"), QStringLiteral("x"), QStringLiteral("def  "), 40),
             QStringLiteral("def"));
    QCOMPARE(GetPrivateProfileString(QStringLiteral("nessuna"), QStringLiteral("x"),
                                     QStringLiteral("1"), 40, path),
             QStringLiteral("1"));
    QVERIFY(!IniFile::load(m_dir.filePath(QStringLiteral("manca.ini"))).exists());
}

void TestIniFile::bufferLimits()
{
    const QByteArray value45(45, 'x');
    const QString path = write("[S]\nK=" + value45 + "\nL=" + QByteArray(100, 'y') + "\n");
    const IniFile ini = IniFile::load(path);
    QCOMPARE(ini.read(QStringLiteral("S"), QStringLiteral("K"), {}, 40), QString(39, u'x'));
    QCOMPARE(ini.read(QStringLiteral("S"), QStringLiteral("L"), {}, 80), QString(79, u'y'));
    QCOMPARE(ini.read(QStringLiteral("S"), QStringLiteral("none"), QString(50, u'z'), 40),
             QString(39, u'z'));
}

void TestIniFile::encodings()
{
    const QString cp = write("[S]\nK=Societ\xE0 \x80\n");
    QCOMPARE(IniFile::load(cp).read(QStringLiteral("S"), QStringLiteral("K"), {}, 40),
             QStringLiteral("Società €"));
    const QString utf8 = write("\xEF\xBB\xBF[S]\nK=Società\n");
    QCOMPARE(IniFile::load(utf8).read(QStringLiteral("S"), QStringLiteral("K"), {}, 40),
             QStringLiteral("Società"));
    QByteArray utf16("\xFF\xFE");
    const QString text = QStringLiteral("[S]\r\nK=Perù\r\n");
    utf16.append(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    QCOMPARE(IniFile::load(write(utf16)).read(QStringLiteral("S"), QStringLiteral("K"), {}, 40),
             QStringLiteral("Perù"));
}

void TestIniFile::filesWithoutSections()
{
    const IniFile ini = IniFile::load(write("K=V\nsenza uguale\n\n\n"));
    QVERIFY(ini.exists());
    QCOMPARE(ini.read(QStringLiteral(""), QStringLiteral("K"), QStringLiteral("d"), 40), QStringLiteral("d"));
    const IniFile binary = IniFile::load(write(QByteArray("\x00\x01\x02[S\x00]\nK", 12)));
    QCOMPARE(binary.read(QStringLiteral("S"), QStringLiteral("K"), QStringLiteral("d"), 40),
             QStringLiteral("d"));
}

void TestIniFile::readSettingForms()
{
    const QString ini = write("[Word]\nPath=" + QByteArray(90, 'p') + "\n");
    QCOMPARE(ReadSetting(QStringLiteral("Word"), QStringLiteral("Path"), QString(), ini),
             QString(79, u'p'));
    QCOMPARE(ReadSetting(QStringLiteral("Word"), QStringLiteral("Manca"), QStringLiteral("d"), ini),
             QStringLiteral("d"));

    const QString machine = write("[SOFTWARE]\nMicrosoft\\Word\\Path=/opt/word\n");
    setMachineSettingsFile(machine);
    QCOMPARE(ReadSetting(QStringLiteral("SOFTWARE\\Microsoft\\Word"), QStringLiteral("Path"),
                         QStringLiteral("d"), QString()),
             QStringLiteral("/opt/word"));
    // A missing value gives the default, a missing key path the empty string.
    QCOMPARE(ReadSetting(QStringLiteral("SOFTWARE\\Microsoft\\Word"), QStringLiteral("Other"),
                         QStringLiteral("d"), QString()),
             QStringLiteral("d"));
    QCOMPARE(ReadSetting(QStringLiteral("SOFTWARE\\Nessuno"), QStringLiteral("Path"),
                         QStringLiteral("d"), QString()),
             QString());
    setMachineSettingsFile(QString());
}

QTEST_GUILESS_MAIN(TestIniFile)
#include "tst_inifile.moc"
