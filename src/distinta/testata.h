#pragma once

#include "columndef.h"

#include <QList>
#include <QString>

namespace pg::distinta {

// The header of a distinta (table TB_TESTATA).
struct Testata
{
    QString cod_distinta;        // the number, right-aligned in six ("@@@@@@")
    QString flg_tipo;            // "C" customers, anything else suppliers
    QString flg_stato;           // "P" trial, "D" printed in final form, "F" presented
    QDate dat_data_creazione;
    QDate dat_data_valuta;
    QString cod_abi_banca;       // the company's presenting bank (suite code)
    QString cod_cab_banca;       // and agency
    QString cod_codiceabi;       // ABI and CAB numbers of that bank
    QString cod_codicecab;
    QString des_conto_ordinante; // the company's account debited
    QString cod_sia_banca;
    QString des_riferimenti;
    QString des_ban_azi;
    QString cod_valuta;
    QString des_valuta;
    qint32 num_numero_disp = 0;
    double val_importo_totale = 0;

    QString key() const { return cod_distinta; }

    static const QList<ColumnDef<Testata>> &columns();
    static QLatin1StringView table() { return QLatin1StringView("TB_TESTATA"); }
};

} // namespace pg::distinta
