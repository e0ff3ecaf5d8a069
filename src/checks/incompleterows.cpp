#include "incompleterows.h"

namespace pg::checks {

distinta::QueryResult incompleteBankRows(distinta::DistinteStore &store)
{
    // The blanks the columns hold when a value is unknown are bound, never written into the
    // text.
    return store.GetRsGen(
        QStringLiteral(
            "SELECT TB_RIGHE.cod_distinta, TB_TESTATA.dat_data_creazione, TB_RIGHE.des_num_doc, "
            "TB_RIGHE.des_serie_doc, TB_RIGHE.cod_clifor, TB_RIGHE.dat_data_doc, "
            "TB_RIGHE.dat_data_scad, TB_RIGHE.val_imp_residuo_val, TB_RIGHE.val_imp_residuo_eur, "
            "TB_RIGHE.cod_agenzia_cli, TB_RIGHE.cod_banca_cli, TB_RIGHE.des_num_cc "
            "FROM TB_RIGHE INNER JOIN TB_TESTATA ON TB_RIGHE.cod_distinta = "
            "TB_TESTATA.cod_distinta "
            "WHERE TB_RIGHE.cod_agenzia_cli = ? OR TB_RIGHE.cod_banca_cli = ? "
            "OR TB_RIGHE.des_num_cc = ?"),
        {QString(5, u' '), QString(5, u' '), QString(20, u' ')});
}

} // namespace pg::checks
