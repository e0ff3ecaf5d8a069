#include "mainwindow.h"

#include "editor/rowlist/rowlistview.h"

#include "core/vbdate.h"
#include "core/vbformat.h"
#include "lists/usersettings.h"
#include "startup/errortrap.h"
#include "ui/codelineedit.h"
#include "ui/icons.h"
#include "ui/maskeddateedit.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace pg::editor {

namespace {

// A label of a picture that reports double clicks.
class PictureLabel : public QLabel
{
public:
    using QLabel::QLabel;
    std::function<void()> onDoubleClick;

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override
    {
        QLabel::mouseDoubleClickEvent(event);
        if (onDoubleClick)
            onDoubleClick();
    }
};

} // namespace

MainWindow::MainWindow(MainWindowLoad &load, QWidget *parent) : QMainWindow(parent), m_load(&load)
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("Pagamenti"));
    setWindowIcon(ui::icon(QStringLiteral("programma")));

    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);

    // The management buttons and the program's own commands.
    auto *top = new QHBoxLayout;
    const QStringList icons{QStringLiteral("nuova"),      QStringLiteral("apri"),
                            QStringLiteral("salva"),      QStringLiteral("elimina"),
                            QStringLiteral("successiva"), QStringLiteral("precedente")};
    const QStringList tips{
        QStringLiteral("Nuova distinta"),      QStringLiteral("Apri distinta"),
        QStringLiteral("Salva distinta"),      QStringLiteral("Elimina distinta"),
        QStringLiteral("Distinta successiva"), QStringLiteral("Distinta precedente")};
    // Keys for the clerk at the keyboard. A key clicks its button, so it follows the button's
    // state; deleting a distinta stays a deliberate click.
    const std::array<QKeySequence, DistintaEditor::ButtonCount> keys{
        QKeySequence(QKeySequence::New),           QKeySequence(QKeySequence::Open),
        QKeySequence(QKeySequence::Save),          QKeySequence(),
        QKeySequence(Qt::CTRL | Qt::Key_PageDown), QKeySequence(Qt::CTRL | Qt::Key_PageUp)};
    for (int i = 0; i < DistintaEditor::ButtonCount; ++i) {
        auto *button = new QToolButton(central);
        button->setObjectName(QStringLiteral("btnGestione%1").arg(i));
        button->setToolTip(tips.at(i));
        button->setStatusTip(tips.at(i));
        button->setIcon(ui::toolbarImage(i + 7));
        button->setIconSize(QSize(32, 32));
        button->setAutoRaise(true);
        button->setEnabled(false);
        button->setShortcut(keys.at(i));
        connect(button, &QToolButton::clicked, this, [this, i] { btnGestione_Click(i); });
        m_btnGestione[i] = button;
        top->addWidget(button);
        if (i == DistintaEditor::Elimina)
            top->addSpacing(12);
    }
    top->addStretch(1);
    auto *options = makeCommand(QStringLiteral("cmdOptions"), QStringLiteral("opzioni"), {},
                                QStringLiteral("Opzioni"));
    auto *help = makeCommand(QStringLiteral("cmbHelp"), QStringLiteral("manuale"),
                             QStringLiteral("Manuale"), QStringLiteral("Manuale"));
    auto *info = makeCommand(QStringLiteral("cmdInfo"), QStringLiteral("info"), {},
                             QStringLiteral("Informazioni su..."));
    auto *exit = makeCommand(QStringLiteral("cmdUscita"), QStringLiteral("uscita"), {},
                             QStringLiteral("Uscita da Pagamenti"));
    for (QToolButton *b : {options, help, info, exit})
        top->addWidget(b);
    layout->addLayout(top);

    // The distinta header.
    auto *header = new QGroupBox(QStringLiteral("Distinta"), central);
    auto *grid = new QGridLayout(header);
    buildHeader(header, grid);
    layout->addWidget(header);

    // The row list and the commands on its rows.
    auto *middle = new QHBoxLayout;
    m_listArea = new QFrame(central);
    m_listArea->setObjectName(QStringLiteral("lvwScadenzeArea"));
    m_listArea->setFrameShape(QFrame::StyledPanel);
    m_listArea->setMinimumSize(480, 200);
    m_listArea->setContextMenuPolicy(Qt::CustomContextMenu);
    auto *listLayout = new QVBoxLayout(m_listArea);
    listLayout->setContentsMargins(0, 0, 0, 0);
    m_list = new RowListView(m_listArea);
    listLayout->addWidget(m_list);
    // An edit in the list changes the distinta: the totals follow and saving is enabled.
    connect(m_list, &RowListView::rowEdited, this, [this] {
        if (!m_editor)
            return;
        m_editor->CalcolaTotali();
        m_editor->SetBtnGestione(QStringLiteral("YYYYYY"));
    });
    connect(m_list, &RowListView::statusHint, this,
            [this](const QString &text) { statusBar()->showMessage(text); });
    middle->addWidget(m_listArea, 1);

    auto *rows = new QVBoxLayout;
    auto *aggiungi =
        makeCommand(QStringLiteral("cmdAggiungi"), QStringLiteral("aggiungi"),
                    QStringLiteral("Aggiungi"), QStringLiteral("Aggiungi nuove scadenze."));
    aggiungi->setEnabled(false);
    auto *cancRiga = makeCommand(QStringLiteral("cmdCancRiga"), QStringLiteral("cancriga"),
                                 QStringLiteral("Canc. Riga"),
                                 QStringLiteral("Cancella dall'elenco la scadenza selezionata"));
    auto *zoom =
        makeCommand(QStringLiteral("cmdZoom"), QStringLiteral("zoom"), QStringLiteral("Zoom Riga"),
                    QStringLiteral("Visualizza dettaglio della scadenza selezionata"));
    auto *zoomCli = makeCommand(QStringLiteral("cmdZoomCli"), QStringLiteral("zoomcli"),
                                QStringLiteral("Zoom For."),
                                QStringLiteral("Visualizza dettaglio della scadenza selezionata"));
    auto *stampa = makeCommand(QStringLiteral("cmdStSolle"), QStringLiteral("stampa"),
                               QStringLiteral("Stampa"), QStringLiteral("Stampa distinta"));
    auto *creaFile =
        makeCommand(QStringLiteral("cmdCreaFile"), QStringLiteral("filebonifici"),
                    QStringLiteral("File Bonifici"), QStringLiteral("Creazione file bonifici"));
    auto *controllo =
        makeCommand(QStringLiteral("chkDatiBanca"), QStringLiteral("controllo"),
                    QStringLiteral("Controllo"), QStringLiteral("Controllo completezza distinta"));
    auto *verifica = makeCommand(
        QStringLiteral("cmdVerifica"), QStringLiteral("verifica"), QStringLiteral("Verifica"),
        QStringLiteral("Verifica che le scadenze di [orvida] corrispondano alle distinte salvate"));
    auto *listaCampi =
        makeCommand(QStringLiteral("cmdListaCampi"), QStringLiteral("listacampi"),
                    QStringLiteral("Variabili"), QStringLiteral("Elenco variabili modelli"));
    m_chkModello = new QCheckBox(QStringLiteral("Seleziona Modello"), central);
    m_chkModello->setObjectName(QStringLiteral("chkModello"));
    m_chkModello->setToolTip(QStringLiteral("Permette di selezionare un modello dalla lista invece "
                                            "di usare quello predefinito"));
    // Captions beside their icons, one column as wide as the longest: the column stays
    // short enough for a 768-pixel screen.
    for (QToolButton *b :
         {aggiungi, cancRiga, zoom, zoomCli, stampa, creaFile, controllo, verifica, listaCampi})
        b->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    for (QToolButton *b : {aggiungi, cancRiga, zoom, zoomCli})
        rows->addWidget(b);
    rows->addSpacing(12);
    for (QToolButton *b : {stampa, creaFile, controllo, verifica, listaCampi})
        rows->addWidget(b);
    rows->addWidget(m_chkModello);
    rows->addStretch(1);
    middle->addLayout(rows);
    layout->addLayout(middle, 1);

    // The printer in use.
    auto *printer = new QGroupBox(QStringLiteral("Stampante selezionata"), central);
    auto *printerLayout = new QHBoxLayout(printer);
    auto *picture = new PictureLabel(printer);
    picture->setObjectName(QStringLiteral("Picture1"));
    picture->setPixmap(ui::icon(QStringLiteral("stampante")).pixmap(32, 32));
    picture->setToolTip(QStringLiteral("Doppio-Click per selezionare un'altra stampante"));
    picture->onDoubleClick = [this] { cmdScelta_Click(); };
    m_picture1 = picture;
    m_lblPrinter = new QLabel(printer);
    m_lblPrinter->setObjectName(QStringLiteral("lblPrinter"));
    m_lblPrinter->setToolTip(picture->toolTip());
    auto *scelta = makeCommand(QStringLiteral("cmdScelta"), QStringLiteral("stampante"), {},
                               QStringLiteral("Scelta stampante da utilizzare"));
    printerLayout->addWidget(picture);
    printerLayout->addWidget(m_lblPrinter, 1);
    printerLayout->addWidget(scelta);
    layout->addWidget(printer);

    setCentralWidget(central);

    // The status bar: hints on the left, the company and the day on the right.
    statusBar()->setObjectName(QStringLiteral("stbStatus"));
    m_company = new QLabel(this);
    statusBar()->addPermanentWidget(m_company);
    statusBar()->addPermanentWidget(new QLabel(dates::toDmy(dates::today()), this));

    // The list's menu.
    m_mnuLista = new QMenu(QStringLiteral("&Lista"), this);
    m_mnuLista->setObjectName(QStringLiteral("mnuLista"));
    auto addItem = [this](const char *name, const QString &text) {
        QAction *action = m_mnuLista->addAction(text);
        action->setObjectName(QString::fromLatin1(name));
        return action;
    };
    m_mnuLista->addSeparator()->setObjectName(QStringLiteral("mnuLisSep1"));
    addItem("mnuPagTut", QStringLiteral("&Paga Tutto"));
    m_mnuLista->addSeparator()->setObjectName(QStringLiteral("mnuLisSep2"));
    QAction *selectAll = addItem("mnuSelTutto", QStringLiteral("&Seleziona Tutto"));
    QAction *clearSelection = addItem("mnuAnnSel", QStringLiteral("&Annulla Selezione"));
    m_mnuLista->addSeparator()->setObjectName(QStringLiteral("mnuLisSep3"));
    QAction *listOptions = addItem("mnuLisOpz", QStringLiteral("&Opzioni Lista"));
    connect(selectAll, &QAction::triggered, this, [this] { lvwSelectRow(true); });
    connect(clearSelection, &QAction::triggered, this, [this] { lvwSelectRow(false); });
    connect(listOptions, &QAction::triggered, this, &MainWindow::cmdOptions_Click);
    connect(m_listArea, &QWidget::customContextMenuRequested, this, [this](const QPoint &at) {
        underTrap(DistintaEditor::location("lvwScadenze_MouseDown"),
                  [&] { m_mnuLista->popup(m_listArea->mapToGlobal(at)); });
    });

    connect(aggiungi, &QToolButton::clicked, this, &MainWindow::cmdAggiungi_Click);
    connect(cancRiga, &QToolButton::clicked, this, &MainWindow::cmdCancRiga_Click);
    connect(zoom, &QToolButton::clicked, this, &MainWindow::cmdZoom_Click);
    connect(zoomCli, &QToolButton::clicked, this, &MainWindow::cmdZoomCli_Click);
    connect(stampa, &QToolButton::clicked, this, &MainWindow::cmdStSolle_Click);
    connect(creaFile, &QToolButton::clicked, this, &MainWindow::cmdCreaFile_Click);
    connect(controllo, &QToolButton::clicked, this, &MainWindow::chkDatiBanca_Click);
    connect(verifica, &QToolButton::clicked, this, &MainWindow::cmdVerifica_Click);
    connect(listaCampi, &QToolButton::clicked, this, &MainWindow::cmdListaCampi_Click);
    connect(scelta, &QToolButton::clicked, this, &MainWindow::cmdScelta_Click);
    connect(options, &QToolButton::clicked, this, &MainWindow::cmdOptions_Click);
    connect(help, &QToolButton::clicked, this, &MainWindow::cmbHelp_Click);
    connect(info, &QToolButton::clicked, this, &MainWindow::cmdInfo_Click);
    connect(exit, &QToolButton::clicked, this, &QWidget::close);

    PulisciMaschera();
    resize(980, 720);
}

