#include "stampadialog.h"

#include "startup/errortrap.h"
#include "ui/maskeddateedit.h"
#include "ui/waitcursor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QStringListModel>
#include <QVBoxLayout>

namespace pg::printing {

namespace {

QString location(const char *procedure)
{
    return QStringLiteral("frmStampa!Sub ") + QString::fromLatin1(procedure) + QStringLiteral("()");
}

} // namespace

StampaDialog::StampaDialog(const editor::PrinterCatalog &printers, QWidget *parent)
    : QDialog(parent), m_form(printers)
{
    setObjectName(QStringLiteral("frmStampa"));
    setWindowTitle(QStringLiteral("STAMPA DISTINTA"));

    auto *choices = new QWidget(this);
    auto *form = new QFormLayout;
    m_cmbTipo = new QComboBox(choices);
    m_cmbTipo->setObjectName(QStringLiteral("cmbTipo"));
    m_cmbTipo->addItems(StampaForm::tipoItems());
    form->addRow(QStringLiteral("Tipo Stampa:"), m_cmbTipo);
    m_dataInvio = new ui::MaskedDateEdit(choices);
    m_dataInvio->setObjectName(QStringLiteral("DataInvio"));
    m_dataInvio->setToolTip(QStringLiteral("Inserire la data di invio del sollecito (verrà "
                                           "riportata in stampa) ( d = Data odierna)"));
    m_dataInvio->setAdvanceAfterToday(false);
    form->addRow(QStringLiteral("Data Presentazione:"), m_dataInvio);
    m_cmbModelli = new QComboBox(choices);
    m_cmbModelli->setObjectName(QStringLiteral("cmbModelli"));
    m_cmbModelli->setToolTip(QStringLiteral("Lista dei modelli di solleciti"));
    form->addRow(QStringLiteral("Scelta Modello:"), m_cmbModelli);

    m_chkAutoPrint = new QCheckBox(QStringLiteral("Invia direttamente alla stampante"), choices);
    m_chkAutoPrint->setObjectName(QStringLiteral("chkAutoPrint"));
    m_chkAutoPrint->setToolTip(QStringLiteral("Avvia automaticamente la stampa di Word"));
    m_chkTotali = new QCheckBox(QStringLiteral("Stampa Riga Totali"), choices);
    m_chkTotali->setObjectName(QStringLiteral("chkTotali"));
    auto *gruppo = new QGroupBox(choices);
    auto *gruppoLayout = new QHBoxLayout(gruppo);
    m_optDettaglio = new QRadioButton(QStringLiteral("Scad. in Dettaglio"), gruppo);
    m_optDettaglio->setObjectName(QStringLiteral("optGruppo0"));
    m_optRagg = new QRadioButton(QStringLiteral("Scad. Raggruppate"), gruppo);
    m_optRagg->setObjectName(QStringLiteral("optGruppo1"));
    gruppoLayout->addWidget(m_optDettaglio);
    gruppoLayout->addWidget(m_optRagg);

    m_cmdScegli = new QPushButton(QStringLiteral("Stampante=>>"), choices);
    m_cmdScegli->setObjectName(QStringLiteral("cmdScegli"));
    m_cmdScegli->setAutoDefault(false);
    m_cmdStampa = new QPushButton(QStringLiteral("&Stampa"), choices);
    m_cmdStampa->setObjectName(QStringLiteral("cmdStampa"));
    m_cmdStampa->setDefault(true);
    m_cmdAnnulla = new QPushButton(QStringLiteral("&Annulla"), choices);
    m_cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));
    m_cmdAnnulla->setAutoDefault(false);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_cmdScegli);
    buttons->addStretch(1);
    buttons->addWidget(m_cmdStampa);
    buttons->addWidget(m_cmdAnnulla);

    auto *choicesLayout = new QVBoxLayout(choices);
    choicesLayout->setContentsMargins(0, 0, 0, 0);
    choicesLayout->addLayout(form);
    choicesLayout->addWidget(m_chkAutoPrint);
    choicesLayout->addWidget(m_chkTotali);
    choicesLayout->addWidget(gruppo);
    choicesLayout->addStretch(1);
    choicesLayout->addLayout(buttons);

    m_fragestione = new QGroupBox(QStringLiteral("Stampanti installate"), this);
    m_fragestione->setObjectName(QStringLiteral("fragestione"));
    auto *printerLayout = new QVBoxLayout(m_fragestione);
    m_lstPrinters = new QListView(m_fragestione);
    m_lstPrinters->setObjectName(QStringLiteral("lstPrinters"));
    QFont courier(QStringLiteral("Courier New"));
    courier.setStyleHint(QFont::Monospace);
    m_lstPrinters->setFont(courier);
    m_lstPrinters->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_lstPrinters->setSelectionMode(QAbstractItemView::SingleSelection);
    m_printerLines = new QStringListModel(this);
    m_lstPrinters->setModel(m_printerLines);
    m_lstPrinters->setMinimumWidth(360);
    printerLayout->addWidget(m_lstPrinters);

    auto *layout = new QHBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(choices);
    layout->addWidget(m_fragestione);

    connect(m_cmdScegli, &QPushButton::clicked, this, &StampaDialog::cmdScegli_Click);
    connect(m_cmdStampa, &QPushButton::clicked, this, &StampaDialog::cmdStampa_Click);
    connect(m_cmdAnnulla, &QPushButton::clicked, this, &QDialog::reject);
    showState();
}

