#pragma once

#include "creafiledialog.h"

#include <QDialog>

#include <functional>

class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QToolButton;
class QVBoxLayout;

namespace pg::bankfile {

// "Creazione File Bonifici": the ordering data of the distinta (shown only), the format of the
// file (the CBI XML message or the flat file), the name of the file to write, which the clerk
// may type or build by picking a folder, and the two buttons. Changing the format changes the
// extension of the proposed name. Confirming sets the result marker to "GO" and keeps the
// name as it stands; cancelling leaves the marker empty.
class frmCreaFile : public QDialog
{
    Q_OBJECT

public:
    // The folder picker: the chosen folder, or empty when it was cancelled.
    using FolderPicker = std::function<QString(QWidget *parent, const QString &title)>;

    explicit frmCreaFile(QWidget *parent = nullptr);

    void setFields(const CreaFileFields &fields);
    // The fields as the dialog gives them back: the file name as typed.
    CreaFileFields fields() const;
    // "GO" once confirmed; empty otherwise.
    const QString &resultMarker() const { return m_marker; }

    // The system's folder picker unless replaced.
    void setFolderPicker(FolderPicker picker) { m_picker = std::move(picker); }

protected:
    // Where a form that shows more puts its widgets, between the data and the buttons.
    QVBoxLayout *contentLayout() const { return m_content; }
    // Called on confirmation, after the marker and the name are set and before the dialog
    // closes.
    virtual void confirmed() {}

private:
    void cmdConferma_Click();
    void cmdBrowse_Click();
    void cboFormato_Change(int index);

    QGroupBox *m_fraDati;
    QLineEdit *m_txtCodDistinta;
    QLineEdit *m_txtdataDistinta;
    QLineEdit *m_txtCodSia;
    QLineEdit *m_txtRifMitt;
    QLineEdit *m_txtContoOrd;
    QComboBox *m_cboFormato;
    QLineEdit *m_txtFileName;
    QToolButton *m_cmdBrowse;
    QPushButton *m_cmdConferma;
    QPushButton *m_cmdAnnulla;
    QVBoxLayout *m_content;
    CreaFileFields m_fields;
    QString m_marker;
    FolderPicker m_picker;
};

} // namespace pg::bankfile
