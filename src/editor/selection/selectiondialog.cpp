#include "selectiondialog.h"

#include "archives/store/lookupservice.h"
#include "ui/codelineedit.h"
#include "ui/lookupdialog.h"
#include "ui/maskeddateedit.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QTimer>
#include <QVBoxLayout>

namespace pg::editor {

using Box = SelectionLogic::Box;

SelectionDialog::SelectionDialog(archives::ErpSession *erp, QWidget *parent)
    : QDialog(parent)
    , m_lookup(erp ? std::make_unique<archives::LookupService>(*erp) : nullptr)
    , m_logic(erp, SelectionLogic::lastConfirmedForm())
{
    setObjectName(QStringLiteral("frmDistinta"));
    setWindowTitle(QStringLiteral("SELEZIONE"));

    auto *fraSelBanca = new QGroupBox(QStringLiteral("Banca di presentazione"), this);
    fraSelBanca->setObjectName(QStringLiteral("fraSelBanca"));
    auto *bancaGrid = new QGridLayout(fraSelBanca);
    bancaGrid->addWidget(new QLabel(QStringLiteral("Banca:"), fraSelBanca), 0, 0);
    bancaGrid->addWidget(
        makeCodeBox(SelectionLogic::Banca, QStringLiteral("txtBancaAgenzia_0"), fraSelBanca), 0, 1);
    bancaGrid->addWidget(new QLabel(QStringLiteral("Agenzia:"), fraSelBanca), 0, 2);
    bancaGrid->addWidget(
        makeCodeBox(SelectionLogic::Agenzia, QStringLiteral("txtBancaAgenzia_1"), fraSelBanca), 0,
        3);
    bancaGrid->addWidget(
        makeDescription(SelectionLogic::DesBanca, QStringLiteral("txtDesBanca"), fraSelBanca), 0,
        4);
    bancaGrid->setColumnStretch(4, 1);

    auto *fraSelScad = new QGroupBox(QStringLiteral("Selezione scadenze"), this);
    fraSelScad->setObjectName(QStringLiteral("fraSelScad"));
    auto *scadGrid = new QGridLayout(fraSelScad);
    scadGrid->addWidget(new QLabel(QStringLiteral("Scadenze dal:"), fraSelScad), 0, 0);
    scadGrid->addWidget(
        makeDateBox(SelectionLogic::DataScadDa, QStringLiteral("DatadiScad_0"), fraSelScad), 0, 1);
    scadGrid->addWidget(new QLabel(QStringLiteral("al:"), fraSelScad), 0, 2);
    scadGrid->addWidget(
        makeDateBox(SelectionLogic::DataScadA, QStringLiteral("DatadiScad_1"), fraSelScad), 0, 3);
    scadGrid->addWidget(new QLabel(QStringLiteral("Data distinta:"), fraSelScad), 1, 0);
    scadGrid->addWidget(
        makeDateBox(SelectionLogic::DataCreazione, QStringLiteral("mskData"), fraSelScad), 1, 1);
    scadGrid->addWidget(new QLabel(QStringLiteral("Data Valuta:"), fraSelScad), 1, 2);
    scadGrid->addWidget(
        makeDateBox(SelectionLogic::DataValuta, QStringLiteral("mskDataValuta"), fraSelScad), 1, 3);
    box(SelectionLogic::DataCreazione)
        ->setToolTip(QStringLiteral("Data di Creazione della Distinta (d = oggi)"));
    box(SelectionLogic::DataValuta)
        ->setToolTip(QStringLiteral("Data Valuta fissa Beneficiario (d = oggi)"));
    scadGrid->addWidget(new QLabel(QStringLiteral("Valuta:"), fraSelScad), 2, 0);
    scadGrid->addWidget(
        makeCodeBox(SelectionLogic::CodValuta, QStringLiteral("txtCodValuta"), fraSelScad), 2, 1);
    scadGrid->addWidget(
        makeDescription(SelectionLogic::DesValuta, QStringLiteral("txtDesValuta"), fraSelScad), 2,
        2, 1, 3);
    scadGrid->addWidget(new QLabel(QStringLiteral("Tipo pagamento:"), fraSelScad), 3, 0);
    m_tipo = new QComboBox(fraSelScad);
    m_tipo->setObjectName(QStringLiteral("cmbTipo"));
    m_tipo->addItems(SelectionLogic::tipoEntries());
    scadGrid->addWidget(m_tipo, 3, 1, 1, 3);
    scadGrid->addWidget(new QLabel(QStringLiteral("Imp.Min.:"), fraSelScad), 4, 0);
    auto *amounts =
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9.,]*")), this);
    for (auto [which, name, column] :
         {std::tuple{SelectionLogic::ImpMinimo, "txtImpMinimo", 1},
          std::tuple{SelectionLogic::ImpMassimo, "txtImpMassimo", 3}}) {
        auto *edit = new QLineEdit(fraSelScad);
        edit->setObjectName(QString::fromLatin1(name));
        edit->setMaxLength(SelectionLogic::maxLength(which));
        edit->setValidator(amounts);
        edit->setAlignment(Qt::AlignRight);
        const Box b = which;
        connect(edit, &QLineEdit::textEdited, this,
                [this, b](const QString &t) { m_logic.setText(b, t); });
        m_boxes[which] = edit;
        scadGrid->addWidget(edit, 4, column);
    }
    scadGrid->addWidget(new QLabel(QStringLiteral("Imp.Max:"), fraSelScad), 4, 2);
    scadGrid->setColumnStretch(4, 1);

