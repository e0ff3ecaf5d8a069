#include "bankfiledialog.h"

#include "creafiledialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace pg::bankfile {

BankFileDialog::BankFileDialog(QWidget *parent)
    : QDialog(parent), m_picker([](QWidget *owner, const QString &title, const QString &start) {
        // The program's own dialog rather than the desktop's: its texts in Italian, with the
        // program's translations, whatever the desktop speaks.
        QFileDialog dialog(owner, title, start);
        dialog.setFileMode(QFileDialog::Directory);
        dialog.setOptions(QFileDialog::ShowDirsOnly | QFileDialog::DontUseNativeDialog);
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
            return QString();
        return dialog.selectedFiles().first();
    })
{
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

    m_data = new QVBoxLayout;
    m_content = new QVBoxLayout;
    m_options = new QVBoxLayout;
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(m_data);
    layout->addLayout(m_content, 1);
    layout->addLayout(m_options);
    layout->addLayout(file);
    layout->addLayout(buttons);

    connect(m_cmdConferma, &QPushButton::clicked, this, &BankFileDialog::cmdConferma_Click);
    connect(m_cmdAnnulla, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_cmdBrowse, &QToolButton::clicked, this, &BankFileDialog::cmdBrowse_Click);
}

QLineEdit *BankFileDialog::shownOnly(const QString &name, QWidget *parent)
{
    auto *edit = new QLineEdit(parent);
    edit->setObjectName(name);
    edit->setReadOnly(true);
    return edit;
}

void BankFileDialog::moveFileAndButtonsLast()
{
    QWidget *previous = previousInFocusChain();
    for (QWidget *widget :
         {static_cast<QWidget *>(m_txtFileName), static_cast<QWidget *>(m_cmdBrowse),
          static_cast<QWidget *>(m_cmdConferma), static_cast<QWidget *>(m_cmdAnnulla)}) {
        if (previous != widget)
            setTabOrder(previous, widget);
        previous = widget;
    }
}

QString BankFileDialog::proposedFolder() const
{
    QString folder = QFileInfo(QDir::fromNativeSeparators(fileName().trimmed())).absolutePath();
    while (!QFileInfo(folder).isDir() && !QDir(folder).isRoot())
        folder = QFileInfo(folder).path();
    return QFileInfo(folder).isDir() ? folder : QDir::homePath();
}

void BankFileDialog::setFileName(const QString &name)
{
    m_txtFileName->setText(name);
}

QString BankFileDialog::fileName() const
{
    return m_txtFileName->text();
}

void BankFileDialog::cmdConferma_Click()
{
    m_marker = CreaFileDialog::confirmed();
    confirmed();
    accept();
}

void BankFileDialog::cmdBrowse_Click()
{
    // The folder picked, followed by the bare name of the file ("/CBI_12.txt"). A root folder
    // already ends in a separator, which then appears twice; the systems read such a name as
    // the same file.
    const QString folder = m_picker(this, QStringLiteral("SELEZIONA CARTELLA"), proposedFolder());
    if (!folder.isEmpty())
        m_txtFileName->setText(folder.trimmed() + m_fileTag);
}

} // namespace pg::bankfile
