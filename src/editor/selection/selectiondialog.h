#pragma once

#include "selectionlogic.h"

#include <QDialog>

#include <array>
#include <memory>
#include <optional>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace pg::archives {
class ErpSession;
class LookupService;
} // namespace pg::archives

namespace pg::editor {

// frmDistinta ("SELEZIONE"): the selection of due items for a new distinta or for rows added
// to one. The presentation bank (fraSelBanca), the due items' range, dates, currency, payment
// type and amounts (fraSelScad), the accounts and their bank (fraSelCliFor); F4 opens the
// list of a code box, leaving a box checks it. "&Conferma" closes the dialog only when the
// selection holds, leaving the mark "X"; "&Annulla" closes it without the mark.
class SelectionDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SelectionDialog(archives::ErpSession *erp, QWidget *parent = nullptr);
    ~SelectionDialog() override;

    // Opens the dialog modally; the values of the selection when it was confirmed.
    static std::optional<SelectionValues> choose(archives::ErpSession *erp, QWidget *parent);

    SelectionLogic &logic() { return m_logic; }
    QLineEdit *box(SelectionLogic::Box box) const { return m_boxes.at(box); }
    QLineEdit *descriptionBox(SelectionLogic::Description d) const { return m_descriptions.at(d); }
    QComboBox *cmbTipo() const { return m_tipo; }
    QComboBox *cmbCliFor() const { return m_cliFor; }
    QPushButton *cmdGenera() const { return m_confirm; }
    QPushButton *cmdAnnulla() const { return m_cancel; }

    // cmdGenera: confirms when the selection holds.
    void confirm();

private:
    QLineEdit *makeCodeBox(SelectionLogic::Box box, const QString &name, QWidget *parent);
    QLineEdit *makeDateBox(SelectionLogic::Box box, const QString &name, QWidget *parent);
    QLineEdit *makeDescription(SelectionLogic::Description d, const QString &name, QWidget *parent);
    void boxLeft(SelectionLogic::Box box);
    void showForm();
    void moveFocus(SelectionLogic::Box box, bool selectText);

    std::unique_ptr<archives::LookupService> m_lookup;
    SelectionLogic m_logic;
    std::array<QLineEdit *, SelectionLogic::BoxCount> m_boxes{};
    std::array<QLineEdit *, SelectionLogic::DescriptionCount> m_descriptions{};
    QComboBox *m_tipo = nullptr;
    QComboBox *m_cliFor = nullptr;
    QPushButton *m_confirm = nullptr;
    QPushButton *m_cancel = nullptr;
    // A box just left whose check has not run yet, and the date box being checked.
    std::optional<SelectionLogic::Box> m_pendingLeave;
    std::optional<SelectionLogic::Box> m_dateLeaving;
};

} // namespace pg::editor
