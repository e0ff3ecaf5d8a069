#include "frmchkbanca.h"

#include "incompleterows.h"
#include "queryresultmodel.h"

#include "startup/errortrap.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QTableView>
#include <QTextDocument>
#include <QVBoxLayout>

namespace pg::checks {

frmChkBanca::frmChkBanca(distinta::DistinteStore &store, QWidget *parent)
    : QDialog(parent), m_store(store), m_model(new QueryResultModel(this))
{
    setObjectName(QStringLiteral("frmChkBanca"));
    setWindowTitle(QStringLiteral("Controllo completezza dati bancari"));

    m_lvwLista = new QTableView(this);
    m_lvwLista->setObjectName(QStringLiteral("lvwLista"));
    m_lvwLista->setModel(m_model);
    m_lvwLista->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_lvwLista->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_lvwLista->verticalHeader()->hide();

    m_cmdEsegui = new QPushButton(QStringLiteral("&Esegui"), this);
    m_cmdEsegui->setObjectName(QStringLiteral("cmdEsegui"));
    m_cmdStampa = new QPushButton(QStringLiteral("&Stampa"), this);
    m_cmdStampa->setObjectName(QStringLiteral("cmdStampa"));
    m_cmdAnnulla = new QPushButton(QStringLiteral("&Annulla"), this);
    m_cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_cmdEsegui);
    buttons->addWidget(m_cmdStampa);
    buttons->addStretch(1);
    buttons->addWidget(m_cmdAnnulla);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_lvwLista, 1);
    layout->addLayout(buttons);
    resize(900, 420);

    connect(m_cmdEsegui, &QPushButton::clicked, this, &frmChkBanca::cmdEsegui_Click);
    connect(m_cmdStampa, &QPushButton::clicked, this, &frmChkBanca::cmdStampa_Click);
    connect(m_cmdAnnulla, &QPushButton::clicked, this, &QDialog::reject);
}

frmChkBanca::~frmChkBanca() = default;

void frmChkBanca::cmdEsegui_Click()
{
    underTrap(QStringLiteral("frmChkBanca!Sub cmdEsegui_Click()"), [this] {
        m_model->setResult(incompleteBankRows(m_store));
        m_lvwLista->resizeColumnsToContents();
    });
}

std::unique_ptr<QTextDocument> frmChkBanca::document() const
{
    // Plain text of the cells, escaped; the page is a title and one table.
    QString html =
        QStringLiteral("<h3>") + printTitle().toHtmlEscaped() +
        QStringLiteral("</h3><table border=\"1\" cellspacing=\"0\" cellpadding=\"2\"><tr>");
    for (int c = 0; c < m_model->columnCount(); ++c)
        html += QStringLiteral("<th>") +
                m_model->headerData(c, Qt::Horizontal).toString().toHtmlEscaped() +
                QStringLiteral("</th>");
    html += QStringLiteral("</tr>");
    for (int r = 0; r < m_model->rowCount(); ++r) {
        html += QStringLiteral("<tr>");
        for (int c = 0; c < m_model->columnCount(); ++c)
            html += QStringLiteral("<td>") +
                    m_model->index(r, c).data().toString().toHtmlEscaped() +
                    QStringLiteral("</td>");
        html += QStringLiteral("</tr>");
    }
    html += QStringLiteral("</table>");
    auto document = std::make_unique<QTextDocument>();
    document->setHtml(html);
    return document;
}

void frmChkBanca::print(QPrinter *printer) const
{
    document()->print(printer);
}

void frmChkBanca::cmdStampa_Click()
{
    underTrap(QStringLiteral("frmChkBanca!Sub cmdStampa_Click()"), [this] {
        QPrintPreviewDialog preview(this);
        preview.setWindowTitle(printTitle());
        connect(&preview, &QPrintPreviewDialog::paintRequested, this,
                [this](QPrinter *printer) { print(printer); });
        preview.exec();
    });
}

} // namespace pg::checks
