#pragma once

// The row of a distinta the benchmarks save: a bonifico of one of 500 suppliers on one bank,
// paid whole.

#include "distinta/riga.h"

namespace pg::bench {

inline distinta::Riga rowFor(const QString &link, int n, double amount)
{
    distinta::Riga r;
    r.flg_flag_colpar = QStringLiteral("F");
    r.des_link_orvida = link;
    r.des_num_doc = QString::number(n % 999999).rightJustified(6, u'0');
    r.des_serie_doc = QStringLiteral(" ");
    r.dat_data_doc = QStringLiteral("20261015");
    r.dat_data_scad = QStringLiteral("20261130");
    r.cod_tipo_pag = QStringLiteral("6");
    r.flg_ind_clifor = QStringLiteral("F");
    r.cod_clifor = QString::number(200000 + n % 500);
    r.cod_banca_cli = QStringLiteral("03069");
    r.cod_agenzia_cli = QString::number(1000 + n % 3).rightJustified(5, u'0');
    r.des_num_cc = QStringLiteral("000012345678");
    r.cod_valuta = QStringLiteral("EU");
    r.val_cambio = 1;
    r.val_imp_dapag_val = r.val_imp_dapag_eur = amount;
    r.val_imp_residuo_val = r.val_imp_residuo_eur = amount;
    r.val_imp_indist_val = r.val_imp_indist_eur = amount;
    r.des_scadenza = QStringLiteral("Vs.Fatt. ") + r.des_num_doc;
    return r;
}

} // namespace pg::bench
