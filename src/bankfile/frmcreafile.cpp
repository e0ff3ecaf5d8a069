#include "frmcreafile.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace pg::bankfile {

namespace {

QLineEdit *shownOnly(const QString &name, QWidget *parent)
{
    auto *edit = new QLineEdit(parent);
    edit->setObjectName(name);
    edit->setReadOnly(true);
    return edit;
}

} // namespace

frmCreaFile::frmCreaFile(QWidget *parent)
    : QDialog(parent), m_picker([](QWidget *owner, const QString &title) {
        return QFileDialog::getExistingDirectory(owner, title, QString(),
                                                 QFileDialog::ShowDirsOnly);
    })
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

    m_txtFileName = new QLineEdit(this);
    m_txtFileName->setObjectName(QStringLiteral("txtFileName"));
    m_txtFileName->setMinimumWidth(360);
    m_cmdBrowse = new QToolButton(this);
    m_cmdBrowse->setObjectName(QStringLiteral("cmdBrowse"));
    m_cmdBrowse->setText(QStringLiteral("..."));
    auto *file = new QHBoxLayout;
    file->addWidget(new QLabel(QStringLiteral("Nome File:"), this));
    file->addWidget(m_txtFileName, 1);
    file->addWidget(m_cmdBrowse);

    m_cmdConferma = new QPushButton(QStringLiteral("&Conferma"), this);
    m_cmdConferma->setObjectName(QStringLiteral("cmdConferma"));
    m_cmdConferma->setDefault(true);
    m_cmdAnnulla = new QPushButton(QStringLiteral("&Annulla"), this);
    m_cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_cmdConferma);
    buttons->addWidget(m_cmdAnnulla);

    m_content = new QVBoxLayout;
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_fraDati);
    layout->addLayout(m_content, 1);
    layout->addLayout(formato);
    layout->addLayout(file);
    layout->addLayout(buttons);

    connect(m_cmdConferma, &QPushButton::clicked, this, &frmCreaFile::cmdConferma_Click);
    connect(m_cmdAnnulla, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_cmdBrowse, &QToolButton::clicked, this, &frmCreaFile::cmdBrowse_Click);
    connect(m_cboFormato, &QComboBox::activated, this, &frmCreaFile::cboFormato_Change);
}

void frmCreaFile::setFields(const CreaFileFields &fields)
{
    m_fields = fields;
    m_txtCodDistinta->setText(fields.codDistinta);
    m_txtdataDistinta->setText(fields.dataDistinta);
    m_txtCodSia->setText(fields.codSia);
    m_txtRifMitt->setText(fields.rifMitt);
    m_txtContoOrd->setText(fields.contoOrd);
    m_txtFileName->setText(fields.fileName);
    m_cboFormato->setCurrentIndex(int(fields.format));
}

CreaFileFields frmCreaFile::fields() const
{
    CreaFileFields fields = m_fields;
    fields.fileName = m_txtFileName->text();
    return fields;
}

void frmCreaFile::cmdConferma_Click()
{
    m_marker = CreaFileDialog::confirmed();
    m_fields.fileName = m_txtFileName->text();
    confirmed();
    accept();
}

void frmCreaFile::cboFormato_Change(int index)
{
    m_fields.fileName = m_txtFileName->text();
    m_fields.switchFormat(BankFileFormat(index));
    m_txtFileName->setText(m_fields.fileName);
}

void frmCreaFile::cmdBrowse_Click()
{
    // The folder picked, followed by the bare name of the file ("/CBI_12.txt"). A root folder
    // already ends in a separator, which then appears twice; the systems read such a name as
    // the same file.
    const QString folder = m_picker(this, QStringLiteral("SELEZIONA CARTELLA"));
    if (!folder.isEmpty())
        m_txtFileName->setText(folder.trimmed() + m_fields.fileTag);
}

} // namespace pg::bankfile
