#include "rowlistfixture.h"

#include "testinstallation.h"

#include "archives/store/archivenumbers.h"
#include "editor/rowlist/listcolumns.h"

namespace pg::test::rowlist {

using archives::ErpRecord;
using editor::ListColumn;

QString link(int n)
{
    return QStringLiteral("2026%1").arg(n, 9, 10, QLatin1Char('0'));
}

void set(Riga &r, const QString &assignments)
{
    for (const QString &pair : assignments.split(u';', Qt::SkipEmptyParts)) {
        const QString field = pair.section(u'=', 0, 0);
        const QString value = pair.section(u'=', 1);
        bool found = false;
        for (const auto &c : Riga::columns()) {
            if (QString(c.name) == field) {
                c.setValue(r, value == u"null" ? QVariant() : QVariant(value));
                found = true;
            }
        }
        if (!found)
            qFatal("no column %s", qPrintable(field));
    }
}

// A free credit transfer of 100.00 euro to supplier 400001.
Riga row(int n, const QString &assignments)
{
    Riga r;
    r.cod_distinta = QStringLiteral("     1");
    r.flg_flag_colpar = QStringLiteral("P");
    r.des_link_orvida = link(n);
    r.des_num_doc = QString::number(n);
    r.dat_data_doc = QStringLiteral("20261015");
    r.dat_data_scad = QStringLiteral("20261130");
    r.cod_tipo_pag = QStringLiteral("6");
    r.flg_ind_clifor = QStringLiteral("F");
    r.cod_clifor = QStringLiteral("400001");
    r.cod_valuta = QStringLiteral("EU");
    r.val_cambio = 1;
    r.val_imp_dapag_val = r.val_imp_dapag_eur = 100;
    r.val_imp_residuo_val = r.val_imp_residuo_eur = 100;
    r.val_imp_indist_val = r.val_imp_indist_eur = 100;
    r.des_scadenza = QStringLiteral("Vs.Fatt. ") + r.des_num_doc;
    set(r, assignments);
    return r;
}

distinta::Distinta distintaOf(const QList<Riga> &rows, const QString &state)
{
    distinta::Distinta d;
    distinta::Testata header;
    header.cod_distinta = QStringLiteral("     1");
    header.flg_stato = state;
    d.testata.append(header);
    for (const Riga &r : rows)
        d.righe.append(r);
    return d;
}

// Every column of the list shown.
UserSettings allColumns()
{
    UserSettings s;
    for (const ListColumn &c : editor::LV_ConfigLista())
        s.columns.insert(c.header, true);
    return s;
}

QList<ErpRecord> accounts()
{
    ErpRecord a(archives::AnagraficheComuni);
    a.setText(QStringLiteral("cod_clifor"), QStringLiteral("400001"));
    a.setText(QStringLiteral("ragsoc"), QStringLiteral("Ferramenta Rossi Srl"));
    a.setText(QStringLiteral("partita_iva"), QStringLiteral("01234567890"));
    a.setText(QStringLiteral("cod_fiscale"), QStringLiteral("01234567890"));
    ErpRecord b(archives::AnagraficheComuni);
    b.setText(QStringLiteral("cod_clifor"), QStringLiteral("100002"));
    b.setText(QStringLiteral("ragsoc"), QStringLiteral("Bianchi Mario"));
    b.setText(QStringLiteral("cod_fiscale"), QStringLiteral("BNCMRA70A01F205X"));
    ErpRecord c(archives::AnagraficheComuni);
    c.setText(QStringLiteral("cod_clifor"), QStringLiteral("400003"));
    c.setText(QStringLiteral("ragsoc"), QStringLiteral("Verdi Spa"));
    return {a, b, c};
}

ErpRecord dueItemInState(int n, const QString &state)
{
    ErpRecord r = TestInstallation::dueItem(QStringLiteral("P"), link(n), QStringLiteral("6"),
                                            QStringLiteral("400001"), 100);
    r.setText(QStringLiteral("stato_dist"), state);
    return r;
}

} // namespace pg::test::rowlist