    auto *fraSelCliFor = new QGroupBox(QStringLiteral("Selezione Clienti/Fornitori"), this);
    fraSelCliFor->setObjectName(QStringLiteral("fraSelCliFor"));
    auto *cliGrid = new QGridLayout(fraSelCliFor);
    cliGrid->addWidget(new QLabel(QStringLiteral("Distinta di:"), fraSelCliFor), 0, 0);
    m_cliFor = new QComboBox(fraSelCliFor);
    m_cliFor->setObjectName(QStringLiteral("cmbCliFor"));
    m_cliFor->addItems(SelectionLogic::cliForEntries());
    cliGrid->addWidget(m_cliFor, 0, 1, 1, 3);
    cliGrid->addWidget(new QLabel(QStringLiteral("Dal codice:"), fraSelCliFor), 1, 0);
    cliGrid->addWidget(makeCodeBox(SelectionLogic::CodAnagraInizio,
                                   QStringLiteral("txtCodAnagra_Inizio"), fraSelCliFor),
                       1, 1);
    cliGrid->addWidget(new QLabel(QStringLiteral("al codice:"), fraSelCliFor), 1, 2);
    cliGrid->addWidget(makeCodeBox(SelectionLogic::CodAnagraFine,
                                   QStringLiteral("txtCodAnagra_Fine"), fraSelCliFor),
                       1, 3);
    cliGrid->addWidget(
        makeDescription(SelectionLogic::DesRagsoc, QStringLiteral("txtdes_ragsoc"), fraSelCliFor),
        2, 1, 1, 4);
    cliGrid->addWidget(new QLabel(QStringLiteral("Banca:"), fraSelCliFor), 3, 0);
    cliGrid->addWidget(
        makeCodeBox(SelectionLogic::BancaCli, QStringLiteral("txtBancaAgenziaCli_0"), fraSelCliFor),
        3, 1);
    cliGrid->addWidget(new QLabel(QStringLiteral("Agenzia:"), fraSelCliFor), 3, 2);
    cliGrid->addWidget(makeCodeBox(SelectionLogic::AgenziaCli,
                                   QStringLiteral("txtBancaAgenziaCli_1"), fraSelCliFor),
                       3, 3);
    cliGrid->addWidget(makeDescription(SelectionLogic::DesBancaCli,
                                       QStringLiteral("txtDesBancaCli"), fraSelCliFor),
                       4, 1, 1, 4);
    cliGrid->setColumnStretch(4, 1);

    m_confirm = new QPushButton(QStringLiteral("&Conferma"), this);
    m_confirm->setObjectName(QStringLiteral("cmdGenera"));
    m_confirm->setDefault(true);
    m_cancel = new QPushButton(QStringLiteral("&Annulla"), this);
    m_cancel->setObjectName(QStringLiteral("cmdAnnulla"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_confirm);
    buttons->addWidget(m_cancel);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(fraSelBanca);
    layout->addWidget(fraSelScad);
    layout->addWidget(fraSelCliFor);
    layout->addLayout(buttons);

    connect(m_tipo, &QComboBox::currentIndexChanged, this,
            [this](int i) { m_logic.setTipoIndex(i); });
    connect(m_cliFor, &QComboBox::currentIndexChanged, this,
            [this](int i) { m_logic.setCliForIndex(i); });
    connect(m_confirm, &QPushButton::clicked, this, &SelectionDialog::confirm);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);

    if (m_lookup) {
        archives::LookupService *service = m_lookup.get();
        SelectionLogic::Lookups lookups;
        lookups.companyBanks = [this, service] {
            return ui::LookupDialog::choose(
                [service](const QString &f) { return service->companyBanks(f); }, this);
        };
        lookups.banksAndAgencies = [this, service] {
            return ui::LookupDialog::banksAndAgencies(*service, this);
        };
        lookups.accounts = [this, service](bool customers) {
            return ui::LookupDialog::accounts(
                *service, this,
                customers ? archives::LookupService::AccountKind::Customers
                          : archives::LookupService::AccountKind::Suppliers);
        };
        lookups.currencies = [this, service] {
            return ui::LookupDialog::currencies(*service, this);
        };
        m_logic.setLookups(std::move(lookups));
    }
    m_logic.setChangeHandler([this] { showForm(); });
    m_logic.setFocusHandler([this](Box b, bool select) { moveFocus(b, select); });
    showForm();
}

