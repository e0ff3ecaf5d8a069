#pragma once

#include "bankfiledialog.h"
#include "creafiledialog.h"

class QComboBox;
class QGroupBox;
class QLineEdit;

namespace pg::bankfile {

// "Creazione File Bonifici": the ordering data of the distinta (shown only), the format of the
// file (the CBI XML message or the flat file), the name of the file to write and the two
// buttons. Changing the format changes the extension of the proposed name.
class frmCreaFile : public BankFileDialog
{
    Q_OBJECT

public:
    explicit frmCreaFile(QWidget *parent = nullptr);

    void setFields(const CreaFileFields &fields);
    // The fields as the dialog gives them back: the file name as typed.
    CreaFileFields fields() const;

private:
    void cboFormato_Change(int index);

    QGroupBox *m_fraDati;
    QLineEdit *m_txtCodDistinta;
    QLineEdit *m_txtdataDistinta;
    QLineEdit *m_txtCodSia;
    QLineEdit *m_txtRifMitt;
    QLineEdit *m_txtContoOrd;
    QComboBox *m_cboFormato;
    CreaFileFields m_fields;
};

} // namespace pg::bankfile
