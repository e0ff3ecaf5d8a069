#include "scriptedprompter.h"

#include "bankfile/frmcreafile.h"
#include "lists/optionsdialog.h"
#include "lists/usersettings.h"
#include "startup/errortrap.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

using namespace pg;
using pg::bankfile::CreaFileFields;
using pg::bankfile::frmCreaFile;

class TestSepaDialogs : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void formatChoiceChangesTheName_data();
    void formatChoiceChangesTheName();
    void bankFileSettingsAreSavedAlone();
    void cucIsKeptWithTheOptions();

private:
    UserSettings m_settings;
    QTemporaryDir m_dir;
    std::unique_ptr<test::ScriptedPrompter> m_prompter;
};

void TestSepaDialogs::init()
{
    m_settings = currentSettings();
    currentSettings() = UserSettings();
    UserSettings::useStoreFile(
        m_dir.filePath(QStringLiteral("%1 %2.ini")
                           .arg(QString::fromLatin1(QTest::currentTestFunction()),
                                QString::fromLatin1(QTest::currentDataTag()))));
    ErrorTrap::instance().resetForTest();
    m_prompter = std::make_unique<test::ScriptedPrompter>();
}

void TestSepaDialogs::cleanup()
{
    m_prompter.reset();
    UserSettings::useStoreFile(QString());
    currentSettings() = m_settings;
}

void TestSepaDialogs::formatChoiceChangesTheName_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<QString>("typed"); // empty: the proposed name is kept
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("picked");
    QTest::newRow("xml to flat") << int(BankFileFormat::SepaXml) << ""
                                 << "/opt/orvida/D_STM/CBI_12.txt"
                                 << "/srv/Banca/CBI_12.txt";
    QTest::newRow("flat to xml") << int(BankFileFormat::CbiFlat) << ""
                                 << "/opt/orvida/D_STM/CBI_12.xml"
                                 << "/srv/Banca/CBI_12.xml";
    QTest::newRow("a typed name stays") << int(BankFileFormat::SepaXml) << "/srv/bonifici.dat"
                                        << "/srv/bonifici.dat"
                                        << "/srv/Banca/CBI_12.txt";
}

void TestSepaDialogs::formatChoiceChangesTheName()
{
    QFETCH(int, from);
    QFETCH(QString, typed);
    QFETCH(QString, expected);
    QFETCH(QString, picked);
    const auto format = BankFileFormat(from);
    const auto other =
        format == BankFileFormat::SepaXml ? BankFileFormat::CbiFlat : BankFileFormat::SepaXml;
    CreaFileFields fields;
    fields.codDistinta = QStringLiteral("    12");
    fields.format = format;
    fields.fileName =
        QStringLiteral("/opt/orvida/D_STM/CBI_12") + CreaFileFields::extension(format);
    fields.fileTag = QStringLiteral("/CBI_12") + CreaFileFields::extension(format);

    frmCreaFile dialog;
    dialog.setFields(fields);
    auto *combo = dialog.findChild<QComboBox *>(QStringLiteral("cboFormato"));
    auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("txtFileName"));
    QVERIFY(combo && name);
    QCOMPARE(combo->count(), 2);
    QCOMPARE(combo->itemText(0), QStringLiteral("CBI XML (SEPA)"));
    QCOMPARE(combo->itemText(1), QStringLiteral("CBI flat (Bonifici)"));
    QCOMPARE(combo->currentIndex(), from);
    if (!typed.isEmpty())
        name->setText(typed);

    // Alt+F reaches the choice and an arrow key changes it.
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(&dialog, Qt::Key_F, Qt::AltModifier);
    QCOMPARE(QApplication::focusWidget(), combo);
    QTest::keyClick(combo, format == BankFileFormat::SepaXml ? Qt::Key_Down : Qt::Key_Up);
    QCOMPARE(combo->currentIndex(), int(other));
    QCOMPARE(name->text(), expected);
    QCOMPARE(dialog.fields().format, other);

    // A folder picked takes the name of the format chosen.
    dialog.setFolderPicker(
        [&](QWidget *, const QString &, const QString &) { return QStringLiteral("/srv/Banca"); });
    dialog.findChild<QToolButton *>(QStringLiteral("cmdBrowse"))->click();
    QCOMPARE(name->text(), picked);
    dialog.findChild<QAbstractButton *>(QStringLiteral("cmdConferma"))->click();
    QCOMPARE(dialog.fields().fileName, picked);
    QCOMPARE(dialog.fields().format, other);
}

void TestSepaDialogs::bankFileSettingsAreSavedAlone()
{
    UserSettings::userStore()->setValue(QStringLiteral("Lista/Raggruppa"), QStringLiteral("1"));
    UserSettings loaded;
    loaded.load(*UserSettings::userStore());
    QCOMPARE(loaded.formatoBonifici, BankFileFormat::SepaXml);

    // The file command writes its section alone: the other settings in use stay unsaved.
    currentSettings().raggruppa = 0;
    currentSettings().formatoBonifici = BankFileFormat::SepaXml;
    currentSettings().cuc = QStringLiteral("0BF3K7Q2");
    pSaveBonifici();
    QCOMPARE(UserSettings::userStore()->value(QStringLiteral("Bonifici/Formato")).toString(),
             QStringLiteral("XML"));
    loaded.load(*UserSettings::userStore());
    QCOMPARE(loaded.formatoBonifici, BankFileFormat::SepaXml);
    QCOMPARE(loaded.cuc, QStringLiteral("0BF3K7Q2"));
    QCOMPARE(loaded.raggruppa, quint8(1));
}

void TestSepaDialogs::cucIsKeptWithTheOptions()
{
    currentSettings().cuc = QStringLiteral("0BF3K7Q2");
    lists::OptionsDialog dialog({});
    QLineEdit *cuc = dialog.txtCuc();
    QCOMPARE(cuc->objectName(), QStringLiteral("txtCuc"));
    QCOMPARE(cuc->text(), QStringLiteral("0BF3K7Q2"));
    cuc->clear();
    QTest::keyClicks(cuc, QStringLiteral(" abc1234"));
    QCOMPARE(dialog.form().cuc(), QStringLiteral("ABC1234"));
    dialog.confirm();
    QCOMPARE(m_prompter->texts(), QStringList{lists::OptionsForm::RestartNotice});
    QCOMPARE(currentSettings().cuc, QStringLiteral("ABC1234"));
    UserSettings stored;
    stored.load(*UserSettings::userStore());
    QCOMPARE(stored, currentSettings());
}

QTEST_MAIN(TestSepaDialogs)
#include "tst_sepadialogs.moc"
