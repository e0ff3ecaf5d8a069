#include "markreconciliation.h"

#include "archives/store/archiveerror.h"
#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"
#include "core/cp1252.h"
#include "core/prompter.h"
#include "core/vbdate.h"
#include "distinta/distintestore.h"
#include "startup/companyenvironment.h"

namespace pg::checks {

using distinta::DueItemMarks;

// One row of a saved distinta, as far as the marks of its due item go.
struct MarkReconciliation::Holder
{
    QString distinta; // the number, trimmed
    QString type;
    bool whole = false;
    DueItemMarks presented; // the distinta's date and bank, as the item would show them
    QString account, document, documentDate, dueDate;
};

struct MarkReconciliation::Holding
{
    QList<Holder> rows; // in the order of the distinte
    bool seen = false;
};

namespace {

const QString CrLf = QStringLiteral("\r\n");

bool isDistintaState(const QString &state)
{
    return state == u"3" || state == u"4" || state == u"5";
}

QString documentOf(const QString &number, const QString &series)
{
    return series.trimmed().isEmpty() ? number.trimmed()
                                      : number.trimmed() + u'/' + series.trimmed();
}

// What the distinte holding an item call for, from what it shows now.
DueItemMarks expectedMarks(const DueItemMarks &found, const QList<MarkReconciliation::Holder> &rows)
{
    DueItemMarks e = found;
    if (rows.isEmpty()) {
        if (isDistintaState(found.stato))
            e.stato = QStringLiteral("0");
        e.markDist = QStringLiteral("0");
        e.markPres = e.dataDist = e.abiPres = e.cabPres = QString();
        return e.normalized();
    }
    e.markDist = e.markPres = QStringLiteral("B");
    if (distinta::takesDistintaState(rows.first().type)) {
        if (rows.size() > 1)
            e.stato = QStringLiteral("4");
        else if (found.stato != u"3" && found.stato != u"5")
            e.stato = rows.first().whole ? QStringLiteral("5") : QStringLiteral("3");
    }
    // The date and bank of one of its distinte; of the last one when they are of none.
    const bool ofOne = std::any_of(rows.begin(), rows.end(), [&](const auto &r) {
        return r.presented.dataDist == found.dataDist && r.presented.abiPres == found.abiPres &&
               r.presented.cabPres == found.cabPres;
    });
    if (!ofOne) {
        e.dataDist = rows.last().presented.dataDist;
        e.abiPres = rows.last().presented.abiPres;
        e.cabPres = rows.last().presented.cabPres;
    }
    return e.normalized();
}

MarkDisagreement::Kind kindOf(const DueItemMarks &found, const DueItemMarks &expected, bool held)
{
    if (!held)
        return found.isMarked() ? MarkDisagreement::Kind::MarkedWithoutDistinta
                                : MarkDisagreement::Kind::WrongState;
    if (!found.isMarked())
        return MarkDisagreement::Kind::FreeInDistinta;
    if (found.stato != expected.stato)
        return MarkDisagreement::Kind::WrongState;
    return MarkDisagreement::Kind::WrongPresentation;
}

} // namespace

MarkReconciliation::MarkReconciliation(distinta::DistinteStore &store, archives::ErpSession &erp)
    : m_store(store), m_erp(erp)
{}

QString MarkReconciliation::reportPath()
{
    return ProgramDir() + QStringLiteral("verifica.txt");
}

void MarkReconciliation::loadRows(QHash<QByteArray, Holding> &byKey)
{
    const distinta::QueryResult rows = m_store.GetRsGen(QStringLiteral(
        "SELECT r.flg_flag_colpar, r.des_link_orvida, r.cod_distinta, r.cod_tipo_pag, "
        "r.val_imp_indist_val, r.val_imp_dapag_val, t.dat_data_creazione, t.cod_abi_banca, "
        "t.cod_cab_banca, r.cod_clifor, r.des_num_doc, r.des_serie_doc, r.dat_data_doc, "
        "r.dat_data_scad FROM TB_RIGHE r JOIN TB_TESTATA t ON t.cod_distinta = r.cod_distinta "
        "ORDER BY r.cod_distinta, r.rowid"));
    for (const QVariantList &v : rows.rows) {
        distinta::Riga amounts;
        if (!v.at(4).isNull())
            amounts.val_imp_indist_val = v.at(4).toDouble();
        amounts.val_imp_dapag_val = v.at(5).toDouble();
        Holder h;
        h.distinta = v.at(2).toString().trimmed();
        h.type = v.at(3).toString();
        h.whole = distinta::paysWholeAmount(amounts);
        h.presented.dataDist =
            dates::toYmd(QDate::fromString(v.at(6).toString().left(10), Qt::ISODate));
        h.presented.abiPres = v.at(7).toString();
        h.presented.cabPres = v.at(8).toString();
        h.presented = h.presented.normalized();
        h.account = v.at(9).toString();
        h.document = documentOf(v.at(10).toString(), v.at(11).toString());
        h.documentDate = v.at(12).toString();
        h.dueDate = v.at(13).toString();
        const QString key = distinta::Riga::keyOf(v.at(0).toString(), v.at(1).toString());
        byKey[cp1252::encode(key)].rows << h;
    }
}

bool MarkReconciliation::run()
{
    m_disagreements.clear();
    m_read = 0;
    QHash<QByteArray, Holding> byKey;
    loadRows(byKey);

    archives::ErpRecord record(archives::Scadenze);
    auto field = [&](const char *name) { return record.fieldDef(QString::fromLatin1(name)); };
    const archives::FieldDef flag = field("flag_colpar"), link = field("link"),
                             state = field("stato_dist"), mark = field("mark_dist"),
                             account = field("cod_clifor"), number = field("num_doc"),
                             series = field("serie_doc"), docDate = field("data_doc"),
                             dueDate = field("data_scad");
    bool ok = m_erp.readFirst(record, 1, QByteArray());
    while (ok) {
        ++m_read;
        const QByteArray key = record.bytes(flag).toByteArray() + record.bytes(link).toByteArray();
        const auto held = byKey.find(key);
        const char markByte = record.bytes(mark).front();
        const char stateByte = record.bytes(state).front();
        const bool looksMarked =
            markByte == 'B' || stateByte == '3' || stateByte == '4' || stateByte == '5';
        if (held != byKey.end() || looksMarked) {
            const QList<Holder> rows = held != byKey.end() ? held->rows : QList<Holder>();
            if (held != byKey.end())
                held->seen = true;
            const DueItemMarks found = DueItemMarks::of(record);
            const DueItemMarks expected = expectedMarks(found, rows);
            if (expected != found) {
                MarkDisagreement d;
                d.kind = kindOf(found, expected, !rows.isEmpty());
                d.flag = cp1252::decode(record.bytes(flag));
                d.link = cp1252::decode(record.bytes(link));
                d.account = cp1252::decode(record.bytes(account));
                d.document = documentOf(cp1252::decode(record.bytes(number)),
                                        cp1252::decode(record.bytes(series)));
                d.documentDate = cp1252::decode(record.bytes(docDate));
                d.dueDate = cp1252::decode(record.bytes(dueDate));
                for (const Holder &h : rows)
                    d.distinte << h.distinta;
                d.found = found;
                d.expected = expected;
                m_disagreements << d;
            }
        }
        if (m_progress && m_read % ProgressInterval == 0 && !m_progress(m_read)) {
            msgBox(QStringLiteral("Verifica interrotta dopo %1 scadenze: le differenze elencate "
                                  "non sono tutte.")
                       .arg(m_read),
                   Buttons::Ok, Icon::Exclamation);
            return false;
        }
        ok = m_erp.readNext(record);
    }
    const qint32 error = m_erp.lastError();
    if (error != archives::EndOfArchive && error != archives::NotFound) {
        msgBox(QStringLiteral("Errore in ricerca archivi [orvida]") + CrLf +
                   QStringLiteral("L'archivio delle scadenze non si legge oltre la scadenza %1 "
                                  "(errore %2): la verifica non è completa.")
                       .arg(m_read)
                       .arg(error),
               Buttons::Ok, Icon::Critical);
        return false;
    }

    // Rows whose due item the walk never met.
    for (auto it = byKey.cbegin(); it != byKey.cend(); ++it) {
        if (it->seen)
            continue;
        const Holder &first = it->rows.first();
        MarkDisagreement d;
        d.kind = MarkDisagreement::Kind::MissingItem;
        const QString key = cp1252::decode(it.key());
        d.flag = key.left(1);
        d.link = key.mid(1);
        d.account = first.account;
        d.document = first.document;
        d.documentDate = first.documentDate;
        d.dueDate = first.dueDate;
        for (const Holder &h : it->rows)
            d.distinte << h.distinta;
        m_disagreements << d;
    }
    return true;
}

int MarkReconciliation::repairableCount() const
{
    return int(std::count_if(m_disagreements.begin(), m_disagreements.end(),
                             [](const MarkDisagreement &d) { return d.repairable(); }));
}

int MarkReconciliation::repair()
{
    QList<distinta::WriteBackEntry> entries;
    for (const MarkDisagreement &d : std::as_const(m_disagreements)) {
        if (!d.repairable())
            continue;
        distinta::WriteBackEntry e;
        e.flag = d.flag;
        e.link = d.link;
        e.before = d.found;
        e.after = d.expected;
        entries << e;
    }
    return m_store.applyRepairs(entries);
}

QStringList MarkReconciliation::reportLines() const
{
    QStringList lines;
    lines << QStringLiteral("VERIFICA SCADENZE E DISTINTE - %1").arg(dates::toDmy(dates::today()))
          << QStringLiteral("Scadenze lette: %1. Differenze: %2, di cui correggibili: %3.")
                 .arg(m_read)
                 .arg(m_disagreements.size())
                 .arg(repairableCount())
          << QString(80, u'-');
    for (const MarkDisagreement &d : m_disagreements)
        lines << d.text();
    if (m_disagreements.size() > repairableCount())
        lines << QString()
              << QStringLiteral("Le scadenze non più presenti in [orvida] vanno tolte "
                                "dalle loro distinte (Canc. Riga).");
    return lines;
}

} // namespace pg::checks
