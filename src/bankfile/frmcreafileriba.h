#pragma once

#include "bankfiledialog.h"
#include "ribafiledialog.h"

class QCheckBox;
class QLineEdit;

namespace pg::bankfile {

// "Creazione File RiBa": the distinta, its date (the presentation date) and its presenting
// bank (shown only), the company's SIA code, the choice of grouping the due items of one
// customer and one due date into one receivable, the name of the file to write and the two
// buttons.
class frmCreaFileRiba : public BankFileDialog
{
    Q_OBJECT

public:
    explicit frmCreaFileRiba(QWidget *parent = nullptr);

    void setFields(const RibaFileFields &fields);
    // The fields as the dialog gives them back: the SIA code, the grouping and the file name
    // as the clerk left them.
    RibaFileFields fields() const;

private:
    QLineEdit *m_txtCodDistinta;
    QLineEdit *m_txtdataDistinta;
    QLineEdit *m_txtBanca;
    QLineEdit *m_txtCodSia;
    QCheckBox *m_chkRaggruppa;
    RibaFileFields m_fields;
};

} // namespace pg::bankfile
