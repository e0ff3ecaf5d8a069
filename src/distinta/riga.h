#pragma once

#include "columndef.h"

#include <QList>
#include <QString>

namespace pg::distinta {

// One due item placed in a distinta (table TB_RIGHE), and one grouped payment (table
// TB_RIGHE_RAGG, the same columns). Dates of the document and of the due item are the
// suite's eight-digit yyyymmdd text.
struct Riga
{
    QString cod_distinta;
    QString flg_flag_colpar; // with des_link_orvida, the suite's key of the due item
    QString des_link_orvida;
    QString des_num_doc;
    QString des_serie_doc;
    QString dat_data_doc;
    QString des_num_prot;
    QString des_num_rata;
    QString dat_data_scad;
    QString des_num_effetto;
    QString cod_tipo_pag;
    QString flg_ind_clifor;
    QString cod_clifor;
    QString cod_sedeamm;
    QString cod_banca_cli;
    QString cod_agenzia_cli;
    QString des_num_cc;
    QString cod_valuta;
    double val_cambio = 0;
    double val_imp_dapag_val = 0;
    double val_imp_dapag_eur = 0;
    double val_imp_pag_val = 0;
    double val_imp_pag_eur = 0;
    double val_imp_residuo_val = 0;
    double val_imp_residuo_eur = 0;
    std::optional<double> val_imp_indist_val;
    std::optional<double> val_imp_indist_eur;
    QString cod_banca_pres;
    QString cod_agenzia_pres;
    QString des_scadenza;
    QString flg_ind_dist; // "P" when the residual was changed by hand
    QString flg_des_alt;  // "X" marks an alternative description

    // The suite's key of the due item: the one-character flag and the thirteen-character
    // link, one fourteen-character text.
    QString key() const { return keyOf(flg_flag_colpar, des_link_orvida); }
    static QString keyOf(const QString &flag, const QString &link);

    // Whether an amount can be paid on a due item whose amount to pay is dapag: never zero, and
    // of the due item's sign (positive for an invoice, negative for a credit note).
    static bool isPayableAmount(double amount, double dapag);
    // The amount the row puts in the distinta (val_imp_indist_val, its residual where that is
    // missing) is payable on its due item. A row that is not goes neither to the bank nor
    // into a completeness check without being reported.
    bool hasPayableAmount() const;

    static const QList<ColumnDef<Riga>> &columns();

    bool operator==(const Riga &other) const = default;
};

} // namespace pg::distinta
