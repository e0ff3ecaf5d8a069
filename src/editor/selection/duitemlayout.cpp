#include "duitemlayout.h"

#include "archives/store/archivenumbers.h"
#include "core/cp1252.h"
#include "core/money.h"

namespace pg::editor {

const DueItemLayout &DueItemLayout::instance()
{
    static const DueItemLayout layout = [] {
        const archives::ArchiveLayout *archive =
            archives::RecordLayouts::instance().archive(archives::Scadenze);
        if (!archive)
            qFatal("No record layout for the due items");
        auto f = [&](const char *name) {
            const archives::FieldDef *def =
                archive->field(QStringLiteral("*"), QString::fromLatin1(name));
            if (!def)
                qFatal("The due items' layout has no field %s", name);
            return *def;
        };
        DueItemLayout l;
        l.flagColpar = f("flag_colpar");
        l.link = f("link");
        l.stato = f("stato");
        l.flagInsoluto = f("flag_insoluto");
        l.flagAcconto = f("flag_acconto");
        l.tipoPag = f("tipo_pag");
        l.dataScad = f("data_scad");
        l.indClifor = f("ind_clifor");
        l.codClifor = f("cod_clifor");
        l.codSede = f("cod_sede");
        l.numDoc = f("num_doc");
        l.serieDoc = f("serie_doc");
        l.dataDoc = f("data_doc");
        l.numProt = f("num_prot");
        l.numRata = f("num_rata");
        l.numEffetto = f("num_effetto");
        l.causale = f("causale");
        l.banca = f("banca");
        l.agenzia = f("agenzia");
        l.conto = f("conto");
        l.valuta = f("valuta");
        l.cambio = f("cambio");
        l.impDapagVal = f("imp_dapag_val");
        l.impDapagEur = f("imp_dapag_eur");
        l.impPagVal = f("imp_pag_val");
        l.impPagEur = f("imp_pag_eur");
        l.impAccontoVal = f("imp_acconto_val");
        l.statoDist = f("stato_dist");
        l.markDist = f("mark_dist");
        l.length = archive->length;
        return l;
    }();
    return layout;
}

QString DueItemLayout::text(QByteArrayView record, const archives::FieldDef &field)
{
    QByteArray raw = bytes(record, field).toByteArray();
    raw.replace('\0', ' ');
    if (raw.size() < field.width)
        raw.append(QByteArray(field.width - raw.size(), ' '));
    return cp1252::decode(raw);
}

qint64 DueItemLayout::cents(QByteArrayView field)
{
    // The usual form, "  -1234.56", read without leaving the bytes; anything else through the
    // general conversion.
    qsizetype i = 0;
    const qsizetype n = field.size();
    while (i < n && (field[i] == ' ' || field[i] == '\0'))
        ++i;
    bool negative = false;
    if (i < n && (field[i] == '-' || field[i] == '+'))
        negative = field[i++] == '-';
    qint64 value = 0;
    int digits = 0;
    int decimals = -1;
    for (; i < n; ++i) {
        const char c = field[i];
        if (c >= '0' && c <= '9') {
            if (++digits > 17)
                return money::toCents(number(field));
            value = value * 10 + (c - '0');
            if (decimals >= 0)
                ++decimals;
        } else if (c == '.' && decimals < 0) {
            decimals = 0;
        } else {
            break;
        }
    }
    while (i < n && (field[i] == ' ' || field[i] == '\0'))
        ++i;
    if (i < n || decimals > 2)
        return money::toCents(number(field));
    for (int d = qMax(decimals, 0); d < 2; ++d)
        value *= 10;
    return negative ? -value : value;
}

double DueItemLayout::number(QByteArrayView field)
{
    QByteArray raw = field.toByteArray();
    raw.replace('\0', ' ');
    bool ok = false;
    const double v = raw.trimmed().toDouble(&ok);
    return ok ? v : 0.0;
}

} // namespace pg::editor