MainWindow::~MainWindow()
{
    Form_Unload();
}

QToolButton *MainWindow::makeCommand(const QString &name, const QString &icon,
                                     const QString &caption, const QString &toolTip)
{
    auto *button = new QToolButton(this);
    button->setObjectName(name);
    button->setIcon(ui::icon(icon));
    button->setIconSize(QSize(24, 24));
    button->setAutoRaise(true);
    button->setToolTip(toolTip);
    button->setStatusTip(toolTip);
    if (!caption.isEmpty()) {
        button->setText(caption);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    }
    button->setMinimumWidth(caption.isEmpty() ? 0 : 96);
    return button;
}

void MainWindow::buildHeader(QWidget *parent, QGridLayout *grid)
{
    for (int index : DistintaEditor::boundFields()) {
        auto *field = new ui::CodeLineEdit(parent);
        field->setObjectName(QStringLiteral("txtTestata%1").arg(index));
        field->setReadOnly(true);
        m_txtTestata[index] = field;
        connect(field, &QLineEdit::textEdited, this, [this, index](const QString &text) {
            if (m_editor)
                m_editor->setHeaderText(index, text);
        });
        field->setKeyGuard([this] { return m_editor && m_editor->headerKeyPress(); });
        connect(field, &ui::CodeLineEdit::lookupRequested, this, [this, index] {
            if (m_editor)
                m_editor->headerF4(index);
        });
        connect(field, &ui::CodeLineEdit::left, this, [this, index] {
            if (m_editor)
                m_editor->validateBankField(index);
        });
    }
    // The type and the state are shown by their descriptions (txtdesTipo, txtdesStato).
    m_txtTestata[DistintaEditor::Tipo]->hide();
    m_txtTestata[DistintaEditor::Stato]->hide();

    m_mskData = new ui::MaskedDateEdit(parent);
    m_mskData->setObjectName(QStringLiteral("mskData"));
    m_mskData->setToolTip(QStringLiteral("Data di Creazione della Distinta (d = oggi)"));
    m_mskDataValuta = new ui::MaskedDateEdit(parent);
    m_mskDataValuta->setObjectName(QStringLiteral("mskDataValuta"));
    m_mskDataValuta->setToolTip(QStringLiteral("Data Valuta fissa Beneficiario (d = oggi)"));
    for (auto [box, kind] :
         {std::pair{m_mskData, DateBox::Creazione}, std::pair{m_mskDataValuta, DateBox::Valuta}}) {
        box->setStatusTip(box->toolTip());
        box->setKeyGuard([this] { return m_editor && m_editor->dateKeyPress(); });
        box->setLeaveValidator([this, kind](ui::MaskedDateEdit &edit) {
            if (!m_editor)
                return ui::MaskedDateEdit::Leave::Accept;
            switch (m_editor->validateDate(kind, edit.maskedText())) {
            case DistintaEditor::Leave::KeepFocus:
                return ui::MaskedDateEdit::Leave::KeepFocus;
            case DistintaEditor::Leave::KeepFocusSelected:
                return ui::MaskedDateEdit::Leave::KeepFocusSelected;
            case DistintaEditor::Leave::Accept:
                break;
            }
            return ui::MaskedDateEdit::Leave::Accept;
        });
    }

    m_desTipo = new ui::CodeLineEdit(parent);
    m_desTipo->setObjectName(QStringLiteral("txtdesTipo"));
    m_desStato = new ui::CodeLineEdit(parent);
    m_desStato->setObjectName(QStringLiteral("txtdesStato"));
    for (ui::CodeLineEdit *display : {m_desTipo, m_desStato}) {
        display->setReadOnly(true);
        display->setFocusPolicy(Qt::NoFocus);
    }
    m_desTipo->setWidestText(QStringLiteral("Fornitori"));
    m_desStato->setWidestText(QStringLiteral("Definitiva"));
    m_lblTotale = new QLabel(QStringLiteral("TOT. DISTINTA"), parent);
    m_lblTotale->setObjectName(QStringLiteral("lblTotale"));
    QFont bold = m_lblTotale->font();
    bold.setBold(true);
    m_lblTotale->setFont(bold);

    auto label = [parent](const QString &text, QWidget *buddy) {
        auto *l = new QLabel(text, parent);
        l->setBuddy(buddy);
        return l;
    };
    auto *t = m_txtTestata.data();
    using E = DistintaEditor;
    t[E::CodDistinta]->setAlignment(Qt::AlignRight);
    t[E::CodDistinta]->setFocusPolicy(Qt::NoFocus);
    t[E::AbiBanca]->setToolTip(QStringLiteral("Indicare il codice Banca azienda"));
    t[E::CabBanca]->setToolTip(QStringLiteral("Indicare il codice Agenzia azienda"));
    t[E::AbiBanca]->setMaxLength(5);
    t[E::CabBanca]->setMaxLength(5);
    for (int i : {int(E::AbiBanca), int(E::CabBanca), int(E::CodiceAbi), int(E::CodiceCab)})
        t[i]->setStatusTip(t[i]->toolTip().isEmpty()
                               ? QString()
                               : t[i]->toolTip() + QStringLiteral(" (F4 = elenco)"));
    t[E::CodSia]->setMaxLength(6);
    t[E::DesBanAzi]->setMaxLength(80);
    t[E::Riferimenti]->setMaxLength(20);
    t[E::ContoOrdinante]->setMaxLength(20);
    t[E::NumeroDisp]->setAlignment(Qt::AlignRight);
    t[E::ImportoTotale]->setAlignment(Qt::AlignRight);
    t[E::ImportoTotale]->setFont(bold);
    for (int i : {int(E::CodDistinta), int(E::CodiceAbi), int(E::CodiceCab), int(E::NumeroDisp),
                  int(E::ImportoTotale), int(E::CodValuta), int(E::DesValuta)})
        t[i]->setFocusPolicy(Qt::NoFocus);

    // Every box at least as wide as the widest value it holds, whatever the font: codes of
    // five digits, a total of nine hundred million with its sign, the ordering account of the
    // bank file. Codes keep that width; texts may grow.
    const std::pair<int, QString> widest[]{
        {E::CodDistinta, QStringLiteral("000000")},
        {E::CodSia, QStringLiteral("WWWWWW")},
        {E::AbiBanca, QStringLiteral("00000")},
        {E::CabBanca, QStringLiteral("00000")},
        {E::CodiceAbi, QStringLiteral("00000")},
        {E::CodiceCab, QStringLiteral("00000")},
        {E::NumeroDisp, QStringLiteral("00000")},
        {E::ImportoTotale, vb::format(-999999999.99, u"#,0.00")},
        {E::CodValuta, QStringLiteral("WW")},
        {E::ContoOrdinante, QString(12, u'0')},
        {E::Riferimenti, QString(20, u'n')},
        {E::DesValuta, QStringLiteral("EURO")},
        {E::DesBanAzi, QString(30, u'n')},
    };
    for (const auto &[index, text] : widest) {
        t[index]->setWidestText(text);
        const bool code = index != E::ContoOrdinante && index != E::Riferimenti &&
                          index != E::DesValuta && index != E::DesBanAzi;
        t[index]->setSizePolicy(code ? QSizePolicy::Fixed : QSizePolicy::Expanding,
                                QSizePolicy::Fixed);
    }
    for (ui::CodeLineEdit *display : {m_desTipo, m_desStato})
        display->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);

    auto pair = [](QWidget *first, QWidget *second) {
        auto *row = new QHBoxLayout;
        row->addWidget(first);
        row->addWidget(second);
        row->addStretch(1);
        return row;
    };
    // Three columns of a label and its boxes, so that the header fits a 1024-pixel screen.
    grid->addWidget(label(QStringLiteral("Distinta N."), t[E::CodDistinta]), 0, 0);
    grid->addWidget(t[E::CodDistinta], 0, 1);
    grid->addWidget(label(QStringLiteral("Data distinta"), m_mskData), 0, 2);
    grid->addWidget(m_mskData, 0, 3);
    grid->addWidget(label(QStringLiteral("Data Valuta"), m_mskDataValuta), 0, 4);
    grid->addWidget(m_mskDataValuta, 0, 5);

    grid->addWidget(label(QStringLiteral("Banca/Agenzia"), t[E::AbiBanca]), 1, 0);
    grid->addLayout(pair(t[E::AbiBanca], t[E::CabBanca]), 1, 1);
    grid->addWidget(label(QStringLiteral("Descrizione Banca/Agenzia"), t[E::DesBanAzi]), 1, 2);
    grid->addWidget(t[E::DesBanAzi], 1, 3, 1, 3);

    grid->addWidget(label(QStringLiteral("ABI/CAB"), t[E::CodiceAbi]), 2, 0);
    grid->addLayout(pair(t[E::CodiceAbi], t[E::CodiceCab]), 2, 1);
    grid->addWidget(label(QStringLiteral("Codice SIA:"), t[E::CodSia]), 2, 2);
    grid->addWidget(t[E::CodSia], 2, 3);
    grid->addWidget(label(QStringLiteral("Conto Ordinante"), t[E::ContoOrdinante]), 2, 4);
    grid->addWidget(t[E::ContoOrdinante], 2, 5);

    grid->addWidget(label(QStringLiteral("Valuta"), t[E::CodValuta]), 3, 0);
    auto *currency = new QHBoxLayout;
    currency->addWidget(t[E::CodValuta]);
    currency->addWidget(t[E::DesValuta], 1);
    grid->addLayout(currency, 3, 1);
    grid->addWidget(label(QStringLiteral("Riferimenti Mittente"), t[E::Riferimenti]), 3, 2);
    grid->addWidget(t[E::Riferimenti], 3, 3);
    grid->addLayout(pair(m_desTipo, m_desStato), 3, 5);

    grid->addWidget(label(QStringLiteral("N. Disp."), t[E::NumeroDisp]), 4, 0);
    grid->addWidget(t[E::NumeroDisp], 4, 1);
    grid->addWidget(m_lblTotale, 4, 4);
    grid->addWidget(t[E::ImportoTotale], 4, 5);
    grid->setColumnStretch(3, 1);
    grid->setColumnStretch(5, 1);

    setTabOrder(m_mskData, m_mskDataValuta);
    setTabOrder(m_mskDataValuta, t[E::AbiBanca]);
    setTabOrder(t[E::AbiBanca], t[E::CabBanca]);
    setTabOrder(t[E::CabBanca], t[E::DesBanAzi]);
    setTabOrder(t[E::DesBanAzi], t[E::CodSia]);
    setTabOrder(t[E::CodSia], t[E::ContoOrdinante]);
    setTabOrder(t[E::ContoOrdinante], t[E::Riferimenti]);
}

