// The widgets every window shares: the date box, the message boxes' keys, the lookup window
// and the window that shows a document where the system cannot.
#include "scriptedprompter.h"

#include "ui/documentwindow.h"
#include "ui/lookupdialog.h"
#include "ui/maskeddateedit.h"
#include "ui/messageboxprompter.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace pg;

class TestSharedWidgets : public QObject
{
    Q_OBJECT

private slots:
    void emptiedDateBoxStaysEmpty();
    void escapeWithdrawsAndDestructiveProposesNo();
    void lookupStartsInItsSearchBox();
    void documentShownInTheProgramWhenTheSystemCannot();
};

void TestSharedWidgets::emptiedDateBoxStaysEmpty()
{
    ui::MaskedDateEdit box;
    QStringList left;
    box.setLeaveValidator([&left](ui::MaskedDateEdit &edit) {
        left << edit.maskedText();
        return ui::MaskedDateEdit::Leave::Accept;
    });
    box.setMaskedText(QStringLiteral("01/02/2020"));
    box.selectAll();
    QTest::keyClick(&box, Qt::Key_Delete);
    QVERIFY(box.validateNow());
    box.setText(QStringLiteral("01/02/09"));
    QVERIFY(box.validateNow());
    QCOMPARE(left, (QStringList{QStringLiteral("__/__/____"), QStringLiteral("01/02/2009")}));
    QCOMPARE(box.maskedText(), QStringLiteral("01/02/2009"));
}

void TestSharedWidgets::escapeWithdrawsAndDestructiveProposesNo()
{
    ui::MessageBoxPrompter prompter;
    PrompterScope scope(prompter);
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    // What the box proposes, and what Escape answers.
    QString proposed;
    auto pressEscape = [&proposed] {
        QTimer::singleShot(0, [&proposed] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QVERIFY(box);
            proposed = box->defaultButton()->text().remove(u'&');
            QTest::keyClick(box, Qt::Key_Escape);
        });
    };
    pressEscape();
    const QString save = QStringLiteral("Salva le modifiche alla Distinta?");
    QCOMPARE(prompter.ask(Message{save, {}, Icon::Question, Buttons::YesNo, {}, true}),
             Answer::Cancel);
    QCOMPARE(proposed, QStringLiteral("Yes"));
    pressEscape();
    QCOMPARE(msgBox(save, Buttons::YesNo, Icon::Question), Answer::No);
    pressEscape();
    QCOMPARE(askDestructive(QStringLiteral("Elimina Distinta?")), Answer::No);
    QCOMPARE(proposed, QStringLiteral("No"));
}

void TestSharedWidgets::lookupStartsInItsSearchBox()
{
    bool searching = false;
    QTimer::singleShot(0, [&searching] {
        auto *dialog = qobject_cast<ui::LookupDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        // The window's focus, which the box keeps once the window is active.
        searching = dialog->focusWidget() == dialog->filterBox();
        dialog->reject();
    });
    ui::LookupDialog::choose(
        [](const QString &) {
            return archives::LookupList{QStringLiteral("Banche"), {QStringLiteral("Codice")}, {}};
        },
        nullptr);
    QVERIFY(searching);
}

void TestSharedWidgets::documentShownInTheProgramWhenTheSystemCannot()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("controllo.txt"));
    QFile report(path);
    QVERIFY(report.open(QIODevice::WriteOnly));
    report.write("4: la scadenza risulta gi\xe0 pagata\r\n");
    report.close();
    test::ScriptedPrompter prompter;
    using W = ui::DocumentWindow;
    auto windows = [] { return QApplication::topLevelWidgets().count(); };
    const qsizetype before = windows();

    // The system's application opened it: nothing more.
    QVERIFY(W::open(path, W::Kind::Text, QStringLiteral("controllo.txt"), nullptr,
                    [](const QString &) { return true; }));
    QCOMPARE(windows(), before);
    // No application for it: a window of the program, the report read from Windows-1252.
    QVERIFY(W::open(path, W::Kind::Text, QStringLiteral("controllo.txt"), nullptr,
                    [](const QString &) { return false; }));
    W *shown = nullptr;
    for (QWidget *w : QApplication::topLevelWidgets())
        if (auto *candidate = qobject_cast<W *>(w))
            shown = candidate;
    QVERIFY(shown);
    QVERIFY(shown->isVisible());
    QCOMPARE(shown->shownText(), QStringLiteral("4: la scadenza risulta già pagata\n"));
    QVERIFY(prompter.shown().isEmpty());
    shown->close();

    // Nothing to show: the clerk is told why.
    QVERIFY(!W::open(dir.filePath(QStringLiteral("manca.txt")), W::Kind::Text,
                     QStringLiteral("manca.txt"), nullptr, [](const QString &) { return false; }));
    QCOMPARE(prompter.shown().size(), 1);
    QVERIFY(prompter.lastText().contains(QStringLiteral("manca.txt")));
}

QTEST_MAIN(TestSharedWidgets)
#include "tst_sharedwidgets.moc"
