// Saving and reading back a distinta of many rows, each beside the limit of the same machine
// in the same run:
//   save   - a new distinta of N rows: grouping, one local transaction, N rewrites of due
//            items; limit: a plain insert of the same rows in one transaction (on a
//            PostgreSQL server: one COPY of them) plus a plain read-and-rewrite of the same
//            records through the record manager.
//   read   - Leggi of that distinta and the refresh of its list (the lines again, the cells of
//            a screenful formatted, each account's name read once); limit: a plain select of
//            the same rows.
//
//   bench_distinta [--rows N] [--runs R]
//

#include "benchcommon.h"
#include "benchrows.h"
#include "testdatabase.h"
#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "distinta/distintestore.h"
#include "distinta/tablesql.h"
#include "editor/rowlist/listcolumns.h"
#include "editor/rowlist/rowlistmodel.h"
#include "lists/usersettings.h"
#include "localdb/databaseconnection.h"
#include "localdb/rowinserter.h"

#include <QCoreApplication>
#include <QSqlQuery>

using namespace pg;
using namespace pg::distinta;

namespace {

QString linkOf(int n)
{
    return QStringLiteral("B%1").arg(n, 12, 10, QLatin1Char('0'));
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int rows = bench::intOption(app.arguments(), u"--rows", 10000);
    const int runs = bench::intOption(app.arguments(), u"--runs", 5);

    test::TestInstallation inst;
    if (!inst.isValid())
        return 1;
    QList<archives::ErpRecord> items;
    QList<Riga> prepared;
    for (int n = 1; n <= rows; ++n) {
        items << test::TestInstallation::dueItem(QStringLiteral("F"), linkOf(n),
                                                 QStringLiteral("6"),
                                                 QString::number(200000 + n % 500), 100 + n % 900);
        prepared << bench::rowFor(linkOf(n), n, 100 + n % 900);
    }
    if (!inst.put(items))
        return 1;

    DistinteStore store(&inst.erp());
    store.setPStrConn(inst.connectionString());

    QList<double> save, saveLimit, read, readLimit;
    for (int run = 0; run < runs; ++run) {
        Distinta d;
        store.Nuovo(d);
        d.editHeader().cod_abi_banca = QStringLiteral("02008");
        d.editHeader().cod_cab_banca = QStringLiteral("01600");
        for (Riga r : prepared) {
            r.cod_distinta = d.header().cod_distinta;
            d.righe.append(r);
        }
        save << bench::timedMs([&] {
            if (!store.Salva(d, false, false))
                std::fprintf(stderr, "save failed\n");
        });
        const QString code = d.header().cod_distinta;

        Distinta back;
        read << bench::timedMs([&] {
            store.Leggi(back, code);
            editor::RowListModel model;
            model.setSession(&inst.erp());
            model.LV_InizializzaLista(editor::configuredColumns(currentSettings()));
            model.setDistinta(&back);
            model.LV_RefreshLista();
            for (int row = 0; row < qMin(50, model.rowCount()); ++row)
                for (int column = 0; column < model.columnCount(); ++column)
                    model.data(model.index(row, column));
        });

        // The limits: the same rows inserted plainly, the same records read and rewritten.
        saveLimit << bench::timedMs([&] {
            DatabaseConnection conn(inst.database());
            QSqlQuery q(conn.database());
            conn.database().transaction();
            if (conn.isPostgres()) {
                // One COPY of the rows and one of the grouped rows.
                q.exec(QStringLiteral("CREATE TEMP TABLE plain (LIKE TB_RIGHE INCLUDING ALL)"));
                for (const RecordSet<Riga> *set : {&back.righe, &back.righeRagg}) {
                    localdb::RowInserter copy(conn.database(), QStringLiteral("plain"),
                                              sql::columnList<Riga>().split(QStringLiteral(", ")));
                    for (int i = 0; i < set->size(); ++i) {
                        QVariantList values;
                        for (const auto &column : Riga::columns())
                            values << column.value(set->at(i));
                        copy.add(values);
                    }
                    copy.finish();
                }
            } else {
                q.exec(QStringLiteral("CREATE TEMP TABLE plain AS SELECT * FROM TB_RIGHE WHERE 0"));
                q.prepare(QStringLiteral("INSERT INTO plain (") + sql::columnList<Riga>() +
                          QStringLiteral(") VALUES (") +
                          QString(QStringLiteral("?,")).repeated(int(Riga::columns().size()) - 1) +
                          QStringLiteral("?)"));
                // The rows and the grouped rows, as the save writes both.
                for (const RecordSet<Riga> *set : {&back.righe, &back.righeRagg}) {
                    for (int i = 0; i < set->size(); ++i) {
                        int c = 0;
                        for (const auto &column : Riga::columns())
                            q.bindValue(c++, column.value(set->at(i)));
                        q.exec();
                    }
                }
            }
            conn.database().commit();
            archives::ErpRecord record(archives::Scadenze);
            for (int i = 0; i < back.righe.size(); ++i) {
                record.setText(QStringLiteral("flag_colpar"), back.righe.at(i).flg_flag_colpar);
                record.setText(QStringLiteral("link"), back.righe.at(i).des_link_orvida);
                inst.erp().readEq(record, 2);
                inst.erp().rewrite(record);
            }
        });
        readLimit << bench::timedMs([&] {
            DatabaseConnection conn(inst.database());
            QSqlQuery q(conn.database());
            q.setForwardOnly(true);
            const int columns = int(Riga::columns().size());
            qint64 sink = 0;
            // The rows and the grouped rows, as Leggi reads both.
            for (const char *table : {"TB_RIGHE", "TB_RIGHE_RAGG"}) {
                q.prepare(QStringLiteral("SELECT * FROM %1 WHERE cod_distinta = ?")
                              .arg(QLatin1String(table)));
                q.addBindValue(code);
                q.exec();
                while (q.next())
                    for (int c = 0; c < columns; ++c)
                        sink += q.value(c).isNull() ? 0 : 1;
            }
            if (sink < 0)
                std::printf("?");
        });
        store.Cancella(d);
    }
    const QLatin1String engine(test::onServer() ? " (PostgreSQL)" : "");
    bench::report(qPrintable(QStringLiteral("salvataggio distinta") + engine), rows,
                  bench::median(save), bench::median(saveLimit));
    bench::report(qPrintable(QStringLiteral("lettura e lista") + engine), rows, bench::median(read),
                  bench::median(readLimit));
    bench::reportMemory("salvataggio e lettura");
    return 0;
}
