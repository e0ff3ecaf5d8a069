#pragma once

#include <QAbstractTableModel>
#include <QDate>
#include <QVariantList>

namespace pg::lists {

// The saved distinte of the list, one line each: number, creation date, presenting bank,
// total (formatted "#,0.00") and state. A click on a header sorts by that column, always in
// ascending order (a second click on the same column does not reverse it).
class DistinteListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Numero, Data, Banca, Importo, Stato, ColumnCount };

    struct Entry
    {
        QString code; // as stored, right-aligned in six
        QDate date;
        QString bank;
        double amount = 0;
        QString state;
    };

    explicit DistinteListModel(QObject *parent = nullptr);

    // The rows of the list query, in its column order.
    void setRows(const QList<QVariantList> &rows);
    const QList<Entry> &entries() const { return m_entries; }
    // The stored code of the distinta on that line.
    QString codeAt(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    static QStringList captions();

private:
    QList<Entry> m_entries;
};

} // namespace pg::lists
