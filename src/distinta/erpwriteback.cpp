#include "erpwriteback.h"

#include "archives/archivenumbers.h"
#include "archives/erprecord.h"
#include "core/vbdate.h"
#include "core/vbformat.h"

namespace pg::distinta {

namespace {

using archives::ErpRecord;

const QString Flag = QStringLiteral("flag_colpar");
const QString Link = QStringLiteral("link");
const QString State = QStringLiteral("stato_dist");
const QString DistintaMark = QStringLiteral("mark_dist");
const QString PresentationMark = QStringLiteral("mark_pres");
const QString DistintaDate = QStringLiteral("data_dist");
const QString Bank = QStringLiteral("abi_pres");
const QString Agency = QStringLiteral("cab_pres");

ErpRecord keyed(const QString &flag, const QString &link)
{
    ErpRecord record(archives::Scadenze);
    record.setText(Flag, flag);
    record.setText(Link, link);
    return record;
}

void freeItem(ErpRecord &record)
{
    const QString state = record.text(State);
    if (state == u"3" || state == u"0" || state == u"5") {
        record.setText(State, QStringLiteral("0"));
        record.setText(DistintaMark, QStringLiteral("0"));
        record.setText(PresentationMark, QStringLiteral(" "));
        record.setText(DistintaDate, QString(8, u' '));
        record.setText(Bank, QString(5, u' '));
        record.setText(Agency, QString(5, u' '));
    } else if (state == u"4") {
        record.setText(State, QStringLiteral("3"));
    }
}

} // namespace

ErpWriteBack::Outcome ErpWriteBack::release(const QString &flag, const QString &link)
{
    ErpRecord record = keyed(flag, link);
    if (!m_erp.readEq(record, 2))
        return Outcome::ReadFailed;
    freeItem(record);
    return m_erp.rewrite(record) ? Outcome::Done : Outcome::RewriteFailed;
}

void ErpWriteBack::releaseRemoved(const QStringList &keys, bool newDistinta)
{
    for (const QString &key : keys) {
        ErpRecord record = keyed(key.left(1), key.right(13));
        if (!m_erp.readEq(record, 2))
            continue;
        if (record.text(DistintaMark) == u"0")
            continue;
        if (record.text(State) == u"3" && newDistinta)
            continue;
        freeItem(record);
        m_erp.rewrite(record);
    }
}

ErpWriteBack::Outcome ErpWriteBack::update(const Riga &row, const Testata &header,
                                           const std::function<int(const QString &)> &rowsWithKey)
{
    ErpRecord record = keyed(row.flg_flag_colpar, row.des_link_orvida);
    const bool found = m_erp.readEq(record, 2);

    const QString type = row.cod_tipo_pag.trimmed();
    if (type >= u"3" && type <= u"8") {
        const QString state = record.text(State);
        if (state == u"0") {
            // The amounts are compared as the texts they print as.
            const QString inDistinta =
                row.val_imp_indist_val ? vb::cstr(*row.val_imp_indist_val) : QString();
            const bool whole = inDistinta == vb::cstr(row.val_imp_dapag_val);
            record.setText(State, whole ? QStringLiteral("5") : QStringLiteral("3"));
        } else if (state == u"3") {
            if (rowsWithKey(row.key()) > 1)
                record.setText(State, QStringLiteral("4"));
        }
    }
    record.setText(DistintaMark, QStringLiteral("B"));
    record.setText(PresentationMark, QStringLiteral("B"));
    record.setText(DistintaDate, dates::toYmd(header.dat_data_creazione));
    record.setText(Bank, header.cod_abi_banca);
    record.setText(Agency, header.cod_cab_banca);

    // Only now does the outcome of the read count: a record that was not found is never
    // rewritten.
    if (!found)
        return Outcome::ReadFailed;
    return m_erp.rewrite(record) ? Outcome::Done : Outcome::RewriteFailed;
}

} // namespace pg::distinta
