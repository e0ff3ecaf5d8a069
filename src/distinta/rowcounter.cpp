#include "rowcounter.h"

#include "riga.h"

#include "localdb/batchstatement.h"

namespace pg::distinta {

int RowCounter::operator()(const QString &key)
{
    if (!m_counts) {
        localdb::BatchStatement query(
            m_db, QStringLiteral("SELECT flg_flag_colpar, des_link_orvida, COUNT(*) FROM "
                                 "TB_RIGHE WHERE (flg_flag_colpar, des_link_orvida) IN "
                                 "(SELECT flg_flag_colpar, des_link_orvida FROM "
                                 "TB_RIGHE WHERE cod_distinta = ?) "
                                 "GROUP BY flg_flag_colpar, des_link_orvida"));
        query.bind(0, m_code);
        m_counts.emplace();
        while (query.next())
            m_counts->insert(Riga::keyOf(query.text(0), query.text(1)), query.value(2).toInt());
    }
    return m_counts->value(key, 0);
}

} // namespace pg::distinta
