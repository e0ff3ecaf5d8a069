#include "selectionlogic.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"
#include "core/cp1252.h"
#include "core/money.h"
#include "core/paymenttype.h"
#include "core/prompter.h"
#include "core/typedamount.h"
#include "core/vbdate.h"
#include "core/vbformat.h"
#include "distinta/programvalues.h"
#include "startup/errortrap.h"

#include <cmath>

namespace pg::editor {

using archives::ErpRecord;

const QString SelectionLogic::Mark = QStringLiteral("X");

namespace {

// The key-down handlers report under the main window's name, as they always did.
QString keyDownLocation(SelectionLogic::Box box)
{
    switch (box) {
    case SelectionLogic::Banca:
    case SelectionLogic::Agenzia:
        return QStringLiteral("frmMain!Sub Text1_KeyDown()");
    case SelectionLogic::BancaCli:
    case SelectionLogic::AgenziaCli:
        return QStringLiteral("frmMain!Sub txtBancaAgenziaCli_KeyDown()");
    case SelectionLogic::CodAnagraInizio:
        return QStringLiteral("frmMain!Sub txtCodAnagra_Inizio_KeyDown()");
    case SelectionLogic::CodAnagraFine:
        return QStringLiteral("frmMain!Sub txtCodAnagra_Fine_KeyDown()");
    case SelectionLogic::CodValuta:
        return QStringLiteral("frmMain!Sub txtCodValuta_KeyDown()");
    default:
        return {};
    }
}

QString validateLocation(SelectionLogic::Box box)
{
    static const char *const names[] = {
        "txtBancaAgenzia",     "txtBancaAgenzia",   "DatadiScad",
        "DatadiScad",          "mskData",           "mskDataValuta",
        "txtCodValuta",        "txtImpMinimo",      "txtImpMassimo",
        "txtCodAnagra_Inizio", "txtCodAnagra_Fine", "txtBancaAgenziaCli",
        "txtBancaAgenziaCli",
    };
    return QStringLiteral("frmDistinta!Sub ") + QString::fromLatin1(names[box]) +
           QStringLiteral("_Validate()");
}

// A code of a fixed width: cut to it and padded with blanks, as the suite's fields hold it.
QString fixedWidth(const QString &text, int width)
{
    return text.leftJustified(width, u' ', true);
}

// An entry of a bank list: characters 1-5 and 7-11.
QPair<QString, QString> splitBankChoice(const QString &choice)
{
    return {choice.mid(0, 5).trimmed(), choice.mid(6, 5).trimmed()};
}

} // namespace

SelectionLogic::SelectionLogic(archives::ErpSession *erp) : SelectionLogic(erp, Form()) {}

SelectionLogic::SelectionLogic(archives::ErpSession *erp, const Form &start)
    : m_erp(erp), m_form(start)
{
    for (Box box : {DataScadDa, DataScadA, DataCreazione, DataValuta})
        if (m_form.texts.at(box).isEmpty())
            m_form.texts[box] = SelectionValues::EmptyDate;
    if (m_form.descriptions.at(DesValuta).isEmpty() &&
        m_form.texts.at(CodValuta).trimmed().isEmpty())
        m_form.descriptions[DesValuta] = QStringLiteral("EURO");
}

const QStringList &SelectionLogic::tipoEntries()
{
    static const QStringList entries =
        paymentTypeNames() + QStringList{QStringLiteral("TUTTI I PAGAMENTI")};
    return entries;
}

const QStringList &SelectionLogic::cliForEntries()
{
    static const QStringList entries{QStringLiteral("Fornitori"), QStringLiteral("Clienti")};
    return entries;
}

int SelectionLogic::maxLength(Box box)
{
    switch (box) {
    case Banca:
    case Agenzia:
    case BancaCli:
    case AgenziaCli:
        return 5;
    case CodAnagraInizio:
    case CodAnagraFine:
        return 6;
    case CodValuta:
        return 2;
    case ImpMinimo:
    case ImpMassimo:
        return 20;
    default:
        return 10;
    }
}

bool SelectionLogic::isDateBox(Box box)
{
    return box == DataScadDa || box == DataScadA || box == DataCreazione || box == DataValuta;
}

bool SelectionLogic::isEmptyDate(const QString &text)
{
    for (const QChar c : text)
        if (c != u'_' && c != u'/' && c != u' ')
            return false;
    return true;
}

SelectionLogic::Form &SelectionLogic::lastConfirmedForm()
{
    static Form form;
    return form;
}

void SelectionLogic::setText(Box box, const QString &text)
{
    m_form.texts[box] = isDateBox(box) && text.isEmpty() ? SelectionValues::EmptyDate : text;
}

void SelectionLogic::setTipoIndex(int index)
{
    if (index >= 0 && index < tipoEntries().size())
        m_form.tipoIndex = index;
}

void SelectionLogic::setCliForIndex(int index)
{
    if (index >= 0 && index < cliForEntries().size())
        m_form.cliForIndex = index;
}

void SelectionLogic::setDescription(Description d, const QString &text)
{
    m_form.descriptions[d] = text;
}

void SelectionLogic::changed()
{
    if (m_changed)
        m_changed();
}

void SelectionLogic::refuse(const QString &message, Box box, bool selectText)
{
    msgBox(message, Buttons::Ok, Icon::Exclamation);
    if (m_focus)
        m_focus(box, selectText);
}

QString SelectionLogic::codeFormatted(Box box, QStringView pattern)
{
    const QString trimmed = text(box).trimmed();
    if (trimmed.isEmpty())
        return {};
    const QString formatted = vb::format(trimmed, pattern);
    if (formatted != text(box)) {
        m_form.texts[box] = formatted;
        changed();
    }
    return formatted;
}

void SelectionLogic::keyDownF4(Box box)
{
    underTrap(keyDownLocation(box), [&] {
        QString choice;
        switch (box) {
        case Banca:
        case Agenzia:
            if (m_lookups.companyBanks)
                choice = m_lookups.companyBanks();
            break;
        case BancaCli:
        case AgenziaCli:
            if (m_lookups.banksAndAgencies)
                choice = m_lookups.banksAndAgencies();
            break;
        case CodAnagraInizio:
        case CodAnagraFine:
            if (m_lookups.accounts)
                choice = m_lookups.accounts(customers());
            break;
        case CodValuta:
            if (m_lookups.currencies)
                choice = m_lookups.currencies();
            break;
        default:
            return;
        }
        if (choice.trimmed().isEmpty())
            return;
        switch (box) {
        case Banca:
        case Agenzia:
        case BancaCli:
        case AgenziaCli: {
            const auto [bank, agency] = splitBankChoice(choice);
            const bool company = box == Banca || box == Agenzia;
            m_form.texts[company ? Banca : BancaCli] = bank;
            m_form.texts[company ? Agenzia : AgenziaCli] = agency;
            changed();
            validate(company ? Agenzia : AgenziaCli);
            return;
        }
        default:
            m_form.texts[box] = choice.trimmed().left(maxLength(box));
            changed();
            validate(box);
            return;
        }
    });
}

bool SelectionLogic::validate(Box box)
{
    bool ok = true;
    underTrap(validateLocation(box), [&] {
        switch (box) {
        case Banca:
        case Agenzia:
            ok = validateCompanyBank(box);
            return;
        case BancaCli:
        case AgenziaCli:
            ok = validateAccountBank();
            return;
        case CodValuta:
            ok = validateCurrency();
            return;
        case CodAnagraInizio:
            ok = validateAccountFrom();
            return;
        case CodAnagraFine:
            ok = validateAccountTo();
            return;
        case DataScadDa:
        case DataScadA:
        case DataCreazione:
        case DataValuta:
            ok = validateDate(box);
            return;
        default:
            return;
        }
    });
    return ok;
}

bool SelectionLogic::validateCompanyBank(Box box)
{
    const QString bank = codeFormatted(Banca, u"00000");
    const QString agency = codeFormatted(Agenzia, u"00000");
    if (bank.isEmpty() || agency.isEmpty()) {
        setDescription(DesBanca, {});
        changed();
        return true;
    }
    ErpRecord ba1(archives::TabelleAzienda, QStringLiteral("BA1"));
    ba1.setText(QStringLiteral("codice"), fixedWidth(bank, 5) + fixedWidth(agency, 5));
    if (!m_erp || !m_erp->readEq(ba1, 1)) {
        setDescription(DesBanca, {});
        changed();
        refuse(QStringLiteral("Banca non trovata!"), box);
        return false;
    }
    setDescription(DesBanca, ba1.trimmed(QStringLiteral("des_banca")));
    changed();
    return true;
}

bool SelectionLogic::validateAccountBank()
{
    const QString bank = codeFormatted(BancaCli, u"00000");
    const QString agency = codeFormatted(AgenziaCli, u"00000");
    setDescription(DesBancaCli, {});
    changed();
    if (SelectionValues::isZeroCode(bank))
        return true;

    // The bank is known when the agencies of the common tables hold one of its agencies.
    ErpRecord bn(archives::TabelleComuni, QStringLiteral("BN "));
    const QString bankKey = fixedWidth(bank, 5);
    const bool bankKnown =
        m_erp && m_erp->readFirst(bn, 1, cp1252::encode(QStringLiteral("BN ") + bankKey)) &&
        bn.text(QStringLiteral("tipo_rec")) == u"BN " &&
        bn.text(QStringLiteral("codice")).startsWith(bankKey);
    if (!bankKnown) {
        refuse(QStringLiteral("Banca non trovata!"), BancaCli);
        return false;
    }
    QString text = bn.trimmed(QStringLiteral("des_banca"));
    if (!SelectionValues::isZeroCode(agency)) {
        ErpRecord agencyRecord(archives::TabelleComuni, QStringLiteral("BN "));
        agencyRecord.setText(QStringLiteral("codice"), bankKey + fixedWidth(agency, 5));
        if (!m_erp->readEq(agencyRecord, 1)) {
            refuse(QStringLiteral("Agenzia non trovata!"), AgenziaCli);
            return false;
        }
        text = agencyRecord.trimmed(QStringLiteral("des_banca")) + QStringLiteral(" - ") +
               agencyRecord.trimmed(QStringLiteral("des_agenzia"));
    }
    setDescription(DesBancaCli, text);
    changed();
    return true;
}

bool SelectionLogic::validateCurrency()
{
    const QString code = text(CodValuta).trimmed();
    if (code.isEmpty()) {
        setDescription(DesValuta, QStringLiteral("EURO"));
        changed();
        return true;
    }
    ErpRecord vl(archives::TabelleComuni, QStringLiteral("VL "));
    vl.setText(QStringLiteral("codice"), code);
    if (!m_erp || !m_erp->readEq(vl, 1)) {
        setDescription(DesValuta, {});
        changed();
        refuse(QStringLiteral("Valuta non trovata!"), CodValuta);
        return false;
    }
    setDescription(DesValuta, vl.trimmed(QStringLiteral("des_valuta")));
    changed();
    return true;
}

bool SelectionLogic::validateAccountFrom()
{
    const QString code = codeFormatted(CodAnagraInizio, u"000000");
    QString name;
    if (!code.isEmpty() && m_erp) {
        ErpRecord account(archives::AnagraficheComuni);
        account.setText(QStringLiteral("cod_clifor"), code);
        if (m_erp->readEq(account, 1))
            name = account.trimmed(QStringLiteral("ragsoc"));
    }
    setDescription(DesRagsoc, name);
    changed();
    return true;
}

bool SelectionLogic::validateAccountTo()
{
    const QString to = codeFormatted(CodAnagraFine, u"000000");
    const QString from = text(CodAnagraInizio).trimmed();
    if (to.isEmpty() || from.isEmpty())
        return true;
    if (to < vb::format(from, u"000000")) {
        refuse(QStringLiteral("Codice inferiore del precedente!"), CodAnagraFine, true);
        return false;
    }
    return true;
}

bool SelectionLogic::validateDate(Box box)
{
    QString value = text(box);
    if (isEmptyDate(value))
        return true;
    const QString completed = dates::completeTwoDigitYear(value);
    if (completed != value) {
        m_form.texts[box] = completed;
        value = completed;
        changed();
    }
    if (!dates::isValidDmy(value)) {
        refuse(QStringLiteral("Date non corrette!"), box, true);
        return false;
    }
    return true;
}

bool SelectionLogic::amountOf(Box box, double defaultValue, double *value)
{
    // The box is rewritten without its thousands points, and what is left read as the clerk
    // types amounts (the comma for the decimals) whatever the system's locale.
    const vb::TypedAmount typed = vb::TypedAmount::read(text(box));
    if (typed.outcome == vb::TypedAmount::Outcome::Empty) {
        *value = defaultValue;
        return true;
    }
    if (!readAmount(text(box), value))
        return false;
    if (typed.plain != text(box)) {
        m_form.texts[box] = typed.plain;
        changed();
    }
    return true;
}

bool SelectionLogic::readAmount(const QString &typed, double *value)
{
    // Read as the clerk types amounts; none below zero or beyond what the filter's cents hold.
    const vb::TypedAmount amount = vb::TypedAmount::read(typed);
    if (!amount.isValid() || amount.value < 0 || amount.value > SelectionValues::MaxImporto)
        return false;
    *value = amount.value;
    return true;
}

bool SelectionLogic::cmdGenera()
{
    bool confirmed = false;
    underTrap(QStringLiteral("frmDistinta!Sub cmdGenera_Click()"), [&] {
        m_mark.clear();
        SelectionValues &v = m_values;
        v = SelectionValues();

        // A code box: its code formatted to its width, or the default of an empty box.
        auto codeOr = [&](Box box, QStringView pattern, const QString &empty) {
            const QString typed = text(box).trimmed();
            return typed.isEmpty() ? empty
                                   : fixedWidth(vb::format(typed, pattern), int(pattern.size()));
        };
        v.codAnagraInizio = codeOr(CodAnagraInizio, u"000000", v.codAnagraInizio);
        v.codAnagraFine = codeOr(CodAnagraFine, u"000000", v.codAnagraFine);
        auto dateOr = [&](Box box, const QString &empty) {
            const QString typed = dates::completeTwoDigitYear(text(box));
            return isEmptyDate(typed) || !dates::isValidDmy(typed) ? empty : dates::dmyToYmd(typed);
        };
        v.dataScadInizio = dateOr(DataScadDa, v.dataScadInizio);
        v.dataScadFine = dateOr(DataScadA, v.dataScadFine);
        v.tipoPagamento = tipoIndex() == TuttiIPagamentiIndex ? SelectionValues::TuttiIPagamenti
                                                              : QString::number(tipoIndex());
        v.tipoDistinta = cliForEntries().at(cliForIndex()).left(1);
        const bool minOk = amountOf(ImpMinimo, 0, &v.impMinimo);
        const bool maxOk = amountOf(ImpMassimo, SelectionValues::MaxImporto, &v.impMassimo);
        const QString currency = text(CodValuta).trimmed();
        v.codValuta = fixedWidth(currency, 2);
        v.desValuta =
            currency.isEmpty() ? QStringLiteral("EURO") : description(DesValuta).trimmed().left(20);
        v.bancaPres = codeOr(Banca, u"00000", QString());
        v.agenziaPres = codeOr(Agenzia, u"00000", QString());
        v.bancaCli = codeOr(BancaCli, u"00000", v.bancaCli);
        v.agenziaCli = codeOr(AgenziaCli, u"00000", v.agenziaCli);
        v.dataCreazione = isEmptyDate(text(DataCreazione))
                              ? SelectionValues::EmptyDate
                              : dates::completeTwoDigitYear(text(DataCreazione));
        v.dataValuta = isEmptyDate(text(DataValuta))
                           ? SelectionValues::EmptyDate
                           : dates::completeTwoDigitYear(text(DataValuta));
        selectionValues() = v;

        // An amount that cannot be read is refused with what was typed, never taken as
        // something else.
        if (!minOk || !maxOk) {
            const Box unread = minOk ? ImpMassimo : ImpMinimo;
            refuse(vb::TypedAmount::invalidMessage(text(unread)), unread, true);
            return;
        }
        if (money::exceeds(v.impMinimo, v.impMassimo)) {
            refuse(QStringLiteral("Importi non coerenti"), ImpMinimo, true);
            return;
        }
        if (v.dataScadInizio > v.dataScadFine) {
            refuse(QStringLiteral("Date non coerenti"), DataScadDa, true);
            return;
        }
        if (v.codValuta.trimmed().isEmpty()) {
            v.codValuta = QStringLiteral("  ");
            v.desValuta = QStringLiteral("EURO");
            selectionValues() = v;
        }
        if (v.bancaPres.trimmed().isEmpty()) {
            refuse(QStringLiteral("Banca obbligatoria!"), Banca);
            return;
        }
        if (v.agenziaPres.trimmed().isEmpty()) {
            refuse(QStringLiteral("Agenzia obbligatoria!"), Agenzia);
            return;
        }

        m_mark = Mark;
        distinta::ProgramValues &program = distinta::programValues();
        program.tipoDistinta = v.tipoDistinta;
        program.codValuta = v.codValuta;
        program.desValuta = v.desValuta;
        Form kept = m_form;
        kept.texts[DataCreazione] = SelectionValues::EmptyDate;
        kept.texts[DataValuta] = SelectionValues::EmptyDate;
        lastConfirmedForm() = kept;
        confirmed = true;
    });
    return confirmed;
}

} // namespace pg::editor