void StampaDialog::load(const QString &state, bool chooseTemplate, const QStringList &templates,
                        const UserSettings &settings)
{
    underTrap(location("Form_Load"), [&] {
        m_form.Form_Load(state, chooseTemplate, templates, settings);
        showState();
    });
}

void StampaDialog::takeChoices()
{
    m_form.setTipoIndex(m_cmbTipo->currentIndex());
    m_form.setDataInvio(m_dataInvio->maskedText());
    m_form.setModelloIndex(m_cmbModelli->currentIndex());
    m_form.setAutoPrint(m_chkAutoPrint->isChecked());
    m_form.setTotali(m_chkTotali->isChecked());
    m_form.setGrouped(m_optRagg->isChecked());
    const QModelIndex selected = m_lstPrinters->currentIndex();
    m_form.setSelectedPrinter(selected.isValid() ? selected.row() : -1);
}

void StampaDialog::showState()
{
    m_cmbTipo->setCurrentIndex(m_form.tipoIndex());
    m_cmbTipo->setEnabled(m_form.tipoEnabled());
    m_dataInvio->setMaskedText(m_form.dataInvio());
    m_cmbModelli->clear();
    m_cmbModelli->addItems(m_form.modelli());
    m_cmbModelli->setCurrentIndex(m_form.modelloIndex());
    m_cmbModelli->setEnabled(m_form.modelliEnabled());
    m_chkAutoPrint->setChecked(m_form.autoPrint());
    m_chkTotali->setChecked(m_form.totali());
    (m_form.grouped() ? m_optRagg : m_optDettaglio)->setChecked(true);
    m_cmdScegli->setProperty("tag", m_form.scegliTag());
    if (m_form.isWide()) {
        m_printerLines->setStringList(m_form.printers().lines());
        const int selected = m_form.selectedPrinter();
        m_lstPrinters->setCurrentIndex(selected >= 0 ? m_printerLines->index(selected)
                                                     : QModelIndex());
    }
    m_fragestione->setVisible(m_form.isWide());
}

void StampaDialog::cmdScegli_Click()
{
    underTrap(location("cmdScegli_Click"), [this] {
        takeChoices();
        const bool filling = m_form.scegliTag() != StampaForm::setTag();
        std::optional<ui::WaitCursor> busy;
        if (filling)
            busy.emplace();
        m_form.cmdScegli_Click();
        showState();
    });
}

void StampaDialog::cmdStampa_Click()
{
    bool printed = false;
    underTrap(location("cmdStampa_Click"), [this, &printed] {
        if (!m_dataInvio->validateNow())
            return;
        takeChoices();
        const StampaForm::Launcher nothing = [](const PrintOptions &) { return false; };
        printed = m_form.cmdStampa_Click(m_launch ? m_launch : nothing);
        showState();
        if (!m_form.presentationDateValid())
            m_dataInvio->setFocus();
    });
    if (printed)
        accept();
}

} // namespace pg::printing
