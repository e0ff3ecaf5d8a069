#pragma once

#include "printerlist.h"
#include "printoptions.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace pg {
struct UserSettings;
}

namespace pg::printing {

// What the print dialog (frmStampa, "STAMPA DISTINTA") decides, without widgets: the kind of
// print and the "D" rule, the presentation date, the template list, the totals and grouping
// choices, the two-step printer list driven by the tag of cmdScegli, and the start of the
// print. The dialog shows this state and forwards the clerk's clicks and keys.
class StampaForm
{
public:
    // LanciaStampa: runs the print with the options; true when the document went out.
    using Launcher = std::function<bool(const PrintOptions &options)>;

    static const QStringList &tipoItems(); // "Prova", "Definitiva"
    static QString setTag() { return QStringLiteral("SET"); }
    static const QString InvalidDate;

    explicit StampaForm(const editor::PrinterCatalog &printers);

    // Form_Load and Form_Activate: narrow, "Prova" (for a distinta in state "D" only
    // "Definitiva", not changeable), today's presentation date, the template list, direct
    // printing and grouping as the clerk's settings have them.
    // chooseTemplate: the main window's "Seleziona Modello"; templates: every template.
    void Form_Load(const QString &state, bool chooseTemplate, const QStringList &templates,
                   const UserSettings &settings);

    // cmbTipo
    int tipoIndex() const { return m_tipo; }
    void setTipoIndex(int index);
    QString tipoText() const { return tipoItems().value(m_tipo); }
    bool tipoEnabled() const { return m_tipoEnabled; }

    // DataInvio: the box's text as the clerk sees it ("__/__/____" when empty).
    QString dataInvio() const { return m_dataInvio; }
    void setDataInvio(const QString &text) { m_dataInvio = text; }
    // DataInvio_KeyPress: "d" or "D" puts today's date in the box; true when the key was
    // taken that way.
    bool DataInvio_KeyPress(QChar key);

    // cmbModelli, filled by FillComboModelli: with "Seleziona Modello" every template and
    // the clerk chooses; without it only the default one.
    void FillComboModelli(const QStringList &templates, bool chooseTemplate);
    const QStringList &modelli() const { return m_modelli; }
    int modelloIndex() const { return m_modello; }
    void setModelloIndex(int index);
    bool modelliEnabled() const { return m_modelliEnabled; }

    bool autoPrint() const { return m_autoPrint; }
    void setAutoPrint(bool on) { m_autoPrint = on; }
    bool totali() const { return m_totali; }
    void setTotali(bool on) { m_totali = on; }
    // optGruppo: false "Scad. in Dettaglio", true "Scad. Raggruppate".
    bool grouped() const { return m_grouped; }
    void setGrouped(bool on) { m_grouped = on; }

    // cmdScegli: the first click fills the printer list, selects the printer in use and
    // widens the dialog (tag "SET"); the next one makes the selected printer the one in use
    // and narrows the dialog again.
    void cmdScegli_Click();
    const QString &scegliTag() const { return m_tag; }
    bool isWide() const { return m_wide; }
    const PrinterList &printers() const { return m_printers; }
    int selectedPrinter() const { return m_selectedPrinter; }
    void setSelectedPrinter(int index) { m_selectedPrinter = index; }

    // The presentation date is empty or a real day.
    bool presentationDateValid() const;
    // The options of the print as chosen; definitive from the first letter of cmbTipo.
    PrintOptions options() const;
    // cmdStampa: an open printer list first gives its selected printer; then the print runs
    // (LanciaStampa) and the dialog is narrow again with its tag reset. False, without
    // printing, when the presentation date is not a date (after its message); otherwise
    // whether the document went out.
    bool cmdStampa_Click(const Launcher &lanciaStampa);

private:
    void closePrinterList();

    PrinterList m_printers;
    int m_tipo = 0;
    bool m_tipoEnabled = true;
    QString m_dataInvio;
    QStringList m_modelli;
    int m_modello = -1;
    bool m_modelliEnabled = false;
    bool m_autoPrint = false;
    bool m_totali = false;
    bool m_grouped = false;
    QString m_tag;
    bool m_wide = false;
    int m_selectedPrinter = -1;
};

} // namespace pg::printing
