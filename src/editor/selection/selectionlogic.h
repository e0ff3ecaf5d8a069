#pragma once

#include "selectionvalues.h"

#include <QString>
#include <QStringList>

#include <array>
#include <functional>

namespace pg::archives {
class ErpSession;
}

namespace pg::editor {

// The rules of the selection dialog of due items (frmDistinta), without widgets: the texts of
// its boxes, the F4 lists of the code boxes, the checks made when a box is left, and the
// confirmation, which fills the program-wide selection values and leaves the mark "X". The
// dialog shows what this holds and forwards its events here; the command line fills the same
// boxes from its options.
class SelectionLogic
{
public:
    // The boxes of the dialog, frame by frame.
    enum Box {
        // fraSelBanca: the company bank presenting the distinta (txtBancaAgenzia).
        Banca,
        Agenzia,
        // fraSelScad: the due-date range (DatadiScad), the distinta's dates (mskData,
        // mskDataValuta), the currency (txtCodValuta) and the amounts.
        DataScadDa,
        DataScadA,
        DataCreazione,
        DataValuta,
        CodValuta,
        ImpMinimo,
        ImpMassimo,
        // fraSelCliFor: the account range (txtCodAnagra_Inizio, txtCodAnagra_Fine) and the
        // bank of the customers or suppliers (txtBancaAgenziaCli).
        CodAnagraInizio,
        CodAnagraFine,
        BancaCli,
        AgenziaCli,
        BoxCount
    };

    // The read-only descriptions beside the code boxes.
    enum Description {
        DesBanca,    // the company bank
        DesValuta,   // txtDesValuta
        DesRagsoc,   // txtdes_ragsoc: the first account of the range
        DesBancaCli, // the bank and agency of the customers or suppliers
        DescriptionCount
    };

    // What the boxes hold: the dialog opens with the form of the last confirmation.
    struct Form
    {
        std::array<QString, BoxCount> texts;
        std::array<QString, DescriptionCount> descriptions;
        int tipoIndex = 10;  // "TUTTI I PAGAMENTI"
        int cliForIndex = 0; // "Fornitori"
    };

    // The F4 lists. Each returns the chosen entry, or an empty text when none was chosen:
    // company banks and list 16 give "BBBBB AAAAA" (bank in characters 1-5, agency 7-11),
    // accounts the six-character code, currencies the code.
    struct Lookups
    {
        std::function<QString()> companyBanks;
        std::function<QString()> banksAndAgencies;
        std::function<QString(bool customers)> accounts;
        std::function<QString()> currencies;
    };

    static const QString Mark; // "X": the selection was confirmed

    explicit SelectionLogic(archives::ErpSession *erp);
    SelectionLogic(archives::ErpSession *erp, const Form &start);

    // cmbTipo: the ten payment types in code order, then "TUTTI I PAGAMENTI".
    static const QStringList &tipoEntries();
    static constexpr int TuttiIPagamentiIndex = 10;
    // The suppliers/customers choice; the distinta type is the first letter of the entry.
    static const QStringList &cliForEntries();
    // How many characters a box takes.
    static int maxLength(Box box);
    static bool isDateBox(Box box);
    static bool isEmptyDate(const QString &text);
    // The text of an amount box read as the confirmation reads it (as the clerk types amounts,
    // see vb::TypedAmount). False when it is not one, or lies outside 0 to
    // SelectionValues::MaxImporto (beyond, it would overflow the cents every comparison takes).
    static bool readAmount(const QString &typed, double *value);

    const Form &form() const { return m_form; }
    QString text(Box box) const { return m_form.texts.at(box); }
    void setText(Box box, const QString &text);
    QString description(Description d) const { return m_form.descriptions.at(d); }
    int tipoIndex() const { return m_form.tipoIndex; }
    void setTipoIndex(int index);
    int cliForIndex() const { return m_form.cliForIndex; }
    void setCliForIndex(int index);
    bool customers() const { return m_form.cliForIndex == 1; }

    void setLookups(Lookups lookups) { m_lookups = std::move(lookups); }
    // Told where the focus must go after a refusal, and whether the box's text is selected.
    void setFocusHandler(std::function<void(Box, bool selectText)> handler)
    {
        m_focus = std::move(handler);
    }
    // Told whenever the logic changed a box or a description by itself.
    void setChangeHandler(std::function<void()> handler) { m_changed = std::move(handler); }

    // F4 in a code box: the box's list, and the chosen entry checked as if the box was left.
    void keyDownF4(Box box);
    // Leaving a box: formats its code and checks it against the suite's archives. False (after
    // the message, with the focus sent back) when the box may not be left.
    bool validate(Box box);
    // cmdGenera: fills the program-wide values, checks them in order and, when they hold,
    // sets the mark "X". False while the dialog must stay open.
    bool cmdGenera();

    const QString &mark() const { return m_mark; }
    bool confirmed() const { return m_mark == Mark; }
    // The values as the last confirmation (or the last attempt) filled them.
    const SelectionValues &values() const { return m_values; }

    // The form kept for the next opening of the dialog within this run of the program; the
    // distinta's dates are not kept.
    static Form &lastConfirmedForm();

private:
    bool validateCompanyBank(Box box);
    bool validateAccountBank();
    bool validateCurrency();
    bool validateAccountFrom();
    bool validateAccountTo();
    bool validateDate(Box box);
    void refuse(const QString &message, Box box, bool selectText = false);
    void setDescription(Description d, const QString &text);
    void changed();
    QString codeFormatted(Box box, QStringView pattern);
    bool amountOf(Box box, double defaultValue, double *value);
    void takeValues();

    archives::ErpSession *m_erp;
    Form m_form;
    Lookups m_lookups;
    std::function<void(Box, bool)> m_focus;
    std::function<void()> m_changed;
    SelectionValues m_values;
    QString m_mark;
};

} // namespace pg::editor
