#include "lookupservice.h"

#include "archivenumbers.h"

namespace pg::archives {

namespace {

// Text reduced for comparisons: lower case, accents dropped.
QString folded(const QString &text)
{
    QString out;
    const QString decomposed = text.normalized(QString::NormalizationForm_D);
    out.reserve(decomposed.size());
    for (QChar c : decomposed)
        if (c.category() != QChar::Mark_NonSpacing)
            out += c;
    return out.toCaseFolded();
}

} // namespace

LookupService::LookupService(ErpSession &session) : m_session(&session) {}

bool LookupService::matches(const QStringList &cells, const QString &filter)
{
    const QStringList words = folded(filter).split(u' ', Qt::SkipEmptyParts);
    if (words.isEmpty())
        return true;
    QStringList haystack;
    haystack.reserve(cells.size());
    for (const QString &cell : cells)
        haystack << folded(cell);
    for (const QString &word : words) {
        bool found = false;
        for (const QString &cell : std::as_const(haystack))
            found = found || cell.contains(word);
        if (!found)
            return false;
    }
    return true;
}

template<typename Fn>
void LookupService::walk(int archive, const QString &recordType, const QByteArray &startKey,
                         Fn fn) const
{
    ErpRecord record(archive, recordType);
    const ArchiveLayout &layout = record.layout();
    bool ok = m_session->readFirst(record, 1, startKey);
    while (ok && layout.keyOf(record.buffer(), 1).startsWith(startKey)) {
        fn(record);
        ok = m_session->readNext(record);
    }
}

LookupList LookupService::banksAndAgencies(const QString &filter) const
{
    LookupList list{QStringLiteral("Banche e agenzie"),
                    {QStringLiteral("ABI"), QStringLiteral("CAB"), QStringLiteral("Banca"),
                     QStringLiteral("Agenzia")},
                    {}};
    walk(TabelleComuni, QStringLiteral("BN "), QByteArrayLiteral("BN "), [&](const ErpRecord &r) {
        const QString abi = r.text(QStringLiteral("abi"));
        const QString cab = r.text(QStringLiteral("cab"));
        const QStringList cells{abi, cab, r.trimmed(QStringLiteral("des_banca")),
                                r.trimmed(QStringLiteral("des_agenzia"))};
        if (matches(cells, filter))
            list.rows.append({cells, abi + u' ' + cab});
    });
    return list;
}

LookupList LookupService::accounts(const QString &filter, AccountKind kind) const
{
    LookupList list{kind == AccountKind::Customers   ? QStringLiteral("Clienti")
                    : kind == AccountKind::Suppliers ? QStringLiteral("Fornitori")
                                                     : QStringLiteral("Clienti e fornitori"),
                    {QStringLiteral("Codice"), QStringLiteral("Tipo"),
                     QStringLiteral("Ragione sociale"), QStringLiteral("Città"),
                     QStringLiteral("Partita IVA")},
                    {}};
    walk(AnagraficheComuni, QStringLiteral("*"), QByteArray(), [&](const ErpRecord &r) {
        const QString kindCode = r.text(QStringLiteral("ind_clifor"));
        if ((kind == AccountKind::Customers && kindCode != u"C") ||
            (kind == AccountKind::Suppliers && kindCode != u"F"))
            return;
        const QString kindName = kindCode == u"C"   ? QStringLiteral("Cliente")
                                 : kindCode == u"F" ? QStringLiteral("Fornitore")
                                                    : kindCode.trimmed();
        const QString code = r.text(QStringLiteral("cod_clifor"));
        const QStringList cells{code, kindName, r.trimmed(QStringLiteral("ragsoc")),
                                r.trimmed(QStringLiteral("citta")),
                                r.trimmed(QStringLiteral("partita_iva"))};
        if (matches(cells, filter))
            list.rows.append({cells, code});
    });
    return list;
}

LookupList LookupService::currencies(const QString &filter) const
{
    LookupList list{
        QStringLiteral("Valute"), {QStringLiteral("Codice"), QStringLiteral("Descrizione")}, {}};
    walk(TabelleComuni, QStringLiteral("VL "), QByteArrayLiteral("VL "), [&](const ErpRecord &r) {
        const QString code = r.trimmed(QStringLiteral("codice"));
        const QStringList cells{code, r.trimmed(QStringLiteral("des_valuta"))};
        if (matches(cells, filter))
            list.rows.append({cells, code});
    });
    return list;
}

LookupList LookupService::companyBanks(const QString &filter) const
{
    LookupList list{
        QStringLiteral("Banche azienda"),
        {QStringLiteral("Banca"), QStringLiteral("Agenzia"), QStringLiteral("Descrizione")},
        {}};
    walk(TabelleAzienda, QStringLiteral("BA1"), QByteArrayLiteral("BA1"), [&](const ErpRecord &r) {
        const QString code = r.text(QStringLiteral("codice"));
        const QString bank = code.left(5);
        const QString agency = code.mid(5, 5);
        const QStringList cells{bank, agency, r.trimmed(QStringLiteral("des_banca"))};
        if (matches(cells, filter))
            list.rows.append({cells, bank + u' ' + agency});
    });
    return list;
}

} // namespace pg::archives
