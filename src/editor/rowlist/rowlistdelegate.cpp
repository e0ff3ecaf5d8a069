#include "rowlistdelegate.h"

#include "rowlistmodel.h"

#include "distinta/riga.h"

#include <QLineEdit>
#include <QPointer>
#include <QRegularExpressionValidator>
#include <QTimer>

namespace pg::editor {

namespace {

const char *const InitialText = "pagamentiInitialText";

int descriptionWidth()
{
    for (const auto &column : distinta::Riga::columns())
        if (column.name == QLatin1StringView("des_scadenza"))
            return column.width;
    return 60;
}

} // namespace

RowListDelegate::RowListDelegate(QObject *parent) : QStyledItemDelegate(parent) {}

QWidget *RowListDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                       const QModelIndex &index) const
{
    Q_UNUSED(option);
    auto *edit = new QLineEdit(parent);
    edit->setFrame(false);
    const QString field = index.data(RowListModel::FieldRole).toString();
    if (field == RowListRules::ResiduoField) {
        // Digits, the sign and the separators: the list's rules read what was typed (the comma
        // is the decimal sign, points group thousands) and refuse, saying why, what is not an
        // amount.
        edit->setValidator(new QRegularExpressionValidator(
            QRegularExpression(QStringLiteral("[-+]?[0-9.]{0,17}(,[0-9]{0,2})?")), edit));
        edit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    } else {
        edit->setMaxLength(descriptionWidth());
    }
    return edit;
}

void RowListDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *edit = static_cast<QLineEdit *>(editor);
    const QString text = index.data(Qt::EditRole).toString();
    edit->setText(text);
    edit->setProperty(InitialText, text);
}

void RowListDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                   const QModelIndex &index) const
{
    auto *edit = static_cast<QLineEdit *>(editor);
    const QString text = edit->text();
    if (text == edit->property(InitialText).toString())
        return;
    edit->setProperty(InitialText, text);
    const QPersistentModelIndex target(index);
    QPointer<QAbstractItemModel> receiver(model);
    QTimer::singleShot(0, model, [receiver, target, text] {
        if (receiver && target.isValid())
            receiver->setData(target, text, Qt::EditRole);
    });
}

} // namespace pg::editor
