// The distinta editor's header: its fields, the date boxes and the company bank.
#include "distintaeditor.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"
#include "core/distintacode.h"
#include "core/prompter.h"
#include "core/vbdate.h"
#include "core/vbformat.h"
#include "startup/errortrap.h"

namespace pg::editor {

using distinta::Testata;

namespace {

// The member of the header behind a text field; nullptr for the fields that are not text.
QString Testata::*textMember(int index)
{
    switch (index) {
    case DistintaEditor::CodDistinta:
        return &Testata::cod_distinta;
    case DistintaEditor::CodSia:
        return &Testata::cod_sia_banca;
    case DistintaEditor::AbiBanca:
        return &Testata::cod_abi_banca;
    case DistintaEditor::DesBanAzi:
        return &Testata::des_ban_azi;
    case DistintaEditor::CabBanca:
        return &Testata::cod_cab_banca;
    case DistintaEditor::Riferimenti:
        return &Testata::des_riferimenti;
    case DistintaEditor::ContoOrdinante:
        return &Testata::des_conto_ordinante;
    case DistintaEditor::Tipo:
        return &Testata::flg_tipo;
    case DistintaEditor::Stato:
        return &Testata::flg_stato;
    case DistintaEditor::CodiceAbi:
        return &Testata::cod_codiceabi;
    case DistintaEditor::CodiceCab:
        return &Testata::cod_codicecab;
    case DistintaEditor::CodValuta:
        return &Testata::cod_valuta;
    case DistintaEditor::DesValuta:
        return &Testata::des_valuta;
    default:
        return nullptr;
    }
}

bool isEditableField(int index)
{
    switch (index) {
    case DistintaEditor::CodSia:
    case DistintaEditor::AbiBanca:
    case DistintaEditor::DesBanAzi:
    case DistintaEditor::CabBanca:
    case DistintaEditor::Riferimenti:
    case DistintaEditor::ContoOrdinante:
        return true;
    default:
        return false;
    }
}

} // namespace

QString DistintaEditor::headerText(int index) const
{
    if (!hasDistinta())
        return {};
    const Testata &h = m_d.header();
    switch (index) {
    case CodDistinta:
        return h.cod_distinta.trimmed();
    case NumeroDisp:
        return QString::number(h.num_numero_disp);
    case ImportoTotale:
        return vb::format(h.val_importo_totale, u"#,0.00");
    default:
        break;
    }
    QString Testata::*member = textMember(index);
    return member ? h.*member : QString();
}

bool DistintaEditor::isHeaderFieldEditable(int index) const
{
    return hasDistinta() && isEditableField(index);
}

void DistintaEditor::setHeaderText(int index, const QString &text)
{
    if (!hasDistinta() || !isEditableField(index))
        return;
    QString Testata::*member = textMember(index);
    if (m_d.header().*member != text)
        m_d.editHeader().*member = text;
}

QString DistintaEditor::txtdesTipo() const
{
    if (!hasDistinta())
        return {};
    return m_d.header().flg_tipo == u"C" ? QStringLiteral("Clienti") : QStringLiteral("Fornitori");
}

QString DistintaEditor::txtdesStato() const
{
    if (!hasDistinta())
        return {};
    // Every state but "P" reads as final, "F" included.
    return m_d.header().flg_stato == u"P" ? QStringLiteral("Prova") : QStringLiteral("Definitiva");
}

QString DistintaEditor::totaleText() const
{
    return hasDistinta() ? vb::format(m_d.header().val_importo_totale, u"#,0.00") : QString();
}

bool DistintaEditor::headerKeyPress()
{
    bool accepted = false;
    underTrap(location("txtTestata_KeyPress"), [&] {
        if (!hasDistinta())
            return;
        if (isDefinitiva()) {
            msgBox(Refused, Buttons::Ok, Icon::Exclamation);
            return;
        }
        markChanged();
        accepted = true;
    });
    return accepted;
}

bool DistintaEditor::dateKeyPress()
{
    bool accepted = false;
    underTrap(location("mskData_KeyPress"), [&] {
        if (!hasDistinta())
            return;
        if (isDefinitiva()) {
            msgBox(Refused, Buttons::Ok, Icon::Exclamation);
            return;
        }
        markChanged();
        accepted = true;
    });
    return accepted;
}

DistintaEditor::Leave DistintaEditor::validateDate(DateBox box, const QString &text)
{
    Leave leave = Leave::Accept;
    underTrap(
        location(box == DateBox::Creazione ? "mskData_Validate" : "mskDataValuta_Validate"), [&] {
            if (!hasDistinta() || isDefinitiva() || distintaNumber(m_d.header().cod_distinta) == 0)
                return;
            if (isEmptyDateText(text)) {
                msgBox(box == DateBox::Creazione
                           ? QStringLiteral("Inserire la data di creazione della distinta!")
                           : QStringLiteral("Inserire la data valuta!"),
                       Buttons::Ok, Icon::Exclamation);
                leave = Leave::KeepFocus;
                return;
            }
            const QString completed = dates::completeTwoDigitYear(text);
            if (completed != text)
                m_view->setDateBoxText(box, completed);
            const QDate date = dates::parseDmy(completed);
            if (!date.isValid()) {
                leave = Leave::KeepFocusSelected;
                return;
            }
            // The creation date is also the value date: entering one sets both.
            const Testata &h = m_d.header();
            const bool creation = box == DateBox::Creazione;
            if (h.dat_data_valuta != date || (creation && h.dat_data_creazione != date)) {
                Testata &edit = m_d.editHeader();
                if (creation)
                    edit.dat_data_creazione = date;
                edit.dat_data_valuta = date;
                if (creation)
                    m_view->setDateBoxText(DateBox::Valuta, dates::toDmy(date));
                markChanged();
            }
            if (m_furtherDateCheck && !m_furtherDateCheck(date))
                leave = Leave::KeepFocusSelected;
        });
    return leave;
}

bool DistintaEditor::ControllaDate()
{
    if (isEmptyDateText(m_view->dateBoxText(DateBox::Creazione))) {
        msgBox(QStringLiteral("Inserire la data di creazione della distinta!"), Buttons::Ok,
               Icon::Exclamation);
        m_view->focusDateBox(DateBox::Creazione, false);
        return false;
    }
    if (isEmptyDateText(m_view->dateBoxText(DateBox::Valuta))) {
        msgBox(QStringLiteral("Inserire la data valuta!"), Buttons::Ok, Icon::Exclamation);
        m_view->focusDateBox(DateBox::Valuta, false);
        return false;
    }
    return true;
}

void DistintaEditor::headerF4(int index)
{
    if (index != AbiBanca && index != CabBanca)
        return;
    underTrap(location("txtTestata_KeyDown"), [&] {
        if (!hasDistinta() || isDefinitiva())
            return;
        double value = 0;
        const QString text = headerText(index).trimmed();
        if (vb::toNumber(text, &value) && value > 0)
            setHeaderText(index, vb::format(value, u"00000"));
        const QString choice = m_view->lookupBanksAndAgencies();
        if (choice.trimmed().isEmpty())
            return;
        setHeaderText(AbiBanca, choice.mid(0, 5));
        setHeaderText(CabBanca, choice.mid(6, 5));
        // The list holds every bank: one that is not the company's leaves the block empty.
        if (!AggiornaBancaAzienda())
            msgBox(QStringLiteral("Banca non trovata"), Buttons::Ok, Icon::Exclamation);
        markChanged();
        m_view->focusDateBox(DateBox::Valuta, false);
    });
}

void DistintaEditor::validateBankField(int index)
{
    if (index != AbiBanca && index != CabBanca)
        return;
    underTrap(location("txtTestata_Validate"), [&] {
        if (!hasDistinta() || isDefinitiva())
            return;
        const QString text = headerText(index).trimmed();
        if (text.isEmpty())
            return;
        setHeaderText(index, vb::format(text, u"00000"));
        const QString typed = headerText(index);
        if (AggiornaBancaAzienda())
            return;
        if (index == CabBanca) {
            msgBox(QStringLiteral("Banca non trovata"), Buttons::Ok, Icon::Exclamation);
            return;
        }
        // A bank typed before its agency: it stays, while the agency of the previous bank
        // does not, so that the agency is asked for.
        setHeaderText(AbiBanca, typed);
        m_view->BindControls();
    });
}

bool DistintaEditor::AggiornaBancaAzienda()
{
    bool found = false;
    underTrap(location("AggiornaBancaAzienda"), [&] {
        if (!hasDistinta() || !m_erp)
            return;
        const Testata &h = m_d.header();
        const QString key =
            h.cod_abi_banca.left(5).leftJustified(5) + h.cod_cab_banca.left(5).leftJustified(5);
        Testata edit = h;

        archives::ErpRecord ba1(archives::TabelleAzienda, QStringLiteral("BA1"));
        ba1.setText(QStringLiteral("codice"), key);
        found = m_erp->readEq(ba1, 1);
        if (!found) {
            // Nothing of another bank may stay beside these codes: the whole block is emptied,
            // the codes with it, so that the save asks for the bank again.
            for (QString Testata::*field :
                 {&Testata::cod_abi_banca, &Testata::cod_cab_banca, &Testata::cod_codiceabi,
                  &Testata::cod_codicecab, &Testata::des_conto_ordinante, &Testata::des_ban_azi,
                  &Testata::cod_sia_banca, &Testata::des_riferimenti})
                if (!(h.*field).isEmpty())
                    (m_d.editHeader().*field).clear();
            return;
        }
        edit.cod_codiceabi = ba1.trimmed(QStringLiteral("abi"));
        edit.cod_codicecab = ba1.trimmed(QStringLiteral("cab"));
        edit.des_conto_ordinante = ba1.trimmed(QStringLiteral("conto_ordinante"));
        edit.des_ban_azi = ba1.trimmed(QStringLiteral("des_banca"));

        archives::ErpRecord ba2(archives::TabelleAzienda, QStringLiteral("BA2"));
        ba2.setText(QStringLiteral("codice"), key);
        const QString sia = m_erp->readEq(ba2, 1) ? ba2.trimmed(QStringLiteral("sia")) : QString();
        edit.cod_sia_banca = sia.isEmpty() ? QStringLiteral("000000") : sia;

        archives::ErpRecord ba3(archives::TabelleAzienda, QStringLiteral("BA3"));
        ba3.setText(QStringLiteral("codice"), key);
        if (m_erp->readEq(ba3, 1))
            edit.des_riferimenti = ba3.trimmed(QStringLiteral("riferimenti"));

        if (edit.cod_codiceabi != h.cod_codiceabi || edit.cod_codicecab != h.cod_codicecab ||
            edit.des_conto_ordinante != h.des_conto_ordinante ||
            edit.des_ban_azi != h.des_ban_azi || edit.cod_sia_banca != h.cod_sia_banca ||
            edit.des_riferimenti != h.des_riferimenti)
            m_d.editHeader() = edit;
    });
    m_view->BindControls();
    return found;
}

} // namespace pg::editor
