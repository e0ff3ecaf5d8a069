#include "printersdialog.h"

#include "startup/errortrap.h"
#include "ui/waitcursor.h"

#include <QHBoxLayout>
#include <QListView>
#include <QPushButton>
#include <QStringListModel>
#include <QVBoxLayout>

namespace pg::printing {

PrintersDialog::PrintersDialog(const editor::PrinterCatalog &printers, QWidget *parent)
    : QDialog(parent)
    , m_printers(printers)
    , m_list(new QListView(this))
    , m_lines(new QStringListModel(this))
    , m_ok(new QPushButton(QStringLiteral("&OK"), this))
    , m_cancel(new QPushButton(QStringLiteral("&Annulla"), this))
{
    setObjectName(QStringLiteral("shr_frmPrinters"));
    setWindowTitle(QStringLiteral("Scelta Stampante"));
    m_list->setObjectName(QStringLiteral("mTxtList1"));
    QFont courier(QStringLiteral("Courier New"));
    courier.setStyleHint(QFont::Monospace);
    m_list->setFont(courier);
    m_list->setModel(m_lines);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setMinimumWidth(420);
    m_ok->setObjectName(QStringLiteral("Command1"));
    m_ok->setDefault(true);
    m_cancel->setObjectName(QStringLiteral("Command2"));
    m_cancel->setAutoDefault(false);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);

    connect(m_ok, &QPushButton::clicked, this, &PrintersDialog::Command1_Click);
    connect(m_list, &QListView::doubleClicked, this, &PrintersDialog::Command1_Click);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    Form_Load();
}

void PrintersDialog::Form_Load()
{
    underTrap(QStringLiteral("frmPrinters!Sub Form_Load()"), [this] {
        const ui::WaitCursor busy;
        m_printers.fill();
        m_lines->setStringList(m_printers.lines());
        const int current = m_printers.currentIndex();
        if (current >= 0)
            m_list->setCurrentIndex(m_lines->index(current));
    });
}

void PrintersDialog::Command1_Click()
{
    underTrap(QStringLiteral("frmPrinters!Sub Command1_Click()"), [this] {
        const QModelIndex selected = m_list->currentIndex();
        m_changed = m_printers.makeCurrent(selected.isValid() ? selected.row() : -1);
    });
    accept();
}

} // namespace pg::printing
