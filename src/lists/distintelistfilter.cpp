#include "distintelistfilter.h"

#include "core/distintacode.h"
#include "core/prompter.h"
#include "core/vbdate.h"

#include <QDate>

namespace pg::lists {

bool DistinteListFilter::isEmptyDate(const QString &text)
{
    return text.trimmed().isEmpty() || text == QStringView(dates::EmptyMaskedDate);
}

DistinteListFilter::Query DistinteListFilter::query() const
{
    Query q;
    QString condition;
    if (!fromNumber.trimmed().isEmpty()) {
        condition += QStringLiteral(" cod_distinta >= ? ");
        q.binds << formatDistintaCode(distintaNumber(fromNumber));
    }
    if (!toNumber.trimmed().isEmpty()) {
        condition += condition.isEmpty() ? QStringLiteral(" cod_distinta <= ? ")
                                         : QStringLiteral(" AND cod_distinta <= ? ");
        q.binds << formatDistintaCode(distintaNumber(toNumber));
    }
    if (!isEmptyDate(fromDate)) {
        condition += condition.isEmpty() ? QStringLiteral(" dat_data_creazione >= ? ")
                                         : QStringLiteral(" AND dat_data_creazione >= ? ");
        q.binds << dates::parseDmy(fromDate).toString(Qt::ISODate);
    }
    if (!isEmptyDate(toDate)) {
        condition += condition.isEmpty() ? QStringLiteral(" dat_data_creazione <= ? ")
                                         : QStringLiteral(" AND dat_data_creazione <= ? ");
        q.binds << dates::parseDmy(toDate).toString(Qt::ISODate);
    }
    q.sql = QStringLiteral("SELECT TB_TESTATA.cod_distinta, TB_TESTATA.dat_data_creazione, "
                           "TB_TESTATA.des_ban_azi, TB_TESTATA.val_importo_totale, "
                           "TB_TESTATA.flg_stato FROM TB_TESTATA");
    if (!condition.trimmed().isEmpty())
        q.sql += QStringLiteral(" WHERE") + condition;
    q.sql += QStringLiteral(" ORDER BY TB_TESTATA.cod_distinta ");
    return q;
}

bool DistinteListFilter::validateDate(const QString &text)
{
    if (isEmptyDate(text) || dates::isValidDmy(text))
        return true;
    msgBox(QStringLiteral("Data non corretta!"), Buttons::Ok, Icon::Exclamation);
    return false;
}

bool DistinteListFilter::validateDateRange() const
{
    if (isEmptyDate(fromDate) || isEmptyDate(toDate))
        return true;
    const QDate from = dates::parseDmy(fromDate);
    const QDate to = dates::parseDmy(toDate);
    if (!from.isValid() || !to.isValid() || from <= to)
        return true;
    msgBox(QStringLiteral("Date non corrette!"), Buttons::Ok, Icon::Exclamation);
    return false;
}

bool DistinteListFilter::validateNumberRange() const
{
    if (fromNumber.trimmed().isEmpty() || toNumber.trimmed().isEmpty())
        return true;
    if (distintaNumber(toNumber) >= distintaNumber(fromNumber))
        return true;
    msgBox(QStringLiteral("Il campo A num. è inferiore al campo Da num.!"), Buttons::Ok,
           Icon::Exclamation);
    return false;
}

} // namespace pg::lists
