#include "frmcreafileriba.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace pg::bankfile {

frmCreaFileRiba::frmCreaFileRiba(QWidget *parent) : BankFileDialog(parent)
{
    setObjectName(QStringLiteral("frmCreaFileRiba"));
    setWindowTitle(QStringLiteral("Creazione File RiBa"));

    auto *fraDati = new QGroupBox(this);
    fraDati->setObjectName(QStringLiteral("fraDati"));
    m_txtCodDistinta = shownOnly(QStringLiteral("txtCodDistinta"), fraDati);
    m_txtdataDistinta = shownOnly(QStringLiteral("txtdataDistinta"), fraDati);
    m_txtdataDistinta->setToolTip(QStringLiteral("Data della distinta: la data di presentazione "
                                                 "delle ricevute in banca"));
    m_txtBanca = shownOnly(QStringLiteral("txtBanca"), fraDati);
    m_txtCodSia = new QLineEdit(fraDati);
    m_txtCodSia->setObjectName(QStringLiteral("txtCodSia"));
    m_txtCodSia->setToolTip(QStringLiteral("Codice SIA dell'azienda: 5 lettere o cifre, "
                                           "assegnato dalla banca"));
    auto *numero = new QHBoxLayout;
    numero->addWidget(m_txtCodDistinta);
    numero->addWidget(m_txtdataDistinta);
    auto *dati = new QFormLayout(fraDati);
    dati->addRow(QStringLiteral("Distinta N."), numero);
    dati->addRow(QStringLiteral("Banca di presentazione:"), m_txtBanca);
    dati->addRow(QStringLiteral("Codice &SIA:"), m_txtCodSia);
    dataLayout()->addWidget(fraDati);

    m_chkRaggruppa = new QCheckBox(
        QStringLiteral("&Raggruppa in una ricevuta le scadenze dello stesso cliente con la "
                       "stessa data di scadenza"),
        this);
    m_chkRaggruppa->setObjectName(QStringLiteral("chkRaggruppa"));
    optionsLayout()->addWidget(m_chkRaggruppa);

    moveFileAndButtonsLast();
    m_txtCodSia->setFocus();
}

void frmCreaFileRiba::setFields(const RibaFileFields &fields)
{
    m_fields = fields;
    m_txtCodDistinta->setText(fields.codDistinta);
    m_txtdataDistinta->setText(fields.dataDistinta);
    m_txtBanca->setText(fields.banca);
    m_txtCodSia->setText(fields.codSia);
    m_chkRaggruppa->setChecked(fields.raggruppa);
    setFileName(fields.fileName);
    setFileTag(fields.fileTag);
}

RibaFileFields frmCreaFileRiba::fields() const
{
    RibaFileFields fields = m_fields;
    fields.codSia = m_txtCodSia->text().trimmed().toUpper();
    fields.raggruppa = m_chkRaggruppa->isChecked();
    fields.fileName = fileName();
    return fields;
}

} // namespace pg::bankfile
