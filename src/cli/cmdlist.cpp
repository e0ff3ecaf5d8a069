// pagamenti-cli list
#include "commandargs.h"
#include "commandcontext.h"
#include "commands.h"
#include "distintasession.h"

#include "core/distintacode.h"
#include "core/vbdate.h"
#include "core/vbformat.h"
#include "distinta/distintestore.h"

namespace pg::cli {

int runList(CommandContext &context)
{
    CommandArgs args;
    QString error;
    if (!args.parse(context.arguments(), {}, {}, &error))
        return context.usageError(error);
    if (!args.positional().isEmpty())
        return context.usageError(QStringLiteral("Il comando list non ha argomenti."));

    DistintaSession session;
    if (!session.openCompany())
        return ExitFailure;
    const distinta::QueryResult result = session.store().GetRsGen(
        QStringLiteral("SELECT cod_distinta, dat_data_creazione, des_ban_azi, val_importo_totale, "
                       "flg_stato, num_numero_disp FROM TB_TESTATA ORDER BY cod_distinta"));
    QTextStream &out = context.out();
    out << QStringLiteral("%1  %2  %3  %4  %5  %6\n")
               .arg(QStringLiteral("N.Distinta"), QStringLiteral("Data dist."),
                    QStringLiteral("Banca Pres.").leftJustified(30),
                    QStringLiteral("Importo Distinta"), QStringLiteral("Stato"),
                    QStringLiteral("N. Disp."));
    for (const QVariantList &row : result.rows) {
        const QDate created = QDate::fromString(row.at(1).toString().left(10), Qt::ISODate);
        out << QStringLiteral("%1  %2  %3  %4  %5  %6\n")
                   .arg(QString::number(distintaNumber(row.at(0).toString())).rightJustified(10),
                        dates::toDmy(created).leftJustified(10),
                        row.at(2).toString().trimmed().leftJustified(30, u' ', true),
                        vb::format(row.at(3).toDouble(), u"#,0.00").rightJustified(16),
                        row.at(4).toString().leftJustified(5),
                        QString::number(row.at(5).toInt()).rightJustified(8));
    }
    return ExitSuccess;
}

} // namespace pg::cli
