#include "distintaeditor.h"

#include "archives/store/archivenumbers.h"
#include "archives/store/erprecord.h"
#include "archives/store/erpsession.h"
#include "core/money.h"
#include "core/prompter.h"
#include "core/vbdate.h"
#include "distinta/distintestore.h"
#include "startup/errortrap.h"

namespace pg::editor {

using distinta::Testata;

const QString DistintaEditor::Refused =
    QStringLiteral("Distinta già stampata in definitivo. Impossibile modificare.");
const QString DistintaEditor::SavePrompt = QStringLiteral("Salva le modifiche alla Distinta?");

namespace {

const QString CrLf = QStringLiteral("\r\n");

} // namespace

QString DistintaEditor::location(const char *procedure)
{
    return QStringLiteral("frmMain!Sub ") + QString::fromLatin1(procedure) + QStringLiteral("()");
}

bool DistintaEditor::isEmptyDateText(const QString &text)
{
    return text.isEmpty() || text == QStringView(dates::EmptyMaskedDate);
}

const QList<int> &DistintaEditor::boundFields()
{
    static const QList<int> fields{CodDistinta,   CodSia,      AbiBanca,       DesBanAzi,
                                   CabBanca,      Riferimenti, ContoOrdinante, NumeroDisp,
                                   ImportoTotale, Tipo,        Stato,          CodiceAbi,
                                   CodiceCab,     CodValuta,   DesValuta};
    return fields;
}

DistintaEditor::DistintaEditor(distinta::DistinteStore &store, archives::ErpSession *erp,
                               DistintaView &view)
    : m_store(&store), m_erp(erp), m_view(&view), m_mask(QStringLiteral("NNNNNN"))
{}

QString DistintaEditor::state() const
{
    return hasDistinta() ? m_d.header().flg_stato : QString();
}

void DistintaEditor::SetBtnGestione(const QString &mask)
{
    m_mask = mask.leftJustified(ButtonCount, u'N', true);
    const QString current = state();
    for (int i = 0; i < ButtonCount; ++i) {
        bool enabled = m_mask.at(i) == u'Y';
        // A distinta printed in final form or presented to the bank is never deleted.
        if (i == Elimina)
            enabled = enabled && current != u"F" && current != u"D";
        if (enabled != m_enabled.at(i) || i == Elimina) {
            m_enabled[i] = enabled;
            m_view->setManagementButton(i, enabled);
        }
    }
}

bool DistintaEditor::existsInDatabase() const
{
    if (!hasDistinta())
        return false;
    const distinta::QueryResult result = m_store->GetRsGen(
        QStringLiteral("SELECT Count(*) as Dist FROM TB_TESTATA WHERE cod_distinta = ?"),
        {m_d.header().cod_distinta});
    return !result.rows.isEmpty() && result.rows.first().value(0).toLongLong() != 0;
}

void DistintaEditor::markChanged()
{
    if (m_mask == u"YYYYYY")
        return;
    SetBtnGestione(existsInDatabase() ? QStringLiteral("YYYYYY") : QStringLiteral("YYYNYY"));
}

void DistintaEditor::bindLoaded()
{
    m_view->BindControls();
    m_view->LoadRows();
    m_view->showTotals();
    m_view->setAggiungiEnabled(true);
}

void DistintaEditor::maskForLoaded()
{
    SetBtnGestione(isDefinitiva() ? QStringLiteral("YYNNYY") : QStringLiteral("YYNYYY"));
}

void DistintaEditor::clearToEmpty(const QString &mask)
{
    m_d = distinta::Distinta();
    m_view->PulisciMaschera();
    m_view->BindControls();
    m_view->setAggiungiEnabled(false);
    SetBtnGestione(mask);
}

bool DistintaEditor::askSaveFirst(int index, bool *cancelled)
{
    *cancelled = false;
    if (!hasUnsavedChanges())
        return true;
    CalcolaTotali();
    // Escape (or closing the question) withdraws the command: nothing is saved and nothing
    // is dropped.
    const Answer answer =
        prompter().ask(Message{SavePrompt, {}, Icon::Question, Buttons::YesNo, std::nullopt, true});
    if (answer == Answer::Cancel) {
        *cancelled = true;
        return false;
    }
    if (answer == Answer::Yes) {
        // A save that does not happen (the checks refused it) keeps the changes on screen.
        if (!m_store->Salva(m_d, false, false)) {
            *cancelled = true;
            return false;
        }
        return true;
    }
    // Declined from the save button itself: nothing more to do. From any other button the
    // command goes on and the changes are dropped.
    return index != Salva;
}

bool DistintaEditor::btnGestione_ClickED(int index)
{
    bool result = true;
    const bool ran = underTrap(location("btnGestione_ClickED"), [&] {
        bool cancelled = false;
        if (!askSaveFirst(index, &cancelled)) {
            result = !cancelled;
            return;
        }
        switch (index) {
        case Nuova: {
            const std::optional<SelectionResult> selection = m_view->showSelectionDialog();
            if (!selection)
                return;
            m_store->Nuovo(m_d);
            m_d.nuova = true;
            m_view->PulisciMaschera();
            Testata &header = m_d.editHeader();
            header.cod_abi_banca = selection->banca.left(5);
            header.cod_cab_banca = selection->agenzia.left(5);
            if (!isEmptyDateText(selection->dataCreazione))
                header.dat_data_creazione = dates::parseDmy(selection->dataCreazione.left(10));
            if (!isEmptyDateText(selection->dataValuta))
                header.dat_data_valuta = dates::parseDmy(selection->dataValuta.left(10));
            m_view->addSelectedDueItems(m_d);
            AggiornaBancaAzienda();
            m_view->BindControls();
            m_view->LoadRows();
            CalcolaTotali();
            m_view->setAggiungiEnabled(true);
            SetBtnGestione(QStringLiteral("YYYNYY"));
            m_view->deselectRows();
            return;
        }
        case Apri: {
            const std::optional<QString> code = m_view->chooseDistinta();
            if (!code)
                return;
            m_store->Leggi(m_d, *code);
            bindLoaded();
            maskForLoaded();
            return;
        }
        case Salva: {
            if (!hasDistinta())
                return;
            const QString code = m_d.header().cod_distinta;
            m_store->Leggi(m_d, code);
            bindLoaded();
            SetBtnGestione(QStringLiteral("YYNYYY"));
            return;
        }
        case Elimina: {
            if (!hasDistinta())
                return;
            if (askDestructive(QStringLiteral("Elimina Distinta?")) != Answer::Yes)
                return;
            if (!m_store->Cancella(m_d))
                return;
            clearToEmpty(QStringLiteral("YYNNYY"));
            return;
        }
        case Successiva:
        case Precedente: {
            // Without a distinta on screen the search starts before every code (a blank sorts
            // before the digits of the right-aligned codes); an empty text would be bound as a
            // null and find nothing.
            QString code = hasDistinta() ? m_d.header().cod_distinta : QStringLiteral(" ");
            const std::optional<QString> found = m_store->Esiste(code, index == Successiva ? 1 : 2);
            if (!found) {
                msgBox(QStringLiteral("Database vuoto"), Buttons::Ok, Icon::Information);
                clearToEmpty(QStringLiteral("YYNNNN"));
                return;
            }
            m_store->Leggi(m_d, *found);
            bindLoaded();
            maskForLoaded();
            return;
        }
        default:
            return;
        }
    });
    return ran && result;
}

void DistintaEditor::AggiornaFlagStato()
{
    underTrap(location("AggiornaFlagStato"), [&] {
        if (!hasDistinta() || isDefinitiva())
            return;
        // Saved or not, the window shows the distinta as it is saved, with its mask.
        m_store->AggiornaFlagStato(m_d, QStringLiteral("D"));
        bindLoaded();
        maskForLoaded();
    });
}

void DistintaEditor::CalcolaTotali()
{
    underTrap(location("CalcolaTotali"), [&] {
        if (!hasDistinta())
            return;
        qint64 cents = 0;
        for (int i = 0; i < m_d.righe.size(); ++i)
            cents += money::toCents(m_d.righe.at(i).val_imp_indist_val.value_or(0.0));
        const double total = money::fromCents(cents);
        const qint32 count = m_d.righe.size();
        const Testata &h = m_d.header();
        if (!money::sameAmount(h.val_importo_totale, total) || h.num_numero_disp != count) {
            Testata &edit = m_d.editHeader();
            edit.val_importo_totale = total;
            edit.num_numero_disp = count;
        }
    });
    m_view->showTotals();
}

bool DistintaEditor::Form_QueryUnload()
{
    if (!hasDistinta() || m_d.header().cod_distinta.trimmed().isEmpty())
        return true;
    if (!isDefinitiva() && !ControllaDate())
        return false;
    if (hasUnsavedChanges())
        return btnGestione_ClickED(Salva);
    return true;
}

bool DistintaEditor::rowChangeAllowed(const QString &question)
{
    if (isDefinitiva()) {
        msgBox(Refused, Buttons::Ok, Icon::Exclamation);
        return false;
    }
    if (state() == u"F")
        return askDestructive(question) == Answer::Yes;
    return true;
}

void DistintaEditor::cmdAggiungi_Click()
{
    underTrap(location("cmdAggiungi_Click"), [&] {
        if (!hasDistinta())
            return;
        if (!rowChangeAllowed(
                QStringLiteral("Distinta già presentata in banca. Confermi la variazione.")))
            return;
        if (!m_view->showSelectionDialog())
            return;
        m_view->addSelectedDueItems(m_d);
        m_view->BindControls();
        m_view->LoadRows();
        CalcolaTotali();
        SetBtnGestione(existsInDatabase() ? QStringLiteral("YYYYYY") : QStringLiteral("YYYNYY"));
    });
}

void DistintaEditor::cmdElRiga_Click()
{
    underTrap(location("cmdElRiga_Click"), [&] {
        if (!hasDistinta())
            return;
        if (!rowChangeAllowed(
                QStringLiteral("Distinta già presentata in banca. Confermi la variazione?")))
            return;
        bool removed = false;
        for (const QString &key : m_view->selectedRowKeys()) {
            const int row = m_d.righe.indexOfKey(key);
            if (row < 0)
                continue;
            // The due item is remembered so that the next save frees it in the suite.
            distinta::DistinteStore::AddRigheDaCanc(m_d, key);
            m_d.righe.removeAt(row);
            removed = true;
        }
        m_view->LoadRows();
        CalcolaTotali();
        if (removed)
            markChanged();
    });
}

void DistintaEditor::cmdZoom_Click()
{
    underTrap(location("cmdDettaglio_Click"), [&] {
        const QString key = m_view->currentRowKey();
        if (!hasDistinta() || key.isEmpty())
            return;
        archives::ErpRecord dueItem(archives::Scadenze);
        dueItem.setText(QStringLiteral("flag_colpar"), key.left(1));
        dueItem.setText(QStringLiteral("link"), key.mid(1));
        if (!m_erp || !m_erp->readEq(dueItem, 2)) {
            msgBox(
                QStringLiteral("Scadenza non trovata. E' probabile che sia una scadenza generata "
                               "da 'UNIFICA SCADENZE'."),
                Buttons::Ok, Icon::Information);
            return;
        }
        m_view->showDueItemDetail(dueItem);
    });
}

void DistintaEditor::cmdZoomCli_Click()
{
    underTrap(location("cmdZoomCli_Click"), [&] {
        if (!hasDistinta())
            return;
        if (m_view->listRowCount() > 0 && !m_view->hasListColumn(QStringLiteral("Codice"))) {
            msgBox(
                QStringLiteral("Per questa funzione è necessario abilitare la visualizzazione  ") +
                    CrLf + QStringLiteral("della Colonna Codice Fornitore dalle Opzioni!"),
                Buttons::Ok, Icon::Information);
            return;
        }
        const int row = m_d.righe.indexOfKey(m_view->currentRowKey());
        if (row < 0)
            return;
        const QString code = m_d.righe.at(row).cod_clifor.trimmed();
        if (m_d.header().flg_tipo == u"F")
            m_view->showAccountDetail(code, QStringLiteral("Zoom Fornitore"),
                                      QStringLiteral("Dati Fornitore"));
        else
            m_view->showAccountDetail(code, QStringLiteral("Zoom Cliente"),
                                      QStringLiteral("Dati Cliente"));
    });
}

bool DistintaEditor::cmdStSolle_Click()
{
    if (!hasDistinta())
        return false;
    if (hasUnsavedChanges()) {
        msgBox(QStringLiteral("Distinta non ancora salvata"), Buttons::Ok, Icon::Exclamation);
        return false;
    }
    return true;
}

} // namespace pg::editor
