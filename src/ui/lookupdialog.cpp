#include "lookupdialog.h"

#include "lookupmodel.h"
#include "waitcursor.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace pg::ui {

LookupDialog::LookupDialog(Source source, QWidget *parent)
    : QDialog(parent)
    , m_source(std::move(source))
    , m_model(new LookupModel(this))
    , m_view(new QTableView(this))
    , m_filter(new QLineEdit(this))
{
    auto *layout = new QVBoxLayout(this);
    auto *label = new QLabel(QStringLiteral("&Cerca:"), this);
    label->setBuddy(m_filter);
    m_filter->setClearButtonEnabled(true);
    m_filter->setToolTip(QStringLiteral("Scrivere una o più parole contenute nella riga cercata"));
    auto *search = new QHBoxLayout;
    search->addWidget(label);
    search->addWidget(m_filter, 1);
    layout->addLayout(search);

    m_view->setModel(m_model);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setAlternatingRowColors(true);
    m_view->verticalHeader()->hide();
    m_view->horizontalHeader()->setStretchLastSection(true);
    layout->addWidget(m_view, 1);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("&Conferma"));
    buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("&Annulla"));
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::accepted, this, &LookupDialog::chooseCurrent);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_view, &QTableView::doubleClicked, this, &LookupDialog::chooseCurrent);
    connect(m_filter, &QLineEdit::textChanged, this, &LookupDialog::refill);
    // The arrows in the search box move along the list.
    m_filter->installEventFilter(this);
    connect(m_filter, &QLineEdit::returnPressed, this, &LookupDialog::chooseCurrent);

    resize(640, 420);
    refill();
    // The clerk types at once what is looked for.
    m_filter->setFocus(Qt::OtherFocusReason);
}

void LookupDialog::refill()
{
    WaitCursor wait;
    archives::LookupList list = m_source(m_filter->text());
    setWindowTitle(list.title);
    m_model->setList(std::move(list));
    m_view->resizeColumnsToContents();
    if (m_model->rowCount() > 0)
        m_view->selectRow(0);
}

bool LookupDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_filter && event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent *>(event)->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            QCoreApplication::sendEvent(m_view, event);
            return true;
        default:
            break;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void LookupDialog::chooseCurrent()
{
    const QModelIndex current = m_view->currentIndex();
    if (!current.isValid())
        return;
    m_choice = m_model->choiceAt(current.row());
    accept();
}

QString LookupDialog::choose(Source source, QWidget *parent, const QString &filter)
{
    LookupDialog dialog(std::move(source), parent);
    dialog.m_filter->setText(filter);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.choice();
}

QString LookupDialog::banksAndAgencies(archives::LookupService &service, QWidget *parent)
{
    return choose([&service](const QString &f) { return service.banksAndAgencies(f); }, parent);
}

QString LookupDialog::accounts(archives::LookupService &service, QWidget *parent,
                               archives::LookupService::AccountKind kind)
{
    return choose([&service, kind](const QString &f) { return service.accounts(f, kind); }, parent);
}

QString LookupDialog::currencies(archives::LookupService &service, QWidget *parent)
{
    return choose([&service](const QString &f) { return service.currencies(f); }, parent);
}

} // namespace pg::ui
