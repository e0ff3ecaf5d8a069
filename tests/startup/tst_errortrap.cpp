#include "scriptedprompter.h"

#include "startup/companyenvironment.h"
#include "startup/errorinfo.h"
#include "startup/errortrap.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace pg;

class TestErrorTrap : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void messageAndLogLine();
    void cancelSilencesButStillLogsAndCounts();
    void noEndsTheProcess();
    void thousandAndFirstErrorEnds();
    void underTrapReportsAndReturnsFalse();
    void fullerTrapWritesABlock();

private:
    QStringList logLines() const;
    QTemporaryDir m_dir;
};

void TestErrorTrap::init()
{
    CompanyEnvironment env;
    env.ProgramDir = m_dir.path() + u'/';
    setCompanyEnvironment(env);
    QFile::remove(ErrorTrap::instance().logPath());
    ErrorTrap::instance().resetForTest();
}

QStringList TestErrorTrap::logLines() const
{
    QFile f(ErrorTrap::instance().logPath());
    if (!f.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = f.readAll();
    if (!bytes.endsWith("\r\n"))
        return {QStringLiteral("<no CRLF>")};
    return QString::fromLatin1(bytes.left(bytes.size() - 2)).split(QStringLiteral("\r\n"));
}

void TestErrorTrap::messageAndLogLine()
{
    test::ScriptedPrompter prompter;
    prompter.script({Answer::Yes, Answer::Yes});
    ErrTrap(QStringLiteral("frmMain!Sub Salva()"),
            AppError(3005, QStringLiteral("database is locked"), {}, std::source_location()));
    ErrTrap(QStringLiteral("clsDistinte!RaggruppaRighe"), AppError(13, QStringLiteral("Type mismatch")));

    QCOMPARE(prompter.shown().size(), 2);
    const Message &m = prompter.shown().first();
    QCOMPARE(m.icon, Icon::Critical);
    QCOMPARE(m.buttons, Buttons::YesNoCancel);
    QCOMPARE(m.text, QStringLiteral("Error 3005 database is locked in frmMain!Sub Salva()\r\n\r\n\r\n"
                                    "Selezionare 'SI' per continuare (Consigliato)\r\n\r\n"
                                    "'Annulla' per non ripetere questo messaggio in seguito .\r\n\r\n"
                                    "'No' per interrompere l'esecuzione"));
    // A raised error knows its line; the text names it.
    QVERIFY(prompter.shown().at(1).text.startsWith(
        QStringLiteral("Error 13 Type mismatch in clsDistinte!RaggruppaRighe (Line = ")));

    const QStringList lines = logLines();
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.first(), QDate::currentDate().toString(QStringLiteral("dd/MM/yyyy")) +
                                QStringLiteral(" Error 3005 database is locked in frmMain!Sub Salva()"));
    QCOMPARE(ErrorTrap::instance().ErrorCount(), qint16(2));
    QVERIFY(ErrorTrap::instance().LastAnswer() == Answer::Yes);
}

void TestErrorTrap::cancelSilencesButStillLogsAndCounts()
{
    test::ScriptedPrompter prompter;
    prompter.script({Answer::Cancel});
    for (int i = 0; i < 11; ++i)
        ErrTrap(QStringLiteral("x"), AppError(5, QStringLiteral("e")));
    QCOMPARE(prompter.shown().size(), 1);
    QCOMPARE(logLines().size(), 11);
    QCOMPARE(ErrorTrap::instance().ErrorCount(), qint16(11));
}

void TestErrorTrap::noEndsTheProcess()
{
    test::ScriptedPrompter prompter;
    prompter.script({Answer::No});
    QVERIFY_THROWS_EXCEPTION(ProcessEnded, ErrTrap(QStringLiteral("x"), AppError(5, QStringLiteral("e"))));
    QCOMPARE(logLines().size(), 1);
}

void TestErrorTrap::thousandAndFirstErrorEnds()
{
    test::ScriptedPrompter prompter;
    for (int i = 0; i < ErrorTrap::MaxErrors; ++i) {
        prompter.enqueue(Answer::Yes);
        ErrTrap(QStringLiteral("x"), AppError(5, QStringLiteral("e")));
    }
    QCOMPARE(prompter.shown().size(), ErrorTrap::MaxErrors);
    QVERIFY_THROWS_EXCEPTION(ProcessEnded, ErrTrap(QStringLiteral("x"), AppError(5, QStringLiteral("e"))));
    QCOMPARE(prompter.lastText(),
             QStringLiteral("Superato il numero max di errori, il programma verrà terminato"));
    QCOMPARE(prompter.shown().last().icon, Icon::Critical);
    QCOMPARE(logLines().size(), ErrorTrap::MaxErrors + 1);
}

void TestErrorTrap::underTrapReportsAndReturnsFalse()
{
    test::ScriptedPrompter prompter;
    prompter.script({Answer::Yes, Answer::Yes});
    QVERIFY(underTrap(QStringLiteral("ok"), [] {}));
    QVERIFY(!underTrap(QStringLiteral("frmMain!Sub X()"),
                       [] { throw std::runtime_error("boom"); }));
    QVERIFY(prompter.shown().last().text.startsWith(
        QStringLiteral("Error 51 Internal error: boom in frmMain!Sub X()\r\n")));
    // The end of the process is not an error to trap.
    QVERIFY_THROWS_EXCEPTION(ProcessEnded, underTrap(QStringLiteral("y"), [] { endProcess(3); }));
    QCOMPARE(ErrorTrap::instance().ErrorCount(), qint16(1));
}

void TestErrorTrap::fullerTrapWritesABlock()
{
    VB_ErrorTrap2000Event(QStringLiteral("shr_modSingleInstance"),
                          QStringLiteral("ActivatePrevInstance"),
                          AppError(91, QStringLiteral("Object variable not set")));
    VB_ErrorTrap2000Event(QStringLiteral("m"), QStringLiteral("p"),
                          AppError(5, QStringLiteral("second"), {}, std::source_location()));
    QFile f(ProgramDir() + QStringLiteral("errori.log"));
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QString log = QString::fromLatin1(f.readAll());
    QCOMPARE(log.count(QString(65, u'-') + QStringLiteral("\r\n")), 2);
    QVERIFY(log.contains(QStringLiteral("Application Error 91 at Line ")));
    QVERIFY(log.contains(QStringLiteral("Application Error 5\r\n")));
    QVERIFY(log.contains(QStringLiteral("while running Pagamenti.exe v")));
    QVERIFY(log.contains(QStringLiteral(" (Build ")));
    QVERIFY(log.contains(QStringLiteral("Error = 'Object variable not set'")));
    QVERIFY(log.contains(QStringLiteral("shr_modSingleInstance!ActivatePrevInstance")));
}

QTEST_GUILESS_MAIN(TestErrorTrap)
#include "tst_errortrap.moc"
