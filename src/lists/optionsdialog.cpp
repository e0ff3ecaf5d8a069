#include "optionsdialog.h"

#include "startup/errortrap.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFontDialog>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace pg::lists {

OptionsDialog::OptionsDialog(const QList<ColumnChoice> &columns, QWidget *parent)
    : QDialog(parent), m_form(currentSettings(), columns), m_tabs(new QTabWidget(this))
{
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Opzioni"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs, 1);

    // "Editor di Stampa"
    auto *editorTab = new QWidget(m_tabs);
    auto *editorLayout = new QVBoxLayout(editorTab);
    auto *program =
        new QGroupBox(QStringLiteral("Programma da utilizzare per la stampa"), editorTab);
    auto *programLayout = new QGridLayout(program);
    m_optWord =
        new QRadioButton(QStringLiteral("Microsoft Word 97/2000 (utilizza modelli .dot)"), program);
    m_optWord->setObjectName(QStringLiteral("optEditor0"));
    m_optOther = new QRadioButton(
        QStringLiteral("Altro: indicare percorso (utilizza modelli .rtf)"), program);
    m_optOther->setObjectName(QStringLiteral("optEditor1"));
    m_path = new QLineEdit(program);
    m_path->setObjectName(QStringLiteral("txtPathEditor"));
    m_browse = new QPushButton(QStringLiteral("..."), program);
    m_browse->setObjectName(QStringLiteral("cmdBrowse"));
    m_browse->setToolTip(QStringLiteral("Seleziona il programma di stampa"));
    m_browse->setAutoDefault(false);
    programLayout->addWidget(m_optWord, 0, 0, 1, 2);
    programLayout->addWidget(m_optOther, 1, 0, 1, 2);
    programLayout->addWidget(m_path, 2, 0);
    programLayout->addWidget(m_browse, 2, 1);
    editorLayout->addWidget(program);
    m_autoPrint = new QCheckBox(QStringLiteral("Invia direttamente alla stampante"), editorTab);
    m_autoPrint->setObjectName(QStringLiteral("chkAutoPrint"));
    editorLayout->addWidget(m_autoPrint);
    editorLayout->addStretch(1);
    const int editorIndex = m_tabs->addTab(editorTab, QStringLiteral("Editor di Stampa"));
    m_tabs->setTabToolTip(editorIndex,
                          QStringLiteral("Imposta il programma da utilizzare per la stampa"));

    // "Opzioni Lista"
    auto *listTab = new QWidget(m_tabs);
    auto *listLayout = new QGridLayout(listTab);
    auto *font = new QGroupBox(QStringLiteral("Carattere in uso:"), listTab);
    auto *fontLayout = new QHBoxLayout(font);
    m_fontName = new QLabel(font);
    m_fontName->setObjectName(QStringLiteral("lblFontName"));
    m_fontSize = new QLabel(font);
    m_fontSize->setObjectName(QStringLiteral("lblFontSize"));
    auto *cmdFont = new QPushButton(QStringLiteral("&Carattere..."), font);
    cmdFont->setObjectName(QStringLiteral("cmdFont"));
    cmdFont->setAutoDefault(false);
    fontLayout->addWidget(m_fontName, 1);
    fontLayout->addWidget(m_fontSize);
    fontLayout->addWidget(cmdFont);
    listLayout->addWidget(font, 0, 0);
    m_saveOnExit = new QCheckBox(QStringLiteral("Salva posizione colonne all'uscita."), listTab);
    m_saveOnExit->setObjectName(QStringLiteral("chkSaveOnExit"));
    listLayout->addWidget(m_saveOnExit, 1, 0);
    m_raggruppa = new QCheckBox(QStringLiteral("Raggruppa Scadenze per For./Banca"), listTab);
    m_raggruppa->setObjectName(QStringLiteral("chkRaggruppa"));
    listLayout->addWidget(m_raggruppa, 2, 0);
    m_modDescr = new QCheckBox(QStringLiteral("Gestione Descrizione Pagamento"), listTab);
    m_modDescr->setObjectName(QStringLiteral("chkModDescr"));
    listLayout->addWidget(m_modDescr, 3, 0);
    auto *descriptions = new QFormLayout;
    m_lblDesPag = new QLabel(QStringLiteral("Descrizione da proporre"), listTab);
    m_desPag = new QLineEdit(listTab);
    m_desPag->setObjectName(QStringLiteral("txtDesPag"));
    m_desPag->setMaxLength(30);
    m_desPag->setToolTip(QStringLiteral("NNNNNN/N = numero e serie del documento, DD/DD/DD = data "
                                        "del documento (doppio clic: testo proposto)"));
    m_lblDesAlt = new QLabel(QStringLiteral("Descrizione alternativa"), listTab);
    m_desAlt = new QLineEdit(listTab);
    m_desAlt->setObjectName(QStringLiteral("txtDesAlt"));
    m_desAlt->setMaxLength(30);
    m_desAlt->setToolTip(QStringLiteral("NNN = numero delle scadenze pagate insieme"));
    descriptions->addRow(m_lblDesPag, m_desPag);
    descriptions->addRow(m_lblDesAlt, m_desAlt);
    listLayout->addLayout(descriptions, 4, 0);
    listLayout->setRowStretch(5, 1);
    auto *columnsLabel = new QLabel(QStringLiteral("Colonne DA NON visualizzare"), listTab);
    m_columns = new QListView(listTab);
    m_columns->setObjectName(QStringLiteral("lvwColonne"));
    m_columns->setModel(&m_form.columns());
    columnsLabel->setBuddy(m_columns);
    listLayout->addWidget(columnsLabel, 0, 1);
    listLayout->addWidget(m_columns, 1, 1, 5, 1);
    listLayout->setColumnStretch(0, 3);
    listLayout->setColumnStretch(1, 2);
    const int listIndex = m_tabs->addTab(listTab, QStringLiteral("Opzioni Lista"));
    m_tabs->setTabToolTip(listIndex, QStringLiteral("Imposta le opzioni per la Lista Solleciti"));

    // "Bonifici"
    auto *bankTab = new QWidget(m_tabs);
    auto *bankLayout = new QFormLayout(bankTab);
    m_cuc = new QLineEdit(bankTab);
    m_cuc->setObjectName(QStringLiteral("txtCuc"));
    m_cuc->setMaxLength(8);
    m_cuc->setToolTip(QStringLiteral("Il codice CBI dell'azienda (8 caratteri) assegnato dalla "
                                     "banca, che identifica l'azienda nel file XML dei bonifici"));
    bankLayout->addRow(QStringLiteral("Codice CUC"), m_cuc);
    const int bankIndex = m_tabs->addTab(bankTab, QStringLiteral("Bonifici"));
    m_tabs->setTabToolTip(bankIndex, QStringLiteral("Imposta i dati del file dei bonifici"));

    auto *buttons = new QDialogButtonBox(this);
    auto *confirmButton =
        buttons->addButton(QStringLiteral("&Conferma"), QDialogButtonBox::AcceptRole);
    confirmButton->setObjectName(QStringLiteral("cmdGenera"));
    auto *cancel = buttons->addButton(QStringLiteral("&Annulla"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdAnnulla"));
    layout->addWidget(buttons);

    showState();

    connect(m_optWord, &QRadioButton::toggled, this, [this](bool on) {
        underTrap(QStringLiteral("frmOptions!Sub optEditor_Click()"), [&] {
            m_form.setUseWordProcessor(on);
            showState();
        });
    });
    connect(m_path, &QLineEdit::textEdited, this,
            [this](const QString &t) { m_form.setEditorPath(t); });
    connect(m_browse, &QPushButton::clicked, this, &OptionsDialog::chooseProgram);
    connect(m_autoPrint, &QCheckBox::toggled, this, [this](bool on) { m_form.setAutoPrint(on); });
    connect(cmdFont, &QPushButton::clicked, this, &OptionsDialog::chooseFont);
    connect(m_saveOnExit, &QCheckBox::toggled, this, [this](bool on) { m_form.setSaveOnExit(on); });
    connect(m_raggruppa, &QCheckBox::toggled, this, [this](bool on) { m_form.setRaggruppa(on); });
    connect(m_modDescr, &QCheckBox::clicked, this, [this](bool on) {
        m_form.setModDescr(on);
        showState();
    });
    connect(m_desPag, &QLineEdit::textEdited, this,
            [this](const QString &t) { m_form.setDesPag(t); });
    connect(m_desAlt, &QLineEdit::textEdited, this,
            [this](const QString &t) { m_form.setDesAlt(t); });
    connect(m_cuc, &QLineEdit::textEdited, this, [this](const QString &t) { m_form.setCuc(t); });
    m_desPag->installEventFilter(this);
    connect(buttons, &QDialogButtonBox::accepted, this, &OptionsDialog::confirm);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void OptionsDialog::showState()
{
    const QSignalBlocker blockWord(m_optWord);
    const QSignalBlocker blockOther(m_optOther);
    m_optWord->setChecked(m_form.useWordProcessor());
    m_optOther->setChecked(!m_form.useWordProcessor());
    m_path->setText(m_form.editorPath());
    m_path->setEnabled(m_form.pathEnabled());
    m_browse->setEnabled(m_form.pathEnabled());
    m_autoPrint->setChecked(m_form.autoPrint());
    m_fontName->setText(m_form.fontName());
    m_fontSize->setText(QString::number(m_form.fontSize()));
    m_saveOnExit->setChecked(m_form.saveOnExit());
    m_raggruppa->setChecked(m_form.raggruppa());
    m_modDescr->setChecked(m_form.modDescr());
    const bool descriptions = m_form.descriptionsVisible();
    for (QWidget *w : {static_cast<QWidget *>(m_lblDesPag), static_cast<QWidget *>(m_desPag),
                       static_cast<QWidget *>(m_lblDesAlt), static_cast<QWidget *>(m_desAlt)})
        w->setVisible(descriptions);
    m_desPag->setText(m_form.desPag());
    m_desAlt->setText(m_form.desAlt());
    m_cuc->setText(m_form.cuc());
}

void OptionsDialog::chooseProgram()
{
    underTrap(QStringLiteral("frmOptions!Sub cmdBrowse_Click()"), [this] {
#ifdef Q_OS_WIN
        const QString start = QStringLiteral("c:\\");
#else
        const QString start = QDir::rootPath();
#endif
        QFileDialog dialog(this, QStringLiteral("SELEZIONA PROGRAMMA DI STAMPA"), start);
        dialog.setFileMode(QFileDialog::ExistingFile);
        // The program's own dialog, in Italian whatever the desktop speaks.
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        dialog.setDefaultSuffix(QStringLiteral("exe"));
        dialog.setNameFilters({QStringLiteral("Files Eseguibili (*.exe *.EXE)"),
                               QStringLiteral("Tutti i Files (*)")});
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
            return;
        m_form.setEditorPath(QDir::toNativeSeparators(dialog.selectedFiles().first()));
        m_path->setText(m_form.editorPath());
    });
}

void OptionsDialog::chooseFont()
{
    underTrap(QStringLiteral("frmOptions!Sub cmdFont_Click()"), [this] {
        bool ok = false;
        const QFont chosen =
            QFontDialog::getFont(&ok, QFont(m_form.fontName(), m_form.fontSize()), this);
        if (!ok)
            return;
        m_form.setFont(chosen.family(),
                       chosen.pointSize() > 0 ? chosen.pointSize() : m_form.fontSize());
        showState();
    });
}

bool OptionsDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_desPag && event->type() == QEvent::MouseButtonDblClick) {
        m_form.resetDesPag();
        m_desPag->setText(m_form.desPag());
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void OptionsDialog::confirm()
{
    m_form.confirm();
    accept();
}

} // namespace pg::lists
