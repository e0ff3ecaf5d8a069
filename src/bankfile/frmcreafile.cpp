#include "frmcreafile.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace pg::bankfile {

frmCreaFile::frmCreaFile(QWidget *parent) : BankFileDialog(parent)
{
    setObjectName(QStringLiteral("frmCreaFile"));
    setWindowTitle(QStringLiteral("Creazione File Bonifici"));

    m_fraDati = new QGroupBox(this);
    m_fraDati->setObjectName(QStringLiteral("fraDati"));
    m_txtCodDistinta = shownOnly(QStringLiteral("txtCodDistinta"), m_fraDati);
    m_txtdataDistinta = shownOnly(QStringLiteral("txtdataDistinta"), m_fraDati);
    m_txtCodSia = shownOnly(QStringLiteral("txtCodSia"), m_fraDati);
    m_txtRifMitt = shownOnly(QStringLiteral("txtRifMitt"), m_fraDati);
    m_txtContoOrd = shownOnly(QStringLiteral("txtContoOrd"), m_fraDati);
    auto *numero = new QHBoxLayout;
    numero->addWidget(m_txtCodDistinta);
    numero->addWidget(m_txtdataDistinta);
    auto *dati = new QFormLayout(m_fraDati);
    dati->addRow(QStringLiteral("Distinta N."), numero);
    dati->addRow(QStringLiteral("Codice SIA:"), m_txtCodSia);
    dati->addRow(QStringLiteral("Riferimenti Mittente"), m_txtRifMitt);
    dati->addRow(QStringLiteral("Conto Ordinante"), m_txtContoOrd);
    dataLayout()->addWidget(m_fraDati);

    // In the order of BankFileFormat. Alt+F reaches the choice, the arrow keys change it.
    m_cboFormato = new QComboBox(this);
    m_cboFormato->setObjectName(QStringLiteral("cboFormato"));
    m_cboFormato->addItems(
        {QStringLiteral("CBI XML (SEPA)"), QStringLiteral("CBI flat (Bonifici)")});
    m_cboFormato->setToolTip(
        QStringLiteral("CBI XML (SEPA): il messaggio XML dei bonifici SEPA che le banche "
                       "accettano oggi; CBI flat (Bonifici): il file a record fissi"));
    auto *lblFormato = new QLabel(QStringLiteral("&Formato:"), this);
    lblFormato->setObjectName(QStringLiteral("lblFormato"));
    lblFormato->setBuddy(m_cboFormato);
    auto *formato = new QHBoxLayout;
    formato->addWidget(lblFormato);
    formato->addWidget(m_cboFormato, 1);
    optionsLayout()->addLayout(formato);

    connect(m_cboFormato, &QComboBox::activated, this, &frmCreaFile::cboFormato_Change);
    moveFileAndButtonsLast();
}

void frmCreaFile::setFields(const CreaFileFields &fields)
{
    m_fields = fields;
    m_txtCodDistinta->setText(fields.codDistinta);
    m_txtdataDistinta->setText(fields.dataDistinta);
    m_txtCodSia->setText(fields.codSia);
    m_txtRifMitt->setText(fields.rifMitt);
    m_txtContoOrd->setText(fields.contoOrd);
    setFileName(fields.fileName);
    setFileTag(fields.fileTag);
    m_cboFormato->setCurrentIndex(int(fields.format));
}

CreaFileFields frmCreaFile::fields() const
{
    CreaFileFields fields = m_fields;
    fields.fileName = fileName();
    return fields;
}

void frmCreaFile::cboFormato_Change(int index)
{
    m_fields.fileName = fileName();
    m_fields.switchFormat(BankFileFormat(index));
    setFileName(m_fields.fileName);
    setFileTag(m_fields.fileTag);
}

} // namespace pg::bankfile
