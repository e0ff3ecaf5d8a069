#pragma once

#include "stampaform.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QListView;
class QPushButton;
class QRadioButton;
class QStringListModel;

namespace pg::ui {
class MaskedDateEdit;
}

namespace pg::printing {

// frmStampa ("STAMPA DISTINTA"): the kind of print, the presentation date, the template,
// direct printing, the totals line, detail or grouped rows, and the printer list that
// cmdScegli opens beside them. The rules live in StampaForm.
class StampaDialog : public QDialog
{
    Q_OBJECT

public:
    explicit StampaDialog(const editor::PrinterCatalog &printers, QWidget *parent = nullptr);

    StampaForm &form() { return m_form; }
    // Form_Load: see StampaForm::Form_Load.
    void load(const QString &state, bool chooseTemplate, const QStringList &templates,
              const UserSettings &settings);
    // What cmdStampa runs (LanciaStampa).
    void setLauncher(StampaForm::Launcher launcher) { m_launch = std::move(launcher); }

    void cmdScegli_Click();
    // Prints; the dialog closes once the document went out.
    void cmdStampa_Click();

    QComboBox *cmbTipo() const { return m_cmbTipo; }
    ui::MaskedDateEdit *DataInvio() const { return m_dataInvio; }
    QComboBox *cmbModelli() const { return m_cmbModelli; }
    QCheckBox *chkAutoPrint() const { return m_chkAutoPrint; }
    QCheckBox *chkTotali() const { return m_chkTotali; }
    QRadioButton *optGruppo(int index) const { return index == 0 ? m_optDettaglio : m_optRagg; }
    QPushButton *cmdScegli() const { return m_cmdScegli; }
    QGroupBox *fragestione() const { return m_fragestione; }
    QListView *lstPrinters() const { return m_lstPrinters; }
    QPushButton *cmdStampa() const { return m_cmdStampa; }
    QPushButton *cmdAnnulla() const { return m_cmdAnnulla; }

private:
    void showState();
    void takeChoices();

    StampaForm m_form;
    StampaForm::Launcher m_launch;
    QComboBox *m_cmbTipo;
    ui::MaskedDateEdit *m_dataInvio;
    QComboBox *m_cmbModelli;
    QCheckBox *m_chkAutoPrint;
    QCheckBox *m_chkTotali;
    QRadioButton *m_optDettaglio;
    QRadioButton *m_optRagg;
    QPushButton *m_cmdScegli;
    QGroupBox *m_fragestione;
    QListView *m_lstPrinters;
    QStringListModel *m_printerLines;
    QPushButton *m_cmdStampa;
    QPushButton *m_cmdAnnulla;
};

} // namespace pg::printing