QLineEdit *MainWindow::txtTestata(int index) const
{
    return index >= 0 && index < int(m_txtTestata.size()) ? m_txtTestata.at(index) : nullptr;
}

QLineEdit *MainWindow::txtdesTipo() const
{
    return m_desTipo;
}

QLineEdit *MainWindow::txtdesStato() const
{
    return m_desStato;
}

QToolButton *MainWindow::command(const QString &objectName) const
{
    return findChild<QToolButton *>(objectName);
}

MainWindowLoad::Outcome MainWindow::Form_Load()
{
    // Any positive number that names the window will do as the session's handle.
    qint32 handle = qint32(quint64(winId()) & 0x7fffffff);
    if (handle == 0)
        handle = 1;
    const MainWindowLoad::Outcome outcome = m_load->Load(handle);
    if (outcome != MainWindowLoad::Outcome::Ready)
        return outcome;
    m_company->setText(m_load->company().ragsoc.trimmed());
    // The saved printer is looked up once the window has been drawn (see lookUpSavedPrinter).
    m_printerAfterFirstPaint = savedPrinterPending();
    if (!m_printerAfterFirstPaint)
        showPrinter();
    m_editor = std::make_unique<DistintaEditor>(*m_load->store(), m_load->erp(), *this);
    m_list->setSession(m_load->erp());
    m_list->LV_InizializzaLista();
    m_list->setDistinta(&m_editor->distinta());
    m_load->store()->setFocusRequestHandler([this](distinta::HeaderField field) {
        focusHeaderField(field == distinta::HeaderField::BancaPresentazione
                             ? DistintaEditor::AbiBanca
                             : DistintaEditor::CabBanca);
    });
    m_editor->SetBtnGestione(QStringLiteral("YYNNYY"));
    return outcome;
}

