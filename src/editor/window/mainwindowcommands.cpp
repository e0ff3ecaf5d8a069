// The main window's command handlers and the controls it sets for the distinta editor.
#include "mainwindow.h"

#include "editor/rowlist/listcolumns.h"
#include "editor/rowlist/rowlistview.h"

#include "archives/store/lookupservice.h"
#include "core/prompter.h"
#include "lists/distintelistdialog.h"
#include "lists/optionsdialog.h"
#include "lists/usersettings.h"
#include "startup/errortrap.h"
#include "ui/codelineedit.h"
#include "ui/documentwindow.h"
#include "ui/icons.h"
#include "ui/lookupdialog.h"
#include "ui/maskeddateedit.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QToolButton>

namespace pg::editor {

bool MainWindow::leaveCurrentField()
{
    QWidget *focus = focusWidget();
    if (focus == m_mskData || focus == m_mskDataValuta)
        return static_cast<ui::MaskedDateEdit *>(focus)->validateNow();
    if (m_editor && (focus == m_txtTestata[DistintaEditor::AbiBanca] ||
                     focus == m_txtTestata[DistintaEditor::CabBanca]))
        m_editor->validateBankField(focus == m_txtTestata[DistintaEditor::AbiBanca]
                                        ? DistintaEditor::AbiBanca
                                        : DistintaEditor::CabBanca);
    return true;
}

void MainWindow::btnGestione_Click(int index)
{
    if (!ready() || !leaveCurrentField())
        return;
    m_editor->btnGestione_ClickED(index);
}

void MainWindow::cmdAggiungi_Click()
{
    if (ready() && leaveCurrentField())
        m_editor->cmdAggiungi_Click();
}

void MainWindow::cmdCancRiga_Click()
{
    if (ready())
        m_editor->cmdElRiga_Click();
}

void MainWindow::cmdZoom_Click()
{
    if (ready())
        m_editor->cmdZoom_Click();
}

void MainWindow::cmdZoomCli_Click()
{
    if (ready())
        m_editor->cmdZoomCli_Click();
}

void MainWindow::cmdStSolle_Click()
{
    underTrap(DistintaEditor::location("cmdStSolle_Click"), [this] {
        if (ready() && leaveCurrentField() && m_editor->cmdStSolle_Click() && m_hooks.printDistinta)
            m_hooks.printDistinta(*m_editor, this);
    });
}

void MainWindow::cmdCreaFile_Click()
{
    underTrap(DistintaEditor::location("cmdCreaFile_Click"), [this] {
        if (ready() && leaveCurrentField() && m_editor->hasDistinta() && m_hooks.createBankFile)
            m_hooks.createBankFile(*m_editor, this);
    });
}

void MainWindow::chkDatiBanca_Click()
{
    underTrap(DistintaEditor::location("chkDatiBAnca"), [this] {
        if (ready() && leaveCurrentField() && m_hooks.completenessCheck)
            m_hooks.completenessCheck(*m_editor, this);
    });
}

void MainWindow::cmdVerifica_Click()
{
    underTrap(DistintaEditor::location("cmdVerifica_Click"), [this] {
        // The saved distinte are compared: changes not yet saved play no part.
        if (ready() && leaveCurrentField() && m_hooks.verifyDueItems)
            m_hooks.verifyDueItems(this);
    });
}

void MainWindow::cmdListaCampi_Click()
{
    underTrap(DistintaEditor::location("cmdListaCampi_Click"), [this] {
        if (m_hooks.templateFields)
            m_hooks.templateFields(this);
    });
}

void MainWindow::cmdScelta_Click()
{
    underTrap(DistintaEditor::location("cmdScelta_Click"), [this] {
        if (m_hooks.choosePrinter && m_hooks.choosePrinter(this))
            showPrinter();
    });
}

void MainWindow::cmdOptions_Click()
{
    underTrap(DistintaEditor::location("mnuLisOpz_Click"), [this] {
        QList<lists::ColumnChoice> columns;
        for (const ListColumn &c : configuredColumns(currentSettings()))
            columns << lists::ColumnChoice{c.header, c.visible};
        lists::OptionsDialog dialog(columns, this);
        dialog.exec();
    });
}

QString MainWindow::manualPath()
{
    // Beside the program (the build tree, Windows), or among the shared data of an installed
    // package (/usr/bin/pagamenti -> /usr/share/pagamenti/manual).
    const QString dir = QCoreApplication::applicationDirPath();
    const QString beside = dir + QStringLiteral("/manual/index.html");
    const QString shared =
        QDir::cleanPath(dir + QStringLiteral("/../share/pagamenti/manual/index.html"));
    return QFileInfo::exists(beside) || !QFileInfo::exists(shared) ? beside : shared;
}

void MainWindow::cmbHelp_Click()
{
    underTrap(DistintaEditor::location("cmbHelp_Click"), [this] {
        const QString manual = manualPath();
        if (!QFileInfo::exists(manual)) {
            msgBox(QStringLiteral("Manuale non trovato: ") + QDir::toNativeSeparators(manual),
                   Buttons::Ok, Icon::Exclamation);
            return;
        }
        // In the system's browser, or in a window of the program where there is none.
        ui::DocumentWindow::open(manual, ui::DocumentWindow::Kind::Html,
                                 QStringLiteral("Manuale di Pagamenti"), this);
    });
}

void MainWindow::cmdInfo_Click()
{
    const QString text =
        QStringLiteral("<h3>Pagamenti</h3>"
                       "<p>Distinte di pagamento fornitori e file bonifici CBI<br>"
                       "Modulo della suite [orvida]</p>"
                       "<p>Versione ") +
        QStringLiteral(PAGAMENTI_VERSION) + QStringLiteral("<br>Realizzato con Qt ") +
        QString::fromLatin1(qVersion()) +
        QStringLiteral("</p><p>Programma concesso in licenza d'uso all'azienda utente della "
                       "suite, per il solo uso interno. Tutti i diritti riservati.</p>");
    QMessageBox::about(this, QStringLiteral("Informazioni su Pagamenti"), text);
}

// The row list ----------------------------------------------------------------------------
//
// The list of the distinta's rows (lvwScadenze) fills m_listArea; the right button on it opens
// mnuLista.

void MainWindow::LoadRows()
{
    m_list->LV_RefreshLista();
}

void MainWindow::CalcolaTotali()
{
    if (m_editor)
        m_editor->CalcolaTotali();
}

void MainWindow::lvwSelectRow(bool selected)
{
    m_list->lvwSelectRow(selected);
}

QStringList MainWindow::selectedRowKeys() const
{
    return m_list->selectedRowKeys();
}

void MainWindow::deselectRows()
{
    lvwSelectRow(false);
}

bool MainWindow::hasListColumn(const QString &header) const
{
    return m_list->hasListColumn(header);
}

int MainWindow::listRowCount() const
{
    return m_list->listRowCount();
}

QString MainWindow::currentRowKey() const
{
    return m_list->currentRowKey();
}

// The selection of due items ---------------------------------------------------------------

std::optional<SelectionResult> MainWindow::showSelectionDialog()
{
    if (!m_hooks.selectDueItems)
        return std::nullopt;
    return m_hooks.selectDueItems(this);
}

void MainWindow::addSelectedDueItems(distinta::Distinta &distinta)
{
    if (m_hooks.addSelectedDueItems)
        m_hooks.addSelectedDueItems(distinta);
}

// DistintaView ------------------------------------------------------------------------------

void MainWindow::setManagementButton(int index, bool enabled)
{
    QToolButton *button = m_btnGestione.at(index);
    button->setEnabled(enabled);
    button->setIcon(ui::toolbarImage(enabled ? index + 1 : index + 7));
}

void MainWindow::BindControls()
{
    const bool loaded = m_editor && m_editor->hasDistinta();
    for (int index : DistintaEditor::boundFields()) {
        ui::CodeLineEdit *field = m_txtTestata[index];
        field->setText(loaded ? m_editor->headerText(index) : QString());
        field->setReadOnly(!loaded || !m_editor->isHeaderFieldEditable(index));
    }
    if (loaded) {
        const distinta::Testata &h = m_editor->distinta().header();
        m_mskData->setDate(h.dat_data_creazione);
        m_mskDataValuta->setDate(h.dat_data_valuta);
    } else {
        m_mskData->clear();
        m_mskDataValuta->clear();
    }
    m_mskData->setReadOnly(!loaded);
    m_mskDataValuta->setReadOnly(!loaded);
    m_desTipo->setText(loaded ? m_editor->txtdesTipo() : QString());
    m_desStato->setText(loaded ? m_editor->txtdesStato() : QString());
}

void MainWindow::PulisciMaschera()
{
    for (int index : DistintaEditor::boundFields())
        m_txtTestata[index]->clear();
    m_mskData->clear();
    m_mskDataValuta->clear();
    m_desTipo->clear();
    m_desStato->clear();
    m_list->LV_RefreshLista();
}

void MainWindow::setAggiungiEnabled(bool enabled)
{
    if (QToolButton *aggiungi = command(QStringLiteral("cmdAggiungi")))
        aggiungi->setEnabled(enabled);
}

void MainWindow::showTotals()
{
    const bool loaded = m_editor && m_editor->hasDistinta();
    m_txtTestata[DistintaEditor::NumeroDisp]->setText(
        loaded ? m_editor->headerText(DistintaEditor::NumeroDisp) : QString());
    m_txtTestata[DistintaEditor::ImportoTotale]->setText(loaded ? m_editor->totaleText()
                                                                : QString());
}

QString MainWindow::dateBoxText(DateBox box) const
{
    return (box == DateBox::Creazione ? m_mskData : m_mskDataValuta)->maskedText();
}

void MainWindow::setDateBoxText(DateBox box, const QString &text)
{
    (box == DateBox::Creazione ? m_mskData : m_mskDataValuta)->setMaskedText(text);
}

void MainWindow::focusDateBox(DateBox box, bool selectText)
{
    ui::MaskedDateEdit *edit = box == DateBox::Creazione ? m_mskData : m_mskDataValuta;
    edit->setFocus(Qt::OtherFocusReason);
    if (selectText)
        edit->selectAll();
}

void MainWindow::focusHeaderField(int index)
{
    if (QLineEdit *field = txtTestata(index))
        field->setFocus(Qt::OtherFocusReason);
}

std::optional<QString> MainWindow::chooseDistinta()
{
    return lists::DistinteListDialog::choose(*m_load->store(), this);
}

QString MainWindow::lookupBanksAndAgencies()
{
    if (!m_load->erp())
        return {};
    archives::LookupService service(*m_load->erp());
    return ui::LookupDialog::banksAndAgencies(service, this);
}

void MainWindow::showDueItemDetail(const archives::ErpRecord &dueItem)
{
    if (m_hooks.dueItemDetail)
        m_hooks.dueItemDetail(dueItem, this);
}

void MainWindow::showAccountDetail(const QString &code, const QString &caption,
                                   const QString &frame)
{
    if (m_hooks.accountDetail)
        m_hooks.accountDetail(code, caption, frame, this);
}

} // namespace pg::editor
