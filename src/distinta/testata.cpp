#include "testata.h"

namespace pg::distinta {

const QList<ColumnDef<Testata>> &Testata::columns()
{
    using K = ColumnKind;
    using T = Testata;
    static const QList<ColumnDef<Testata>> table{
        {QLatin1StringView("cod_distinta"), K::Text, 6, &T::cod_distinta},
        {QLatin1StringView("flg_tipo"), K::Text, 1, &T::flg_tipo},
        {QLatin1StringView("flg_stato"), K::Text, 1, &T::flg_stato},
        {QLatin1StringView("dat_data_creazione"), K::Date, 0, &T::dat_data_creazione},
        {QLatin1StringView("dat_data_valuta"), K::Date, 0, &T::dat_data_valuta},
        {QLatin1StringView("cod_abi_banca"), K::Text, 5, &T::cod_abi_banca},
        {QLatin1StringView("cod_cab_banca"), K::Text, 5, &T::cod_cab_banca},
        {QLatin1StringView("cod_codiceabi"), K::Text, 5, &T::cod_codiceabi},
        {QLatin1StringView("cod_codicecab"), K::Text, 5, &T::cod_codicecab},
        {QLatin1StringView("des_conto_ordinante"), K::Text, 20, &T::des_conto_ordinante},
        {QLatin1StringView("cod_sia_banca"), K::Text, 5, &T::cod_sia_banca},
        {QLatin1StringView("des_riferimenti"), K::Text, 20, &T::des_riferimenti},
        {QLatin1StringView("des_ban_azi"), K::Text, 80, &T::des_ban_azi},
        {QLatin1StringView("cod_valuta"), K::Text, 2, &T::cod_valuta},
        {QLatin1StringView("des_valuta"), K::Text, 20, &T::des_valuta},
        {QLatin1StringView("num_numero_disp"), K::Long, 0, &T::num_numero_disp},
        {QLatin1StringView("val_importo_totale"), K::Double, 0, &T::val_importo_totale},
    };
    return table;
}

} // namespace pg::distinta
