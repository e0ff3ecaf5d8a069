#include "distintelistdialog.h"

#include "distintelistmodel.h"

#include "distinta/distintestore.h"
#include "startup/errortrap.h"
#include "ui/maskeddateedit.h"
#include "ui/waitcursor.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QTableView>
#include <QVBoxLayout>

namespace pg::lists {

DistinteListDialog::DistinteListDialog(distinta::DistinteStore &store, QWidget *parent)
    : QDialog(parent)
    , m_store(&store)
    , m_model(new DistinteListModel(this))
    , m_view(new QTableView(this))
    , m_param(new QGroupBox(QStringLiteral("Parametri di ricerca"), this))
    , m_cmdParam(new QPushButton(QStringLiteral("&Parametri >>"), this))
{
    setObjectName(QStringLiteral("frmLista"));
    setWindowTitle(QStringLiteral("Elenco Distinte"));
    auto *layout = new QVBoxLayout(this);

    m_view->setObjectName(QStringLiteral("lvwLista"));
    m_view->setModel(m_model);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setAlternatingRowColors(true);
    m_view->verticalHeader()->hide();
    m_view->horizontalHeader()->setSectionsClickable(true);
    m_view->horizontalHeader()->setHighlightSections(false);
    m_view->horizontalHeader()->setStretchLastSection(true);
    layout->addWidget(m_view, 1);

    m_cmdParam->setObjectName(QStringLiteral("cmdParam"));
    m_cmdParam->setAutoDefault(false);
    m_cmdParam->setToolTip(QStringLiteral("Apre i parametri di ricerca delle distinte"));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_cmdParam);
    buttons->addStretch(1);
    layout->addLayout(buttons);

    m_param->setObjectName(QStringLiteral("fraParam"));
    auto *grid = new QGridLayout(m_param);
    const QStringList numberLabels{QStringLiteral("Da num.:"), QStringLiteral("A num.:")};
    const QStringList dateLabels{QStringLiteral("Da data:"), QStringLiteral("A data:")};
    for (int i = 0; i < 2; ++i) {
        m_numbers[i] = new QLineEdit(m_param);
        m_numbers[i]->setObjectName(QStringLiteral("txtParamNum%1").arg(i));
        m_numbers[i]->setMaxLength(6);
        m_numbers[i]->setValidator(new QRegularExpressionValidator(
            QRegularExpression(QStringLiteral("\\s*\\d{0,6}\\s*")), m_numbers[i]));
        m_dates[i] = new ui::MaskedDateEdit(m_param);
        m_dates[i]->setObjectName(QStringLiteral("mskParamData%1").arg(i));
        m_dates[i]->setAdvanceAfterToday(false);
        m_dates[i]->setToolTip(QStringLiteral("d = data odierna"));
        auto *numberLabel = new QLabel(numberLabels.at(i), m_param);
        numberLabel->setBuddy(m_numbers[i]);
        auto *dateLabel = new QLabel(dateLabels.at(i), m_param);
        dateLabel->setBuddy(m_dates[i]);
        grid->addWidget(numberLabel, i, 0);
        grid->addWidget(m_numbers[i], i, 1);
        grid->addWidget(dateLabel, i, 2);
        grid->addWidget(m_dates[i], i, 3);
    }
    auto *refresh = new QPushButton(QStringLiteral("&Aggiorna elenco"), m_param);
    refresh->setObjectName(QStringLiteral("cmdAggiorna"));
    refresh->setAutoDefault(false);
    grid->addWidget(refresh, 0, 4, 2, 1);
    grid->setColumnStretch(5, 1);
    m_param->setEnabled(false);
    m_param->hide();
    layout->addWidget(m_param);

    connect(m_cmdParam, &QPushButton::clicked, this, &DistinteListDialog::openParameters);
    connect(refresh, &QPushButton::clicked, this, &DistinteListDialog::RiempiLista);
    connect(m_view, &QTableView::doubleClicked, this, &DistinteListDialog::chooseSelected);
    connect(m_view->horizontalHeader(), &QHeaderView::sectionClicked, this,
            &DistinteListDialog::sortBy);
    for (ui::MaskedDateEdit *box : m_dates) {
        box->setLeaveValidator([this](ui::MaskedDateEdit &edit) {
            if (!DistinteListFilter::validateDate(edit.maskedText()))
                return ui::MaskedDateEdit::Leave::KeepFocusSelected;
            if (!filter().validateDateRange())
                return ui::MaskedDateEdit::Leave::KeepFocusSelected;
            return ui::MaskedDateEdit::Leave::Accept;
        });
    }
    for (QLineEdit *box : m_numbers) {
        connect(box, &QLineEdit::editingFinished, this, [this] {
            underTrap(QStringLiteral("Sub txtParamNum_Validate()"),
                      [this] { filter().validateNumberRange(); });
        });
    }

    resize(620, 380);
    RiempiLista();
}

DistinteListFilter DistinteListDialog::filter() const
{
    DistinteListFilter f;
    f.fromNumber = m_numbers[0]->text();
    f.toNumber = m_numbers[1]->text();
    f.fromDate = m_dates[0]->maskedText();
    f.toDate = m_dates[1]->maskedText();
    return f;
}

void DistinteListDialog::RiempiLista()
{
    underTrap(QStringLiteral("Sub RiempiLista()"), [this] {
        ui::WaitCursor wait;
        const DistinteListFilter::Query query = filter().query();
        m_model->setRows(m_store->GetRsGen(query.sql, query.binds).rows);
        m_view->resizeColumnsToContents();
        if (m_view->horizontalHeader()->isSortIndicatorShown())
            m_model->sort(m_view->horizontalHeader()->sortIndicatorSection());
        if (m_model->rowCount() > 0)
            m_view->selectRow(0);
    });
}

void DistinteListDialog::sortBy(int column)
{
    underTrap(QStringLiteral("Sub lvwLista_ColumnClick()"), [this, column] {
        m_view->horizontalHeader()->setSortIndicatorShown(true);
        m_view->horizontalHeader()->setSortIndicator(column, Qt::AscendingOrder);
        m_model->sort(column, Qt::AscendingOrder);
    });
}

void DistinteListDialog::openParameters()
{
    setProperty("tag", QStringLiteral("APERTO"));
    m_paramOpen = true;
    m_param->setEnabled(true);
    m_param->show();
    resize(width(), std::max(height(), 520));
    m_numbers[0]->setFocus();
}

void DistinteListDialog::chooseSelected()
{
    const QModelIndexList selected = m_view->selectionModel()->selectedRows();
    if (selected.isEmpty()) {
        m_chosen.clear();
        reject();
        return;
    }
    m_chosen = m_model->codeAt(selected.first().row());
    accept();
}

void DistinteListDialog::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        underTrap(QStringLiteral("Sub Form_KeyPress()"), [this] { chooseSelected(); });
        return;
    case Qt::Key_Escape:
        m_chosen.clear();
        reject();
        return;
    default:
        QDialog::keyPressEvent(event);
    }
}

std::optional<QString> DistinteListDialog::choose(distinta::DistinteStore &store, QWidget *parent)
{
    DistinteListDialog dialog(store, parent);
    dialog.exec();
    if (dialog.chosenCode().isEmpty())
        return std::nullopt;
    return dialog.chosenCode();
}

} // namespace pg::lists
