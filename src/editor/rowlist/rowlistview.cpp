#include "rowlistview.h"

#include "listcolumns.h"
#include "rowlistdelegate.h"
#include "rowlistmodel.h"
#include "rowlistproxy.h"

#include "lists/usersettings.h"
#include "startup/errortrap.h"

#include <QHeaderView>

#include <algorithm>

namespace pg::editor {

namespace {

QString location(const char *procedure)
{
    return QStringLiteral("frmMain!Sub ") + QString::fromLatin1(procedure) + QStringLiteral("()");
}

} // namespace

RowListView::RowListView(QWidget *parent)
    : QTableView(parent), m_model(new RowListModel(this)), m_proxy(new RowListProxy(this))
{
    setObjectName(QStringLiteral("lvwScadenze"));
    m_proxy->setSourceModel(m_model);
    setModel(m_proxy);
    setItemDelegate(new RowListDelegate(this));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    setShowGrid(true);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    // The clerk arranges the columns by dragging their headers.
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setSortIndicatorShown(true);
    // Until the clerk picks a column the lines keep the order of the distinta's rows.
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);

    connect(m_model, &RowListModel::rowEdited, this, [this] { emit rowEdited(); });
}

void RowListView::setSession(archives::ErpSession *erp)
{
    m_model->setSession(erp);
}

void RowListView::setDistinta(distinta::Distinta *d)
{
    m_model->setDistinta(d);
    LV_AdattaColonne();
}

void RowListView::LV_InizializzaLista()
{
    LV_InizializzaLista(currentSettings());
}

void RowListView::LV_InizializzaLista(const UserSettings &settings)
{
    underTrap(location("LV_InizializzaLista"), [&] {
        QFont listFont = font();
        listFont.setFamily(settings.fontName);
        if (settings.fontSize > 0)
            listFont.setPointSize(settings.fontSize);
        setFont(listFont);
        horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
        m_model->LV_InizializzaLista(configuredColumns(settings));
        setColumnHidden(0, true);
        applyColumnLayout(settings.columnLayout);
        LV_AdattaColonne();
    });
}

void RowListView::LV_RefreshLista()
{
    m_model->LV_RefreshLista();
    setColumnHidden(0, true);
    LV_AdattaColonne();
}

void RowListView::LV_AdattaColonne()
{
    underTrap(location("LV_AdattaColonne"), [&] {
        verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
        // Fitted on the lines in view and up to a thousand more (the header's precision), so
        // that a list of ten thousand lines fits at once.
        for (int c = 1; c < m_model->columnCount(); ++c) {
            resizeColumnToContents(c);
            // The table's own width, and the width the clerk left it at, stay the least a
            // column gets: its contents are never cut.
            const int least = std::max(twipsToPixels(m_model->column(c).width),
                                       m_savedWidths.value(m_model->column(c).field));
            if (columnWidth(c) < least)
                setColumnWidth(c, least);
        }
        setColumnHidden(0, true);
    });
}

QString RowListView::columnLayout() const
{
    QStringList columns;
    const QHeaderView *header = horizontalHeader();
    for (int visual = 0; visual < header->count(); ++visual) {
        const int c = header->logicalIndex(visual);
        if (c <= 0 || c >= m_model->columnCount() || isColumnHidden(c))
            continue;
        columns << m_model->column(c).field + u'=' + QString::number(columnWidth(c));
    }
    return columns.join(u';');
}

void RowListView::applyColumnLayout(const QString &layout)
{
    m_savedWidths.clear();
    QHeaderView *header = horizontalHeader();
    // After the hidden first column; fields the list no longer shows are passed over.
    int position = 1;
    for (const QString &entry : layout.split(u';', Qt::SkipEmptyParts)) {
        const QString field = entry.section(u'=', 0, 0).trimmed();
        const int c = m_model->columnOfField(field);
        if (c <= 0)
            continue;
        header->moveSection(header->visualIndex(c), position++);
        bool ok = false;
        const int width = entry.section(u'=', 1).trimmed().toInt(&ok);
        if (ok && width > 0)
            m_savedWidths.insert(field, width);
    }
}

void RowListView::LV_ShowHeaderIcon(int column, Qt::SortOrder order)
{
    underTrap(location("LV_ShowHeaderIcon"),
              [&] { horizontalHeader()->setSortIndicator(column, order); });
}

void RowListView::lvwSelectRow(bool selected)
{
    if (selected)
        selectAll();
    else
        clearSelection();
}

QStringList RowListView::selectedRowKeys() const
{
    QModelIndexList rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end(),
              [](const QModelIndex &a, const QModelIndex &b) { return a.row() < b.row(); });
    QStringList keys;
    keys.reserve(rows.size());
    for (const QModelIndex &index : std::as_const(rows))
        keys << m_proxy->keyAt(index.row());
    return keys;
}

QString RowListView::currentRowKey() const
{
    const QModelIndex current = currentIndex();
    return current.isValid() ? m_proxy->keyAt(current.row()) : QString();
}

bool RowListView::hasListColumn(const QString &header) const
{
    return m_model->columnOfHeader(header) >= 0;
}

int RowListView::listRowCount() const
{
    return m_proxy->rowCount();
}

bool RowListView::edit(const QModelIndex &index, EditTrigger trigger, QEvent *event)
{
    if (index.isValid() && state() != EditingState &&
        (trigger == DoubleClicked || trigger == EditKeyPressed || trigger == AllEditTriggers)) {
        QString status;
        if (!m_model->ItemClick(m_proxy->mapToSource(index), &status))
            return false;
        if (!status.isEmpty())
            emit statusHint(status);
    }
    return QTableView::edit(index, trigger, event);
}

} // namespace pg::editor
