#pragma once

#include "distintaview.h"

#include "distinta/distinta.h"

#include <QString>

#include <array>
#include <functional>

namespace pg::archives {
class ErpSession;
}
namespace pg::distinta {
class DistinteStore;
}

namespace pg::editor {

// The rules of the main window over the current distinta, without widgets: the six
// management commands and their masks, what the states "P", "D" and "F" forbid or ask, the
// header fields and date boxes with their checks, the company bank block, the totals and the
// closing checks. The window forwards its events here and shows what this decides.
class DistintaEditor
{
public:
    // Indices of the management buttons (btnGestione).
    enum Button { Nuova = 0, Apri = 1, Salva = 2, Elimina = 3, Successiva = 4, Precedente = 5 };

    // Indices of the header fields (txtTestata); 5 is not bound.
    enum Field {
        CodDistinta = 0,
        CodSia = 1,
        AbiBanca = 2,
        DesBanAzi = 3,
        CabBanca = 4,
        Riferimenti = 6,
        ContoOrdinante = 7,
        NumeroDisp = 8,
        ImportoTotale = 9,
        Tipo = 10,
        Stato = 11,
        CodiceAbi = 12,
        CodiceCab = 13,
        CodValuta = 14,
        DesValuta = 15,
    };
    static const QList<int> &boundFields();

    // Where a validation leaves the focus.
    enum class Leave { Accept, KeepFocus, KeepFocusSelected };

    static const QString Refused;    // state "D": no change of any kind
    static const QString SavePrompt; // before any command with unsaved changes
    static constexpr int ButtonCount = 6;
    // The location the error trap names for a procedure of the window ("frmMain!Sub X()").
    static QString location(const char *procedure);

    DistintaEditor(distinta::DistinteStore &store, archives::ErpSession *erp, DistintaView &view);

    const distinta::Distinta &distinta() const { return m_d; }
    distinta::Distinta &distinta() { return m_d; }
    bool hasDistinta() const { return m_d.hasHeader(); }
    // flg_stato of the current header ("" without a distinta).
    QString state() const;
    bool isDefinitiva() const { return state() == u"D"; }

    // SetBtnGestione: applies a six-letter mask of "Y" and "N".
    void SetBtnGestione(const QString &mask);
    const QString &mask() const { return m_mask; }
    bool buttonEnabled(int index) const { return m_enabled.at(index); }
    // The save button's state is the flag of unsaved changes.
    bool hasUnsavedChanges() const { return m_enabled.at(Salva); }

    // btnGestione_ClickED: the management command of a button. False when it was cancelled
    // (the save was declined from the save button itself, or the save did not succeed).
    bool btnGestione_ClickED(int index);

    // Header fields: the text a field shows, whether the clerk can type into it, and the
    // text typed (bound to its header column).
    QString headerText(int index) const;
    bool isHeaderFieldEditable(int index) const;
    void setHeaderText(int index, const QString &text);
    QString txtdesTipo() const;
    QString txtdesStato() const;
    // The total shown beside "TOT. DISTINTA", formatted "#,0.00".
    QString totaleText() const;

    // A key that would change a header field or a date box: refused in state "D" (with its
    // message), otherwise it marks the distinta changed. True when the key may go on.
    bool headerKeyPress();
    bool dateKeyPress();
    // The mask after a change: "YYYYYY" for a distinta already in the database, "YYYNYY" for
    // one that is not (unless the mask already is "YYYYYY").
    void markChanged();

    // Leaving a date box with its text (a two-digit year already completed by the box).
    Leave validateDate(DateBox box, const QString &text);
    // ControllaDate: both date boxes filled; otherwise its message and the focus on the box.
    bool ControllaDate();
    // A further check of the dates typed, switched on by the program when it wants one.
    void setFurtherDateCheck(std::function<bool(const QDate &)> check)
    {
        m_furtherDateCheck = std::move(check);
    }

    // F4 in the company bank (2) or agency (4) field.
    void headerF4(int index);
    // Leaving the company bank (2) or agency (4) field.
    void validateBankField(int index);
    // AggiornaBancaAzienda: the bank block of the header from the company's bank records;
    // true when the bank was found.
    bool AggiornaBancaAzienda();
    // AggiornaFlagStato: after a final print, the distinta becomes "D", is saved and read
    // again.
    void AggiornaFlagStato();
    // CalcolaTotali: the header's total and number of dispositions from the rows.
    void CalcolaTotali();

    // Form_QueryUnload: whether the window may close now.
    bool Form_QueryUnload();

    // The row commands: adding due items (cmdAggiungi) and removing the selected rows
    // (cmdElRiga_Click), with their state checks.
    void cmdAggiungi_Click();
    void cmdElRiga_Click();
    // The detail views of the current row's due item and account.
    void cmdZoom_Click();
    void cmdZoomCli_Click();
    // The print command: false (after "Distinta non ancora salvata") while there are unsaved
    // changes; true when the print dialog may open.
    bool cmdStSolle_Click();

    // Whether the distinta (by its number) is already in the database.
    bool existsInDatabase() const;

private:
    // A date box's text that holds no date: empty, or the mask's blanks.
    static bool isEmptyDateText(const QString &text);
    void bindLoaded();
    void maskForLoaded();
    void clearToEmpty(const QString &mask);
    bool askSaveFirst(int index, bool *cancelled);
    bool rowChangeAllowed(const QString &question);

    distinta::DistinteStore *m_store;
    archives::ErpSession *m_erp;
    DistintaView *m_view;
    distinta::Distinta m_d;
    QString m_mask;
    std::array<bool, ButtonCount> m_enabled{};
    std::function<bool(const QDate &)> m_furtherDateCheck;
};

} // namespace pg::editor
