#include "frmcreafiler.h"

#include "scadenzemodel.h"

#include "distinta/distintestore.h"
#include "editor/rowlist/listcolumns.h"
#include "lists/usersettings.h"

#include <QHeaderView>
#include <QTableView>
#include <QVBoxLayout>

namespace pg::bankfile {

frmCreaFileR::frmCreaFileR(distinta::DistinteStore &store, distinta::Distinta &d,
                           archives::ErpSession *erp, QWidget *parent)
    : frmCreaFile(parent), m_store(store), m_d(d)
{
    setObjectName(QStringLiteral("frmCreaFileR"));
    m_model = new ScadenzeModel(editor::configuredColumns(currentSettings()), erp, this);
    m_model->setRows(d.righeRagg);

    m_lvwScadenze = new QTableView(this);
    m_lvwScadenze->setObjectName(QStringLiteral("lvwScadenze"));
    m_lvwScadenze->setModel(m_model);
    m_lvwScadenze->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_lvwScadenze->setEditTriggers(QAbstractItemView::DoubleClicked |
                                   QAbstractItemView::EditKeyPressed |
                                   QAbstractItemView::SelectedClicked);
    m_lvwScadenze->verticalHeader()->hide();
    QFont font(QStringLiteral("Verdana"));
    font.setPointSize(8);
    m_lvwScadenze->setFont(font);
    for (int i = 0; i < m_model->columnCount(); ++i) {
        const int width = editor::twipsToPixels(m_model->column(i).width);
        if (width > 0)
            m_lvwScadenze->setColumnWidth(i, width);
        else
            m_lvwScadenze->resizeColumnToContents(i);
    }
    contentLayout()->addWidget(m_lvwScadenze);
    resize(760, 480);
}

void frmCreaFileR::confirmed()
{
    if (!m_model->descriptionsChanged())
        return;
    m_d.righeRagg = m_model->rows();
    m_store.SalvaDesc(m_d);
}

} // namespace pg::bankfile
