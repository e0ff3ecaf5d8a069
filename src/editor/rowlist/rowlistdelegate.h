#pragma once

#include <QStyledItemDelegate>

namespace pg::editor {

// The in-cell editors of the row list: the residual amount takes a number with at most two
// decimals (the clerk's decimal sign, no thousands signs), the description any text up to
// its column's width. What was typed is handed to the model once the editor has closed, so
// that a refusal message never shows over a closing editor; an editor closed without a
// change hands nothing.
class RowListDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit RowListDelegate(QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
};

} // namespace pg::editor
