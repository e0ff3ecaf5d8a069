#include "markdisagreement.h"

#include "core/vbdate.h"

namespace pg::checks {

namespace {

QString stateText(const distinta::DueItemMarks &marks)
{
    return QStringLiteral("stato %1, segno %2")
        .arg(marks.stato.trimmed().isEmpty() ? QStringLiteral("vuoto") : marks.stato.trimmed(),
             marks.markDist.trimmed().isEmpty() ? QStringLiteral("vuoto")
                                                : marks.markDist.trimmed());
}

QString presentation(const distinta::DueItemMarks &marks)
{
    const QString date = marks.dataDist.trimmed().isEmpty() ? QStringLiteral("nessuna data")
                                                            : dates::ymdToDmy(marks.dataDist);
    return QStringLiteral("%1, banca %2/%3")
        .arg(date, marks.abiPres.trimmed(), marks.cabPres.trimmed());
}

QString inDistinte(const QStringList &distinte)
{
    if (distinte.size() == 1)
        return QStringLiteral("nella distinta ") + distinte.first();
    return QStringLiteral("in %1 distinte (%2)")
        .arg(distinte.size())
        .arg(distinte.join(QStringLiteral(", ")));
}

} // namespace

QString MarkDisagreement::text() const
{
    QString item = QStringLiteral("Scadenza %1 %2 (conto %3, doc. %4 del %5, scad. %6): ")
                       .arg(flag, link.trimmed(), account.trimmed(), document,
                            dates::ymdToDmy(documentDate), dates::ymdToDmy(dueDate));
    switch (kind) {
    case Kind::MarkedWithoutDistinta:
        return item + QStringLiteral("in [orvida] risulta in distinta (%1), ma non è in nessuna "
                                     "distinta salvata.")
                          .arg(stateText(found));
    case Kind::FreeInDistinta:
        return item + QStringLiteral("è %1, ma in [orvida] risulta libera (%2).")
                          .arg(inDistinte(distinte), stateText(found));
    case Kind::WrongState:
        return item + QStringLiteral("in [orvida] ha %1, ma %2: dovrebbe avere %3.")
                          .arg(stateText(found),
                               distinte.isEmpty() ? QStringLiteral("non è in nessuna distinta")
                                                  : QStringLiteral("è ") + inDistinte(distinte),
                               stateText(expected));
    case Kind::WrongPresentation:
        return item + QStringLiteral("in [orvida] è presentata il %1, ma è %2, presentata il %3.")
                          .arg(presentation(found), inDistinte(distinte), presentation(expected));
    case Kind::MissingItem:
        return item + QStringLiteral("è %1, ma non è più nell'archivio delle scadenze di "
                                     "[orvida]: va tolta dalla distinta.")
                          .arg(inDistinte(distinte));
    }
    return item;
}

} // namespace pg::checks
