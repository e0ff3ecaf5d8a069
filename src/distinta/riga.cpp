#include "riga.h"

#include "core/money.h"

namespace pg::distinta {

QString Riga::keyOf(const QString &flag, const QString &link)
{
    return flag.leftJustified(1, u' ', true) + link.leftJustified(13, u' ', true);
}

bool Riga::isPayableAmount(double amount, double dapag)
{
    const qint64 cents = money::toCents(amount);
    return money::toCents(dapag) < 0 ? cents < 0 : cents > 0;
}

bool Riga::hasPayableAmount() const
{
    return isPayableAmount(val_imp_indist_val.value_or(val_imp_residuo_val), val_imp_dapag_val);
}

const QList<ColumnDef<Riga>> &Riga::columns()
{
    using K = ColumnKind;
    using R = Riga;
    static const QList<ColumnDef<Riga>> table{
        {QLatin1StringView("cod_distinta"), K::Text, 6, &R::cod_distinta},
        {QLatin1StringView("flg_flag_colpar"), K::Text, 1, &R::flg_flag_colpar},
        {QLatin1StringView("des_link_orvida"), K::Text, 13, &R::des_link_orvida},
        {QLatin1StringView("des_num_doc"), K::Text, 6, &R::des_num_doc},
        {QLatin1StringView("des_serie_doc"), K::Text, 1, &R::des_serie_doc},
        {QLatin1StringView("dat_data_doc"), K::Text, 8, &R::dat_data_doc},
        {QLatin1StringView("des_num_prot"), K::Text, 6, &R::des_num_prot},
        {QLatin1StringView("des_num_rata"), K::Text, 2, &R::des_num_rata},
        {QLatin1StringView("dat_data_scad"), K::Text, 8, &R::dat_data_scad},
        {QLatin1StringView("des_num_effetto"), K::Text, 6, &R::des_num_effetto},
        {QLatin1StringView("cod_tipo_pag"), K::Text, 1, &R::cod_tipo_pag},
        {QLatin1StringView("flg_ind_clifor"), K::Text, 1, &R::flg_ind_clifor},
        {QLatin1StringView("cod_clifor"), K::Text, 6, &R::cod_clifor},
        {QLatin1StringView("cod_sedeamm"), K::Text, 6, &R::cod_sedeamm},
        {QLatin1StringView("cod_banca_cli"), K::Text, 5, &R::cod_banca_cli},
        {QLatin1StringView("cod_agenzia_cli"), K::Text, 5, &R::cod_agenzia_cli},
        {QLatin1StringView("des_num_cc"), K::Text, 20, &R::des_num_cc},
        {QLatin1StringView("cod_valuta"), K::Text, 2, &R::cod_valuta},
        {QLatin1StringView("val_cambio"), K::Double, 0, &R::val_cambio},
        {QLatin1StringView("val_imp_dapag_val"), K::Double, 0, &R::val_imp_dapag_val},
        {QLatin1StringView("val_imp_dapag_eur"), K::Double, 0, &R::val_imp_dapag_eur},
        {QLatin1StringView("val_imp_pag_val"), K::Double, 0, &R::val_imp_pag_val},
        {QLatin1StringView("val_imp_pag_eur"), K::Double, 0, &R::val_imp_pag_eur},
        {QLatin1StringView("val_imp_residuo_val"), K::Double, 0, &R::val_imp_residuo_val},
        {QLatin1StringView("val_imp_residuo_eur"), K::Double, 0, &R::val_imp_residuo_eur},
        {QLatin1StringView("val_imp_indist_val"), K::NullableDouble, 0, &R::val_imp_indist_val},
        {QLatin1StringView("val_imp_indist_eur"), K::NullableDouble, 0, &R::val_imp_indist_eur},
        {QLatin1StringView("cod_banca_pres"), K::Text, 5, &R::cod_banca_pres},
        {QLatin1StringView("cod_agenzia_pres"), K::Text, 5, &R::cod_agenzia_pres},
        {QLatin1StringView("des_scadenza"), K::Text, 60, &R::des_scadenza},
        {QLatin1StringView("flg_ind_dist"), K::Text, 1, &R::flg_ind_dist},
        {QLatin1StringView("flg_des_alt"), K::Text, 1, &R::flg_des_alt},
    };
    return table;
}

} // namespace pg::distinta