void MainWindow::Form_Unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    // "Salva posizione colonne all'uscita.": the columns as the clerk left them, for the next
    // start. A window that never loaded has no columns of the clerk's to keep.
    if (m_editor && currentSettings().saveOnExit != 0) {
        currentSettings().columnLayout = m_list->columnLayout();
        pSaveColumnLayout();
    }
    m_list->setDistinta(nullptr);
    m_list->setSession(nullptr);
    m_editor.reset();
    if (m_load->isLoaded())
        m_load->Unload();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    bool allowed = true;
    underTrap(DistintaEditor::location("Form_QueryUnload"), [&] {
        if (m_editor && (!leaveCurrentField() || !m_editor->Form_QueryUnload()))
            allowed = false;
    });
    if (!allowed) {
        event->ignore();
        return;
    }
    event->accept();
    Form_Unload();
}

void MainWindow::raiseFromOtherStart()
{
    if (isMinimized())
        showNormal();
    show();
    raise();
    activateWindow();
}

void MainWindow::paintEvent(QPaintEvent *event)
{
    QMainWindow::paintEvent(event);
    if (!m_printerAfterFirstPaint)
        return;
    m_printerAfterFirstPaint = false;
    QTimer::singleShot(0, this, [this] {
        if (isVisible())
            showPrinter();
    });
}

void MainWindow::showPrinter()
{
    const std::optional<PrinterInfo> &printer = currentPrinter();
    m_lblPrinter->setText(printer ? printer->description()
                                  : QStringLiteral("Nessuna stampante installata"));
}

} // namespace pg::editor
