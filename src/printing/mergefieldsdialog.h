#pragma once

#include <QDialog>

class QTableView;

namespace pg::printing {

class MergeFieldsModel;

// "Elenco variabili modelli": every field and block the print templates may use, with a
// short description, for whoever adapts the templates in D_IMG.
class MergeFieldsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit MergeFieldsDialog(QWidget *parent = nullptr);

    QTableView *lista() const { return m_view; }

private:
    MergeFieldsModel *m_model;
    QTableView *m_view;
};

} // namespace pg::printing
