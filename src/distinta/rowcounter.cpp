#include "rowcounter.h"

#include "distintestore.h"

namespace pg::distinta {

int RowCounter::operator()(const QString &key)
{
    if (!m_counts) {
        const QueryResult result = m_store.GetRsGen(
            QStringLiteral("SELECT flg_flag_colpar, des_link_orvida, COUNT(*) FROM TB_RIGHE "
                           "WHERE (flg_flag_colpar, des_link_orvida) IN "
                           "(SELECT flg_flag_colpar, des_link_orvida FROM TB_RIGHE "
                           "WHERE cod_distinta = ?) "
                           "GROUP BY flg_flag_colpar, des_link_orvida"),
            {m_code});
        m_counts.emplace();
        for (const QVariantList &row : result.rows)
            m_counts->insert(Riga::keyOf(row.at(0).toString(), row.at(1).toString()), row.at(2).toInt());
    }
    return m_counts->value(key, 0);
}

} // namespace pg::distinta
