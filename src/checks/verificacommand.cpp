#include "verificacommand.h"

#include "markreconciliation.h"
#include "reportfile.h"
#include "reportviewer.h"

#include "core/prompter.h"
#include "ui/waitcursor.h"

#include <QCoreApplication>
#include <QProgressDialog>

namespace pg::checks {

namespace {

const QString CrLf = QStringLiteral("\r\n");

// Runs the walk with a busy bar that the clerk can stop.
bool walk(MarkReconciliation &reconciliation, QWidget *parent)
{
    QProgressDialog progress(parent);
    progress.setWindowTitle(QStringLiteral("Verifica scadenze"));
    progress.setLabelText(QStringLiteral("Lettura delle scadenze in corso..."));
    progress.setCancelButtonText(QStringLiteral("&Annulla"));
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(400);
    progress.setRange(0, 0);
    reconciliation.setProgress([&progress](qint64 read) {
        progress.setLabelText(
            QStringLiteral("Lettura delle scadenze in corso...\nScadenze lette: %1").arg(read));
        QCoreApplication::processEvents();
        return !progress.wasCanceled();
    });
    ui::WaitCursor wait;
    return reconciliation.run();
}

} // namespace

void cmdVerifica(distinta::DistinteStore &store, archives::ErpSession &erp, QWidget *parent)
{
    MarkReconciliation reconciliation(store, erp);
    const bool complete = walk(reconciliation, parent);
    const QList<MarkDisagreement> &found = reconciliation.disagreements();
    if (complete && found.isEmpty()) {
        msgBox(QStringLiteral("Le scadenze di [orvida] corrispondono alle distinte salvate (%1 "
                              "scadenze lette).")
                   .arg(reconciliation.itemsRead()),
               Buttons::Ok, Icon::Information);
        return;
    }
    writeReportFile(MarkReconciliation::reportPath(), reconciliation.reportLines());
    openReport(MarkReconciliation::reportPath(), parent);
    const int repairable = reconciliation.repairableCount();
    if (!complete || repairable == 0)
        return;
    if (askDestructive(QStringLiteral("Le scadenze di [orvida] e le distinte salvate non "
                                      "corrispondono in %1 casi (elencati nel rapporto "
                                      "verifica.txt).")
                           .arg(found.size()) +
                       CrLf +
                       QStringLiteral("Correggere %1 scadenze in [orvida] come dicono le distinte?")
                           .arg(repairable)) != Answer::Yes)
        return;
    const int left = reconciliation.repair();
    if (left < 0)
        return;
    QString text = QStringLiteral("Scadenze corrette come dicono le distinte: %1 di %2.")
                       .arg(repairable - left)
                       .arg(repairable);
    if (found.size() > repairable)
        text += CrLf + QStringLiteral("Le scadenze non più presenti in [orvida] vanno tolte dalle "
                                      "loro distinte (Canc. Riga).");
    msgBox(text, Buttons::Ok, Icon::Information);
}

} // namespace pg::checks