SelectionDialog::~SelectionDialog() = default;

QLineEdit *SelectionDialog::makeCodeBox(Box which, const QString &name, QWidget *parent)
{
    auto *edit = new ui::CodeLineEdit(parent);
    edit->setObjectName(name);
    edit->setMaxLength(SelectionLogic::maxLength(which));
    edit->setMaximumWidth(
        edit->fontMetrics().horizontalAdvance(QString(SelectionLogic::maxLength(which) + 2, u'0')) +
        12);
    edit->setToolTip(QStringLiteral("F4 = elenco"));
    connect(edit, &QLineEdit::textEdited, this,
            [this, which](const QString &t) { m_logic.setText(which, t); });
    connect(edit, &ui::CodeLineEdit::lookupRequested, this,
            [this, which] { m_logic.keyDownF4(which); });
    connect(edit, &ui::CodeLineEdit::left, this, [this, which] { boxLeft(which); });
    m_boxes[which] = edit;
    return edit;
}

QLineEdit *SelectionDialog::makeDateBox(Box which, const QString &name, QWidget *parent)
{
    auto *edit = new ui::MaskedDateEdit(parent);
    edit->setObjectName(name);
    connect(edit, &QLineEdit::textChanged, this,
            [this, which, edit] { m_logic.setText(which, edit->maskedText()); });
    edit->setLeaveValidator([this, which](ui::MaskedDateEdit &e) {
        if (QApplication::focusWidget() == m_cancel)
            return ui::MaskedDateEdit::Leave::Accept;
        m_logic.setText(which, e.maskedText());
        m_dateLeaving = which;
        const bool ok = m_logic.validate(which);
        m_dateLeaving.reset();
        return ok ? ui::MaskedDateEdit::Leave::Accept
                  : ui::MaskedDateEdit::Leave::KeepFocusSelected;
    });
    m_boxes[which] = edit;
    return edit;
}

QLineEdit *SelectionDialog::makeDescription(SelectionLogic::Description d, const QString &name,
                                            QWidget *parent)
{
    auto *edit = new QLineEdit(parent);
    edit->setObjectName(name);
    edit->setReadOnly(true);
    edit->setFocusPolicy(Qt::NoFocus);
    m_descriptions[d] = edit;
    return edit;
}

void SelectionDialog::showForm()
{
    for (int i = 0; i < SelectionLogic::BoxCount; ++i) {
        const Box b = Box(i);
        QLineEdit *edit = m_boxes.at(i);
        if (SelectionLogic::isDateBox(b)) {
            auto *date = static_cast<ui::MaskedDateEdit *>(edit);
            if (date->maskedText() != m_logic.text(b))
                date->setMaskedText(m_logic.text(b));
        } else if (edit->text() != m_logic.text(b)) {
            edit->setText(m_logic.text(b));
        }
    }
    for (int i = 0; i < SelectionLogic::DescriptionCount; ++i)
        m_descriptions.at(i)->setText(m_logic.description(SelectionLogic::Description(i)));
    m_tipo->setCurrentIndex(m_logic.tipoIndex());
    m_cliFor->setCurrentIndex(m_logic.cliForIndex());
}

void SelectionDialog::boxLeft(Box which)
{
    // The check runs once the focus has settled, and not at all when the clerk is leaving
    // the dialog through "&Annulla".
    m_pendingLeave = which;
    QPointer<SelectionDialog> self(this);
    QTimer::singleShot(0, this, [self, which] {
        if (!self || self->m_pendingLeave != which)
            return;
        self->m_pendingLeave.reset();
        if (QApplication::focusWidget() == self->m_cancel)
            return;
        self->m_logic.validate(which);
    });
}

void SelectionDialog::moveFocus(Box which, bool selectText)
{
    if (m_dateLeaving == which)
        return; // the date box keeps the focus by itself
    QPointer<QLineEdit> edit(m_boxes.at(which));
    QTimer::singleShot(0, this, [edit, selectText] {
        if (!edit)
            return;
        edit->setFocus(Qt::OtherFocusReason);
        if (selectText)
            edit->selectAll();
    });
}

void SelectionDialog::confirm()
{
    if (m_pendingLeave) {
        const Box left = *m_pendingLeave;
        m_pendingLeave.reset();
        if (!m_logic.validate(left))
            return;
    }
    // A date box left for the button has its own check still to come: it runs now.
    for (Box date : {SelectionLogic::DataScadDa, SelectionLogic::DataScadA,
                     SelectionLogic::DataCreazione, SelectionLogic::DataValuta})
        if (!m_logic.validate(date))
            return;
    if (m_logic.cmdGenera())
        accept();
}

std::optional<SelectionValues> SelectionDialog::choose(archives::ErpSession *erp, QWidget *parent)
{
    SelectionDialog dialog(erp, parent);
    if (dialog.exec() != QDialog::Accepted || !dialog.logic().confirmed())
        return std::nullopt;
    return dialog.logic().values();
}

} // namespace pg::editor
