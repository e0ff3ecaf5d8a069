#include "mergefieldsdialog.h"

#include "mergefieldsmodel.h"
#include "templatestore.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace pg::printing {

MergeFieldsDialog::MergeFieldsDialog(QWidget *parent)
    : QDialog(parent), m_model(new MergeFieldsModel(this)), m_view(new QTableView(this))
{
    setObjectName(QStringLiteral("frmListaCampi"));
    setWindowTitle(QStringLiteral("Elenco variabili modelli"));
    auto *intro = new QLabel(
        QStringLiteral("I modelli di stampa sono file HTML nella cartella %1. Ogni variabile "
                       "scritta come {{nome}} viene sostituita con il suo valore; il blocco "
                       "{{#righe}} ... {{/righe}} (di norma una riga di tabella) si ripete per "
                       "ogni scadenza stampata.")
            .arg(QDir::toNativeSeparators(TemplateStore().directory())),
        this);
    intro->setWordWrap(true);
    intro->setTextInteractionFlags(Qt::TextSelectableByMouse);

    m_view->setObjectName(QStringLiteral("lstCampi"));
    m_view->setModel(m_model);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->verticalHeader()->hide();
    m_view->horizontalHeader()->setStretchLastSection(true);
    m_view->resizeColumnsToContents();
    m_view->setWordWrap(false);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setText(QStringLiteral("&Chiudi"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addWidget(m_view, 1);
    layout->addWidget(buttons);
    resize(820, 560);
}

} // namespace pg::printing
