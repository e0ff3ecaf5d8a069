#include "duitemfilter.h"

#include "core/cp1252.h"
#include "core/money.h"

#include <cstdlib>

namespace pg::editor {

namespace {

QByteArray fixed(const QString &text, int width)
{
    return cp1252::encode(text.leftJustified(width, u' ', true));
}

// The one character of a one-character field, trimmed: 0 when it is blank.
char flag(QByteArrayView field)
{
    const char c = field.isEmpty() ? ' ' : field.front();
    return c == ' ' || c == '\0' ? 0 : c;
}

bool within(QByteArrayView value, const QByteArray &from, const QByteArray &to)
{
    return QByteArrayView(from).compare(value) <= 0 && value.compare(QByteArrayView(to)) <= 0;
}

} // namespace

DueItemFilter::DueItemFilter(const SelectionValues &values) : m_layout(&DueItemLayout::instance())
{
    const QString tipo = values.tipoPagamento.trimmed();
    if (tipo != SelectionValues::TuttiIPagamenti)
        m_tipo = tipo.isEmpty() ? ' ' : char(tipo.at(0).toLatin1());
    m_dataDa = fixed(values.dataScadInizio, m_layout->dataScad.width);
    m_dataA = fixed(values.dataScadFine, m_layout->dataScad.width);
    m_codDa = fixed(values.codAnagraInizio, m_layout->codClifor.width);
    m_codA = fixed(values.codAnagraFine, m_layout->codClifor.width);
    m_filterCodes =
        !values.codAnagraInizio.trimmed().isEmpty() && !values.codAnagraFine.trimmed().isEmpty();
    m_minCents = money::toCents(values.impMinimo);
    m_maxCents = money::toCents(values.impMassimo);
    if (!SelectionValues::isZeroCode(values.bancaCli)) {
        m_banca = fixed(values.bancaCli, m_layout->banca.width);
        if (!SelectionValues::isZeroCode(values.agenziaCli))
            m_agenzia = fixed(values.agenziaCli, m_layout->agenzia.width);
    }
}

void DueItemFilter::requireKind(const QString &tipoDistinta)
{
    m_kind = tipoDistinta == u"C" ? 'C' : 'F';
}

bool DueItemFilter::passes(QByteArrayView record) const
{
    const DueItemLayout &l = *m_layout;
    if (record.size() < l.length)
        return false;
    if (m_kind != 0 && flag(DueItemLayout::bytes(record, l.indClifor)) != m_kind)
        return false;
    const char tipo = flag(DueItemLayout::bytes(record, l.tipoPag));

    const char statoDist = flag(DueItemLayout::bytes(record, l.statoDist));
    const char markDist = flag(DueItemLayout::bytes(record, l.markDist));
    const bool inDistinta =
        (markDist != 0 && markDist != '0') || (statoDist != 0 && statoDist != '0');
    if (inDistinta && (tipo < '3' || tipo > '8' || statoDist == '5' || statoDist == '4'))
        return false;

    if (DueItemLayout::bytes(record, l.stato).front() == '2')
        return false;
    if (DueItemLayout::bytes(record, l.flagInsoluto).front() == '2')
        return false;
    const qint64 amount =
        std::llabs(DueItemLayout::cents(DueItemLayout::bytes(record, l.impDapagVal)));
    if (DueItemLayout::bytes(record, l.flagAcconto).front() == '1') {
        const qint64 acconto =
            std::llabs(DueItemLayout::cents(DueItemLayout::bytes(record, l.impAccontoVal)));
        if (amount <= acconto)
            return false;
    }

    if (m_tipo != 0 && tipo != m_tipo)
        return false;
    if (!within(DueItemLayout::bytes(record, l.dataScad), m_dataDa, m_dataA))
        return false;
    if (m_filterCodes && !within(DueItemLayout::bytes(record, l.codClifor), m_codDa, m_codA))
        return false;
    if (amount < m_minCents || amount > m_maxCents)
        return false;
    if (!m_banca.isEmpty()) {
        if (DueItemLayout::bytes(record, l.banca) != QByteArrayView(m_banca))
            return false;
        if (!m_agenzia.isEmpty() &&
            DueItemLayout::bytes(record, l.agenzia) != QByteArrayView(m_agenzia))
            return false;
    }
    return true;
}

} // namespace pg::editor
