#pragma once

#include "distinta/distinta.h"

#include <QString>

namespace pg::archives {
class ErpSession;
}

namespace pg::editor {

// What the clerk may change in the row list, and how a change is written into the distinta:
// only the residual amount (val_imp_residuo_val) and the description (des_scadenza) of a row,
// never in a distinta printed in final form, never the amount of a payment type that is paid
// whole, and never the amount of a due item that the suite already holds in full or in
// another distinta. Rows are found by their line key (flag and link of the due item).
class RowListRules
{
public:
    static const QString ResiduoField;     // "val_imp_residuo_val"
    static const QString DescrizioneField; // "des_scadenza"
    static const QString ResiduoHint;
    static const QString DescrizioneHint;

    explicit RowListRules(archives::ErpSession *erp = nullptr) : m_erp(erp) {}

    void setSession(archives::ErpSession *erp) { m_erp = erp; }
    void setDistinta(distinta::Distinta *d) { m_d = d; }

    static bool isEditableField(const QString &field);
    // Why a residual of zero or of the sign opposite to the due item's amount is refused.
    static QString residuoNonPagabile(double dapag);
    // The payment types paid whole: "RID", "Avviso", "Ricevuta bancaria", "Tratta".
    static bool allowsPartialAmount(const QString &tipoPag);

    // lvwScadenze_ItemClick: whether the cell of the row (by its line key) in the column (by
    // its field) may be edited, after any refusal message. *status receives the hint for the
    // status bar, when there is one.
    bool ItemClick(const QString &key, const QString &field, QString *status = nullptr);

    // lvwScadenze_changeComplete: stores the text typed in the cell. False, after any message,
    // when nothing was stored (the cell then shows its old text again).
    bool changeComplete(const QString &key, const QString &field, const QString &text);

private:
    bool itemClick(const QString &key, const QString &field, QString *status);
    bool storeResiduo(int row, const QString &text);

    archives::ErpSession *m_erp;
    distinta::Distinta *m_d = nullptr;
};

} // namespace pg::editor
